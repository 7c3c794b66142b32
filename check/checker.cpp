// check/checker.cpp — the word checker: option rules, the lookup over the
// session's lexicon slots, and the splits that accept a word made of known
// pieces.
//
// (1) The caller's replacement buffer is written only through finishCheck:
//     the checker works in a 64-byte buffer of its own and copies at most
//     size - 1 bytes and a zero out, so a short buffer is never overrun and a
//     size of 0 writes nothing.
// (2) Slots are consulted in order 0 to 15 and the first lexicon that holds
//     the word decides (lookupOnce); an exclude lexicon's marker ends the
//     search as "not found".
// (3) A failing lexicon (a negative verdict other than "not found" and the
//     exclusion marker) is never taken as holding the word: lookupOnce skips
//     it and goes on with the next slot, so its code can neither accept the
//     word nor set the change flags. The first failure of a check is logged.
// (4) Words longer than 63 characters can be in no lexicon: the option rules
//     look at the whole word, and the lookup reports it misspelled.
#include "check/check.h"

#include <cstring>
#include <initializer_list>

#include "check/chartab.h"
#include "engine/log.h"
#include "engine/session.h"
#include "orth.h"

namespace {

// Search state of one checkWord call.
struct CheckCall {
    Session *session;
    uint32_t options;            // the session's own mask
    char replacement[kWordBufSize];
    bool failureLogged;
};

bool isUpper(int charSet, unsigned char c) { return (classOf(charSet, c) & CC_UPPER) != 0; }
bool isLower(int charSet, unsigned char c) { return (classOf(charSet, c) & CC_LOWER) != 0; }
bool isLetter(int charSet, unsigned char c) { return (classOf(charSet, c) & CC_LETTER) != 0; }

// Copies the working replacement out to the caller's buffer (invariant 1).
void finishCheck(const CheckCall &call, char *out, uint16_t size) {
    if (size == 0 || out == nullptr) return;
    size_t n = std::strlen(call.replacement);
    if (n > static_cast<size_t>(size - 1)) n = size - 1;
    std::memcpy(out, call.replacement, n);
    out[n] = '\0';
}

// One pass over the slots. Verdicts with bit 0 set mean "not here"; the
// exclusion marker ends the search as "not found"; failures are skipped.
int16_t lookupOnce(Session *session, bool caseSensitive, const char *word,
                   char replacement[kWordBufSize], bool *failureLogged) {
    for (int16_t slot = 0; slot < kMaxLexPerSession; ++slot) {
        const LexEntry *lex = session->lexicons[slot];
        if (lex == nullptr) continue;
        // A text lexicon may copy a replacement before its type turns out bad.
        bool text = lex->format == ORTH_TEXT_LEX_FORMAT;
        char saved[kWordBufSize];
        if (text) std::memcpy(saved, replacement, kWordBufSize);
        int16_t v = check1Lex(session, lex, caseSensitive, word, replacement);
        if (v & 1) continue;
        if (v == ORTH_CHK_EXCLUDED) return 1;
        if (v < 0) {
            if (text) std::memcpy(replacement, saved, kWordBufSize);
            if (!*failureLogged) {
                engineLog("checkWord: lex %hd failed (%hd); word taken as not found there", slot, v);
                *failureLogged = true;
            }
            continue;
        }
        return v;
    }
    return 1;
}

bool allLettersUpper(int charSet, const char *word) {
    for (auto *p = reinterpret_cast<const unsigned char *>(word); *p != 0; ++p) {
        if (isLetter(charSet, *p) && !isUpper(charSet, *p)) return false;
    }
    return true;
}

// Greedy run-of-words split without backtracking: at each position the
// longest piece found is taken. Pieces after the first ignore case.
bool splitRunOfWords(CheckCall &call, const char *word, int16_t *r) {
    size_t len = std::strlen(word);
    size_t pos = 0;
    char piece[kWordBufSize];
    while (pos < len) {
        size_t n = len - pos;
        if (n > static_cast<size_t>(kMaxWordLen)) n = kMaxWordLen;
        uint32_t opts = call.options;
        if (pos != 0) opts &= ~ORTH_CASE_SENSITIVE_OPT;
        bool found = false;
        for (; n > 0; --n) {
            std::memcpy(piece, word + pos, n);
            piece[n] = '\0';
            *r = lookupAllLexicons(call.session, opts, piece, call.replacement, &call.failureLogged);
            if (!(*r & 1)) { found = true; break; }
        }
        if (!found) return false;
        pos += n;
    }
    return true;
}

// Hyphen and apostrophe parts: every part must be found.
bool splitParts(CheckCall &call, const char *word, uint32_t mask, int16_t *r) {
    const char *cursor = word;
    char part[kWordBufSize];
    while (*cursor != '\0') {
        cursor = nextWordPart(cursor, mask, part);
        if (part[0] == '\0') {  // two separators in a row, or a leading one
            *r = 1;
            return false;
        }
        *r = lookupAllLexicons(call.session, call.options, part, call.replacement,
                               &call.failureLogged);
        if (*r & 1) return false;
    }
    return true;
}

// Step 8: the lexicon lookup and the splits; merges the outcome into result.
void checkSpelling(CheckCall &call, const char *callerWord, const char *word, bool overLong,
                   uint32_t mask, int16_t *result) {
    int charSet = call.session->charSet;
    if (overLong) {  // invariant 4
        *result |= ORTH_CHK_MISSPELLED;
        return;
    }
    int16_t r = lookupAllLexicons(call.session, call.options, word, call.replacement,
                                  &call.failureLogged);
    bool found = !(r & 1);
    if (!found && (mask & ORTH_SPLIT_WORDS_OPT)) found = splitRunOfWords(call, word, &r);
    if (!found) found = splitParts(call, word, mask, &r);
    *result |= found ? r : ORTH_CHK_MISSPELLED;
    if (r & (ORTH_CHK_AUTO_CHANGE | ORTH_CHK_CONDITIONAL_CHANGE)) {
        adaptReplacement(callerWord, call.replacement, charSet,
                         (call.options & ORTH_MATCH_CASE_OPT) != 0);
    }
}

}  // namespace

