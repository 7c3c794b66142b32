// tools/cli.h — shared parts of the orth command: text conversion between
// UTF-8 and the dictionary's 8-bit character set 0, the dictionary folder and
// session, messages and exit codes. Each subcommand lives in its own file.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// Exit codes.
constexpr int kExitOk = 0;
constexpr int kExitFound = 1;   // misspellings found (list, suggest)
constexpr int kExitError = 2;   // usage, file or engine errors

// Stand-in for a character the 8-bit set cannot hold: a lower-case letter
// (thorn) that keeps the word in one piece and that an English dictionary
// does not contain, so the word is reported as unknown.
constexpr unsigned char kForeignByte = 0xFE;

// UTF-8 text converted to character set 0: ISO 8859-1 plus the Windows
// quotation marks, bullet and dashes at 0x91 to 0x9C. U+2019 becomes the plain
// apostrophe, so "doesn’t" is checked as "doesn't". origin[i] is the offset in
// the UTF-8 source of the character that gave byte i; origin[size()] is the
// source's length, so source bytes [origin[a], origin[b]) gave bytes [a, b).
struct Encoded {
    std::string bytes;
    std::vector<uint32_t> origin;
    std::vector<bool> foreign;  // byte i stands for a character the set lacks
    // Set by encodeUtf8Into for ASCII text without a NUL: byte i is source
    // byte i, and origin and foreign are left empty.
    bool identity = false;
    bool hasForeign(size_t from, size_t to) const;
    // The source text that gave bytes [from, to).
    std::string sourceOf(const std::string &utf8, size_t from, size_t to) const;
    // The source offset of byte i (i up to bytes.size()), and the source
    // span [*start, *start + *n) that gave bytes [from, to) (clamped).
    size_t sourceOffset(size_t i) const;
    void sourceSpan(size_t from, size_t to, size_t *start, size_t *n) const;
};

// Converts UTF-8 to character set 0. Invalid UTF-8 bytes, and letters of
// other scripts, become kForeignByte; symbols and punctuation the set lacks
// become a blank (they separate words); a NUL byte becomes a blank.
Encoded encodeUtf8(const std::string &utf8);
// The same into *out, reusing its buffers; ASCII text comes out as its own
// conversion (identity).
void encodeUtf8Into(const char *utf8, size_t n, Encoded *out);
// Whether text is all ASCII without a NUL byte (its own conversion).
bool isPlainAscii(const char *text, size_t n);
// The length of text's longest leading part that is plain ASCII so.
size_t plainAsciiPrefix(const char *text, size_t n);
// One character between Unicode and set 0: the byte for a code point, or
// -1 (a letter the set lacks) or -2 (a symbol or punctuation mark it lacks,
// which separates words); the code point of a byte, U+FFFD where the set has
// none; a code point below U+10000 appended as UTF-8.
int set0ByteFor(uint32_t cp);
uint32_t set0Codepoint(unsigned char c);
void appendUtf8(std::string *out, uint32_t cp);
// Converts character-set-0 bytes to UTF-8; with typoApostrophe, plain
// apostrophes are written as U+2019.
std::string decodeToUtf8(const std::string &bytes, bool typoApostrophe = false);

// A text block over one line: the line's 8-bit form in a block of the
// session, and the way back to the words as the user wrote them.
struct LineBlock {
    std::string line;   // the UTF-8 source
    Encoded enc;
    int16_t id = -1;    // the block id, or the engine's code when it did not open
    // Opens a copied block over the line; false (id holds the code) on failure.
    bool open(int16_t session, const std::string &utf8);
    // The word of length n at the block's cursor, as the user wrote it.
    std::string wordAtCursor(int16_t session, size_t n) const;
};

// Whole-file reads; false with errno set on failure. A path of "-" is
// standard input.
bool readAll(const std::string &path, std::string *out);
// The lines of a text, without their LF or CR LF ends.
std::vector<std::string> splitLines(const std::string &text);
std::string errnoText();
// Human text for a result code.
std::string describeResult(int rc);

// Options that every subcommand accepts.
struct GlobalOptions {
    std::string dictDir;        // -d: a folder or a name (en_GB); empty: ORTH_DICPATH, then en_US
    std::string personalList;   // -p: a text lexicon of accepted words; empty: the default one
};

// An open dictionary: a session with the companion MAIN.TLX (when present),
// the personal list (when present) and MAIN.CLX.
struct DictSession {
    int16_t session = -1;
    std::string folder;         // the dictionary folder
    std::string personalPath;   // -p, else the default list (front.h); "" when there is none
    int16_t personalLex = -1;   // its lexicon id, -1 while the file does not exist
};
// Finds and opens the dictionary; on failure prints a message naming the file
// and the reason and returns false.
bool openDictionary(const GlobalOptions &opts, DictSession *ds);
void closeDictionary(DictSession *ds);
// The dictionary folder that would be used, "" when none is found.
std::string findDictionaryDir(const GlobalOptions &opts);
// The folder holding the running program, "" when it cannot be told.
std::string executableDir();

// Prints "orth: " and the message to standard error.
void reportError(const char *fmt, ...);

// Subcommands: args are the words after the command name.
int runList(const GlobalOptions &opts, const std::vector<std::string> &args);
int runSuggest(const GlobalOptions &opts, const std::vector<std::string> &args);
int runCompress(const GlobalOptions &opts, const std::vector<std::string> &args);
int runLex(const GlobalOptions &opts, const std::vector<std::string> &args);

// The Ispell pipe protocol and the Ispell-style options (tools/cli_pipe.cpp).
// Whether the arguments ask for it: -a, -l, -v, -vv or -D before any command.
bool isIspellInvocation(const std::vector<std::string> &args);
int runIspell(const GlobalOptions &opts, const std::vector<std::string> &args);
// `orth pipe ARGS`: as `orth -a ARGS`.
int runPipe(const GlobalOptions &opts, const std::vector<std::string> &args);

// Help (tools/cli_help.cpp): one command's usage, false for an unknown
// command; and "orth X.Y" on standard output, returning kExitOk.
bool printCommandHelp(const std::string &command, FILE *out);
int printVersion();

// The dialogs in the terminal (tools/cli_check.cpp, tools/cli_interactive.cpp).
int runCheck(const GlobalOptions &opts, const std::vector<std::string> &args);
int runDicts(const GlobalOptions &opts, const std::vector<std::string> &args);
int runOptions(const GlobalOptions &opts, const std::vector<std::string> &args);
