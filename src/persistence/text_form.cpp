// Reading the text form. A block line names its rows by place and by id: where the tables have changed since, the id counts.
#include "persistence/text_form.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "content/components.h"
#include "content/materials.h"
#include "content/text_scan.h"
#include "core/log.h"
#include "core/utils.h"
#include "persistence/old_plating.h"
#include "persistence/stream.h"
#include "persistence/text_lines.h"
#include "world/access.h"
#include "world/cells.h"
#include "world/light.h"
#include "world/lists.h"

constexpr u16 PlaceholderComponentId = 6, ButterId = 110;
constexpr int FaultsTold = 100;          // of one file; what comes behind them is only counted
constexpr size_t FileVoxelBytes = 6, FileColourBytes = 4;
constexpr int MostVoxels = VoxelsPerBlock;
constexpr i64 HalfBlock = UnitsPerBlock / 2, BesidePlayer = 3 * UnitsPerBlock;  // how far off a ship joins

namespace {

// The numbers of a block line, in their order. The oldest lines end with ComponentId, later ones after Lights or Voxels.
enum BlockNumber {
  AtMega, AtSuper, AtChunk, AtBlock, AtMaterial, AtComponent, AtState, AtRotation, AtMaterialId, AtComponentId,
  AtLights, AtVoxels, AtRotation2, BlockNumbers
};

}  // namespace
constexpr int OldestBlockNumbers = AtLights;

namespace {

// A file whose entries follow the block lines. One that doesn't fit them was written with another text.
struct Companion {
  GzipReader gzip;
  bool open = false;
  bool misfit = false;
};

struct TextLoad {
  Ship *ship = nullptr;
  std::string path;
  LineReader lines;
  int version = 0;
  bool oldForm = false;          // no sections: block lines from the second line on
  bool currentRotations = false;
  bool ignoreRotation2 = false;  // a line without it was met
  bool lightingCurrent = false, cacheCurrent = false;
  Companion light, cache;
  std::vector<u16> materialRows, componentRows;  // row by id, made when the first id is out of place
  bool toldOldRows = false, toldMaterial = false, toldComponent = false;
  bool outOfMemory = false;
  int faults = 0;
  u64 cellBudget = u64{4} << 30;  // bytes of memory for cells that this file may still cost
  ChunkCells *cells = nullptr;    // of the block line before
  CellAddress cellsAt{};
};

}  // namespace

static void TellFault(TextLoad *t, const char *text) {
  if (t->faults++ < FaultsTold) LogInt(text, t->lines.number);
}

// The first line tells the shape of the file.
static void ReadFirstLine(TextLoad *t) {
  std::string_view line;
  if (!NextLine(&t->lines, &line)) return;
  int numbers[OldestBlockNumbers];
  std::string_view rest = line;
  if (FirstWord(&rest) == "Version" && ScanNumbers(rest, &t->version, 1) == 1) {
    t->currentRotations = true;
  } else if (ScanNumbers(line, numbers, OldestBlockNumbers) == OldestBlockNumbers) {
    t->oldForm = true;
    LogWarn("Old school file! Don't worry, I can load it anyway!");
  } else {
    ReturnLine(&t->lines, line);
  }
}

namespace {

enum class Section { Strings, Floats, Ints, Main };

}  // namespace

static bool IsSectionWord(std::string_view key, Section *section) {
  if (key == "StringSection") *section = Section::Strings;
  else if (key == "FloatSection") *section = Section::Floats;
  else if (key == "IntSection") *section = Section::Ints;
  else if (key == "MainSection") *section = Section::Main;
  else return false;
  return true;
}

static bool TakeString(TextLoad *t, std::string_view key, std::string_view value) {
  if (key != "Name") return false;
  if (value.size() > MaxShipName)
    LogWarn(("Ship file " + t->path + " has a name over 64 letters. The rest of it was left out.").c_str());
  t->ship->displayName = FrontOf(value, MaxShipName);
  return true;
}

// A value that could not be read leaves the ship's own.
static bool TakeFloat(TextLoad *t, std::string_view key, const float *value) {
  float *field = nullptr;
  if (key == "ComScruffiness") field = &t->ship->ComScruffiness;
  else if (key == "MatScruffiness") field = &t->ship->MatScruffiness;
  else return key == "PlayerX" || key == "PlayerY" || key == "PlayerZ";
  if (value != nullptr) *field = *value;
  return true;
}

