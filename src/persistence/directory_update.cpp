// One block into a ship's files. A kill at any moment leaves the old block or the new one: bytes within one page reach the
// file at once; a record on the border of two pages goes into a copy of the file that takes its place; and a slot begins to
// count with its last byte, behind a sync of all others.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "core/log.h"
#include "core/utils.h"
#include "persistence/directory_slots.h"
#include "persistence/directory_store.h"
#include "platform/folders.h"
#include "world/cells.h"

constexpr u16 LowestUpdate = 2, HighestUpdate = 9998;
constexpr i64 PageBytes = 4096;  // what every system writes at once
constexpr size_t CopyBytes = 1 << 20;

// One update on its way. Descriptors are -1 while they aren't open.
struct BlockUpdate {
  CellAddress at{};
  u8 record[RecordBytes] = {};
  Ship *ship = nullptr;
  std::string path, name;  // of the ship's folder, and of the file in its mega's folder
  int slot = -1;
  bool inMemory = false;   // the chunk has blocks in memory
  int megaFolder = -1, file = -1;
};

static i64 RecordOffset(const BlockUpdate &u) {
  return SlotOffset(u.slot) + 2 + static_cast<i64>(u.at.block * RecordBytes);
}

// Finds the chunk's entry, with the levels above it, and where the ship's files are.
static bool FindEntry(BlockUpdate *u) {
  ScopedLock world(&WorldMutex);
  if (u->ship->megaChunks.load() == nullptr && !AllocShipTable(u->ship)) return LogError("Could not allocate block") != 0;
  const Chunk *chunks = EnsureChunks(u->at.mega, u->at.super, u->ship);
  if (chunks == nullptr) return LogError("Could not allocate block") != 0;
  u->slot = chunks[u->at.chunk].slot;
  u->inMemory = chunks[u->at.chunk].cells.load() != nullptr;
  u->path = ShipFolder(u->ship->fileStem);
  u->name = SuperName(u->at.super);
  return IsShipStem(u->ship->fileStem) && u->ship->fileStem != "NULL";
}

static bool OpenMegaFolder(BlockUpdate *u) {
  SettleFolder(u->path.c_str());
  const int ship = OpenFolder(AT_FDCWD, u->path.c_str());
  if (ship < 0) return LogError("Can't find ship directory to save block update to") != 0;
  const std::string mega = std::to_string(u->at.mega);
  const bool made = mkdirat(ship, mega.c_str(), 0777) == 0;
  u->megaFolder = OpenFolder(ship, mega.c_str());
  if (made) fsync(ship);
  close(ship);
  return true;
}

static bool OpenSuper(BlockUpdate *u, FileUse use) {
  u->file = u->megaFolder < 0 ? -1 : OpenFile(u->megaFolder, u->name.c_str(), use);
  return u->file >= 0 || LogError("Coult not open superchunk file to save block update") != 0;
}

static bool SlotIsTheChunks(const BlockUpdate &u, int slot) {
  u8 index[2];
  return FileLength(u.file) >= SlotOffset(slot + 1) && ReadAt(u.file, SlotOffset(slot), index, 2) == 2 &&
         (index[0] | index[1] << 8) == u.at.chunk;
}

// The slot that a load would take for the chunk's, or -1.
static int FindSlot(const BlockUpdate &u) {
  int slot = static_cast<int>(std::min<i64>(FileLength(u.file) / static_cast<i64>(SlotBytes), MaxSlots)) - 1;
  while (slot >= 0 && !SlotIsTheChunks(u, slot)) --slot;
  return slot;
}

static void PackChunkNow(const BlockUpdate &u, u8 *slot) {
  ScopedLock world(&WorldMutex);
  PackSlot(FindCells(u.at, *u.ship), u.at.chunk, slot);
}

static void KeepSlot(const BlockUpdate &u) {
  ScopedLock world(&WorldMutex);
  FindChunk(u.at, *u.ship)->slot = static_cast<i16>(u.slot);
}