bool hasMixedCase(const Session *session, const char *word) {
    int charSet = session->charSet;
    auto *p = reinterpret_cast<const unsigned char *>(word);
    if (*p == 0) return false;
    ++p;
    while (*p != 0 && !isLetter(charSet, *p)) ++p;
    if (*p == 0) return false;
    bool firstLower = isLower(charSet, *p);
    for (; *p != 0; ++p) {
        if (isApostrophe(*p)) continue;
        if (firstLower ? isUpper(charSet, *p) : isLower(charSet, *p)) return true;
    }
    return false;
}

const char *nextWordPart(const char *cursor, uint32_t mask, char part[kWordBufSize]) {
    bool atHyphen = (mask & ORTH_SPLIT_HYPHENATED_WORDS_OPT) != 0;
    bool atApostrophe = (mask & ORTH_SPLIT_CONTRACTED_WORDS_OPT) != 0;
    size_t n = 0;
    while (*cursor != '\0') {
        auto c = static_cast<unsigned char>(*cursor);
        if ((atHyphen && c == kHyphen) || (atApostrophe && isApostrophe(c))) {
            ++cursor;
            break;
        }
        if (n < static_cast<size_t>(kMaxWordLen)) part[n++] = *cursor;
        ++cursor;
    }
    part[n] = '\0';
    return cursor;
}

// Verdict of one lexicon; see check.h. An unknown text-lexicon type logs
// "check1Lex: bad lex type %hd" and gives ORTH_UNKNOWN_LEXICON_TYPE_ERR;
// a format other than compressed or text gives -1 (not here).
int16_t check1Lex(Session *session, const LexEntry *lex, bool caseSensitive, const char *word,
                  char replacement[kWordBufSize]) {
    int16_t charSet = session->charSet;
    if (lex->format == ORTH_COMPRESSED_LEX_FORMAT) {
        auto *clex = const_cast<CLexState *>(&lex->clex);
        return CLex_Lookup(word, charSet, caseSensitive, clex);
    }
    if (lex->format != ORTH_TEXT_LEX_FORMAT) return -1;
    int16_t rc = TLex_Lookup(const_cast<TLexState *>(&lex->tlex), word, charSet, caseSensitive,
                             replacement, kWordBufSize);
    if (rc < 0) return rc;
    switch (lex->type) {
    case ORTH_AUTO_CHANGE_LEX_TYPE: return ORTH_CHK_AUTO_CHANGE;
    case ORTH_IGNORE_LEX_TYPE: return 0;
    case ORTH_CONDITIONAL_CHANGE_LEX_TYPE: return ORTH_CHK_CONDITIONAL_CHANGE;
    case ORTH_EXCLUDE_LEX_TYPE: return ORTH_CHK_EXCLUDED;
    default:
        engineLog("check1Lex: bad lex type %hd", lex->type);
        return ORTH_UNKNOWN_LEXICON_TYPE_ERR;
    }
}

