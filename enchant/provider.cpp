// enchant/provider.cpp — the Enchant 2 provider "orth" (enchant_orth.so): a
// thin shim that lets programs using libenchant check words, get
// suggestions and keep personal and session words through orth.
//
// Design notes
// (1) Dictionaries are named by language tag (en_US, en_GB) and found as the
//     orth command finds them (tools/front_dicts.cpp): ORTH_DICPATH, then
//     share/orth beside this module (a build tree), then the data folder of
//     the installation it was built for.
// (2) One engine session per requested dictionary, holding MAIN.TLX, the
//     user's personal list (~/.config/orth/<tag>.tlx, shared with the pipe
//     mode), MAIN.CLX, and a memory-only lexicon for session words created
//     on first use. Answers go through the front-end rule (tools/front.h).
// (3) Enchant hands words as UTF-8 with a length; they are converted to the
//     dictionary's 8-bit set, and suggestions back. Lists returned to
//     Enchant come from GLib's allocator, which frees them.
// (4) No entry point lets an exception or an engine failure escape: every
//     one catches, and a failure is an answer (misspelled, no suggestions,
//     NULL dictionary with the provider's error set).
// (5) Like the engine, the provider serves one thread at a time, as GTK
//     programs call Enchant; a process gets at most 16 dictionaries open at
//     once (one engine session each).
#include <dlfcn.h>
#include <enchant-provider.h>

#include <climits>
#include <cstdlib>
#include <string>
#include <vector>

#include "orth.h"
#include "tools/cli.h"
#include "tools/front.h"

