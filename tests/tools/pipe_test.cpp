// tests/tools/pipe_test.cpp — the Ispell pipe mode end to end: the built
// orth run with Ispell-style options over a small dictionary folder.
// Groups: PipeAnswers (banner, answers and offsets per line, UTF-8,
// markup), PipeCommands (terse mode, session and personal words, saving),
// PipeOptions (-l, -v, -D, -d by name, argument errors).
#include <gtest/gtest.h>

#include <filesystem>

#include "dict/dict_fixture.h"
#include "tools/cli_runner.h"

namespace {

const char kBanner[] = "@(#) International Ispell Version 3.2.06 (but really Hunspell 1.7.1) orth 4.21\n";

class Pipe : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        std::vector<std::string> words = {"a", "caf\xE9", "cat", "doesn't", "hall", "hello", "help", "known",
                                          "or", "see", "the", "well", "world"};
        std::filesystem::create_directories(dir.file("en_XX"));
        ASSERT_EQ(compressWords(dir.path(), dir.file("en_XX/MAIN.CLX"), words), 0);
    }
    void TearDown() override { closeAllSessions(); }
    Outcome orth(const std::vector<std::string> &args, const std::string &input = "") {
        return runOrth(args, input, dir.path(),
                       {"XDG_CONFIG_HOME=" + dir.file("config"), "ORTH_DICPATH=" + dir.path()});
    }
    // The pipe's answer to input, without the banner.
    std::string answer(const std::string &input, std::vector<std::string> args = {}) {
        args.insert(args.begin(), {"-a", "", "-d", "en_XX", "-i", "UTF-8"});
        Outcome r = orth(args, input);
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_EQ(r.err, "");
        EXPECT_EQ(r.out.compare(0, sizeof kBanner - 1, kBanner), 0) << r.out;
        return r.out.substr(std::min(r.out.size(), sizeof kBanner - 1));
    }
    TempDir dir;
};

TEST_F(Pipe, AnswersEachWordThenAnEmptyLineWithCharacterOffsets) {
    struct Case { std::string input, out; } cases[] = {
        {"helo wrld\n", "& helo 2 0: hello, help\n& wrld 1 5: world\n\n"},
        {"^helo wrld\n", "& helo 2 1: hello, help\n& wrld 1 6: world\n\n"},
        // Offsets count characters: each of the accented letters is one.
        {"^caf\xC3\xA9 caf\xC3\xA9 helo\n", "*\n*\n& helo 2 11: hello, help\n\n"},
        {"^\xD0\x96uk cat\n", "# \xD0\x96uk 1\n*\n\n"},
        {"cat, 1999 well-known doesn\xE2\x80\x99t\n", "*\n*\n-\n*\n\n"},
        {"\n", "\n"},
        {"  \t\n", "\n"},
        {"CAT HELLO Cat 21st 1990s\n", "*\n*\n*\n*\n*\n\n"},
        // Addresses are not text; a run of 70 letters is one word.
        {"^see http://x.org/helo or me@helo.org helo\n", "*\n*\n& helo 2 38: hello, help\n\n"},
        {"^" + std::string(70, 'x') + "\n", "# " + std::string(70, 'x') + " 1\n\n"},
        {"^doesn\xE2\x80\x99tt\n", "& doesn\xE2\x80\x99tt 1 1: doesn\xE2\x80\x99t\n\n"},
    };
    for (const Case &c : cases) EXPECT_EQ(answer(c.input), c.out) << c.input;
}

TEST_F(Pipe, TexModeSkipsMarkupUntilTurnedOff) {
    std::string tex = "^\\emph{helo} \\cite{wrld} $x+y$ % wrld\n";
    EXPECT_EQ(answer("!\n+\n" + tex + "-\n" + tex),
              "& helo 2 7: hello, help\n\n"
              "# emph 2\n& helo 2 7: hello, help\n& cite 2 14: cat, caf\xC3\xA9\n"
              "& wrld 1 19: world\n# x 26\n# y 28\n& wrld 1 33: world\n\n");
    EXPECT_EQ(answer("^\\begin{helo}\n", {"-t"}), "\n");
    EXPECT_EQ(answer("~tex\n^\\ref{helo}\n~plain\n^\\ref{helo}\n"),
              "\n# ref 2\n& helo 2 6: hello, help\n\n");
}

