// Round trip on the whole American English list (slow). Group FullRoundTrip:
// the list the build compressed (the source list with possessives reduced to
// their stems), compressed here, equals the one shipped in share/orth/en_US
// but for the banner's time; in it every word is found, an absent neighbour
// of each is not, and case-insensitive lookups agree with the plain model,
// under a budget small enough to evict as it goes.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "lex/clex.h"
#include "lex_slow/clex_model.h"

namespace {

TEST(FullRoundTrip, ShippedListHoldsExactlyItsWordsAndFollowsTheCaseRules) {
    const std::string src = ORTH_SOURCE_DIR, shippedPath = std::string(ORTH_BINARY_DIR) + "/share/orth/en_US/MAIN.CLX";
    const std::string list = std::string(ORTH_BINARY_DIR) + "/data/en_US.stems";
    const std::vector<std::string> words = clexmodel::splitCrlf(readFile(list));
    ASSERT_GT(words.size(), 70000u);
    TempDir dir;
    closeAllSessions();
    uint32_t line = 0;
    ASSERT_EQ(clexmodel::compress(ORTH_OpenSession(), dir.file("en_US.clx"), {list},
                                  (src + "/data/en.suffixes").c_str(), 1033, &line), 0);
    EXPECT_EQ(line, words.size());
    closeAllSessions();
    std::string shipped = readFile(shippedPath), mine = readFile(dir.file("en_US.clx"));
    ASSERT_EQ(shipped.size(), mine.size());
    EXPECT_TRUE(shipped.compare(46, std::string::npos, mine, 46, std::string::npos) == 0);

    auto state = std::make_unique<CLexState>();
    ASSERT_EQ(CLex_Open(shippedPath.c_str(), 64 * 1024, state.get()), 0);
    std::unordered_set<std::string> present(words.begin(), words.end());
    clexmodel::Model model(words);
    size_t absentTried = 0, hidden = 0;
    for (const std::string &w : words) {
        ASSERT_EQ(CLex_Lookup(w.c_str(), 0, true, state.get()), 0) << w;
        // An absent neighbour: changed last letter, else extended.
        std::string miss = w;
        miss.back() = miss.back() == 'z' ? 'y' : 'z';
        if (present.count(miss) != 0) miss = w + "qx";
        if (present.count(miss) == 0) {
            ++absentTried;
            EXPECT_EQ(CLex_Lookup(miss.c_str(), 0, true, state.get()), ORTH_WORD_NOT_FOUND_ERR) << miss;
        }
        for (const std::string &form : clexmodel::caseForms(w)) {
            bool expected = model.findsIgnoringCase(form);
            hidden += !expected;
            ASSERT_EQ(CLex_Lookup(form.c_str(), 0, false, state.get()), expected ? 0 : ORTH_WORD_NOT_FOUND_ERR) << form;
        }
    }
    EXPECT_GT(absentTried, words.size() * 9 / 10);
    RecordProperty("forms_hidden_by_early_stop", static_cast<int>(hidden));
    CLex_Close(state.get());
}

}  // namespace
