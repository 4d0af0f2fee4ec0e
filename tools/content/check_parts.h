// What the checkers of the single files share.
#pragma once

#include <set>
#include <string>
#include <vector>

// A line of a text file that isn't a comment, split at white space.
struct Row {
  int line = 0;
  std::vector<std::string> fields;
};

struct TextFile {
  std::string path;
  std::vector<Row> rows;
};

// Ids of the tables, in row order from row 1; `bases` holds those that need a name of their own.
struct TableIds {
  std::vector<int> all;
  std::set<int> bases;
};

// Prints a fault and counts it. Line 0 stands for the file as a whole.
void Fault(const std::string &path, int line, const std::string &what);
// The same for what the game mends by itself.
void Warning(const std::string &path, int line, const std::string &what);
int FaultCount();

// Reads the rows of a table file; false, with a fault, when it can't be read.
bool ReadRows(const std::string &path, TextFile *file);

// True when the text is a decimal number; `value` then holds it, held within +-1,000,000.
bool ToNumber(const std::string &text, int *value);

// Faults for a field (counted from 1) that isn't a number from low to high; gives the number, or low.
int NumberField(const TextFile &file, const Row &row, size_t field, int low, int high);

// Faults for a word of `limit` letters or more.
void CheckWord(const TextFile &file, const Row &row, size_t field, size_t limit);

// Faults for a field that isn't one to `most` words of under 32 letters joined by bars.
void CheckTags(const TextFile &file, const Row &row, size_t field, size_t most);

// A field (counted from 1) as a number, 0 for anything else.
int Number(const Row &row, size_t field);

// The row of an id, from 1; 0 for none.
int RowOfId(const TableIds &ids, int id);

// Faults for ids of the components that the rules of the game name, and that are missing or in the wrong place.
void CheckNeededComponents(const TextFile &file, const TableIds &ids);

// Pictures of the right sizes and form, and fonts that the game can open.
void CheckPictures();
void CheckFonts();

// Check one file each; the tables give the ids that the language files are checked against.
TableIds CheckMaterials();
TableIds CheckComponents();
void CheckLanguages(const TableIds &materials, const TableIds &components);
void CheckSounds();  // and the music
