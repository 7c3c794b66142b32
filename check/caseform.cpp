// check/caseform.cpp — ORTH_FindCaseForm, beside the defined checker: the
// session's own spelling of a word that it holds in another case (MySpace
// for MYSPACE), found among every case form of every lexicon. The defined
// case-insensitive lookup stops early in some segments (DECEMBER is not
// found past DeKalb); the Linux front ends use this to accept such words.
//
// (1) Lexicons are taken in slot order and, within one, forms in ascending
//     byte order; the first form the session accepts as it is spelled
//     (checkWord under the session's options, with the word's possessive
//     ending given back as a suggestion gets it) is the answer. So a form
//     that an exclude or change lexicon holds before any word list is
//     never the answer, just as the checker would not accept it.
// (2) checkWord may load and evict segments, and a walk over a segment is
//     valid only until the next load; so forms are first copied out, at
//     most kFormsPerRound at a time (the smallest above the last checked),
//     and checked after the walk. Each round walks the lexicon again, so
//     no form is missed whatever the number, in fixed memory.
#include <cstring>

#include "check/chartab.h"
#include "check/check.h"
#include "engine/log.h"
#include "engine/session.h"
#include "orth.h"

namespace {

constexpr int kFormsPerRound = 8;  // more case forms of one word are rare

// The forms of one round: the smallest above `after` (all when it is empty),
// in ascending byte order.
struct FormRound {
    char after[kWordBufSize];
    char forms[kFormsPerRound][kWordBufSize];
    int count;
    bool more;  // forms above `after` were left for the next round
};

void startRound(FormRound *round, const char *after) {
    copyWord(round->after, after);
    round->count = 0;
    round->more = false;
}

// Keeps form when it is among the smallest kFormsPerRound above `after`.
void pickForm(const char *form, void *context) {
    auto *round = static_cast<FormRound *>(context);
    if (round->after[0] != '\0' && compareBytes(form, round->after) <= 0) return;
    int at = round->count;
    while (at > 0 && compareBytes(form, round->forms[at - 1]) < 0) --at;
    if (at == kFormsPerRound) {
        round->more = true;
        return;
    }
    if (round->count == kFormsPerRound) {
        round->more = true;
        --round->count;
    }
    std::memmove(round->forms[at + 1], round->forms[at], (round->count - at) * sizeof round->forms[0]);
    copyWord(round->forms[at], form);
    ++round->count;
}

// One round over a lexicon's words; 0 or the lexicon's failure.
int16_t collectForms(Session *session, LexEntry *lex, const char *word, FormRound *round) {
    if (lex->format == ORTH_COMPRESSED_LEX_FORMAT)
        return CLex_FindCaseForms(word, session->charSet, &lex->clex, pickForm, round);
    if (lex->format == ORTH_TEXT_LEX_FORMAT) {
        for (uint32_t i = 0; i < lex->tlex.count; ++i) {
            const char *entry = lex->tlex.entries[i].word;
            if (compareNoCase(entry, word, session->charSet) == 0) pickForm(entry, round);
        }
    }
    return 0;
}

// Whether the session accepts form, spelled in spelled as the caller's word
// would get it back; false when that spelling no longer equals the word
// ignoring case (a possessive ending the session does not strip, doubled).
bool acceptsForm(Session *session, const char *callerWord, const char *form, char spelled[kWordBufSize]) {
    char scratch[kWordBufSize];
    copyWord(spelled, form);
    adaptReplacement(callerWord, spelled, session->charSet, false);
    if (compareNoCase(spelled, callerWord, session->charSet) != 0) return false;
    int16_t rc = checkWord(session, session->options, spelled, scratch, sizeof scratch);
    return (rc & (ORTH_CHK_MISSPELLED | ORTH_CHK_AUTO_CHANGE | ORTH_CHK_CONDITIONAL_CHANGE)) == 0;
}

}  // namespace

// 0 with the form found, spelled as accepted (with the word's possessive
// ending; written as ORTH_CheckWord fills its replacement: at most
// formSize - 1 bytes and a zero; nothing with a null form or a size of 0);
// ORTH_WORD_NOT_FOUND_ERR when no case form is accepted (also for a word
// that normalises to nothing or is over 63 characters);
// ORTH_BAD_SESSION_ID_ERR and ORTH_INVALID_WORD_ERR (a null word), logged.
// A lexicon that fails (a segment that cannot be loaded) is logged once
// and passed over.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_FindCaseForm(int16_t sessionId, const char *word, char *form,
                                                      uint16_t formSize) noexcept {
    Session *session = sessionFor(sessionId, "ORTH_FindCaseForm");
    if (session == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (word == nullptr) {
        engineLog("ORTH_FindCaseForm: null word");
        return ORTH_INVALID_WORD_ERR;
    }
    char normal[kWordBufSize];
    if (strnlen(word, kWordBufSize) > static_cast<size_t>(kMaxWordLen) ||
        normalizeWord(word, session->charSet, session->options, normal) == 0) {
        return ORTH_WORD_NOT_FOUND_ERR;
    }
    bool failureLogged = false;
    FormRound round;
    for (uint32_t open = session->openSlots; open != 0; open &= open - 1) {
        int16_t slot = 0;
        while (((open >> slot) & 1) == 0) ++slot;
        LexEntry *lex = session->lexicons[slot];
        startRound(&round, "");
        for (;;) {
            int16_t rc = collectForms(session, lex, normal, &round);
            if (rc < 0 && !failureLogged) {
                engineLog("ORTH_FindCaseForm: lex %hd failed (%hd); its forms are passed over", slot, rc);
                failureLogged = true;
            }
            for (int i = 0; i < round.count; ++i) {
                char spelled[kWordBufSize];
                if (!acceptsForm(session, word, round.forms[i], spelled)) continue;
                if (form != nullptr && formSize > 0) {
                    size_t n = strnlen(spelled, kMaxWordLen);
                    if (n > static_cast<size_t>(formSize - 1)) n = formSize - 1;
                    std::memcpy(form, spelled, n);
                    form[n] = '\0';
                }
                return 0;
            }
            if (rc < 0 || !round.more) break;
            char last[kWordBufSize];
            copyWord(last, round.forms[round.count - 1]);
            startRound(&round, last);
        }
    }
    return ORTH_WORD_NOT_FOUND_ERR;
}
