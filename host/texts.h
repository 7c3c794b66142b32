// host/texts.h — the string table: every user-visible text of the client
// layer and its dialogs, by string id. Dialog templates refer to these ids;
// a front end loads a text with loadClientString (the Windows build from its
// string resources, which carry the same ids and texts).
#pragma once

#include <cstdint>

enum ClientTextId : uint32_t {
    // Check Spelling dialog.
    kTextErrorAddingWord = 1033,
    kTextErrorAddingAutoChange = 1034,
    kTextCheckSpelling = 1035,            // caption of its message boxes
    kTextNotInDictionary = 1036,
    kTextConsiderChanging = 1037,
    kTextCapitalization = 1038,
    kTextDoubledWord = 1040,
    kTextDelete = 1049,
    kTextChange = 1050,
    kTextErrorReplacing = 1051,
    // Dictionaries and New Dictionary dialogs.
    kTextEnterPair = 1044,
    kTextEditDictionaries = 1045,         // caption of their message boxes
    kTextDictionaryFull = 1046,
    kTextErrorAddingEntry = 1047,
    kTextTypeAutoChange = 1052,
    kTextTypeExclude = 1053,
    kTextTypeIgnore = 1054,
    kTextTypeConditional = 1055,
    kTextErrorOpeningDictionary = 1056,   // also shown when the client context opens
    kTextWrongFormat = 1057,
    kTextAddDictionaryFile = 1065,
    kTextCreateDictionaryFile = 1066,
    kTextDictionaryFilter = 1068,
    kTextErrorCreatingDictionary = 1069,
    kTextTextFilter = 1070,
    kTextExportDictionary = 1071,
    kTextImportDictionary = 1072,
    kTextErrorOpeningFile = 1073,
    kTextCannotAdd = 1088,
};

// The string id of each language name, in the order of languageNameTable
// (check/chartab.h), whose texts they show.
extern const uint32_t kLanguageTextIds[20];

// The text of a string id, or null for an id the table lacks.
const char *clientText(uint32_t id);
// As the platform's string loader: copies at most size - 1 characters and a
// zero; returns the count, 0 (and an empty buffer) for an unknown id.
int loadClientString(uint32_t id, char *buffer, int size);
