// lex/clex.cpp — compressed lexicon reader.
#include "lex/clex.h"

#include <cstdlib>

#include "lex/clex_int.h"
#include "orth.h"

void CLex_Close(CLexState *state) {
    if (state->segs != nullptr) {
        for (uint16_t i = 0; i < state->segCount; ++i) std::free(state->segs[i].data);
        std::free(state->segs);
    }
    state->segs = nullptr;
    state->segCount = 0;
}
