// tests/win32/resources_host_test.cpp — ORTH32.DLL's compiled resources
// against the tables they are generated from. Each dialog template is read
// raw from the DLL (FindResourceA, LoadResource) and compared with
// ui/templates.h: caption, size in dialog units, font and style, and every
// control in template order with its identifier, window class, the style
// its kind stands for, caption and rectangle. Every text of the string table
// (host/texts.h) is loaded with LoadStringA, and no other id is. Needs no
// display.
//
// Groups: Templates (the four templates read raw), Strings (the table).
#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include "host.h"
#include "host/texts.h"
#include "ui/templates.h"

namespace {

struct RawControl {
    DWORD style;
    int16_t x, y, cx, cy;
    int16_t id;
    std::string windowClass, caption;
};

struct RawDialog {
    DWORD style;
    int16_t x, y, cx, cy;
    std::string caption, fontName;
    uint16_t fontPoints;
    std::vector<RawControl> controls;
};

// Reads a DLGTEMPLATE (the classic form the DIALOG statement makes) and its
// items. Class ordinals become the class names they stand for.
class TemplateReader {
public:
    TemplateReader(const BYTE *data, DWORD size) : base_(data), p_(data), end_(data + size) {}

    bool read(RawDialog *out) {
        out->style = dword();
        dword();  // extended style
        uint16_t count = word();
        out->x = int16_t(word());
        out->y = int16_t(word());
        out->cx = int16_t(word());
        out->cy = int16_t(word());
        nameOrOrdinal();  // menu
        nameOrOrdinal();  // class
        out->caption = text();
        out->fontPoints = 0;
        if (out->style & DS_SETFONT) {
            out->fontPoints = word();
            out->fontName = text();
        }
        for (uint16_t i = 0; i < count && ok_; ++i) {
            align();
            RawControl c;
            c.style = dword();
            dword();
            c.x = int16_t(word());
            c.y = int16_t(word());
            c.cx = int16_t(word());
            c.cy = int16_t(word());
            c.id = int16_t(word());
            c.windowClass = nameOrOrdinal();
            c.caption = nameOrOrdinal();
            p_ += word();  // creation data
            out->controls.push_back(c);
        }
        return ok_ && p_ <= end_;
    }

private:
    uint16_t word() {
        if (p_ + 2 > end_) {
            ok_ = false;
            return 0;
        }
        uint16_t v = uint16_t(p_[0] | (p_[1] << 8));
        p_ += 2;
        return v;
    }
    DWORD dword() {
        DWORD low = word();
        return low | (DWORD(word()) << 16);
    }
    void align() {
        while (((p_ - base_) & 3) != 0) ++p_;  // a resource starts DWORD-aligned
    }
    std::string text() {
        std::string s;
        for (uint16_t c; ok_ && (c = word()) != 0;) s += c < 0x100 ? char(c) : '?';
        return s;
    }
    std::string nameOrOrdinal() {
        if (p_ + 2 <= end_ && p_[0] == 0xFF && p_[1] == 0xFF) {
            word();
            switch (uint16_t ordinal = word()) {
            case 0x80: return "button";
            case 0x81: return "edit";
            case 0x82: return "static";
            case 0x83: return "listbox";
            case 0x85: return "combobox";
            default: return "#" + std::to_string(ordinal);
            }
        }
        return text();
    }

