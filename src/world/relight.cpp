// Which cells an edit may have lit wrongly, and their lists anew.
//
// A cast goes from a lamp to all cells around it. Here it is turned round: a cell asks all lamps around it, in the order in which
// LightPass casts them, so that a cell is right from one moment to the next and a slice of the work may end anywhere.
#include "world/relight.h"

#include <algorithm>
#include <cstring>

#include "content/options.h"
#include "world/cells.h"
#include "world/light.h"

namespace {

constexpr int Reach = LightRadius - 1;      // blocks from a lamp to the farthest cell that it lights, on one axis
constexpr size_t MostShadesApart = 32;      // from so many lamps on, shade is looked for all around a cell
constexpr u64 StepsOfCell = 10, StepsOfChunk = 500, StepsOfLight = 3, StepsOfRay = 60;  // asking one lamp is a step

struct Box {
  int low[3], high[3];  // both in it
};

struct Lamp {
  int at[3];
  u8 red, green, blue;
};

std::vector<CellAddress> LampChunks;  // of FindLamps, which finds up to a few hundred thousand; kept from call to call
std::vector<Lamp> Lamps;              // those that may light the chunk that is worked at; world mutex both

Box BoxAround(const int (&at)[3], int below, int above) {
  Box box;
  for (int axis = 0; axis < 3; ++axis) {
    box.low[axis] = std::max(at[axis] - below, 0);
    box.high[axis] = std::min(at[axis] + above, CellsPerAxis - 1);
  }
  return box;
}

// Calls visit(address, first cell) for the chunks of a box that exist or not.
template <typename Visit>
void ForEachChunkOf(const Box &box, Visit visit) {
  int c[3];
  for (c[2] = box.low[2] / 10 * 10; c[2] <= box.high[2]; c[2] += 10)
    for (c[1] = box.low[1] / 10 * 10; c[1] <= box.high[1]; c[1] += 10)
      for (c[0] = box.low[0] / 10 * 10; c[0] <= box.high[0]; c[0] += 10)
        visit(AddressOf(static_cast<unsigned>(c[0]), static_cast<unsigned>(c[1]), static_cast<unsigned>(c[2])), c);
}

// Sets the bits of count cells from start on, as far as they are occupied.
void MarkRow(ChunkCells *cells, unsigned start, unsigned count) {
  const u64 row = (u64{1} << count) - 1;
  const unsigned word = start >> 6, shift = start & 63;
  cells->stale[word] |= row << shift & cells->occupied[word];
  if (shift + count > 64) cells->stale[word + 1] |= row >> (64 - shift) & cells->occupied[word + 1];
}

bool AnyStale(const ChunkCells &cells) {
  return std::any_of(std::begin(cells.stale), std::end(cells.stale), [](u64 word) { return word != 0; });
}

// Marks the cells of a box that lie in the chunk whose first cell is c.
void MarkInChunk(const Box &box, const int (&c)[3], ChunkCells *cells) {
  int low[3], high[3];
  for (int axis = 0; axis < 3; ++axis) {
    low[axis] = std::max(box.low[axis] - c[axis], 0);
    high[axis] = std::min(box.high[axis] - c[axis], 9);
  }
  for (int z = low[2]; z <= high[2]; ++z)
    for (int y = low[1]; y <= high[1]; ++y)
      MarkRow(cells, static_cast<unsigned>(low[0] + 10 * y + 100 * z), static_cast<unsigned>(high[0] + 1 - low[0]));
}

void MarkBox(const Box &box, Ship *ship) {
  ForEachChunkOf(box, [&](const CellAddress &a, const int (&c)[3]) {
    ChunkCells *cells = FindCells(a, *ship);
    if (cells == nullptr) return;
    const bool waiting = AnyStale(*cells);
    MarkInChunk(box, c, cells);
    if (!waiting && AnyStale(*cells)) ship->remains.stale.push_back(a);
  });
}

void AddLamps(const Chunk &chunk, const ChunkCells &cells, const Box &box) {
  ForEachBit(cells.occupied, [&](u16 i) {
    const Component &c = Components[HeadComponent(HeadOfCell(cells, i))];
    const Lamp lamp{{CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i)}, c.lightRed, c.lightGreen, c.lightBlue};
    for (int axis = 0; axis < 3; ++axis)
      if (lamp.at[axis] < box.low[axis] || lamp.at[axis] > box.high[axis]) return;
    if (GivesLight(HeadComponent(HeadOfCell(cells, i)))) Lamps.push_back(lamp);
  });
}

// The lamps of a box in the order of the tree, without those so near to a low face that they cast nothing.
void FindLamps(Box box, const Ship &ship) {
  for (int &low : box.low) low = std::max(low, LightRadius);
  LampChunks.clear();
  Lamps.clear();
  ForEachChunkOf(box, [&](const CellAddress &a, const int (&)[3]) {
    const ChunkCells *cells = FindCells(a, ship);
    if (cells != nullptr && cells->lampCount != 0) LampChunks.push_back(a);
  });
  std::sort(LampChunks.begin(), LampChunks.end(),
            [](const CellAddress &a, const CellAddress &b) { return std::bit_cast<u64>(a) < std::bit_cast<u64>(b); });
  for (const CellAddress &a : LampChunks) AddLamps(*FindChunk(a, ship), *FindCells(a, ship), box);
}

