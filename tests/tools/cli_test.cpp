// tests/tools/cli_test.cpp — the orth command end to end: the built program
// run over a small dictionary folder.
// Groups: CliList (misspellings, doubled words, capitals, UTF-8, exit codes,
// lines reported as if checked alone),
// CliSuggest, CliLex (round trip, change types, personal list), CliCompress
// (errors with line numbers, a dictionary built and used), CliUsage (help
// and version of every command, dictionaries by name, the default personal
// list).
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <random>

#include "dict/dict_fixture.h"
#include "tools/cli_runner.h"

namespace {

class Cli : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        std::vector<std::string> words = sampleWords();
        words.insert(words.begin() + 14, {"mat", "on", "sat"});
        ASSERT_EQ(compressWords(dir.path(), dir.file("MAIN.CLX"), words), 0);
        writeFile(dir.file("MAIN.TLX"), crlfLines({"#LID 1033 1 0"}));
    }
    void TearDown() override { closeAllSessions(); }

    // Runs orth with args (and -d the test folder unless noDict) on input,
    // with a private configuration folder.
    Outcome orth(const std::vector<std::string> &args, const std::string &input = "", bool noDict = false) {
        std::vector<std::string> all;
        if (!noDict) all = {"-d", dir.path()};
        all.insert(all.end(), args.begin(), args.end());
        return runOrth(all, input, dir.path(), {"XDG_CONFIG_HOME=" + dir.file("config")});
    }
    TempDir dir;
};

TEST_F(Cli, ListPrintsEachMisspellingOncePerOccurrence) {
    struct Case { std::vector<std::string> args; std::string input, out; int status; } cases[] = {
        {{"list"}, "The cat sat on teh mat.\nteh end\n", "teh\nteh\n", 1},
        {{"list"}, "The cat sat on the mat.\r\n", "", 0},
        {{"list"}, "the the cat\n", "the the\n", 1},
        {{"list", "--no-doubled"}, "the the cat\n", "", 0},
        {{"list", "--capitals"}, "the cat\nThe cat\n", "the\n", 1},
        {{"list"}, "the cat\n", "", 0},
        {{"list"}, "This doesn\xE2\x80\x99t end\n", "", 0},
        {{"list"}, "Thsi doesn\xE2\x80\x99tt colr\n", "Thsi\ndoesn\xE2\x80\x99tt\ncolr\n", 1},
        {{"list"}, "caf\xC3\xA9 cat \xD0\x96uk\n", "caf\xC3\xA9\n\xD0\x96uk\n", 1},
        {{"list"}, "ab\xFF" "c cat \xE2\x80\n", "ab\xFF" "c\n\xE2\x80\n", 1},
        {{"list"}, "", "", 0},
        {{"list"}, std::string(5000, 'x') + "\n", "", 1},
    };
    for (const Case &c : cases) {
        Outcome r = orth(c.args, c.input);
        EXPECT_EQ(r.status, c.status) << c.input << r.err;
        if (c.input.size() < 1000) {
            EXPECT_EQ(r.out, c.out) << c.input;
        }
    }
}

// A line of over a megabyte is checked in pieces; it still reports as one
// block: its first word only is the line's first, doubled words are found
// where the pieces meet.
TEST_F(Cli, ListChecksAVeryLongLineAsOneBlock) {
    std::string line, expected = "cat\n";
    for (int i = 0; i < 150000; ++i) {
        line += i % 1000 == 999 ? "teh teh " : "cat teh ";
        // The first teh of "teh teh" doubles the teh before it.
        expected += i % 1000 == 999 ? "teh\nteh teh\nteh\n" : "teh\n";
    }
    Outcome r = orth({"list", "--capitals"}, line + "\xC3\xA9t\xC3\xA9 the the\n");
    EXPECT_EQ(r.status, 1) << r.err;
    EXPECT_TRUE(r.out == expected + "\xC3\xA9t\xC3\xA9\nthe the\n") << r.out.size() << " bytes out";
}