    const BYTE *base_;
    const BYTE *p_;
    const BYTE *end_;
    bool ok_ = true;
};

std::string lower(std::string s) {
    for (char &c : s) c = char(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

// What each kind of control is in Win32: its class, the style bits that
// make it that kind, and the bits it must carry.
struct Win32Kind {
    DlgCtlKind kind;
    const char *windowClass;
    DWORD typeMask, type, required;
};
const Win32Kind kKinds[] = {
    {DLG_LABEL, "static", SS_TYPEMASK, SS_LEFT, 0},
    {DLG_EDIT, "edit", ES_MULTILINE | ES_READONLY, 0, WS_BORDER | ES_AUTOHSCROLL},
    {DLG_CHECKBOX, "button", BS_TYPEMASK, BS_AUTOCHECKBOX, 0},
    {DLG_RADIO, "button", BS_TYPEMASK, BS_AUTORADIOBUTTON, 0},
    {DLG_BUTTON, "button", BS_TYPEMASK, BS_PUSHBUTTON, 0},
    {DLG_DEFBUTTON, "button", BS_TYPEMASK, BS_DEFPUSHBUTTON, 0},
    // Entries stay in the order they are added: no sorting anywhere.
    {DLG_LISTBOX, "listbox", LBS_SORT | LBS_MULTIPLESEL | LBS_EXTENDEDSEL, 0, LBS_NOTIFY | WS_VSCROLL},
    {DLG_DROPLIST, "combobox", CBS_SORT | 3, CBS_DROPDOWNLIST, WS_VSCROLL},
    {DLG_SIMPLECOMBO, "combobox", CBS_SORT | 3, CBS_SIMPLE, 0},
    {DLG_EDITCOMBO, "combobox", CBS_SORT | 3, CBS_DROPDOWN, 0},
    {DLG_GROUP, "button", BS_TYPEMASK, BS_GROUPBOX, 0},
};

const Win32Kind &win32Kind(DlgCtlKind kind) {
    for (const Win32Kind &k : kKinds)
        if (k.kind == kind) return k;
    return kKinds[0];
}

class Resources : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_NE(dll.module(), nullptr) << GetLastError(); }
    Dll dll{"ORTH32.DLL"};
};

TEST_F(Resources, EveryTemplateHoldsItsTableAsTheDialogManagerReadsIt) {
    for (const DlgTemplate &t : dialogTemplates) {
        SCOPED_TRACE(t.name);
        HRSRC found = FindResourceA(dll.module(), t.name, MAKEINTRESOURCEA(5));  // RT_DIALOG
        ASSERT_NE(found, nullptr);
        HGLOBAL loaded = LoadResource(dll.module(), found);
        const BYTE *data = static_cast<const BYTE *>(LockResource(loaded));
        ASSERT_NE(data, nullptr);
        RawDialog raw;
        ASSERT_TRUE(TemplateReader(data, SizeofResource(dll.module(), found)).read(&raw));

        EXPECT_EQ(raw.caption, t.caption);
        EXPECT_EQ(raw.cx, t.cx);
        EXPECT_EQ(raw.cy, t.cy);
        EXPECT_EQ(raw.fontPoints, uint16_t(t.fontPoints));
        EXPECT_EQ(raw.fontName, t.fontName);
        const DWORD frame = WS_POPUP | WS_CAPTION | DS_MODALFRAME | DS_SETFONT;
        EXPECT_EQ(raw.style & frame, frame);
        EXPECT_EQ((raw.style & WS_SYSMENU) != 0, (t.style & kDlgStyleSysMenu) != 0);
        EXPECT_EQ((raw.style & DS_CENTER) != 0, (t.style & kDlgStyleCenter) != 0);

        ASSERT_EQ(raw.controls.size(), size_t(t.controlCount));
        for (int i = 0; i < t.controlCount; ++i) {
            const DlgControl &want = t.controls[i];
            const RawControl &got = raw.controls[i];
            SCOPED_TRACE("control " + std::to_string(i) + ", id " + std::to_string(want.id));
            const Win32Kind &kind = win32Kind(want.kind);
            EXPECT_EQ(got.id, want.id);
            EXPECT_EQ(lower(got.windowClass), kind.windowClass);
            EXPECT_EQ(got.style & kind.typeMask, kind.type);
            EXPECT_EQ(got.style & kind.required, kind.required);
            EXPECT_EQ(got.style & (WS_CHILD | WS_VISIBLE | WS_DISABLED), DWORD(WS_CHILD | WS_VISIBLE));
            EXPECT_EQ(got.caption, want.caption);
            EXPECT_EQ(got.x, want.x);
            EXPECT_EQ(got.y, want.y);
            EXPECT_EQ(got.cx, want.cx);
            EXPECT_EQ(got.cy, want.cy);
            // Tab stops: every control that takes the focus, but of a run of
            // radio buttons only the first, which also starts their group.
            bool laterRadio = want.kind == DLG_RADIO && i > 0 && t.controls[i - 1].kind == DLG_RADIO;
            EXPECT_EQ((got.style & WS_TABSTOP) != 0, dlgTakesFocus(want.kind) && !laterRadio);
            if (want.kind == DLG_RADIO) {
                EXPECT_EQ((got.style & WS_GROUP) != 0, !laterRadio);
            }
        }
    }
}

TEST_F(Resources, StringTableHoldsEveryTextUnderItsIdAndNothingElse) {
    int texts = 0;
    for (uint32_t id = 0; id <= 0xFFFF; ++id) {
        char got[512] = "unchanged";
        int n = LoadStringA(dll.module(), id, got, sizeof got);
        const char *want = clientText(id);
        if (want == nullptr) {
            EXPECT_EQ(n, 0) << "string " << id << " is not in the table: " << got;
            continue;
        }
        ++texts;
        EXPECT_EQ(n, int(std::strlen(want))) << id;
        EXPECT_STREQ(got, want) << id;
    }
    // The 20 language names, the type names and the dialogs' messages.
    EXPECT_GE(texts, 45);
}

}  // namespace
