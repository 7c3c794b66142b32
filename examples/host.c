/* examples/host.c — a host program on the engine API: open a session and a
 * dictionary folder, check words, print suggestions. Usage: host DIR WORD... */
#include <stdio.h>
#include <string.h>
#include "orth.h"

int main(int argc, char **argv) {
    char path[260], repl[64], sugs[1250];
    int16_t scores[5];
    int16_t s = ORTH_OpenSession();
    if (argc < 2 || s < 0) return 2;
    snprintf(path, sizeof path, "%s/MAIN.CLX", argv[1]);
    if (ORTH_OpenLex(s, path, 0) < 0) return fprintf(stderr, "cannot open %s\n", path), 2;
    for (int i = 2; i < argc; ++i) {
        if (ORTH_CheckWord(s, 0, argv[i], repl, sizeof repl) == 0) { printf("%s: ok\n", argv[i]); continue; }
        printf("%s:", argv[i]);
        if (ORTH_Suggest(s, argv[i], -1, sugs, sizeof sugs, scores, 5) == 0)
            for (int n = 0, at = 0; sugs[at] != '\0'; at += (int)strlen(sugs + at) + 1, ++n)
                printf(" %s (%d)", sugs + at, scores[n]);
        printf("\n");
    }
    return ORTH_CloseSession(s) == 0 ? 0 : 2;
}