static bool TakeInt(TextLoad *t, std::string_view key, bool value) {
  if (key == "LightingCurrent") t->lightingCurrent = value;
  else if (key == "CacheCurrent") t->cacheCurrent = value;
  else if (key == "NewRotation") t->currentRotations = t->currentRotations || value;
  else return false;
  return true;
}

static bool ReadFloat(std::string_view word, float *value) {
  TextCursor cursor{word};
  return ScanFloat(&cursor, value);
}

// Also octal and hexadecimal.
static bool ReadWholeNumber(std::string_view word, bool *set) {
  const std::string text(word);
  char *end = nullptr;
  *set = std::strtoll(text.c_str(), &end, 0) != 0;
  return end != text.c_str();
}

static void ReadSectionLine(TextLoad *t, Section *section, std::string_view line) {
  const std::string_view key = FirstWord(&line), value = FirstWord(&line);
  float number = 0;
  bool set = false;
  bool scanned = !value.empty();
  if (*section == Section::Floats) scanned = scanned && ReadFloat(value, &number);
  if (*section == Section::Ints) scanned = scanned && ReadWholeNumber(value, &set);
  if (*section == Section::Strings && key == "Name" && !scanned) LogInt("Error on line ", t->lines.number);  // ships may lack one
  else if (!scanned) TellFault(t, *section == Section::Strings ? "Error on line " : "Error in float section on line ");
  if (key.empty() || IsSectionWord(key, section)) return;
  if (*section == Section::Strings && !TakeString(t, key, value)) TellFault(t, "Error in ship string section on line ");
  if (*section == Section::Floats && !TakeFloat(t, key, scanned ? &number : nullptr))
    TellFault(t, "Error in ship float section on line ");
  if (*section == Section::Ints && !TakeInt(t, key, set)) TellFault(t, "Error in ship int section on line ");
}

static void ReadSections(TextLoad *t) {
  Section section = Section::Strings;
  std::string_view line;
  while (section != Section::Main && NextLine(&t->lines, &line)) ReadSectionLine(t, &section, line);
}

static void OpenCompanion(const TextLoad &t, Companion *c, bool current, const char *ending) {
  const std::string path = "cache/" + t.ship->fileStem + ending;
  bool opened;
  c->open = current && OpenGzip(&c->gzip, path.c_str(), &opened);
}

static void CloseCompanion(Companion *c) {
  if (c->open) CloseGzip(&c->gzip);
  c->open = false;
}

// The next entries of a companion, or false when it can't have so many: it then belongs to another text.
static bool ReadCompanion(Companion *c, u8 *out, int count, int most, size_t width) {
  const size_t bytes = count < 0 || count > most ? 0 : static_cast<size_t>(count) * width;
  if (bytes != 0 && ReadGzip(&c->gzip, out, bytes) == bytes) return true;
  c->misfit = true;
  CloseCompanion(c);
  return false;
}

static void CheckCompanionEnds(Companion *c) {
  u8 more;
  if (c->open && (ReadGzip(&c->gzip, &more, 1) != 0 || c->gzip.damaged)) c->misfit = true;
}

template <typename Row>
static std::vector<u16> RowsById(const std::vector<Row> &table, unsigned count) {
  std::vector<u16> rows(65536);
  for (unsigned row = count; row-- > 1;) rows[table[row].id] = static_cast<u16>(row);  // the first of two rows wins
  return rows;
}

// The row that a block line means, 0 when the table has no such id.
template <typename Row>
static u16 RowOfLine(TextLoad *t, const std::vector<Row> &table, unsigned count, std::vector<u16> *rows, int row, int id) {
  if (row > 0 && row < static_cast<int>(count) && table[static_cast<size_t>(row)].id == id) return static_cast<u16>(row);
  if (!t->toldOldRows) LogWarn("Found old format section - Loading will be slow.");
  t->toldOldRows = true;
  if (rows->empty()) *rows = RowsById(table, count);
  return id > 0 && id < 65536 ? (*rows)[static_cast<size_t>(id)] : u16{0};
}

// The row of an id that the table should have for those that it lacks.
static u16 StandIn(const std::vector<u16> &rows, u16 id, bool *told, const char *text) {
  if (!*told) LogWarn(text);
  *told = true;
  return rows[id] != 0 ? rows[id] : u16{1};
}

