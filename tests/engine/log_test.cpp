// The diagnostic log: the time prefix, the started/stopped lines with their
// date text and empty line, switching files, and a log that cannot be written.
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "orth.h"
#include "support/test_util.h"

namespace {

const std::regex kStamp(R"(^\d\d:\d\d:\d\d $)");
const std::regex kDate(R"([A-Z][a-z]{2} [A-Z][a-z]{2} \d\d \d\d:\d\d:\d\d \d{4})");

class DiagnosticLog : public ::testing::Test {
protected:
    void SetUp() override { closeAllSessions(); }
    void TearDown() override {
        ORTH_SetDebugFile(nullptr);
        closeAllSessions();
    }
    TempDir dir;
};

TEST_F(DiagnosticLog, StartedLineEmptyLineThenStampedMessages) {
    std::string path = dir.file("a.log");
    ORTH_SetDebugFile(path.c_str());
    EXPECT_EQ(ORTH_OpenLex(99, "x", 0), ORTH_BAD_SESSION_ID_ERR);
    std::string text = readFile(path);
    std::regex whole(R"(^\d\d:\d\d:\d\d Debugging started at [A-Z][a-z]{2} [A-Z][a-z]{2} \d\d )"
                     R"(\d\d:\d\d:\d\d \d{4}\n\n\d\d:\d\d:\d\d ORTH_OpenLex: bad session id 99\n$)");
    EXPECT_TRUE(std::regex_match(text, whole)) << text;
}

TEST_F(DiagnosticLog, StopLineOnlyWhenTurnedOffWithNull) {
    std::string first = dir.file("first.log"), second = dir.file("second.log");
    ORTH_SetDebugFile(first.c_str());
    ORTH_SetDebugFile(second.c_str());  // redirect: no stop line in the first file
    EXPECT_EQ(readFile(first).find("stopped"), std::string::npos);
    EXPECT_NE(readFile(second).find("Debugging started at "), std::string::npos);
    ORTH_SetDebugFile(nullptr);
    std::string text = readFile(second);
    size_t at = text.find("Debugging stopped at ");
    ASSERT_NE(at, std::string::npos);
    EXPECT_TRUE(std::regex_search(text.substr(at), kDate));
    EXPECT_EQ(text.substr(text.size() - 2), "\n\n");
    // Off already: null writes nothing; "" turns off without a stop line.
    size_t before = readFile(second).size();
    ORTH_SetDebugFile(nullptr);
    ORTH_SetDebugFile(second.c_str());
    ORTH_SetDebugFile("");
    std::string after = readFile(second);
    EXPECT_EQ(after.find("stopped", before), std::string::npos);
    ORTH_OpenSession();
    EXPECT_EQ(readFile(second), after);
}

TEST_F(DiagnosticLog, NoFileNoOutputAndUnwritableFileChangesNoResult) {
    ORTH_SetDebugFile(nullptr);
    EXPECT_EQ(ORTH_OpenSession(), 0);
    std::string missing = dir.file("no/such/folder/x.log");
    ORTH_SetDebugFile(missing.c_str());
    EXPECT_EQ(ORTH_OpenSession(), 1);
    EXPECT_EQ(ORTH_CloseSession(7), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_FALSE(fileExists(missing));
}

TEST_F(DiagnosticLog, OverlongNameIsCutTo259Characters) {
    std::string name = dir.path() + "/" + std::string(400, 'n');
    ORTH_SetDebugFile(name.c_str());
    ORTH_OpenSession();
    ORTH_SetDebugFile(nullptr);
    EXPECT_TRUE(fileExists(name.substr(0, 259)));
}

TEST_F(DiagnosticLog, EveryLineHasTheTimePrefix) {
    std::string path = dir.file("p.log");
    ORTH_SetDebugFile(path.c_str());
    ORTH_OpenSession();
    ORTH_CloseSession(0);
    ORTH_SetDebugFile(nullptr);
    std::string text = readFile(path);
    size_t start = 0;
    int stamped = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        std::string line = text.substr(start, end - start);
        if (!line.empty()) {
            EXPECT_TRUE(std::regex_match(line.substr(0, 9), kStamp)) << line;
            ++stamped;
        }
        start = end + 1;
    }
    EXPECT_EQ(stamped, 4);
}

}  // namespace
