// Who is lit by whom.
#include "world/light.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

#include "content/options.h"
#include "core/log.h"
#include "core/utils.h"
#include "gameplay/ray.h"
#include "world/access.h"
#include "world/cells.h"

bool KeepLight = true;
thread_local bool ShadowsLater = false;

// What a lamp costs as such, and how much dearer a cell is with shadows.
constexpr u64 LampCost = 64, ShadowCost = 20;
constexpr int MostBlocksPassed = 5;  // a cell behind more of them stays dark

namespace {

// The cube of cells that a scan round c looks at, as far as it lies in the ship's: one short on the upper side.
struct Cube {
  int low[3], high[3];
};

}  // namespace

static Cube CubeAround(u16 x, u16 y, u16 z) {
  const int c[3] = {x, y, z};
  Cube cube;
  for (int axis = 0; axis < 3; ++axis) {
    cube.low[axis] = std::max(c[axis] - LightRadius, 0);
    cube.high[axis] = std::min(c[axis] + LightRadius - 1, CellsPerAxis - 1);
  }
  return cube;
}

// A lamp so near to a low face of the cube casts nothing; a block there still takes in the light of others.
static bool TooLowToCast(u16 x, u16 y, u16 z) { return x < LightRadius || y < LightRadius || z < LightRadius; }

// Calls visit(chunk, cells, index, x, y, z) for the occupied cells of a cube, chunk by chunk; wanted(cells) chooses chunks.
template <typename Wanted, typename Visit>
static void ForEachInCube(const Cube &cube, const Ship &ship, Wanted wanted, Visit visit) {
  for (int cz = cube.low[2] / 10; cz <= cube.high[2] / 10; ++cz)
    for (int cy = cube.low[1] / 10; cy <= cube.high[1] / 10; ++cy)
      for (int cx = cube.low[0] / 10; cx <= cube.high[0] / 10; ++cx) {
        const CellAddress a = AddressOf(static_cast<unsigned>(cx * 10), static_cast<unsigned>(cy * 10), static_cast<unsigned>(cz * 10));
        Chunk *chunk = FindChunk(a, ship);
        ChunkCells *cells = chunk == nullptr ? nullptr : chunk->cells.load(std::memory_order_acquire);
        if (cells == nullptr || !wanted(*cells)) continue;
        ForEachBit(cells->occupied, [&](u16 i) {
          const int x = cx * 10 + i % 10, y = cy * 10 + i / 10 % 10, z = cz * 10 + i / 100;
          if (x < cube.low[0] || x > cube.high[0] || y < cube.low[1] || y > cube.high[1] || z < cube.low[2] || z > cube.high[2])
            return;
          visit(*chunk, *cells, i, x, y, z);
        });
      }
}

// Entries that an allocation of this many holds: few steps, so that a list seldom moves.
static unsigned LightCapacity(unsigned count) { return count <= 3 ? 3 : count <= 8 ? 8 : MaxBlockLights; }

static bool ResizeLights(GraphicBlock *g, unsigned capacity) {
  void *moved = std::realloc(g->lightList, capacity * sizeof(LightEntry));
  if (moved == nullptr) return false;
  g->lightList = static_cast<LightEntry *>(moved);
  return true;
}

static u8 DistanceOf(const LightEntry &e) { return LampDistance(e.dx, e.dy, e.dz); }

static LightEntry *PlaceInFullList(LightEntry *list, const LightEntry &entry) {
  u8 distances[MaxBlockLights];
  std::transform(list, list + MaxBlockLights, distances, DistanceOf);
  return list + PlaceInFullList(distances, DistanceOf(entry));
}

static int AddEntry(GraphicBlock *g, const LightEntry &entry) {
  if (g->lightCount >= MaxBlockLights) {
    *PlaceInFullList(g->lightList, entry) = entry;
  } else {
    const unsigned capacity = LightCapacity(g->lightCount + 1u);
    if (g->lightList == nullptr || (g->lightCount != 0 && capacity != LightCapacity(g->lightCount)))
      if (!ResizeLights(g, capacity)) return LogError("Unallocated graphicblock");
    g->lightList[g->lightCount++] = entry;
  }
  if (g->cache != nullptr) g->cacheDirty = true;
  return ReadFound;
}