// Lines are reported as if each were checked alone, whatever joins them in
// the input: a word repeated across a line end is no doubled word, and a
// period, hyphen or apostrophe at a line's end is measured as at the end of
// the text. Random runs of lines over many chunks of input, ASCII and not,
// with a line longer than a chunk among them, in three modes.
TEST_F(Cli, ListReportsEachLineAsIfCheckedAlone) {
    const std::vector<std::string> lines = {
        "the", "the cat", "teh", "teh.", "e.g.", "e.g", "cat-", "teh-", "cat's'", "cats'", "teh'", "", "teh teh",
        "the\r", "teh.\r", "caf\xC3\xA9 teh", "cat!", "-cat", "'", "teh\xE2\x80\x99", "THE", "the, the", "a.b",
        "the.", "the-", "teh!", " the", "\tteh\t", "The cat", "cat the", std::string(70, 't'), std::string(63, 't'),
        std::string("teh\0teh", 7),
    };
    const std::vector<std::vector<std::string>> modes = {{"list"}, {"list", "--capitals"}, {"list", "--no-doubled"}};
    std::string longLine;
    while (longLine.size() < (size_t{1} << 17)) longLine += "cat teh the the ";
    longLine += "the";
    std::map<std::pair<std::string, size_t>, std::string> alone;
    std::string text, expected[3];
    std::mt19937 rng(7);
    for (int i = 0; i < 9000; ++i) {
        const std::string &line = i % 4000 == 3999 ? longLine : lines[rng() % lines.size()];
        text += line + "\n";
        for (size_t m = 0; m < modes.size(); ++m) {
            auto key = std::make_pair(line, m);
            if (alone.count(key) == 0) alone[key] = orth(modes[m], line + "\n").out;
            expected[m] += alone[key];
        }
    }
    ASSERT_GT(text.size(), size_t{1} << 18);
    for (size_t m = 0; m < modes.size(); ++m) EXPECT_TRUE(orth(modes[m], text).out == expected[m]) << modes[m].back();
}

TEST_F(Cli, ListReadsFilesAndNamesThoseItCannotRead) {
    writeFile(dir.file("a.txt"), "teh cat\n");
    Outcome r = orth({"list", dir.file("a.txt"), dir.file("missing.txt")});
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.out, "teh\n");
    EXPECT_NE(r.err.find("missing.txt: No such file or directory"), std::string::npos) << r.err;
}

TEST_F(Cli, SuggestShowsCorrectWordsAndScoredSuggestions) {
    Outcome r = orth({"suggest", "cat", "helo", "doesn\xE2\x80\x99t", "\xD0\x96uk"});
    EXPECT_EQ(r.status, 1);
    std::vector<std::string> lines;
    for (size_t pos = 0, nl; (nl = r.out.find('\n', pos)) != std::string::npos; pos = nl + 1)
        lines.push_back(r.out.substr(pos, nl - pos));
    ASSERT_EQ(lines.size(), 4u) << r.out;
    EXPECT_EQ(lines[0], "* cat");
    EXPECT_EQ(lines[1].rfind("& helo: ", 0), 0u) << lines[1];
    EXPECT_NE(lines[1].find("hello ("), std::string::npos) << lines[1];
    EXPECT_EQ(lines[2], "* doesn\xE2\x80\x99t");
    EXPECT_EQ(lines[3], "# \xD0\x96uk");

    r = orth({"suggest"}, "cat, hello.\n");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "* cat\n* hello\n");
}

TEST_F(Cli, LexRoundTripsThroughExportAndImport) {
    std::string lex = dir.file("mine.tlx"), copy = dir.file("copy.tlx"), text = dir.file("out.txt");
    EXPECT_EQ(orth({"lex", "create", lex}).status, 0);
    EXPECT_EQ(orth({"lex", "add", lex, "zebra", "\xC3\xA6r\xC3\xB8", "aardvark"}).status, 0);
    Outcome listed = orth({"lex", "list", lex});
    EXPECT_EQ(listed.out, "aardvark\nzebra\n\xC3\xA6r\xC3\xB8\n");
    EXPECT_EQ(orth({"lex", "export", lex, text}).status, 0);
    EXPECT_EQ(orth({"lex", "create", copy, "--type", "ignore"}).status, 0);
    EXPECT_EQ(orth({"lex", "import", copy, text}).status, 0);
    EXPECT_EQ(orth({"lex", "list", copy}).out, listed.out);
    EXPECT_EQ(orth({"lex", "delete", lex, "zebra"}).status, 0);
    EXPECT_EQ(orth({"lex", "list", lex}).out, "aardvark\n\xC3\xA6r\xC3\xB8\n");

    Outcome r = orth({"lex", "create", lex});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("mine.tlx: cannot create lexicon: file already exists"), std::string::npos) << r.err;
    r = orth({"lex", "add", lex, "\xD0\x96uk"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("character set"), std::string::npos) << r.err;
    EXPECT_EQ(orth({"lex", "add", dir.file("MAIN.CLX"), "x"}).status, 2);  // read-only
}

