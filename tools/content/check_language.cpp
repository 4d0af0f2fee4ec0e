// Looks for faults in the language files.
#include "check_parts.h"
#include "output.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <sstream>

namespace {

constexpr size_t NeededTexts = 89;
constexpr size_t MostTexts = 128;
constexpr size_t LongestText = 191;
constexpr size_t LongestStep = 511;
constexpr size_t LongestName = 20;  // what a line of the block list has room for

const char *const waitWords[] = {"#Space", "#Esc", "#Q", "#LMB-BlockPlace", "#EscorQ", "#1",         "#2",
                                 "#3",     "#4",   "#5", "#2or5",           "#WASD",   "#LMB-Laser", "#E"};

struct Lines {
  std::string path;
  std::vector<std::string> text;
  size_t next = 0;  // place of the next line; also the number of the last one taken
};

}  // namespace

static bool Take(Lines *lines, std::string *text) {
  if (lines->next >= lines->text.size()) return false;
  *text = lines->text[lines->next++];
  return true;
}

static int LineNow(const Lines &lines) {
  return static_cast<int>(lines.next);
}

static void CheckTexts(Lines *lines) {
  size_t rows = 0;
  for (std::string text; Take(lines, &text) && text != "0 #MatStart"; rows++) {
    if (text.size() > LongestText) Fault(lines->path, LineNow(*lines), "the text is longer than 191 letters");
  }
  if (rows < NeededTexts) Fault(lines->path, LineNow(*lines), "fewer than 89 texts before \"0 #MatStart\"");
  if (rows > MostTexts) Fault(lines->path, LineNow(*lines), "more than 128 texts before \"0 #MatStart\"");
}

// The names of one table, up to the pair of 0 and `mark`. One pair stands on a line.
static void CheckNames(Lines *lines, const std::string &mark, const TableIds &ids) {
  std::set<int> missing = ids.bases;
  std::set<std::string> taken;
  for (std::string text; Take(lines, &text);) {
    std::istringstream words(text);
    std::string number, name, rest;
    words >> number >> name >> rest;
    int id = 0;
    if (number.empty()) continue;
    if (name.empty() || !rest.empty() || !ToNumber(number, &id)) {
      Fault(lines->path, LineNow(*lines), "isn't an id and one word");
    } else if (id == 0 && name == mark) {
      for (const int left : missing) Fault(lines->path, LineNow(*lines), "no name for id " + std::to_string(left));
      return;
    } else if (id != 0 && std::count(ids.all.begin(), ids.all.end(), id) == 0) {
      Fault(lines->path, LineNow(*lines), "the table has no id " + number);
    } else if (id != 0) {
      missing.erase(id);
      if (name.size() > LongestName) Fault(lines->path, LineNow(*lines), "the name has more than 20 letters");
      if (!taken.insert(name).second) Fault(lines->path, LineNow(*lines), "a line before gives this name");
    }
  }
  Fault(lines->path, LineNow(*lines), "ends before \"0 " + mark + "\"");
}

// The line that ends a step; false at the end of the script.
static bool CheckControl(Lines *lines, const TableIds &components) {
  std::string text, number, word;
  if (!Take(lines, &text)) {
    Fault(lines->path, LineNow(*lines), "the tutorial ends inside a step");
    return false;
  }
  std::istringstream words(text);
  words >> number >> word;
  int value = 0;
  if (word.empty() || !ToNumber(number, &value)) {
    Fault(lines->path, LineNow(*lines), "isn't a number and a word that end a step");
    return false;
  }
  if (value == 0) return false;
  if (value > 1) {
    const bool known = std::count(components.all.begin(), components.all.end(), value) > 0;
    if (word != "#SetComponent" || !known) Fault(lines->path, LineNow(*lines), "doesn't set a component of the table");
    return CheckControl(lines, components);
  }
  if (std::count(std::begin(waitWords), std::end(waitWords), word) == 0) {
    Fault(lines->path, LineNow(*lines), "the tutorial can't wait for " + word);
  }
  return true;
}

static void CheckTutorial(Lines *lines, const TableIds &components) {
  std::string text;
  while (Take(lines, &text) && text != "0 #DemoTutorialStart") {
  }
  if (text != "0 #DemoTutorialStart") return Fault(lines->path, LineNow(*lines), "has no tutorial");
  do {
    if (!Take(lines, &text)) return Fault(lines->path, LineNow(*lines), "the tutorial has no end");
    if (text.size() > LongestStep) Fault(lines->path, LineNow(*lines), "the step is longer than 511 letters");
  } while (CheckControl(lines, components));
}

static void CheckLanguage(const std::string &path, const TableIds &materials, const TableIds &components) {
  Lines lines{path, {}, 0};
  std::string bytes;
  if (!ReadWhole(path, &bytes)) return Fault(path, 0, "can't be read");
  std::istringstream stream(bytes);
  for (std::string text; std::getline(stream, text);) lines.text.push_back(text);
  CheckTexts(&lines);
  CheckNames(&lines, "#ComStart", materials);
  CheckNames(&lines, "#CatStart", components);
  CheckTutorial(&lines, components);
}

void CheckLanguages(const TableIds &materials, const TableIds &components) {
  const std::string folder = "config/language";
  std::set<std::string> paths{folder + "/english"};
  std::error_code error;
  for (const auto &entry : std::filesystem::directory_iterator(folder, error)) {
    if (entry.path().filename().string()[0] != '.') paths.insert(entry.path().string());
  }
  for (const std::string &path : paths) CheckLanguage(path, materials, components);
}
