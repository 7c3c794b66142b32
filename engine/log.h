// engine/log.h — the diagnostic log. Off until ORTH_SetDebugFile names a
// file; then every line is appended as "hh:mm:ss message" and the file is
// closed again, so other writers interleave line by line. Writing never fails
// visibly. A leaf module: every layer may log.
#pragma once

#include <cstdarg>

#if defined(__GNUC__)
#define ORTH_PRINTF(f, a) __attribute__((format(printf, f, a)))
#else
#define ORTH_PRINTF(f, a)
#endif

// Writes one time-stamped line (printf-style format) when logging is on.
void engineLog(const char *format, ...) ORTH_PRINTF(1, 2);

// Logs a corrupt-input finding: the same line as engineLog, and in debug
// builds the source position of the check that fired, so a fuzz report names it.
#ifndef NDEBUG
#define logCorrupt(...) logCorruptAt(__FILE__, __LINE__, __VA_ARGS__)
#else
#define logCorrupt(...) logCorruptAt(nullptr, 0, __VA_ARGS__)
#endif
void logCorruptAt(const char *file, int line, const char *format, ...) ORTH_PRINTF(3, 4);

// Appends one line in the same format to another log file (the client
// layer's own debug file); nothing when the name is empty.
void appendLogLine(const char *logFile, const char *format, va_list args);

// Whether a debug file is set (lets callers skip building costly messages).
bool engineLogOn();
