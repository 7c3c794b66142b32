// host/settings.cpp — the settings store over the platform's profile and
// registry calls.
//
// (1) The INI path starts empty and is filled once, by findIniFile on the
//     first INI access or by setIniFilePath; once set it is never recomputed.
// (2) The registry key path starts as "Software\Tamarind\ORTH"; only
//     setRegTreeName changes it.
// (3) Every string a read hands back is zero-terminated within the caller's
//     buffer, even when the stored value lacks its zero byte.
#include "host/settings.h"

#include <cstdio>
#include <cstring>

#include "engine/log.h"
#include "platform/platform.h"

namespace {

char iniPath[kPathBufSize];
char regTree[kPathBufSize] = "Software\\Tamarind\\ORTH";

const char *sectionOf(int user) { return user != 0 ? "ORTH User" : "ORTH"; }
PlatRegRoot rootOf(int user) { return user != 0 ? kPlatRegCurrentUser : kPlatRegLocalMachine; }

void copyPath(char dst[kPathBufSize], const char *src) {
    std::strncpy(dst, src == nullptr ? "" : src, kMaxPathLen);
    dst[kMaxPathLen] = '\0';
}

// The last '\' or '/' of a path, or null.
char *lastSeparator(char *path) {
    char *back = std::strrchr(path, '\\');
    char *slash = std::strrchr(path, '/');
    return back > slash ? back : slash;
}

// Queries one value of the key path under the scope's root into data.
int32_t queryValue(const char *key, int user, void *data, uint32_t *size) {
    PlatRegKey handle;
    int32_t rc = platRegOpenKey(rootOf(user), regTree, kPlatRegAllAccess, &handle);
    if (rc == 0) {
        rc = platRegQueryValue(handle, key, nullptr, data, size);
        platRegCloseKey(handle);
    }
    if (rc == kPlatRegBadFile) engineLog("getSetting: %s: registry value damaged; default used", key);
    return rc;
}

int32_t setValue(const char *key, int user, uint32_t type, const void *data, uint32_t size) {
    PlatRegKey handle;
    int32_t rc = platRegCreateKey(rootOf(user), regTree, &handle);
    if (rc != 0) return rc;
    rc = platRegSetValue(handle, key, type, data, size);
    platRegCloseKey(handle);
    return rc;
}

}  // namespace

bool registryForVersion(uint32_t version) {
    if ((version & 0x80000000u) == 0) return true;  // the NT family
    uint32_t major = version & 0xFF, minor = (version >> 8) & 0xFF;
    return major * 256 + minor >= 0x35F;             // 3.95 and later
}

int useRegistry() { return registryForVersion(platVersion()) ? 1 : 0; }

void findIniFile() {
    if (iniPath[0] != '\0') return;
    char module[kPathBufSize];
    if (platModuleFileName(module, sizeof module) > 0) {
        char *cut = lastSeparator(module);
        if (cut != nullptr) {
            *cut = '\0';
            int n = std::snprintf(iniPath, sizeof iniPath, "%s%c%s", module, platPathSeparator(), "ORTH.INI");
            if (n > 0 && n < kPathBufSize && platFileExists(iniPath)) return;
        }
    }
    platGetProfileString("ORTH", "ORTHProfileFile", "ORTH.INI", iniPath, sizeof iniPath);
}

const char *iniFilePath() { return iniPath; }
void setIniFilePath(const char *path) { copyPath(iniPath, path); }
const char *regTreeName() { return regTree; }
void setRegTreeName(const char *keyPath) { copyPath(regTree, keyPath); }

uint32_t parseIniInteger(const char *text) {
    const char *p = text;
    while (*p == ' ' || (*p >= '\t' && *p <= '\r')) ++p;
    bool negative = *p == '-';
    if (*p == '-' || *p == '+') ++p;
    uint32_t value = 0;
    for (; *p >= '0' && *p <= '9'; ++p) value = value * 10u + static_cast<uint32_t>(*p - '0');
    return negative ? 0u - value : value;
}

void getSetting(const char *key, int user, const char *defaultText, char *buffer, uint16_t size) {
    if (buffer == nullptr || size == 0 || key == nullptr) return;
    if (defaultText == nullptr) defaultText = "";
    if (!useRegistry()) {
        findIniFile();
        platGetPrivateProfileString(sectionOf(user), key, defaultText, buffer, size, iniPath);
        return;
    }
    uint32_t got = size;
    if (queryValue(key, user, buffer, &got) == 0) {
        if (std::memchr(buffer, '\0', got) == nullptr) buffer[got < size ? got : size - 1u] = '\0';
        return;
    }
    std::strncpy(buffer, defaultText, size - 1u);
    buffer[size - 1u] = '\0';
}

uint32_t getIntSetting(const char *key, int user, uint32_t defaultValue) {
    if (key == nullptr) return defaultValue;
    if (!useRegistry()) {
        char defaultText[20], text[20];
        std::snprintf(defaultText, sizeof defaultText, "%lu", static_cast<unsigned long>(defaultValue));
        findIniFile();
        platGetPrivateProfileString(sectionOf(user), key, defaultText, text, sizeof text, iniPath);
        return parseIniInteger(text);
    }
    uint32_t value = 0, size = 4;
    return queryValue(key, user, &value, &size) == 0 ? value : defaultValue;
}

int32_t putSetting(const char *key, int user, const char *text) {
    if (key == nullptr) return 0;
    if (text == nullptr) text = "";
    int32_t status;
    bool written;
    if (useRegistry()) {
        status = setValue(key, user, kPlatRegSz, text, static_cast<uint32_t>(std::strlen(text) + 1));
        written = status == 0;
    } else {
        findIniFile();
        written = platWritePrivateProfileString(sectionOf(user), key, text, iniPath);
        status = written ? 1 : 0;
    }
    if (!written) engineLog("putSetting: %s not written", key);
    return status;
}

void putIntSetting(const char *key, int user, uint32_t value) {
    if (key == nullptr) return;
    if (!useRegistry()) {
        char text[20];
        std::snprintf(text, sizeof text, "%lu", static_cast<unsigned long>(value));
        putSetting(key, user, text);
    } else if (setValue(key, user, kPlatRegDword, &value, 4) != 0) {
        engineLog("putIntSetting: %s not written", key);
    }
}
