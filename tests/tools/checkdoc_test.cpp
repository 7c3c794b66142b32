// tests/tools/checkdoc_test.cpp — a file's text as orth check hands it to
// the Check Spelling dialog, and its rewrite.
// Groups: CheckDoc (runs around characters set 0 lacks, edits written back,
// untouched text byte for byte), Rewrite (temporary file and rename, the
// backup, permissions, links, a folder that cannot be written).
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

#include "support/test_util.h"
#include "tools/checkdoc.h"

namespace {

using Strings = std::vector<std::string>;

Strings runsOf(const CheckDoc &doc) {
    Strings out;
    for (const CheckDoc::Part &p : doc.parts) out.push_back((p.isRun ? "run:" : "kept:") + doc.source.substr(
        doc.enc.origin[p.from], doc.enc.origin[p.to] - doc.enc.origin[p.from]));
    return out;
}

TEST(CheckDoc, RunsEndAroundCharactersTheSetLacks) {
    struct Case {
        std::string text;
        Strings parts;
    } cases[] = {
        {"plain text\r\nand more", {"run:plain text\r\nand more"}},
        {"caf\xC3\xA9 doesn\xE2\x80\x99t \xE2\x80\x9Cquote\xE2\x80\x9D", {"run:caf\xC3\xA9 doesn\xE2\x80\x99t \xE2\x80\x9Cquote\xE2\x80\x9D"}},
        {"the \xCE\xB1\xCE\xB2 the", {"run:the ", "kept:\xCE\xB1\xCE\xB2", "run: the"}},
        {"a\xE2\x86\x92" "b", {"run:a", "kept:\xE2\x86\x92", "run:b"}},          // an arrow
        {std::string("x\0y", 3), {"run:x", "kept:" + std::string(1, '\0'), "run:y"}},
        {"bad\xFF\xFE" "byte", {"run:bad", "kept:\xFF\xFE", "run:byte"}},
        {"\xF0\x9F\x98\x80", {"kept:\xF0\x9F\x98\x80"}},
        {"", {}},
    };
    for (const Case &c : cases) {
        CheckDoc doc;
        checkDocOpen(&doc, c.text);
        EXPECT_EQ(runsOf(doc), c.parts) << c.text;
        EXPECT_EQ(checkDocText(doc), c.text);  // nothing changed: the same bytes
    }
}

TEST(CheckDoc, EditsComeBackConvertedAndTheRestUntouched) {
    CheckDoc doc;
    checkDocOpen(&doc, "teh caf\xC3\xA9 isn\xE2\x80\x99t \xCE\xB1 the the end");
    ASSERT_EQ(doc.parts.size(), 3u);
    CheckRun &first = doc.parts[0].run;
    EXPECT_EQ(first.bytes, "teh caf\xE9 isn't ");
    first.setSelection(0, 3);
    first.replaceSelection("the");
    first.setSelection(8, 4);  // reversed: put in order
    first.replaceSelection("\xE9t\xE9");
    EXPECT_EQ(first.selStart, 7u);
    EXPECT_EQ(first.selEnd, 7u);
    CheckRun &last = doc.parts[2].run;
    EXPECT_FALSE(checkRunHasWords(CheckRun{" - ", {0, 1, 2}}));
    EXPECT_TRUE(checkRunHasWords(last));
    last.setSelection(5, 9);  // a doubled word and its blank
    last.replaceSelection("");
    last.setSelection(100, 200);  // beyond the text: clamped to its end
    last.replaceSelection(".");
    EXPECT_EQ(checkDocText(doc), "the \xC3\xA9t\xC3\xA9 isn\xE2\x80\x99t \xCE\xB1 the end.");
}

class Rewrite : public ::testing::Test {
protected:
    TempDir dir;
    std::string path = dir.file("notes.txt");
};

TEST_F(Rewrite, ReplacesThroughARenameKeepingTheBackupAndTheMode) {
    writeFile(path, "old text");
    chmod(path.c_str(), 0640);
    std::string error;
    ASSERT_TRUE(rewriteFile(path, "old text", "new text", true, &error)) << error;
    EXPECT_EQ(readFile(path), "new text");
    EXPECT_EQ(readFile(path + ".bak"), "old text");
    struct stat st;
    ASSERT_EQ(stat(path.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);

    writeFile(path + ".bak", "an older backup");
    ASSERT_TRUE(rewriteFile(path, "new text", "newer", false, &error)) << error;
    EXPECT_EQ(readFile(path), "newer");
    EXPECT_EQ(readFile(path + ".bak"), "an older backup");  // --no-backup leaves it
}

TEST_F(Rewrite, ALinkIsFollowedAndAFailedBackupLeavesTheFile) {
    std::string real = dir.file("real.txt"), link = dir.file("link.txt");
    writeFile(real, "one");
    ASSERT_EQ(symlink(real.c_str(), link.c_str()), 0);
    std::string error;
    ASSERT_TRUE(rewriteFile(link, "one", "two", true, &error)) << error;
    EXPECT_EQ(readFile(real), "two");
    EXPECT_EQ(readFile(real + ".bak"), "one");
    struct stat st;
    ASSERT_EQ(lstat(link.c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));

    // A backup that cannot be made (its name is a folder) stops the rewrite.
    mkdir((path + ".bak").c_str(), 0700);
    writeFile(path, "kept");
    EXPECT_FALSE(rewriteFile(path, "kept", "lost", true, &error));
    EXPECT_NE(error.find("cannot replace"), std::string::npos) << error;
    EXPECT_EQ(readFile(path), "kept");
    Strings left;  // no temporary file stays behind
    for (const auto &entry : std::filesystem::directory_iterator(dir.path()))
        left.push_back(entry.path().filename().string());
    std::sort(left.begin(), left.end());
    EXPECT_EQ(left, (Strings{"link.txt", "notes.txt", "notes.txt.bak", "real.txt", "real.txt.bak"}));
}

}  // namespace
