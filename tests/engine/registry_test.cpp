// Lexicon registry.
// Groups: LexSlots (sixteen per session, lowest free first, failed opens
// leave no slot taken, sessions independent), LexIds (bad session and lexicon
// ids for every function), LexFormats (the probe order, read-only compressed
// lexicons), LexChanges (replacements required, possessives, null words,
// image and information).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orth.h"
#include "support/test_util.h"

namespace {

// The smallest compressed lexicon: ab, abc and abd, language 1033.
std::string compressedExample() {
    std::string file(2806, '\0');
    const std::string banner = "ORTH Lexicon 57000402 Mon Nov 23 01:00:00 2026\n\r\n\r\n";
    file.replace(0, banner.size(), banner);
    const unsigned char fields[] = {0x02, 0x04, 0x00, 0x57, 1, 0, 1, 0, 0x09, 0x04, 0, 0};
    file.replace(256, sizeof fields, reinterpret_cast<const char *>(fields), sizeof fields);
    const unsigned char rest[] = {'a', 'b',                                           // small words
                                  0x02, 0x0B, 0, 0, 0x0F, 0, 0, 0, 'a', 'b',          // segment record
                                  2, 0, 0, 0, 'c', 0, 0x00, 0x05, 1, 0, 0, 0, 'd', 0, 0x00};
    file.append(reinterpret_cast<const char *>(rest), sizeof rest);
    return file;
}

class Registry : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        session = ORTH_OpenSession();
        ASSERT_EQ(session, 0);
    }
    void TearDown() override { closeAllSessions(); }
    std::vector<std::string> image(int16_t lexId) {
        uint32_t size = 0;
        EXPECT_EQ(ORTH_GetLexInfo(session, lexId, &size, nullptr, nullptr, nullptr), 0);
        std::vector<char> buf(size);
        int32_t n = ORTH_GetLex(session, lexId, buf.data(), size);
        std::vector<std::string> out;
        for (size_t at = 0; n-- > 0; at += out.back().size() + 1) out.emplace_back(buf.data() + at);
        return out;
    }
    TempDir dir;
    int16_t session = -1;
};

TEST_F(Registry, SixteenSlotsLowestFreeFirst) {
    LogCapture log;
    for (int16_t i = 0; i < 16; ++i) EXPECT_EQ(ORTH_CreateLex(session, nullptr, 1, 1033), i);
    EXPECT_TRUE(log.contains("ORTH_CreateLex: temp. lex created; id=0"));
    EXPECT_EQ(ORTH_CreateLex(session, nullptr, 7, 1033), ORTH_UNKNOWN_LEXICON_TYPE_ERR);  // type before slots
    EXPECT_TRUE(log.contains("ORTH_CreateLex: bad lex type 7"));
    EXPECT_EQ(ORTH_CreateLex(session, "", 1, 1033), ORTH_TOO_MANY_LEXICONS_ERR);
    EXPECT_TRUE(log.contains("ORTH_CreateLex: too many lexicons"));
    writeFile(dir.file("t.tlx"), "word\r\n");
    EXPECT_EQ(ORTH_OpenLex(session, dir.file("t.tlx").c_str(), 0), ORTH_TOO_MANY_LEXICONS_ERR);
    EXPECT_TRUE(log.contains("ORTH_OpenLex: too many lexicons"));
    EXPECT_EQ(ORTH_CloseLex(session, 4), 0);
    EXPECT_TRUE(log.contains("ORTH_CloseLex: 4 closed"));
    EXPECT_EQ(ORTH_OpenLex(session, dir.file("t.tlx").c_str(), 0), 4);
    EXPECT_TRUE(log.contains("ORTH_OpenLex: " + dir.file("t.tlx") + " opened; id=4"));
}

