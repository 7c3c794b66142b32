// host/settings.h — the settings store of the host-integration layer. Four
// accessors read and write string and 32-bit integer values by key and scope;
// whether an INI file or the registry holds them is decided afresh on every
// access from the platform's version word. There is no cache: every call
// goes to the back end. No accessor reports failure: a read that cannot reach
// its value yields the default, a write that cannot reach the store does
// nothing (and logs a line).
//
//   scope          INI section    registry root
//   user (≠ 0)     "ORTH User"    current user
//   machine (0)    "ORTH"         local machine
//
// Both roots use one key path, "Software\Tamarind\ORTH" until
// ORTH_SetRegTreeName changes it. Registry strings are REG_SZ (size counts the
// zero byte), integers REG_DWORD. INI integers are written as "%lu" and read
// with sign and wrap-around modulo 2^32, so -1 is stored as 4294967295 and
// reads back as -1.
#pragma once

#include <cstdint>

#include "engine/limits.h"

// Key names (scope and default as each caller reads them).
constexpr const char *kKeyDebugFile = "DebugFile";
constexpr const char *kKeyMainLexPath = "MainLexPath";
constexpr const char *kKeyLexPath = "LexPath";
constexpr const char *kKeyMainLexFiles = "MainLexFiles";
constexpr const char *kKeyHelpFile = "HelpFile";
constexpr const char *kKeyFontBold = "FontBold";
constexpr const char *kKeyUserLexPath = "UserLexPath";
constexpr const char *kKeyUserLexFiles = "UserLexFiles";
constexpr const char *kKeyLastSelectedLex = "LastSelectedLex";
constexpr const char *kKeyAlwaysSuggest = "AlwaysSuggest";

constexpr int kUserScope = 1;
constexpr int kMachineScope = 0;

// Accessors.
void getSetting(const char *key, int user, const char *defaultText, char *buffer, uint16_t size);
uint32_t getIntSetting(const char *key, int user, uint32_t defaultValue);
int32_t putSetting(const char *key, int user, const char *text);  // the platform's status
void putIntSetting(const char *key, int user, uint32_t value);

// Back end and location.
int useRegistry();
bool registryForVersion(uint32_t version);  // the rule useRegistry applies
// Fills the INI path while it is empty: ORTH.INI beside the library's own
// file, else the ORTHProfileFile of WIN.INI's [ORTH] section ("ORTH.INI").
void findIniFile();
const char *iniFilePath();
void setIniFilePath(const char *path);     // at most 259 characters are kept
const char *regTreeName();
void setRegTreeName(const char *keyPath);  // at most 259 characters are kept

// The INI integer reading: blanks, an optional sign, decimal digits; the
// first other character ends it; wraps modulo 2^32; no digits reads as 0.
uint32_t parseIniInteger(const char *text);
