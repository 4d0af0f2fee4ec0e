// The log goes to standard output. A temporary file takes that place, and a copy of the real one is kept for the results.
#include "messages.h"

#include "core/log.h"
#include "core/utils.h"

#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

static std::FILE *results = nullptr;  // the real standard output; main thread
static std::FILE *taken = nullptr;    // what stands in for it

// Warnings of the text form that say only that it is old, or slow to load.
static constexpr const char *harmless[] = {"Lighting file problem.", "Cache file problem.", "Older ship.", "Old school file!",
                                           "Found old format section"};
static constexpr const char *noEndMark = "info: File may be loaded successfully.";

std::string Shown(std::string text) {
  ReplaceControls(text.data());
  text.resize(std::strlen(text.c_str()));
  return text;
}

bool SetUpMessages() {
  const int real = dup(STDOUT_FILENO);
  results = real < 0 ? nullptr : fdopen(real, "w");
  taken = std::tmpfile();
  return results != nullptr && taken != nullptr && dup2(fileno(taken), STDOUT_FILENO) >= 0;
}

void PrintResult(const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::vfprintf(results, format, arguments);
  va_end(arguments);
  std::fflush(results);
}

static bool BeginsWith(const char *text, const char *front) { return std::strncmp(text, front, std::strlen(front)) == 0; }

// The message of a line of the log, or an empty one for a line that only tells how things go.
static Message MessageOf(const char *line) {
  if (BeginsWith(line, noEndMark)) return {"The file ends without its end mark.", true};
  const bool error = BeginsWith(line, "*ERR: ");
  if (!error && !BeginsWith(line, "WARN: ")) return {};
  Message m{line + 6, true};
  while (!m.text.empty() && (m.text.back() == ' ' || m.text.back() == '\n')) m.text.pop_back();
  for (const char *front : harmless)
    if (!error && BeginsWith(m.text.c_str(), front)) m.fault = false;
  return m;
}

std::vector<Message> TakeMessages() {
  std::vector<Message> messages;
  TellRepeats(true);  // what many ships are told is news for the next one all the same
  std::rewind(taken);
  char line[4096];
  while (std::fgets(line, sizeof line, taken) != nullptr) {
    Message m = MessageOf(line);
    if (!m.text.empty()) messages.push_back(std::move(m));
  }
  std::rewind(taken);
  if (ftruncate(fileno(taken), 0) != 0) std::fputs("The messages of one ship may be told of the next, too.\n", stderr);
  return messages;
}
