// lex/lexsq.cpp — lexicon compressor.
#include "lex/lexsq.h"

#include "lex/fileio.h"
#include "platform/platform.h"

void lexSqCleanup(CompressState *state) {
    if (state->tempOpen) {
        fileClose(state->tempFile);
        state->tempOpen = false;
    }
    if (state->tempPath[0] != '\0') {
        platRemove(state->tempPath);
        state->tempPath[0] = '\0';
    }
    while (state->segments != nullptr) {
        CompressSegNode *next = state->segments->next;
        delete state->segments;
        state->segments = next;
    }
    state->segCount = 0;
}
