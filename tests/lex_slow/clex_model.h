// tests/lex_slow/clex_model.h — a plain restatement of the compressed
// lexicon's lookup rules over word lists, to check the reader against:
// one- and two-character words are found by any of four case forms; longer
// words by walking, for each of the four key forms in turn, that key's
// words in file order until one folds equal (found) or folds greater than
// the sought word (that key is done). Case rules are those of ISO 8859-1.
#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace clexmodel {

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
        for (const std::string &w : words) {
            if (w.size() < 3) small.push_back(w);
            else segments[w.substr(0, 2)].push_back(w);
        }
        for (auto &seg : segments) std::sort(seg.second.begin(), seg.second.end());
    }

    bool findsIgnoringCase(const std::string &w) const {
        auto c1 = static_cast<unsigned char>(w[0]), c2 = static_cast<unsigned char>(w[1]);
        const std::string keys[4] = {{char(lower(c1)), char(lower(c2))}, {char(upper(c1)), char(lower(c2))},
                                     {char(upper(c1)), char(upper(c2))}, {char(lower(c1)), char(upper(c2))}};
        for (const std::string &key : keys) {
            if (w.size() < 3) {
                std::string form = w.size() == 1 ? key.substr(0, 1) : key;
                if (std::find(small.begin(), small.end(), form) != small.end()) return true;
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
