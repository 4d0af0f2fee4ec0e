// The language files: numbered texts of the screens, names of the tables, and the tutorial. Their sources are UTF-8; the game
// takes each byte for a letter of Latin-1.
#include "language.h"

#include "components.h"
#include "materials.h"
#include "output.h"

#include <cstdio>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

static constexpr const char *textsFolder = "tools/content/texts/";
static constexpr const char *sections[] = {"[texts]", "[materials]", "[components]"};
namespace {

enum Section { Texts, MaterialNames, ComponentNames, Sections };

}  // namespace

using Words = std::map<int, std::string>;  // by row of the screens' texts, or by id

static bool Complain(const std::string &path, int line, const std::string &what) {
  std::fprintf(stderr, "%s:%d: %s\n", path.c_str(), line, what.c_str());
  return false;
}

// False for letters that Latin-1 lacks, and for its signs from 0x80 to 0xBF, which the game doesn't count as letters.
static bool ToLatin1(const std::string &utf8, std::string *latin1) {
  latin1->clear();
  for (size_t i = 0; i < utf8.size(); i++) {
    const auto byte = static_cast<unsigned char>(utf8[i]);
    if (byte < 0x80) {
      *latin1 += utf8[i];
    } else if (byte == 0xC3 && i + 1 < utf8.size() && (utf8[i + 1] & 0xC0) == 0x80) {
      *latin1 += static_cast<char>(utf8[++i] | 0x40);
    } else {
      return false;
    }
  }
  return true;
}

// Takes each line of a source file in Latin-1, with its number. False when the file can't be read or a line is refused.
template <typename TakeLine>
static bool ReadSource(const std::string &path, TakeLine take) {
  std::string bytes, line, latin1;
  if (!ReadWhole(path, &bytes)) return Complain(path, 0, "can't be read");
  std::istringstream lines(bytes);
  bool good = true;
  for (int number = 1; std::getline(lines, line); number++) {
    if (!ToLatin1(line, &latin1)) {
      good = Complain(path, number, "has a letter that the game can't draw");
    } else if (!take(latin1, number)) {
      good = false;
    }
  }
  return good;
}

static int SectionNamed(const std::string &line) {
  int section = 0;
  while (section < Sections && line != sections[section]) section++;
  return section;
}

// Sections of lines with a number and the words that go with it; lines with # and empty ones are left out.
static bool ReadWords(const std::string &path, Words (&words)[Sections]) {
  int section = Sections;
  return ReadSource(path, [&](const std::string &line, int number) {
    if (line.empty() || line[0] == '#') return true;
    if (const int named = SectionNamed(line); named != Sections) {
      section = named;
      return true;
    }
    std::istringstream parts(line);
    int key = 0;
    std::string text;
    if (section == Sections || !(parts >> key >> std::ws) || !std::getline(parts, text)) {
      return Complain(path, number, "isn't a number and its words, in a section");
    }
    if (section != Texts && text.find(' ') != std::string::npos) return Complain(path, number, "a name is one word");
    return words[section].emplace(key, text).second || Complain(path, number, "gives this number once more");
  });
}

// Takes the names of a table out of the words, in the table's order. The English ones stand in the table.
template <typename Row>
static bool NameRows(const std::string &path, bool english, const std::vector<Row> &table, Words names, std::string *out) {
  bool good = true;
  for (const Row &row : table) {
    if (row.name == nullptr) continue;
    const auto found = names.find(row.id);
    if (found == names.end() && !english) {
      good = Complain(path, 0, "has no name for id " + std::to_string(row.id) + ", " + row.name);
      continue;
    }
    *out += std::to_string(row.id) + " " + (found == names.end() ? row.name : found->second) + "\n";
    if (found != names.end()) names.erase(found);
  }
  for (const auto &left : names) good = Complain(path, 0, "names id " + std::to_string(left.first) + ", which is none");
  return good;
}

// Row n of the texts is line n: screens refer to rows by number.
static bool WriteTexts(const std::string &path, const Words &texts, std::string *out) {
  int row = 0;
  for (const auto &[number, text] : texts) {
    if (number != ++row) return Complain(path, 0, "has no text " + std::to_string(row));
    *out += text + "\n";
  }
  return true;
}

static bool WriteLanguage(const std::string &name) {
  const std::string path = textsFolder + ("words_" + name + ".txt");
  const bool english = name == "english";
  Words words[Sections];
  std::string out;
  bool good = ReadWords(path, words);
  good = WriteTexts(path, words[Texts], &out) && good;
  out += "0 #MatStart\n";
  good = NameRows(path, english, Materials(), words[MaterialNames], &out) && good;
  out += "0 #ComStart\n";
  good = NameRows(path, english, Components(), words[ComponentNames], &out) && good;
  out += "0 #CatStart\n0 #DemoTutorialStart\n";
  good = ReadSource(textsFolder + ("tutorial_" + name + ".txt"), [&out](const std::string &line, int) {
    out += line + "\n";
    return true;
  }) && good;
  return good && WriteIfChanged("config/language/" + name, out);
}

bool WriteLanguages() {
  bool good = true;
  std::error_code error;
  for (const auto &entry : fs::directory_iterator(textsFolder, error)) {
    const std::string stem = entry.path().stem().string();
    if (stem.rfind("words_", 0) == 0) good = WriteLanguage(stem.substr(6)) && good;
  }
  return error ? Complain(textsFolder, 0, "can't be read") : good;
}
