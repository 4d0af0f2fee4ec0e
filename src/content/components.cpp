// The components table and its file.
#include "content/components.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "content/table_reader.h"
#include "core/log.h"
#include "core/utils.h"

static constexpr const char *ComponentsPath = "config/text/components";
static constexpr int MaxComponents = 16382;  // rows of the file: ship files keep a row in 14 bits, and the last is the end row
static constexpr size_t LongestTag = 31;
static constexpr u16 RowMask = 1023;         // of RemotePlayerComponent and AsteroidRockBase
static constexpr int RockShapes = 5;         // rows from AsteroidRockBase on that rock is made of
static constexpr u8 StillDelay = 255, MovingDelay = 17;

static constexpr u16 RemovalId = 9, RemotePlayerId = 160, RockId = 215;
static constexpr u16 LiquidId = 800, GasId = 850, SolidifiedId = 900;

// Seven numbers, the stem of the graphic file, the class, the family, an unused word, the frame step, the tags.
static const std::vector<size_t> ComponentColumns = {
    NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn, NumberColumn,
    127, 63, NumberColumn, 127, NumberColumn, 2 * LongestTag + 1};

namespace {

// A table in the making, with what is checked once all rows are known.
struct ComponentTable {
  std::vector<Component> rows;
  struct Leads {
    int line;
    i64 familyOffset, frameStep;
  };
  std::vector<Leads> leads;  // of each row, as the file has them
};

}  // namespace

std::vector<Component> Components(2);
std::vector<u8> ComponentTraits(2);
u16 ComponentCount = 1;
u16 RemotePlayerComponent = 0, AsteroidRockBase = 1;
u16 LiquidComponent = 0, GasComponent = 0, SolidifiedComponent = 0;

static bool NoGridMemory() { return LogError("Couldn't allocate enough memory for graphics data") != 0; }

static bool AllocateGrids(Component *c) {
  c->voxels.reset(new (std::nothrow) Voxel[VoxelsPerBlock]);
  c->voxelRuns.reset(new (std::nothrow) Voxel[VoxelsPerBlock]);
  c->facts.reset(new (std::nothrow) VoxelFacts());
  return (c->voxels != nullptr && c->voxelRuns != nullptr && c->facts != nullptr) || NoGridMemory();
}

static bool DeriveGrids(Component *c) {
  const int drawn = BuildVoxelRuns(c->voxels.get(), c->voxelRuns.get(), &c->drawnOpaque, &c->drawnTranslucent);
  if (!TryReserve(&c->facts->drawn, static_cast<size_t>(drawn)) ||
      !TryReserve(&c->facts->drawnColours, static_cast<size_t>(drawn)))
    return NoGridMemory();
  BuildVoxelFacts(c->voxels.get(), c->voxelRuns.get(), c->facts.get());
  return true;
}

// Row 0 and the end row have grids too, without a voxel, so that no row needs a test.
static bool AddEmptyRow(ComponentTable *table) {
  Component c;
  if (!AllocateGrids(&c) || !DeriveGrids(&c)) return false;
  table->rows.push_back(std::move(c));
  table->leads.push_back({});
  return true;
}

static bool LoadGrids(Component *c, std::string_view stem) {
  if (!AllocateGrids(c)) return false;
  const std::string name(stem);
  const int percent = Load3mpGraphic(c->voxels.get(), name.c_str(), &c->opaqueVoxels, &c->translucentVoxels);
  if (percent == 0) return LogError("Couldn't load graphics file") != 0;
  c->fillPercent = static_cast<u8>(percent);
  return DeriveGrids(c);
}

// Values keep the low bits that their field has room for; the two that lead to other rows are set by CheckLeads.
static Component ComponentFrom(const TableField *f) {
  Component c;
  c.id = static_cast<u16>(f[0].number);
  c.column2 = static_cast<i32>(f[1].number);
  c.column3 = static_cast<u16>(f[2].number);
  c.column4 = static_cast<u16>(f[3].number);
  c.lightRed = static_cast<u8>(f[4].number);
  c.lightGreen = static_cast<u8>(f[5].number);
  c.lightBlue = static_cast<u8>(f[6].number);
  c.className = f[8].word;
  c.column11 = f[10].word;
  return c;
}

static bool ReadComponent(TableReader *reader, ComponentTable *table) {
  TableField fields[13];
  if (!NextTableRow(reader, ComponentColumns, fields)) return false;
  if (table->rows.size() > MaxComponents) return FailTableLine(reader, "there is room for 16382 components only");
  if (!IsTableId(fields[0].number)) return FailTableLine(reader, "column 1, the id, must be from 1 to 65535");
  Component c = ComponentFrom(fields);
  std::string_view tags[2];
  if (!SplitTags(fields[12].word, LongestTag, false, tags, 2))
    return FailTableLine(reader, "column 13 has a word of more than 31 characters");
  c.primaryTag = tags[0];
  c.secondaryTag = tags[1];
  if (!LoadGrids(&c, fields[7].word)) return FailTableLine(reader, "column 8 names a graphic file that doesn't load");
  table->rows.push_back(std::move(c));
  table->leads.push_back({reader->line, fields[9].number, fields[11].number});
  return true;
}

