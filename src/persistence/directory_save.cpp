// Saving a whole ship as a folder: a copy of the blocks under the world mutex, a new folder written and synced outside it,
// and the exchange of the two names.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <new>

#include "core/log.h"
#include "core/utils.h"
#include "persistence/cursor.h"
#include "persistence/directory_slots.h"
#include "persistence/directory_store.h"
#include "persistence/stream.h"
#include "platform/folders.h"
#include "world/cells.h"

constexpr size_t SlotsAtOnce = 64;      // of one write

namespace {

// What a save needs of a chunk. Blocks in memory are copied; else the chunk has an old slot, which is carried over.
struct ChunkCopy {
  u16 mega = 0, super = 0, chunk = 0;
  i16 oldSlot = -1;
  bool inMemory = false, hasTails = false;
  u64 occupied[16] = {};
};

struct ShipCopy {
  std::string stem;
  const char *keepAs = nullptr;          // the ship's keepFolderAs
  bool slotsOnly = false;
  std::vector<u8> info;                  // the bytes of the info file
  std::vector<u16> megas;                // those with a folder
  std::vector<std::pair<u16, u16>> supers;  // mega and super of those with a file
  std::vector<ChunkCopy> chunks;         // in the order of the tree
  std::vector<u64> heads;                // of the occupied cells of all chunks, one behind the other
  std::vector<u8> tails;                 // likewise, six bytes each, of the chunks that have tails
};

// Where a writer of slots stands in the copy and in the old folder.
struct SlotWriter {
  const ShipCopy *ship = nullptr;
  size_t chunk = 0, head = 0, tail = 0;  // next in the copy
  int oldFolder = -1, oldFile = -1;      // of the mega and the super in the making; -1 when they aren't there
  std::unique_ptr<u8[]> buffer;          // of SlotsAtOnce slots; a small ship touches little of it
};

}  // namespace

bool IsShipStem(const std::string &name) {
  if (name.empty() || name.size() > LongestStem || name[0] == '.') return false;
  for (const char c : name)
    if (c == '/' || static_cast<u8>(c) < ' ' || c == 0x7f) return false;
  return true;
}

template <typename Visit>
static void ForEachSuper(const Ship &ship, Visit visit) {
  const MegaChunk *megas = ship.megaChunks.load();
  for (u16 m = 0; megas != nullptr && m < 1000; ++m) {
    const SuperChunk *supers = megas[m].children.load();
    if (supers == nullptr) continue;
    visit(m, u16{1000}, nullptr);  // the mega itself
    for (u16 s = 0; s < 1000; ++s)
      if (const Chunk *chunks = supers[s].children.load()) visit(m, s, chunks);
  }
}

static unsigned CountCells(const ChunkCells &cells) {
  int count = 0;
  for (const u64 word : cells.occupied) count += std::popcount(word);
  return static_cast<unsigned>(count);
}

static bool IsStored(const Chunk &chunk) { return chunk.cells.load() != nullptr || chunk.slot >= 0; }

// Room for the whole copy, so that nothing behind this runs out of memory.
static bool ReserveCopy(const Ship &ship, ShipCopy *copy) {
  size_t megas = 0, supers = 0, chunks = 0, heads = 0, tails = 0;
  ForEachSuper(ship, [&](u16, u16, const Chunk *children) {
    ++(children == nullptr ? megas : supers);
    for (int c = 0; children != nullptr && c < 1000; ++c) {
      chunks += IsStored(children[c]) ? 1 : 0;
      const ChunkCells *cells = children[c].cells.load();
      if (cells == nullptr) continue;
      heads += CountCells(*cells);
      tails += cells->tails == nullptr ? 0 : 6 * CountCells(*cells);
    }
  });
  return TryReserve(&copy->megas, megas) && TryReserve(&copy->supers, supers) && TryReserve(&copy->chunks, chunks) &&
         TryReserve(&copy->heads, heads) && TryReserve(&copy->tails, tails);
}

static void CopyChunk(const Chunk &chunk, u16 m, u16 s, u16 c, ShipCopy *copy) {
  ChunkCopy &made = copy->chunks.emplace_back();
  made.mega = m;
  made.super = s;
  made.chunk = c;
  made.oldSlot = chunk.slot;
  const ChunkCells *cells = chunk.cells.load();
  if (cells == nullptr) return;
  made.inMemory = true;
  made.hasTails = cells->tails != nullptr;
  std::copy(std::begin(cells->occupied), std::end(cells->occupied), made.occupied);
  ForEachBit(cells->occupied, [&](u16 i) {
    copy->heads.push_back(HeadOfCell(*cells, i));
    if (made.hasTails) PutBytes(&copy->tails, cells->tails[i], 6);
  });
}