namespace {

constexpr size_t kMaxSuggestions = 15;

struct OrthDict {
    int16_t session = -1;
    int16_t personalLex = -1;
    int16_t sessionLex = -1;
    std::string folder;
    std::string personalPath;
    CapsMemo caps;
};

OrthDict *dictOf(EnchantDict *me) { return static_cast<OrthDict *>(me->user_data); }

// The folder of this module (links followed), for a build tree's
// share/orth beside it.
std::string moduleFolder() {
    Dl_info info;
    if (dladdr(reinterpret_cast<void *>(&moduleFolder), &info) == 0 || info.dli_fname == nullptr) return "";
    char *real = realpath(info.dli_fname, nullptr);
    std::string path = real != nullptr ? real : info.dli_fname;
    std::free(real);
    return folderOf(path);
}

DictRoots providerRoots() { return dictRootsFor(moduleFolder()); }

// Enchant's tags are en_US or en; a bare language takes the default
// dictionary when it is of that language, else the first one that is.
std::string folderForTag(const char *tag) {
    if (tag == nullptr || *tag == '\0') return "";
    std::string t = tag;
    if (t.find_first_of("/\\.") != std::string::npos) return "";  // a tag, never a path
    DictRoots roots = providerRoots();
    std::string folder = findDictionary(t, roots);
    if (!folder.empty() || t.find('_') != std::string::npos) return folder;
    std::vector<std::string> names = listDictionaries(roots);
    std::string prefix = t + "_", pick;
    for (const std::string &name : names)
        if (name.compare(0, prefix.size(), prefix) == 0 && (pick.empty() || name == kDefaultDictionaryName))
            pick = name;
    return pick.empty() ? "" : findDictionary(pick, roots);
}

// The 8-bit form of Enchant's word; false when it cannot be a word of the
// dictionary.
bool toDictWord(const char *word, size_t len, std::string *out) {
    return word != nullptr && wordFromUtf8(std::string(word, len), out);
}

// A list Enchant frees with g_strfreev; NULL (and *count 0) when empty.
char **glibList(const std::vector<std::string> &items, size_t *count) {
    *count = items.size();
    if (items.empty()) return nullptr;
    char **list = g_new0(char *, items.size() + 1);
    for (size_t i = 0; i < items.size(); ++i) list[i] = g_strdup(items[i].c_str());
    return list;
}

int checkWord(EnchantDict *me, const char *const word, size_t len) {
    try {
        OrthDict *d = dictOf(me);
        std::string w;
        if (!toDictWord(word, len, &w)) return 1;
        char replacement[64];
        int16_t rc = frontCheckWord(d->session, w.c_str(), replacement, &d->caps);
        if (rc < 0) return -1;
        return (rc & (ORTH_CHK_MISSPELLED | ORTH_CHK_AUTO_CHANGE | ORTH_CHK_CONDITIONAL_CHANGE)) ? 1 : 0;
    } catch (...) {
        return -1;
    }
}

char **suggestWords(EnchantDict *me, const char *const word, size_t len, size_t *outCount) {
    *outCount = 0;
    try {
        OrthDict *d = dictOf(me);
        std::string w;
        if (!toDictWord(word, len, &w)) return nullptr;
        std::vector<FrontSuggestion> sugs;
        if (frontSuggest(d->session, w.c_str(), 25, &sugs) < 0) return nullptr;
        keepLikelySuggestions(&sugs, kMaxSuggestions);
        bool typo = std::string(word, len).find("\xE2\x80\x99") != std::string::npos;
        std::vector<std::string> shown;
        for (const FrontSuggestion &s : sugs) shown.push_back(decodeToUtf8(s.word, typo));
        return glibList(shown, outCount);
    } catch (...) {
        return nullptr;
    }
}

void addToPersonal(EnchantDict *me, const char *const word, size_t len) {
    try {
        OrthDict *d = dictOf(me);
        std::string w;
        if (!toDictWord(word, len, &w) || d->personalPath.empty()) return;
        int16_t rc = openPersonalList(d->session, d->personalPath, &d->personalLex);
        if (rc >= 0) rc = ORTH_AddToLex(d->session, d->personalLex, w.c_str(), nullptr);
        if (rc < 0) {
            std::string err = d->personalPath + ": cannot add to the personal word list: " + describeResult(rc);
            enchant_dict_set_error(me, err.c_str());
        }
    } catch (...) {
    }
}

void addToSession(EnchantDict *me, const char *const word, size_t len) {
    try {
        OrthDict *d = dictOf(me);
        std::string w;
        if (!toDictWord(word, len, &w)) return;
        addToMemoryList(d->session, &d->sessionLex, w);
    } catch (...) {
    }
}

const char *extraWordCharacters(EnchantDict *) { return "'\xE2\x80\x99"; }

EnchantDict *requestDict(EnchantProvider *me, const char *const tag) {
    try {
        std::string folder = folderForTag(tag);
        if (folder.empty()) return nullptr;
        auto *d = new OrthDict;
        d->folder = folder;
        d->personalPath = defaultPersonalList(folder);
        std::string failed;
        d->session = openDictionarySession(folder, d->personalPath, &d->personalLex, &failed);
        if (d->session < 0) {
            std::string err = (failed.empty() ? std::string("orth") : failed) + ": " + describeResult(d->session);
            enchant_provider_set_error(me, err.c_str());
            delete d;
            return nullptr;
        }
        EnchantDict *dict = g_new0(EnchantDict, 1);
        dict->user_data = d;
        dict->check = checkWord;
        dict->suggest = suggestWords;
        dict->add_to_personal = addToPersonal;
        dict->add_to_session = addToSession;
        dict->get_extra_word_characters = extraWordCharacters;
        return dict;
    } catch (...) {
        return nullptr;
    }
}

void disposeDict(EnchantProvider *, EnchantDict *dict) {
    if (dict == nullptr) return;
    OrthDict *d = dictOf(dict);
    if (d != nullptr) {
        ORTH_CloseSession(d->session);
        delete d;
    }
    g_free(dict);
}

int dictionaryExists(EnchantProvider *, const char *const tag) {
    try {
        return folderForTag(tag).empty() ? 0 : 1;
    } catch (...) {
        return 0;
    }
}

char **listDicts(EnchantProvider *, size_t *outCount) {
    *outCount = 0;
    try {
        return glibList(listDictionaries(providerRoots()), outCount);
    } catch (...) {
        return nullptr;
    }
}

const char *identify(EnchantProvider *) { return "orth"; }
const char *describe(EnchantProvider *) { return "orth Provider"; }
void dispose(EnchantProvider *me) { g_free(me); }

}  // namespace

extern "C" __attribute__((visibility("default"))) EnchantProvider *init_enchant_provider(void) {
    EnchantProvider *p = g_new0(EnchantProvider, 1);
    p->dispose = dispose;
    p->request_dict = requestDict;
    p->dispose_dict = disposeDict;
    p->dictionary_exists = dictionaryExists;
    p->identify = identify;
    p->describe = describe;
    p->list_dicts = listDicts;
    return p;
}