// Appends the chunk as it is in memory, with the new block in it. What an append that was cut off left is overwritten.
static bool AppendSlot(BlockUpdate *u) {
  u8 slot[SlotBytes];
  PackChunkNow(*u, slot);
  std::copy(std::begin(u->record), std::end(u->record), slot + 2 + u->at.block * RecordBytes);
  const i64 length = FileLength(u->file);
  if (length < 0 || length >= SlotOffset(MaxSlots)) return false;
  u->slot = static_cast<int>(length / static_cast<i64>(SlotBytes));
  const i64 offset = SlotOffset(u->slot);
  if (length != offset) LogWarn((u->path + "/" + std::to_string(u->at.mega) + "/" + u->name + " ended within a chunk").c_str());
  bool good = ftruncate(u->file, offset) == 0 && WriteAt(u->file, offset, slot, SlotBytes - 1) && fdatasync(u->file) == 0;
  good = good && WriteAt(u->file, offset + static_cast<i64>(SlotBytes) - 1, slot + SlotBytes - 1, 1) && fsync(u->file) == 0;
  if (!good) {
    if (ftruncate(u->file, offset) != 0) LogWarn("A chunk that could not be stored whole stays at the end of its file");
    return false;
  }
  fsync(u->megaFolder);
  KeepSlot(*u);
  return true;
}

static bool CopyBytesTo(int from, int to) {
  std::vector<u8> buffer;
  if (!TryReserve(&buffer, CopyBytes)) return false;
  buffer.resize(CopyBytes);
  for (i64 offset = 0;;) {
    const size_t got = ReadAt(from, offset, buffer.data(), CopyBytes);
    if (!WriteAt(to, offset, buffer.data(), got)) return false;
    offset += static_cast<i64>(got);
    if (got < CopyBytes) return offset == FileLength(from);
  }
}

// Writes the record into a copy of the file, which then takes the file's place. Its name begins with a dot: no reader
// takes what a kill leaves of it for a file of the store.
static bool ReplaceRecord(const BlockUpdate &u) {
  const std::string temporary = "." + u.name + ".tmp";
  unlinkat(u.megaFolder, temporary.c_str(), 0);
  const int copy = OpenFile(u.megaFolder, temporary.c_str(), FileUse::MakeNew);
  if (copy < 0) return false;
  bool good = CopyBytesTo(u.file, copy) && WriteAt(copy, RecordOffset(u), u.record, RecordBytes) && fsync(copy) == 0;
  good = close(copy) == 0 && good;
  good = good && renameat(u.megaFolder, temporary.c_str(), u.megaFolder, u.name.c_str()) == 0;
  if (good) fsync(u.megaFolder);
  else unlinkat(u.megaFolder, temporary.c_str(), 0);
  return good;
}

static bool WriteRecord(const BlockUpdate &u) {
  const bool onePage = RecordOffset(u) % PageBytes <= PageBytes - static_cast<i64>(RecordBytes);
  return onePage ? WriteAt(u.file, RecordOffset(u), u.record, RecordBytes) : ReplaceRecord(u);
}

// A chunk whose slot is not where it was, because another save replaced the files, or that is known from its file only, may
// have one all the same: a new one without its blocks would hide them.
static void CheckSlot(BlockUpdate *u) {
  if (u->slot >= 0 ? SlotIsTheChunks(*u, u->slot) : u->inMemory) return;
  u->slot = FindSlot(*u);
  if (u->slot >= 0) KeepSlot(*u);
}

static bool StoreRecord(BlockUpdate *u) {
  if (!OpenSuper(u, u->slot < 0 ? FileUse::ChangeOrMake : FileUse::Change)) return false;
  CheckSlot(u);
  const bool stored = u->slot >= 0 ? WriteRecord(*u) : AppendSlot(u);
  if (!stored) LogError(("Could not write " + u->path + "/" + std::to_string(u->at.mega) + "/" + u->name + ". The old block stays.").c_str());
  return stored;
}

int SaveBlockUpdate(const Block &b, u16 x, u16 y, u16 z, Ship *ship) {
  for (const u16 c : {x, y, z})
    if (c < LowestUpdate || c > HighestUpdate) return LogError("Massively out of bounds block update sent. Ignoring.");
  ScopedLock store(&StoreMutex);
  BlockUpdate u;
  u.at = AddressOf(x, y, z);
  u.ship = ship;
  PackRecord(HeadOf(b), b.tail, u.record);
  if (!FindEntry(&u)) return LogError("Can't find ship directory to save block update to");
  const bool stored = OpenMegaFolder(&u) && StoreRecord(&u);
  if (u.file >= 0) close(u.file);
  if (u.megaFolder >= 0) close(u.megaFolder);
  return stored;
}
