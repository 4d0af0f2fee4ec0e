// Looks for faults in the tables of materials and components, and in the graphic files.
#include "check_parts.h"
#include "output.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr size_t MaterialFields = 17;
constexpr size_t ComponentFields = 13;
constexpr int MostMaterials = 254;     // the game counts them, and the row after the last, in a byte
constexpr int MostComponents = 16382;  // the game's table has 16384 rows, the first and the last stay empty
constexpr int RockRow = 5;
constexpr size_t GraphicSize = 16416;

struct Range {
  size_t field;
  int low, high;
};

constexpr Range materialRanges[] = {
    {1, 1, 65535}, {2, 0, 65535}, {3, 0, 65535},  {4, 0, 65535},  {5, 1, 65535},
    {6, 0, 65535}, {7, 0, 65535}, {8, 0, 255},    {9, 0, 255},    {10, 0, 65535},
    {11, 0, 65535}, {12, 0, 255}, {13, 0, 255},   {14, 0, 255},   {15, 0, 255},
};

constexpr Range componentRanges[] = {
    {1, 1, 65535}, {2, -1000000, 1000000}, {3, 0, 65535}, {4, 0, 65535},  {5, 0, 255},
    {6, 0, 255},   {7, 0, 255},            {10, -128, 0}, {12, -128, 127},
};

const char *const soundClasses[] = {"soft",    "organic", "medium", "plastic",  "hard", "ceramic",
                                    "stone", "crystal", "metal",  "magnetic", "tech"};

constexpr int neededComponents[] = {2, 6, 10, 160, 215, 216, 217, 218, 219, 800, 850, 900};

}  // namespace

// Reads a table and drops the rows that the game could not scan, each with a fault.
static TextFile ReadTable(const std::string &path, size_t fields, int most) {
  TextFile file;
  if (!ReadRows(path, &file)) return file;
  std::vector<Row> whole;
  for (const Row &row : file.rows) {
    if (row.fields.size() >= fields) {
      whole.push_back(row);
    } else {
      Fault(path, row.line, "has fewer than " + std::to_string(fields) + " columns");
    }
  }
  file.rows = whole;
  if (file.rows.size() > static_cast<size_t>(most)) Fault(path, 0, "has more than " + std::to_string(most) + " rows");
  return file;
}

static void CheckNumbers(const TextFile &file, const Row &row, const Range *ranges, size_t count) {
  for (size_t i = 0; i < count; i++) NumberField(file, row, ranges[i].field, ranges[i].low, ranges[i].high);
}

static void AddId(const TextFile &file, const Row &row, TableIds *ids) {
  int id = 0;
  ToNumber(row.fields[0], &id);
  if (std::count(ids->all.begin(), ids->all.end(), id) > 0) Fault(file.path, row.line, "a row before has this id");
  ids->all.push_back(id);
}

static int RowOfId(const TableIds &ids, int id) {
  const auto found = std::find(ids.all.begin(), ids.all.end(), id);
  return found == ids.all.end() ? 0 : static_cast<int>(found - ids.all.begin()) + 1;
}

static int Number(const Row &row, size_t field) {
  int value = 0;
  ToNumber(row.fields[field - 1], &value);
  return value;
}

static void CheckMaterial(const TextFile &file, const Row &row) {
  CheckNumbers(file, row, materialRanges, std::size(materialRanges));
  CheckWord(file, row, 16, 64);
  CheckTags(file, row, 17, 4);
  if (Number(row, 7) < Number(row, 6)) Fault(file.path, row.line, "boils before it melts");
  if (std::count(std::begin(soundClasses), std::end(soundClasses), row.fields[15]) == 0) {
    Fault(file.path, row.line, "no sound goes with \"" + row.fields[15] + "\"");
  }
}

