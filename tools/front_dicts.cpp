// tools/front_dicts.cpp — where the front ends find dictionaries by name and
// the user's personal word list.
//
// A named dictionary (en_US) is searched in this order: the folders of
// ORTH_DICPATH (colon-separated), then the roots the caller was installed
// with (dictRootsFor). Each folder holds <name>/MAIN.CLX. A name holding a
// slash is a path and is used as it is, so that errors name the folder the
// user gave.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sys/stat.h>

#include "orth.h"
#include "tools/front.h"

#ifndef ORTH_DATA_DIR
#define ORTH_DATA_DIR ""  // the installation's share/orth, given by the build
#endif

namespace {

bool isFolder(const std::string &path) {
    struct stat st;
    return !path.empty() && stat(path.c_str(), &st) == 0 && (st.st_mode & S_IFMT) == S_IFDIR;
}

bool isDictionaryFolder(const std::string &path) { return isRegularFile(path + "/MAIN.CLX"); }

std::vector<std::string> dicPathFolders() {
    std::vector<std::string> out;
    const char *env = std::getenv("ORTH_DICPATH");
    if (env == nullptr) return out;
    std::string all = env;
    size_t start = 0;
    while (start <= all.size()) {
        size_t end = all.find(':', start);
        if (end == std::string::npos) end = all.size();
        if (end > start) out.push_back(all.substr(start, end - start));
        start = end + 1;
    }
    return out;
}

std::vector<std::string> searchFolders(const DictRoots &roots) {
    std::vector<std::string> all = dicPathFolders();
    all.insert(all.end(), roots.folders.begin(), roots.folders.end());
    return all;
}

std::string lastComponent(std::string path) {
    while (path.size() > 1 && (path.back() == '/' || path.back() == '\\')) path.pop_back();
    size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

}  // namespace

bool isRegularFile(const std::string &path) {
    struct stat st;
    return !path.empty() && stat(path.c_str(), &st) == 0 && (st.st_mode & S_IFMT) == S_IFREG;
}

std::string folderOf(const std::string &path) {
    size_t slash = path.find_last_of("/\\");
    return slash == std::string::npos ? "" : path.substr(0, slash);
}

DictRoots dictRootsFor(const std::string &home) {
    DictRoots roots;
    if (!home.empty()) {
        roots.folders.push_back(home + "/share/orth");
        roots.folders.push_back(home + "/../share/orth");
    }
    if (ORTH_DATA_DIR[0] != '\0') roots.folders.push_back(ORTH_DATA_DIR);
    return roots;
}

std::string findDictionary(const std::string &name, const DictRoots &roots) {
    if (name.find_first_of("/\\") != std::string::npos) return name;
    if (!name.empty() && isDictionaryFolder(name)) return name;
    std::string wanted = name;
    if (wanted.empty()) {
        for (const std::string &f : dicPathFolders())
            if (isDictionaryFolder(f)) return f;
        wanted = kDefaultDictionaryName;
    }
    for (const std::string &f : searchFolders(roots))
        if (isDictionaryFolder(f + "/" + wanted)) return f + "/" + wanted;
    return "";
}

std::vector<std::string> listDictionaries(const DictRoots &roots) {
    std::vector<std::string> names;
    for (const std::string &f : searchFolders(roots)) {
        if (!isFolder(f)) continue;
        std::error_code ec;
        for (std::filesystem::directory_iterator it(f, ec), end; !ec && it != end; it.increment(ec)) {
            std::string name = it->path().filename().string();
            if (isDictionaryFolder(f + "/" + name)) names.push_back(name);
        }
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::string defaultPersonalList(const std::string &dictDir) {
    std::string base;
    const char *xdg = std::getenv("XDG_CONFIG_HOME");
    const char *home = std::getenv("HOME");
    if (xdg != nullptr && xdg[0] == '/') base = xdg;
    else if (home != nullptr && home[0] != '\0') base = std::string(home) + "/.config";
    std::string name = lastComponent(dictDir);
    if (base.empty() || name.empty() || name == "." || name == "..") return "";
    return base + "/orth/" + name + ".tlx";
}

int16_t openDictionarySession(const std::string &folder, const std::string &personal, int16_t *personalLex,
                              std::string *failedPath) {
    *personalLex = -1;
    std::string clx = folder + "/MAIN.CLX", tlx = folder + "/MAIN.TLX";
    if (!isRegularFile(clx)) {
        *failedPath = clx;
        return ORTH_FILE_NOT_FOUND_ERR;
    }
    int16_t session = ORTH_OpenSession();
    if (session < 0) {
        failedPath->clear();
        return session;
    }
    struct Step {
        const std::string &path;
        bool optional;     // skipped when nothing of that name exists
        bool compressed;   // must be a compressed lexicon, not a text one
        int16_t *id;
    } steps[] = {{tlx, true, false, nullptr}, {personal, true, false, personalLex}, {clx, false, true, nullptr}};
    for (const Step &step : steps) {
        struct stat st;
        if (step.optional && (step.path.empty() || stat(step.path.c_str(), &st) != 0)) continue;
        int16_t rc = ORTH_OpenLex(session, step.path.c_str(), 0);
        uint16_t format = ORTH_COMPRESSED_LEX_FORMAT;
        if (rc >= 0 && step.compressed) ORTH_GetLexInfo(session, rc, nullptr, &format, nullptr, nullptr);
        // Any file opens as a text lexicon; a main dictionary that is not
        // compressed is a damaged one.
        if (format != ORTH_COMPRESSED_LEX_FORMAT) rc = ORTH_UNKNOWN_LEXICON_TYPE_ERR;
        if (rc < 0) {
            ORTH_CloseSession(session);
            *personalLex = -1;
            *failedPath = step.path;
            return rc;
        }
        if (step.id != nullptr) *step.id = rc;
    }
    return session;
}

uint16_t dictionaryLanguage(int16_t session) {
    for (int16_t id = 0; id < 16; ++id) {
        uint16_t format = 0, language = 0;
        if (ORTH_GetLexInfo(session, id, nullptr, &format, nullptr, &language) == 0 &&
            format == ORTH_COMPRESSED_LEX_FORMAT)
            return language;
    }
    return 1033;
}

int16_t openPersonalList(int16_t session, const std::string &path, int16_t *lex) {
    if (*lex >= 0) return *lex;
    if (path.empty()) return ORTH_FILE_NOT_FOUND_ERR;
    std::string folder = folderOf(path);
    std::error_code ec;
    if (!folder.empty()) std::filesystem::create_directories(folder, ec);
    int16_t rc = isRegularFile(path)
                     ? ORTH_OpenLex(session, path.c_str(), 0)
                     : ORTH_CreateLex(session, path.c_str(), ORTH_IGNORE_LEX_TYPE, dictionaryLanguage(session));
    if (rc == ORTH_LEXICON_EXISTS_ERR) rc = ORTH_OpenLex(session, path.c_str(), 0);  // made meanwhile
    if (rc >= 0) *lex = rc;
    return rc;
}

int16_t addToMemoryList(int16_t session, int16_t *lex, const std::string &word) {
    if (*lex < 0) {
        int16_t rc = ORTH_CreateLex(session, nullptr, ORTH_IGNORE_LEX_TYPE, dictionaryLanguage(session));
        if (rc < 0) return rc;
        *lex = rc;
    }
    return ORTH_AddToLex(session, *lex, word.c_str(), nullptr);
}
