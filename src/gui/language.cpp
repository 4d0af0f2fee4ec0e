// The language file: lines of screen texts up to the line "0 #MatStart", then pairs of an id and a word that name materials
// up to "0 #ComStart" and components up to "0 #CatStart". What follows is not read here.
#include "gui/language.h"

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "content/text_scan.h"
#include "core/log.h"

static constexpr size_t LanguageFileLimit = 1 << 20;  // bytes
static constexpr size_t LongestRow = 191;
static constexpr int PatientFaults = 100;  // in one region, before the rest of the file is given up as no language file
static constexpr const char *Unknown = "Unknown";

std::vector<std::string> GuiStrings(GuiStringRows);

// Takes lines as rows until the mark, which becomes a row too. False when the file ends without it: then it is no language
// file, and the rows stay as they were.
static bool ReadTexts(TextCursor *cursor) {
  std::vector<std::string> rows(GuiStringRows);
  std::string_view line;
  for (size_t row = 1; ScanLine(cursor, LongestRow, &line); ++row) {
    if (row < rows.size()) rows[row] = line;
    if (line != "0 #MatStart") continue;
    GuiStrings.swap(rows);
    return true;
  }
  return LogError("The language file ends before its line \"0 #MatStart\"") != 0;
}

// Hands each pair with an id to take, until the id 0 comes with the mark. What is no pair is logged and skipped a word at
// a time. False when the file ends, or is rubbish, before the mark.
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
    LogInfo(fault);
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

// Rows that the file doesn't name: a component takes its family's name, all others are unknown.
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

bool OpenLanguage(std::vector<u8> *bytes, TextCursor *cursor) {
  const std::string &language = Options.Language;  // names one file of the folder, never a path out of it
  if (language.find('/') == std::string::npos &&
      LoadText(("config/language/" + language).c_str(), LanguageFileLimit, bytes, cursor))
    return true;
  return LogError("Could not open language file!") != 0;
}

bool LoadLanguage() {
  std::vector<u8> bytes;
  TextCursor cursor;
  if (!OpenLanguage(&bytes, &cursor)) return false;
  const bool texts = ReadTexts(&cursor);
  if (texts) ClearNames();
  const bool whole = texts && ReadNames(&cursor);
  FillNames();
  if (whole) LogInfo("Successfully loaded language file!");
  return texts;
}
