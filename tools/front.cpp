// tools/front.cpp — the front-end rule over the engine's answers: all-capitals
// forms of accepted words, suggestions without repeats or doubled
// possessives, and the check that tells a whole word from one accepted in
// parts.
//
// Design notes
// (1) The engine is asked, never changed: every answer starts from
//     ORTH_CheckWord, ORTH_FindCaseForm, ORTH_Suggest or ORTH_SuggestRanked
//     under the session's own options, and the only session change
//     (acceptedBySplitting) is undone before return.
// (2) An all-capitals word is tried cheaply first (its capitalised and
//     lower-case forms, which settle nearly every case); only then are the
//     dictionary's own case forms looked for (ORTH_FindCaseForm, which
//     finds mixed-case words such as MySpace). The answer is remembered in
//     the caller's CapsMemo.
// (3) fetchSuggestions is the one place that asks the engine for the
//     suggestions users see; everything after it works on its list.
#include <cctype>
#include <cstring>

#include "check/chartab.h"
#include "orth.h"
#include "tools/cli.h"
#include "tools/front.h"

namespace {

constexpr size_t kMemoLimit = 4096;  // answers kept before the memo starts over

int charSetOf(int16_t session) {
    int32_t cs = ORTH_GetOption(session, ORTH_CHARSET_OPT);
    return cs < 0 ? 0 : static_cast<int>(cs);
}

bool isAccepted(int16_t rc) {
    return rc >= 0 && (rc & (ORTH_CHK_MISSPELLED | ORTH_CHK_AUTO_CHANGE | ORTH_CHK_CONDITIONAL_CHANGE)) == 0;
}

bool checkAccepts(int16_t session, const std::string &word) {
    char replacement[kWordBufSize];
    return isAccepted(ORTH_CheckWord(session, 0, word.c_str(), replacement, sizeof replacement));
}

// Whether every letter of word is upper case and has a lower-case partner
// (scripts without case have none), with at least one letter.
bool isAllCapitals(const char *word, int cs) {
    bool letters = false;
    for (const char *p = word; *p != '\0'; ++p) {
        auto c = static_cast<unsigned char>(*p);
        uint8_t cls = classOf(cs, c);
        if ((cls & CC_LETTER) == 0) continue;
        if ((cls & CC_UPPER) == 0 || (classOf(cs, toLowerChar(cs, c)) & CC_LOWER) == 0) return false;
        letters = true;
    }
    return letters;
}

std::string lowered(const std::string &word, size_t from, int cs) {
    std::string out = word;
    for (size_t i = from; i < out.size(); ++i)
        out[i] = static_cast<char>(toLowerChar(cs, static_cast<unsigned char>(out[i])));
    return out;
}

// Whether the dictionary holds the word in another case form (MySpace for
// MYSPACE) that the session accepts: the engine looks through every case
// form of every lexicon.
bool hasAcceptedCaseForm(int16_t session, const std::string &word) {
    return ORTH_FindCaseForm(session, word.c_str(), nullptr, 0) == 0;
}

bool hasPossessiveEnding(const std::string &w, int cs) {
    size_t n = w.size();
    if (n < 2) return false;
    auto a = static_cast<unsigned char>(w[n - 2]), b = static_cast<unsigned char>(w[n - 1]);
    return (isApostrophe(a) && toLowerChar(cs, b) == 's') || (toLowerChar(cs, a) == 's' && isApostrophe(b));
}

// The one call that asks the engine for suggestions.
int16_t fetchSuggestions(int16_t session, const char *word, uint16_t maxCount, SuggestRanking ranking,
                         std::vector<FrontSuggestion> *out) {
    std::vector<char> list(64u * maxCount + 1u);
    std::vector<int16_t> scores(maxCount);
    auto size = static_cast<int32_t>(list.size());
    int16_t rc = ranking == SuggestRanking::Ranked
                     ? ORTH_SuggestRanked(session, word, list.data(), size, scores.data(), maxCount)
                     : ORTH_Suggest(session, word, -1, list.data(), size, scores.data(), maxCount);
    if (rc < 0 && rc != ORTH_BUFFER_TOO_SMALL_ERR) return rc;
    list.back() = '\0';
    size_t pos = 0;
    for (uint16_t n = 0; n < maxCount && list[pos] != '\0'; ++n) {
        out->push_back({list.data() + pos, scores[n]});
        pos += out->back().word.size() + 1;
    }
    return 0;
}

// The all-capitals half of frontAcceptsRejected.
bool acceptsAllCapitals(int16_t session, const char *word, CapsMemo *memo) {
    // Bytes below 0x80 are classed alike in every character set: a word
    // that starts with a lower-case ASCII letter (most words) is settled
    // without asking the session for its set.
    if (*word >= 'a' && *word <= 'z') return false;
    int cs = charSetOf(session);
    size_t len = std::strlen(word);
    if (len == 0 || len > static_cast<size_t>(kMaxWordLen) || !isAllCapitals(word, cs)) return false;
    std::string w(word, len);
    if (memo != nullptr) {
        auto it = memo->accepted.find(w);
        if (it != memo->accepted.end()) return it->second;
    }
    std::string capitalised = lowered(w, 1, cs), lower = lowered(w, 0, cs);
    bool ok = checkAccepts(session, capitalised) || checkAccepts(session, lower) || hasAcceptedCaseForm(session, w);
    if (memo != nullptr) {
        if (memo->accepted.size() >= kMemoLimit) memo->accepted.clear();
        memo->accepted.emplace(w, ok);
    }
    return ok;
}

// Numbers, ordinals with the right ending (1st, 22nd, 113th, 2ND) and
// plurals of numbers (1990s, 80s).
bool isNumberWord(const char *word) {
    size_t digits = 0;
    while (word[digits] >= '0' && word[digits] <= '9') ++digits;
    if (digits == 0) return false;
    std::string rest;
    for (const char *p = word + digits; *p != '\0'; ++p)
        rest += static_cast<char>(std::tolower(static_cast<unsigned char>(*p)));
    if (rest.empty() || rest == "s") return true;
    int last = word[digits - 1] - '0', tens = digits > 1 ? word[digits - 2] - '0' : 0;
    const char *ending = tens == 1 || last == 0 || last > 3 ? "th" : last == 1 ? "st" : last == 2 ? "nd" : "rd";
    return rest == ending;
}

}  // namespace

