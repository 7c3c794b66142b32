// Sessions, result-code names and options.
// Groups: SessionTable (slots, reuse, validation and its log lines),
// ResultCodeName, Options (defaults, multi-bit ids, numeric options).
#include <gtest/gtest.h>

#include <string>

#include "orth.h"
#include "support/test_util.h"

namespace {

class SessionTable : public ::testing::Test {
protected:
    void SetUp() override { closeAllSessions(); }
    void TearDown() override { closeAllSessions(); }
};

TEST_F(SessionTable, SixteenSlotsLowestFreeFirstAndReused) {
    LogCapture log;
    for (int16_t i = 0; i < 16; ++i) EXPECT_EQ(ORTH_OpenSession(), i);
    EXPECT_EQ(ORTH_OpenSession(), ORTH_TOO_MANY_SESSIONS_ERR);
    EXPECT_TRUE(log.contains("ORTH_OpenSession: too many sessions"));
    EXPECT_EQ(ORTH_CloseSession(3), 0);
    EXPECT_TRUE(log.contains("ORTH_CloseSession: Session 3 closed"));
    EXPECT_EQ(ORTH_OpenSession(), 3);
    EXPECT_TRUE(log.contains("ORTH_OpenSession: session opened"));
}

TEST_F(SessionTable, BadIdsAreRefusedAndLoggedWithTheFunctionName) {
    LogCapture log;
    int16_t open = ORTH_OpenSession();
    ASSERT_EQ(open, 0);
    ASSERT_EQ(ORTH_CloseSession(open), 0);
    for (int16_t bad : {int16_t(16), int16_t(-1), int16_t(0), int16_t(-32768), int16_t(32767)}) {
        log.clear();
        EXPECT_EQ(ORTH_CloseSession(bad), ORTH_BAD_SESSION_ID_ERR) << bad;
        EXPECT_TRUE(log.contains("ORTH_CloseSession: bad session id " + std::to_string(bad))) << bad;
        EXPECT_EQ(ORTH_SetOption(bad, ORTH_CASE_SENSITIVE_OPT, 0), ORTH_BAD_SESSION_ID_ERR);
        EXPECT_TRUE(log.contains("ORTH_SetOption: bad session id " + std::to_string(bad)));
        EXPECT_EQ(ORTH_GetOption(bad, ORTH_CHARSET_OPT), ORTH_BAD_SESSION_ID_ERR);
        EXPECT_TRUE(log.contains("ORTH_GetOption: bad session id " + std::to_string(bad)));
    }
}

TEST_F(SessionTable, VersionIsFourTwentyOne) {
    uint16_t major = 0, minor = 0;
    ORTH_Version(&major, &minor);
    EXPECT_EQ(major, 4);
    EXPECT_EQ(minor, 21);
    ORTH_Version(nullptr, nullptr);  // harmless
}

TEST(ResultCodeName, NamesEveryTableCodeAndAFixedTextOutside) {
    EXPECT_STREQ(resultCodeName(0), "Ok.");
    EXPECT_STREQ(resultCodeName(ORTH_TOO_MANY_SESSIONS_ERR), "ORTH_TOO_MANY_SESSIONS_ERR");
    EXPECT_STREQ(resultCodeName(ORTH_BUFFER_TOO_SMALL_ERR), "ORTH_BUFFER_TOO_SMALL_ERR");
    EXPECT_STREQ(resultCodeName(ORTH_BAD_BLOCK_ID_ERR), "ORTH_BAD_BLOCK_ID_ERR");
    for (int16_t rc : {int16_t(-17), int16_t(-25), int16_t(1), int16_t(-32768), int16_t(32767)}) {
        EXPECT_STREQ(resultCodeName(rc), "Unknown result code") << rc;
    }
}

class Options : public SessionTable {};

TEST_F(Options, NewSessionHasTheEngineDefaults) {
    int16_t s = ORTH_OpenSession();
    ASSERT_GE(s, 0);
    uint32_t on = 0;
    for (int bit = 0; bit < 32; ++bit) {
        int32_t v = ORTH_GetOption(s, 1u << bit);
        ASSERT_TRUE(v == 0 || v == 1) << bit;
        if (v) on |= 1u << bit;
    }
    EXPECT_EQ(on, 0x38680u);
    EXPECT_EQ(ORTH_GetOption(s, ORTH_CHARSET_OPT), 0);
    EXPECT_EQ(ORTH_GetOption(s, ORTH_LANGUAGE_OPT), 1033);
    EXPECT_EQ(ORTH_GetOption(s, 0), 0);
}

TEST_F(Options, SetReturnsThePreviousValue) {
    int16_t s = ORTH_OpenSession();
    EXPECT_EQ(ORTH_SetOption(s, ORTH_CASE_SENSITIVE_OPT, 0), 1);
    EXPECT_EQ(ORTH_SetOption(s, ORTH_CASE_SENSITIVE_OPT, 0), 0);
    EXPECT_EQ(ORTH_SetOption(s, ORTH_LANGUAGE_OPT, 2057), 1033);
    EXPECT_EQ(ORTH_GetOption(s, ORTH_LANGUAGE_OPT), 2057);
    EXPECT_EQ(ORTH_SetOption(s, ORTH_CHARSET_OPT, 0x10003), 0);
    EXPECT_EQ(ORTH_GetOption(s, ORTH_CHARSET_OPT), 3);
    // Numbers are widened with their sign.
    ORTH_SetOption(s, ORTH_LANGUAGE_OPT, 0xFFFF);
    EXPECT_EQ(ORTH_GetOption(s, ORTH_LANGUAGE_OPT), -1);
}

TEST_F(Options, MultiBitIdsSetAndReadTogether) {
    int16_t s = ORTH_OpenSession();
    EXPECT_EQ(ORTH_SetOption(s, 0x3, 1), 0);
    EXPECT_EQ(ORTH_GetOption(s, 0x1), 1);
    EXPECT_EQ(ORTH_GetOption(s, 0x2), 1);
    EXPECT_EQ(ORTH_SetOption(s, 0x1, 0), 1);
    EXPECT_EQ(ORTH_GetOption(s, 0x3), 1);
    EXPECT_EQ(ORTH_SetOption(s, 0x3, 0), 1);
    EXPECT_EQ(ORTH_GetOption(s, 0x3), 0);
    // Bits without meaning are stored like any other.
    EXPECT_EQ(ORTH_SetOption(s, 0x40000000, 5), 0);
    EXPECT_EQ(ORTH_GetOption(s, 0x40000000), 1);
}

TEST_F(Options, SessionsDoNotShareOptions) {
    int16_t a = ORTH_OpenSession(), b = ORTH_OpenSession();
    ORTH_SetOption(a, ORTH_SUGGEST_PHONETIC_OPT, 1);
    ORTH_SetOption(a, ORTH_CHARSET_OPT, 2);
    EXPECT_EQ(ORTH_GetOption(b, ORTH_SUGGEST_PHONETIC_OPT), 0);
    EXPECT_EQ(ORTH_GetOption(b, ORTH_CHARSET_OPT), 0);
    // A reopened slot starts from the defaults again.
    ORTH_CloseSession(a);
    EXPECT_EQ(ORTH_OpenSession(), a);
    EXPECT_EQ(ORTH_GetOption(a, ORTH_SUGGEST_PHONETIC_OPT), 0);
}

}  // namespace
