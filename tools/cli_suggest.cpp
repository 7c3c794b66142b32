// tools/cli_suggest.cpp — `orth suggest`: for each word, whether it is
// correct, or what it could be instead. Suggestions come from the ranked
// suggester (ORTH_SuggestRanked), or with --defined from ORTH_Suggest.
//
// Output, one line per word, the word as the user wrote it:
//   * WORD                          the word is correct
//   & WORD: SUG (SCORE), SUG (SCORE)  suggestions scoring at least 50, best first
//   # WORD                          not correct, and nothing to suggest
// A word holding a character the dictionary's set cannot hold is "#".
#include <cstring>

#include "orth.h"
#include "tools/cli.h"

namespace {

constexpr int kMaxSugs = 25;           // as many as the dictionary library asks for
constexpr int kSugBufSize = 25 * 64 + 1;  // room for 25 words of 63 characters
constexpr int16_t kMinShownScore = 50;    // weaker candidates are noise

// Checks one word; prints its line; returns true when it is correct.
bool suggestWord(int16_t session, const std::string &shown, const Encoded &enc, bool defined, bool *failed) {
    std::string bytes = enc.bytes.substr(0, 63);
    std::string out;
    bool correct = false;
    if (enc.hasForeign(0, enc.bytes.size())) {
        out = "# " + shown;
    } else {
        char replacement[64];
        int16_t rc = ORTH_CheckWord(session, 0, bytes.c_str(), replacement, sizeof replacement);
        if (rc < 0) {
            reportError("%s: cannot check: %s", shown.c_str(), describeResult(rc).c_str());
            *failed = true;
            return false;
        }
        correct = rc == 0;
        if (correct) {
            out = "* " + shown;
        } else {
            char list[kSugBufSize];
            int16_t scores[kMaxSugs] = {};
            rc = defined ? ORTH_Suggest(session, bytes.c_str(), -1, list, kSugBufSize, scores, kMaxSugs)
                         : ORTH_SuggestRanked(session, bytes.c_str(), list, kSugBufSize, scores, kMaxSugs);
            if (rc < 0 && rc != ORTH_BUFFER_TOO_SMALL_ERR) list[0] = '\0';
            list[kSugBufSize - 1] = '\0';
            // Suggestions come back with the plain apostrophe; give them the
            // user's typographic one when the word had it.
            bool typo = shown.find("\xE2\x80\x99") != std::string::npos;
            std::string sugs;
            size_t pos = 0;
            for (int n = 0; n < kMaxSugs && list[pos] != '\0'; ++n) {
                if (scores[n] < kMinShownScore) break;
                if (!sugs.empty()) sugs += ", ";
                sugs += decodeToUtf8(list + pos, typo) + " (" + std::to_string(scores[n]) + ")";
                pos += std::strlen(list + pos) + 1;
            }
            out = sugs.empty() ? "# " + shown : "& " + shown + ": " + sugs;
        }
    }
    out += '\n';
    std::fwrite(out.data(), 1, out.size(), stdout);
    return correct;
}

// Splits standard input into words with the engine's block scanner.
bool wordsOfText(int16_t session, const std::string &text, std::vector<std::string> *words) {
    for (const std::string &line : splitLines(text)) {
        if (line.empty()) continue;
        LineBlock lb;
        if (!lb.open(session, line)) {
            reportError("cannot read the input: %s", describeResult(lb.id).c_str());
            return false;
        }
        const int16_t block = lb.id;
        char word[64];
        for (;;) {
            if (ORTH_GetBlockWord(session, block, word, sizeof word) < 0) break;
            words->push_back(lb.wordAtCursor(session, std::strlen(word)));
            if (ORTH_NextBlockWord(session, block) < 0) break;
        }
        ORTH_CloseBlock(session, block);
    }
    return true;
}

}  // namespace

int runSuggest(const GlobalOptions &opts, const std::vector<std::string> &args) {
    std::vector<std::string> words;
    bool onlyWords = false, defined = false;
    for (const std::string &a : args) {
        if (!onlyWords && a == "--") onlyWords = true;
        else if (!onlyWords && a == "--defined") defined = true;
        else if (!onlyWords && a.size() > 1 && a[0] == '-') {
            reportError("suggest: unknown option %s (see orth --help)", a.c_str());
            return kExitError;
        } else words.push_back(a);
    }
    DictSession ds;
    if (!openDictionary(opts, &ds)) return kExitError;
    bool failed = false;
    if (words.empty()) {
        std::string text;
        if (!readAll("-", &text)) {
            reportError("standard input: %s", errnoText().c_str());
            failed = true;
        } else if (!wordsOfText(ds.session, text, &words)) {
            failed = true;
        }
    }
    bool allCorrect = true;
    for (const std::string &w : words) {
        if (w.empty()) continue;
        if (!suggestWord(ds.session, w, encodeUtf8(w), defined, &failed)) allCorrect = false;
    }
    closeDictionary(&ds);
    std::fflush(stdout);
    if (failed) return kExitError;
    return allCorrect ? kExitOk : kExitFound;
}
