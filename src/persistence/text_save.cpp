// Writing the text form. The companions are only hints, the text is the ship: companions go before their text changes, and
// the new ones come after it.
#include <bit>
#include <charconv>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "core/utils.h"
#include "persistence/cursor.h"
#include "persistence/gzip_file.h"
#include "persistence/stream.h"
#include "persistence/text_form.h"
#include "persistence/text_lines.h"
#include "platform/threads.h"
#include "world/cells.h"

static Mutex TextSaveMutex{MutexRank::Save, "text save", {}};  // one at a time: they share the names of temporaries

constexpr size_t LongestBlockLine = 64;  // 13 numbers of at most 5 digits, few of them so long
constexpr size_t HeaderRoom = 512;

namespace {

// The contents of a text ship's three files.
struct TextShip {
  std::vector<u8> text, light, cache;
};

// What is to be written, and the file that it will become.
struct TextFiles {
  FileReplacement text, light, cache;
  bool withLight = false, withCache = false;
};

}  // namespace

static void PutText(std::vector<u8> *out, std::string_view text) { PutBytes(out, text.data(), text.size()); }

static void PutLine(std::vector<u8> *out, std::string_view key, std::string_view value) {
  PutText(out, key);
  PutU8(out, ' ');
  PutText(out, value);
  PutU8(out, '\n');
}

static void PutFloatLine(std::vector<u8> *out, std::string_view key, float value) {
  char digits[64];
  const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 6).ptr;
  PutLine(out, key, {digits, end});
}

// A name is one line of the file.
static std::string NameLine(const std::string &name) {
  std::string line = name;
  for (char &c : line)
    if (static_cast<unsigned char>(c) < ' ') c = ' ';
  return line;
}

static void PutHeader(const Ship &ship, bool withLight, bool withCache, std::vector<u8> *out) {
  PutLine(out, "Version", "2");
  PutLine(out, "StringSection", "1");
  PutLine(out, "Name", NameLine(ship.displayName));
  PutLine(out, "IntSection", "1");
  PutLine(out, "LightingCurrent", withLight ? "1" : "0");
  PutLine(out, "CacheCurrent", withCache ? "1" : "0");
  PutLine(out, "FloatSection", "1");
  PutFloatLine(out, "ComScruffiness", ship.ComScruffiness);
  PutFloatLine(out, "MatScruffiness", ship.MatScruffiness);
  PutLine(out, "MainSection", "1");
}

static unsigned KeptVoxels(const GraphicBlock *g) { return g == nullptr || g->cache == nullptr ? 0 : g->cache->counts[OpaqueList]; }

static unsigned KeptLights(const GraphicBlock *g) { return g == nullptr || g->lightList == nullptr ? 0 : g->lightCount; }

static void PutBlockLine(const CellAddress &a, u64 head, const GraphicBlock *g, std::vector<u8> *out) {
  const u16 material = HeadMaterial(head), component = HeadComponent(head);
  const unsigned numbers[] = {a.mega, a.super, a.chunk, a.block, material, component, HeadState(head), HeadRotation(head),
                              Materials[material].id, Components[component].id, KeptLights(g), KeptVoxels(g),
                              HeadRotation2(head)};
  char line[LongestBlockLine];
  char *at = line;
  for (const unsigned number : numbers) {
    at = std::to_chars(at, line + sizeof line, number).ptr;
    *at++ = ' ';
  }
  at[-1] = '\n';
  PutText(out, {line, at});
}

static void PutLights(const GraphicBlock *g, std::vector<u8> *out) {
  for (unsigned i = 0; i < KeptLights(g); ++i) {
    const LightEntry &e = g->lightList[i];
    for (const i8 axis : {e.dx, e.dy, e.dz}) PutU8(out, static_cast<u8>(axis));
    for (const u8 v : {e.red, e.green, e.blue, e.hops}) PutU8(out, v);
  }
}

static void PutVoxels(u64 head, const GraphicBlock *g, std::vector<u8> *out) {
  if (KeptVoxels(g) == 0) return;
  const CacheList list = ListOf(g->cache, OpaqueList);
  for (unsigned i = 0; i < list.count; ++i) {
    const CacheVoxel &v = list.voxels[i];
    for (const u8 byte : {v.x, v.y, v.z, u8{0}}) PutU8(out, byte);
    PutU16(out, static_cast<u16>(VoxelIndex(v.x, v.y, v.z, HeadRotation(head), HeadRotation2(head))));
  }
  PutBytes(out, list.colours, list.count * sizeof(u32));
}

