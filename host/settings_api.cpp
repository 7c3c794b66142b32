// host/settings_api.cpp — the client-level getters and setters of the
// settings store.
//
// (1) The setters of the store's location close the client context before
//     they move the store, so the options closeClient writes back land in
//     the old one; the setters of lexicon and help settings write first and
//     close afterwards, so the next client-level call reopens the context
//     from the new settings.
// (2) Every setter but ORTH_SetAlwaysSuggest refuses with ORTH_BUSY_ERR
//     while a dialog call runs, and then changes nothing.
#include <cstring>

#include "host/client.h"
#include "host/settings.h"
#include "orth.h"

namespace {

const char *textOrEmpty(const char *text) { return text != nullptr ? text : ""; }

// Writes a string key, logs "<function>: <key> set to <text>" when asked to,
// then closes the client context.
int16_t writeAndClose(const char *function, const char *key, int user, const char *text, bool log) {
    if (refuseWhileBusy(function)) return ORTH_BUSY_ERR;
    text = textOrEmpty(text);
    putSetting(key, user, text);
    if (log) clientLog("%s: %s set to %s", function, key, text);
    closeClient();
    return 0;
}

int16_t readInto(const char *function, const char *key, int user, char *buffer, uint16_t size) {
    if (buffer == nullptr || size == 0) {
        clientLog("%s: no buffer", function);
        return ORTH_BUFFER_TOO_SMALL_ERR;
    }
    getSetting(key, user, "", buffer, size);
    return 0;
}

}  // namespace

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetIniFile(const char *path) noexcept {
    if (refuseWhileBusy("ORTH_SetIniFile")) return ORTH_BUSY_ERR;
    closeClient();
    setIniFilePath(path);
    clientLog("ORTH_SetIniFile: ini file set to %s", textOrEmpty(path));
    return 0;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetRegTreeName(const char *keyPath) noexcept {
    if (refuseWhileBusy("ORTH_SetRegTreeName")) return ORTH_BUSY_ERR;
    closeClient();
    setRegTreeName(keyPath);
    clientLog("ORTH_SetRegTreeName: registry tree set to %s", textOrEmpty(keyPath));
    return 0;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetRegTreeName(char *buffer, uint16_t size) noexcept {
    if (buffer == nullptr || size == 0) {
        clientLog("ORTH_GetRegTreeName: no buffer");
        return ORTH_BUFFER_TOO_SMALL_ERR;
    }
    std::strncpy(buffer, regTreeName(), size - 1u);
    buffer[size - 1u] = '\0';
    return 0;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetMainLexPath(const char *folder) noexcept {
    return writeAndClose("ORTH_SetMainLexPath", kKeyMainLexPath, kMachineScope, folder, true);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetMainLexFiles(const char *list) noexcept {
    return writeAndClose("ORTH_SetMainLexFiles", kKeyMainLexFiles, kMachineScope, list, true);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetUserLexPath(const char *folder) noexcept {
    return writeAndClose("ORTH_SetUserLexPath", kKeyUserLexPath, kUserScope, folder, true);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetUserLexFiles(const char *list) noexcept {
    return writeAndClose("ORTH_SetUserLexFiles", kKeyUserLexFiles, kUserScope, list, true);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetHelpFile(const char *path) noexcept {
    return writeAndClose("ORTH_SetHelpFile", kKeyHelpFile, kMachineScope, path, false);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetMainLexPath(char *buffer, uint16_t size) noexcept {
    return readInto("ORTH_GetMainLexPath", kKeyMainLexPath, kMachineScope, buffer, size);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetMainLexFiles(char *buffer, uint16_t size) noexcept {
    return readInto("ORTH_GetMainLexFiles", kKeyMainLexFiles, kMachineScope, buffer, size);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetUserLexPath(char *buffer, uint16_t size) noexcept {
    return readInto("ORTH_GetUserLexPath", kKeyUserLexPath, kUserScope, buffer, size);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetUserLexFiles(char *buffer, uint16_t size) noexcept {
    return readInto("ORTH_GetUserLexFiles", kKeyUserLexFiles, kUserScope, buffer, size);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetHelpFile(char *buffer, uint16_t size) noexcept {
    return readInto("ORTH_GetHelpFile", kKeyHelpFile, kMachineScope, buffer, size);
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_SetAlwaysSuggest(int16_t flag) noexcept {
    clientContext.alwaysSuggest = flag;
    putIntSetting(kKeyAlwaysSuggest, kUserScope, static_cast<uint32_t>(static_cast<int32_t>(flag)));
    return 0;
}

extern "C" ORTH_API int16_t ORTH_CALL ORTH_GetAlwaysSuggest(void) noexcept {
    clientContext.alwaysSuggest = static_cast<int32_t>(getIntSetting(kKeyAlwaysSuggest, kUserScope, 0));
    return static_cast<int16_t>(clientContext.alwaysSuggest & 0xFFFF);
}
