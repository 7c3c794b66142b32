// check/checker.cpp — the word checker: option rules, the lookup over the
// session's lexicon slots, and the splits that accept a word made of known
// pieces.
//
// (1) The caller's replacement buffer is written only through finishCheck:
//     the checker works in a 64-byte buffer of its own and copies at most
//     size - 1 bytes and a zero out, so a short buffer is never overrun and a
//     size of 0 writes nothing. The working buffer starts as a copy of the
//     word only when something may change it (a text lexicon's replacement,
//     the case rules); otherwise finishCheck copies the word itself.
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

// Index of the lowest set bit of a nonzero value.
int16_t lowestBit(uint32_t v) {
#if defined(__GNUC__)
    return static_cast<int16_t>(__builtin_ctz(v));
#else
    int16_t n = 0;
    while ((v & 1) == 0) {
        v >>= 1;
        ++n;
    }
    return n;
#endif
}

}  // namespace

// An empty text lexicon holds no word, so it can neither decide a lookup nor
// write a replacement, and is left out.
void gatherLexicons(const Session *session, CheckLexicons *list) {
    list->count = 0;
    list->texts = 0;
    list->evictions = 0;
    for (uint32_t open = session->openSlots; open != 0; open &= open - 1) {
        int16_t slot = lowestBit(open);
        const LexEntry *lex = session->lexicons[slot];
        if (lex->format == ORTH_TEXT_LEX_FORMAT) {
            if (lex->tlex.count == 0) continue;
            ++list->texts;
        } else if (lex->format == ORTH_COMPRESSED_LEX_FORMAT) {
            list->evictions += lex->clex.evictions;
        }
        list->lex[list->count] = lex;
        list->slot[list->count] = slot;
        ++list->count;
    }
}

