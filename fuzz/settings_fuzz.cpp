// fuzz/settings_fuzz.cpp — the settings store's files: any bytes as an INI
// file and as the user's registry file, read with every kind of key and
// buffer size, then written and read back. A value written must read back
// as written, and a key written must not change what another key reads.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/fuzz_util.h"
#include "host/settings.h"
#include "platform/platform.h"

namespace {

const char *const kSections[] = {"ORTH", "ORTH User", "orth", "Other"};
const char *const kKeys[] = {"DebugFile", "MainLexPath", "LexPath", "MainLexFiles", "UserLexFiles", "AlwaysSuggest"};

// The configuration folder (XDG_CONFIG_HOME) inside the scratch folder.
const std::string &configDir() {
    static const std::string dir = [] {
        std::string d = scratchDir() + "/config";
        setenv("XDG_CONFIG_HOME", d.c_str(), 1);
        setenv("ORTH_MACHINE_DIR", (d + "/orth").c_str(), 1);
        require(std::system(("mkdir -p '" + d + "/orth'").c_str()) == 0, "configuration folder");
        return d;
    }();
    return dir;
}

std::string profileValue(const char *section, const char *key, const std::string &ini, uint32_t size) {
    std::vector<char> out(size == 0 ? 1 : size);
    uint32_t n = platGetPrivateProfileString(section, key, "dflt", out.data(), size, ini.c_str());
    require(size == 0 || (n < size && out[n] == '\0'), "profile value cut within its buffer");
    return size == 0 ? "" : std::string(out.data());
}

std::string registryValue(const char *key, uint32_t size) {
    PlatRegKey k = nullptr;
    int32_t open = platRegOpenKey(kPlatRegCurrentUser, "Software\\Tamarind\\ORTH", kPlatRegRead, &k);
    if (open != 0) return "<" + std::to_string(open) + ">";  // a missing key reads as a missing value
    std::vector<char> data(size == 0 ? 1 : size);
    uint32_t type = 0, got = size;
    int32_t rc = platRegQueryValue(k, key, &type, data.data(), &got);
    platRegCloseKey(k);
    if (rc != 0) return "<" + std::to_string(rc) + ">";
    require(got <= size, "registry value within its buffer");
    return std::to_string(type) + ":" + std::string(data.data(), got);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string ini = scratchFile("ORTH.INI"), reg = configDir() + "/orth/user.reg";
    FuzzedDataProvider in(data, size);
    writeBytes(ini, in.ConsumeRandomLengthString(4096));
    writeBytes(reg, in.ConsumeRandomLengthString(4096));
    for (const char *section : kSections)
        for (const char *key : kKeys) profileValue(section, key, ini, in.ConsumeIntegralInRange<uint32_t>(0, 300));
    for (const char *key : kKeys) registryValue(key, in.ConsumeIntegralInRange<uint32_t>(0, 300));
    setIniFilePath(ini.c_str());
    char buffer[260];
    getSetting(kKeyMainLexPath, kUserScope, "x", buffer, static_cast<uint16_t>(in.ConsumeIntegralInRange(1, 260)));
    getIntSetting(kKeyAlwaysSuggest, kMachineScope, 7);

    // A plain value written under one key reads back, and leaves another key as it read.
    const char *section = kSections[in.ConsumeIntegralInRange(0, 3)];
    const char *key = kKeys[in.ConsumeIntegralInRange(0, 5)], *other = kKeys[in.ConsumeIntegralInRange(0, 5)];
    std::string value = "v" + std::to_string(in.ConsumeIntegral<uint16_t>());
    std::string otherBefore = profileValue(section, other, ini, 300);
    if (platWritePrivateProfileString(section, key, value.c_str(), ini.c_str())) {
        require(profileValue(section, key, ini, 300) == value, "profile value reads back");
        if (other != key) require(profileValue(section, other, ini, 300) == otherBefore, "other profile key kept");
    }
    std::string regBefore = registryValue(other, 300);
    PlatRegKey k = nullptr;
    if (platRegCreateKey(kPlatRegCurrentUser, "Software\\Tamarind\\ORTH", &k) == 0) {
        int32_t rc = platRegSetValue(k, key, kPlatRegSz, value.c_str(), static_cast<uint32_t>(value.size() + 1));
        platRegCloseKey(k);
        if (rc == 0) {
            require(registryValue(key, 300) == "1:" + value + std::string(1, '\0'), "registry value reads back");
            if (other != key) require(registryValue(other, 300) == regBefore, "other registry key kept");
        }
    }
    return 0;
}
