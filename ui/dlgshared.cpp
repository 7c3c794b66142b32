// ui/dlgshared.cpp — helpers shared by the dialog controllers.
#include "ui/dlgshared.h"

#include <cstring>

#include "check/chartab.h"
#include "host/client.h"
#include "host/settings.h"
#include "orth.h"
#include "ui/clientui.h"

void dlgText(uint32_t id, char *buffer, int size) {
    if (clientFrontEnd().loadString(id, buffer, size) <= 0 && size > 0) buffer[0] = '\0';
}

void dlgApplyFontRule(UiSurface *s) {
    if (getIntSetting(kKeyFontBold, kMachineScope, 0) == 0) Ui_SetNormalWeight(s);
}

int dlgMessage(UiSurface *s, int messageId, int captionId, const char *arg1, const char *arg2) {
    return showMessage(uiOwnerWindow(s), messageId, captionId, arg1, arg2);
}

int dlgQuestion(UiSurface *s, int messageId, int captionId) {
    int answer = showMessageButtons(uiOwnerWindow(s), messageId, captionId, "", "", kButtonsOkCancel);
    return answer == kMessageOk ? kIdOk : kIdCancel;
}

bool dlgInUserFolder(const char *path) {
    const char *bare = bareFileName(path);
    if (bare == path) return false;
    size_t n = static_cast<size_t>(bare - path - 1);
    if (n >= kPathBufSize) return false;
    char folder[kPathBufSize];
    std::memcpy(folder, path, n);
    folder[n] = '\0';
    return compareNoCase(folder, clientContext.userLexFolder, 0) == 0;
}

const char *dlgDisplayName(const char *path) { return dlgInUserFolder(path) ? bareFileName(path) : path; }

int dlgLexType(int16_t lexId) {
    uint16_t type = 0;
    if (lexId < 0 || ORTH_GetLexInfo(clientContext.sessionId, lexId, nullptr, nullptr, &type, nullptr) < 0)
        return -1;
    return type;
}

int16_t dlgTempLex(int16_t type) {
    for (const ClientLexSlot &slot : clientContext.slots) {
        if (slot.kind == CLIENT_LEX_TEMP && slot.lexId >= 0 && dlgLexType(slot.lexId) == type) return slot.lexId;
    }
    return -1;
}
