/* examples/win32_host.c — a Windows host of TMSPL32.DLL: load it, open a
 * dictionary folder, check words, list suggestions. Usage: win32_host DIR\ WORD... */
#include <windows.h>
#include <stdio.h>
#include <string.h>
#include "tmspl32.h"

typedef DictHandle *(WINAPI *OpenFn)(const char *, const void *, int32_t);
typedef int32_t(WINAPI *CheckFn)(DictHandle *, const char *);
typedef int32_t(WINAPI *SugFn)(DictHandle *, char *);
typedef int32_t(WINAPI *CloseFn)(DictHandle *);
typedef void (*AnyFn)(void); /* GetProcAddress's result, cast on to each type */

int main(int argc, char **argv) {
    unsigned char params[256] = {0}; /* the host's record: main lexicon, language, user list */
    char sug[64];
    HMODULE dll = LoadLibraryA("TMSPL32.DLL");
    OpenFn dictOpen = (OpenFn)(AnyFn)GetProcAddress(dll, "DictOpen");
    CheckFn dictCheck = (CheckFn)(AnyFn)GetProcAddress(dll, "DictCheckWord");
    SugFn dictSug = (SugFn)(AnyFn)GetProcAddress(dll, "DictGetNextSug");
    CloseFn dictClose = (CloseFn)(AnyFn)GetProcAddress(dll, "DictClose");
    if (argc < 2 || !dictOpen || !dictCheck || !dictSug || !dictClose) return 2;
    strcpy((char *)params + DICT_PARAMS_MAIN_LEX_NAME, "MAIN.CLX");
    params[DICT_PARAMS_LANGUAGE] = 1033 & 0xFF, params[DICT_PARAMS_LANGUAGE + 1] = 1033 >> 8;
    strcpy((char *)params + DICT_PARAMS_USER_LIST, "USER.DIC");
    DictHandle *h = dictOpen(argv[1], params, 0);
    if (h == NULL) return fprintf(stderr, "cannot open %sMAIN.CLX\n", argv[1]), 2;
    for (int i = 2; i < argc; ++i) {
        printf("%s:%s", argv[i], dictCheck(h, argv[i]) == 0 ? " ok" : "");
        while (dictSug(h, sug)) printf(" %s", sug);
        printf("\n");
    }
    return dictClose(h) == 1 ? 0 : 2;
}