TableIds CheckMaterials() {
  TableIds ids;
  const TextFile file = ReadTable("config/text/materials", MaterialFields, MostMaterials);
  for (const Row &row : file.rows) {
    CheckMaterial(file, row);
    AddId(file, row, &ids);
  }
  ids.bases.insert(ids.all.begin(), ids.all.end());
  if (ids.all.size() < RockRow) Fault(file.path, 0, "has no row 5, the rock of asteroids");
  if (RowOfId(ids, 110) == 0) Fault(file.path, 0, "has no id 110, which stands in for unknown materials");
  return ids;
}

static void CheckGraphic(const TextFile &file, const Row &row) {
  const std::string path = "config/graphics/components/" + row.fields[7] + ".3mp";
  std::string bytes;
  if (!ReadWhole(path, &bytes)) return Fault(file.path, row.line, path + " can't be read");
  if (bytes.size() != GraphicSize) return Fault(path, 0, "isn't 16416 bytes long");
  const std::string head("3MP\2\0\0\0\20\0\0\0\20\0\0\0\20\0\0\0", 19);
  if (bytes.compare(0, head.size(), head) != 0) Fault(path, 0, "isn't a version 2 grid of 16 x 16 x 16");
  if (bytes[31] != 0) Fault(path, 0, "says that it is compressed");
}

// `at` is the row's place in the table, from 0.
static void CheckFamily(const TextFile &file, size_t at) {
  const Row &row = file.rows[at];
  const int base = static_cast<int>(at) + Number(row, 10);
  if (base < 0 || Number(file.rows[static_cast<size_t>(base)], 10) != 0) {
    Fault(file.path, row.line, "column 10 doesn't lead to the first row of a family");
  }
}

// Follows an animation from its first frame: forward row by row, and back to where it began.
static void CheckFrames(const TextFile &file, size_t first) {
  const int count = static_cast<int>(file.rows.size());
  int at = static_cast<int>(first);
  for (int i = 0; i < count; i++) {
    const int step = Number(file.rows[static_cast<size_t>(at)], 12);
    at += step;
    if (step == 0 || at < 0 || at >= count) break;
    if (step < 0 && at == static_cast<int>(first)) return;
    if (step < 0) break;
  }
  Fault(file.path, file.rows[first].line, "the frames that begin here don't lead back to it");
}

static void CheckComponent(const TextFile &file, size_t at) {
  const Row &row = file.rows[at];
  CheckNumbers(file, row, componentRanges, std::size(componentRanges));
  CheckWord(file, row, 9, 64);
  CheckWord(file, row, 11, 128);
  CheckTags(file, row, 13, 2);
  CheckGraphic(file, row);
  CheckFamily(file, at);
  if (Number(row, 10) == 0 && Number(row, 12) != 0) CheckFrames(file, at);
}

static void CheckNeededComponents(const TextFile &file, const TableIds &ids) {
  for (const int id : neededComponents) {
    if (RowOfId(ids, id) == 0) Fault(file.path, 0, "has no id " + std::to_string(id));
  }
  for (const int id : {160, 215}) {
    if (RowOfId(ids, id) >= 1024) Fault(file.path, 0, "id " + std::to_string(id) + " must lie in a row under 1024");
  }
  for (int i = 1; i < 5; i++) {
    if (RowOfId(ids, 215 + i) != RowOfId(ids, 215) + i) Fault(file.path, 0, "ids 215 to 219 aren't neighbours");
  }
  for (const size_t row : {1U, 3U, 4U}) {
    if (file.rows.size() < row || file.rows[row - 1].fields[8] != "debug") {
      Fault(file.path, 0, "row " + std::to_string(row) + " isn't a marker of class debug");
    }
  }
}

TableIds CheckComponents() {
  TableIds ids;
  const TextFile file = ReadTable("config/text/components", ComponentFields, MostComponents);
  for (size_t i = 0; i < file.rows.size(); i++) {
    CheckComponent(file, i);
    AddId(file, file.rows[i], &ids);
    if (Number(file.rows[i], 10) == 0) ids.bases.insert(ids.all.back());
  }
  CheckNeededComponents(file, ids);
  return ids;
}
