// The materials table and its file.
#include "content/materials.h"

#include "content/table_reader.h"
#include "core/log.h"

static constexpr const char *MaterialsPath = "config/text/materials";
static constexpr size_t LongestTag = 31;
static constexpr u16 UnknownMaterialId = 110;  // what stands for materials that a file names and the table lacks

// Fifteen numbers, the sound class, the tags.
static const std::vector<size_t> MaterialColumns = {
    NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn,
    NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn, 63, LongestWord};

std::vector<Material> Materials(2);
u8 MaterialCount = 1;

// Values keep the low bits that their field has room for.
static Material MaterialFrom(const TableField *f) {
  Material m;
  const auto wide = [f](int column) { return static_cast<u16>(f[column - 1].number); };
  const auto narrow = [f](int column) { return static_cast<u8>(f[column - 1].number); };
  m.id = wide(1);
  m.column2 = wide(2);
  m.density = wide(3);
  m.conductivity = wide(4);
  m.heatCapacity = wide(5);
  m.meltingPoint = wide(6);
  m.boilingPoint = wide(7);
  m.column8 = narrow(8);
  m.column9 = narrow(9);
  m.column10 = wide(10);
  m.column11 = wide(11);
  m.red = narrow(12);
  m.green = narrow(13);
  m.blue = narrow(14);
  m.alpha = narrow(15);
  m.soundClass = f[15].word;
  return m;
}

static bool ReadMaterial(TableReader *reader, std::vector<Material> *table) {
  TableField fields[17];
  if (!NextTableRow(reader, MaterialColumns, fields)) return false;
  if (table->size() > MaxMaterials) return FailTableLine(reader, "there is room for 254 materials only");
  if (!IsTableId(fields[0].number)) return FailTableLine(reader, "column 1, the id, must be from 1 to 65535");
  Material m = MaterialFrom(fields);
  std::string_view tags[4];
  if (!SplitTags(fields[16].word, LongestTag, true, tags, 4))
    return FailTableLine(reader, "column 17 has a word of more than 31 characters");
  for (int i = 0; i < 4; ++i) m.tags[i] = tags[i];
  table->push_back(std::move(m));
  return true;
}

// The table in use stays as it was until a whole new one is read.
int LoadMaterials() {
  TableReader reader;
  if (!OpenTable(&reader, MaterialsPath, "Error in Materials file on line")) return LogError("Unable to open Materials file");
  std::vector<Material> table(1);
  while (ReadMaterial(&reader, &table)) {
  }
  if (reader.failed) return 0;
  MaterialCount = static_cast<u8>(table.size());
  table.emplace_back();
  Materials = std::move(table);
  if (FindMaterial(UnknownMaterialId) == 0) LogError("config/text/materials has no id 110; row 1 takes its place");
  return MaterialCount;
}

int FindMaterial(u16 id) {
  for (int row = 1; row < MaterialCount; ++row)
    if (Materials[static_cast<size_t>(row)].id == id) return row;
  return 0;
}
