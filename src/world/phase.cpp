// Which blocks change their phase, and how.
#include "world/phase.h"

#include <cassert>

#include "content/components.h"
#include "content/materials.h"
#include "net/edits.h"
#include "platform/threads.h"
#include "world/cells.h"
#include "world/heat.h"
#include "world/light.h"
#include "world/lists.h"

namespace {

struct CellPlace {
  u16 x, y, z;
};

}  // namespace

// The coordinate whose digit stands at scale 1, 10 or 100 of each index.
static u16 Coordinate(const CellAddress &a, unsigned scale) {
  unsigned c = 0;
  for (const unsigned index : {a.mega, a.super, a.chunk, a.block}) c = 10 * c + index / scale % 10;
  return static_cast<u16>(c);
}

static CellPlace PlaceOf(const CellAddress &a) { return {Coordinate(a, 1), Coordinate(a, 10), Coordinate(a, 100)}; }

static int ChangePhase(u16 component, const CellAddress &a, Ship *ship) {
  const CellPlace at = PlaceOf(a);
  return SetBlockComponentNetworked(component, at.x, at.y, at.z, ship);
}

int MeltBlock(const CellAddress &a, Ship *ship) {
  const ChunkCells *cells = FindCells(a, *ship);
  if (cells == nullptr || !CellOccupied(*cells, a.block)) return 0;
  if (GivesLight(HeadComponent(HeadOfCell(*cells, a.block)))) {
    const CellPlace at = PlaceOf(a);
    TakeLightAway(at.x, at.y, at.z, *ship);
  }
  return ChangePhase(LiquidComponent, a, ship);
}

int BoilBlock(const CellAddress &a, Ship *ship) { return ChangePhase(GasComponent, a, ship); }

int SolidifyBlock(const CellAddress &a, Ship *ship) { return ChangePhase(SolidifiedComponent, a, ship); }

// Gas belongs above the boiling point and all else below it; liquid belongs above the melting point and all else below it.
static bool OnWrongSide(const Block &b) {
  const Material &material = Materials[static_cast<size_t>(b.material)];
  const bool gas = b.component == GasComponent, liquid = b.component == LiquidComponent;
  const i32 temp = b.temp, boiling = DegreesToQuarter(material.boilingPoint), melting = DegreesToQuarter(material.meltingPoint);
  return (gas ? temp < boiling : temp > boiling) || (liquid ? temp < melting : temp > melting);
}

static int ScanChunk(const ChunkCells &cells, CellAddress a, Ship *ship) {
  int due = 0;
  ForEachBit(cells.occupied, [&](u16 i) {
    const u64 head = HeadOfCell(cells, i);
    if (!HeadUnstable(head) || !OnWrongSide(BlockFromHead(head))) return;
    a.block = i;
    MarkTempUnstable(a, ship);
    ++due;
  });
  return due;
}

template <typename Level>
static bool HasUnstable(const Level &level) { return CheckCount(level.checks[ListTemp]) != 0; }

static int ScanSuper(const SuperChunk &super, CellAddress a, Ship *ship) {
  int due = 0;
  const Chunk *chunks = super.children.load(std::memory_order_relaxed);
  for (a.chunk = 0; a.chunk < 1000; ++a.chunk) {
    const ChunkCells *cells = chunks[a.chunk].cells.load(std::memory_order_relaxed);
    if (HasUnstable(chunks[a.chunk]) && cells != nullptr) due += ScanChunk(*cells, a, ship);
  }
  return due;
}

int ScanPhaseChange(Ship *ship) {
  assert(HoldsMutex(&WorldMutex));
  ScopedLock heat(&HeatMutex);
  int due = 0;
  const MegaChunk *megas = ship->megaChunks.load(std::memory_order_relaxed);
  if (!HasUnstable(*ship)) return due;
  CellAddress a{};
  for (a.mega = 0; a.mega < 1000; ++a.mega) {
    if (!HasUnstable(megas[a.mega])) continue;
    const SuperChunk *supers = megas[a.mega].children.load(std::memory_order_relaxed);
    for (a.super = 0; a.super < 1000; ++a.super)
      if (HasUnstable(supers[a.super])) due += ScanSuper(supers[a.super], a, ship);
  }
  return due;
}
