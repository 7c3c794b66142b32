// tools/front.h — what the Linux front ends (`orth list`, the pipe mode, the
// Enchant provider) answer for one word, and where they find dictionaries
// and the personal word list. Everything here is built on the engine's C
// interface (ORTH_CheckWord, ORTH_FindCaseForm, ORTH_Suggest) and never
// changes the engine's own answers; it only adds what users of such tools
// expect:
//  - the all-capitals form of a word the dictionary accepts in any case form
//    is accepted (the engine's case-folding walk gives up early on some
//    words, such as DECEMBER, because of DeKalb in the same segment), and so
//    is the possessive of an accepted plural (parties'), and so are ordinals
//    (21st) and numbers' plurals (1990s);
//  - a suggestion is offered once, and never with a doubled possessive
//    ending (Kinko's's).
// Words are 8-bit, in the session's character set.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

// Answers for all-capitals words already worked out, so that a text full of
// the same unknown acronym pays for the slow path once. Owned by the caller;
// one per session.
struct CapsMemo {
    std::unordered_map<std::string, bool> accepted;
};

// Checking.
//
// The engine's check result for word (ORTH_CheckWord with no extra mask),
// after the front-end rule (frontAcceptsRejected): a misspelled word the
// rule accepts has the result 0, and *byRule (when given) is set.
// replacement is a 64-byte buffer. Negative: the engine's result code.
int16_t frontCheckWord(int16_t session, const char *word, char replacement[64], CapsMemo *memo,
                       bool *byRule = nullptr);
// Whether the front-end rule accepts a word the engine rejected: the
// all-capitals form of a word the session accepts in some case form
// (DECEMBER, MYSPACE), the possessive of an accepted plural (parties',
// which the engine's possessive stripping turns into partie), a number, an
// ordinal with the right ending (21st, 12th) or a number's plural (1990s).
// memo may be null.
bool frontAcceptsRejected(int16_t session, const char *word, CapsMemo *memo);
// Whether an accepted word was accepted only by splitting it at hyphens or
// apostrophes (or into a run of words): the session rejects it with its
// split options turned off for one check. The session's options are the same
// afterwards.
bool acceptedBySplitting(int16_t session, const char *word);

// The 8-bit form of one word written in UTF-8, in character set 0; false
// when the word is empty, longer than 63 characters, holds a blank or a
// character the set cannot hold.
bool wordFromUtf8(const std::string &utf8, std::string *out);

// Suggestions.
struct FrontSuggestion {
    std::string word;  // 8-bit
    int16_t score;
};
// Which ranking a front end offers: the ranked suggester (ORTH_SuggestRanked,
// the default of every Linux front end) or the defined one (ORTH_Suggest at
// depth -1, as the dialogs and the dictionary library use it).
enum class SuggestRanking { Ranked, Defined };
// At most maxCount suggestions for word, best first: the engine's list with
// a doubled possessive ending reduced to one and later repeats dropped.
// Negative: the engine's result code (out is then empty).
int16_t frontSuggest(int16_t session, const char *word, int maxCount, std::vector<FrontSuggestion> *out,
                     SuggestRanking ranking = SuggestRanking::Ranked);
// The suggestions a reader wants to see: those scoring at least 50 and
// within 20 of the best, at most maxShown.
void keepLikelySuggestions(std::vector<FrontSuggestion> *sugs, size_t maxShown);

// Dictionaries.
//
// A dictionary is a folder holding MAIN.CLX (and usually MAIN.TLX); the
// built-in ones are named by language tag (en_US, en_GB) and live in
// share/orth/<tag>. ORTH_DICPATH is a colon-separated list of folders, each
// either a dictionary folder itself or a folder of named dictionaries.

// The dictionary used when none is named.
constexpr const char *kDefaultDictionaryName = "en_US";

// Folders to search for named dictionaries besides ORTH_DICPATH: the callers
// pass where they are installed (for the command, its own folder's
// share/orth and ../share/orth).
struct DictRoots {
    std::vector<std::string> folders;  // each holds <tag>/MAIN.CLX
};
// The roots for a program or module installed in folder `home`: home/share/orth
// (a build tree), home/../share/orth (an installed bin/), and the data folder
// of the installation this was built for.
DictRoots dictRootsFor(const std::string &home);
// The folder of the dictionary named by `name`: a path (holding a slash, or an
// existing folder) as it is, else the first <root>/<name> holding MAIN.CLX in
// ORTH_DICPATH and the roots. An empty name is the first ORTH_DICPATH entry
// that is a dictionary folder itself, else kDefaultDictionaryName. "" when
// none is found.
std::string findDictionary(const std::string &name, const DictRoots &roots);
// The language tags of every named dictionary found, sorted, each once.
std::vector<std::string> listDictionaries(const DictRoots &roots);
// The default personal word list for a dictionary folder:
// $XDG_CONFIG_HOME/orth/<folder name>.tlx (or ~/.config/orth/...), "" when
// neither variable is set.
std::string defaultPersonalList(const std::string &dictDir);
// Opens a session over a dictionary folder as the dictionary library does:
// MAIN.TLX (when present), then the personal list (when the file exists),
// then MAIN.CLX. The session id (and *personalLex, -1 when the list was not
// opened), or a negative result code with *failedPath naming the file that
// could not be opened; no session is left open then.
int16_t openDictionarySession(const std::string &folder, const std::string &personal, int16_t *personalLex,
                              std::string *failedPath);
// The personal list's lexicon id in the session: *lex when it is open,
// else the file opened, or created (with its folder) when it does not exist
// yet, and *lex set. A negative result code on failure (*lex stays -1).
int16_t openPersonalList(int16_t session, const std::string &path, int16_t *lex);
// Adds word to a memory-only list of accepted words, created on first use
// (*lex is -1 until then). 0, or a negative result code.
int16_t addToMemoryList(int16_t session, int16_t *lex, const std::string &word);
// The language of the session's first compressed lexicon (1033 without one).
uint16_t dictionaryLanguage(int16_t session);
// Whether path is an existing regular file.
bool isRegularFile(const std::string &path);
// The folder of path (up to its last slash or backslash), "" when it has none.
std::string folderOf(const std::string &path);
