// The log: one opening, appending and closing of "errors.txt" for each message, so that a crash loses nothing, and the
// same words on standard output. A file that can't be opened leaves standard output.
#include "core/log.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cinttypes>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <mutex>

#include "core/repeats.h"
#include "core/utils.h"

namespace {

constexpr off_t LargestLog = 64 << 20;
constexpr const char *OldEnding = ".old";

const char *LogPath = "errors.txt";  // set by LogInit, before there is a second thread; so is the next one
int OldOnes = 1;

std::mutex logMutex;  // one round for each message: its count, file and output together
LineRepeats Repeats;  // logMutex

thread_local LogLimit *Limit = nullptr;

double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

void NameOfAge(const char *path, int age, char (&name)[LineRoom]) {
  if (age < 2) std::snprintf(name, sizeof name, "%s%s", path, age == 0 ? "" : OldEnding);
  else std::snprintf(name, sizeof name, "%s%s%i", path, OldEnding, age);
}

// Where the old one can't be moved away, it goes.
std::FILE *BeginAgain(std::FILE *full) {
  std::fclose(full);
  MoveLogOn(LogPath, OldOnes);
  return std::fopen(LogPath, "w+");
}

void AppendToFile(const char *line) {
  std::FILE *file = std::fopen(LogPath, "a+");
  struct stat info{};
  const bool full = file != nullptr && fstat(fileno(file), &info) == 0 &&
                    info.st_size > LargestLog - static_cast<off_t>(std::strlen(line));
  if (full) file = BeginAgain(file);
  if (file == nullptr) return;
  std::fputs(line, file);
  std::fclose(file);
}

// A second way to the pipe or terminal behind standard output, on which nobody waits: the first one is shared with others, a
// shell for one, who count on waiting. -1 with errno ENXIO: nobody reads any more. A file needs none.
int OpenOutput() {
  struct stat info{};
  errno = 0;
  if (fstat(STDOUT_FILENO, &info) != 0 || !(S_ISFIFO(info.st_mode) || S_ISCHR(info.st_mode))) return -1;
  return open("/proc/self/fd/1", O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

bool TakesOutput() {
  pollfd output{STDOUT_FILENO, POLLOUT, 0};
  return poll(&output, 1, 0) > 0 && output.revents == POLLOUT;
}

// A pipe that nobody empties, or a terminal that was stopped, must not stop the program.
void WriteOut(const char *text) {
  const int own = OpenOutput();
  if (own < 0 && (errno == ENXIO || !TakesOutput())) return;
  const ssize_t ignored = write(own < 0 ? STDOUT_FILENO : own, text, std::strlen(text));
  static_cast<void>(ignored);
  if (own >= 0) close(own);
}

// logMutex held.
void SayBoth(const char *line) {
  AppendToFile(line);
  WriteOut(line);
}

// Formats one message that keeps the end which its form gives it, whatever its texts hold. False when there is none.
bool Format(char (&line)[LineRoom], bool lineEnds, const char *format, va_list arguments) {
  const int length = std::vsnprintf(line, sizeof line, format, arguments);
  if (length < 0) return false;
  size_t end = static_cast<size_t>(length);
  const bool cut = end >= sizeof line;
  if (cut) end = CutAtLetter(line, sizeof line - 2);
  const bool ends = cut || (end > 0 && line[end - 1] == '\n');
  line[ends && !cut ? end - 1 : end] = '\0';
  ReplaceControls(line, lineEnds);
  if (ends) AppendChar(line, '\n');
  return true;
}

__attribute__((format(printf, 1, 2))) void Emit(const char *format, ...) {
  char line[LineRoom];
  va_list arguments;
  va_start(arguments, format);
  const bool good = Format(line, false, format, arguments);
  va_end(arguments);
  if (good) LogRaw(line, line);
}

__attribute__((format(printf, 1, 2))) void EmitLines(const char *format, ...) {
  char lines[LineRoom];
  va_list arguments;
  va_start(arguments, format);
  const bool good = Format(lines, true, format, arguments);
  va_end(arguments);
  if (good) LogRaw(lines, lines);
}

}  // namespace

void GuardStreams() {
  std::signal(SIGPIPE, SIG_IGN);
  for (int fd = STDIN_FILENO; fd <= STDERR_FILENO; ++fd)
    if (fcntl(fd, F_GETFD) < 0) open("/dev/null", O_RDWR);  // takes the lowest free number, this one
}

void MoveLogOn(const char *path, int oldOnes) {
  char from[LineRoom], to[LineRoom];
  for (int age = oldOnes; age > 0; --age) {
    NameOfAge(path, age - 1, from);
    NameOfAge(path, age, to);
    std::rename(from, to);
  }
}

void LimitLog(LogLimit *limit) { Limit = limit; }

void Print(const char *format, ...) {
  char line[LineRoom];
  va_list arguments;
  va_start(arguments, format);
  const bool good = Format(line, false, format, arguments);
  va_end(arguments);
  if (good) WriteOut(line);
}

void PrintLine(const char *line) {
  char text[LineRoom];
  std::snprintf(text, sizeof text, "%.*s", static_cast<int>(CutAtLetter(line, sizeof text - 1)), line);
  ReplaceControls(text, true);
  WriteOut(text);
}

void LogInit(const char *path, int oldOnes) {
  LogPath = path;
  OldOnes = oldOnes;
  const char *line = "info: Error System Initialized \n";
  const std::lock_guard<std::mutex> lock(logMutex);
  ForgetLines(&Repeats, nullptr);
  std::FILE *file = std::fopen(LogPath, "w+");
  if (file != nullptr) {
    std::fputs(line, file);
    std::fclose(file);
  }
  WriteOut(line);
}

int LogError(const char *text) {
  Emit("*ERR: %s \n", text);
  return 0;
}

int LogErrorLines(const char *text) {
  EmitLines("*ERR: %s \n", text);
  return 0;
}

int LogErrorAt(int x, int y, int z, const char *text) {
  char line[LineRoom], printed[LineRoom];
  std::snprintf(line, sizeof line, "*ERR: %s \n", text);
  std::snprintf(printed, sizeof printed, "%i %i %i :%.1900s", x, y, z, line);
  LogRaw(line, printed);
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

void LogLabelText(const char *text, const char *text2) { Emit(":%s %s \n", text, text2); }

void LogRaw(const char *fileLine, const char *printedLine) {
  if (Limit != nullptr && Limit->left-- <= 0) {
    Limit->left = 0;
    ++Limit->dropped;
    return;
  }
  const std::lock_guard<std::mutex> lock(logMutex);
  if (!TakeLine(&Repeats, fileLine, Now(), SayBoth)) return;
  AppendToFile(fileLine);
  WriteOut(printedLine);
}

void TellRepeats(bool all) {
  std::unique_lock<std::mutex> lock(logMutex, std::defer_lock);
  if (all) lock.lock();
  else if (!lock.try_lock()) return;  // who logs now does it
  if (all) ForgetLines(&Repeats, SayBoth);
  else TellCounts(&Repeats, Now(), SayBoth);
}
