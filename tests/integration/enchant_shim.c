/* tests/integration/enchant_shim.c — preloaded into a program that uses
 * libenchant, so that Enchant loads its providers from a test folder
 * instead of the system's: g_dir_open of ORTH_SHIM_FROM lists ORTH_SHIM_TO,
 * and g_module_open of ORTH_SHIM_FROM/NAME opens ORTH_SHIM_TO/NAME. Every
 * other call goes through unchanged. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <gmodule.h>
#include <stdlib.h>
#include <string.h>

/* ORTH_SHIM_TO joined with what follows ORTH_SHIM_FROM in path, or NULL
 * when path is not in ORTH_SHIM_FROM. The result is freed with g_free. */
static gchar *redirected(const gchar *path) {
    const char *from = getenv("ORTH_SHIM_FROM"), *to = getenv("ORTH_SHIM_TO");
    if (path == NULL || from == NULL || to == NULL || *from == '\0') return NULL;
    size_t n = strlen(from);
    if (strncmp(path, from, n) != 0 || (path[n] != '\0' && path[n] != '/')) return NULL;
    return g_strconcat(to, path + n, NULL);
}

GDir *g_dir_open(const gchar *path, guint flags, GError **error) {
    GDir *(*real)(const gchar *, guint, GError **) =
        (GDir * (*)(const gchar *, guint, GError **)) dlsym(RTLD_NEXT, "g_dir_open");
    gchar *other = redirected(path);
    GDir *dir = real(other != NULL ? other : path, flags, error);
    g_free(other);
    return dir;
}

GModule *g_module_open(const gchar *file, GModuleFlags flags) {
    GModule *(*real)(const gchar *, GModuleFlags) =
        (GModule * (*)(const gchar *, GModuleFlags)) dlsym(RTLD_NEXT, "g_module_open");
    gchar *other = redirected(file);
    GModule *module = real(other != NULL ? other : file, flags);
    g_free(other);
    return module;
}
