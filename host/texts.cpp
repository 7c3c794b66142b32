// host/texts.cpp — the string table. Language names are not repeated here:
// their ids map onto languageNameTable of check/chartab.
#include "host/texts.h"

#include <cstring>

#include "check/chartab.h"

namespace {

struct ClientText {
    uint32_t id;
    const char *text;
};

const ClientText kTexts[] = {
    {kTextErrorAddingWord, "Error adding word to dictionary"},
    {kTextErrorAddingAutoChange, "Error adding word to Auto-Change dictionary"},
    {kTextCheckSpelling, "Check Spelling"},
    {kTextNotInDictionary, "Not in Dictionary:"},
    {kTextConsiderChanging, "Consider changing:"},
    {kTextCapitalization, "Capitalization:"},
    {kTextDoubledWord, "Doubled word:"},
    {kTextEnterPair, "Please enter \"word:replacement\" for this dictionary type."},
    {kTextEditDictionaries, "Edit Dictionaries"},
    {kTextDictionaryFull, "Dictionary %s is full."},
    {kTextErrorAddingEntry, "Error adding word."},
    {kTextDelete, "&Delete"},
    {kTextChange, "&Change"},
    {kTextErrorReplacing, "Error replacing word in text (probably out of space)"},
    {kTextTypeAutoChange, "Auto change"},
    {kTextTypeExclude, "Exclude"},
    {kTextTypeIgnore, "Ignore"},
    {kTextTypeConditional, "Conditionally change"},
    {kTextErrorOpeningDictionary, "Error opening dictionary %s"},
    {kTextWrongFormat, "Dictionary file %s has wrong format."},
    {kTextAddDictionaryFile, "Add Dictionary File"},
    {kTextCreateDictionaryFile, "Create Dictionary File"},
    {kTextDictionaryFilter,
     "Dictionary files (*.tlx)|*.tlx|External dictionaries (*.dic)|*.dic|Text files (*.txt)|*.txt|"
     "All files (*.*)|*.*|"},
    {kTextErrorCreatingDictionary, "Error creating dictionary %s"},
    {kTextTextFilter, "Text files (*.txt)|*.txt|All files (*.*)|*.*|"},
    {kTextExportDictionary, "Export Dictionary"},
    {kTextImportDictionary, "Import Dictionary"},
    {kTextErrorOpeningFile, "Error opening file %s"},
    {kTextCannotAdd, "Dictionary file %s can't be added."},
};

}  // namespace

const uint32_t kLanguageTextIds[20] = {1058, 1059, 1075, 1076, 1077, 1078, 1079, 1060, 1061, 1080,
                                       1062, 1081, 1082, 1083, 1084, 1085, 1086, 1063, 1087, 1064};

const char *clientText(uint32_t id) {
    for (const ClientText &t : kTexts) {
        if (t.id == id) return t.text;
    }
    for (int i = 0; i < 20; ++i) {
        if (kLanguageTextIds[i] == id) return languageNameTable[i].name;
    }
    return nullptr;
}

int loadClientString(uint32_t id, char *buffer, int size) {
    if (buffer == nullptr || size <= 0) return 0;
    const char *text = clientText(id);
    size_t n = text == nullptr ? 0 : std::strlen(text);
    if (n > static_cast<size_t>(size - 1)) n = static_cast<size_t>(size - 1);
    if (n > 0) std::memcpy(buffer, text, n);
    buffer[n] = '\0';
    return static_cast<int>(n);
}