// A distance in rows that ends on a row of the file; anything else is logged and becomes 0.
static i8 CheckedLead(const ComponentTable &table, size_t row, i64 distance, const char *fault) {
  const i64 rows = static_cast<i64>(table.rows.size());
  const bool narrow = distance >= -128 && distance <= 127;
  const i64 goal = static_cast<i64>(row) + (narrow ? distance : 0);
  if (narrow && goal >= 1 && goal < rows) return static_cast<i8>(distance);
  LogTableLine(ComponentsPath, table.leads[row].line, fault);
  return 0;
}

// Sets the fields that lead from row to row, once all rows are known.
static void CheckLeads(ComponentTable *table) {
  for (size_t row = 1; row < table->rows.size(); ++row) {
    Component &c = table->rows[row];
    const ComponentTable::Leads &leads = table->leads[row];
    c.familyOffset = CheckedLead(*table, row, leads.familyOffset, "column 10 leads outside the table; 0 takes its place");
    c.frameStep = CheckedLead(*table, row, leads.frameStep, "column 12 leads outside the table; 0 takes its place");
    c.frameDelay = c.frameStep == 0 ? StillDelay : MovingDelay;
  }
}

// The last row with an id, in the ten bits that are kept of it; 0 if there is none.
static u16 LastRowOf(u16 id) {
  u16 found = 0;
  for (u16 row = 1; row < ComponentCount; ++row)
    if (Components[row].id == id) found = row & RowMask;
  return found;
}

// Keeps the rows that rules ask for by name, and tells of those that the table lacks.
static void KeepSpecialRows() {
  for (const u16 id : {u16{6}, u16{10}, RockId}) {
    char text[80];
    std::snprintf(text, sizeof text, "config/text/components has no id %i; row 1 takes its place", id);
    if (FindComponent(id) == 0) LogError(text);
  }
  RemotePlayerComponent = LastRowOf(RemotePlayerId);
  AsteroidRockBase = std::max<u16>(LastRowOf(RockId), 1);
  if (FindComponent(RockId) != 0 && AsteroidRockBase + RockShapes > ComponentCount)
    LogError("config/text/components needs five rows of rock from id 215 on");
}

// The table in use stays as it was until a whole new one is read.
int LoadComponents() {
  TableReader reader;
  if (!OpenTable(&reader, ComponentsPath, "Error in Components file on line"))
    return LogError("Unable to open Components file");
  ComponentTable table;
  if (!TryReserve(&table.rows, MaxComponents + 2) || !TryReserve(&table.leads, MaxComponents + 2))
    return LogError("Unable to allocate component graphic space.");
  if (!AddEmptyRow(&table)) return 0;
  while (ReadComponent(&reader, &table)) {
  }
  if (reader.failed) return 0;
  CheckLeads(&table);
  if (!AddEmptyRow(&table)) return 0;
  ComponentCount = static_cast<u16>(table.rows.size() - 1);
  Components = std::move(table.rows);
  DeriveComponentTraits();
  KeepSpecialRows();
  return ComponentCount;
}

bool FindPhaseComponents() {
  LiquidComponent = GasComponent = SolidifiedComponent = 0;
  for (u16 row = 0; row < ComponentCount; ++row) {
    const u16 id = Components[row].id;
    if (id == LiquidId) LiquidComponent = row;
    if (id == GasId) GasComponent = row;
    if (id == SolidifiedId) SolidifiedComponent = row;
  }
  return LiquidComponent != 0 && GasComponent != 0 && SolidifiedComponent != 0;
}

int FindComponent(u16 id) {
  for (int row = 1; row < ComponentCount; ++row)
    if (Components[static_cast<size_t>(row)].id == id) return row;
  return 0;
}

u16 FamilyBase(u16 row) {
  if (row >= Components.size()) return 0;
  const int base = row + Components[row].familyOffset;
  return static_cast<u16>(std::clamp(base, 0, static_cast<int>(Components.size()) - 1));
}

// Ids of the components that fill their whole cell, in ranges with both ends.
static bool IsFullBlock(u16 id) {
  static constexpr u16 ranges[][2] = {{2, 2},     {24, 24},   {90, 91},   {900, 900}, {10, 14},
                                      {60, 69},   {200, 219}, {320, 329}, {400, 459}, {760, 769}};
  return std::any_of(std::begin(ranges), std::end(ranges), [id](const u16 (&r)[2]) { return id >= r[0] && id <= r[1]; });
}

// Animated: a word of its class, or the row before the later frames of a family.
static bool IsAnimated(size_t row) {
  const std::string &word = Components[row].className;
  if (word == "singleanim" || word == "animation") return true;
  if (row + 1 >= Components.size()) return false;
  return Components[row + 1].familyOffset < 0 && Components[row + 1].className == "animation";
}

void DeriveComponentTraits() {
  ComponentTraits.assign(Components.size(), 0);
  for (size_t row = 0; row < Components.size(); ++row) {
    const Component &c = Components[row];
    unsigned traits = 0;
    if (c.lightRed != 0 || c.lightGreen != 0 || c.lightBlue != 0) traits |= TraitGivesLight;
    if (IsAnimated(row)) traits |= TraitAnimated;
    if (c.id == RemovalId) traits |= TraitRemoves;
    if (IsFullBlock(c.id)) traits |= TraitFullBlock;
    if (c.id == 21 || c.id == 22 || c.id == 330 || c.id == 550) traits |= TraitHidesNothing;
    ComponentTraits[row] = static_cast<u8>(traits);
  }
}
