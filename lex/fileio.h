// lex/fileio.h — file access for the lexicon modules: open, create, read,
// write, seek and close by handle, the CR LF line reader and writer, and a
// file's modification time. Handles never stay open between operations,
// except the compressor's temporary file. Nothing here logs: callers log
// under their own names.
#pragma once

#include <cstdint>

// Modes: 0 and 3 open an existing file for reading; any other mode (the
// modules use 2 and 4) creates or empties the file for reading and writing.
constexpr int kFileRead = 0;
constexpr int kFileCreate = 2;

int32_t fileOpen(const char *path, int mode);          // handle, or -1
void fileClose(int32_t handle);
uint16_t fileRead(int32_t handle, void *buffer, uint16_t count);   // fewer: end of file or failure
uint16_t fileWrite(int32_t handle, const void *buffer, uint16_t count);  // fewer: failure
int32_t fileSeek(int32_t handle, int32_t offset, int origin);  // 0, or -1; origin 0 start, 1 current, 2 end
int32_t fileTell(int32_t handle);                      // current position, or -1

// Reads one CR LF line into buffer (size bytes, at least 2). Returns the
// line's length, or -1 at the end of the file. A line of up to size - 3
// characters comes back whole; a longer one in pieces of size - 1 bytes.
int32_t fileReadLine(int32_t handle, char *buffer, uint16_t size);

// Writes text and CR LF. Returns the text's length, or -1 on a short write.
int32_t fileWriteLine(int32_t handle, const char *text);

int32_t fileTime(const char *path);                    // modification time, 0 when unknown