static u16 MaterialOfLine(TextLoad *t, const int *n) {
  const u16 row = RowOfLine(t, Materials, MaterialCount, &t->materialRows, n[AtMaterial], n[AtMaterialId]);
  if (row != 0) return row;
  return StandIn(t->materialRows, ButterId, &t->toldMaterial,
                 "Found a Material type I'm unfamilliar with. I'll just assume it's butter.");
}

static u16 ComponentOfLine(TextLoad *t, const int *n) {
  const u16 row = RowOfLine(t, Components, ComponentCount, &t->componentRows, n[AtComponent], n[AtComponentId]);
  if (row != 0) return row;
  return StandIn(t->componentRows, PlaceholderComponentId, &t->toldComponent,
                 "Found a block type I'm unfamilliar with. I'll stick a placeholder overtop of it.");
}

static Block BlockOfLine(TextLoad *t, const int *n) {
  Block b;
  b.state = StateWhole;
  b.rotation = (static_cast<unsigned>(n[AtRotation]) + (t->currentRotations ? 0u : 1u)) & 7u;
  b.rotation2 = static_cast<unsigned>(n[AtRotation2]) & 3u;
  b.material = MaterialOfLine(t, n);
  b.component = ComponentOfLine(t, n);
  if (t->version == 0 && IsOldPlating(static_cast<u16>(b.component))) TranslateOldPlating(&b);
  return b;
}

static bool PayFor(TextLoad *t, u64 bytes) {
  if (bytes > t->cellBudget) return false;
  t->cellBudget -= bytes;
  return true;
}

// What the levels above a block line's address may cost goes with the first chunk in them.
static ChunkCells *MakeCells(TextLoad *t, const CellAddress &a) {
  const bool haveChunks = FindChunk(a, *t->ship) != nullptr;
  const bool paid = PayFor(t, sizeof(ChunkCells) + (haveChunks ? 0 : 1000 * (sizeof(Chunk) + sizeof(SuperChunk))));
  if (!haveChunks && (!paid || EnsureChunks(a.mega, a.super, t->ship) == nullptr)) {
    LogError("Ran out of memory while loading.");
    return nullptr;
  }
  ChunkCells *cells = paid ? EnsureChunk(a.mega, a.super, a.chunk, t->ship) : nullptr;
  if (cells == nullptr) LogError("Unable to allocate block. Out of memory while loading.");
  return cells;
}

// The cells that a block line's address lies in. Null when memory, or the file's share of it, is used up.
static ChunkCells *CellsOfLine(TextLoad *t, const CellAddress &a) {
  if (t->cells != nullptr && a.chunk == t->cellsAt.chunk && a.super == t->cellsAt.super && a.mega == t->cellsAt.mega)
    return t->cells;
  t->cells = FindCells(a, *t->ship);
  t->cellsAt = a;
  if (t->cells == nullptr) t->cells = MakeCells(t, a);
  t->outOfMemory = t->cells == nullptr;
  return t->cells;
}

static GraphicBlock *GraphicOfLine(TextLoad *t, const CellAddress &a) {
  const bool have = t->cells->graphicBlocks.load() != nullptr;
  if (!have && !PayFor(t, CellsPerChunk * sizeof(GraphicBlock))) return nullptr;
  GraphicBlock *graphics = EnsureGraphics(t->cells, *FindChunk(a, *t->ship));
  return graphics == nullptr ? nullptr : graphics + a.block;
}

// The lists of the cache companion as a cache: first the voxels, each of position, spare byte and index, then the colours.
static BlockCache *CacheOfBytes(const u8 *bytes, unsigned count) {
  const size_t size = sizeof(BlockCache) + count * (sizeof(CacheVoxel) + sizeof(u32)) + CacheReadPastEnd;
  BlockCache *cache = static_cast<BlockCache *>(std::malloc(size));
  if (cache == nullptr) return nullptr;
  *cache = {};
  cache->counts[OpaqueList] = static_cast<u16>(count);
  CacheVoxel *voxels = reinterpret_cast<CacheVoxel *>(cache + 1);
  for (unsigned i = 0; i < count; ++i, bytes += FileVoxelBytes)
    voxels[i] = {static_cast<u8>(bytes[0] & 15), static_cast<u8>(bytes[1] & 15), static_cast<u8>(bytes[2] & 15), 0};
  std::memcpy(voxels + count, bytes, count * FileColourBytes);
  return cache;
}

