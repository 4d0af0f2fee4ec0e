// The log: every message goes to "errors.txt" in the working directory and to standard output, in the same words.
// Each call opens the file, appends and closes it, so that nothing waits in a buffer; one lock round each message
// keeps the lines of two threads apart. Any thread may call.
#pragma once

#include "core/types.h"

void LogInit(const char *path = "errors.txt");               // Truncates the file and writes the first line.
int LogError(const char *text);                              // "*ERR: text"; always 0, so that a caller can return it.
int LogWarn(const char *text);                               // "WARN: text"; always 0.
int LogInfo(const char *text);                               // "info: text"; always 1.
void LogInt(const char *text, i64 value);                    // "info: text value"
void LogVector(const char *text, int x, int y, int z);       // "info: text 1x 2y 3z"
void LogFloat(const char *text, double value);               // "info: text value"
void LogText(const char *text, const char *text2);           // "info: text text2"
void LogLabelFloat(const char *text, double value);          // ":text value"
void LogLabelInt(const char *text, i64 value);               // ":text value"
void PrintLine(const char *line);                            // Only to standard output; left out while nobody takes it there.
void LogRaw(const char *fileLine, const char *printedLine);  // The two lines as they are; for the GL error check.

// Lines that this thread may log; those beyond are left out and counted. Set while it does what a stranger says.
struct LogLimit {
  int left = 0;
  u32 dropped = 0;
};
void LimitLog(LogLimit *limit);                              // For this thread, until the next call; null: no limit.

// Logs the operating system and the memory; returns the number of processors (TARNVALE_CORES replaces it when set).
i8 LogSystemInfo();
