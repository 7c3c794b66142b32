// tests/host/host_fixture.h — a settings store of its own for each test, in
// either back end: the configuration folder ($XDG_CONFIG_HOME/orth) and the
// machine registry folder ($ORTH_MACHINE_DIR) in a temporary folder, the INI
// file at a full path in it. The client context is closed, the default front
// end restored and the logs turned off at the end of each test.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>

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

class StoreTest : public ::testing::TestWithParam<Backend> {
protected:
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
        setRegTreeName("Software\\Tamarind\\ORTH");
    }

    void TearDown() override {
        closeClient();
        clientContext.busy = false;
        clientContext.debugFile[0] = '\0';
        setClientFrontEnd(nullptr);
        ORTH_SetDebugFile("");
        closeAllSessions();
        unsetenv("ORTH_SETTINGS");
        unsetenv("ORTH_MACHINE_DIR");
    }

    bool registry() const { return GetParam() == Backend::Registry; }

    // The file that holds a scope's values in this back end.
    std::string storeFile(int user) const {
        if (!registry()) return ini;
        return user != 0 ? config + "/orth/user.reg" : machine + "/machine.reg";
    }

    // Turns the client's (and engine's) log on into a file of the folder.
    std::string logToFile() {
        std::string log = dir.file("client.log");
        putSetting(kKeyDebugFile, kMachineScope, log.c_str());
        return log;
    }

    TempDir dir;
    std::string config, machine, ini;
};

#define INSTANTIATE_BOTH_BACKENDS(suite) \
    INSTANTIATE_TEST_SUITE_P(, suite, ::testing::Values(Backend::Ini, Backend::Registry), backendName)
