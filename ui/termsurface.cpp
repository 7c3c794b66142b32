// ui/termsurface.cpp — the terminal front end.
//
// Design notes
// (1) The screen is drawn whole after every key into a grid of cells
//     (TermScreen), then written row by row; nothing depends on what the
//     terminal showed before, so a resize or a return from Ctrl-Z only needs
//     the next draw.
// (2) Layout, from the template in template order: buttons go to the
//     button rows at the bottom; a label followed by a field (edit, list,
//     combo, or a label without template caption that shows a value) shares
//     its line; lists show their entries below, numbered from 1. Lists get
//     the rows left over, the focused list first, at least one row each.
// (3) Message boxes, file dialogs and help run their own key loops over the
//     dialog's screen; while one is open the dialog receives no keys.
#ifndef _WIN32

#include "ui/termsurface.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "engine/log.h"
#include "orth.h"
#include "platform/platform.h"

namespace {

const char kEnterScreen[] = "\x1b[?1049h\x1b[H\x1b[2J";
const char kLeaveScreen[] = "\x1b[0m\x1b[?25h\x1b[?1049l";

uint32_t latin1Char(unsigned char byte) { return byte >= 0x20 && (byte < 0x7F || byte >= 0xA0) ? byte : 0; }
int latin1Byte(uint32_t ch) { return (ch >= 0x20 && ch < 0x7F) || (ch >= 0xA0 && ch <= 0xFF) ? int(ch) : -1; }

// --- Lines of segments, before they become cells. ---

struct Seg {
    std::string text;  // 8-bit text through the codec, or UTF-8 when utf8 is set
    uint8_t attr;
    bool utf8;
};

struct Line {
    std::vector<Seg> segs;
    int cursor = -1;  // column of the caret on this line, or -1
    int list = -1;    // a list control whose entries follow this line, or -1
    int indent = 0;   // the column of those entries
    int width() const;
};

size_t utf8Length(const std::string &s) {
    size_t n = 0;
    for (unsigned char c : s) n += (c & 0xC0) != 0x80;
    return n;
}

int Line::width() const {
    size_t w = 0;
    for (const Seg &s : segs) w += s.utf8 ? utf8Length(s.text) : s.text.size();
    return int(w);
}

void add(Line *line, const std::string &text, uint8_t attr = 0, bool utf8 = false) {
    line->segs.push_back({text, attr, utf8});
}

void pad(Line *line, int column) {
    int w = line->width();
    if (w < column) add(line, std::string(size_t(column - w), ' '));
}

// A caption with its '&' marks removed and the accelerator underlined;
// for a button, the accelerator is also put in brackets. A disabled
// control shows no mark. "&&" is an ampersand, and only the first single
// '&' marks a character, as in Windows.
void addCaption(Line *line, const std::string &caption, uint8_t attr, bool enabled, bool button) {
    std::string before, after;
    char key = 0;
    for (size_t i = 0; i < caption.size(); ++i) {
        char c = caption[i];
        if (c == '&' && i + 1 < caption.size() && caption[i + 1] == '&') {
            ++i;
        } else if (c == '&') {
            if (key == 0 && i + 1 < caption.size()) key = caption[++i];
            continue;
        }
        (key != 0 ? after : before) += c;
    }
    if (key == 0 || !enabled) {
        add(line, before + (key != 0 ? std::string(1, key) : std::string()) + after, attr);
        return;
    }
    add(line, before, attr);
    if (button) add(line, "[", attr);
    add(line, std::string(1, key), uint8_t(attr | kTermUnderline | kTermBold));
    if (button) add(line, "]", attr);
    add(line, after, attr);
}

std::string captionWithoutMarks(const std::string &caption) {
    Line l;
    addCaption(&l, caption, 0, false, false);
    std::string out;
    for (const Seg &s : l.segs) out += s.text;
    return out;
}

bool isValueLabel(const UiControlState &c) { return c.control->kind == DLG_LABEL && c.control->caption[0] == '\0'; }

bool isField(const UiControlState &c) {
    return c.control->kind == DLG_EDIT || dlgIsListKind(c.control->kind) || isValueLabel(c);
}

// Whether a list's entries are shown below its line.
bool showsEntries(const UiDialog *d, int i) {
    DlgCtlKind kind = d->controls[i].control->kind;
    return kind == DLG_LISTBOX || kind == DLG_SIMPLECOMBO || (dlgIsListKind(kind) && d->focus == i);
}

int fieldWidth(const UiControlState &c, int room) {
    return std::max(8, std::min(c.control->cx / 4 + 4, room));
}

// An edit field "[text   ]" with the caret's column when focused.
void addEditField(Line *line, const UiDialog *d, int i, int room) {
    const UiControlState &c = d->controls[i];
    int w = fieldWidth(c, room - 2);
    bool focused = d->focus == i;
    int32_t caret = focused ? std::min<int32_t>(d->caret, int32_t(c.text.size())) : int32_t(c.text.size());
    int32_t first = std::max<int32_t>(0, caret - w + 1);
    if (!focused) first = 0;
    std::string shown = c.text.substr(size_t(first), size_t(w));
    shown.resize(size_t(w), ' ');
    uint8_t attr = !c.enabled ? kTermDim : focused ? kTermReverse : kTermUnderline;
    add(line, "[");
    if (focused) line->cursor = line->width() + (caret - first);
    add(line, shown, attr);
    add(line, "]");
}

void addDropField(Line *line, const UiControlState &c, bool focused, int room) {
    int w = fieldWidth(c, room - 4);
    std::string shown = c.selection >= 0 ? c.items[c.selection].text.substr(0, size_t(w)) : std::string();
    shown.resize(size_t(w), ' ');
    add(line, "<");
    add(line, shown, !c.enabled ? kTermDim : focused ? kTermReverse : 0);
    add(line, " v>");
}

int digits(size_t n) {
    int k = 1;
    for (; n >= 10; n /= 10) ++k;
    return k;
}

// The entry lines of list control i, at most rowsFor of them, kept around
// the selection; each starts at the list's indent.
std::vector<Line> entryLines(const UiDialog *d, int i, int indent, int rowsFor) {
    const UiControlState &c = d->controls[i];
    std::vector<Line> out;
    int n = int(c.items.size());
    if (n == 0) {
        Line l;
        pad(&l, indent);
        add(&l, "(empty)", kTermDim);
        out.push_back(l);
        return out;
    }
    int rows = std::max(1, std::min(n, rowsFor));
    int first = c.selection < 0 ? 0 : std::max(0, std::min(c.selection - rows / 2, n - rows));
    int numberWidth = digits(size_t(n));
    for (int k = first; k < first + rows; ++k) {
        Line l;
        pad(&l, indent);
        bool selected = k == c.selection;
        std::string number = std::to_string(k + 1);
        add(&l, selected ? ">" : " ", kTermBold);
        add(&l, std::string(size_t(numberWidth) - number.size(), ' ') + number + " ", kTermDim);
        uint8_t attr = !c.enabled ? kTermDim : selected ? uint8_t(d->focus == i ? kTermReverse : kTermBold) : 0;
        add(&l, c.items[size_t(k)].text, attr);
        if (k == first + rows - 1 && (first > 0 || first + rows < n))
            add(&l, "  (" + std::to_string(first + 1) + "-" + std::to_string(first + rows) + " of " +
                        std::to_string(n) + ")", kTermDim);
        out.push_back(l);
    }
    return out;
}

// Lays out the dialog's controls (design note 2), without the entry lines.
std::vector<Line> layoutControls(const UiDialog *d, int columns, std::vector<int> *buttons) {
    std::vector<Line> out;
    int labelWidth = 0;
    for (int i = 0; i + 1 < d->count; ++i)
        if (d->controls[i].control->kind == DLG_LABEL && isField(d->controls[i + 1]) && !isValueLabel(d->controls[i]))
            labelWidth = std::max(labelWidth, int(captionWithoutMarks(d->controls[i].text).size()));
    int fieldColumn = 1 + (labelWidth > 0 ? labelWidth + 2 : 0);
    int room = columns - fieldColumn - 2;

    for (int i = 0; i < d->count; ++i) {
        const UiControlState &c = d->controls[i];
        DlgCtlKind kind = c.control->kind;
        Line line;
        add(&line, " ");
        if (kind == DLG_BUTTON || kind == DLG_DEFBUTTON) {
            buttons->push_back(i);
            continue;
        }
        int field = -1;
        if (kind == DLG_LABEL && !isValueLabel(c)) {
            addCaption(&line, c.text, 0, true, false);
            if (i + 1 < d->count && isField(d->controls[i + 1])) field = ++i;
            pad(&line, field >= 0 ? fieldColumn : 0);
        } else if (kind == DLG_GROUP) {
            if (!c.text.empty()) addCaption(&line, c.text, kTermBold, c.enabled, false);
        } else if (kind == DLG_CHECKBOX || kind == DLG_RADIO) {
            uint8_t attr = c.enabled ? (d->focus == i ? kTermReverse : 0) : kTermDim;
            if (kind == DLG_RADIO) add(&line, "  ");
            add(&line, kind == DLG_RADIO ? (c.check ? "(*) " : "( ) ") : (c.check ? "[x] " : "[ ] "),
                c.enabled ? 0 : kTermDim);
            addCaption(&line, c.text, attr, c.enabled, false);
        } else {
            field = i;
            pad(&line, fieldColumn);
        }
        if (field >= 0) {
            const UiControlState &f = d->controls[field];
            int at = line.width();
            switch (f.control->kind) {
            case DLG_EDIT: case DLG_SIMPLECOMBO: case DLG_EDITCOMBO: addEditField(&line, d, field, room); break;
            case DLG_DROPLIST: addDropField(&line, f, d->focus == field, room); break;
            case DLG_LABEL: add(&line, f.text, f.enabled ? 0 : kTermDim); break;
            default: break;  // a list box: its first entry continues this line
            }
            if (showsEntries(d, field)) {
                line.list = field;
                line.indent = f.control->kind == DLG_LISTBOX ? at : at + 1;
            }
        }
        out.push_back(line);
    }
    return out;
}

// The button rows: captions in template order, two blanks apart, wrapped.
std::vector<Line> buttonLines(const UiDialog *d, const std::vector<int> &buttons, int columns) {
    std::vector<Line> out;
    Line line;
    add(&line, " ");
    for (int i : buttons) {
        const UiControlState &c = d->controls[i];
        Line b;
        uint8_t attr = !c.enabled ? kTermDim : d->focus == i ? kTermReverse : 0;
        addCaption(&b, c.text, attr, c.enabled, true);
        if (line.width() > 1 && line.width() + 2 + b.width() > columns - 1) {
            out.push_back(line);
            line = Line();
            add(&line, " ");
        }
        if (line.width() > 1) add(&line, "  ");
        for (Seg &s : b.segs) line.segs.push_back(s);
    }
    if (line.width() > 1) out.push_back(line);
    return out;
}

// The context line: the text around the marked range, fitted to the width;
// "..." stands for text cut off at either end.
Line contextLine(const TermUi *t, int columns) {
    Line l;
    add(&l, " ");
    std::string text = t->contextText;
    for (char &ch : text)
        if (static_cast<unsigned char>(ch) < 0x20) ch = ' ';
    int32_t n = int32_t(text.size());
    int32_t start = std::max<int32_t>(0, std::min(t->contextStart, n));
    int32_t end = start + std::max<int32_t>(0, std::min(t->contextCount, n - start));
    int32_t room = std::max(16, columns - 2);
    int32_t first = 0, last = n;
    if (n > room) {
        first = std::max<int32_t>(0, std::min(start - (room - (end - start)) / 2, n - room));
        last = first + room;
        if (first > 0) first += 3;
        if (last < n) last -= 3;
    }
    int32_t markFrom = std::max(start, first), markTo = std::min(end, last);
    if (markTo < markFrom) markFrom = markTo = first;
    if (first > 0) add(&l, "...", kTermDim);
    add(&l, text.substr(size_t(first), size_t(markFrom - first)));
    add(&l, text.substr(size_t(markFrom), size_t(markTo - markFrom)), kTermReverse | kTermBold);
    add(&l, text.substr(size_t(markTo), size_t(last - markTo)));
    if (last < n) add(&l, "...", kTermDim);
    return l;
}

// --- Cells. ---

void putLine(TermScreen *s, int row, const Line &line, const TermCodec &codec) {
    if (row < 0 || row >= s->rows) return;
    int col = 0;
    for (const Seg &seg : line.segs) {
        for (size_t i = 0; i < seg.text.size() && col < s->columns; ++i) {
            uint32_t ch;
            if (seg.utf8) {
                unsigned char b = static_cast<unsigned char>(seg.text[i]);
                int more = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
                ch = b & (more == 3 ? 0x07 : more == 2 ? 0x0F : more == 1 ? 0x1F : 0x7F);
                for (; more > 0 && i + 1 < seg.text.size(); --more)
                    ch = (ch << 6) | (static_cast<unsigned char>(seg.text[++i]) & 0x3F);
                if (ch < 0x20 || (ch >= 0x7F && ch < 0xA0)) ch = '?';
            } else {
                unsigned char byte = static_cast<unsigned char>(seg.text[i]);
                ch = codec.toChar != nullptr ? codec.toChar(byte) : latin1Char(byte);
                if (ch == 0) ch = '?';
            }
            s->cells[size_t(row * s->columns + col++)] = {ch, seg.attr};
        }
    }
    if (line.cursor >= 0 && line.cursor < s->columns) {
        s->cursorRow = row;
        s->cursorColumn = line.cursor;
    }
}

void clearScreen(TermScreen *s, int columns, int rows) {
    s->columns = std::max(1, columns);
    s->rows = std::max(1, rows);
    s->cells.assign(size_t(s->columns * s->rows), TermCell{' ', 0});
    s->cursorRow = s->cursorColumn = -1;
}

void appendUtf8(std::string *out, uint32_t ch) {
    if (ch < 0x80) {
        *out += char(ch);
    } else if (ch < 0x800) {
        *out += char(0xC0 | (ch >> 6));
        *out += char(0x80 | (ch & 0x3F));
    } else if (ch < 0x10000) {
        *out += char(0xE0 | (ch >> 12));
        *out += char(0x80 | ((ch >> 6) & 0x3F));
        *out += char(0x80 | (ch & 0x3F));
    } else {
        *out += char(0xF0 | (ch >> 18));
        *out += char(0x80 | ((ch >> 12) & 0x3F));
        *out += char(0x80 | ((ch >> 6) & 0x3F));
        *out += char(0x80 | (ch & 0x3F));
    }
}

void writeScreen(const TermScreen &s, bool clearFirst) {
    std::string out = clearFirst ? "\x1b[2J" : "";
    out += "\x1b[?25l\x1b[H";
    for (int r = 0; r < s.rows; ++r) {
        int end = s.columns;
        while (end > 0 && s.cells[size_t(r * s.columns + end - 1)].ch == ' ' &&
               s.cells[size_t(r * s.columns + end - 1)].attr == 0)
            --end;
        uint8_t attr = 0;
        out += "\x1b[" + std::to_string(r + 1) + ";1H\x1b[0m";
        for (int c = 0; c < end; ++c) {
            const TermCell &cell = s.cells[size_t(r * s.columns + c)];
            if (cell.attr != attr) {
                attr = cell.attr;
                out += "\x1b[0";
                if (attr & kTermBold) out += ";1";
                if (attr & kTermDim) out += ";2";
                if (attr & kTermUnderline) out += ";4";
                if (attr & kTermReverse) out += ";7";
                out += "m";
            }
            appendUtf8(&out, cell.ch);
        }
        out += "\x1b[0m\x1b[K";
    }
    if (s.cursorRow >= 0)
        out += "\x1b[" + std::to_string(s.cursorRow + 1) + ";" + std::to_string(s.cursorColumn + 1) + "H\x1b[?25h";
    platTermWrite(out.data(), uint32_t(out.size()));
}

// --- Keys from the terminal's bytes. ---

constexpr int kKeyRedraw = -10;

int readKey(const TermUi *t) {
    int b = platTermRead(-1);
    if (b < 0) return b;
    if (b == 0x1B) {
        int n = platTermRead(40);
        if (n == kTermTimeout) return kKeyEsc;
        if (n < 0) return n;
        if (n == '[' || n == 'O') {
            std::string params;
            int f;
            while ((f = platTermRead(40)) >= 0 && (f < 0x40 || f > 0x7E) && params.size() < 16) params += char(f);
            switch (f) {
            case 'A': return kKeyUp;
            case 'B': return kKeyDown;
            case 'C': return kKeyRight;
            case 'D': return kKeyLeft;
            case 'H': return kKeyHome;
            case 'F': return kKeyEnd;
            case 'Z': return kKeyBackTab;
            case '~':
                if (params == "3") return kKeyDelete;
                if (params == "1" || params == "7") return kKeyHome;
                if (params == "4" || params == "8") return kKeyEnd;
                return kTermTimeout;
            default: return kTermTimeout;  // a sequence we do not use
            }
        }
        if (n >= 0x20 && n < 0x7F) return kKeyAlt | n;
        return kTermTimeout;
    }
    switch (b) {
    case '\r': case '\n': return kKeyEnter;
    case '\t': return kKeyTab;
    case 0x7F: case 0x08: return kKeyBackspace;
    case 0x15: return kKeyKillLine;
    case 0x0C: return kKeyRedraw;
    default: break;
    }
    if (b < 0x20) return kTermTimeout;
    if (b < 0x80) return b;
    // A UTF-8 sequence: the character, then its byte in the dialogs' set.
    int more = b >= 0xF0 ? 3 : b >= 0xE0 ? 2 : b >= 0xC0 ? 1 : 0;
    uint32_t ch = uint32_t(b) & (more == 3 ? 0x07 : more == 2 ? 0x0F : 0x1F);
    if (more == 0) return kTermTimeout;
    for (; more > 0; --more) {
        int c = platTermRead(40);
        if (c < 0 || (c & 0xC0) != 0x80) return kTermTimeout;
        ch = (ch << 6) | uint32_t(c & 0x3F);
    }
    int byte = t->codec.fromChar(ch);
    return byte < 0 ? kTermTimeout : byte;
}

// --- Drawing the dialog and the boxes over it. ---

TermUi *termOf(UiSurface *s) { return static_cast<TermUi *>(static_cast<UiDialog *>(s->impl)->frontEnd); }

void refreshSize(TermUi *t) { platTermSize(&t->columns, &t->rows); }

std::vector<std::string> wrapText(const std::string &text, size_t width) {
    std::vector<std::string> out;
    size_t start = 0;
    while (start <= text.size()) {
        size_t nl = text.find('\n', start);
        std::string para = text.substr(start, nl == std::string::npos ? std::string::npos : nl - start);
        while (para.size() > width) {
            size_t cut = para.rfind(' ', width);
            if (cut == std::string::npos || cut == 0) cut = width;
            out.push_back(para.substr(0, cut));
            para.erase(0, cut + (cut < para.size() && para[cut] == ' ' ? 1 : 0));
        }
        out.push_back(para);
        if (nl == std::string::npos) break;
        start = nl + 1;
    }
    return out;
}

struct Box {
    std::string caption;
    std::vector<Line> body;
};

// Draws the box centred over the screen.
void drawBox(TermScreen *s, const Box &box, const TermCodec &codec) {
    int inner = int(box.caption.size()) + 4;
    for (const Line &l : box.body) inner = std::max(inner, l.width() + 2);
    inner = std::min(inner, s->columns - 4);
    int height = int(box.body.size()) + 2;
    int top = std::max(0, (s->rows - height) / 2);
    int left = std::max(0, (s->columns - inner - 2) / 2);
    Line border;
    pad(&border, left);
    add(&border, "+- ", kTermBold);
    add(&border, box.caption, kTermBold);
    add(&border, " " + std::string(size_t(std::max(0, inner - int(box.caption.size()) - 3)), '-') + "+", kTermBold);
    putLine(s, top, border, codec);
    for (size_t i = 0; i < box.body.size(); ++i) {
        Line l;
        pad(&l, left);
        add(&l, "| ", kTermBold);
        int at = l.width();
        for (const Seg &seg : box.body[i].segs) l.segs.push_back(seg);
        if (box.body[i].cursor >= 0) l.cursor = at + box.body[i].cursor;
        pad(&l, left + inner);
        add(&l, " |", kTermBold);
        putLine(s, top + 1 + int(i), l, codec);
    }
    Line bottom;
    pad(&bottom, left);
    add(&bottom, "+" + std::string(size_t(inner), '-') + "+", kTermBold);
    putLine(s, top + height - 1, bottom, codec);
}

void show(TermUi *t, const Box *box, bool clearFirst = false) {
    if (!t->begun) return;
    TermScreen screen;
    TermUi_Draw(t, &screen);
    if (box != nullptr) {
        screen.cursorRow = -1;
        drawBox(&screen, *box, t->codec);
    }
    writeScreen(screen, clearFirst);
}

// Reads the next key for a box or a dialog, redrawing as the terminal asks.
int nextKey(TermUi *t, const Box *box) {
    for (;;) {
        int k = readKey(t);
        bool redraw = platTermRedrawPending() || k == kKeyRedraw;
        if (redraw) {
            refreshSize(t);
            show(t, box, true);
        }
        if (k == kTermClosed) return k;
        if (k >= 0) return k;
    }
}

Box messageBoxOf(const TermUi *t, const char *text, const char *caption, UiButtons buttons) {
    Box box{caption != nullptr && caption[0] != '\0' ? caption : "Message", {}};
    box.body.push_back(Line());
    for (const std::string &s : wrapText(text == nullptr ? "" : text, size_t(std::max(20, std::min(60, t->columns - 10))))) {
        Line l;
        add(&l, s);
        box.body.push_back(l);
    }
    box.body.push_back(Line());
    Line keys;
    add(&keys, buttons == UI_MB_OKCANCEL ? "Enter: OK    Esc: Cancel" : "Enter: OK", kTermBold);
    box.body.push_back(keys);
    return box;
}

int showMessageBox(TermUi *t, const char *text, const char *caption, UiButtons buttons) {
    if (!t->begun) return buttons == UI_MB_OKCANCEL ? kIdCancel : kIdOk;
    Box box = messageBoxOf(t, text, caption, buttons);
    show(t, &box);
    for (;;) {
        int k = nextKey(t, &box);
        if (k == kTermClosed) return buttons == UI_MB_OKCANCEL ? kIdCancel : kIdOk;
        if (k == kKeyEnter || k == ' ' || k == 'o' || k == 'O') return kIdOk;
        if (k == kKeyEsc || k == 'c' || k == 'C') return buttons == UI_MB_OKCANCEL ? kIdCancel : kIdOk;
    }
}

int termMessageBox(UiSurface *s, const char *text, const char *caption, UiButtons buttons) {
    return showMessageBox(termOf(s), text, caption, buttons);
}

std::string folderOf(const std::string &path) {
    size_t cut = path.find_last_of("/\\");
    if (cut == std::string::npos) return ".";
    return cut == 0 ? "/" : path.substr(0, cut);
}

// The path the user means by what was typed: "~/" is the home folder, a
// relative name lies in the starting folder.
std::string resolvePath(const std::string &typed, const char *folder) {
    if (typed.rfind("~/", 0) == 0) {
        const char *home = std::getenv("HOME");
        if (home != nullptr) return std::string(home) + typed.substr(1);
    }
    if (!typed.empty() && typed[0] == '/') return typed;
    std::string base = folder == nullptr || folder[0] == '\0' ? "." : folder;
    if (base.back() != '/') base += '/';
    return base + typed;
}

// The filter's descriptions, for the box.
std::string filterText(const char *filter) {
    char list[1024];
    std::string out;
    if (uiFilterToList(filter, list, sizeof list) < 0) return out;
    for (const char *p = list; *p != '\0';) {
        if (!out.empty()) out += ", ";
        out += p;
        p += std::strlen(p) + 1;
        if (*p != '\0') p += std::strlen(p) + 1;  // the pattern
    }
    return out;
}

// Checks a chosen path against the request's flags; false (after telling
// the user why) when the dialog must stay open.
bool acceptPath(UiSurface *s, const UiFileRequest *r, const std::string &path, int32_t size) {
    if (int32_t(path.size()) >= size) {
        termMessageBox(s, ("The file name is too long:\n" + path).c_str(), r->title, UI_MB_OK);
        return false;
    }
    if ((r->flags & kUiPathMustExist) && !platFileExists(folderOf(path).c_str())) {
        termMessageBox(s, ("The folder does not exist:\n" + folderOf(path)).c_str(), r->title, UI_MB_OK);
        return false;
    }
    bool exists = platFileExists(path.c_str());
    if ((r->flags & kUiFileMustExist) && !exists) {
        termMessageBox(s, ("File not found:\n" + path).c_str(), r->title, UI_MB_OK);
        return false;
    }
    if ((r->flags & kUiOverwritePrompt) && exists)
        return termMessageBox(s, (path + " already exists.\nDo you want to replace it?").c_str(), r->title,
                              UI_MB_OKCANCEL) == kIdOk;
    return true;
}

bool termFileDialog(UiSurface *s, const UiFileRequest *r, char *path, int32_t size) {
    TermUi *t = termOf(s);
    if (!t->begun) return false;
    std::string typed = r->fileName != nullptr ? r->fileName : "";
    for (;;) {
        Box box{r->title != nullptr && r->title[0] != '\0' ? r->title : (r->save ? "Save As" : "Open"), {}};
        int width = std::max(30, std::min(70, t->columns - 8));
        Line files, folder, name, keys;
        add(&files, "Files:  " + filterText(r->filter).substr(0, size_t(width - 8)));
        add(&folder, "Folder: ");
        add(&folder, r->folder != nullptr && r->folder[0] != '\0' ? r->folder : ".", 0, true);
        add(&name, "Name:   [");
        std::string shown = typed.size() > size_t(width - 12) ? typed.substr(typed.size() - size_t(width - 12)) : typed;
        name.cursor = name.width() + int(utf8Length(shown));
        add(&name, shown + std::string(size_t(width - 12) - utf8Length(shown), ' '), kTermReverse, true);
        add(&name, "]");
        add(&keys, "Enter: choose    Esc: cancel", kTermBold);
        box.body = {files, folder, Line(), name, Line(), keys};
        show(t, &box);
        int k = nextKey(t, &box);
        if (k == kTermClosed || k == kKeyEsc) return false;
        if (k == kKeyEnter) {
            if (typed.empty()) continue;
            std::string full = resolvePath(typed, r->folder);
            if (!acceptPath(s, r, full, size)) continue;
            std::memcpy(path, full.c_str(), full.size() + 1);
            return true;
        }
        if (k == kKeyBackspace) {
            while (!typed.empty() && (static_cast<unsigned char>(typed.back()) & 0xC0) == 0x80) typed.pop_back();
            if (!typed.empty()) typed.pop_back();
        } else if (k == kKeyKillLine) {
            typed.clear();
        } else if (k >= 0x20 && k <= 0xFF && k != 0x7F && typed.size() < 1024) {
            // Paths are the file system's bytes: what was typed, as UTF-8.
            uint32_t ch = t->codec.toChar(static_cast<unsigned char>(k));
            if (ch != 0) appendUtf8(&typed, ch);
        }
    }
}

void setWaitCursor(TermUi *t, bool on) {
    t->waitDepth = std::max(0, t->waitDepth + (on ? 1 : -1));
    if (on && t->waitDepth == 1) show(t, nullptr);
}

void termWaitCursor(UiSurface *s, bool on) { setWaitCursor(termOf(s), on); }

void termHelp(UiSurface *s, const char *helpFile, uint32_t context) {
    std::string text =
        "Keys: a marked letter presses its button, toggles its check box or moves to its field. "
        "Digits 1 to 9 choose from the numbered list. Tab and Shift-Tab move between controls; "
        "Space presses the one marked. In a field, Enter or Esc ends the edit. Esc cancels the dialog.\n\n"
        "(Help topic " + std::to_string(context) + " of " + (helpFile != nullptr ? helpFile : "") + ".)";
    termMessageBox(s, text.c_str(), "Help", UI_MB_OK);
}

int32_t termRunDialog(UiSurface *s, const DialogController *child) { return TermUi_Run(termOf(s), child); }

void termShowContext(UiSurface *s, const char *text, int32_t length, int32_t start, int32_t count) {
    TermUi *t = termOf(s);
    t->contextOwner = static_cast<UiDialog *>(s->impl);
    t->contextText = text == nullptr || length <= 0 ? std::string() : std::string(text, size_t(length));
    t->contextStart = start;
    t->contextCount = count;
}

// A terminal dialog fills the screen: it has no place, position or font weight.
void termPlace(UiSurface *, const void *, bool, int16_t, int16_t) {}
void termGetPosition(UiSurface *, int16_t *x, int16_t *y) { *x = *y = 0; }
void termSetNormalWeight(UiSurface *) {}

const UiSurfaceOps *termOps() {
    static const UiSurfaceOps ops = [] {
        UiSurfaceOps o{};
        uiModelOps(&o);
        o.messageBox = termMessageBox;
        o.fileDialog = termFileDialog;
        o.waitCursor = termWaitCursor;
        o.help = termHelp;
        o.runDialog = termRunDialog;
        o.place = termPlace;
        o.getPosition = termGetPosition;
        o.setNormalWeight = termSetNormalWeight;
        o.showContext = termShowContext;
        return o;
    }();
    return &ops;
}

TermUi *implOf(UiFrontEnd *frontEnd) { return static_cast<TermUi *>(frontEnd->impl); }
int32_t feRunDialog(UiFrontEnd *f, const DialogController *dialog) { return TermUi_Run(implOf(f), dialog); }
int feMessageBox(UiFrontEnd *f, const char *text, const char *caption, UiButtons buttons) {
    return showMessageBox(implOf(f), text, caption, buttons);
}
void feWaitCursor(UiFrontEnd *f, bool on) { setWaitCursor(implOf(f), on); }

}  // namespace