TEST_F(Cli, LexChangeTypesNeedReplacementsAndPersonalListIsConsulted) {
    std::string lex = dir.file("auto.tlx");
    EXPECT_EQ(orth({"lex", "create", lex, "--type", "auto"}).status, 0);
    Outcome r = orth({"lex", "add", lex, "teh"});
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("WORD:REPLACEMENT"), std::string::npos) << r.err;
    EXPECT_EQ(orth({"lex", "add", lex, "teh:the"}).status, 0);
    writeFile(dir.file("pairs.txt"), "# comment\nadn:and  recieve:receive\n");
    EXPECT_EQ(orth({"lex", "import", lex, dir.file("pairs.txt")}).status, 0);
    EXPECT_EQ(orth({"lex", "list", lex}).out, "adn:and\nrecieve:receive\nteh:the\n");
    EXPECT_EQ(orth({"lex", "create", lex, "--type", "sideways"}).status, 2);

    std::string mine = dir.file("mine.tlx");
    EXPECT_EQ(orth({"lex", "create", mine}).status, 0);
    EXPECT_EQ(orth({"lex", "add", mine, "zebra"}).status, 0);
    EXPECT_EQ(orth({"list"}, "zebra cat\n").out, "zebra\n");
    EXPECT_EQ(orth({"-p", mine, "list"}, "zebra cat\n").out, "");
    EXPECT_EQ(orth({"-p", dir.file("not-yet.tlx"), "list"}, "zebra\n").out, "zebra\n");
}

TEST_F(Cli, CompressReportsFileLineAndReason) {
    struct Case { std::vector<std::string> lines; std::string expect; } cases[] = {
        {{"apple", "banana", "avocado"}, "bad.txt:3: word out of order"},
        {{"# comment", "apple", std::string(70, 'z')}, "bad.txt:3: invalid word"},
        {{"apple", "caf\xD0\x96"}, "bad.txt:2: character outside the character set"},
    };
    for (const Case &c : cases) {
        std::string text;
        for (const std::string &l : c.lines) text += l + "\n";
        writeFile(dir.file("bad.txt"), text);
        Outcome r = orth({"compress", "-o", dir.file("OUT.CLX"), dir.file("bad.txt")}, "", true);
        EXPECT_EQ(r.status, 2);
        EXPECT_NE(r.err.find(c.expect), std::string::npos) << r.err;
    }
    Outcome r = orth({"compress", "-o", dir.file("OUT.CLX"), dir.file("nothere.txt")}, "", true);
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("nothere.txt: No such file or directory"), std::string::npos) << r.err;
    EXPECT_EQ(orth({"compress", dir.file("words.txt")}, "", true).status, 2);  // no -o
    EXPECT_EQ(orth({"compress", "-o", "X", "--charset", "12", "w"}, "", true).status, 2);
}

TEST_F(Cli, CompressedDictionaryIsUsableWithDashD) {
    TempDir built;
    writeFile(built.file("w1.txt"), "caf\xC3\xA9\nzebra\n");
    writeFile(built.file("MAIN.TLX"), crlfLines({"#LID 1033 1 0"}));
    Outcome r = orth({"compress", "-o", built.file("MAIN.CLX"), built.file("w1.txt")}, "", true);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.err, "");  // no progress output when standard error is not a terminal
    r = orth({"-d", built.path(), "list"}, "zebra caf\xC3\xA9 cat\n", true);
    EXPECT_EQ(r.out, "cat\n");
}

