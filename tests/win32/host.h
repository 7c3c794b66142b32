// tests/win32/host.h — what the host test programs share. They link no
// engine code: like a Windows host, they load TMSPL32.DLL and ORTH32.DLL
// from their own folder with LoadLibraryA and look each function up by its
// plain name, typed by the public header's declaration (so with the header's
// calling convention).
#pragma once

#include <windows.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

// The folder of the running program, ending in a backslash.
inline std::string programFolder() {
    char path[MAX_PATH];
    DWORD n = GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string s(path, n);
    return s.substr(0, s.find_last_of("\\/") + 1);
}

// A DLL loaded by name; fn<F>(name) is its export of that name, or null.
class Dll {
public:
    explicit Dll(const char *name) : module_(LoadLibraryA(name)) {}
    ~Dll() {
        if (module_ != nullptr) FreeLibrary(module_);
    }
    Dll(const Dll &) = delete;
    Dll &operator=(const Dll &) = delete;
    HMODULE module() const { return module_; }
    template <typename F>
    F fn(const char *name) const {
        FARPROC proc = module_ != nullptr ? GetProcAddress(module_, name) : nullptr;
        return reinterpret_cast<F>(reinterpret_cast<void (*)()>(proc));
    }

private:
    HMODULE module_;
};

// An import table: inside a struct, HOST_IMPORTS(LIST) declares one member
// per function of the X-macro LIST, named and typed like the header's
// declaration (so with its calling convention), and load(dll), which looks
// each up by its plain name; missing names those the DLL lacks. A program
// that links no engine fails to link a call that misses the "api.".
#define HOST_IMPORT_MEMBER(name) decltype(&::name) name = nullptr;
#define HOST_IMPORT_LOAD(name)                        \
    name = dll.fn<decltype(&::name)>(#name);          \
    if (name == nullptr) missing.push_back(#name);
#define HOST_IMPORTS(LIST)           \
    LIST(HOST_IMPORT_MEMBER)         \
    std::vector<std::string> missing; \
    void load(const Dll &dll) {      \
        missing.clear();             \
        LIST(HOST_IMPORT_LOAD)       \
    }

// A fresh folder under the user's temporary folder, ending in a backslash,
// removed with its contents at the end; path() is empty if none could be made.
class WorkFolder {
public:
    WorkFolder() {
        std::filesystem::path base = std::filesystem::temp_directory_path();
        unsigned first = GetCurrentProcessId() * 1000u;
        for (unsigned n = first; n < first + 1000u; ++n) {
            std::filesystem::path p = base / ("orth-host-" + std::to_string(n));
            std::error_code ec;
            if (std::filesystem::create_directory(p, ec)) {
                path_ = p.string() + "\\";
                break;
            }
        }
    }
    ~WorkFolder() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    WorkFolder(const WorkFolder &) = delete;
    WorkFolder &operator=(const WorkFolder &) = delete;
    const std::string &path() const { return path_; }
    std::string file(const std::string &name) const { return path_ + name; }

private:
    std::string path_;
};

inline std::string fileBytes(const std::string &path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

inline void writeBytes(const std::string &path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// The built-in American English dictionary beside the program.
inline std::string dictionaryFolder() { return programFolder() + "share\\orth\\en_US\\"; }

// A version-resource string of a DLL ("FileVersion", ...), or "".
inline std::string versionString(const std::string &dll, const char *key) {
    DWORD ignored = 0;
    DWORD size = GetFileVersionInfoSizeA(dll.c_str(), &ignored);
    if (size == 0) return "";
    std::string data(size, '\0');
    if (!GetFileVersionInfoA(dll.c_str(), 0, size, &data[0])) return "";
    char *value = nullptr;
    UINT len = 0;
    std::string query = std::string("\\StringFileInfo\\040904E4\\") + key;
    if (!VerQueryValueA(&data[0], query.c_str(), reinterpret_cast<void **>(&value), &len) || len == 0)
        return "";
    return std::string(value);
}

inline bool keyExists(HKEY root, const std::string &path) {
    HKEY h;
    if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &h) != ERROR_SUCCESS) return false;
    RegCloseKey(h);
    return true;
}

inline bool fileExists(const std::string &path) { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

// The settings store as the system holds it, read and written with the
// system's own calls: a registry key path under both roots, or an INI file.
struct Store {
    std::string place;  // key path, or the INI file's full path
    bool ini = false;

    static constexpr const char *kNone = "(none)";
    const char *section(bool user) const { return user ? "ORTH User" : "ORTH"; }
    static HKEY root(bool user) { return user ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE; }

    // A string as stored; an integer as "dword:N" in the registry, its text
    // in an INI file; kNone when absent.
    std::string get(const char *key, bool user) const {
        char buffer[4200] = "";
        if (ini) {
            GetPrivateProfileStringA(section(user), key, kNone, buffer, sizeof buffer, place.c_str());
            return buffer;
        }
        HKEY h;
        if (RegOpenKeyExA(root(user), place.c_str(), 0, KEY_READ, &h) != ERROR_SUCCESS) return kNone;
        DWORD type = 0, size = sizeof buffer - 1;
        LONG rc = RegQueryValueExA(h, key, nullptr, &type, reinterpret_cast<BYTE *>(buffer), &size);
        RegCloseKey(h);
        if (rc != ERROR_SUCCESS) return kNone;
        if (type == REG_DWORD && size == 4) {
            DWORD v;
            std::memcpy(&v, buffer, 4);
            return "dword:" + std::to_string(v);
        }
        if (type == REG_SZ && size > 0 && std::strlen(buffer) == size - 1) return buffer;
        return "type " + std::to_string(type) + ", " + std::to_string(size) + " bytes";
    }
    std::string integer(uint32_t v) const { return (ini ? "" : "dword:") + std::to_string(v); }

    // Writes are checked by reading them back; a failed one shows there.
    void put(const char *key, bool user, const std::string &text) const {
        if (ini) WritePrivateProfileStringA(section(user), key, text.c_str(), place.c_str());
        else setValue(key, user, REG_SZ, text.c_str(), DWORD(text.size() + 1));
    }
    void putInt(const char *key, bool user, uint32_t v) const {
        if (ini) put(key, user, std::to_string(v));
        else setValue(key, user, REG_DWORD, &v, 4);
    }
    void setValue(const char *key, bool user, DWORD type, const void *data, DWORD size) const {
        HKEY h;
        if (RegCreateKeyExA(root(user), place.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &h, nullptr) !=
            ERROR_SUCCESS)
            return;
        RegSetValueExA(h, key, 0, type, static_cast<const BYTE *>(data), size);
        RegCloseKey(h);
    }

    bool exists() const {
        if (ini) return fileExists(place);
        return keyExists(HKEY_CURRENT_USER, place) || keyExists(HKEY_LOCAL_MACHINE, place);
    }
    void clear() const {
        if (ini) {
            DeleteFileA(place.c_str());
        } else {
            RegDeleteTreeA(HKEY_CURRENT_USER, place.c_str());
            RegDeleteTreeA(HKEY_LOCAL_MACHINE, place.c_str());
        }
    }
};
