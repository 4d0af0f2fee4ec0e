// The language file: lines of screen texts up to the line "0 #MatStart", then pairs of an id and a word that name materials
// up to "0 #ComStart" and components up to "0 #CatStart". What follows is not read here.
//
// Who adds a lamp rarely speaks four languages, and a language made for an earlier game knows nothing of the texts that came
// later. A thing called "Unknown" or a button without a word helps nobody: the English file fills the gaps.
#include "gui/language.h"

#include <algorithm>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "content/text_scan.h"
#include "core/log.h"
#include "platform/threads.h"

static constexpr size_t LanguageFileLimit = 1 << 20;  // bytes
static constexpr size_t LongestRow = 191;
static constexpr int PatientFaults = 100;  // in one region, before the rest of the file is given up as no language file
static constexpr const char *Unknown = "Unknown", *English = "english";

std::vector<std::string> GuiStrings(GuiStringRows);
static Mutex WordsMutex{MutexRank::Leaf, "words", {}};  // held by the main thread only where it changes GuiStrings

std::string WordsOf(GuiText row) {
  const ScopedLock lock(&WordsMutex);
  return GuiStrings[row];
}

static void TakeTexts(std::vector<std::string> *rows) {
  const ScopedLock lock(&WordsMutex);
  GuiStrings.swap(*rows);
}

// Takes lines as rows until the mark, which becomes a row too; its number. 0 when the file ends without it: then it is no
// language file.
static size_t ReadTexts(TextCursor *cursor, std::vector<std::string> *rows) {
  rows->assign(GuiStringRows, "");
  std::string_view line;
  for (size_t row = 1; ScanLine(cursor, LongestRow, &line); ++row) {
    if (row < rows->size()) (*rows)[row] = line;
    if (line == "0 #MatStart") return row;
  }
  LogError("The language file ends before its line \"0 #MatStart\"");
  return 0;
}

// Hands each pair with an id to take, until the id 0 comes with the mark. What is no pair is logged, unless fault is null, and
// skipped a word at a time. False when the file ends, or is rubbish, before the mark.
template <typename Take>
static bool ReadPairs(TextCursor *cursor, const char *mark, const char *fault, Take take) {
  for (int faults = 0; faults < PatientFaults;) {
    i64 id = 0;
    std::string_view word;
    if (ScanInt(cursor, &id) && ScanWord(cursor, &word)) {
      if (id == 0 && word == mark) return true;
      if (id != 0) take(id, word);
      continue;
    }
    if (fault != nullptr) LogInfo(fault);
    ++faults;
    if (!ScanWord(cursor, &word)) return false;
  }
  return false;
}

// The table's row with this id; the end row when there is none.
template <typename Row>
static Row &RowWithId(std::vector<Row> &table, i64 id) {
  size_t row = 1;
  while (table[row].id != 0 && table[row].id != id) ++row;
  return table[row];
}

static void NameMaterial(i64 id, std::string_view word) {
  Material &row = RowWithId(Materials, id);
  row.name = row.id == 0 ? Unknown : word;
}

static void NameComponent(i64 id, std::string_view word) {
  Component &row = RowWithId(Components, id);
  row.name = row.id == 0 ? Unknown : word;
  if (row.id == 0) LogInt("Excess UID in language file:", id);
}

static void ClearNames() {
  for (Material &m : Materials) m.name.clear();
  for (Component &c : Components) c.name.clear();
}

// Rows that no file names: a component takes its family's name, all others are unknown.
static void FillNames() {
  for (size_t row = 1; Materials[row].id != 0; ++row)
    if (Materials[row].name.empty()) Materials[row].name = Unknown;
  for (size_t row = 1; Components[row].id != 0; ++row) {
    std::string &name = Components[row].name;
    if (name.empty()) name = Components[FamilyBase(static_cast<u16>(row))].name;
    if (name.empty()) name = Unknown;
  }
}

static bool ReadNames(TextCursor *cursor) {
  return ReadPairs(cursor, "#ComStart", "Error in language file in Material section", NameMaterial) &&
         ReadPairs(cursor, "#CatStart", "Error in language file in Component section", NameComponent);
}

// The whole file of a language; a name that is no file's of the folder finds none.
static bool OpenFile(const std::string &language, std::vector<u8> *bytes, TextCursor *cursor) {
  return language.find('/') == std::string::npos &&
         LoadText(("config/language/" + language).c_str(), LanguageFileLimit, bytes, cursor);
}

// What the English file calls each row that has no name; of a family that has one, all are called so.
static std::vector<bool> NamelessComponents() {
  std::vector<bool> nameless(Components.size());
  for (size_t row = 1; Components[row].id != 0; ++row)
    nameless[row] = Components[row].name.empty() && Components[FamilyBase(static_cast<u16>(row))].name.empty();
  return nameless;
}

// Faults of the English file are its own, and were told of if the player reads English.
static int TakeEnglishNames(TextCursor *cursor) {
  const std::vector<bool> nameless = NamelessComponents();
  int taken = 0;
  const auto material = [&taken](i64 id, std::string_view word) {
    Material &row = RowWithId(Materials, id);
    if (row.id == 0 || !row.name.empty()) return;
    row.name = word;
    ++taken;
  };
  const auto component = [&taken, &nameless](i64 id, std::string_view word) {
    Component &row = RowWithId(Components, id);
    if (!nameless[static_cast<size_t>(&row - Components.data())]) return;
    row.name = word;
    ++taken;
  };
  if (ReadPairs(cursor, "#ComStart", nullptr, material)) ReadPairs(cursor, "#CatStart", nullptr, component);
  return taken;
}

// How many texts and names the English file gives. end: the row of the mark in the player's own file, from which on its texts
// lack; its empty lines are its own.
static int FillFromEnglish(size_t end, std::vector<std::string> *texts) {
  std::vector<u8> bytes;
  TextCursor cursor;
  std::vector<std::string> rows;
  if (!OpenFile(English, &bytes, &cursor)) return 0;
  const size_t englishEnd = std::min<size_t>(ReadTexts(&cursor, &rows), GuiStringRows);
  if (englishEnd == 0) return 0;
  int taken = TakeEnglishNames(&cursor);
  for (size_t row = end; row < englishEnd; ++row, ++taken) (*texts)[row] = rows[row];
  return taken;
}

bool OpenLanguage(std::vector<u8> *bytes, TextCursor *cursor) {
  return OpenFile(Options.Language, bytes, cursor) || LogError("Could not open language file!") != 0;
}

// A start in a language that isn't there is one in English; in play what was there before stays.
static bool KeepWords() {
  const auto empty = [](const std::string &text) { return text.empty(); };
  if (std::all_of(GuiStrings.begin(), GuiStrings.end(), empty) && Options.Language != English) {
    std::vector<std::string> texts(GuiStringRows);
    FillFromEnglish(1, &texts);
    TakeTexts(&texts);
  }
  FillNames();
  return false;
}

bool LoadLanguage() {
  std::vector<u8> bytes;
  TextCursor cursor;
  std::vector<std::string> rows;
  if (!OpenLanguage(&bytes, &cursor)) return KeepWords();
  const size_t end = ReadTexts(&cursor, &rows);
  if (end == 0) return KeepWords();
  ClearNames();
  const bool whole = ReadNames(&cursor);
  const int english = Options.Language == English ? 0 : FillFromEnglish(end, &rows);
  TakeTexts(&rows);
  if (english != 0) LogInt("Texts and names that the language lacks, in English instead:", english);
  FillNames();
  if (whole) LogInfo("Successfully loaded language file!");
  return true;
}
