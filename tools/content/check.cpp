// Looks for faults in an installation's content: the whole of it, and what the single checkers share.
#include "check.h"

#include "check_parts.h"
#include "core/utils.h"
#include "output.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <sstream>

constexpr size_t LongestLine = 4095;

static int faults = 0, warnings = 0;

// Content may be another's work: no control character of it reaches a terminal.
void Fault(const std::string &path, int line, const std::string &what) {
  std::string text = path + ":" + std::to_string(line) + ": " + what;
  ReplaceControls(text.data());
  std::printf("%s\n", text.c_str());
  faults++;
}

int FaultCount() {
  return faults;
}

void Warning(const std::string &path, int line, const std::string &what) {
  std::printf("%s:%d: warning: %s\n", path.c_str(), line, what.c_str());
  warnings++;
}

bool ReadRows(const std::string &path, TextFile *file) {
  file->path = path;
  std::string bytes;
  if (!ReadWhole(path, &bytes)) {
    Fault(path, 0, "can't be read");
    return false;
  }
  std::istringstream lines(bytes);
  std::string text;
  for (int line = 1; std::getline(lines, text); line++) {
    if (text.size() > LongestLine) Fault(path, line, "the line is longer than 4095 characters");
    if (!text.empty() && text[0] == '#') continue;
    Row row{line, {}};
    std::istringstream words(text);
    for (std::string word; words >> word;) row.fields.push_back(word);
    file->rows.push_back(row);
  }
  return true;
}

bool ToNumber(const std::string &text, int *value) {
  const char *end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, *value);
  if (result.ec != std::errc() || result.ptr != end) return false;
  *value = std::clamp(*value, -1000000, 1000000);
  return true;
}

int Number(const Row &row, size_t field) {
  int value = 0;
  ToNumber(row.fields[field - 1], &value);
  return value;
}

int RowOfId(const TableIds &ids, int id) {
  const auto found = std::find(ids.all.begin(), ids.all.end(), id);
  return found == ids.all.end() ? 0 : static_cast<int>(found - ids.all.begin()) + 1;
}

int NumberField(const TextFile &file, const Row &row, size_t field, int low, int high) {
  int value = 0;
  if (ToNumber(row.fields[field - 1], &value) && value >= low && value <= high) return value;
  Fault(file.path, row.line, "column " + std::to_string(field) + ": \"" + row.fields[field - 1] +
                                 "\" isn't a number from " + std::to_string(low) + " to " + std::to_string(high));
  return low;
}

void CheckWord(const TextFile &file, const Row &row, size_t field, size_t limit) {
  if (row.fields[field - 1].size() < limit) return;
  Fault(file.path, row.line,
        "column " + std::to_string(field) + ": a word has " + std::to_string(limit) + " letters or more");
}

void CheckTags(const TextFile &file, const Row &row, size_t field, size_t most) {
  std::istringstream words(row.fields[field - 1] + "|");
  size_t count = 0;
  for (std::string word; std::getline(words, word, '|'); count++) {
    if (word.empty() || word.size() > 31) {
      Fault(file.path, row.line, "column " + std::to_string(field) + ": category words have 1 to 31 letters");
    }
  }
  if (count > most) Fault(file.path, row.line, "column " + std::to_string(field) + ": too many category words");
}

// A shader as the game hands it on: from an @ to the end of its line, the line end included, is left out.
static void CheckShader(const std::string &path, const std::vector<std::string> &names) {
  std::string bytes;
  if (!ReadWhole(path, &bytes)) return Fault(path, 0, "can't be read");
  std::string text;
  bool dropped = false;
  for (const char letter : bytes) {
    if (letter == '@') dropped = true;
    if (!dropped) text.push_back(letter);
    if (letter == '\n') dropped = false;
  }
  if (text.compare(0, 9, "#version ") != 0) Fault(path, 1, "doesn't begin with its version");
  for (const std::string &name : names) {
    if (text.find(name) == std::string::npos) Fault(path, 0, "has no " + name);
  }
}

int CheckContent() {
  const TableIds materials = CheckMaterials();
  const TableIds components = CheckComponents();
  CheckLanguages(materials, components);
  CheckPictures();
  CheckFonts();
  CheckSounds();
  CheckShader("config/shaders/MainVertShader.txt",
              {"CubeVertices", "LocTexture", "ColTexture", "ProjectionModel", "CamLoc", "gl_InstanceID"});
  CheckShader("config/shaders/MainFragShader.txt", {});
  CheckShader("config/shaders/2DVertShader.txt", {"SquareVertices", "Projection2DModel"});
  CheckShader("config/shaders/2DFragShader.txt", {"sampler2D"});
  std::printf(faults == 1 ? "%d fault" : "%d faults", faults);
  if (warnings != 0) std::printf(warnings == 1 ? ", %d warning" : ", %d warnings", warnings);
  std::printf("\n");
  return faults;
}
