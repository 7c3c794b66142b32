// Lexicon registry.
// Groups: Registry (sixteen slots per session, lowest free first; failed
// opens and creates leave the slot free; bad session and lexicon ids for
// every function; the probe order, compressed first and read-only; change
// lexicons need replacements, possessives and long words on add, the image
// and information; sessions keep their own lexicons).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "orth.h"
#include "support/test_util.h"

using Results = std::vector<int32_t>;  // braced lists run left to right: calls in order

// The smallest compressed lexicon: ab, abc and abd, language 1033. Banner,
// header fields at 256, then at 2806 the small words, one segment record and
// the segment's bytes.
static std::string compressedExample() {
    std::string file = "ORTH Lexicon 57000402 Mon Nov 23 01:00:00 2026\n\r\n\r\n";
    file.append(256 - file.size(), '\0').append("\x02\x04\0\x57\x01\0\x01\0\x09\x04\0\0", 12).resize(2806, '\0');
    return file.append("ab" "\x02\x0B\0\0\x0F\0\0\0" "ab" "\x02\0\0\0" "c\0\0\x05\x01\0\0\0" "d\0\0", 27);
}

class Registry : public ::testing::Test {
protected:
    void SetUp() override { closeAllSessions(); session = ORTH_OpenSession(); }
    std::string image(int16_t lexId) {   // "count:" and the bytes of ORTH_GetLex, in a buffer of the size reported
        uint32_t size = 0;
        ORTH_GetLexInfo(session, lexId, &size, nullptr, nullptr, nullptr);
        std::string buf(size, '#');
        return std::to_string(ORTH_GetLex(session, lexId, &buf[0], size)) + ":" + buf;
    }
    void expectLogged(const std::vector<std::string> &lines) {
        for (const std::string &line : lines) EXPECT_TRUE(log.contains(line)) << line;
    }
    LogCapture log;
    TempDir dir;
    int16_t session = -1;
};

TEST_F(Registry, SixteenSlotsLowestFreeFirstFailuresLeaveTheSlotFreeAndBadIdsAreRefused) {
    const std::string tlx = dir.file("t.tlx"), bad = dir.file("bad.tlx"), empty = dir.file("empty.tlx"),
                      missing = dir.file("no/dir.tlx");
    for (auto f : {std::make_pair(tlx, "a\r\n"), {bad, "#LID 1033 9 0\r\n"}, {empty, ""}}) writeFile(f.first, f.second);
    for (int16_t i = 0; i < 16; ++i) EXPECT_EQ(ORTH_CreateLex(session, nullptr, 1, 1033), i);
    EXPECT_EQ((Results{ORTH_CreateLex(session, nullptr, 7, 1033), ORTH_CreateLex(session, "", 1, 1033),
                       ORTH_OpenLex(session, tlx.c_str(), 0), ORTH_CloseLex(session, 4)}),
              (Results{ORTH_UNKNOWN_LEXICON_TYPE_ERR, ORTH_TOO_MANY_LEXICONS_ERR, ORTH_TOO_MANY_LEXICONS_ERR, 0}));
    EXPECT_EQ((Results{ORTH_OpenLex(1, "x", 0), ORTH_CreateLex(-5, nullptr, 1, 1033)}), Results(2, -2));
    // A failure that kept slot 4 would turn every later call into too many lexicons.
    EXPECT_EQ((Results{ORTH_OpenLex(session, missing.c_str(), 0), ORTH_OpenLex(session, nullptr, 0),
                       ORTH_OpenLex(session, bad.c_str(), 0), ORTH_OpenLex(session, empty.c_str(), 0),
                       ORTH_CreateLex(session, tlx.c_str(), 1, 1033), ORTH_CreateLex(session, missing.c_str(), 1, 1033),
                       ORTH_OpenLex(session, tlx.c_str(), 0)}), (Results{-4, -4, -6, -6, -14, -4, 4}));
    expectLogged({"ORTH_CreateLex: temp. lex created; id=0", "ORTH_CreateLex: bad lex type 7",
                  "ORTH_CreateLex: too many lexicons", "ORTH_OpenLex: too many lexicons", "ORTH_CloseLex: 4 closed",
                  "ORTH_OpenLex: " + tlx + " opened; id=4", "TLex_Create: " + tlx + " exists",
                  "TLex_Create: file open(" + missing + ") error", "ORTH_OpenLex: bad session id 1",
                  "ORTH_CreateLex: bad session id -5"});
    ORTH_CloseLex(session, 3);
    auto results = [](int16_t s, int16_t l) {   // each function that takes a lexicon id
        return Results{ORTH_CloseLex(s, l), ORTH_AddToLex(s, l, "w", nullptr), ORTH_DelFromLex(s, l, "w"),
                       ORTH_ClearLex(s, l), ORTH_GetLex(s, l, nullptr, 0), ORTH_GetLexInfo(s, l, 0, 0, 0, 0)};
    };
    for (int16_t id : {-1, 16, 3}) {
        EXPECT_EQ(results(session, id), Results(6, ORTH_BAD_LEXICON_ID_ERR)) << id;
        EXPECT_EQ(results(id, 0), Results(6, ORTH_BAD_SESSION_ID_ERR)) << id;
        for (std::string fn : {"ORTH_CloseLex", "ORTH_AddToLex", "ORTH_DelFromLex", "ORTH_ClearLex", "ORTH_GetLex",
                               "ORTH_GetLexInfo"})
            expectLogged({fn + ": bad lex id " + std::to_string(id), fn + ": bad session id " + std::to_string(id)});
    }
}