namespace {

// Search state of one checkWord call.
struct CheckCall {
    Session *session;
    uint32_t options;            // the session's own mask
    const CheckLexicons *lexicons;  // gathered for this check, or by the caller for several
    const char *word;            // the caller's word
    char replacement[kWordBufSize];
    bool replacementSet;         // replacement holds the word or what became of it
    bool failureLogged;
};

bool isUpper(int charSet, unsigned char c) { return (classOf(charSet, c) & CC_UPPER) != 0; }
bool isLower(int charSet, unsigned char c) { return (classOf(charSet, c) & CC_LOWER) != 0; }
bool isLetter(int charSet, unsigned char c) { return (classOf(charSet, c) & CC_LETTER) != 0; }

// Copies the working replacement out to the caller's buffer (invariant 1).
void finishCheck(const CheckCall &call, char *out, uint16_t size) {
    if (size == 0 || out == nullptr) return;
    const char *from = call.replacementSet ? call.replacement : call.word;
    size_t n = strnlen(from, kMaxWordLen);
    if (n > static_cast<size_t>(size - 1)) n = size - 1;
    std::memmove(out, from, n);  // out may be the caller's word itself
    out[n] = '\0';
}

// Gives the working replacement the word before anything changes it.
void setReplacement(CheckCall &call) {
    if (call.replacementSet) return;
    copyWord(call.replacement, call.word);
    call.replacementSet = true;
}

// Verdict of one lexicon for a word of known length; see check1Lex.
int16_t verdictOf(Session *session, const LexEntry *lex, bool caseSensitive, const char *word,
                  size_t len, char replacement[kWordBufSize]) {
    int16_t charSet = session->charSet;
    if (lex->format == ORTH_COMPRESSED_LEX_FORMAT) {
        auto *clex = const_cast<CLexState *>(&lex->clex);
        return CLex_LookupLength(word, len, charSet, caseSensitive, clex);
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

// One pass over the slots. Verdicts with bit 0 set mean "not here"; the
// exclusion marker ends the search as "not found"; failures are skipped.
int16_t lookupOnce(Session *session, const CheckLexicons &lexicons, bool caseSensitive, const char *word,
                   size_t len, char replacement[kWordBufSize], bool *failureLogged) {
    for (int i = 0; i < lexicons.count; ++i) {
        const LexEntry *lex = lexicons.lex[i];
        // A text lexicon of an unknown type copies a replacement before its
        // type turns out bad; the copy is undone.
        bool badType = lex->format == ORTH_TEXT_LEX_FORMAT && (lex->type < ORTH_AUTO_CHANGE_LEX_TYPE ||
                                                              lex->type > ORTH_EXCLUDE_LEX_TYPE);
        char saved[kWordBufSize];
        if (badType) std::memcpy(saved, replacement, kWordBufSize);
        int16_t v = verdictOf(session, lex, caseSensitive, word, len, replacement);
        if (v & 1) continue;
        if (v == ORTH_CHK_EXCLUDED) return 1;
        if (v < 0) {
            if (badType) std::memcpy(replacement, saved, kWordBufSize);
            if (!*failureLogged) {
                engineLog("checkWord: lex %hd failed (%hd); word taken as not found there",
                          lexicons.slot[i], v);
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

// lookupAllLexicons over the gathered lexicons, for a word of known length.
int16_t lookupAll(Session *session, const CheckLexicons &lexicons, uint32_t sessionOptions,
                  const char *word, size_t len, char replacement[kWordBufSize], bool *failureLogged) {
    int charSet = session->charSet;
    bool caseSensitive = (sessionOptions & ORTH_CASE_SENSITIVE_OPT) != 0;
    int16_t v = lookupOnce(session, lexicons, caseSensitive, word, len, replacement, failureLogged);
    if (!(v & 1)) return v;
    if (!caseSensitive) return 1;
    if (isUpper(charSet, static_cast<unsigned char>(word[0]))) {
        // A capital at the start, as at the start of a sentence.
        char lowered[kWordBufSize];
        copyWord(lowered, word);
        lowered[0] = static_cast<char>(toLowerChar(charSet, static_cast<unsigned char>(lowered[0])));
        v = lookupOnce(session, lexicons, true, lowered, len, replacement, failureLogged);
        if (!(v & 1)) return v;
    }
    if (allLettersUpper(charSet, word)) {
        // All capitals: any case form of the word will do.
        v = lookupOnce(session, lexicons, false, word, len, replacement, failureLogged);
        if (!(v & 1)) return v;
    }
    return 1;
}

// One lookup of the check.
int16_t lookupIn(CheckCall &call, uint32_t options, const char *word, size_t len) {
    return lookupAll(call.session, *call.lexicons, options, word, len, call.replacement,
                     &call.failureLogged);
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
            *r = lookupIn(call, opts, piece, n);
            if (!(*r & 1)) { found = true; break; }
        }
        if (!found) return false;
        pos += n;
    }
    return true;
}

// Segments evicted so far from the compressed lexicons of the check.
uint32_t evictionsSoFar(const CheckLexicons &lexicons) {
    uint32_t n = 0;
    for (int i = 0; i < lexicons.count; ++i) {
        if (lexicons.lex[i]->format == ORTH_COMPRESSED_LEX_FORMAT) n += lexicons.lex[i]->clex.evictions;
    }
    return n;
}

// Whether nextWordPart would give the word back whole (no separator in it).
bool hasNoSeparator(const char *word, uint32_t mask) {
    bool atHyphen = (mask & ORTH_SPLIT_HYPHENATED_WORDS_OPT) != 0;
    bool atApostrophe = (mask & ORTH_SPLIT_CONTRACTED_WORDS_OPT) != 0;
    for (auto *p = reinterpret_cast<const unsigned char *>(word); *p != 0; ++p) {
        if ((atHyphen && *p == kHyphen) || (atApostrophe && isApostrophe(*p))) return false;
    }
    return true;
}

// Hyphen and apostrophe parts: every part must be found. When the word has
// no separator its only part is the word itself, looked up once more; if
// wholeWord is given, that lookup is known to repeat the check's first one
// (same word, same options, no failure, nothing evicted or changed since),
// so its value is taken instead of looking again.
bool splitParts(CheckCall &call, const char *word, uint32_t mask, const int16_t *wholeWord,
                int16_t *r) {
    if (wholeWord != nullptr && hasNoSeparator(word, mask)) {
        *r = *wholeWord;
        return !(*r & 1);
    }
    const char *cursor = word;
    char part[kWordBufSize];
    while (*cursor != '\0') {
        cursor = nextWordPart(cursor, mask, part);
        if (part[0] == '\0') {  // two separators in a row, or a leading one
            *r = 1;
            return false;
        }
        *r = lookupIn(call, call.options, part, std::strlen(part));
        if (*r & 1) return false;
    }
    return true;
}

// Step 8: the lexicon lookup and the splits; merges the outcome into result.
void checkSpelling(CheckCall &call, const char *callerWord, const char *word, size_t len,
                   bool overLong, uint32_t mask, int16_t *result) {
    int charSet = call.session->charSet;
    if (overLong) {  // invariant 4
        *result |= ORTH_CHK_MISSPELLED;
        return;
    }
    int16_t r = lookupIn(call, call.options, word, len);
    const int16_t first = r;
    bool found = !(r & 1);
    // The lookup repeats exactly while nothing it met failed or moved (since
    // the lexicons were gathered, which was before it: eviction counts only
    // grow, so a gathering for several checks can only find fewer repeats).
    bool repeatable = !found && !call.failureLogged && evictionsSoFar(*call.lexicons) == call.lexicons->evictions;
    if (!found && (mask & ORTH_SPLIT_WORDS_OPT)) {
        found = splitRunOfWords(call, word, &r);
        repeatable = false;  // its lookups may have changed the replacement
    }
    if (!found) found = splitParts(call, word, mask, repeatable ? &first : nullptr, &r);
    *result |= found ? r : ORTH_CHK_MISSPELLED;
    if (r & (ORTH_CHK_AUTO_CHANGE | ORTH_CHK_CONDITIONAL_CHANGE)) {
        setReplacement(call);
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
    return verdictOf(session, lex, caseSensitive, word, strnlen(word, kWordBufSize), replacement);
}

int16_t lookupAllLexicons(Session *session, uint32_t sessionOptions, const char *word,
                          char replacement[kWordBufSize], bool *failureLogged) {
    CheckLexicons lexicons;
    gatherLexicons(session, &lexicons);
    return lookupAll(session, lexicons, sessionOptions, word, strnlen(word, kWordBufSize), replacement,
                     failureLogged);
}

int16_t checkWord(Session *session, uint32_t mask, const char *word, char *replacement,
                  uint16_t replacementSize) {
    return checkWordGathered(session, nullptr, mask, word, replacement, replacementSize);
}

int16_t checkWordGathered(Session *session, const CheckLexicons *gathered, uint32_t mask, const char *word,
                          char *replacement, uint16_t replacementSize) {
    int charSet = session->charSet;
    // Only the two mixed-case rules look at mixed case.
    bool mixed = (mask & (ORTH_IGNORE_MIXED_CASE_OPT | ORTH_REPORT_MIXED_CASE_OPT)) != 0 &&
                 hasMixedCase(session, word);
    char normal[kWordBufSize];
    uint16_t length = normalizeWord(word, charSet, session->options, normal);
    if (length == 0) return 0;

    CheckCall call;
    call.session = session;
    call.options = session->options;
    CheckLexicons own;
    own.count = 0;
    call.lexicons = gathered != nullptr ? gathered : &own;
    call.word = word;
    call.replacementSet = false;
    call.failureLogged = false;
    if (mask & (ORTH_REPORT_UNCAPPED_WORDS_OPT | ORTH_REPORT_MIXED_CASE_OPT)) setReplacement(call);

    // The option rules look at the normalised word, or at the whole word
    // when it is too long for the lexicons (invariant 4).
    // (A possessive cut from a 63-character copy leaves 61.)
    bool overLong = length >= kMaxWordLen - 2 && strnlen(word, kWordBufSize) > static_cast<size_t>(kMaxWordLen);
    const char *view = overLong ? word : normal;
    auto *v = reinterpret_cast<const unsigned char *>(view);
    bool firstUpper = isUpper(charSet, v[0]);
    // What the characters are, worked out only under the options that ask.
    bool onlyWordChars = true;    // letters, apostrophes and hyphens
    bool onlyLetters = true;      // letters and apostrophes
    bool allUpper = true;
    if (mask & (ORTH_IGNORE_MIXED_DIGITS_OPT | ORTH_IGNORE_ALL_CAPS_WORDS_OPT | ORTH_REPORT_MIXED_DIGITS_OPT)) {
        for (const unsigned char *p = v; *p != 0; ++p) {
            bool letter = isLetter(charSet, *p);
            if (!letter && !isApostrophe(*p)) {
                onlyLetters = false;
                if (*p != kHyphen) onlyWordChars = false;
            }
            if (!isUpper(charSet, *p)) allUpper = false;
        }
    }

    int16_t result = 0;
    if (((mask & ORTH_IGNORE_CAPPED_WORDS_OPT) && firstUpper) ||
        ((mask & ORTH_IGNORE_MIXED_CASE_OPT) && mixed) ||
        ((mask & ORTH_IGNORE_MIXED_DIGITS_OPT) && !onlyWordChars) ||
        ((mask & ORTH_IGNORE_ALL_CAPS_WORDS_OPT) && allUpper)) {
        finishCheck(call, replacement, replacementSize);
        return 0;
    }
    if (mask & ORTH_REPORT_SPELLING_OPT) {
        if (gathered == nullptr) gatherLexicons(session, &own);
        if (call.lexicons->texts > 0) setReplacement(call);
        checkSpelling(call, word, normal, length, overLong, mask, &result);
    }

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