static void PackInfo(const Ship &ship, std::vector<u8> *out) {
  PutU16(out, InfoVersion);
  for (const auto &axis : ship.position) PutU64(out, static_cast<u64>(axis.load()));
  for (const auto &axis : ship.velocity) PutU32(out, static_cast<u32>(axis.load()));
}

// The only step of a save for which the world stands still.
static bool CopyShip(const Ship &ship, ShipCopy *copy) {
  ScopedLock world(&WorldMutex);
  copy->stem = ship.fileStem;
  copy->keepAs = ship.keepFolderAs;
  copy->slotsOnly = ship.slotsOnly;
  if (copy->stem == "NULL") return false;
  if (!IsShipStem(copy->stem)) return LogError(("A ship can't be saved under the name " + copy->stem).c_str()) != 0;
  if (!ReserveCopy(ship, copy)) return LogError("Not enough memory to save the ship") != 0;
  PackInfo(ship, &copy->info);
  ForEachSuper(ship, [copy](u16 m, u16 s, const Chunk *chunks) {
    if (chunks == nullptr) copy->megas.push_back(m);
    else copy->supers.emplace_back(m, s);
    for (u16 c = 0; chunks != nullptr && c < 1000; ++c)
      if (IsStored(chunks[c])) CopyChunk(chunks[c], m, s, c, copy);
  });
  return true;
}

static void Close(int *descriptor) {
  if (*descriptor >= 0) close(*descriptor);
  *descriptor = -1;
}

static bool CloseWritten(int file, bool good) {
  good = good && fsync(file) == 0;
  return close(file) == 0 && good;
}

static bool ReadOldSlot(const SlotWriter &w, const ChunkCopy &c, u8 *at) {
  if (w.oldFile >= 0 && ReadAt(w.oldFile, SlotOffset(c.oldSlot), at, SlotBytes) == SlotBytes && (at[0] | at[1] << 8) == c.chunk)
    return true;
  return LogError(("saves/" + w.ship->stem + " lacks a chunk of the ship that isn't in memory").c_str()) != 0;
}

static bool PutSlot(SlotWriter *w, const ChunkCopy &c, u8 *at) {
  const bool carried = !c.inMemory || (w->ship->slotsOnly && c.oldSlot >= 0);
  if (!carried) PackSlot(nullptr, c.chunk, at);
  else if (!ReadOldSlot(*w, c, at)) return false;
  ForEachBit(c.occupied, [&](u16 i) {
    PackRecord(w->ship->heads[w->head++], c.hasTails ? &w->ship->tails[w->tail] : nullptr, at + 2 + i * RecordBytes);
    if (c.hasTails) w->tail += 6;
  });
  return true;
}

static bool InSuper(const SlotWriter &w, u16 mega, u16 super) {
  if (w.chunk == w.ship->chunks.size()) return false;
  const ChunkCopy &c = w.ship->chunks[w.chunk];
  return c.mega == mega && c.super == super;
}

static bool WriteSlots(SlotWriter *w, u16 mega, u16 super, int file) {
  i64 offset = 0;
  while (InSuper(*w, mega, super)) {
    size_t have = 0;
    for (; have < SlotsAtOnce && InSuper(*w, mega, super); ++have, ++w->chunk)
      if (!PutSlot(w, w->ship->chunks[w->chunk], w->buffer.get() + have * SlotBytes)) return false;
    if (!WriteAt(file, offset, w->buffer.get(), have * SlotBytes)) return false;
    offset += static_cast<i64>(have * SlotBytes);
  }
  return true;
}

static bool WriteSuper(SlotWriter *w, u16 mega, u16 super, int folder) {
  const std::string name = SuperName(super);
  const int file = OpenFile(folder, name.c_str(), FileUse::MakeNew);
  if (file < 0) return LogError("Error opening SuperChunk file") != 0;
  w->oldFile = w->oldFolder < 0 ? -1 : OpenFile(w->oldFolder, name.c_str(), FileUse::Read);
  const bool good = WriteSlots(w, mega, super, file);
  Close(&w->oldFile);
  return CloseWritten(file, good);
}

