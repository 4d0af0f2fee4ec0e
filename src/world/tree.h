// The decimal tree: Ship, MegaChunk, SuperChunk, Chunk, cell, each level a 10 x 10 x 10 array of the next. A level's array
// exists once something was placed under it and is never freed in play, so that a pointer read from the tree stays valid.
//
// Threads: the tree changes under the world mutex. Child pointers are published with release and read with acquire and
// cell heads are atomic words, so that anyone may read cells without a lock; all else here needs the world mutex.
#pragma once

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "platform/files.h"
#include "world/block.h"
#include "world/graphic.h"

enum ListKind : u8 { ListTemp, ListRmv, ListAnim, ListDmg, ListKinds };  // the order of the counters in every record

// What a chunk holds for its 1000 cells. Split by who asks: walks read the bit sets, readers of cells the heads, and only
// a cell that is lit, drawn or damaged needs a GraphicBlock. Those come for the whole chunk at first need, so that the
// inside of a solid ship costs 9 KB a chunk instead of 66.
struct ChunkCells {
  std::atomic<u64> heads[CellsPerChunk] = {};     // a Block's first 8 bytes
  u64 occupied[16] = {};                          // bit i: cell i has a block
  u64 hidden[16] = {};                            // bit i: visibility of cell i is NotVisible
  u64 stale[16] = {};                             // bit i: the light of cell i is to be worked out again
  u8 visibility[CellsPerChunk] = {};              // 0 undecided, 1 Visible, 2 NotVisible, 3 MaybeVisible
  std::atomic<GraphicBlock *> graphicBlocks{nullptr};  // 1000 records, or null until first need
  u8 (*tails)[6] = nullptr;                       // 1000 tails, or null while all of them are zero
  u16 lampCount = 0;                              // blocks of this chunk that give light
};

constexpr u8 VisibilityUndecided = 0, Visible = 1, NotVisible = 2, MaybeVisible = 3;

struct HeatEntry {  // what the heat step knows of a cell
  u8 due = 0, spare = 0;  // bit 0: the block takes part in the next round
  u16 temp = 0;           // quarter degrees
  u16 spare2 = 0;
};
static_assert(sizeof(HeatEntry) == 6);

struct Chunk {
  std::atomic<ChunkCells *> cells{nullptr};
  u16 checks[ListKinds] = {};  // work-list counters: only the low 10 bits count, the others are kept
  u16 originX = 0, originY = 0, originZ = 0;
  i16 slot = -1;               // its slot in the ship's directory files, or -1 while it has none
  HeatEntry *heatShadow = nullptr;  // 1000 entries, or null until first need; heat mutex
};

struct SuperChunk {
  std::atomic<Chunk *> children{nullptr};
  u16 checks[ListKinds] = {};
  u16 originX = 0, originY = 0, originZ = 0;
};

struct MegaChunk {
  std::atomic<SuperChunk *> children{nullptr};
  u16 checks[ListKinds] = {};
  u16 originX = 0, originY = 0, originZ = 0;
};

struct ShipSummary {
  i32 blockCount = 0, billions = 0;  // occupied cells, with a carry at 1,000,000,000
  double mass = 0;
  u16 sizeX = 1, sizeY = 1, sizeZ = 1;  // extent in cells
  u16 comX = 0, comY = 0, comZ = 0;     // mass-weighted mean, rounded to the nearest cell
  u16 minX = 0, minY = 0, minZ = 0, maxX = 0, maxY = 0, maxZ = 0;
};

// What edits have left to be done in a ship; it goes where the blocks go.
struct EditRemains {
  std::vector<CellAddress> stale;              // the chunks with bits in `stale`, each once, oldest first
  std::vector<std::array<u16, 3>> undecided;   // cells whose visibility may have changed
};

struct Ship {
  u16 checks[ListKinds] = {};
  // World place of cell (0, 0, 0) and ten-thousandths of a block by which it falls each step. Written by start-up,
  // MoveBackend and the network under the move mutex; read by any thread, so each axis is an atomic of its own.
  std::atomic<i64> position[3] = {-50500000, -50500000, -50500000};
  std::atomic<i32> velocity[3] = {0, 0, 0};
  std::atomic<MegaChunk *> megaChunks{nullptr};
  float ComScruffiness = 0.1f, MatScruffiness = 0.1f;  // world mutex
  std::string displayName = "Default", fileStem = "Default";  // world mutex
  u32 lightCounter = 0, cacheCounter = 0;              // world mutex
  EditRemains remains;                                 // world mutex
  // Not null: the stream file, or the folder, under fileStem holds more than this ship, or another one. The next save of that
  // form keeps it beside, with this ending (".damaged", ".replaced"). Written by loads and saves, under the world mutex.
  const char *keepStreamAs = nullptr, *keepFolderAs = nullptr;
  // The stream file under the name knownStem as this ship was read from it or written to it; one that came to stand there since
  // is another program's. Empty: nothing is known of any. Written by loads and saves, under the world mutex.
  std::string knownStem;
  FileStamp knownFile;
  bool readInPart = false;  // in this run: earlier backups have more than it, and are not pushed out by its own
  bool slotsOnly = false;  // loaded without its blocks: those in memory lie over those of the files; world mutex
  u32 megaCount = 0, superCount = 0, chunkCount = 0;   // megas with supers, supers with chunks, chunks with cells; world mutex
  u32 id = 0;
  std::unique_ptr<ShipSummary> summary;                // world mutex
};

