// engine/log.cpp — the diagnostic log writer.
//
// (1) The debug file name is the only state: empty means off.
// (2) Each line opens the file for appending, writes, and closes it again
//     (engineLog), so the file can be removed or read while the engine runs.
#include "engine/log.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "engine/limits.h"
#include "orth.h"
#include "platform/platform.h"

namespace {

char debugFileName[kPathBufSize];  // empty: logging is off

void writeLine(const char *logFile, const char *file, int line, const char *format, va_list args) {
    if (logFile[0] == '\0') return;
    FILE *f = std::fopen(logFile, "a");
    if (f == nullptr) return;
    PlatTime t;
    platLocalTime(&t);
    std::fprintf(f, "%02d:%02d:%02d ", t.hour, t.minute, t.second);
    std::vfprintf(f, format, args);
    if (file != nullptr) std::fprintf(f, " [%s:%d]", file, line);
    std::fputc('\n', f);
    std::fclose(f);
}

// "Debugging started/stopped at <date>\n": the date text carries its own
// line break, so an empty line follows in the file.
void logDateLine(const char *what) {
    PlatTime t;
    platLocalTime(&t);
    char date[25];
    platDateText(t, date);
    engineLog("Debugging %s at %s\n", what, date);
}

}  // namespace

void engineLog(const char *format, ...) {
    va_list args;
    va_start(args, format);
    writeLine(debugFileName, nullptr, 0, format, args);
    va_end(args);
}

void logCorruptAt(const char *file, int line, const char *format, ...) {
    va_list args;
    va_start(args, format);
    writeLine(debugFileName, file, line, format, args);
    va_end(args);
}

void appendLogLine(const char *logFile, const char *format, va_list args) {
    if (logFile != nullptr) writeLine(logFile, nullptr, 0, format, args);
}

bool engineLogOn() { return debugFileName[0] != '\0'; }

extern "C" ORTH_API void ORTH_CALL ORTH_SetDebugFile(const char *fileName) noexcept {
    if (fileName == nullptr) {
        if (engineLogOn()) logDateLine("stopped");
        debugFileName[0] = '\0';
        return;
    }
    std::strncpy(debugFileName, fileName, kMaxPathLen);
    debugFileName[kMaxPathLen] = '\0';
    if (engineLogOn()) logDateLine("started");
}