std::string TermScreen::rowText(int row) const {
    std::string out;
    if (row < 0 || row >= rows) return out;
    for (int c = 0; c < columns; ++c) appendUtf8(&out, cells[size_t(row * columns + c)].ch);
    while (!out.empty() && out.back() == ' ') out.pop_back();
    return out;
}

void TermUi_Draw(const TermUi *t, TermScreen *screen) {
    clearScreen(screen, t->columns, t->rows);
    if (t->dialogs.empty()) return;
    const UiDialog *d = t->dialogs.back();
    int columns = screen->columns;

    Line title;
    add(&title, " " + std::string(d->dialog->caption), kTermReverse | kTermBold);
    title.segs.back().text.resize(size_t(columns), ' ');
    putLine(screen, 0, title, t->codec);
    int row = 2;
    if (t->contextOwner == d && !t->contextText.empty()) {
        putLine(screen, row, contextLine(t, columns), t->codec);
        row += 2;
    }

    std::vector<int> buttons;
    std::vector<Line> lines = layoutControls(d, columns, &buttons);
    std::vector<Line> buttonRows = buttonLines(d, buttons, columns);

    // Rows for the lists' entries (design note 2): a list box's first entry
    // shares its label's line, every other list needs one more row; what is
    // left goes to the focused list first, then to the others in order.
    int spare = screen->rows - (row + int(lines.size()) + 1 + int(buttonRows.size()) + 1);
    std::vector<size_t> withList;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].list < 0) continue;
        withList.push_back(i);
        if (d->controls[lines[i].list].control->kind != DLG_LISTBOX) --spare;
    }
    std::stable_sort(withList.begin(), withList.end(),
                     [&](size_t a, size_t b) { return (lines[a].list == d->focus) > (lines[b].list == d->focus); });
    std::vector<int> rowsFor(lines.size(), 1);
    for (size_t i : withList) {
        int more = std::max(0, std::min(int(d->controls[lines[i].list].items.size()) - 1, spare));
        rowsFor[i] += more;
        spare -= more;
    }

    for (size_t i = 0; i < lines.size(); ++i) {
        const Line &line = lines[i];
        if (line.list < 0) {
            putLine(screen, row++, line, t->codec);
            continue;
        }
        std::vector<Line> entries = entryLines(d, line.list, line.indent, rowsFor[i]);
        size_t e = 0;
        if (d->controls[line.list].control->kind == DLG_LISTBOX) {
            Line first = line;
            first.segs.insert(first.segs.end(), entries[0].segs.begin() + 1, entries[0].segs.end());
            putLine(screen, row++, first, t->codec);
            e = 1;
        } else {
            putLine(screen, row++, line, t->codec);
        }
        for (; e < entries.size(); ++e) putLine(screen, row++, entries[e], t->codec);
    }
    ++row;
    for (const Line &l : buttonRows) putLine(screen, row++, l, t->codec);

    Line status;
    add(&status, " ");
    if (t->waitDepth > 0)
        add(&status, "Working...", kTermBold);
    else if (UiDialogEditing(d))
        add(&status, "Editing: Enter or Esc ends the edit   Tab: next control", kTermDim);
    else
        add(&status, std::string("Letter: marked control   ") + (d->mainList != 0 ? "1-9: choose   " : "") +
                         "Tab: move   Space: press   Esc: cancel",
            kTermDim);
    putLine(screen, screen->rows - 1, status, t->codec);
}