static bool WriteMega(SlotWriter *w, u16 mega, size_t *super, int ship, int oldShip) {
  const std::string name = std::to_string(mega);
  const int folder = mkdirat(ship, name.c_str(), 0777) == 0 ? OpenFolder(ship, name.c_str()) : -1;
  if (folder < 0) return false;
  w->oldFolder = oldShip < 0 ? -1 : OpenFolder(oldShip, name.c_str());
  const auto &supers = w->ship->supers;
  bool good = true;
  for (; good && *super < supers.size() && supers[*super].first == mega; ++*super)
    good = WriteSuper(w, mega, supers[*super].second, folder);
  Close(&w->oldFolder);
  return CloseWritten(folder, good);
}

static bool WriteInfo(const ShipCopy &copy, int ship) {
  const int file = OpenFile(ship, InfoName, FileUse::MakeNew);
  return file >= 0 && CloseWritten(file, WriteAt(file, 0, copy.info.data(), copy.info.size()));
}

static bool WriteShip(const ShipCopy &copy, int ship, int oldShip) {
  SlotWriter w;
  w.ship = &copy;
  w.buffer.reset(new (std::nothrow) u8[SlotsAtOnce * SlotBytes]);
  if (w.buffer == nullptr) return false;
  bool good = WriteInfo(copy, ship);
  size_t super = 0;
  for (size_t m = 0; good && m < copy.megas.size(); ++m) good = WriteMega(&w, copy.megas[m], &super, ship, oldShip);
  return good;
}

// A free name for a folder that is to outlive its replacement, or empty.
static std::string NameToKeep(const std::string &path, const char *ending) {
  struct stat info;
  for (int copy = 1; copy <= 9; ++copy) {
    const std::string name = path + ending + (copy == 1 ? "" : std::to_string(copy));
    if (lstat(name.c_str(), &info) != 0) return name;
  }
  return {};
}

static bool CommitShip(const ShipCopy &copy, FolderReplacement *r) {
  struct stat info;
  const bool keep = copy.keepAs != nullptr && lstat(r->path.c_str(), &info) == 0;
  if (keep) r->kept = NameToKeep(r->path, copy.keepAs);
  if (keep && r->kept.empty()) {
    AbandonFolder(r);
    return LogError((r->path + " can't be kept beside the new one: too many are. Move them away and save again.").c_str()) != 0;
  }
  if (!CommitFolder(r)) return false;
  if (keep) LogWarn(("The folder as it was is kept as " + r->kept).c_str());
  return true;
}

// Writes the new folder and puts it in the old one's place.
static bool ReplaceShip(const ShipCopy &copy) {
  const std::string path = ShipFolder(copy.stem);
  SettleFolder(path.c_str(), InfoName);
  struct stat info;
  if (lstat(path.c_str(), &info) == 0 && !S_ISDIR(info.st_mode))
    return LogError((path + " is there already, and no folder").c_str()) != 0;
  FolderReplacement r;
  bool good = BeginFolder(&r, path.c_str());
  if (good) {
    int oldShip = OpenFolder(AT_FDCWD, path.c_str());
    if (oldShip >= 0) SettleUpdate(oldShip);
    good = WriteShip(copy, r.descriptor, oldShip);
    Close(&oldShip);
  }
  if (good) good = CommitShip(copy, &r);
  else AbandonFolder(&r);
  if (!good) LogError("Couldn't save SuperChunk - Maybe we're out of disk space?");
  return good;
}

// The chunks' places in the new files, in the order in which those were written.
static void RecordSlots(const ShipCopy &copy, Ship *ship) {
  ScopedLock world(&WorldMutex);
  ship->keepFolderAs = nullptr;
  i16 slot = 0;
  for (size_t i = 0; i < copy.chunks.size(); ++i) {
    const ChunkCopy &c = copy.chunks[i];
    const bool sameFile = i > 0 && copy.chunks[i - 1].mega == c.mega && copy.chunks[i - 1].super == c.super;
    slot = sameFile ? static_cast<i16>(slot + 1) : i16{0};
    Chunk *chunk = FindChunk({0, c.chunk, c.super, c.mega}, *ship);
    if (chunk != nullptr) chunk->slot = slot;
  }
}

int SaveShipDirectory(Ship *ship) {
  ScopedLock store(&StoreMutex);
  ShipCopy copy;
  if (!CopyShip(*ship, &copy) || !ReplaceShip(copy)) return 0;
  RecordSlots(copy, ship);
  return 1;
}
