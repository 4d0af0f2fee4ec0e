// The log: one opening, appending and closing of "errors.txt" for each message, so that a crash loses nothing, and the
// same words on standard output. A file that can't be opened leaves standard output.
#include "core/log.h"

#include <poll.h>
#include <unistd.h>

#include <cinttypes>
#include <cstdarg>
#include <cstdio>
#include <mutex>

static const char *LogPath = "errors.txt";  // set by LogInit, before there is a second thread

static std::mutex logMutex;  // one round for each message, file and output together

static thread_local LogLimit *Limit = nullptr;

void LimitLog(LogLimit *limit) { Limit = limit; }

static void AppendToFile(const char *line) {
  FILE *file = std::fopen(LogPath, "a+");
  if (file == nullptr) return;
  std::fputs(line, file);
  std::fclose(file);
}

// A pipe that nobody empties, or a terminal that was stopped, must not stop the program.
void PrintLine(const char *line) {
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  if (poll(&output, 1, 0) == 0) return;
  std::fputs(line, stdout);
  std::fflush(stdout);
}

// Formats a message once and sends it both ways. A message over the buffer is cut and keeps its line end.
__attribute__((format(printf, 1, 2))) static void Emit(const char *format, ...) {
  char line[2048];
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(line, sizeof line, format, arguments);
  va_end(arguments);
  if (length < 0) return;
  if (static_cast<size_t>(length) >= sizeof line) line[sizeof line - 2] = '\n';
  LogRaw(line, line);
}

void LogInit(const char *path) {
  LogPath = path;
  const char *line = "info: Error System Initialized \n";
  const std::lock_guard<std::mutex> lock(logMutex);
  FILE *file = std::fopen(LogPath, "w+");
  if (file != nullptr) {
    std::fputs(line, file);
    std::fclose(file);
  }
  PrintLine(line);
}

int LogError(const char *text) {
  Emit("*ERR: %s \n", text);
  return 0;
}

int LogWarn(const char *text) {
  Emit("WARN: %s \n", text);
  return 0;
}

int LogInfo(const char *text) {
  Emit("info: %s \n", text);
  return 1;
}

void LogInt(const char *text, i64 value) { Emit("info: %s %" PRId64 " \n", text, value); }

void LogVector(const char *text, int x, int y, int z) { Emit("info: %s %ix %iy %iz\n", text, x, y, z); }

void LogFloat(const char *text, double value) { Emit("info: %s %f \n", text, value); }

void LogText(const char *text, const char *text2) { Emit("info: %s %s \n", text, text2); }

void LogLabelFloat(const char *text, double value) { Emit(":%s %f \n", text, value); }

void LogLabelInt(const char *text, i64 value) { Emit(":%s %" PRId64 " \n", text, value); }

void LogRaw(const char *fileLine, const char *printedLine) {
  if (Limit != nullptr && Limit->left-- <= 0) {
    Limit->left = 0;
    ++Limit->dropped;
    return;
  }
  const std::lock_guard<std::mutex> lock(logMutex);
  AppendToFile(fileLine);
  PrintLine(printedLine);
}
