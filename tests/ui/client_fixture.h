// tests/ui/client_fixture.h — the dialogs over a real client context: a
// settings store in a temporary folder (INI back end) naming a small
// compressed dictionary as main lexicon and an empty personal lexicon of type
// Ignore as user lexicon, the in-memory front end installed through the
// client wiring, and edit controls held in memory (support/mem_edit.h).
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "dict/dict_fixture.h"
#include "host/client.h"
#include "host/settings.h"
#include "orth.h"
#include "orth_client.h"
#include "support/mem_edit.h"
#include "ui/clientui.h"
#include "ui/memsurface.h"

using Strings = std::vector<std::string>;

class DialogTest : public ::testing::Test {
protected:
    void SetUp() override {
        closeAllSessions();
        std::string config = dir.path() + "/config";
        setenv("XDG_CONFIG_HOME", config.c_str(), 1);
        unsetenv("ORTH_SETTINGS");
        ini = config + "/orth/ORTH.INI";
        std::filesystem::create_directories(config + "/orth");
        setIniFilePath(ini.c_str());
        mainDir = dir.path() + "/main";
        userDir = dir.path() + "/user";
        std::filesystem::create_directories(mainDir);
        std::filesystem::create_directories(userDir);
        ASSERT_EQ(compressWords(dir.path(), mainDir + "/MAIN.CLX",
                                {"a", "and", "are", "cat", "hello", "how", "is", "mat", "on", "sat", "the",
                                 "there", "this", "word", "words", "world", "would", "you"}),
                  0);
        makeLex(userDir + "/personal.tlx", ORTH_IGNORE_LEX_TYPE);
        putSetting(kKeyMainLexPath, kMachineScope, mainDir.c_str());
        putSetting(kKeyMainLexFiles, kMachineScope, "MAIN.CLX");
        putSetting(kKeyUserLexPath, kUserScope, userDir.c_str());
        putSetting(kKeyUserLexFiles, kUserScope, "personal.tlx");
        uiFront = fe.frontEnd();
        ClientFrontEnd client = uiClientFrontEnd(&uiFront);
        useMemEdit(&client);
        setClientFrontEnd(&client);
    }

    void TearDown() override {
        closeClient();
        clientContext.busy = false;
        clientContext.dialogLocked = false;
        clientContext.dialogX = clientContext.dialogY = 0;
        setClientFrontEnd(nullptr);
        uiClientFrontEnd(nullptr);
        closeAllSessions();
    }

    static void makeLex(const std::string &path, int16_t type) {
        int16_t sid = ORTH_OpenSession();
        EXPECT_GE(ORTH_CreateLex(sid, path.c_str(), type, 1033), 0) << path;
        ORTH_CloseSession(sid);
    }

    // Checks text as a host's buffer with room to grow; the text afterwards.
    std::string checkText(const std::string &text, int32_t *result = nullptr) {
        std::string buffer = text;
        buffer.resize(text.size() + 256);
        int32_t rc = ORTH_CheckBlockDlg(nullptr, &buffer[0], static_cast<uint32_t>(text.size()),
                                        static_cast<uint32_t>(buffer.size()));
        if (result != nullptr) *result = rc;
        return rc >= 0 ? buffer.substr(0, static_cast<size_t>(rc)) : buffer.substr(0, buffer.find('\0'));
    }

    std::string setting(const char *key, int user) {
        char buffer[kClientListSize];
        getSetting(key, user, "(none)", buffer, sizeof buffer);
        return buffer;
    }

    // Each message box shown, as "caption|text".
    Strings boxes() const {
        Strings out;
        for (const MemMessageBox &b : fe.boxes) out.push_back(b.caption + "|" + b.text);
        return out;
    }

    static uint32_t statistic(int which) {
        uint32_t v[3] = {};
        ORTH_GetStatistics(&v[0], &v[1], &v[2]);
        return v[which];
    }

    TempDir dir;
    std::string ini, mainDir, userDir;
    MemFrontEnd fe;
    UiFrontEnd uiFront{};
};

enum { kWordsChecked, kWordsChanged, kErrorsFound };