TEST_F(Pipe, SessionAndPersonalWordsAndTerseMode) {
    std::string personal = dir.file("mine.tlx");
    // Terse mode drops correct words only; @ lasts for the session; * waits
    // for # before it reaches the file.
    EXPECT_EQ(answer("!\ncat zorb\n%\ncat\n@zorb\n^zorb\n*Quux\n^quux Quux\n", {"-p", personal}),
              "# zorb 4\n\n*\n\n*\n\n& quux 1 1: Quux\n*\n\n");
    EXPECT_FALSE(fileExists(personal));
    EXPECT_EQ(answer("*Quux\n&Blorp\n#\n", {"-p", personal}), "");
    EXPECT_EQ(readFile(personal), crlfLines({"#LID 1033 1 2", "Quux", "blorp"}));
    EXPECT_EQ(answer("^Quux blorp blorq\n", {"-p", personal}), "*\n*\n& blorq 1 12: blorp\n\n");

    // Without -p the list is the user's default one for the dictionary.
    EXPECT_EQ(answer("*Zorb\n#\n"), "");
    EXPECT_EQ(readFile(dir.file("config/orth/en_XX.tlx")), crlfLines({"#LID 1033 1 1", "Zorb"}));
    Outcome r = orth({"-l", "-d", "en_XX"}, "Zorb zorb\n");
    EXPECT_EQ(r.out, "zorb\n");
}

TEST_F(Pipe, SaveFailureIsReportedAndTheWordsKeepWaiting) {
    writeFile(dir.file("blocker"), "");  // a file where the list's folder should be
    std::string personal = dir.file("blocker/mine.tlx");
    Outcome r = orth({"-a", "-d", "en_XX", "-p", personal}, "*Quux\n#\n^Quux\n");
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, std::string(kBanner) + "*\n\n");
    EXPECT_NE(r.err.find("orth: " + personal + ": cannot save the personal word list"), std::string::npos) << r.err;
}

TEST_F(Pipe, OptionsOfHunspellLikePrograms) {
    std::filesystem::create_directories(dir.file("bad"));
    writeFile(dir.file("bad/MAIN.CLX"), "not a dictionary\r\n");  // opens as a text lexicon
    struct Case { std::vector<std::string> args; std::string input, out, err; int status; } cases[] = {
        {{"-vv"}, "", kBanner, "", 0},
        {{"-l", "-d", "en_XX"}, "helo cat\nwrld\n", "helo\nwrld\n", "", 0},
        {{"-l", "-d", dir.file("en_XX"), "-i", "utf-8"}, "cat\n", "", "", 0},
        {{"pipe", "--help"}, "", "Usage: orth pipe", "", 0},
        {{"-a", "--version"}, "", "orth 4.21\n", "", 0},
        {{"-a", "-i", "ISO-8859-1"}, "", "", "orth: -i ISO-8859-1: unsupported encoding", 2},
        {{"-a", "-d", "xx_YY"}, "", "", "orth: xx_YY: no such dictionary", 2},
        {{"-a", "-d"}, "", "", "orth: -d needs a value", 2},
        {{"-a", "-q"}, "", "", "orth: unknown option -q", 2},
        {{"-l", "-d", "en_XX", dir.file("missing.txt")}, "", "", "missing.txt: No such file or directory", 2},
        {{"-d", "en_XX", "pipe", "-l"}, "helo\n", "helo\n", "", 0},
        {{"-a", "-d", dir.file("bad")}, "", "", "bad/MAIN.CLX: cannot open dictionary: not a lexicon", 2},
        {{"-a", "-d", "en_XX", "-p", dir.path()}, "", "", ": cannot open personal word list: is a folder", 2},
    };
    for (const Case &c : cases) {
        Outcome r = orth(c.args, c.input);
        EXPECT_EQ(r.status, c.status) << c.args[0] << " " << r.err;
        EXPECT_EQ(r.out.compare(0, c.out.size(), c.out), 0) << r.out;
        EXPECT_NE(r.err.find(c.err), std::string::npos) << r.err;
    }
    Outcome r = orth({"-D", "-a", "/dev/null"});
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.err.find("AVAILABLE DICTIONARIES"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("/en_XX\n"), std::string::npos) << r.err;
}

TEST_F(Pipe, RankedSuggestionsByDefaultDefinedOrderOnRequest) {
    // The built-in dictionary: the ranked suggester puts the likely word
    // first, where the defined order leads with the shorter words.
    std::string enUS = std::string(ORTH_BINARY_DIR) + "/share/orth/en_US";
    Outcome ranked = orth({"-a", "-d", enUS}, "teh\n");
    Outcome defined = orth({"-a", "-d", enUS, "--defined"}, "teh\n");
    EXPECT_NE(ranked.out.find("\n& teh 4 0: the, thee, teeth, ten\n"), std::string::npos) << ranked.out;
    EXPECT_NE(defined.out.find("\n& teh 15 0: Th, eh, tech,"), std::string::npos) << defined.out;
}

}  // namespace
