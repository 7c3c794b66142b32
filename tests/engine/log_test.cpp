// The diagnostic log.
// Groups: DiagnosticLog (the file format: time prefix on every line, the
// started and stopped lines with their date text and empty lines; switching
// files and the two ways of turning off; a log that cannot be written; the
// 259-character name).
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "orth.h"
#include "support/test_util.h"

TEST(DiagnosticLog, FileFormatSwitchingFilesUnwritableFilesAndLongNames) {
    closeAllSessions();
    TempDir dir;
    auto holds = [](std::string file, std::string re) { return std::regex_match(readTextFile(file), std::regex(re)); };
    const std::string first = dir.file("first.log"), second = dir.file("second.log"), t = R"(\d\d:\d\d:\d\d )",
                      date = R"( at [A-Z][a-z]{2} [A-Z][a-z]{2} \d\d \d\d:\d\d:\d\d \d{4}\n\n)",  // and an empty line
                      started = t + "Debugging started" + date, stop = t + "Debugging stopped" + date;
    ORTH_SetDebugFile(first.c_str());
    EXPECT_EQ(ORTH_OpenLex(99, "x", 0), ORTH_BAD_SESSION_ID_ERR);
    ORTH_SetDebugFile(second.c_str());  // redirect: no stop line in the first file
    EXPECT_TRUE(holds(first, started + t + "ORTH_OpenLex: bad session id 99\n")) << readFile(first);
    EXPECT_EQ(ORTH_OpenSession(), 0);
    ORTH_SetDebugFile(nullptr);
    ORTH_SetDebugFile(nullptr);  // off already: writes nothing
    const std::string stopped = started + t + "ORTH_OpenSession: session opened\n" + stop;
    EXPECT_TRUE(holds(second, stopped)) << readFile(second);
    ORTH_SetDebugFile(second.c_str());
    ORTH_SetDebugFile("");  // off without a stop line, and nothing more is written
    ORTH_OpenSession();
    EXPECT_TRUE(holds(second, stopped + started)) << readFile(second);
    // A log that cannot be written changes no result; a long name is cut.
    const std::string missing = dir.file("no/such/folder/x.log"), longName = dir.path() + "/" + std::string(400, 'n');
    ORTH_SetDebugFile(missing.c_str());
    EXPECT_EQ((std::vector<int16_t>{ORTH_OpenSession(), ORTH_CloseSession(7)}), (std::vector<int16_t>{2, -2}));
    EXPECT_FALSE(fileExists(missing));
    ORTH_SetDebugFile(longName.c_str());
    ORTH_SetDebugFile(nullptr);
    EXPECT_TRUE(fileExists(longName.substr(0, 259)));
}
