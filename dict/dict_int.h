// dict/dict_int.h — internals of the dictionary interface, shared by its two
// source files and its tests: the handle record, the path builder, the
// companion name rule and the user word list file.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tmspl32.h"

// Capacities of the handle, each with its reason.
constexpr int kDictWordBufSize = 256;     // working, pending and replacement words
constexpr int kDictSugListSize = 1250;    // 25 suggestions of up to 49 bytes on average
constexpr int kDictMaxSugs = 25;          // suggestions asked of the engine per word
constexpr int16_t kDictMinScore = 70;     // suggestions below this score are not handed out
constexpr int kDictPathBufSize = 261;     // a built path is at most 260 characters
constexpr int kDictMainNameMax = 19;      // the host record's main lexicon field is 20 bytes
constexpr uint16_t kDictMaxListWords = 65535;  // the list file's count field is 16 bits

struct DictHandle {
    int32_t sessionId;
    int32_t mainLexId;
    int32_t companionLexId;
    int32_t userLexId;
    char pendingWord[kDictWordBufSize];
    char replacement[kDictWordBufSize];
    char sugList[kDictSugListSize];
    int16_t sugScores[kDictMaxSugs];
    uint32_t cursor;
    // Copies of the open arguments, kept per handle so that each handle saves
    // its own list and the host's buffers need not outlive the call.
    char folderPath[kDictPathBufSize];
    bool folderTooLong;
    char mainName[kDictMainNameMax + 1];
    char userListName[kDictPathBufSize];
    bool userListNameTooLong;
    DictHandle *nextLive;  // the list of live handles (dict.cpp)
};

// Joins the drive and directory of folderPath (everything up to its last '\'
// or '/') with name into out (kDictPathBufSize bytes). Returns true when the
// path was built; false, with out emptied, when the parts add up to 261
// characters or more.
bool buildDictPath(const char *folderPath, const char *name, char out[kDictPathBufSize]);

// The companion text lexicon's name for a main lexicon name: the last "." and
// what follows it (a "." at the first character does not count) become
// ".TLX"; a name without one becomes ".TLX". out holds kDictMainNameMax + 5.
void makeCompanionName(const char *mainName, char out[kDictMainNameMax + 5]);

// The user word list file.
// Adds the words of the list at path to the handle's user word lexicon.
// Returns the number of words read; 0 when the file is missing or empty. A
// record cut short by the end of the file ends the load, unused.
int32_t loadUserList(DictHandle *handle, const char *path);
// Writes the user word lexicon to path through a temporary file in the same
// folder, renamed over the old list only when complete; another process
// saving the same list meanwhile is waited for. Returns 0;
// ORTH_OUT_OF_MEMORY_ERR when the image buffer cannot be had (old list kept);
// the engine's code when the lexicon cannot be read (old list kept);
// ORTH_FILE_OPEN_ERR when the temporary file cannot be created or another
// process kept it for the whole wait; ORTH_FILE_WRITE_ERR when it cannot be
// written (removed) or renamed (kept); the old list stays in every case.
// At most 65535 words are written; further ones are left out.
int16_t saveUserList(DictHandle *handle, const char *path);
