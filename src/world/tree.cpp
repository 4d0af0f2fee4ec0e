// Making, walking and freeing the levels of the tree.
#include "world/tree.h"

#include <cstdlib>
#include <new>

#include "core/log.h"

ShipTable TheShipTable;
std::atomic<bool> AsteroidGenerated{false};

template <typename T>
static void SetOrigin(T *level, unsigned baseX, unsigned baseY, unsigned baseZ, unsigned index, unsigned scale) {
  level->originX = static_cast<u16>(baseX + index % 10 * scale);
  level->originY = static_cast<u16>(baseY + index / 10 % 10 * scale);
  level->originZ = static_cast<u16>(baseZ + index / 100 * scale);
}

void InitShip(Ship *ship, u32 id) {
  for (u16 &checks : ship->checks) checks = 0;
  for (auto &axis : ship->position) axis = -50500000;
  for (auto &axis : ship->velocity) axis = 0;
  ship->megaChunks = nullptr;
  ship->ComScruffiness = ship->MatScruffiness = 0.1f;
  ship->displayName = "Default";
  ship->fileStem = "Default";
  ship->keepStreamAs = ship->keepFolderAs = nullptr;
  ship->knownStem.clear();
  ship->knownFile = {};
  ship->slotsOnly = ship->readInPart = false;
  ship->lightCounter = ship->cacheCounter = 0;
  ship->megaCount = ship->superCount = ship->chunkCount = 0;
  ship->remains = {};
  ship->id = id;
}

bool AllocShipTable(Ship *ship) {
  MegaChunk *megas = new (std::nothrow) MegaChunk[1000];
  ship->megaChunks.store(megas, std::memory_order_release);
  return megas != nullptr;
}

Ship *PrepareShip(ShipTable *table) {
  const u16 row = table->count.load();
  if (row >= MaxShips) return nullptr;
  Ship *ship = ShipAt(*table, row);
  if (ship == nullptr) ship = new (std::nothrow) Ship;
  if (ship == nullptr) return nullptr;
  InitShip(ship, row);
  table->ships[row].store(ship, std::memory_order_release);
  return AllocShipTable(ship) ? ship : nullptr;
}

void PublishShip(ShipTable *table) { ++table->count; }

Ship *AppendShip(ShipTable *table) {
  Ship *ship = PrepareShip(table);
  if (ship != nullptr) PublishShip(table);
  return ship;
}

static void FreeCells(ChunkCells *cells) {
  GraphicBlock *graphics = cells->graphicBlocks.load();
  if (graphics != nullptr)
    for (int i = 0; i < CellsPerChunk; ++i) FreeGraphic(graphics + i);
  delete[] graphics;
  std::free(cells->tails);
  delete cells;
}

void FreeShip(Ship *ship) {
  ship->displayName.clear();
  ship->fileStem.clear();
  ship->summary.reset();
  ship->megaCount = ship->superCount = ship->chunkCount = 0;
  ship->remains = {};
  MegaChunk *megas = ship->megaChunks.exchange(nullptr);
  if (megas == nullptr) return;
  for (int m = 0; m < 1000; ++m) {
    SuperChunk *supers = megas[m].children.load();
    if (supers == nullptr) continue;
    for (int s = 0; s < 1000; ++s) {
      Chunk *chunks = supers[s].children.load();
      if (chunks == nullptr) continue;
      for (int c = 0; c < 1000; ++c) {
        delete[] chunks[c].heatShadow;
        if (chunks[c].cells.load() != nullptr) FreeCells(chunks[c].cells.load());
      }
      delete[] chunks;
    }
    delete[] supers;
  }
  delete[] megas;
}

void ClearShipCaches(Ship *ship) {
  ForEachChunk(*ship, [](Chunk &, ChunkCells &cells, CellAddress) {
    GraphicBlock *graphics = cells.graphicBlocks.load();
    if (graphics == nullptr) return;
    for (int i = 0; i < CellsPerChunk; ++i) FreeCacheRecord(graphics + i);
  });
}

// The children of a level, made at need.
template <typename Level, typename Child>
static Child *EnsureChildren(Level *level, std::atomic<Child *> Level::*children, u32 *count) {
  Child *found = (level->*children).load(std::memory_order_relaxed);
  if (found != nullptr) return found;
  found = new (std::nothrow) Child[1000];
  if (found != nullptr) ++*count;
  (level->*children).store(found, std::memory_order_release);
  return found;
}

SuperChunk *EnsureSupers(unsigned mega, Ship *ship) {
  return EnsureChildren(&ship->megaChunks.load(std::memory_order_relaxed)[mega], &MegaChunk::children, &ship->megaCount);
}

Chunk *EnsureChunks(unsigned mega, unsigned super, Ship *ship) {
  SuperChunk *supers = EnsureSupers(mega, ship);
  return supers == nullptr ? nullptr : EnsureChildren(&supers[super], &SuperChunk::children, &ship->superCount);
}

ChunkCells *EnsureChunk(unsigned mega, unsigned super, unsigned chunk, Ship *ship) {
  Chunk *chunks = EnsureChunks(mega, super, ship);
  ChunkCells *cells = nullptr;
  if (chunks != nullptr) {
    cells = chunks[chunk].cells.load(std::memory_order_relaxed);
    if (cells != nullptr) return cells;
    cells = new (std::nothrow) ChunkCells;
  }
  if (cells == nullptr) {
    LogError("Could not allocate block");
    return nullptr;
  }
  SetCellOrigins({0, static_cast<u16>(chunk), static_cast<u16>(super), static_cast<u16>(mega)}, ship);
  chunks[chunk].cells.store(cells, std::memory_order_release);
  ++ship->chunkCount;
  return cells;
}

GraphicBlock *EnsureGraphics(ChunkCells *cells, const Chunk &chunk) {
  GraphicBlock *graphics = cells->graphicBlocks.load(std::memory_order_relaxed);
  if (graphics != nullptr) return graphics;
  graphics = new (std::nothrow) GraphicBlock[CellsPerChunk];
  if (graphics == nullptr) {
    LogError("Could not allocate block");
    return nullptr;
  }
  for (unsigned i = 0; i < CellsPerChunk; ++i) {
    graphics[i].x = CellX(chunk, i);
    graphics[i].y = CellY(chunk, i);
    graphics[i].z = CellZ(chunk, i);
  }
  cells->graphicBlocks.store(graphics, std::memory_order_release);
  return graphics;
}

void SetCellOrigins(const CellAddress &a, Ship *ship) {
  MegaChunk *mega = &ship->megaChunks.load(std::memory_order_relaxed)[a.mega];
  SuperChunk *super = &mega->children.load(std::memory_order_relaxed)[a.super];
  Chunk *chunk = &super->children.load(std::memory_order_relaxed)[a.chunk];
  SetOrigin(mega, 0, 0, 0, a.mega, 1000);
  SetOrigin(super, mega->originX, mega->originY, mega->originZ, a.super, 100);
  SetOrigin(chunk, super->originX, super->originY, super->originZ, a.chunk, 10);
}

void AssignCoordinates(Ship *ship) {
  ForEachChunk(*ship, [ship](Chunk &chunk, ChunkCells &cells, CellAddress a) {
    SetCellOrigins(a, ship);
    GraphicBlock *graphics = cells.graphicBlocks.load();
    if (graphics == nullptr) return;
    ForEachBit(cells.occupied, [&](u16 i) {
      graphics[i].x = CellX(chunk, i);
      graphics[i].y = CellY(chunk, i);
      graphics[i].z = CellZ(chunk, i);
    });
  });
}
