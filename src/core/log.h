// The log: every message goes to "errors.txt" in the working directory and to standard output, in the same words.
// Each call opens the file, appends and closes it, so that nothing waits in a buffer; one lock round each message
// keeps the lines of two threads apart. Any thread may call.
//
// A text that comes more than 20 times in a second is counted instead, and told once a second with its count. The file never
// passes 64 MiB: it then becomes "errors.txt.old", and a new one begins. Texts may hold what others wrote, so control characters
// in them, line ends too, and what is no UTF-8 become "?": one call makes one line. No call ever waits for who reads standard
// output; what isn't taken there at once is left out.
#pragma once

#include "core/types.h"

// Once, first of all in a program that nobody who stops reading may end: a broken pipe is no more than a failed write from here
// on, and a standard stream that was closed becomes /dev/null, so that no other file is taken for it.
void GuardStreams();

// Truncates the file and writes the first line. oldOnes: how many of those that passed 64 MiB are kept.
void LogInit(const char *path = "errors.txt", int oldOnes = 1);
void MoveLogOn(const char *path, int oldOnes);               // Makes it "errors.txt.old", that one ".old2", and so on; the last one goes.
int LogError(const char *text);                              // "*ERR: text"; always 0, so that a caller can return it.
int LogErrorLines(const char *text);                         // The same for words of the graphics driver, whose line ends stay.
int LogErrorAt(int x, int y, int z, const char *text);       // The same; on standard output "x y z :" stands in front.
int LogWarn(const char *text);                               // "WARN: text"; always 0.
int LogInfo(const char *text);                               // "info: text"; always 1.
void LogInt(const char *text, i64 value);                    // "info: text value"
void LogVector(const char *text, int x, int y, int z);       // "info: text 1x 2y 3z"
void LogFloat(const char *text, double value);               // "info: text value"
void LogText(const char *text, const char *text2);           // "info: text text2"
void LogLabelFloat(const char *text, double value);          // ":text value"
void LogLabelInt(const char *text, i64 value);               // ":text value"
void LogLabelText(const char *text, const char *text2);      // ":text text2"
void LogRaw(const char *fileLine, const char *printedLine);  // The two lines as they are; for the GL error check.

// Only to standard output, at most 2 KiB. Print takes texts from outside; PrintLine keeps all line ends of its text.
void Print(const char *format, ...) __attribute__((format(printf, 1, 2)));
void PrintLine(const char *line);

// Tells the counts that are a second old; cheap when there are none. Every message does it too, so this is for the loops that
// may have nothing to say. With all it tells every count, and each line is a new one from here on: at the end of a program.
void TellRepeats(bool all = false);

// Lines that this thread may log; those beyond are left out and counted. Set while it does what a stranger says.
struct LogLimit {
  int left = 0;
  u32 dropped = 0;
};
void LimitLog(LogLimit *limit);                              // For this thread, until the next call; null: no limit.

// Logs the operating system and the memory; returns the number of processors (TARNVALE_CORES replaces it when set).
i8 LogSystemInfo();
