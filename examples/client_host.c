/* examples/client_host.c — a host program on the client level: the client
 * context opens from the settings of an INI file, the host checks words in
 * the context's session, and ClientTerm writes the options back.
 * Usage: client_host INIFILE WORD... */
#include <stdio.h>
#include "orth_client.h"

int main(int argc, char **argv) {
    char files[260], repl[64];
    if (argc < 2 || ORTH_SetIniFile(argv[1]) != 0) return 2;
    int16_t s = ORTH_GetSid(); /* the first client-level call opens the context */
    if (s < 0) return fprintf(stderr, "no client context: %d\n", s), 2;
    ORTH_GetMainLexFiles(files, sizeof files);
    printf("%s: lexicon id %d\n", files, ORTH_GetLexId(files));
    for (int i = 2; i < argc; ++i)
        printf("%s: %s\n", argv[i], ORTH_CheckWord(s, 0, argv[i], repl, sizeof repl) == 0 ? "ok" : "misspelled");
    ClientTerm();
    return 0;
}
