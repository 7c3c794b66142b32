// Round trip on the whole American English list (slow): compressed here
// and as shipped in share/orth/en_US, every word is found, as many absent
// words are not, and case-insensitive lookups agree with the plain model.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "lex/clex.h"
#include "lex_slow/clex_model.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

std::vector<std::string> listWords(const std::string &text) {
    std::vector<std::string> out;
    for (size_t at = 0; at < text.size();) {
        size_t end = text.find("\r\n", at);
        if (end == std::string::npos) break;
        out.push_back(text.substr(at, end - at));
        at = end + 2;
    }
    return out;
}

class FullRoundTrip : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        words = listWords(readFile(std::string(ORTH_SOURCE_DIR) + "/data/en_US.words"));
    }
    static std::vector<std::string> words;
};
std::vector<std::string> FullRoundTrip::words;

void expectEveryWordAndNoOther(const std::string &path, const std::vector<std::string> &words) {
    auto state = std::make_unique<CLexState>();
    ASSERT_EQ(CLex_Open(path.c_str(), 0, state.get()), 0);
    std::unordered_set<std::string> present(words.begin(), words.end());
    size_t absentTried = 0;
    for (const std::string &w : words) {
        ASSERT_EQ(CLex_Lookup(w.c_str(), 0, true, state.get()), 0) << w;
        // An absent neighbour of every word: changed last letter, else extended.
        std::string miss = w;
        miss.back() = miss.back() == 'z' ? 'y' : 'z';
        if (present.count(miss) != 0) miss = w + "qx";
        if (present.count(miss) != 0) continue;
        ++absentTried;
        EXPECT_EQ(CLex_Lookup(miss.c_str(), 0, true, state.get()), ORTH_WORD_NOT_FOUND_ERR) << miss;
    }
    EXPECT_GT(absentTried, words.size() * 9 / 10);
    CLex_Close(state.get());
}

TEST_F(FullRoundTrip, CompressedListHoldsExactlyItsWords) {
    ASSERT_GT(words.size(), 70000u);
    TempDir dir;
    std::string out = dir.file("en_US.clx");
    std::string wf = std::string(ORTH_SOURCE_DIR) + "/data/en_US.words";
    std::string sfx = std::string(ORTH_SOURCE_DIR) + "/data/en.suffixes";
    closeAllSessions();
    int16_t sid = ORTH_OpenSession();
    uint32_t line = 0;
    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), sfx.c_str(), 1033, 0, &line), 0);
    ASSERT_EQ(ORTH_CompressLexFile(sid, wf.c_str(), &line), 0);
    ASSERT_EQ(ORTH_CompressLexEnd(sid), 0);
    closeAllSessions();
    expectEveryWordAndNoOther(out, words);

    // The shipped dictionary is the same file but for the banner's time.
    std::string shipped = readFile(std::string(ORTH_BINARY_DIR) + "/share/orth/en_US/MAIN.CLX");
    std::string mine = readFile(out);
    ASSERT_EQ(shipped.size(), mine.size());
    EXPECT_TRUE(shipped.compare(46, std::string::npos, mine, 46, std::string::npos) == 0);
}

TEST_F(FullRoundTrip, CaseInsensitiveLookupsFollowTheRules) {
    std::string path = std::string(ORTH_BINARY_DIR) + "/share/orth/en_US/MAIN.CLX";
    auto state = std::make_unique<CLexState>();
    ASSERT_EQ(CLex_Open(path.c_str(), 64 * 1024, state.get()), 0);  // evicting as it goes
    clexmodel::Model model(words);
    size_t hidden = 0;
    for (const std::string &w : words) {
        for (const std::string &form : clexmodel::caseForms(w)) {
            bool expected = model.findsIgnoringCase(form);
            hidden += !expected;
            ASSERT_EQ(CLex_Lookup(form.c_str(), 0, false, state.get()), expected ? 0 : ORTH_WORD_NOT_FOUND_ERR)
                << form;
        }
    }
    RecordProperty("forms_hidden_by_early_stop", static_cast<int>(hidden));
    CLex_Close(state.get());
}

}  // namespace
