// Checking the tree against itself.
#include "world/verify.h"

#include <algorithm>
#include <set>

#include "world/cells.h"
#include "world/lists.h"

namespace {

struct CheckCounts {
  unsigned kind[ListKinds] = {};
};

}  // namespace

static std::string Fault(const char *what, const CellAddress &a) {
  return std::string(what) + " at " + std::to_string(a.mega) + " " + std::to_string(a.super) + " " + std::to_string(a.chunk) + " " +
         std::to_string(a.block);
}

static void CountListed(u64 head, CheckCounts *counts) {
  const u8 traits = ComponentTraits[HeadComponent(head)];
  if (HeadUnstable(head)) ++counts->kind[ListTemp];
  if ((traits & TraitRemoves) != 0) ++counts->kind[ListRmv];
  if ((traits & TraitAnimated) != 0) ++counts->kind[ListAnim];
  if (HeadState(head) == StateDamaged) ++counts->kind[ListDmg];
}

// What is wrong with a cell, or null.
static const char *CellFault(const ChunkCells &cells, unsigned i) {
  const u64 head = HeadOfCell(cells, i);
  const bool occupied = HeadState(head) != StateEmpty;
  if (CellOccupied(cells, i) != occupied) return "occupied bit";
  if (!occupied && (HeadMaterial(head) != 0 || HeadComponent(head) != 0)) return "free cell with rows";
  const bool hidden = (cells.hidden[i >> 6] >> (i & 63) & 1) != 0;
  if (hidden != (cells.visibility[i] == NotVisible)) return "hidden bit";
  const GraphicBlock *g = GraphicOf(cells, i);
  if (g != nullptr && (g->lightCount > MaxBlockLights || (g->lightCount != 0 && g->lightList == nullptr))) return "lights";
  return nullptr;
}

static std::string ChunkFault(const Chunk &chunk, const ChunkCells &cells, CellAddress a) {
  CheckCounts counts;
  unsigned lamps = 0;
  for (a.block = 0; a.block < CellsPerChunk; ++a.block) {
    const char *fault = CellFault(cells, a.block);
    if (fault != nullptr) return Fault(fault, a);
    if (!CellOccupied(cells, a.block)) continue;
    CountListed(HeadOfCell(cells, a.block), &counts);
    lamps += GivesLight(HeadComponent(HeadOfCell(cells, a.block))) ? 1 : 0;
  }
  if (lamps != cells.lampCount) return Fault("lamp count", a);
  for (int kind = 0; kind < ListKinds; ++kind)
    if (counts.kind[kind] != CheckCount(chunk.checks[kind])) return Fault("chunk counter", a);
  return {};
}

// Whether each counter of a level is the number of children whose own counter isn't 0.
template <typename Level, typename Child>
static bool CountersHold(const Level &level, const Child *children) {
  for (int kind = 0; kind < ListKinds; ++kind) {
    unsigned counted = 0;
    for (int i = 0; children != nullptr && i < 1000; ++i) counted += CheckCount(children[i].checks[kind]) != 0 ? 1 : 0;
    if (counted != CheckCount(level.checks[kind])) return false;
  }
  return true;
}

static bool AnyStale(const ChunkCells &cells) {
  return std::any_of(std::begin(cells.stale), std::end(cells.stale), [](u64 word) { return word != 0; });
}

static bool StaleChunksHold(const Ship &ship) {
  std::set<u64> named;
  for (const CellAddress &a : ship.remains.stale)
    if (!AnyStale(*FindCells(a, ship)) || !named.insert(std::bit_cast<u64>(a)).second) return false;
  size_t stale = 0;
  ForEachChunk(ship, [&stale](const Chunk &, const ChunkCells &cells, const CellAddress &) { stale += AnyStale(cells) ? 1 : 0; });
  return stale == named.size();
}

std::string ShipFault(const Ship &ship) {
  std::string fault;
  ForEachChunk(ship, [&fault](const Chunk &chunk, const ChunkCells &cells, CellAddress a) {
    if (fault.empty()) fault = ChunkFault(chunk, cells, a);
  });
  const MegaChunk *megas = ship.megaChunks.load();
  if (!fault.empty() || megas == nullptr) return fault;
  if (!StaleChunksHold(ship)) return "chunks that wait for light";
  if (!CountersHold(ship, megas)) return "ship counter";
  for (int m = 0; m < 1000; ++m) {
    const SuperChunk *supers = megas[m].children.load();
    if (!CountersHold(megas[m], supers)) return "mega counter";
    for (int s = 0; supers != nullptr && s < 1000; ++s)
      if (!CountersHold(supers[s], supers[s].children.load())) return "super counter";
  }
  return {};
}
