// Packing and unpacking of slots.
#include "persistence/directory_slots.h"

#include <algorithm>
#include <cstring>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "persistence/unpack.h"
#include "world/access.h"
#include "world/cells.h"
#include "world/lists.h"

Mutex StoreMutex{MutexRank::Save, "store", {}};

void PackRecord(u64 head, const u8 *tail, u8 *at) {
  for (int i = 0; i < 8; ++i) at[i] = static_cast<u8>(head >> 8 * i);
  if (tail == nullptr) std::memset(at + 8, 0, 6);
  else std::memcpy(at + 8, tail, 6);
}

void PackSlot(const ChunkCells *cells, u16 chunk, u8 *at) {
  std::memset(at, 0, SlotBytes);
  at[0] = static_cast<u8>(chunk);
  at[1] = static_cast<u8>(chunk >> 8);
  if (cells == nullptr) return;
  ForEachBit(cells->occupied, [cells, at](u16 i) {
    PackRecord(HeadOfCell(*cells, i), cells->tails == nullptr ? nullptr : cells->tails[i], at + 2 + i * RecordBytes);
  });
}

SlotReader BeginSlots(Ship *ship, const std::string &folder, bool blocksToo) {
  SlotReader r;
  r.ship = ship;
  r.folder = folder;
  r.blocksToo = blocksToo;
  const ShipUnpacker stream = BeginUnpack(ship, "");  // what stands in for unknown rows is the same in all forms
  r.placeholderComponent = stream.placeholderComponent;
  r.placeholderMaterial = stream.placeholderMaterial;
  return r;
}

static bool Pay(SlotReader *r, u64 cost) {
  if (cost > r->budget) r->tooLarge = true;
  else r->budget -= cost;
  return !r->tooLarge;
}

Chunk *MakeSuper(SlotReader *r, u16 mega, u16 super) {
  if (!Pay(r, 1000 * sizeof(Chunk))) return nullptr;
  Chunk *chunks = EnsureChunks(mega, super, r->ship);
  r->tooLarge = chunks == nullptr;
  for (int c = 0; chunks != nullptr && c < 1000; ++c) chunks[c].slot = -1;
  return chunks;
}

static u64 HeadOfRecord(SlotReader *r, const u8 *at) {
  u64 head = 0;
  for (int i = 0; i < 8; ++i) head |= u64{at[i]} << 8 * i;
  if (HeadMaterial(head) - 1u >= MaterialCount - 1u) {
    r->unknownRow = true;
    head = (head & ~(u64{0xffff} << 16)) | u64{r->placeholderMaterial} << 16;
  }
  if (HeadComponent(head) - 1u >= ComponentCount - 1u) {
    r->unknownRow = true;
    head = (head & ~(u64{0xffff} << 32)) | u64{r->placeholderComponent} << 32;
  }
  return head;
}

// Which voxels a damaged block lacked is not in the files: it gets bits with none gone, or counts as whole without memory.
// An earlier slot of the chunk may have left its own.
static bool MakeDamageable(SlotReader *r, const CellAddress &a, const ChunkCells &cells) {
  const GraphicBlock *g = GraphicOf(cells, a.block);
  if (g != nullptr && g->damageBits.load() != nullptr) return true;
  const u64 records = g == nullptr ? CellsPerChunk * sizeof(GraphicBlock) : 0;
  return Pay(r, 512 + records) && AllocDamageBits(a, *r->ship);
}

// A block as it was: with its heat and its place on the work lists.
static void PlaceRecord(SlotReader *r, const CellAddress &a, ChunkCells *cells, const u8 *at) {
  u64 head = HeadOfRecord(r, at);
  const bool damaged = HeadState(head) == StateDamaged && MakeDamageable(r, a, *cells);
  if (!damaged && HeadState(head) == StateDamaged) head ^= StateDamaged | StateWhole;
  Block b = BlockFromHead(head);
  std::memcpy(b.tail, at + 8, sizeof b.tail);
  StoreHead(cells, a.block, head & ~HeadUnstableBit);
  WriteTail(b, a.block, cells);
  ListBlock(HeadComponent(head), a, r->ship);
  if (damaged) ListAdd(ListDmg, a, r->ship);
  if (!HeadUnstable(head)) return;
  ScopedLock heat(&HeatMutex);
  MarkTempUnstable(a, r->ship);
}

// The cells of a slot, emptied should an earlier slot have filled them.
static ChunkCells *CellsOfSlot(SlotReader *r, CellAddress a) {
  ChunkCells *cells = FindCells(a, *r->ship);
  if (cells == nullptr) return Pay(r, sizeof(ChunkCells)) ? EnsureChunk(a.mega, a.super, a.chunk, r->ship) : nullptr;
  for (a.block = 0; a.block < CellsPerChunk; ++a.block) {
    if (!CellOccupied(*cells, a.block)) continue;
    UnlistBlock(a, r->ship);
    StoreHead(cells, a.block, 0);
    WriteTail(Block{}, a.block, cells);
  }
  return cells;
}

static bool HasBlocks(const u8 *slot) {
  for (int i = 0; i < CellsPerChunk; ++i)
    if ((slot[2 + i * static_cast<int>(RecordBytes)] & 3) != StateEmpty) return true;
  return false;
}

void ReadSlot(SlotReader *r, u16 mega, u16 super, int slot, const u8 *bytes) {
  CellAddress a{0, static_cast<u16>(bytes[0] | bytes[1] << 8), super, mega};
  if (a.chunk > 999) {
    r->badIndex = true;
    return;
  }
  if (r->blocksToo) {
    if (!HasBlocks(bytes) && FindCells(a, *r->ship) == nullptr) return;  // all were removed: no chunk, until a block comes
    ChunkCells *cells = CellsOfSlot(r, a);
    r->tooLarge = r->tooLarge || cells == nullptr;
    if (cells == nullptr) return;
    for (const u8 *at = bytes + 2; a.block < CellsPerChunk; ++a.block, at += RecordBytes)
      if ((at[0] & 3) != StateEmpty) PlaceRecord(r, a, cells, at);
  }
  FindChunk(a, *r->ship)->slot = static_cast<i16>(slot);
}

bool AllWasRead(const SlotReader &r) {
  return r.strange.empty() && !r.badInfo && !r.badIndex && !r.unknownRow && !r.cut && !r.tooLarge;
}

static void WarnIf(bool fault, const SlotReader &r, const char *text) {
  if (fault) LogWarn(("Ship folder " + r.folder + text).c_str());
}

void ReportSlots(const SlotReader &r) {
  for (const std::string &name : r.strange) WarnIf(true, r, ("/" + name + " can't be read. It was left out.").c_str());
  WarnIf(r.badIndex, r, " has chunks outside every ship. They were left out.");
  WarnIf(r.unknownRow, r, " has blocks that the tables don't know. Placeholders were put in their places.");
  WarnIf(r.cut, r, " has a file that ends within a chunk. All that is whole was loaded.");
  WarnIf(r.tooLarge, r, " is too large. The rest of it was left out.");
}

int LeadingNumber(const std::string &name) {
  int number = -1;
  for (const char c : name) {
    if (c < '0' || c > '9') break;
    number = std::max(number, 0) * 10 + (c - '0');
    if (number > 999) return -1;
  }
  return number;
}
