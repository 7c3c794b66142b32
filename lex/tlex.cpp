// lex/tlex.cpp — text lexicon.
#include "lex/tlex.h"

#include <cstdlib>

#include "orth.h"

namespace {

void freeLexEntries(TLexState *state) {
    for (uint32_t i = 0; i < state->count; ++i) {
        std::free(state->entries[i].word);
        std::free(state->entries[i].replacement);
    }
    std::free(state->entries);
    state->entries = nullptr;
    state->count = 0;
    state->capacity = 0;
}

}  // namespace

void TLex_Close(TLexState *state) { freeLexEntries(state); }