TEST_F(Registry, FailedOpensAndCreatesLeaveTheSlotFree) {
    LogCapture log;
    writeFile(dir.file("there.tlx"), "#LID 1033 1 0\r\n");
    writeFile(dir.file("bad.tlx"), "#LID 1033 9 0\r\n");
    writeFile(dir.file("empty.tlx"), "");
    std::string there = dir.file("there.tlx"), noDir = dir.file("no/dir.tlx");
    // Braced lists run left to right; each call must find slot 0 free.
    int16_t got[] = {ORTH_OpenLex(session, dir.file("none.tlx").c_str(), 0), ORTH_OpenLex(session, nullptr, 0),
                     ORTH_OpenLex(session, dir.file("bad.tlx").c_str(), 0),
                     ORTH_OpenLex(session, dir.file("empty.tlx").c_str(), 0),
                     ORTH_CreateLex(session, there.c_str(), 1, 1033), ORTH_CreateLex(session, noDir.c_str(), 1, 1033),
                     ORTH_CreateLex(session, nullptr, 3, 1033)};
    EXPECT_EQ(std::vector<int16_t>(got, got + 7), (std::vector<int16_t>{-4, -4, -6, -6, -14, -4, 0}));
    EXPECT_TRUE(log.contains("TLex_Create: " + there + " exists"));
    EXPECT_TRUE(log.contains("TLex_Create: file open(" + noDir + ") error"));
}