static void ReadVoxels(TextLoad *t, const int *n, const CellAddress &a) {
  u8 bytes[MostVoxels * (FileVoxelBytes + FileColourBytes)];
  const int count = n[AtVoxels];
  if (count == 0 || !ReadCompanion(&t->cache, bytes, count, MostVoxels, FileVoxelBytes + FileColourBytes)) return;
  GraphicBlock *g = GraphicOfLine(t, a);
  if (g == nullptr) return;
  g->cacheId = ++t->ship->cacheCounter;
  if (n[AtState] != static_cast<int>(StateWhole)) return;  // a damaged block is whole again, and looks different
  g->cache = CacheOfBytes(bytes, static_cast<unsigned>(count));
}

static void ReadLights(TextLoad *t, const int *n, const CellAddress &a) {
  u8 bytes[MaxBlockLights * sizeof(LightEntry)];
  const int count = n[AtLights];
  if (count == 0 || !ReadCompanion(&t->light, bytes, count, MaxBlockLights, sizeof(LightEntry))) return;
  GraphicBlock *g = GraphicOfLine(t, a);
  if (g == nullptr) return;
  LightEntry entries[MaxBlockLights];
  const u8 *at = bytes;
  for (int i = 0; i < count; ++i, at += sizeof(LightEntry))
    entries[i] = {static_cast<i8>(at[0]), static_cast<i8>(at[1]), static_cast<i8>(at[2]), at[3], at[4], at[5], at[6]};
  if (SetLightList(g, entries, static_cast<unsigned>(count))) g->lightId = ++t->ship->lightCounter;
}

// What an earlier line for the same cell has left there.
static void ClearGraphic(const TextLoad &t, const CellAddress &a) {
  GraphicBlock *g = GraphicOf(*t.cells, a.block);
  if (g != nullptr) FreeGraphic(g);
}

static void PlaceLine(TextLoad *t, const int *n) {
  for (int i = AtMega; i <= AtBlock; ++i)
    if (n[i] < 0 || n[i] >= CellsPerChunk) return TellFault(t, "Error on line ");
  const CellAddress a{static_cast<u16>(n[AtBlock]), static_cast<u16>(n[AtChunk]), static_cast<u16>(n[AtSuper]),
                      static_cast<u16>(n[AtMega])};
  const Block b = BlockOfLine(t, n);
  if (CellsOfLine(t, a) == nullptr) return;
  PlaceBlockInCells(b, a, t->cells, t->ship);
  ClearGraphic(*t, a);
  if (t->light.open) ReadLights(t, n, a);
  if (t->cache.open) ReadVoxels(t, n, a);
}

namespace {

enum class TextEnd { Mark, None, Corrupted, OutOfMemory };

}  // namespace

// A line that a fault of the stream has cut may end in the middle of a number.
static bool IsCut(const TextLoad &t) { return t.lines.midLine && t.lines.gzip.damaged && t.lines.at == t.lines.have; }

static TextEnd ReadBlockLines(TextLoad *t) {
  std::string_view line;
  while (!t->outOfMemory && NextLine(&t->lines, &line)) {
    int n[BlockNumbers] = {};
    const int count = ScanNumbers(line, n, BlockNumbers);
    if (count < OldestBlockNumbers || IsCut(*t)) {
      TellFault(t, "Error on line ");
      continue;
    }
    if (n[AtState] == static_cast<int>(StateEmpty))
      return n[AtMega] == 0 && n[AtMaterial] == 0 && n[AtComponent] == 0 ? TextEnd::Mark : TextEnd::Corrupted;
    if (count < BlockNumbers) t->ignoreRotation2 = true;
    if (t->ignoreRotation2) n[AtRotation2] = 0;
    PlaceLine(t, n);
  }
  return t->outOfMemory ? TextEnd::OutOfMemory : TextEnd::None;
}

// Opens what the sections promised, and tells what will take time without it.
static void OpenCompanions(TextLoad *t) {
  LogInfo("Loaded first section of ship");
  OpenCompanion(*t, &t->light, t->lightingCurrent, ".slf");
  OpenCompanion(*t, &t->cache, t->cacheCurrent, ".scf");
  if (!t->light.open) LogWarn("Lighting file problem. Loading will be slow.");
  if (!t->cache.open) LogWarn("Cache file problem. Expect movement lag while it rebuilds.");
}

