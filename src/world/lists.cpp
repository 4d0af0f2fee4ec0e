// The counters of the work lists.
#include "world/lists.h"

#include "content/components.h"
#include "platform/threads.h"
#include "world/access.h"
#include "world/cells.h"

namespace {

// The four counters of one kind above a cell, chunk first.
struct Counters {
  u16 *level[4];
};

}  // namespace

static Counters CountersOf(ListKind kind, const CellAddress &a, Ship *ship) {
  MegaChunk *mega = &ship->megaChunks.load(std::memory_order_relaxed)[a.mega];
  SuperChunk *super = &mega->children.load(std::memory_order_relaxed)[a.super];
  Chunk *chunk = &super->children.load(std::memory_order_relaxed)[a.chunk];
  return {{&chunk->checks[kind], &super->checks[kind], &mega->checks[kind], &ship->checks[kind]}};
}

static void Change(u16 *counter, int by) {
  *counter = static_cast<u16>((*counter & 0xfc00) | ((CheckCount(*counter) + static_cast<unsigned>(by)) & 0x3ff));
}

void ListAdd(ListKind kind, const CellAddress &a, Ship *ship) {
  const Counters counters = CountersOf(kind, a, ship);
  // A parent counts a child only while the child still reads 0: from the top down.
  for (int i = 3; i > 0; --i)
    if (CheckCount(*counters.level[i - 1]) == 0) Change(counters.level[i], 1);
  Change(counters.level[0], 1);
}

void ListRemove(ListKind kind, const CellAddress &a, Ship *ship) {
  const Counters counters = CountersOf(kind, a, ship);
  if (CheckCount(*counters.level[0]) == 0) return;
  for (u16 *counter : counters.level) {
    if (CheckCount(*counter) >= 2) {
      Change(counter, -1);
      return;
    }
    *counter = static_cast<u16>(*counter & 0xfc00);
  }
}

void MarkTempUnstable(const CellAddress &a, Ship *ship) {
  ChunkCells *cells = FindCells(a, *ship);
  if (HeadUnstable(cells->heads[a.block].fetch_or(HeadUnstableBit))) return;
  ListAdd(ListTemp, a, ship);
}

void ClearTempUnstable(const CellAddress &a, Ship *ship) {
  ChunkCells *cells = FindCells(a, *ship);
  if (!HeadUnstable(cells->heads[a.block].fetch_and(~HeadUnstableBit))) return;
  ListRemove(ListTemp, a, ship);
}

void ListBlock(u16 component, const CellAddress &a, Ship *ship) {
  const u8 traits = ComponentTraits[component];
  if ((traits & TraitAnimated) != 0) ListAdd(ListAnim, a, ship);
  if ((traits & TraitRemoves) != 0) ListAdd(ListRmv, a, ship);
}

void UnlistBlockNoHeat(const CellAddress &a, Ship *ship) {
  const u64 head = HeadOfCell(*FindCells(a, *ship), a.block);
  const u8 traits = ComponentTraits[HeadComponent(head)];
  if ((traits & TraitAnimated) != 0) ListRemove(ListAnim, a, ship);
  if ((traits & TraitRemoves) != 0) ListRemove(ListRmv, a, ship);
  if (HeadState(head) == StateDamaged) ListRemove(ListDmg, a, ship);
}

void UnlistBlock(const CellAddress &a, Ship *ship) {
  {
    ScopedLock heat(&HeatMutex);
    ClearTempUnstable(a, ship);
  }
  UnlistBlockNoHeat(a, ship);
}

void StatePass(const Ship &ship) {
  ForEachChunk(ship, [&ship](Chunk &chunk, ChunkCells &cells, CellAddress) {
    ForEachBit(cells.occupied, [&](u16 i) { RefreshVisibility(CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i), ship); });
  });
}