TEST_F(Registry, BadIdsAreRefusedByEveryFunction) {
    LogCapture log;
    ASSERT_EQ(ORTH_CreateLex(session, nullptr, 1, 1033), 0);
    uint32_t size = 0;
    char buf[8];
    for (int16_t bad : {int16_t(-1), int16_t(16), int16_t(3)}) {
        struct Call {
            const char *name;
            int32_t rc, badSessionRc;
        } calls[] = {
            {"ORTH_CloseLex", ORTH_CloseLex(session, bad), ORTH_CloseLex(bad, 0)},
            {"ORTH_AddToLex", ORTH_AddToLex(session, bad, "w", nullptr), ORTH_AddToLex(bad, 0, "w", nullptr)},
            {"ORTH_DelFromLex", ORTH_DelFromLex(session, bad, "w"), ORTH_DelFromLex(bad, 0, "w")},
            {"ORTH_ClearLex", ORTH_ClearLex(session, bad), ORTH_ClearLex(bad, 0)},
            {"ORTH_GetLex", ORTH_GetLex(session, bad, buf, 8), ORTH_GetLex(bad, 0, buf, 8)},
            {"ORTH_GetLexInfo", ORTH_GetLexInfo(session, bad, &size, nullptr, nullptr, nullptr),
             ORTH_GetLexInfo(bad, 0, &size, nullptr, nullptr, nullptr)},
        };
        for (const Call &c : calls) {
            EXPECT_EQ(c.rc, ORTH_BAD_LEXICON_ID_ERR) << c.name;
            EXPECT_TRUE(log.contains(std::string(c.name) + ": bad lex id " + std::to_string(bad))) << c.name;
            EXPECT_EQ(c.badSessionRc, ORTH_BAD_SESSION_ID_ERR) << c.name;
            EXPECT_TRUE(log.contains(std::string(c.name) + ": bad session id " + std::to_string(bad))) << c.name;
        }
    }
    EXPECT_EQ(ORTH_OpenLex(1, "x", 0), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_OpenLex: bad session id 1"));
    EXPECT_EQ(ORTH_CreateLex(-5, nullptr, 1, 1033), ORTH_BAD_SESSION_ID_ERR);
    EXPECT_TRUE(log.contains("ORTH_CreateLex: bad session id -5"));
}

TEST_F(Registry, CompressedFirstThenTextAndCompressedIsReadOnly) {
    LogCapture log;
    writeFile(dir.file("small.clx"), compressedExample());
    writeFile(dir.file("french.tlx"), "#LID 1036 2 1\r\nle:la\r\n");
    ASSERT_EQ(ORTH_OpenLex(session, dir.file("small.clx").c_str(), 0), 0);
    ASSERT_EQ(ORTH_OpenLex(session, dir.file("french.tlx").c_str(), 0), 1);
    for (int16_t id = 0; id < 2; ++id) {
        uint32_t size = 99;
        uint16_t format = 99, type = 99, language = 99;
        ASSERT_EQ(ORTH_GetLexInfo(session, id, &size, &format, &type, &language), 0);
        EXPECT_EQ(std::vector<uint32_t>({size, format, type, language}),
                  id == 0 ? std::vector<uint32_t>({0, 0, 1, 1033}) : std::vector<uint32_t>({7, 1, 2, 1036}));
        EXPECT_EQ(ORTH_GetLexInfo(session, id, nullptr, nullptr, nullptr, nullptr), 0);
    }
    char buf[64];
    EXPECT_EQ(ORTH_AddToLex(session, 0, "abe", nullptr) + ORTH_DelFromLex(session, 0, "abc") + ORTH_ClearLex(session, 0),
              3 * ORTH_READ_ONLY_LEXICON_ERR);
    EXPECT_EQ(ORTH_GetLex(session, 0, buf, sizeof buf), ORTH_UNSUPPORTED_ACTION_ERR);
    for (const char *line : {"ORTH_AddToLex: read only lex", "ORTH_DelFromLex: read only lex",
                             "ORTH_ClearLex: read only lex", "ORTH_GetLex: unsupported action"})
        EXPECT_TRUE(log.contains(line)) << line;
    EXPECT_EQ(image(1), std::vector<std::string>{"le:la"});
}

TEST_F(Registry, ChangesNormaliseOnAddOnly) {
    LogCapture log;
    std::string path = dir.file("user.tlx");
    ASSERT_EQ(ORTH_CreateLex(session, path.c_str(), 1, 2057), 0);
    EXPECT_TRUE(log.contains("ORTH_CreateLex: " + path + " created; id=0"));
    for (int16_t type : {int16_t(0), int16_t(2)}) {
        int16_t id = ORTH_CreateLex(session, nullptr, type, 1033);
        EXPECT_EQ(ORTH_AddToLex(session, id, "teh", nullptr), ORTH_TWO_WORDS_REQUIRED_ERR);
        EXPECT_TRUE(image(id).empty());
    }
    EXPECT_TRUE(log.contains("ORTH_AddToLex: need word and replacement"));
    EXPECT_EQ(ORTH_AddToLex(session, 0, "cat's", nullptr) + ORTH_AddToLex(session, 0, std::string(70, 'x').c_str(), nullptr), 0);
    EXPECT_EQ(ORTH_DelFromLex(session, 0, "cat's"), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_TRUE(log.contains("TLex_Delete: cat's not found"));
    ORTH_SetOption(session, ORTH_STRIP_POSSESSIVES_OPT, 0);
    EXPECT_EQ(ORTH_AddToLex(session, 0, "dog's", nullptr), 0);
    EXPECT_EQ(image(0), (std::vector<std::string>{"cat", "dog's", std::string(63, 'x')}));
    EXPECT_EQ(ORTH_DelFromLex(session, 0, "cat") + ORTH_ClearLex(session, 0), 0);
    EXPECT_EQ(readFile(path), "#LID 2057 1 0\r\n");
    EXPECT_EQ(ORTH_AddToLex(session, 0, nullptr, nullptr) + ORTH_DelFromLex(session, 0, nullptr), 2 * ORTH_INVALID_WORD_ERR);
}

TEST_F(Registry, SessionsHaveTheirOwnLexicons) {
    int16_t other = ORTH_OpenSession();
    ASSERT_EQ(ORTH_CreateLex(session, nullptr, 1, 1033) + ORTH_CreateLex(other, nullptr, 3, 1031), 0);
    ASSERT_EQ(ORTH_AddToLex(session, 0, "mine", nullptr), 0);
    EXPECT_EQ(ORTH_DelFromLex(other, 0, "mine"), ORTH_WORD_NOT_FOUND_ERR);
    EXPECT_EQ(ORTH_CloseSession(other), 0);
    EXPECT_EQ(image(0), std::vector<std::string>{"mine"});
}

}  // namespace
