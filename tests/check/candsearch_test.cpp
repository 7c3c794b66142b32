// Compressed-lexicon candidate search.
// Groups: SegmentSelection (the four levels' rules on keys, sound codes by
// language), LevelSearch (a hand-built lexicon: what each level offers, the
// progressive widening, depths outside 0 to 3, failing segments).
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "check/suggest_int.h"
#include "lex/clex_int.h"
#include "orth.h"

namespace {

uint8_t key(const char *k, int i) { return static_cast<uint8_t>(k[i]); }

std::set<std::string> selected(int level, const char *word, const std::vector<std::string> &keys,
                               uint16_t language = 1033) {
    std::set<std::string> out;
    for (const std::string &k : keys) {
        const uint8_t kb[2] = {key(k.c_str(), 0), key(k.c_str(), 1)};
        if (selectsSegment(level, kb, word, 0, language)) out.insert(k);
    }
    return out;
}

const std::vector<std::string> kKeys = {"ab", "bo", "de", "eh", "et", "fo", "he", "ht", "ph",
                                        "po", "ta", "te", "th", "vo", "xy"};

TEST(SegmentSelection, LevelZeroTakesCloseKeysOnly) {
    EXPECT_EQ(selected(0, "hte", kKeys), (std::set<std::string>{"ht", "th", "he"}));
    EXPECT_EQ(selected(0, "teh", kKeys), (std::set<std::string>{"te", "et", "th"}));
    EXPECT_EQ(selected(0, "THE", kKeys), (std::set<std::string>{"th", "ht", "te"}));
}

TEST(SegmentSelection, LevelOneAddsKeysThatSoundAlikeInEnglishOnly) {
    // p codes as b, and the pair ph as f.
    EXPECT_EQ(selected(1, "phone", kKeys), (std::set<std::string>{"bo", "fo", "ph", "po", "vo"}));
    EXPECT_EQ(selected(1, "phone", kKeys, 1036), (std::set<std::string>{"ph", "po"}));
    EXPECT_EQ(selected(1, "teh", kKeys), (std::set<std::string>{"de", "et", "ta", "te", "th"}));
    // Vowels share one code, so a vowel start selects every vowel segment.
    EXPECT_EQ(selected(1, "oak", kKeys), (std::set<std::string>{"ab", "eh", "et"}));
}

TEST(SegmentSelection, LevelTwoTakesTheFirstLetterAndLevelThreeEverything) {
    EXPECT_EQ(selected(2, "teh", kKeys), (std::set<std::string>{"de", "et", "ta", "te", "th"}));
    EXPECT_EQ(selected(2, "phone", kKeys, 1036), (std::set<std::string>{"ph", "po"}));
    EXPECT_EQ(selected(2, "hte", kKeys), (std::set<std::string>{"he", "ht", "th"}));
    EXPECT_EQ(selected(3, "q", kKeys).size(), kKeys.size());
    EXPECT_TRUE(selected(4, "teh", kKeys).empty());
}

TEST(SegmentSelection, SoundCodes) {
    EXPECT_EQ(letterCode('k', 1033), 'c');
    EXPECT_EQ(letterCode('k', 2057), 'c');
    EXPECT_EQ(letterCode('k', 1031), 0);
    EXPECT_EQ(pairCode('k', 'n', 1033), 'n');   // the pair's letter, not its code
    EXPECT_EQ(pairCode('p', 'h', 1033), 'f');
    EXPECT_EQ(pairCode('h', 'p', 1033), 0);
    EXPECT_EQ(pairCode('p', 'h', 1036), 0);
}

// A compressed lexicon built in memory: every segment is resident, its
// words coded as plain literals (no sharing, no suffixes).
class HandLexicon {
public:
    explicit HandLexicon(const std::vector<std::string> &words, uint16_t language = 1033) {
        state_ = new CLexState{};
        state_->language = language;
        std::map<std::string, std::map<char, std::vector<std::string>>> segs;
        for (const std::string &w : words) {
            if (w.size() < 3) {
                state_->smallWords[state_->smallCount][0] = static_cast<uint8_t>(w[0]);
                state_->smallWords[state_->smallCount][1] = w.size() > 1 ? static_cast<uint8_t>(w[1]) : 0;
                ++state_->smallCount;
            } else {
                segs[w.substr(0, 2)][w[2]].push_back(w);
            }
        }
        state_->segCount = static_cast<uint16_t>(segs.size());
        state_->segs = static_cast<CLexSeg *>(std::calloc(segs.size() + 1, sizeof(CLexSeg)));
        uint16_t i = 0;
        for (auto &[k, blocks] : segs) {
            std::string data;
            size_t b = 0;
            for (auto &[third, list] : blocks) {
                std::string body;
                for (const std::string &w : list) body += w.substr(3) + std::string(1, '\0');
                bool last = ++b == blocks.size();
                while (!last && (6 + body.size()) % 4 != 0) body += '\x05';
                uint32_t len = static_cast<uint32_t>(body.size());
                for (int s = 0; s < 4; ++s) data += static_cast<char>((len >> (8 * s)) & 0xFF);
                data += third;
                data += '\0';
                data += body;
            }
            CLexSeg &seg = state_->segs[i++];
            seg.key[0] = static_cast<uint8_t>(k[0]);
            seg.key[1] = static_cast<uint8_t>(k[1]);
            seg.length = static_cast<uint32_t>(data.size());
            seg.data = static_cast<uint8_t *>(std::malloc(data.size()));
            std::memcpy(seg.data, data.data(), data.size());
        }
        std::strcpy(state_->path, "/nonexistent/orth-test.clx");
    }
    ~HandLexicon() {
        CLex_Close(state_);
        delete state_;
    }
    // Makes a segment fail to load: its data is dropped and the file is missing.
    void unload(const char *k) {
        int32_t seg = findSegment(state_, key(k, 0), key(k, 1));
        ASSERT_GE(seg, 0);
        std::free(state_->segs[seg].data);
        state_->segs[seg].data = nullptr;
    }
    CLexState *state() { return state_; }

private:
    CLexState *state_;
};

std::vector<std::string> search(HandLexicon &lex, const char *word, int16_t depth,
                                Scorer scorer = typographicalScore) {
    std::vector<Suggestion> entries(25);
    SuggestionList list{entries.data(), 0, 25};
    searchCompressedLexicon(depth, word, 0, scorer, &list, lex.state());
    std::vector<std::string> out;
    for (uint16_t i = 0; i < list.count; ++i) out.push_back(list.entries[i].word);
    return out;
}

TEST(LevelSearch, LevelZeroVisitsOnlyTheBlockOfTheThirdCharacter) {
    HandLexicon lex({"hat", "hen", "het", "hex", "the", "then", "thy", "to"});
    // Segment th, block e: the, then; segment he has no block e. The small
    // word to is scored at every depth.
    EXPECT_EQ(search(lex, "hte", 0), (std::vector<std::string>{"the", "to", "then"}));
    EXPECT_EQ(search(lex, "teh", 0), (std::vector<std::string>{"to"}));
    EXPECT_EQ(search(lex, "teh", 1), (std::vector<std::string>{"the", "thy", "to", "then"}));
}

TEST(LevelSearch, ATwoCharacterWordGetsOnlySmallWordsAtLevelZero) {
    HandLexicon lex({"an", "at", "ant", "tan"});
    EXPECT_EQ(search(lex, "ta", 0), (std::vector<std::string>{"at", "an"}));
}

TEST(LevelSearch, ProgressiveModeStopsAtTheFirstLevelThatYields) {
    HandLexicon lex({"bat", "cut"});
    EXPECT_EQ(search(lex, "cat", -1), (std::vector<std::string>{"cut"}));
    EXPECT_EQ(search(lex, "cat", 3), (std::vector<std::string>{"bat", "cut"}));
    HandLexicon far({"bat"});
    EXPECT_EQ(search(far, "cat", -1), (std::vector<std::string>{"bat"}));   // level 3
}

TEST(LevelSearch, DepthsOutsideTheLevelsSearchOnlySmallWords) {
    HandLexicon lex({"ct", "cut"});
    for (int16_t depth : {int16_t(4), int16_t(-2), int16_t(100)}) {
        EXPECT_EQ(search(lex, "cat", depth), (std::vector<std::string>{"ct"})) << depth;
    }
}

TEST(LevelSearch, PhoneticSelectionFindsWordsSpelledDifferentlyAtTheStart) {
    HandLexicon english({"fone", "phony"});
    EXPECT_EQ(search(english, "phone", 1, phoneticScore), (std::vector<std::string>{"phony", "fone"}));
    HandLexicon french({"fone", "phony"}, 1036);
    EXPECT_EQ(search(french, "phone", 1, phoneticScore), (std::vector<std::string>{"phony"}));
}

TEST(LevelSearch, ASegmentThatFailsEndsTheLevelAndKeepsEarlierCandidates) {
    HandLexicon lex({"cab", "cot", "cut", "kat"});
    lex.unload("co");
    std::vector<Suggestion> entries(25);
    SuggestionList list{entries.data(), 0, 25};
    EXPECT_EQ(searchLevel(lex.state(), "cat", 0, typographicalScore, &list, 1), ORTH_FILE_OPEN_ERR);
    ASSERT_EQ(list.count, 1);
    EXPECT_STREQ(list.entries[0].word, "cab");
    // Progressive mode stops there too: level 3 would have offered kat.
    EXPECT_EQ(search(lex, "cat", -1), (std::vector<std::string>{"cab"}));
}

}  // namespace