TEST_F(Cli, SuggestRanksByCommonnessUnlessDefined) {
    TempDir built;
    writeFile(built.file("w.txt"), "cat\ncot\ncut\n");
    writeFile(built.file("f.txt"), "# counts\ncut 1000\ncat 10\n");
    writeFile(built.file("bad.txt"), "cut 1000\ncat ten\n");
    Outcome r = orth({"compress", "-o", built.file("MAIN.CLX"), "--frequencies", built.file("bad.txt"),
                      built.file("w.txt")}, "", true);
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("bad.txt:2: expected a word and a count: \"cat ten\""), std::string::npos) << r.err;
    r = orth({"compress", "-o", built.file("MAIN.CLX"), "--frequencies", built.file("f.txt"), built.file("w.txt")}, "",
             true);
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(fileExists(built.file("MAIN.FRQ")));
    // cat, cot and cut are one vowel from cet: the common cut comes first
    // when ranked; the defined ranking keeps the dictionary's order.
    EXPECT_EQ(orth({"-d", built.path(), "suggest", "cet"}, "", true).out.rfind("& cet: cut (", 0), 0u);
    EXPECT_EQ(orth({"-d", built.path(), "suggest", "--defined", "cet"}, "", true).out,
              "& cet: cat (83), cot (83), cut (83)\n");
    EXPECT_NE(orth({"--help"}, "", true).out.find("--defined"), std::string::npos);
}

TEST_F(Cli, UsageErrorsAndHelp) {
    Outcome r = orth({"--version"}, "", true);
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, "orth 4.21\n");
    r = orth({"--help"}, "", true);
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("suggest"), std::string::npos);
    struct Case { std::vector<std::string> args; std::string err; } cases[] = {
        {{}, "Usage:"},
        {{"frobnicate"}, "orth: unknown command frobnicate"},
        {{"list", "--bogus"}, "orth: list: unknown option --bogus"},
        {{"-d"}, "orth: -d needs a value"},
        {{"-d", "/no/such/dir", "list"}, "orth: /no/such/dir/MAIN.CLX: cannot open dictionary"},
        {{"lex", "shred", "x.tlx"}, "orth: lex: unknown action shred"},
    };
    for (const Case &c : cases) {
        r = orth(c.args, "", true);
        EXPECT_EQ(r.status, 2);
        EXPECT_NE(r.err.find(c.err), std::string::npos) << r.err;
    }
}

TEST_F(Cli, EveryCommandHasHelpAndVersion) {
    for (const char *command : {"list", "suggest", "compress", "lex", "pipe"}) {
        Outcome r = orth({command, "--help"}, "", true);
        EXPECT_EQ(r.status, 0) << command;
        EXPECT_EQ(r.out.rfind("Usage: orth", 0), 0u) << r.out;
        EXPECT_NE(r.out.find(std::string(" ") + command), std::string::npos) << r.out;
        EXPECT_NE(r.out.find("Exit status"), std::string::npos) << r.out;
        r = orth({command, "--version"}, "", true);
        EXPECT_EQ(r.out, "orth 4.21\n") << command;
    }
}

TEST_F(Cli, DictionariesByNameAndTheDefaultPersonalList) {
    TempDir root;
    std::filesystem::create_directories(root.file("xx_YY"));
    std::filesystem::copy_file(dir.file("MAIN.CLX"), root.file("xx_YY/MAIN.CLX"));
    std::vector<std::string> env = {"ORTH_DICPATH=" + root.path(), "XDG_CONFIG_HOME=" + root.file("cfg")};
    Outcome r = runOrth({"-d", "xx_YY", "list"}, "zebra cat\n", dir.path(), env);
    EXPECT_EQ(r.out, "zebra\n");
    std::filesystem::create_directories(root.file("cfg/orth"));
    writeFile(root.file("cfg/orth/xx_YY.tlx"), crlfLines({"#LID 1033 1 1", "zebra"}));
    r = runOrth({"-d", "xx_YY", "list"}, "zebra cat\n", dir.path(), env);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.status, 0);
    writeFile(root.file("cfg/orth/xx_YY.tlx"), "#LID 1033 9 0\r\n");  // a damaged list
    r = runOrth({"-d", "xx_YY", "list"}, "cat\n", dir.path(), env);
    EXPECT_EQ(r.status, 2);
    EXPECT_NE(r.err.find("xx_YY.tlx: cannot open personal word list: not a lexicon"), std::string::npos) << r.err;
    r = runOrth({"-d", "zz_ZZ", "list"}, "cat\n", dir.path(), env);
    EXPECT_EQ(r.status, 2);
    EXPECT_EQ(r.err.find('\n'), r.err.size() - 1) << r.err;  // one line
    EXPECT_NE(r.err.find("orth: zz_ZZ: no such dictionary"), std::string::npos) << r.err;
}

}  // namespace
