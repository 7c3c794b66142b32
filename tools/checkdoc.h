// tools/checkdoc.h — a text file as `orth check` hands it to the Check
// Spelling dialog: its UTF-8 converted to character set 0, cut into the
// runs the dialog may edit, each run shown to the dialog as a host edit
// control, and the edited text turned back into the file's bytes. Also the
// file's safe rewrite: a temporary file beside it, then a rename, with the
// old text kept as FILE.bak.
//
// A character that character set 0 cannot hold (a letter of another script,
// a symbol, an invalid byte, a NUL) is never given to the dialog: the runs
// end before it and start after it, so the words around it are checked and
// the character is written back exactly as it was. Inside a run, every
// character the dialog leaves alone is written back as it was read (a
// typographic apostrophe stays one); what the dialog writes is converted
// from character set 0.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/cli.h"

// The edit control of one run: the run's 8-bit text and, for every byte, the
// character of the file it still stands for (kNewByte once the dialog wrote
// it). The selection and the calls are those of a Windows edit control.
struct CheckRun {
    static constexpr uint32_t kNewByte = UINT32_MAX;
    std::string bytes;
    std::vector<uint32_t> from;  // index into CheckDoc::enc, or kNewByte
    uint32_t selStart = 0, selEnd = 0;

    void setSelection(uint32_t start, uint32_t end);  // clamped to the text, in order
    void replaceSelection(const char *text);          // the caret ends after the new text
};

struct CheckDoc {
    std::string source;  // the file as read
    Encoded enc;         // its 8-bit form
    // The parts of the text in order: runs for the dialog, and between them
    // the characters kept out of it (pieces of source).
    struct Part {
        bool isRun;
        CheckRun run;         // when isRun
        uint32_t from, to;    // the part's characters: enc indexes [from, to)
    };
    std::vector<Part> parts;
};

// Builds the document of a file's text.
void checkDocOpen(CheckDoc *doc, const std::string &source);
// Whether a run holds anything to check (a letter or digit).
bool checkRunHasWords(const CheckRun &run);
// The text with every change of the runs, as the file's bytes.
std::string checkDocText(const CheckDoc &doc);

// Writes text to path through a temporary file in path's folder and a
// rename; path keeps its permissions, and a symbolic link is followed to the
// file it names. With backup, the file's old text (oldText) is first kept
// as path + ".bak" the same way. False with *error set when nothing was
// replaced (path then still holds its old text).
bool rewriteFile(const std::string &path, const std::string &oldText, const std::string &text, bool backup,
                 std::string *error);