// Gives up what came from companions that belong to another text. Whether the light is there.
static bool SettleCompanions(TextLoad *t, TextEnd end) {
  for (Companion *c : {&t->light, &t->cache}) {
    if (end == TextEnd::Mark) CheckCompanionEnds(c);
  }
  if (t->cache.misfit) {
    LogWarn("Cache file problem. Expect movement lag while it rebuilds.");
    ClearShipCaches(t->ship);
  }
  if (t->light.misfit) {
    LogWarn("Lighting file problem. Loading will be slow.");
    ClearLights(*t->ship);
  }
  const bool lit = t->light.open && !t->light.misfit;
  CloseCompanion(&t->light);
  CloseCompanion(&t->cache);
  return lit;
}

// a + b x c, which stops at the ends of the world's range.
static i64 MovedBy(i64 a, i64 b, i64 c) {
  i64 sum;
  const i64 way = b * c;
  if (!__builtin_add_overflow(a, way, &sum)) return sum;
  return way < 0 ? INT64_MIN : INT64_MAX;
}

static void FinishText(Ship *ship, const i64 (&at)[3], bool castLight) {
  AssignCoordinates(ship);
  ship->summary = BuildShipSummary(ship);
  const u16 centre[3] = {ship->summary->comX, ship->summary->comY, ship->summary->comZ};
  for (int axis = 0; axis < 3; ++axis) ship->position[axis] = MovedBy(at[axis], -UnitsPerBlock, centre[axis]);
  StatePass(*ship);  // also has voxel lists built again in their time; until then the file's own are drawn
  if (castLight) LightPass(ship);
}

static void TellFaults(const TextLoad &t) {
  const std::string file = "Ship file " + t.path;
  if (t.lines.gzip.damaged) LogWarn((file + " is damaged. All that could be read was loaded.").c_str());
  if (t.faults != 0) LogWarn((file + " has faults in its lines: " + std::to_string(t.faults)).c_str());
}

static int EndText(TextLoad *t, TextEnd end, const i64 (&at)[3]) {
  const bool failed = end == TextEnd::Corrupted || end == TextEnd::OutOfMemory;
  const bool lit = SettleCompanions(t, end);
  CloseGzip(&t->lines.gzip);
  FinishText(t->ship, at, !lit && !failed);
  TellFaults(*t);
  if (end == TextEnd::OutOfMemory) return 0;
  if (end == TextEnd::Corrupted) return LogError("Save file appears corrupted.");
  return LogInfo(end == TextEnd::Mark ? "Successfully loaded file!" : "File may be loaded successfully.");
}

int LoadShipText(Ship *ship, const char *name, i64 x, i64 y, i64 z) {
  TextLoad t;
  t.ship = ship;
  t.path = std::string("saves/") + name;
  std::error_code ignored;
  ship->lightCounter = ship->cacheCounter = 0;
  const std::string file = name;
  ship->fileStem = file.substr(0, file.size() < 4 ? 0 : file.size() - 4);
  if (!IsFileName(file) || !std::filesystem::is_regular_file(t.path, ignored) || !OpenLines(&t.lines, t.path.c_str()))
    return LogError("Cannot open save file");
  ReadFirstLine(&t);
  if (!t.oldForm) ReadSections(&t);
  OpenCompanions(&t);
  if (t.version == 0) LogWarn("Older ship. Will need to do block translations");
  if (AtLastLine(&t.lines)) LogError("Corrupted save file");
  const TextEnd end = ReadBlockLines(&t);
  return EndText(&t, end, {x, y, z});
}

int AddShipFromText(ShipTable *table, const char *name, i64 x, i64 y, i64 z) {
  Ship *ship = PrepareShip(table);
  if (ship == nullptr) return 0;
  const int loaded = LoadShipText(ship, name, x, y, z);
  ship->keepStreamAs = ".replaced";  // a stream file that has the name may be a ship of its own
  if (ship->summary != nullptr) {
    const u16 size[3] = {ship->summary->sizeX, ship->summary->sizeY, ship->summary->sizeZ};
    for (int axis = 0; axis < 3; ++axis)
      ship->position[axis] = MovedBy(ship->position[axis], 1, BesidePlayer + HalfBlock * size[axis]);
  }
  PublishShip(table);  // an empty one too
  return loaded;
}