static int RemoveEntry(GraphicBlock *g, int dx, int dy, int dz) {
  if (g->lightCount == 0) {
    if (g->cache != nullptr) g->cacheDirty = true;
    g->cacheState[0] = g->cacheState[1] = g->cacheState[2] = 0;
    return 6;
  }
  if (g->lightCount == 1) {  // goes whatever its offset
    g->lightCount = 0;
    if (g->cache != nullptr) g->cacheDirty = true;
    return ReadFound;
  }
  LightEntry *end = g->lightList + g->lightCount;
  LightEntry *found = std::find_if(g->lightList, end, [&](const LightEntry &e) { return e.dx == dx && e.dy == dy && e.dz == dz; });
  if (found == end) return 6;
  std::copy(found + 1, end, found);
  --g->lightCount;
  if (LightCapacity(g->lightCount) != LightCapacity(g->lightCount + 1u)) ResizeLights(g, LightCapacity(g->lightCount));
  if (g->cache != nullptr) g->cacheDirty = true;
  return ReadFound;
}

// The walk that both public entry operations begin with. Code 5 gives the cell's record, made at need.
static int FindRecord(u16 x, u16 y, u16 z, const Ship &ship, bool make, GraphicBlock **out) {
  *out = nullptr;
  if (x >= CellsPerAxis || y >= CellsPerAxis || z >= CellsPerAxis) return LogErrorAt(x, y, z, "Block Light attempt outside bounds");
  Block ignored;
  const int code = GetBlock(&ignored, x, y, z, ship);
  if (code != ReadFound) return code;
  const CellAddress a = AddressOf(x, y, z);
  Chunk *chunk = FindChunk(a, ship);
  ChunkCells *cells = chunk->cells.load(std::memory_order_acquire);
  GraphicBlock *graphics = make ? EnsureGraphics(cells, *chunk) : cells->graphicBlocks.load(std::memory_order_acquire);
  if (graphics != nullptr) *out = graphics + a.block;
  return code;
}

int AddLightEntry(const LightEntry &entry, u16 x, u16 y, u16 z, const Ship &ship) {
  GraphicBlock *g;
  const int code = FindRecord(x, y, z, ship, true, &g);
  if (code != ReadFound) return code;
  if (g == nullptr) return LogError("Unallocated graphicblock");
  return AddEntry(g, entry);
}

int RemoveLightEntry(i8 dx, i8 dy, i8 dz, u16 x, u16 y, u16 z, const Ship &ship) {
  GraphicBlock *g;
  const int code = FindRecord(x, y, z, ship, false, &g);
  if (code != ReadFound) return code;
  return g == nullptr ? 6 : RemoveEntry(g, dx, dy, dz);
}

bool SetLightList(GraphicBlock *g, const LightEntry *entries, unsigned count) {
  g->lightCount = 0;
  if (!ResizeLights(g, LightCapacity(count))) return false;
  std::copy_n(entries, count, g->lightList);
  g->lightCount = static_cast<u8>(count);
  return true;
}

// Most steps leave the ray in the block where it was: it is counted once.
int BlocksBetween(Cell3 cell, Cell3 lamp, const Ship &ship) {
  Ray ray = NewCellRay(cell, lamp);
  const u64 lampAddress = std::bit_cast<u64>(AddressOf(lamp.x, lamp.y, lamp.z));
  u64 last = ~u64{0};
  for (int blocks = 0;;) {
    const int answer = StepCellRay(&ray, ship);
    if (answer == RaySpent || answer == RayAtDest) return blocks;
    const u64 now = std::bit_cast<u64>(ray.at);
    if (answer != RaySolid || now == last) continue;
    last = now;
    if (++blocks > MostBlocksPassed) return now == lampAddress ? blocks : -1;
  }
}

static bool CastsShadows() { return Options.ExperimentalLight && !ShadowsLater; }

u32 CastLight(u16 sx, u16 sy, u16 sz, u8 red, u8 green, u8 blue, const Ship &ship) {
  u32 lit = 0;
  if (!KeepLight || TooLowToCast(sx, sy, sz)) return lit;
  const bool shadows = CastsShadows();
  ForEachInCube(CubeAround(sx, sy, sz), ship, [](const ChunkCells &) { return true; },
                [&](Chunk &chunk, ChunkCells &cells, u16 i, int x, int y, int z) {
    const int dx = sx - x, dy = sy - y, dz = sz - z;
    if (LampDistance(dx, dy, dz) >= LightRadius) return;
    int hops = 0;
    if (shadows && (dx != 0 || dy != 0 || dz != 0)) {
      hops = BlocksBetween({static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z)}, {sx, sy, sz}, ship);
      if (hops < 0) return;
    }
    GraphicBlock *graphics = EnsureGraphics(&cells, chunk);
    if (graphics == nullptr) return;
    AddEntry(graphics + i, {static_cast<i8>(dx), static_cast<i8>(dy), static_cast<i8>(dz), red, green, blue, static_cast<u8>(hops)});
    ++lit;
  });
  return lit;
}

