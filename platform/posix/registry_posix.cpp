// platform/posix/registry_posix.cpp — the registry realised as two text
// files: the user root in <configuration folder>/user.reg, the machine root
// in machine.reg of $ORTH_MACHINE_DIR, else of the configuration folder.
//
// Each key is a section named by its path, each value a line (inifile.h):
//
//     [Software\Tamarind\ORTH]
//     MainLexPath=sz:/usr/share/orth/en_US
//     CaseSensitive=dword:00000001
//
// (1) Text is stored with '%', the bytes below 0x20 and 0x7F written as %XX;
//     in names and key paths also the blank and = [ ] ; # @, so that every
//     name reads back exactly; the unnamed value is named "@". A kPlatRegSz value holds the text and one zero
//     byte; a set whose data lacks the zero gets one.
// (2) A key exists when a section names it or a key below it.
// (3) A line that does not decode (unknown type, bad digits, bad %XX) makes
//     its value kPlatRegBadFile; the rest of the file reads on. Writes keep
//     such lines as they are.
// (4) A key handle records its root, path and access; every call reads the
//     file again, as the registry has no cache here either.
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "platform/platform.h"
#include "platform/posix/inifile.h"

namespace {

struct RegKey {
    PlatRegRoot root;
    bool writable;
    std::string section;  // the key path, encoded
};

const char kHex[] = "0123456789ABCDEF";

std::string encode(const char *p, size_t n, bool name) {
    if (name && n == 0) return "@";
    std::string out;
    for (size_t i = 0; i < n; ++i) {
        auto c = static_cast<unsigned char>(p[i]);
        bool escape = c < 0x20 || c == 0x7F || c == '%' ||
                      (name && std::strchr(" =[];#@", c) != nullptr);
        if (escape) {
            out += '%';
            out += kHex[c >> 4];
            out += kHex[c & 15];
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

bool decode(const std::string &s, size_t from, std::string *out) {
    out->clear();
    for (size_t i = from; i < s.size(); ++i) {
        if (s[i] != '%') {
            *out += s[i];
            continue;
        }
        int hi = i + 2 < s.size() ? hexDigit(s[i + 1]) : -1;
        int lo = i + 2 < s.size() ? hexDigit(s[i + 2]) : -1;
        if (hi < 0 || lo < 0) return false;
        *out += static_cast<char>(hi * 16 + lo);
        i += 2;
    }
    return true;
}

// The stored line's value as bytes and type; false when it does not decode.
bool decodeValue(const std::string &text, uint32_t *type, std::string *data) {
    if (text.compare(0, 3, "sz:") == 0) {
        if (!decode(text, 3, data)) return false;
        data->push_back('\0');
        *type = kPlatRegSz;
        return true;
    }
    if (text.size() == 14 && text.compare(0, 6, "dword:") == 0) {
        uint32_t v = 0;
        for (size_t i = 6; i < 14; ++i) {
            int d = hexDigit(text[i]);
            if (d < 0) return false;
            v = v * 16 + static_cast<uint32_t>(d);
        }
        data->assign(reinterpret_cast<const char *>(&v), 4);
        *type = kPlatRegDword;
        return true;
    }
    return false;
}

bool regFile(PlatRegRoot root, std::string *out) {
    if (root == kPlatRegLocalMachine) {
        const char *dir = std::getenv("ORTH_MACHINE_DIR");
        if (dir != nullptr && dir[0] != '\0') {
            *out = std::string(dir) + "/machine.reg";
            return true;
        }
        return configFile("machine.reg", out);
    }
    if (root == kPlatRegCurrentUser) return configFile("user.reg", out);
    return false;
}

int32_t newKey(PlatRegRoot root, const char *path, bool writable, PlatRegKey *key) {
    auto *rec = new (std::nothrow) RegKey;
    if (rec == nullptr) return kPlatRegWriteFault;
    rec->root = root;
    rec->writable = writable;
    rec->section = encode(path, std::strlen(path), true);
    *key = rec;
    return 0;
}

struct ValueWrite {
    const char *section, *name;
    const std::string *line;
};

bool applyValueWrite(std::string *text, void *arg) {
    auto *w = static_cast<ValueWrite *>(arg);
    setIniValue(text, IniMode::Registry, w->section, w->name, w->line == nullptr ? "" : *w->line);
    return true;
}

// Writes one value line (or, with a null name, only the key's section).
int32_t writeKeyFile(PlatRegRoot root, const std::string &section, const char *name,
                     const std::string *line) {
    std::string file;
    if (!regFile(root, &file) || !makeFolders(parentFolder(file))) return kPlatRegWriteFault;
    std::string encodedName = name == nullptr ? "" : encode(name, std::strlen(name), true);
    ValueWrite w{section.c_str(), name == nullptr ? nullptr : encodedName.c_str(), line};
    return editIniFile(file, IniMode::Registry, applyValueWrite, &w) ? 0 : kPlatRegWriteFault;
}

int32_t platRegOpenKeyImpl(PlatRegRoot root, const char *path, uint32_t access, PlatRegKey *key) {
    if (key == nullptr) return kPlatRegBadParam;
    *key = nullptr;
    if (path == nullptr) path = "";
    std::string file, text;
    if (!regFile(root, &file)) return kPlatRegNotFound;
    IniLoad load = loadIniFile(file, &text);
    if (load == IniLoad::Failed) return kPlatRegBadFile;
    std::string section = encode(path, std::strlen(path), true);
    if (path[0] != '\0' && !hasIniSection(text, IniMode::Registry, section.c_str(), true)) {
        return kPlatRegNotFound;
    }
    return newKey(root, path, (access & ~kPlatRegRead) != 0, key);
}

int32_t platRegCreateKeyImpl(PlatRegRoot root, const char *path, PlatRegKey *key) {
    if (key == nullptr) return kPlatRegBadParam;
    *key = nullptr;
    if (path == nullptr) path = "";
    if (path[0] != '\0') {
        int32_t rc = writeKeyFile(root, encode(path, std::strlen(path), true), nullptr, nullptr);
        if (rc != 0) return rc;
    }
    return newKey(root, path, true, key);
}

int32_t platRegQueryValueImpl(PlatRegKey key, const char *name, uint32_t *type, void *data, uint32_t *size) {
    auto *rec = static_cast<RegKey *>(key);
    if (rec == nullptr || (data != nullptr && size == nullptr)) return kPlatRegBadParam;
    if (name == nullptr) name = "";
    std::string file, text, line, bytes;
    if (!regFile(rec->root, &file)) return kPlatRegNotFound;
    IniLoad load = loadIniFile(file, &text);
    if (load == IniLoad::Failed) return kPlatRegBadFile;
    std::string encodedName = encode(name, std::strlen(name), true);
    if (!findIniValue(text, IniMode::Registry, rec->section.c_str(), encodedName.c_str(), &line)) {
        return kPlatRegNotFound;
    }
    uint32_t stored = 0;
    if (!decodeValue(line, &stored, &bytes)) return kPlatRegBadFile;
    if (type != nullptr) *type = stored;
    if (size == nullptr) return 0;
    auto needed = static_cast<uint32_t>(bytes.size());
    if (data != nullptr && needed > *size) {
        *size = needed;
        return kPlatRegMoreData;
    }
    if (data != nullptr) std::memcpy(data, bytes.data(), needed);
    *size = needed;
    return 0;
}

int32_t platRegSetValueImpl(PlatRegKey key, const char *name, uint32_t type, const void *data, uint32_t size) {
    auto *rec = static_cast<RegKey *>(key);
    if (rec == nullptr || (data == nullptr && size > 0)) return kPlatRegBadParam;
    if (!rec->writable) return kPlatRegAccessDenied;
    if (name == nullptr) name = "";
    const auto *bytes = static_cast<const char *>(data);
    std::string line;
    if (type == kPlatRegSz) {
        if (size > 0 && bytes[size - 1] == '\0') --size;
        line = "sz:" + encode(bytes, size, false);
    } else if (type == kPlatRegDword && size == 4) {
        uint32_t v;
        std::memcpy(&v, bytes, 4);
        line = "dword:";
        for (int shift = 28; shift >= 0; shift -= 4) line += kHex[(v >> shift) & 15];
    } else {
        return kPlatRegBadParam;
    }
    return writeKeyFile(rec->root, rec->section, name, &line);
}

// Out of memory inside a call counts as a store that could not be reached.
template <typename Call>
int32_t guarded(Call call) {
    try {
        return call();
    } catch (const std::bad_alloc &) {
        return kPlatRegWriteFault;
    }
}

}  // namespace

int32_t platRegOpenKey(PlatRegRoot root, const char *path, uint32_t access, PlatRegKey *key) {
    return guarded([&] { return platRegOpenKeyImpl(root, path, access, key); });
}

int32_t platRegCreateKey(PlatRegRoot root, const char *path, PlatRegKey *key) {
    return guarded([&] { return platRegCreateKeyImpl(root, path, key); });
}

int32_t platRegQueryValue(PlatRegKey key, const char *name, uint32_t *type, void *data, uint32_t *size) {
    return guarded([&] { return platRegQueryValueImpl(key, name, type, data, size); });
}

int32_t platRegSetValue(PlatRegKey key, const char *name, uint32_t type, const void *data, uint32_t size) {
    return guarded([&] { return platRegSetValueImpl(key, name, type, data, size); });
}

void platRegCloseKey(PlatRegKey key) { delete static_cast<RegKey *>(key); }