const char *TermUi_Begin(TermUi *t, const TermCodec *codec) {
    t->codec = codec != nullptr ? *codec : TermCodec{latin1Char, latin1Byte};
    t->begun = false;
    t->dialogs.clear();
    t->contextOwner = nullptr;
    t->contextText.clear();
    t->contextStart = t->contextCount = 0;
    t->waitDepth = 0;
    if (!platTermIsTerminal(0)) return "standard input is not a terminal";
    if (!platTermIsTerminal(1)) return "standard output is not a terminal";
    if (platTermEnter(kEnterScreen, kLeaveScreen) != 0) return "the terminal's mode cannot be set";
    refreshSize(t);
    t->begun = true;
    return nullptr;
}

int32_t TermUi_Run(TermUi *t, const DialogController *dialog) {
    auto d = std::make_unique<UiDialog>();
    if (!UiDialogOpen(d.get(), dialog, termOps(), t)) return -1;
    t->dialogs.push_back(d.get());
    UiDialogStart(d.get());
    while (!d->ended) {
        show(t, nullptr);
        int k = t->begun ? nextKey(t, nullptr) : kTermClosed;
        if (k == kTermClosed) {
            Ui_SetFocus(&d->surface, 0);
            UiDialogKey(d.get(), kKeyEsc);
            if (!d->ended) {
                engineLog("TermUi_Run: input ended and %s did not close; closed as cancelled", d->dialog->name);
                d->ended = true;
                d->endValue = ORTH_CANCEL_ERR;
            }
            break;
        }
        UiDialogKey(d.get(), k);
    }
    if (t->contextOwner == d.get()) {
        t->contextOwner = nullptr;
        t->contextText.clear();
    }
    t->dialogs.pop_back();
    return d->endValue;
}

void TermUi_End(TermUi *t) {
    if (!t->begun) return;
    platTermLeave();
    t->begun = false;
}

UiFrontEnd TermUi_FrontEnd(TermUi *t) { return UiFrontEnd{feRunDialog, feMessageBox, feWaitCursor, t}; }

#endif
