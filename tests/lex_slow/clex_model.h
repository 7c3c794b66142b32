// tests/lex_slow/clex_model.h — what the compressed-lexicon tests share:
// building a lexicon through the ORTH_ calls, reading CR LF lists, log and
// byte helpers, and a plain restatement of the lookup rules to check the
// reader against: one- and two-character words are found by any of four
// case forms; longer words by walking, for each of the four key forms in
// turn, that key's words in file order until one folds equal (found) or
// folds greater than the sought word (that key is done). Case rules are
// those of ISO 8859-1.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "orth.h"
#include "support/test_util.h"

namespace clexmodel {

inline std::string crlf(const std::vector<std::string> &lines) {
    std::string out;
    for (const std::string &l : lines) out += l + "\r\n";
    return out;
}

// The CR LF terminated lines of text; an unterminated tail is dropped.
inline std::vector<std::string> splitCrlf(const std::string &text) {
    std::vector<std::string> out;
    for (size_t at = 0, end; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2)
        out.push_back(text.substr(at, end - at));
    return out;
}

// Compresses word files (and a suffix file) into out in session sid; the
// first failing call's code (the run then aborted), or End's. line gets the
// line number the last File call reported.
inline int16_t compress(int16_t sid, const std::string &out, const std::vector<std::string> &wordFiles,
                        const char *suffixFile = nullptr, uint16_t language = 1033, uint32_t *line = nullptr) {
    uint32_t n = 0;
    int16_t rc = ORTH_CompressLexInit(sid, out.c_str(), suffixFile, language, 0, &n);
    for (size_t i = 0; rc == 0 && i < wordFiles.size(); ++i) rc = ORTH_CompressLexFile(sid, wordFiles[i].c_str(), &n);
    if (line != nullptr) *line = n;
    if (rc < 0) ORTH_CompressLexAbort(sid);
    return rc < 0 ? rc : ORTH_CompressLexEnd(sid);
}

// A log line equal to message (debug builds may add " [file:line]"), or
// only starting with it when prefix is set.
inline bool logged(const LogCapture &log, const std::string &message, bool prefix = false) {
    for (const std::string &line : log.lines()) {
        if (line == message || line.rfind(prefix ? message : message + " [", 0) == 0) return true;
    }
    return false;
}

// Little-endian numbers of a file image, and bytes given as numbers.
template <typename T> T le(const std::string &b, size_t at) {
    T v = 0;
    for (size_t i = sizeof(T); i-- > 0;) v = static_cast<T>(v << 8 | static_cast<uint8_t>(b[at + i]));
    return v;
}
inline std::string bytes(std::initializer_list<int> v) { return std::string(v.begin(), v.end()); }
inline void putLe(std::string &b, size_t at, uint32_t v, int width) {
    for (int i = 0; i < width; ++i) b[at + i] = static_cast<char>(v >> (8 * i));
}

inline unsigned char lower(unsigned char c) {
    return ((c >= 'A' && c <= 'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7)) ? c + 32 : c;
}
inline unsigned char upper(unsigned char c) {
    return ((c >= 'a' && c <= 'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7)) ? c - 32 : c;
}

inline int foldCompare(const std::string &a, const std::string &b) {
    for (size_t i = 0;; ++i) {
        int x = i < a.size() ? lower(a[i]) : 0, y = i < b.size() ? lower(b[i]) : 0;
        if (x != y || x == 0) return x - y;
    }
}

struct Model {
    std::vector<std::string> small;                           // as given
    std::map<std::string, std::vector<std::string>> segments;  // key -> words, byte-wise order

    explicit Model(const std::vector<std::string> &words) {
        for (const std::string &w : words) (w.size() < 3 ? small : segments[w.substr(0, 2)]).push_back(w);
        for (auto &seg : segments) std::sort(seg.second.begin(), seg.second.end());
    }

    bool findsIgnoringCase(const std::string &w) const {
        auto c1 = static_cast<unsigned char>(w[0]), c2 = static_cast<unsigned char>(w[1]);
        const std::string keys[4] = {{char(lower(c1)), char(lower(c2))}, {char(upper(c1)), char(lower(c2))},
                                     {char(upper(c1)), char(upper(c2))}, {char(lower(c1)), char(upper(c2))}};
        for (const std::string &key : keys) {
            if (w.size() < 3) {
                if (std::count(small.begin(), small.end(), key.substr(0, w.size())) != 0) return true;
                continue;
            }
            auto seg = segments.find(key);
            if (seg == segments.end()) continue;
            for (const std::string &entry : seg->second) {
                int d = foldCompare(w, entry);
                if (d == 0) return true;
                if (d < 0) break;
            }
        }
        return false;
    }
};

// The case forms a user might type: all upper, all lower, capitalised.
inline std::vector<std::string> caseForms(const std::string &w) {
    std::string up = w, low = w, cap = w;
    for (auto &c : up) c = static_cast<char>(upper(c));
    for (auto &c : low) c = static_cast<char>(lower(c));
    cap[0] = static_cast<char>(upper(cap[0]));
    return {up, low, cap};
}

}  // namespace clexmodel
