// lex/fileio.cpp — file access for the lexicon modules, over platform/.
//
// (1) fileReadLine reads ahead by up to size - 1 bytes and seeks back over
//     what the line did not use, so the next read starts right after it.
#include "lex/fileio.h"

#include <cstring>

#include "platform/platform.h"

int32_t fileOpen(const char *path, int mode) {
    if (mode == 0 || mode == 3) return platOpenRead(path);
    return platCreate(path);
}

void fileClose(int32_t handle) { platClose(handle); }

uint16_t fileRead(int32_t handle, void *buffer, uint16_t count) {
    int32_t n = platRead(handle, buffer, count);
    return n < 0 ? 0 : static_cast<uint16_t>(n);
}

uint16_t fileWrite(int32_t handle, const void *buffer, uint16_t count) {
    int32_t n = platWrite(handle, buffer, count);
    return n < 0 ? 0 : static_cast<uint16_t>(n);
}

int32_t fileSeek(int32_t handle, int32_t offset, int origin) {
    return platSeek(handle, offset, origin) < 0 ? -1 : 0;
}

int32_t fileTell(int32_t handle) { return platSeek(handle, 0, 1); }

int32_t fileReadLine(int32_t handle, char *buffer, uint16_t size) {
    if (buffer == nullptr || size < 2) return -1;
    int32_t n = platRead(handle, buffer, static_cast<uint32_t>(size - 1));
    if (n <= 0) return -1;
    buffer[n] = '\0';
    buffer[size - 1] = '\0';
    int32_t lineLen = n;
    int32_t used = n;
    for (int32_t i = 0; i + 1 < n; ++i) {
        if (buffer[i] == '\r' && buffer[i + 1] == '\n') {
            buffer[i] = '\0';
            lineLen = i;
            used = i + 2;
            break;
        }
    }
    if (used < n && platSeek(handle, used - n, 1) < 0) return -1;
    return lineLen;
}

int32_t fileWriteLine(int32_t handle, const char *text) {
    size_t len = std::strlen(text);
    if (len > 0xFFFF) return -1;
    if (fileWrite(handle, text, static_cast<uint16_t>(len)) != len) return -1;
    if (fileWrite(handle, "\r\n", 2) != 2) return -1;
    return static_cast<int32_t>(len);
}

int32_t fileTime(const char *path) { return platFileTime(path); }
