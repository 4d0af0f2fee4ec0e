// Looks for faults in the language files.
#include "check_parts.h"
#include "output.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <sstream>

namespace {

constexpr size_t NeededTexts = 112;
constexpr size_t MostTexts = 127;
constexpr size_t LongestText = 191;
constexpr size_t LongestStep = 511;
constexpr size_t LongestName = 15;  // what a cell of the block list has room for
constexpr int WindowLines = 8;      // of the tutorial's window
constexpr size_t WindowWidth = 26;  // letters of such a line, with the blank it begins with; words stay below it

const char *const waitWords[] = {"#Space", "#Esc", "#Q", "#LMB-BlockPlace", "#EscorQ", "#1",         "#2",
                                 "#3",     "#4",   "#5", "#2or5",           "#WASD",   "#LMB-Laser", "#E"};

const char *const marks[] = {"#MatStart", "#ComStart", "#CatStart", "#DemoTutorialStart"};

// Places with little room: a row of the texts, a second one that stands behind it or 0, and the letters that fit.
constexpr struct {
  size_t row, second, room;
} narrow[] = {{12, 0, 17}, {14, 0, 17}, {15, 0, 17}, {20, 0, 17}, {35, 0, 17}, {65, 0, 17}, {78, 0, 17}, {79, 0, 17},
              {85, 0, 17}, {87, 0, 17}, {40, 0, 18}, {47, 0, 18}, {69, 0, 18}, {70, 0, 18}, {82, 0, 18}, {61, 0, 14},
              {62, 0, 14}, {63, 0, 14}, {90, 0, 66}, {91, 0, 66}, {92, 0, 66}, {93, 0, 40}, {94, 0, 40}, {26, 0, 18}, {80, 0, 18}, {49, 0, 17}, {27, 0, 22}, {89, 0, 22}, {71, 72, 20},
              {95, 0, 60}, {96, 0, 60}, {97, 0, 17}, {98, 0, 60}, {99, 0, 60}, {100, 0, 60}, {101, 0, 60}, {102, 0, 60}, {103, 0, 60}, {104, 0, 60}, {105, 0, 60}, {106, 0, 60},
              {107, 0, 60}, {108, 0, 66}, {109, 0, 66}, {110, 0, 66}, {111, 0, 66}, {112, 0, 66}};

namespace {

struct Lines {
  std::string path;
  std::vector<std::string> text;
  size_t next = 0;  // place of the next line; also the number of the last one taken
};

}  // namespace

}  // namespace

static bool Take(Lines *lines, std::string *text) {
  if (lines->next >= lines->text.size()) return false;
  *text = lines->text[lines->next++];
  return true;
}

// What another language lacks is English in the game.
static bool IsEnglish(const Lines &lines) {
  return lines.path == "config/language/english";
}

static int LineNow(const Lines &lines) {
  return static_cast<int>(lines.next);
}

// Letters are bytes: plain ones, and the accented ones of Latin-1. Its signs aren't counted, and cut a text at its end.
static void CheckLetters(const Lines &lines) {
  for (size_t i = 0; i < lines.text.size(); i++) {
    const auto strange = [](unsigned char c) { return c < 0x20 || (c >= 0x7F && c < 0xC0); };
    if (std::any_of(lines.text[i].begin(), lines.text[i].end(), strange)) {
      Fault(lines.path, static_cast<int>(i) + 1, "has a byte that is no letter: 0 to 1F, or 7F to BF");
    }
  }
}

static void CheckRoom(const Lines &lines, size_t rows) {
  for (const auto &place : narrow) {
    if (place.row > rows || place.second > rows) continue;
    const size_t letters =
        lines.text[place.row - 1].size() + (place.second == 0 ? 0 : lines.text[place.second - 1].size());
    if (letters <= place.room) continue;
    const std::string with = place.second == 0 ? "" : " with text " + std::to_string(place.second);
    Fault(lines.path, static_cast<int>(place.row), "the text" + with + " has more than " + std::to_string(place.room) +
                                                       " letters, and no room on its screen");
  }
}

static bool CheckTexts(Lines *lines) {
  size_t rows = 0;
  std::string text;
  for (; Take(lines, &text) && text != "0 #MatStart"; rows++) {
    if (text.size() > LongestText) Fault(lines->path, LineNow(*lines), "the text is longer than 191 letters");
  }
  CheckRoom(*lines, rows);
  if (text != "0 #MatStart") {
    Fault(lines->path, LineNow(*lines), "ends before \"0 #MatStart\"");
    return false;
  }
  if (rows < NeededTexts && IsEnglish(*lines)) {
    Fault(lines->path, LineNow(*lines), "fewer than 112 texts before \"0 #MatStart\"");
  } else if (rows < NeededTexts) {
    Warning(lines->path, LineNow(*lines), "fewer than 112 texts before \"0 #MatStart\"; the others are English in the game");
  }
  if (rows > MostTexts) Fault(lines->path, LineNow(*lines), "more than 127 texts before \"0 #MatStart\"");
  return true;
}

namespace {

struct Pair {
  int number = 0;
  std::string word;
};

}  // namespace

// False when the line isn't a number and one word.
static bool ToPair(const std::string &text, Pair *pair) {
  std::istringstream words(text);
  std::string number, rest;
  words >> number >> pair->word;
  return !pair->word.empty() && !(words >> rest) && ToNumber(number, &pair->number);
}

