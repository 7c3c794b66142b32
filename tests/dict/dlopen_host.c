/* tests/dict/dlopen_host.c — a host program that loads the dictionary
 * library at run time, as a word processor would, and checks and corrects a
 * few words. Usage: dlopen_host LIBRARY WORKDIR. Exit status 0 on success. */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

typedef void *(*OpenFn)(const char *, const void *, int32_t);
typedef int32_t (*CloseFn)(void *);
typedef int32_t (*WordFn)(void *, const char *);
typedef int32_t (*SugFn)(void *, char *);

static int failures = 0;

static void expect(int ok, const char *what) {
    if (!ok) {
        fprintf(stderr, "dlopen_host: FAILED: %s\n", what);
        ++failures;
    }
}

static int writeText(const char *path, const char *text) {
    FILE *f = fopen(path, "wb");
    if (f == NULL) return 0;
    fputs(text, f);
    return fclose(f) == 0;
}

int main(int argc, char **argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: dlopen_host LIBRARY WORKDIR\n");
        return 2;
    }
    void *lib = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (lib == NULL) {
        fprintf(stderr, "dlopen_host: %s\n", dlerror());
        return 2;
    }
    OpenFn dictOpen = (OpenFn)dlsym(lib, "DictOpen");
    CloseFn dictClose = (CloseFn)dlsym(lib, "DictClose");
    WordFn dictCheck = (WordFn)dlsym(lib, "DictCheckWord");
    SugFn dictSug = (SugFn)dlsym(lib, "DictGetNextSug");
    WordFn dictAdd = (WordFn)dlsym(lib, "DictAddWord");
    expect(dictOpen && dictClose && dictCheck && dictSug && dictAdd, "all five functions found");
    expect(dlsym(lib, "ORTH_OpenSession") == NULL, "engine functions are not exported");
    if (failures) return 1;

    /* A folder whose main lexicon is a text lexicon, with its companion. */
    char path[1100], folder[1024];
    snprintf(folder, sizeof folder, "%s/", argv[2]);
    snprintf(path, sizeof path, "%sUSER.DIC", folder);
    remove(path); /* a list left by an earlier run */
    snprintf(path, sizeof path, "%sWORDS.TLX", folder);
    expect(writeText(path, "#LID 1033 1 0\r\n"), "companion written");
    snprintf(path, sizeof path, "%sWORDS.LEX", folder);
    expect(writeText(path, "#LID 1033 1 4\r\nhello\r\nhelp\r\nworld\r\nword\r\n"), "main written");

    unsigned char record[256];
    memset(record, 0, sizeof record);
    strcpy((char *)record + 88, "WORDS.LEX");
    record[108] = 0x09; /* 1033 */
    record[109] = 0x04;
    strcpy((char *)record + 154, "USER.DIC");

    void *h = dictOpen(folder, record, 0);
    expect(h != NULL, "DictOpen");
    if (h == NULL) return 1;
    expect(dictCheck(h, "hello") == 0, "hello accepted");
    expect(dictCheck(h, "world.") == 0, "world. accepted");
    expect(dictCheck(h, "1999") == 0, "1999 accepted");
    expect(dictCheck(h, "wrold") == 1, "wrold rejected");
    char sug[64];
    int found = 0, n = 0;
    while (dictSug(h, sug) == 1 && n < 30) {
        ++n;
        if (strcmp(sug, "world") == 0) found = 1;
    }
    expect(found, "world suggested for wrold");
    expect(dictSug(h, sug) == 0, "suggestions exhausted");
    dictAdd(h, "wrold");
    expect(dictCheck(h, "wrold") == 0, "added word accepted");
    expect(dictClose(h) == 1, "DictClose");

    h = dictOpen(folder, record, 0);
    expect(h != NULL && dictCheck(h, "wrold") == 0, "added word survives reopening");
    if (h != NULL) dictClose(h);
    dlclose(lib);
    return failures ? 1 : 0;
}
