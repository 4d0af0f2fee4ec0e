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
constexpr size_t GraphicHead = 32;  // four bytes for each voxel follow, the alpha last

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
  bool empty = true;
  for (size_t at = GraphicHead + 3; at < GraphicSize; at += 4) empty = empty && bytes[at] == 0;
  if (empty) Fault(path, 0, "holds no voxel");
}

// `at` is the row's place in the table, from 0. Between a row and its family's first one there are only rows of the
// family and such that stand for themselves, with rising ids: the rules of joining count rows.
static void CheckFamily(const TextFile &file, size_t at) {
  const Row &row = file.rows[at];
  const int base = static_cast<int>(at) + Number(row, 10);
  if (base < 0 || Number(file.rows[static_cast<size_t>(base)], 10) != 0) {
    return Fault(file.path, row.line, "column 10 doesn't lead to the first row of a family");
  }
  for (size_t i = static_cast<size_t>(base); i < at; i++) {
    const int offset = Number(file.rows[i], 10);
    if (offset != 0 && static_cast<int>(i) + offset != base) {
      return Fault(file.path, row.line, "rows of another family stand between this one and the first of its family");
    }
    if (Number(file.rows[i], 1) >= Number(file.rows[i + 1], 1)) {
      return Fault(file.path, row.line, "the ids of its family don't rise from row to row");
    }
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
  const bool first = Number(row, 10) == 0;
  const bool animated = row.fields[8] == "animation" || row.fields[8] == "singleanim";
  if (first && Number(row, 12) != 0) CheckFrames(file, at);
  if (first && animated && Number(row, 12) == 0) Fault(file.path, row.line, "is animated and has no second frame");
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