static bool IsMark(const Pair &pair) {
  return pair.number == 0 && std::find(std::begin(marks), std::end(marks), pair.word) != std::end(marks);
}

static bool HasId(const TableIds &ids, int id) {
  return RowOfId(ids, id) != 0;
}

static void TellNameless(const Lines &lines, int id) {
  const std::string what = "no name for id " + std::to_string(id);
  if (IsEnglish(lines)) Fault(lines.path, LineNow(lines), what);
  else Warning(lines.path, LineNow(lines), what + "; in the game it has its English one");
}

// The names of one table, up to the pair of 0 and `mark`. One pair stands on a line. False when the mark is missing.
static bool CheckNames(Lines *lines, const std::string &mark, const TableIds &ids) {
  std::set<int> missing = ids.bases;
  std::set<std::string> taken;
  for (std::string text; Take(lines, &text);) {
    Pair pair;
    if (text.empty()) continue;
    if (!ToPair(text, &pair)) {
      Fault(lines->path, LineNow(*lines), "isn't an id and one word");
    } else if (pair.number == 0 && pair.word == mark) {
      for (const int left : missing) TellNameless(*lines, left);
      return true;
    } else if (IsMark(pair)) {
      break;
    } else if (pair.number != 0 && !HasId(ids, pair.number)) {
      Fault(lines->path, LineNow(*lines), "the table has no id " + std::to_string(pair.number));
    } else if (pair.number != 0) {
      missing.erase(pair.number);
      if (pair.word.size() > LongestName) Fault(lines->path, LineNow(*lines), "the name has more than 15 letters");
      if (!taken.insert(pair.word).second) Fault(lines->path, LineNow(*lines), "a line before gives this name");
    }
  }
  Fault(lines->path, LineNow(*lines), "\"0 " + mark + "\" should stand here");
  return false;
}

// Words fill the lines of the tutorial's window; a "$" goes on to the next one.
static bool FitsWindow(const std::string &text) {
  int count = 1;
  size_t length = 1;
  bool fits = true;
  for (size_t at = 0, end; at < text.size(); at = end + 1) {
    end = std::min(text.find_first_of(" $", at), text.size());
    const char ending = end < text.size() ? text[end] : '\0';
    if (ending == '$' || length + (end - at) >= WindowWidth) {
      count++;
      length = 1;
    }
    length += end - at;
    fits = fits && length <= WindowWidth;
    if (ending == ' ') length++;
  }
  return fits && count <= WindowLines;
}

// The lines that end a step: one that waits or ends, behind any that put a component into the hand. False at the end of
// the script.
static bool CheckControl(Lines *lines, const TableIds &components) {
  bool set = false;
  for (std::string text; Take(lines, &text);) {
    Pair pair;
    if (!ToPair(text, &pair)) {
      Fault(lines->path, LineNow(*lines), "isn't a number and a word that end a step");
      return false;
    }
    if (pair.number > 1) {
      const bool known = pair.word == "#SetComponent" && HasId(components, pair.number);
      if (set) Fault(lines->path, LineNow(*lines), "sets a second component where a wait should stand");
      if (!known) Fault(lines->path, LineNow(*lines), "doesn't set a component of the table");
      set = true;
      continue;
    }
    if (set && pair.number != 1) Fault(lines->path, LineNow(*lines), "isn't the wait that a set component needs");
    if (pair.number < 0) Fault(lines->path, LineNow(*lines), "isn't 0, 1 or the id of a component");
    if (pair.number != 1) return false;
    if (std::find(std::begin(waitWords), std::end(waitWords), pair.word) == std::end(waitWords)) {
      Fault(lines->path, LineNow(*lines), "the tutorial can't wait for " + pair.word);
    }
    return true;
  }
  Fault(lines->path, LineNow(*lines), "the tutorial ends inside a step");
  return false;
}

static void CheckTutorial(Lines *lines, const TableIds &components) {
  std::string text;
  while (Take(lines, &text) && text != "0 #DemoTutorialStart") {
  }
  if (text != "0 #DemoTutorialStart") return Fault(lines->path, LineNow(*lines), "has no tutorial");
  do {
    if (!Take(lines, &text)) return Fault(lines->path, LineNow(*lines), "the tutorial has no end");
    if (text.size() > LongestStep) Fault(lines->path, LineNow(*lines), "the step is longer than 511 letters");
    if (!FitsWindow(text)) Fault(lines->path, LineNow(*lines), "the step doesn't fit 8 lines of 25 letters");
  } while (CheckControl(lines, components));
}

static void CheckLanguage(const std::string &path, const TableIds &materials, const TableIds &components) {
  Lines lines{path, {}, 0};
  std::string bytes;
  if (!ReadWhole(path, &bytes)) return Fault(path, 0, "can't be read");
  std::istringstream stream(bytes);
  for (std::string text; std::getline(stream, text);) {
    if (!text.empty() && text.back() == '\r') text.pop_back();
    lines.text.push_back(text);
  }
  CheckLetters(lines);
  if (CheckTexts(&lines) && CheckNames(&lines, "#ComStart", materials) && CheckNames(&lines, "#CatStart", components)) {
    CheckTutorial(&lines, components);
  }
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