// The cells that a lamp may light on a way through a cell: those on the far side of it.
Box ShadeOf(const Lamp &lamp, const int (&through)[3]) {
  Box box = BoxAround(lamp.at, Reach, Reach);
  for (int axis = 0; axis < 3; ++axis) {
    if (lamp.at[axis] < through[axis]) box.low[axis] = through[axis];
    if (lamp.at[axis] > through[axis]) box.high[axis] = through[axis];
  }
  return box;
}

// With shadows, light reaches or no longer reaches the cells behind a block that came or went.
void MarkShades(const int (&at)[3], Ship *ship) {
  FindLamps(BoxAround(at, Reach, Reach), *ship);
  if (Lamps.size() > MostShadesApart) return MarkBox(BoxAround(at, Reach, Reach), ship);
  for (const Lamp &lamp : Lamps) MarkBox(ShadeOf(lamp, at), ship);
}

// A cell's list while it is worked out.
struct LitList {
  LightEntry entries[MaxBlockLights];
  u8 distances[MaxBlockLights];
  u8 count = 0;
};

void PutLight(const LightEntry &entry, u8 distance, LitList *list) {
  const int place = list->count < MaxBlockLights ? list->count++ : PlaceInFullList(list->distances, distance);
  list->entries[place] = entry;
  list->distances[place] = distance;
}

Cell3 CellOf(const int (&c)[3]) { return {static_cast<u16>(c[0]), static_cast<u16>(c[1]), static_cast<u16>(c[2])}; }

// The list of a cell by the lamps that were found; the result is its cost.
u64 WorkOut(const int (&cell)[3], const Ship &ship, LitList *list) {
  const bool shadows = Options.ExperimentalLight;
  u64 spent = StepsOfCell + Lamps.size();
  for (const Lamp &lamp : Lamps) {
    const int dx = lamp.at[0] - cell[0], dy = lamp.at[1] - cell[1], dz = lamp.at[2] - cell[2];
    const u8 distance = LampDistance(dx, dy, dz);
    if (distance >= LightRadius) continue;
    spent += StepsOfLight;
    int hops = 0;
    if (shadows && (dx != 0 || dy != 0 || dz != 0)) {
      hops = BlocksBetween(CellOf(cell), CellOf(lamp.at), ship);
      spent += StepsOfRay;
      if (hops < 0) continue;
    }
    PutLight({static_cast<i8>(dx), static_cast<i8>(dy), static_cast<i8>(dz), lamp.red, lamp.green, lamp.blue, static_cast<u8>(hops)},
             distance, list);
  }
  return spent;
}

// A block that is drawn gets new voxel lists; one that has none, or belongs to another ship than the player's, shows as a cube,
// whose colour goes by its light too.
void TakeList(const LightEntry *list, u8 count, GraphicBlock *g) {
  if (g->cache == nullptr) g->cacheState[0] = 0;
  if (count == g->lightCount && (count == 0 || std::memcmp(list, g->lightList, count * sizeof *list) == 0)) return;
  if (count == 0) g->lightCount = 0;
  else SetLightList(g, list, count);
  g->cacheDirty = g->cache != nullptr;
  g->cacheState[0] = 0;
}

u64 RelightCell(u16 i, Chunk &chunk, ChunkCells *cells, const Ship &ship) {
  LitList list;
  const u64 spent = WorkOut({CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i)}, ship, &list);
  GraphicBlock *g = GraphicOf(*cells, i);
  if (g == nullptr && list.count != 0) {
    GraphicBlock *made = EnsureGraphics(cells, chunk);
    g = made == nullptr ? nullptr : made + i;
  }
  if (g != nullptr) TakeList(list.entries, list.count, g);
  return spent;
}

void Spend(u64 amount, u64 *steps) { *steps -= std::min(*steps, amount); }

// Whether no cell of the chunk waits any longer.
bool RelightChunk(const CellAddress &a, Ship *ship, u64 *steps) {
  Chunk *chunk = FindChunk(a, *ship);
  ChunkCells *cells = chunk->cells.load(std::memory_order_acquire);
  const int last[3] = {chunk->originX + 9, chunk->originY + 9, chunk->originZ + 9};
  FindLamps(BoxAround(last, Reach + 9, Reach), *ship);
  Spend(StepsOfChunk + Lamps.size(), steps);
  for (unsigned w = 0; w < 16; ++w)
    while (cells->stale[w] != 0) {
      const unsigned i = w * 64 + static_cast<unsigned>(std::countr_zero(cells->stale[w]));
      cells->stale[w] &= cells->stale[w] - 1;
      if (CellOccupied(*cells, i)) Spend(RelightCell(static_cast<u16>(i), *chunk, cells, *ship), steps);
      if (*steps == 0) return !AnyStale(*cells);
    }
  return true;
}

}  // namespace

void MarkStaleLight(u16 x, u16 y, u16 z, bool lamp, Ship *ship) {
  const int at[3] = {x, y, z};
  MarkBox(BoxAround(at, 0, 0), ship);
  // Taking a lamp's light away goes by its whole cube: a cell with one entry loses it there, whoever lights it.
  if (lamp) MarkBox(BoxAround(at, LightRadius, Reach), ship);
  else if (Options.ExperimentalLight) MarkShades(at, ship);
}

bool Relight(Ship *ship, u64 *steps) {
  std::vector<CellAddress> &stale = ship->remains.stale;
  size_t done = 0;
  while (done < stale.size() && *steps != 0 && RelightChunk(stale[done], ship, steps)) ++done;
  stale.erase(stale.begin(), stale.begin() + static_cast<std::ptrdiff_t>(done));
  return stale.empty();
}
