// The settings file: read whole, and read again before a line of it is replaced, so that what somebody wrote into it while
// the game ran stays.
#include "content/settings.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "core/log.h"
#include "platform/files.h"
#include "platform/threads.h"

namespace {

constexpr const char *SettingsPath = "config/text/settings";
constexpr size_t FileLimit = 64 << 10, LongestLine = 1024;  // bytes
constexpr size_t LongestShip = 251;                         // bytes of a ship's name: a file's without ".sts"
constexpr size_t LongestToldName = 64;
constexpr int MostFaults = 20;                              // told one by one

struct SettingRow {
  const char *name;
  const char *(*faultOf)(std::string_view value);           // null for a good value
};

// The two ends of a line in the file, without its line end.
struct Span {
  size_t begin = 0, end = 0;
};

struct SettingLine {
  std::string_view name, value;                             // both empty for a comment or an empty line
};

const char *FaultOfShip(std::string_view stem) {
  const auto control = [](char c) { return static_cast<u8>(c) < ' ' || c == 0x7f; };
  if (stem.size() > LongestShip) return "is longer than 251 bytes";
  if (stem.front() == '.' || stem.find('/') != std::string_view::npos || std::any_of(stem.begin(), stem.end(), control))
    return "is no name of a ship in saves/";
  return nullptr;
}

constexpr SettingRow Rows[] = {{"Ship", FaultOfShip}};

// Values as they hold, and as the file has them. Written by LoadSettings and StoreSetting; under SettingsMutex.
std::string Values[std::size(Rows)], Written[std::size(Rows)];
bool FailureTold = false;                                   // the last write failed, and that was logged; SettingsMutex
Mutex SettingsMutex{MutexRank::Leaf, "settings", {}};

constexpr std::string_view Blanks = " \t\r\v\f";

std::string_view Trimmed(std::string_view text) {
  const size_t begin = text.find_first_not_of(Blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(Blanks) - begin + 1);
}

bool HasBlankEnd(std::string_view text) {
  return !text.empty() && (Blanks.find(text.front()) != std::string_view::npos || Blanks.find(text.back()) != std::string_view::npos);
}

// A value that begins or ends with a blank stands between quotes. So does one that would be taken for that; all others don't, so
// that a name with quotes of its own stays what it is.
bool IsQuoted(std::string_view text) {
  if (text.size() < 3 || text.front() != '"' || text.back() != '"') return false;
  const std::string_view inner = text.substr(1, text.size() - 2);
  return HasBlankEnd(inner) || IsQuoted(inner);
}

std::string_view Unquoted(std::string_view text) { return IsQuoted(text) ? text.substr(1, text.size() - 2) : text; }

std::string Quoted(const std::string &value) { return HasBlankEnd(value) || IsQuoted(value) ? '"' + value + '"' : value; }

bool NextLine(std::string_view file, Span *line) {
  if (line->begin >= file.size()) return false;
  line->end = std::min(file.find('\n', line->begin), file.size());
  return true;
}

SettingLine SplitLine(std::string_view text) {
  text = Trimmed(text);
  if (text.empty() || text[0] == '#') return {};
  const size_t end = std::min(text.find_first_of(Blanks), text.size());
  return {text.substr(0, end), Unquoted(Trimmed(text.substr(end)))};
}

const SettingRow *RowNamed(std::string_view name) {
  const auto *found = std::find_if(std::begin(Rows), std::end(Rows), [name](const SettingRow &r) { return name == r.name; });
  return found == std::end(Rows) ? nullptr : found;
}

void TellFault(int *count, int line, const std::string &what) {
  if (++*count > MostFaults) return;
  LogWarn((std::string(SettingsPath) + ":" + std::to_string(line) + ": " + what).c_str());
}

// What is wrong with a line; empty when it is taken, or says nothing.
std::string TakeLine(std::string_view text) {
  if (text.size() > LongestLine) return "the line is longer than 1024 bytes";
  const SettingLine line = SplitLine(text);
  if (line.name.empty()) return "";
  const std::string name(line.name.substr(0, LongestToldName));
  const SettingRow *row = RowNamed(line.name);
  if (row == nullptr) return "the game has no setting " + name + "; the line is kept";
  if (line.value.empty()) return name + " has no value";
  if (const char *fault = row->faultOf(line.value)) return "the value of " + name + " " + fault;
  std::string &value = Values[row - Rows];
  if (!value.empty()) return name + " is given once more; the first line counts";
  value = line.value;
  return "";
}

// A missing file is an empty one. False, with nothing to build on, when it is there and can't be read whole.
bool ReadSettings(std::string *file) {
  std::vector<u8> bytes;
  file->clear();
  if (!ReadWholeFile(SettingsPath, FileLimit, &bytes)) return access(SettingsPath, F_OK) != 0;
  file->assign(bytes.begin(), bytes.end());
  return true;
}

// The first line of this name becomes the new one; without one it is added.
void PutLine(std::string *file, std::string_view name, const std::string &line) {
  for (Span at; NextLine(*file, &at); at.begin = at.end + 1) {
    if (SplitLine(std::string_view(*file).substr(at.begin, at.end - at.begin)).name != name) continue;
    file->replace(at.begin, at.end - at.begin, line);
    return;
  }
  if (!file->empty() && file->back() != '\n') *file += '\n';
  *file += line + '\n';
}

bool WriteValue(const SettingRow &row, const std::string &value) {
  std::string file;
  if (!ReadSettings(&file)) return false;
  PutLine(&file, row.name, std::string(row.name) + " " + Quoted(value));
  return file.size() <= FileLimit && ReplaceFile(FileBehind(SettingsPath).c_str(), file.data(), file.size());
}

// A folder that can't be written to is no news with every save.
bool TellFailure(bool failed) {
  if (failed && !FailureTold)
    LogWarn((std::string(SettingsPath) + " can't be written, or is no settings file. What the game should remember is lost when it ends.").c_str());
  FailureTold = failed;
  return !failed;
}

}  // namespace

void LoadSettings() {
  const ScopedLock lock(&SettingsMutex);
  for (std::string &value : Values) value.clear();
  FailureTold = false;
  std::string file;
  if (!ReadSettings(&file))
    LogWarn((std::string(SettingsPath) + " can't be read, or is over 64 KiB. It is left as it is.").c_str());
  int faults = 0;
  int number = 0;
  for (Span at; NextLine(file, &at); at.begin = at.end + 1) {
    const std::string fault = TakeLine(std::string_view(file).substr(at.begin, at.end - at.begin));
    ++number;
    if (!fault.empty()) TellFault(&faults, number, fault);
  }
  if (faults > MostFaults) LogInt("More faults in config/text/settings:", faults - MostFaults);
  std::copy(std::begin(Values), std::end(Values), std::begin(Written));
}

std::string SettingText(Setting which) {
  const ScopedLock lock(&SettingsMutex);
  return Values[static_cast<size_t>(which)];
}

bool StoreSetting(Setting which, std::string_view text) {
  const SettingRow &row = Rows[static_cast<size_t>(which)];
  const std::string value(text);
  const char *fault = text.empty() ? "is empty" : row.faultOf(text);
  if (fault != nullptr) return LogWarn((std::string("The setting ") + row.name + " " + fault + ". It stays as it was.").c_str()) != 0;
  const ScopedLock lock(&SettingsMutex);
  std::string &written = Written[static_cast<size_t>(which)];
  Values[static_cast<size_t>(which)] = value;
  if (written == value || !SavingOn) return true;
  if (!TellFailure(!WriteValue(row, value))) return false;
  written = value;
  return true;
}
