// tests/host/host_fixture.h — a settings store of its own for each test, in
// either back end: the configuration folder ($XDG_CONFIG_HOME/orth) and the
// machine registry folder ($ORTH_MACHINE_DIR) in a temporary folder, the INI
// file at a full path in it. On Windows the version word puts the system's
// registry in force, so only that back end runs there, each test under a key
// path of its own below both roots, removed at the end. The client context
// is closed, the default front end restored and the logs turned off at the
// end of each test.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/stat.h>
#endif

#include "host/client.h"
#include "host/settings.h"
#include "orth.h"
#include "support/test_util.h"

enum class Backend { Ini, Registry };

// Creates the folders a file path needs; true when they exist.
inline bool makeParent(const std::string &path) {
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ec);
    return !ec;
}

inline std::string backendName(const ::testing::TestParamInfo<Backend> &info) {
    return info.param == Backend::Ini ? "Ini" : "Registry";
}

#ifdef _WIN32
// The values under a key path of one root, as lines "name=sz:text" and
// "name=dword:XXXXXXXX" in the order the registry lists them; "" when the
// key does not exist.
inline std::string registryText(HKEY root, const std::string &path) {
    HKEY key;
    if (RegOpenKeyExA(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return "";
    std::string out = "[" + path + "]\n";
    for (DWORD i = 0;; ++i) {
        char name[256], data[4200];
        DWORD nameSize = sizeof name, type = 0, size = sizeof data;
        if (RegEnumValueA(key, i, name, &nameSize, nullptr, &type, reinterpret_cast<BYTE *>(data), &size) !=
            ERROR_SUCCESS)
            break;
        std::string value = "type " + std::to_string(type);
        if (type == REG_DWORD && size == 4) {
            DWORD v;
            char hex[9];
            std::memcpy(&v, data, 4);
            std::snprintf(hex, sizeof hex, "%08lX", static_cast<unsigned long>(v));
            value = std::string("dword:") + hex;
        } else if (type == REG_SZ) {
            value = "sz:" + std::string(data, strnlen(data, size));
        }
        out += std::string(name) + "=" + value + "\n";
    }
    RegCloseKey(key);
    return out;
}
#endif

class StoreTest : public ::testing::TestWithParam<Backend> {
protected:
#ifdef _WIN32
    void SetUp() override {
        static int count = 0;
        tree = "Software\\Tamarind\\orth-tests\\" + std::to_string(GetCurrentProcessId()) + "-" +
               std::to_string(++count);
        removeTree();
        setRegTreeName(tree.c_str());
    }

    void TearDown() override {
        closeStore();
        removeTree();
    }

    void removeTree() {
        RegDeleteTreeA(HKEY_CURRENT_USER, tree.c_str());
        RegDeleteTreeA(HKEY_LOCAL_MACHINE, tree.c_str());
    }

    bool registry() const { return true; }
    bool storeExists(int user) const { return !storeText(user).empty(); }
    std::string storeText(int user) const {
        return registryText(user != 0 ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE, tree);
    }
#else
    void SetUp() override {
        config = dir.path() + "/config";
        machine = dir.path() + "/machine";
        mkdir(machine.c_str(), 0700);
        setenv("XDG_CONFIG_HOME", config.c_str(), 1);
        setenv("ORTH_MACHINE_DIR", machine.c_str(), 1);
        if (registry()) setenv("ORTH_SETTINGS", "registry", 1);
        else unsetenv("ORTH_SETTINGS");
        ini = config + "/orth/ORTH.INI";
        makeParent(ini);
        setIniFilePath(ini.c_str());
        setRegTreeName(tree.c_str());
    }

    void TearDown() override {
        closeStore();
        unsetenv("ORTH_SETTINGS");
        unsetenv("ORTH_MACHINE_DIR");
    }

    bool registry() const { return GetParam() == Backend::Registry; }

    // The file that holds a scope's values in this back end.
    std::string storeFile(int user) const {
        if (!registry()) return ini;
        return user != 0 ? config + "/orth/user.reg" : machine + "/machine.reg";
    }
    bool storeExists(int user) const { return fileExists(storeFile(user)); }
    std::string storeText(int user) const { return readFile(storeFile(user)); }

    std::string config, machine, ini;
#endif

    void closeStore() {
        closeClient();
        clientContext.busy = false;
        clientContext.debugFile[0] = '\0';
        setClientFrontEnd(nullptr);
        ORTH_SetDebugFile("");
        closeAllSessions();
        setRegTreeName("Software\\Tamarind\\ORTH");
    }

    // Turns the client's (and engine's) log on into a file of the folder.
    std::string logToFile() {
        std::string log = dir.file("client.log");
        putSetting(kKeyDebugFile, kMachineScope, log.c_str());
        return log;
    }

    TempDir dir;
    std::string tree = "Software\\Tamarind\\ORTH";  // the registry key path of the test
};

#ifdef _WIN32
#define INSTANTIATE_BOTH_BACKENDS(suite) \
    INSTANTIATE_TEST_SUITE_P(, suite, ::testing::Values(Backend::Registry), backendName)
#else
#define INSTANTIATE_BOTH_BACKENDS(suite) \
    INSTANTIATE_TEST_SUITE_P(, suite, ::testing::Values(Backend::Ini, Backend::Registry), backendName)
#endif
