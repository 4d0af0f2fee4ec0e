// Heat of blocks. The flow out of a block is worked out against the temperatures of the round before; a chunk's heat shadow
// holds what the round makes of them.
#include "world/heat.h"

#include <algorithm>
#include <cassert>
#include <new>

#include "content/materials.h"
#include "core/log.h"
#include "platform/threads.h"
#include "world/access.h"
#include "world/cells.h"
#include "world/lists.h"

constexpr i16 LeastDifference = 4;  // quarter degrees; less moves nothing

static const Material &MaterialOf(const Block &b) { return Materials[static_cast<size_t>(b.material)]; }

static float FlowBetween(float conductivity, u16 from, u16 to) {
  const i16 d = static_cast<i16>(from - to);
  return d < LeastDifference ? 0.0f : conductivity * static_cast<float>(d) * 0.25f;
}

static void SetTemperature(ChunkCells *cells, unsigned i, u16 temp) {
  Block b = BlockFromHead(HeadOfCell(*cells, i));
  b.temp = temp;
  StoreHead(cells, i, HeadOf(b));
}

void HeatHook(const Ship &) {}

float BlockHeatFlow(const Block &a, const Block &b) {
  const int conductivity = MaterialOf(a).conductivity + MaterialOf(b).conductivity;
  return FlowBetween(static_cast<float>(conductivity) * 0.5f, static_cast<u16>(a.temp), static_cast<u16>(b.temp));
}

float AmbientHeatFlow(const Block &a, u16 t) {
  return FlowBetween(static_cast<float>(MaterialOf(a).conductivity), static_cast<u16>(a.temp), t);
}

i32 HeatToQuarter(float flow, const Block &b) {
  return FloatToInt((flow / static_cast<float>(MaterialOf(b).heatCapacity) + 0.125f) * 4.0f);
}

float NeighbourHeatFlow(u16 x, u16 y, u16 z, const Ship &ship, const Block &a, u16 limit, Block *out, HeatEntry **outShadow) {
  assert(HoldsMutex(&HeatMutex));
  Block cell;
  if (GetBlock(&cell, x, y, z, ship) != ReadFound || cell.temp > limit) return 0;
  const float flow = BlockHeatFlow(a, cell);
  if (flow == 0) return 0;
  const CellAddress at = AddressOf(x, y, z);
  HeatEntry *shadow = GetHeatShadow(FindChunk(at, ship));
  if (shadow == nullptr) return 0;
  *out = cell;
  out->tempUnstable = HeadUnstable(HeadAt(x, y, z, ship));
  *outShadow = shadow + at.block;
  return flow;
}

HeatEntry *GetHeatShadow(Chunk *chunk) {
  assert(HoldsMutex(&HeatMutex));
  if (chunk->heatShadow != nullptr) return chunk->heatShadow;
  HeatEntry *shadow = new (std::nothrow) HeatEntry[CellsPerChunk];
  if (shadow == nullptr) {
    LogError("Not enough memory for temperatures");
    return nullptr;
  }
  const ChunkCells *cells = chunk->cells.load(std::memory_order_acquire);
  if (cells != nullptr)
    ForEachBit(cells->occupied, [&](u16 i) {
      const Block b = BlockFromHead(HeadOfCell(*cells, i));
      shadow[i].due = b.tempUnstable;
      shadow[i].temp = b.temp;
    });
  return chunk->heatShadow = shadow;
}

static void MarkNeighbours(u16 x, u16 y, u16 z, Ship *ship) {
  for (int axis = 0; axis < 3; ++axis)
    for (int sign = 1; sign >= -1; sign -= 2) {
      u16 c[3] = {x, y, z};
      c[axis] = static_cast<u16>(c[axis] + sign);
      if (BlockExists(c[0], c[1], c[2], *ship)) MarkTempUnstable(AddressOf(c[0], c[1], c[2]), ship);
    }
}

int AddHeat(u16 x, u16 y, u16 z, Ship *ship, float degrees) {
  assert(HoldsMutex(&WorldMutex) && HoldsMutex(&HeatMutex));
  Block b;
  const int code = GetBlock(&b, x, y, z, *ship);
  if (code != ReadFound) return code;
  const CellAddress a = AddressOf(x, y, z);
  Chunk *chunk = FindChunk(a, *ship);
  HeatEntry *shadow = GetHeatShadow(chunk);
  if (shadow == nullptr) return 0;
  MarkTempUnstable(a, ship);
  MarkNeighbours(x, y, z, ship);
  const i64 heated = static_cast<i64>(b.temp) + DegreesToQuarter(degrees);
  const u16 temp = static_cast<u16>(std::clamp<i64>(heated, 0, 65535));
  SetTemperature(chunk->cells.load(std::memory_order_relaxed), a.block, temp);
  shadow[a.block].temp = temp;
  return code;
}

void MarkHeatDue(const CellAddress &a, Ship *ship) {
  Chunk *chunk = FindChunk(a, *ship);
  HeatEntry *shadow = chunk == nullptr ? nullptr : GetHeatShadow(chunk);
  const ChunkCells *cells = chunk == nullptr ? nullptr : chunk->cells.load(std::memory_order_relaxed);
  if (shadow == nullptr || cells == nullptr) return;
  HeatEntry *entry = shadow + a.block;
  if (!HeadUnstable(HeadOfCell(*cells, a.block)) && (entry->due & 1) == 0) ListAdd(ListTemp, a, ship);
  entry->due |= 1;
}
