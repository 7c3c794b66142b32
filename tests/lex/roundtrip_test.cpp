// Round trip on a sample of the American English list: compressed with the
// shipped suffix table, every sampled word is found, near misses are not,
// and case-insensitive lookups agree with the plain model of the rules.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "lex/clex.h"
#include "lex_slow/clex_model.h"
#include "orth.h"
#include "support/test_util.h"

namespace {

std::vector<std::string> sampleWords(size_t every) {
    std::string text = readFile(std::string(ORTH_SOURCE_DIR) + "/data/en_US.words");
    std::vector<std::string> out;
    size_t n = 0;
    for (size_t at = 0; at < text.size();) {
        size_t end = text.find("\r\n", at);
        if (end == std::string::npos) break;
        if (n++ % every == 0) out.push_back(text.substr(at, end - at));
        at = end + 2;
    }
    return out;
}

TEST(SampleRoundTrip, EverySampledWordIsFoundAndNearMissesAreNot) {
    std::vector<std::string> words = sampleWords(37);
    ASSERT_GT(words.size(), 1500u);
    std::set<std::string> present(words.begin(), words.end());
    TempDir dir;
    std::string list, wf = dir.file("sample.words"), out = dir.file("sample.clx");
    for (const std::string &w : words) list += w + "\r\n";
    writeFile(wf, list);
    closeAllSessions();
    int16_t sid = ORTH_OpenSession();
    uint32_t line = 0;
    std::string suffixes = std::string(ORTH_SOURCE_DIR) + "/data/en.suffixes";
    ASSERT_EQ(ORTH_CompressLexInit(sid, out.c_str(), suffixes.c_str(), 1033, 0, &line), 0);
    ASSERT_EQ(ORTH_CompressLexFile(sid, wf.c_str(), &line), 0);
    EXPECT_EQ(line, words.size());
    ASSERT_EQ(ORTH_CompressLexEnd(sid), 0);
    closeAllSessions();

    auto state = std::make_unique<CLexState>();
    ASSERT_EQ(CLex_Open(out.c_str(), 0, state.get()), 0);
    clexmodel::Model model(words);
    for (const std::string &w : words) {
        SCOPED_TRACE(w);
        ASSERT_EQ(CLex_Lookup(w.c_str(), 0, true, state.get()), 0);
        for (const std::string &miss : {w + "q", w.substr(0, w.size() - 1), "q" + w}) {
            if (miss.empty() || present.count(miss) != 0) continue;
            EXPECT_EQ(CLex_Lookup(miss.c_str(), 0, true, state.get()), ORTH_WORD_NOT_FOUND_ERR) << miss;
        }
        for (const std::string &form : clexmodel::caseForms(w)) {
            int16_t expected = model.findsIgnoringCase(form) ? 0 : ORTH_WORD_NOT_FOUND_ERR;
            EXPECT_EQ(CLex_Lookup(form.c_str(), 0, false, state.get()), expected) << form;
        }
    }
    CLex_Close(state.get());
}

}  // namespace