TEST_F(Registry, CompressedFirstThenTextAndCompressedIsReadOnly) {
    const std::string files[][2] = {{dir.file("small.clx"), compressedExample()},
                                    {dir.file("french.tlx"), "#LID 1036 2 1\r\nle:la\r\n"}};
    // Two results (every output optional), then size, format, type, language.
    const Results info[] = {{0, 0, 0, 0, 1, 1033}, {0, 0, 7, 1, 2, 1036}};
    for (int16_t id = 0; id < 2; ++id) {
        writeFile(files[id][0], files[id][1]);
        ASSERT_EQ(ORTH_OpenLex(session, files[id][0].c_str(), 0), id);
        uint32_t size = 99;
        uint16_t format = 99, type = 99, language = 99;
        EXPECT_EQ((Results{ORTH_GetLexInfo(session, id, &size, &format, &type, &language),
                           ORTH_GetLexInfo(session, id, nullptr, nullptr, nullptr, nullptr),
                           static_cast<int32_t>(size), format, type, language}), info[id]);
    }
    EXPECT_EQ((Results{ORTH_AddToLex(session, 0, "abe", nullptr), ORTH_DelFromLex(session, 0, "abc"),
                       ORTH_ClearLex(session, 0), ORTH_GetLex(session, 0, nullptr, 0)}),
              (Results{-9, -9, -9, ORTH_UNSUPPORTED_ACTION_ERR}));
    expectLogged({"ORTH_AddToLex: read only lex", "ORTH_DelFromLex: read only lex", "ORTH_ClearLex: read only lex",
                  "ORTH_GetLex: unsupported action"});
    EXPECT_EQ(image(1), std::string("1:le:la\0\0", 9));
}

TEST_F(Registry, ChangesNormaliseOnAddOnlyAndSessionsKeepTheirOwn) {
    const std::string path = dir.file("user.tlx");
    ASSERT_EQ(ORTH_CreateLex(session, path.c_str(), 1, 2057), 0);
    for (int16_t type : {0, 2}) {   // the change lexicons take ids 1 and 2
        EXPECT_EQ(ORTH_AddToLex(session, ORTH_CreateLex(session, nullptr, type, 1033), "teh", nullptr), -10) << type;
        EXPECT_EQ(image(type / 2 + 1), std::string("0:\0", 3)) << type;
    }
    const int16_t other = ORTH_OpenSession();   // its slot 0 is its own
    ASSERT_EQ(ORTH_CreateLex(other, nullptr, 3, 1031), 0);
    // Possessives are stripped and long words cut on add only, so "cat's" is not found.
    const std::string seventy(70, 'x');
    EXPECT_EQ((Results{ORTH_AddToLex(session, 0, "cat's", nullptr), ORTH_AddToLex(session, 0, seventy.c_str(), nullptr),
                       ORTH_DelFromLex(session, 0, "cat's"), ORTH_SetOption(session, ORTH_STRIP_POSSESSIVES_OPT, 0),
                       ORTH_AddToLex(session, 0, "dog's", nullptr), ORTH_DelFromLex(other, 0, "cat"),
                       ORTH_AddToLex(session, 0, nullptr, nullptr), ORTH_DelFromLex(session, 0, nullptr)}),
              (Results{0, 0, -3, 1, 0, -3, ORTH_INVALID_WORD_ERR, ORTH_INVALID_WORD_ERR}));
    EXPECT_EQ(image(0), std::string("3:cat\0dog's\0", 12) + std::string(63, 'x') + std::string(2, '\0'));
    expectLogged({"ORTH_CreateLex: " + path + " created; id=0", "ORTH_AddToLex: need word and replacement",
                  "TLex_Delete: cat's not found"});
    ORTH_CloseSession(other);
    EXPECT_EQ(ORTH_DelFromLex(session, 0, "cat") + ORTH_ClearLex(session, 0), 0);
    EXPECT_EQ(readFile(path), "#LID 2057 1 0\r\n");
}