int16_t lookupAllLexicons(Session *session, uint32_t sessionOptions, const char *word,
                          char replacement[kWordBufSize], bool *failureLogged) {
    int charSet = session->charSet;
    bool caseSensitive = (sessionOptions & ORTH_CASE_SENSITIVE_OPT) != 0;
    int16_t v = lookupOnce(session, caseSensitive, word, replacement, failureLogged);
    if (!(v & 1)) return v;
    if (!caseSensitive) return 1;
    if (isUpper(charSet, static_cast<unsigned char>(word[0]))) {
        // A capital at the start, as at the start of a sentence.
        char lowered[kWordBufSize];
        copyWord(lowered, word);
        lowered[0] = static_cast<char>(toLowerChar(charSet, static_cast<unsigned char>(lowered[0])));
        v = lookupOnce(session, true, lowered, replacement, failureLogged);
        if (!(v & 1)) return v;
    }
    if (allLettersUpper(charSet, word)) {
        // All capitals: any case form of the word will do.
        v = lookupOnce(session, false, word, replacement, failureLogged);
        if (!(v & 1)) return v;
    }
    return 1;
}

int16_t checkWord(Session *session, uint32_t mask, const char *word, char *replacement,
                  uint16_t replacementSize) {
    int charSet = session->charSet;
    // Only the two mixed-case rules look at mixed case.
    bool mixed = (mask & (ORTH_IGNORE_MIXED_CASE_OPT | ORTH_REPORT_MIXED_CASE_OPT)) != 0 &&
                 hasMixedCase(session, word);
    char normal[kWordBufSize];
    uint16_t length = normalizeWord(word, charSet, session->options, normal);
    if (length == 0) return 0;

    CheckCall call{};
    call.session = session;
    call.options = session->options;
    copyWord(call.replacement, word);

    // The option rules look at the normalised word, or at the whole word
    // when it is too long for the lexicons (invariant 4).
    // (A possessive cut from a 63-character copy leaves 61.)
    bool overLong = length >= kMaxWordLen - 2 && strnlen(word, kWordBufSize) > static_cast<size_t>(kMaxWordLen);
    const char *view = overLong ? word : normal;
    auto *v = reinterpret_cast<const unsigned char *>(view);
    bool firstUpper = isUpper(charSet, v[0]);
    bool onlyWordChars = true;    // letters, apostrophes and hyphens
    bool onlyLetters = true;      // letters and apostrophes
    bool allUpper = true;
    for (const unsigned char *p = v; *p != 0; ++p) {
        bool letter = isLetter(charSet, *p);
        if (!letter && !isApostrophe(*p)) {
            onlyLetters = false;
            if (*p != kHyphen) onlyWordChars = false;
        }
        if (!isUpper(charSet, *p)) allUpper = false;
    }

    int16_t result = 0;
    if (((mask & ORTH_IGNORE_CAPPED_WORDS_OPT) && firstUpper) ||
        ((mask & ORTH_IGNORE_MIXED_CASE_OPT) && mixed) ||
        ((mask & ORTH_IGNORE_MIXED_DIGITS_OPT) && !onlyWordChars) ||
        ((mask & ORTH_IGNORE_ALL_CAPS_WORDS_OPT) && allUpper)) {
        finishCheck(call, replacement, replacementSize);
        return 0;
    }
    if (mask & ORTH_REPORT_SPELLING_OPT) checkSpelling(call, word, normal, overLong, mask, &result);

    auto *r = reinterpret_cast<unsigned char *>(call.replacement);
    if ((mask & ORTH_REPORT_UNCAPPED_WORDS_OPT) && !firstUpper) {
        result |= ORTH_CHK_UNCAPITALIZED;
        if (isLower(charSet, r[0])) r[0] = toUpperChar(charSet, r[0]);
    }
    if ((mask & ORTH_REPORT_MIXED_CASE_OPT) && mixed) {
        result |= ORTH_CHK_MIXED_CASE;
        for (unsigned char *p = r; *p != 0; ++p) *p = toLowerChar(charSet, *p);
        if (firstUpper && isLower(charSet, r[0])) r[0] = toUpperChar(charSet, r[0]);
    }
    if ((mask & ORTH_REPORT_MIXED_DIGITS_OPT) && (result & ORTH_CHK_MISSPELLED) && !onlyLetters) {
        result |= ORTH_CHK_NON_LETTERS;
    }
    finishCheck(call, replacement, replacementSize);
    return result;
}

// ORTH_BAD_SESSION_ID_ERR for an unknown session (logged); ORTH_INVALID_WORD_ERR
// for a null word (logged); otherwise the check result under the session's
// mask or-ed with the caller's. A null replacement buffer counts as size 0.
extern "C" ORTH_API int16_t ORTH_CALL ORTH_CheckWord(int16_t sessionId, uint32_t mask, const char *word,
                                  char *replacement, uint16_t replacementSize) noexcept {
    Session *session = sessionFor(sessionId, "ORTH_CheckWord");
    if (session == nullptr) return ORTH_BAD_SESSION_ID_ERR;
    if (word == nullptr) {
        engineLog("ORTH_CheckWord: null word");
        return ORTH_INVALID_WORD_ERR;
    }
    if (replacement == nullptr) replacementSize = 0;
    return checkWord(session, session->options | mask, word, replacement, replacementSize);
}
