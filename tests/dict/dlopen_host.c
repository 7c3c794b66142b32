// tests/dict/dlopen_host.c — a host program that loads the dictionary
// library at run time, as a word processor would, and checks and corrects a
// word. Usage: dlopen_host LIBRARY WORKDIR. Exit status 0 on success; on a
// failure it names the step on stderr and exits with 1.
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

typedef void *(*OpenFn)(const char *, const void *, int32_t);
typedef int32_t (*CloseFn)(void *);
typedef int32_t (*WordFn)(void *, const char *);
typedef int32_t (*SugFn)(void *, char *);

static int failed(const char *step) {
    fprintf(stderr, "dlopen_host: FAILED: %s\n", step);
    return 1;
}

static int writeText(const char *folder, const char *name, const char *text) {
    char path[1100];
    snprintf(path, sizeof path, "%s%s", folder, name);
    FILE *f = fopen(path, "wb");
    return f != NULL && fputs(text, f) >= 0 && fclose(f) == 0;
}

int main(int argc, char **argv) {
    if (argc != 3) return failed("usage: dlopen_host LIBRARY WORKDIR");
    void *lib = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (lib == NULL) return failed(dlerror());
    OpenFn dictOpen = (OpenFn)dlsym(lib, "DictOpen");
    CloseFn dictClose = (CloseFn)dlsym(lib, "DictClose");
    WordFn dictCheck = (WordFn)dlsym(lib, "DictCheckWord");
    SugFn dictSug = (SugFn)dlsym(lib, "DictGetNextSug");
    WordFn dictAdd = (WordFn)dlsym(lib, "DictAddWord");
    if (!dictOpen || !dictClose || !dictCheck || !dictSug || !dictAdd) return failed("the five functions");

    // A folder whose main lexicon is a text lexicon, with its companion and
    // an empty user word list (replacing one left by an earlier run).
    char folder[1024];
    snprintf(folder, sizeof folder, "%s/", argv[2]);
    if (!writeText(folder, "USER.DIC", "") || !writeText(folder, "WORDS.TLX", "#LID 1033 1 0\r\n") ||
        !writeText(folder, "WORDS.LEX", "#LID 1033 1 4\r\nhello\r\nhelp\r\nword\r\nworld\r\n"))
        return failed("dictionary files written");
    unsigned char record[256] = {0};
    strcpy((char *)record + 88, "WORDS.LEX");
    record[108] = 0x09;  // language 1033, little-endian
    record[109] = 0x04;
    strcpy((char *)record + 154, "USER.DIC");

    void *h = dictOpen(folder, record, 0);
    if (h == NULL) return failed("DictOpen");
    char sug[64];
    if (dictCheck(h, "hello") != 0) return failed("hello accepted");
    if (dictCheck(h, "wrold") != 1) return failed("wrold rejected");
    if (dictSug(h, sug) != 1 || strcmp(sug, "world") != 0) return failed("world suggested first for wrold");
    if (dictClose(h) != 1) return failed("DictClose");
    dlclose(lib);
    return 0;
}
