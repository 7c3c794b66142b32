// ui/rcscript.h — the Windows resource script of the dialogs, generated from
// the templates table (templates.h), so that the Win32 dialogs and the
// terminal front end cannot drift apart. The script's string table comes from
// whatever text tables the caller hands in (the user-visible texts of the
// client layer and the dialogs); the dialogs part needs nothing else.
#pragma once

#include <cstdint>
#include <string>

#include "ui/templates.h"

// One string-table entry: its resource number and its 8-bit text.
struct RcString {
    uint16_t id;
    const char *text;
};

// A caption or text as an RC string literal: quotes doubled, backslashes and
// bytes outside printable ASCII written as octal escapes.
std::string rcQuote(const char *text);

// The DIALOG statement of one template, and of all four in table order.
void writeDialogResource(std::string *out, const DlgTemplate &dialog);
void writeDialogResources(std::string *out);

// A STRINGTABLE of the given entries in the order given; nothing when there
// are none (an empty table is not valid RC).
void writeStringTable(std::string *out, const RcString *strings, int count);

// The whole script: the header, the four dialogs, then the string tables,
// one after another (tables may be null with a count of 0).
struct RcStringTable {
    const RcString *strings;
    int count;
};
void writeResourceScript(std::string *out, const RcStringTable *tables, int tableCount);

// The library's script: the dialogs and every text of the client layer's
// string table (host/texts.h) in the order of their ids.
void writeLibraryResourceScript(std::string *out);
