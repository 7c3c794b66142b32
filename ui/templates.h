// ui/templates.h — the four dialog templates: for each dialog its name,
// caption, size in dialog units, font, and every control with its
// identifier, kind, template caption and rectangle. This table is the one
// source of the dialogs' shape: the terminal front end lays its screens out
// from it, the in-memory surface builds its controls from it, and the
// Windows resource script is generated from it (rcscript.h).
#pragma once

#include <cstdint>

// Control kinds, each with its Windows realisation.
enum DlgCtlKind : uint8_t {
    DLG_LABEL,        // static text
    DLG_EDIT,         // single-line edit
    DLG_CHECKBOX,     // automatic check box
    DLG_RADIO,        // automatic radio button; consecutive radios form a group
    DLG_BUTTON,       // push button
    DLG_DEFBUTTON,    // default push button (Enter presses it)
    DLG_LISTBOX,      // list box
    DLG_DROPLIST,     // drop-down combo without an edit field
    DLG_SIMPLECOMBO,  // combo with an always-visible list and an edit field
    DLG_EDITCOMBO,    // drop-down combo with an edit field
    DLG_GROUP,        // group frame
};

// Template styles beyond the modal frame and caption every dialog has.
constexpr uint8_t kDlgStyleSysMenu = 0x1;  // a system menu (close box)
constexpr uint8_t kDlgStyleCenter = 0x2;   // centred on the screen when shown

// Identifiers shared by every dialog.
constexpr int16_t kDlgNoId = -1;  // a control nobody addresses
constexpr int16_t kIdOk = 1;
constexpr int16_t kIdCancel = 2;  // also what Esc and the close box send
constexpr int16_t kIdHelp = 3;

// Check Spelling.
enum : int16_t {
    kCsIgnore = 1001, kCsIgnoreAll = 1002, kCsChange = 1003, kCsChangeAll = 1004,
    kCsAdd = 1005, kCsSuggest = 1006, kCsSuggestions = 1009, kCsChangeTo = 1010,
    kCsReason = 1011, kCsWord = 1012, kCsAddWordsTo = 1013, kCsDictionaries = 1014,
    kCsOptions = 1031, kCsChangeToLabel = 1032, kCsSuggestionsLabel = 1033,
    kCsAddWordsToLabel = 1034, kCsLockPos = 1046,
};
// Dictionaries.
enum : int16_t {
    kElWords = 1001, kElFiles = 1002, kElAddFile = 1003, kElRemoveFile = 1004,
    kElAddWord = 1014, kElDeleteWord = 1015, kElNew = 1016, kElImport = 1024,
    kElExport = 1025, kElLanguage = 1029, kElType = 1030, kElWordsLabel = 1035,
    kElFilesLabel = 1036, kElLanguageLabel = 1037, kElTypeLabel = 1038,
};
// New Dictionary.
enum : int16_t {
    kNlAutoChange = 1018, kNlIgnore = 1020, kNlExclude = 1019, kNlConditional = 1021,
    kNlLanguage = 1023, kNlFileName = 1027, kNlBrowse = 1028, kNlLanguageLabel = 1037,
    kNlFileNameLabel = 1039, kNlTypeGroup = 1040,
};
// Options, in the order OK applies the rows.
enum : int16_t {
    kOpIgnoreCapped = 1021, kOpIgnoreAllCaps = 1028, kOpIgnoreMixedDigits = 1025,
    kOpIgnoreMixedCase = 1044, kOpCaseSensitive = 1041, kOpReportDoubled = 1022,
    kOpSuggestSplit = 1043, kOpPhonetic = 1042, kOpTypographical = 1045,
    kOpMatchCase = 1049, kOpAlwaysSuggest = 1026,
};

// Template names, as the resource script and the controllers use them.
extern const char kCheckSpellingDlg[];  // "CheckSpellingDlg"
extern const char kEditLexDlg[];        // "EditLexDlg"
extern const char kNewLexDlg[];         // "NewLexDlg"
extern const char kOptionsDlg[];        // "OptionsDlg"

// One control. Rectangles are in dialog units: left, top, width, height.
struct DlgControl {
    int16_t id;
    DlgCtlKind kind;
    const char *caption;  // the template caption; "" for none
    int16_t x, y, cx, cy;
};

struct DlgTemplate {
    const char *name;
    const char *caption;
    int16_t cx, cy;          // size in dialog units
    int16_t fontPoints;
    const char *fontName;
    uint8_t style;           // kDlgStyle... flags
    const DlgControl *controls;  // in template order (the tab order)
    int16_t controlCount;
};

constexpr int kDialogTemplateCount = 4;
constexpr int kMaxDlgControls = 20;  // the largest template has 19 controls
extern const DlgTemplate dialogTemplates[kDialogTemplateCount];

// Lookups; nullptr or -1 when there is no such template or control.
const DlgTemplate *findDialogTemplate(const char *name);
const DlgControl *findDlgControl(const DlgTemplate *dialog, int16_t id);
int findDlgControlIndex(const DlgTemplate *dialog, int16_t id);

// The accelerator of a caption: the character after its first single '&'
// ("&&" stands for an ampersand), lower-cased for the ASCII letters; 0 when
// there is none.
char dlgAccelerator(const char *caption);

// Kind tests.
bool dlgIsButtonKind(DlgCtlKind kind);  // push, default, check box, radio
bool dlgIsListKind(DlgCtlKind kind);    // list box and the three combos
bool dlgHasEditField(DlgCtlKind kind);  // edit and the two combos with an edit field
bool dlgTakesFocus(DlgCtlKind kind);    // everything but labels and frames
