// platform/posix/inifile.h — the text files behind the POSIX profile
// functions and the POSIX registry. For platform/posix/ only.
//
// One format serves both:
//
//     ; a comment (also '#')
//     [section]
//     key=value
//
// Lines end with LF (CR LF is read as well; new lines take the file's own
// line end). A line that is neither a comment, a [section] header nor a line
// holding '=' after a non-empty key is ignored when read and kept when the
// file is written. Section and key names match without regard to ASCII case;
// only the first matching section counts, and in it the first matching key.
//
// Profile files are read leniently: blanks around names and values are
// dropped, a value loses one pair of enclosing quotes, and a last line
// without a line end counts. Registry files are written by us alone and read
// strictly: a value is taken exactly as written, and a last line without its
// line end (a file cut short) counts for nothing. Before a registry file is
// rewritten, such a cut line is kept as a comment ("# damaged: ..."), so a
// write never turns half a value into a whole one and never drops a line.
//
// Every write replaces the whole file through a temporary file in the same
// folder, written, flushed to disk and renamed over the old one, under an
// exclusive lock on the folder so that two processes writing different keys
// both keep their change. A file larger than kMaxIniFileBytes, or one that
// exists but cannot be read, reads as empty and is never written.
#pragma once

#include <cstddef>
#include <string>

enum class IniMode { Profile, Registry };

constexpr size_t kMaxIniFileBytes = 1u << 20;  // settings files are small; a bigger one is damaged

enum class IniLoad { Ok, Missing, Failed };
IniLoad loadIniFile(const std::string &path, std::string *text);

// The raw value text of key in section; false when absent.
bool findIniValue(const std::string &text, IniMode mode, const char *section, const char *key,
                  std::string *value);
// Whether a section equals name, or (with prefix) starts with name and a backslash.
bool hasIniSection(const std::string &text, IniMode mode, const char *name, bool prefix);
// Sets key=value in section, appending the section when it is missing; with a
// null key only makes sure that the section exists.
void setIniValue(std::string *text, IniMode mode, const char *section, const char *key,
                 const std::string &value);

// Runs edit over the file's text under the folder lock and writes the result
// back when edit returns true and changed it. false when the file could not
// be read or written; the file is then as it was.
typedef bool (*IniEdit)(std::string *text, void *arg);
bool editIniFile(const std::string &path, IniMode mode, IniEdit edit, void *arg);

// path's folder; makeFolders creates it and its parents (mode 0700).
std::string parentFolder(const std::string &path);
bool makeFolders(const std::string &folder);
// The configuration folder joined with name; false when it has none.
bool configFile(const char *name, std::string *out);
