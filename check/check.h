// check/check.h — the word checker and the suggestion engine as the other
// layers call them. checkWord applies the option rules and looks the word up
// in the session's lexicons in slot order; the first lexicon holding the
// word decides.
#pragma once

#include <cstdint>

struct Session;

// Check result (0 accepted, else ORTH_CHK_* flags), never negative.
int16_t checkWord(Session *session, uint32_t mask, const char *word, char *replacement,
                  uint16_t replacementSize);
