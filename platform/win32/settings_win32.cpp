// platform/win32/settings_win32.cpp — profile files and the registry over
// the Windows calls of the same names.
//
// (1) A profile read with a null section, key or file gives the default, and
//     a write that a later read would not find as written is refused
//     (profilename.h): Windows would list names, delete a key or a whole
//     section, or split a value over two lines instead.
// (2) Every string a profile read hands back is zero-terminated within the
//     caller's buffer.
// (3) Registry values are REG_SZ and 4-byte REG_DWORD only, as on POSIX;
//     other types and sizes are refused with kPlatRegBadParam before they
//     reach the registry. Results are the registry's own error numbers.
// (4) On Windows the configuration folder is the Windows folder: it holds
//     WIN.INI, and it is where the profile calls resolve a bare file name.
//     The registry needs no folder.
#include "platform/platform.h"
#include "platform/profilename.h"

#include <windows.h>

#include <cstring>

namespace {

HKEY rootKey(PlatRegRoot root) {
    switch (root) {
    case kPlatRegCurrentUser: return HKEY_CURRENT_USER;
    case kPlatRegLocalMachine: return HKEY_LOCAL_MACHINE;
    }
    return nullptr;
}

uint32_t copyDefault(const char *defaultText, char *out, uint32_t size) {
    size_t n = std::strlen(defaultText);
    if (n > size - 1) n = size - 1;
    std::memcpy(out, defaultText, n);
    out[n] = '\0';
    return static_cast<uint32_t>(n);
}

}  // namespace

uint32_t platGetPrivateProfileString(const char *section, const char *key, const char *defaultText,
                                     char *out, uint32_t size, const char *file) {
    if (out == nullptr || size == 0) return 0;
    if (defaultText == nullptr) defaultText = "";
    if (section == nullptr || key == nullptr || file == nullptr || file[0] == '\0') {  // (1)
        return copyDefault(defaultText, out, size);
    }
    DWORD n = GetPrivateProfileStringA(section, key, defaultText, out, size, file);
    if (n > size - 1) n = size - 1;  // (2)
    out[n] = '\0';
    return n;
}

bool platWritePrivateProfileString(const char *section, const char *key, const char *value,
                                   const char *file) {
    if (file == nullptr || file[0] == '\0' || !profileWriteFits(section, key, value)) return false;
    return WritePrivateProfileStringA(section, key, value, file) != 0;
}

uint32_t platGetProfileString(const char *section, const char *key, const char *defaultText,
                              char *out, uint32_t size) {
    if (out == nullptr || size == 0) return 0;
    if (defaultText == nullptr) defaultText = "";
    if (section == nullptr || key == nullptr) return copyDefault(defaultText, out, size);
    DWORD n = GetProfileStringA(section, key, defaultText, out, size);
    if (n > size - 1) n = size - 1;
    out[n] = '\0';
    return n;
}

int32_t platRegOpenKey(PlatRegRoot root, const char *path, uint32_t access, PlatRegKey *key) {
    if (key == nullptr) return kPlatRegBadParam;
    *key = nullptr;
    HKEY parent = rootKey(root), opened = nullptr;
    if (parent == nullptr) return kPlatRegBadParam;
    LONG rc = RegOpenKeyExA(parent, path != nullptr ? path : "", 0, access, &opened);
    if (rc == ERROR_SUCCESS) *key = opened;
    return rc;
}

int32_t platRegCreateKey(PlatRegRoot root, const char *path, PlatRegKey *key) {
    if (key == nullptr) return kPlatRegBadParam;
    *key = nullptr;
    HKEY parent = rootKey(root), created = nullptr;
    if (parent == nullptr) return kPlatRegBadParam;
    char noClass[] = "";
    LONG rc = RegCreateKeyExA(parent, path != nullptr ? path : "", 0, noClass, REG_OPTION_NON_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, &created, nullptr);
    if (rc == ERROR_SUCCESS) *key = created;
    return rc;
}

int32_t platRegQueryValue(PlatRegKey key, const char *name, uint32_t *type, void *data, uint32_t *size) {
    if (key == nullptr || (data != nullptr && size == nullptr)) return kPlatRegBadParam;
    DWORD storedType = 0, count = size != nullptr ? *size : 0;
    LONG rc = RegQueryValueExA(static_cast<HKEY>(key), name, nullptr, &storedType, static_cast<BYTE *>(data),
                               size != nullptr ? &count : nullptr);
    if (type != nullptr) *type = storedType;
    if (size != nullptr) *size = count;
    return rc;
}

int32_t platRegSetValue(PlatRegKey key, const char *name, uint32_t type, const void *data, uint32_t size) {
    if (key == nullptr || (data == nullptr && size > 0)) return kPlatRegBadParam;
    if (type != kPlatRegSz && !(type == kPlatRegDword && size == 4)) return kPlatRegBadParam;  // (3)
    return RegSetValueExA(static_cast<HKEY>(key), name, 0, type, static_cast<const BYTE *>(data), size);
}

void platRegCloseKey(PlatRegKey key) {
    if (key != nullptr) RegCloseKey(static_cast<HKEY>(key));
}

bool platConfigFolder(char *out, uint32_t size) {  // (4)
    if (out == nullptr || size == 0) return false;
    UINT n = GetWindowsDirectoryA(out, size);
    if (n == 0 || n >= size) {
        out[0] = '\0';
        return false;
    }
    return true;
}
