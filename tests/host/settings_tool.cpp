// tests/host/settings_tool.cpp — a second process for the settings tests:
// reads or writes one value of the store, or names the INI file it found.
//   host_settings_tool [--ini PATH] get|getint|put|putint user|machine KEY [VALUE]
//   host_settings_tool inifile
//   host_settings_tool [--ini PATH] open   (opens the client context, turns
//       CaseSensitive off and ends: the unload writes the options back)
// The back end and folders come from the environment, as in any host.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "host/settings.h"
#include "orth_client.h"

int main(int argc, char **argv) {
    int at = 1;
    if (argc > at + 1 && std::strcmp(argv[at], "--ini") == 0) {
        setIniFilePath(argv[at + 1]);
        at += 2;
    }
    if (argc == at + 1 && std::strcmp(argv[at], "inifile") == 0) {
        findIniFile();
        std::printf("%s\n", iniFilePath());
        return 0;
    }
    if (argc == at + 1 && std::strcmp(argv[at], "open") == 0) {
        int16_t sid = ORTH_GetSid();
        if (sid < 0) return 1;
        ORTH_SetOption(sid, ORTH_CASE_SENSITIVE_OPT, 0);
        return 0;
    }
    if (argc < at + 3) return 2;
    const char *command = argv[at];
    int user = std::strcmp(argv[at + 1], "user") == 0 ? kUserScope : kMachineScope;
    const char *key = argv[at + 2];
    const char *value = argc > at + 3 ? argv[at + 3] : "";
    if (std::strcmp(command, "get") == 0) {
        char buffer[4160];
        getSetting(key, user, value, buffer, sizeof buffer);
        std::printf("%s\n", buffer);
    } else if (std::strcmp(command, "getint") == 0) {
        std::printf("%lu\n", static_cast<unsigned long>(getIntSetting(key, user, std::strtoul(value, nullptr, 10))));
    } else if (std::strcmp(command, "put") == 0) {
        putSetting(key, user, value);
    } else if (std::strcmp(command, "putint") == 0) {
        putIntSetting(key, user, static_cast<uint32_t>(std::strtoul(value, nullptr, 10)));
    } else {
        return 2;
    }
    return 0;
}
