// Sessions, result-code names and options.
// Groups: SessionTable (sixteen slots, lowest free first, reuse, bad ids and
// their log lines, the version), ResultCodeName, Options (defaults in every
// new or reused session, the previous value returned, sign widening,
// multi-bit ids). Each test starts by closing every session left open.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orth.h"
#include "support/test_util.h"

using Results = std::vector<int32_t>;

TEST(SessionTable, SixteenSlotsLowestFreeFirstReusedAndBadIdsRefused) {
    closeAllSessions();
    LogCapture log;
    for (int16_t i = 0; i < 16; ++i) EXPECT_EQ(ORTH_OpenSession(), i);
    EXPECT_EQ(ORTH_OpenSession(), ORTH_TOO_MANY_SESSIONS_ERR);
    EXPECT_EQ(ORTH_CloseSession(3), 0);
    for (int16_t bad : {3, 16, -1, -32768, 32767}) {  // 3: closed just now
        EXPECT_EQ((Results{ORTH_CloseSession(bad), ORTH_SetOption(bad, 1, 0), ORTH_GetOption(bad, ORTH_CHARSET_OPT)}),
                  Results(3, ORTH_BAD_SESSION_ID_ERR)) << bad;
        for (const std::string fn : {"ORTH_CloseSession", "ORTH_SetOption", "ORTH_GetOption"})
            EXPECT_TRUE(log.contains(fn + ": bad session id " + std::to_string(bad))) << fn << " " << bad;
    }
    EXPECT_EQ(ORTH_OpenSession(), 3);
    for (const char *line : {"ORTH_OpenSession: too many sessions", "ORTH_CloseSession: Session 3 closed",
                             "ORTH_OpenSession: session opened"})
        EXPECT_TRUE(log.contains(line)) << line;
}

TEST(ResultCodeName, NamesEveryTableCodeAndAFixedTextOutsideAndTheVersionIs421) {
    const std::string unknown = "Unknown result code";
    const std::pair<int16_t, std::string> names[] = {
        {0, "Ok."}, {-1, "ORTH_TOO_MANY_SESSIONS_ERR"}, {-8, "ORTH_BUFFER_TOO_SMALL_ERR"}, {-17, unknown},
        {-16, "ORTH_BAD_BLOCK_ID_ERR"}, {-25, unknown}, {1, unknown}, {-32768, unknown}, {32767, unknown}};
    for (const auto &n : names) EXPECT_EQ(resultCodeName(n.first), n.second) << n.first;
    uint16_t major = 0, minor = 0;
    ORTH_Version(&major, &minor);
    EXPECT_EQ(major * 100 + minor, 421);
    ORTH_Version(nullptr, nullptr);  // harmless
}

TEST(Options, SetReturnsThePreviousValueAndEverySessionStartsFromTheDefaults) {
    closeAllSessions();
    const int16_t s = ORTH_OpenSession(), other = ORTH_OpenSession();
    const uint32_t lang = ORTH_LANGUAGE_OPT, cs = ORTH_CHARSET_OPT, caseOpt = ORTH_CASE_SENSITIVE_OPT;
    // Set an option to a value: the previous value, then what an id reads.
    const struct { uint32_t option, value; int32_t previous; uint32_t readOption; int32_t read; } steps[] = {
        {caseOpt, 0, 1, caseOpt, 0}, {caseOpt, 0, 0, caseOpt, 0}, {lang, 2057, 1033, lang, 2057},
        {cs, 0x10003, 0, cs, 3}, {lang, 0xFFFF, 2057, lang, -1},   // numbers are widened with their sign
        {0x3, 1, 0, 0x1, 1}, {0x2, 1, 1, 0x2, 1}, {0x1, 0, 1, 0x3, 1}, {0x3, 0, 1, 0x3, 0},   // multi-bit ids
        {0x40000000, 5, 0, 0x40000000, 1},   // bits without meaning are stored like any other
    };
    for (const auto &st : steps)
        EXPECT_EQ((Results{ORTH_SetOption(s, st.option, st.value), ORTH_GetOption(s, st.readOption)}),
                  (Results{st.previous, st.read})) << std::hex << st.option << " " << st.value;
    ORTH_CloseSession(s);
    ASSERT_EQ(ORTH_OpenSession(), s);
    for (int16_t fresh : {other, s}) {   // sessions share no options; a reused slot starts from the defaults
        uint32_t on = 0;   // every flag reads as 0 or 1, else the mask comes out wrong
        for (int bit = 0; bit < 32; ++bit) on |= static_cast<uint32_t>(ORTH_GetOption(fresh, 1u << bit)) << bit;
        EXPECT_EQ((Results{static_cast<int32_t>(on), ORTH_GetOption(fresh, cs), ORTH_GetOption(fresh, lang),
                           ORTH_GetOption(fresh, 0)}), (Results{0x38680, 0, 1033, 0})) << fresh;
    }
}