bool frontAcceptsRejected(int16_t session, const char *word, CapsMemo *memo) {
    if (isNumberWord(word) || acceptsAllCapitals(session, word, memo)) return true;
    size_t n = std::strlen(word);
    if (n < 3 || n > static_cast<size_t>(kMaxWordLen) || !isApostrophe(static_cast<unsigned char>(word[n - 1])) ||
        toLowerChar(charSetOf(session), static_cast<unsigned char>(word[n - 2])) != 's')
        return false;
    std::string plural(word, n - 1);
    return checkAccepts(session, plural) || acceptsAllCapitals(session, plural.c_str(), memo);
}

int16_t frontCheckWord(int16_t session, const char *word, char replacement[64], CapsMemo *memo, bool *byRule) {
    int16_t rc = ORTH_CheckWord(session, 0, word, replacement, kWordBufSize);
    bool rule = rc > 0 && (rc & ORTH_CHK_MISSPELLED) != 0 && frontAcceptsRejected(session, word, memo);
    if (rule) rc = static_cast<int16_t>(rc & ~(ORTH_CHK_MISSPELLED | ORTH_CHK_NON_LETTERS));
    if (byRule != nullptr) *byRule = rule;
    return rc;
}

bool acceptedBySplitting(int16_t session, const char *word) {
    static const uint32_t kSplits[] = {ORTH_SPLIT_HYPHENATED_WORDS_OPT, ORTH_SPLIT_CONTRACTED_WORDS_OPT,
                                       ORTH_SPLIT_WORDS_OPT};
    bool separators = std::strpbrk(word, "-'\x92") != nullptr;
    uint32_t turnedOff = 0;
    for (uint32_t opt : kSplits) {
        if (opt != ORTH_SPLIT_WORDS_OPT && !separators) continue;
        if (ORTH_SetOption(session, opt, 0) == 1) turnedOff |= opt;
    }
    if (turnedOff == 0) return false;
    char replacement[kWordBufSize];
    int16_t rc = ORTH_CheckWord(session, 0, word, replacement, sizeof replacement);
    for (uint32_t opt : kSplits)
        if (turnedOff & opt) ORTH_SetOption(session, opt, 1);
    return rc >= 0 && (rc & ORTH_CHK_MISSPELLED) != 0;
}

int16_t frontSuggest(int16_t session, const char *word, int maxCount, std::vector<FrontSuggestion> *out,
                     SuggestRanking ranking) {
    out->clear();
    if (maxCount <= 0) return 0;
    // Repeats are dropped below, so ask for a few more than are wanted.
    int asked = maxCount + maxCount / 2 + 2;
    std::vector<FrontSuggestion> raw;
    int16_t rc = fetchSuggestions(session, word, static_cast<uint16_t>(asked > 100 ? 100 : asked), ranking, &raw);
    if (rc < 0) return rc;
    int cs = charSetOf(session);
    bool possessive = hasPossessiveEnding(word, cs);
    for (FrontSuggestion &s : raw) {
        // The engine gives every candidate the word's possessive ending; a
        // candidate that already had one (Kinko's) would end up with two.
        if (possessive && hasPossessiveEnding(s.word, cs) &&
            hasPossessiveEnding(s.word.substr(0, s.word.size() - 2), cs))
            s.word.resize(s.word.size() - 2);
        bool seen = false;
        for (const FrontSuggestion &kept : *out) seen = seen || kept.word == s.word;
        if (!seen) out->push_back(s);
        if (out->size() == static_cast<size_t>(maxCount)) break;
    }
    return 0;
}

void keepLikelySuggestions(std::vector<FrontSuggestion> *sugs, size_t maxShown) {
    constexpr int16_t kMinScore = 50, kMaxBehindBest = 20;
    if (sugs->empty()) return;
    int16_t floor = sugs->front().score - kMaxBehindBest;
    if (floor < kMinScore) floor = kMinScore;
    size_t keep = 0;
    while (keep < sugs->size() && keep < maxShown && (*sugs)[keep].score >= floor) ++keep;
    sugs->resize(keep);
}

bool wordFromUtf8(const std::string &utf8, std::string *out) {
    Encoded enc = encodeUtf8(utf8);
    if (enc.bytes.empty() || enc.bytes.size() > static_cast<size_t>(kMaxWordLen) ||
        enc.hasForeign(0, enc.bytes.size()) || enc.bytes.find(' ') != std::string::npos)
        return false;
    *out = enc.bytes;
    return true;
}