// The list of ships. Records never move; rows are appended under the world mutex, count last, and may be read by anyone.
constexpr int MaxShips = 65535;
struct ShipTable {
  std::atomic<Ship *> ships[MaxShips] = {};
  std::atomic<u16> count{0};
  std::atomic<u16> current{0};  // the ship that the player is in; written under the move mutex
};
extern ShipTable TheShipTable;
extern std::atomic<bool> AsteroidGenerated;  // set when a body is grown, never cleared: far cubes show plain materials

inline Ship *ShipAt(const ShipTable &table, u16 row) { return table.ships[row].load(std::memory_order_acquire); }
inline Ship *CurrentShip() { return ShipAt(TheShipTable, TheShipTable.current.load()); }

void InitShip(Ship *ship, u32 id);        // The defaults; summary stays as it is.
bool AllocShipTable(Ship *ship);          // The empty MegaChunk table; must come before any access.
// InitShip and AllocShipTable in the row behind the last, which nobody else looks at before PublishShip counts it. Null when
// the table is full or memory lacks. The world mutex is held from the one call to the other.
Ship *PrepareShip(ShipTable *table);
void PublishShip(ShipTable *table);
Ship *AppendShip(ShipTable *table);       // Both: an empty ship at the end of the table.
void FreeShip(Ship *ship);                // Frees the tree and all that hangs on it; the record stays. World mutex.
void ClearShipCaches(Ship *ship);         // Frees the voxel lists of every cell. World mutex.
// The entries under a level, made at need; null without memory. World mutex.
SuperChunk *EnsureSupers(unsigned mega, Ship *ship);
Chunk *EnsureChunks(unsigned mega, unsigned super, Ship *ship);
// The cells of a chunk entry, made at need; null (and "Could not allocate block" logged) without memory. World mutex.
ChunkCells *EnsureChunk(unsigned mega, unsigned super, unsigned chunk, Ship *ship);
GraphicBlock *EnsureGraphics(ChunkCells *cells, const Chunk &chunk);  // The chunk's records, made at need. World mutex.
void SetCellOrigins(const CellAddress &a, Ship *ship);  // Origins of the three levels above a cell.
void AssignCoordinates(Ship *ship);       // The same for the whole ship, after a load.

// Reading the tree. Null where a level is missing. Any thread.
inline Chunk *FindChunk(const CellAddress &a, const Ship &ship) {
  MegaChunk *megas = ship.megaChunks.load(std::memory_order_acquire);
  if (megas == nullptr) return nullptr;
  SuperChunk *supers = megas[a.mega].children.load(std::memory_order_acquire);
  if (supers == nullptr) return nullptr;
  Chunk *chunks = supers[a.super].children.load(std::memory_order_acquire);
  return chunks == nullptr ? nullptr : &chunks[a.chunk];
}
inline ChunkCells *FindCells(const CellAddress &a, const Ship &ship) {
  const Chunk *chunk = FindChunk(a, ship);
  return chunk == nullptr ? nullptr : chunk->cells.load(std::memory_order_acquire);
}
// The head of a cell, 0 for a missing level. A free cell's has StateEmpty but may not be 0. Coordinates in range. Any thread.
inline u64 HeadAt(unsigned x, unsigned y, unsigned z, const Ship &ship) {
  const CellAddress a = AddressOf(x, y, z);
  const ChunkCells *cells = FindCells(a, ship);
  return cells == nullptr ? 0 : cells->heads[a.block].load(std::memory_order_relaxed);
}

// Calls visit(Chunk &, ChunkCells &, CellAddress) for every chunk with cells, in the order of the tree.
template <typename Visit>
void ForEachChunk(const Ship &ship, Visit visit) {
  MegaChunk *megas = ship.megaChunks.load(std::memory_order_acquire);
  if (megas == nullptr) return;
  for (u16 m = 0; m < 1000; ++m) {
    SuperChunk *supers = megas[m].children.load(std::memory_order_acquire);
    if (supers == nullptr) continue;
    for (u16 s = 0; s < 1000; ++s) {
      Chunk *chunks = supers[s].children.load(std::memory_order_acquire);
      if (chunks == nullptr) continue;
      for (u16 c = 0; c < 1000; ++c) {
        ChunkCells *cells = chunks[c].cells.load(std::memory_order_acquire);
        if (cells != nullptr) visit(chunks[c], *cells, CellAddress{0, c, s, m});
      }
    }
  }
}

// Calls visit(index) for every set bit of a chunk's 1000-bit set, rising.
template <typename Visit>
void ForEachBit(const u64 (&bits)[16], Visit visit) {
  for (unsigned w = 0; w < 16; ++w)
    for (u64 word = bits[w]; word != 0; word &= word - 1)
      visit(static_cast<u16>(w * 64 + static_cast<unsigned>(std::countr_zero(word))));
}

// Coordinates of a cell from its chunk's origin and its index.
inline u16 CellX(const Chunk &c, unsigned i) { return static_cast<u16>(c.originX + i % 10); }
inline u16 CellY(const Chunk &c, unsigned i) { return static_cast<u16>(c.originY + i / 10 % 10); }
inline u16 CellZ(const Chunk &c, unsigned i) { return static_cast<u16>(c.originZ + i / 100); }