void TakeLightAway(u16 sx, u16 sy, u16 sz, const Ship &ship) {
  if (!KeepLight) return;
  ForEachInCube(CubeAround(sx, sy, sz), ship, [](const ChunkCells &cells) { return cells.graphicBlocks.load() != nullptr; },
                [&](Chunk &, ChunkCells &cells, u16 i, int x, int y, int z) {
    RemoveEntry(GraphicOf(cells, i), sx - x, sy - y, sz - z);
  });
}

static u32 CastFrom(u16 x, u16 y, u16 z, u64 head, const Ship &ship) {
  const Component &c = Components[HeadComponent(head)];
  return CastLight(x, y, z, c.lightRed, c.lightGreen, c.lightBlue, ship);
}

bool LightPassWithin(Ship *ship, u64 *cost) {
  if (!KeepLight) return true;
  bool whole = true;
  const u64 dearer = Options.ExperimentalLight ? ShadowCost : 1;
  ForEachChunk(*ship, [&](Chunk &chunk, ChunkCells &cells, CellAddress) {
    if (cells.lampCount == 0) return;
    ForEachBit(cells.occupied, [&](u16 i) {
      const u64 head = HeadOfCell(cells, i);
      if (!GivesLight(HeadComponent(head))) return;
      whole = whole && *cost != 0;
      if (!whole) return;
      *cost -= std::min(*cost, LampCost + dearer * CastFrom(CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i), head, *ship));
    });
  });
  return whole;
}

void LightPass(Ship *ship) {
  u64 cost = UINT64_MAX;
  LightPassWithin(ship, &cost);
}

void ClearLights(const Ship &ship) {
  ForEachChunk(ship, [](Chunk &, ChunkCells &cells, CellAddress) {
    GraphicBlock *graphics = cells.graphicBlocks.load();
    if (graphics == nullptr) return;
    ForEachBit(cells.occupied, [&](u16 i) {
      GraphicBlock &g = graphics[i];
      if (g.lightCount == 0) return;
      g.lightCount = 0;
      g.lightId = 0;
      std::free(g.lightList);
      g.lightList = nullptr;
    });
  });
}

void TakeInLights(u16 x, u16 y, u16 z, const Ship &ship) {
  if (!KeepLight) return;
  struct Lamp {
    u16 x, y, z;
    u64 head;
  };
  std::vector<Lamp> lamps;  // few; in the order of a plain scan, which decides who stays in a full list
  ForEachInCube(CubeAround(x, y, z), ship, [](const ChunkCells &cells) { return cells.lampCount != 0; },
                [&](Chunk &, ChunkCells &cells, u16 i, int lx, int ly, int lz) {
    const u64 head = HeadOfCell(cells, i);
    const int dx = lx - x, dy = ly - y, dz = lz - z;
    if (!GivesLight(HeadComponent(head)) || (dx == 0 && dy == 0 && dz == 0)) return;
    if (LampDistance(dx, dy, dz) < LightRadius) lamps.push_back({static_cast<u16>(lx), static_cast<u16>(ly), static_cast<u16>(lz), head});
  });
  std::sort(lamps.begin(), lamps.end(), [](const Lamp &a, const Lamp &b) {
    return a.x != b.x ? a.x < b.x : a.y != b.y ? a.y < b.y : a.z < b.z;
  });
  for (const Lamp &lamp : lamps) {
    if (CastsShadows()) {
      TakeLightAway(lamp.x, lamp.y, lamp.z, ship);
      CastFrom(lamp.x, lamp.y, lamp.z, lamp.head, ship);
      continue;
    }
    const Component &c = Components[HeadComponent(lamp.head)];
    AddLightEntry({static_cast<i8>(lamp.x - x), static_cast<i8>(lamp.y - y), static_cast<i8>(lamp.z - z), c.lightRed, c.lightGreen,
                   c.lightBlue, 0}, x, y, z, ship);
  }
}