// Calls visit(head, record or null, address) for every block, in the order of the tree.
template <typename Visit>
static void ForEachBlock(const Ship &ship, Visit visit) {
  ForEachChunk(ship, [&](Chunk &, ChunkCells &cells, CellAddress a) {
    ForEachBit(cells.occupied, [&](u16 i) {
      a.block = i;
      visit(HeadOfCell(cells, i), GraphicOf(cells, i), a);
    });
  });
}

static bool ReserveText(const Ship &ship, TextShip *out) {
  size_t blocks = 0, lights = 0, voxels = 0;
  ForEachBlock(ship, [&](u64, const GraphicBlock *g, const CellAddress &) {
    ++blocks;
    lights += KeptLights(g);
    voxels += KeptVoxels(g);
  });
  return TryReserve(&out->text, HeaderRoom + blocks * LongestBlockLine) && TryReserve(&out->light, lights * sizeof(LightEntry)) &&
         TryReserve(&out->cache, voxels * 10);
}

// The only step of a save for which the world stands still.
static bool PackText(const Ship &ship, bool withLight, bool withCache, TextShip *out) {
  if (ship.displayName.size() > MaxShipName) return LogError("Ship name's too long to save. What did you do.") != 0;
  if (!ReserveText(ship, out)) return LogError("Not enough memory to save the ship") != 0;
  PutHeader(ship, withLight, withCache, &out->text);
  ForEachBlock(ship, [&](u64 head, const GraphicBlock *g, const CellAddress &a) {
    PutBlockLine(a, head, g, &out->text);
    if (withLight) PutLights(g, &out->light);
    if (withCache) PutVoxels(head, g, &out->cache);
  });
  PutText(&out->text, "0 0 0 0 0 0 0 0 0 0 0 0\n");
  return true;
}

// Begins a companion. The ship is saved without one that can't be made.
static bool BeginCompanion(FileReplacement *file, bool wanted, const std::string &stem, const char *ending) {
  if (!wanted) return false;
  const std::string path = "cache/" + stem + ending;
  if (IsFileName(stem) && BeginReplacement(file, path.c_str())) return true;
  return LogWarn((path + " can't be written. The ship is saved without it.").c_str()) != 0;
}

static bool WriteTextFiles(TextFiles *f, const TextShip &ship) {
  return WriteGzip(&f->text, ship.text) && SettleReplacement(&f->text) &&
         (!f->withLight || (WriteGzip(&f->light, ship.light) && SettleReplacement(&f->light))) &&
         (!f->withCache || (WriteGzip(&f->cache, ship.cache) && SettleReplacement(&f->cache)));
}

static void AbandonTextFiles(TextFiles *f) {
  AbandonReplacement(&f->text);
  if (f->withLight) AbandonReplacement(&f->light);
  if (f->withCache) AbandonReplacement(&f->cache);
}

static bool CommitTextFiles(TextFiles *f) {
  const bool free = (!f->withLight || RemoveFile(f->light.path.c_str())) && (!f->withCache || RemoveFile(f->cache.path.c_str()));
  if (!free || !CommitReplacement(&f->text)) return false;
  if (f->withLight) CommitReplacement(&f->light);  // without it, the next load works the light out
  if (f->withCache) CommitReplacement(&f->cache);
  return true;
}

// The ship's copy and the beginnings of its files.
static bool PrepareTextFiles(const Ship &ship, const std::string &path, TextFiles *f, bool light, bool cache, TextShip *content) {
  if (!BeginReplacement(&f->text, path.c_str())) return LogError(("Could not create " + path).c_str()) != 0;
  ScopedLock world(&WorldMutex);
  const bool own = path.size() > 4 && path.substr(0, path.size() - 4) == "saves/" + ship.fileStem;  // else they are another text's
  const bool lit = ship.remains.stale.empty();  // else the next load casts the light anew
  f->withLight = BeginCompanion(&f->light, light && own && lit, ship.fileStem, ".slf");
  f->withCache = BeginCompanion(&f->cache, cache && own, ship.fileStem, ".scf");
  return PackText(ship, f->withLight, f->withCache, content);
}

int SaveShipText(const Ship &ship, const char *name, bool nameHasExtension, bool withLight, bool withCache) {
  const std::string path = std::string("saves/") + name + (nameHasExtension ? "" : ".ssf");
  if (!IsFileName(name)) return LogError(("Could not create " + path).c_str());
  ScopedLock save(&TextSaveMutex);
  TextFiles files;
  TextShip content;
  if (!PrepareTextFiles(ship, path, &files, withLight, withCache, &content)) {
    AbandonTextFiles(&files);
    return 0;
  }
  if (WriteTextFiles(&files, content) && CommitTextFiles(&files)) return 1;
  AbandonTextFiles(&files);
  return LogError(("Could not write " + path + ". The old file stays.").c_str());
}
