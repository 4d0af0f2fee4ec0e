// The bottom of every write: one cell of a chunk, with the bit sets and the lamp count that walks rely on. For the world's
// own files and the loaders. World mutex held, or a world that no other thread sees.
#pragma once

#include "content/components.h"
#include "world/tree.h"

// Whether a cell lies in the cube.
inline bool InRange(u16 x, u16 y, u16 z) { return x < CellsPerAxis && y < CellsPerAxis && z < CellsPerAxis; }
int ReportOutOfRange(u16 x, u16 y, u16 z);  // A read outside of it: the cell on standard output and an error; always 0.

inline bool GivesLight(u16 component) { return (ComponentTraits[component] & TraitGivesLight) != 0; }

inline u64 HeadOfCell(const ChunkCells &cells, unsigned i) { return cells.heads[i].load(std::memory_order_relaxed); }

// Stores a head and keeps `occupied` and lampCount true.
inline void StoreHead(ChunkCells *cells, unsigned i, u64 head) {
  const u64 old = HeadOfCell(*cells, i);
  const int lamps = (HeadState(head) != 0 && GivesLight(HeadComponent(head)) ? 1 : 0) -
                    (HeadState(old) != 0 && GivesLight(HeadComponent(old)) ? 1 : 0);
  cells->lampCount = static_cast<u16>(cells->lampCount + lamps);
  const u64 bit = u64{1} << (i & 63);
  if (HeadState(head) != 0) cells->occupied[i >> 6] |= bit;
  else cells->occupied[i >> 6] &= ~bit;
  cells->heads[i].store(head, std::memory_order_relaxed);
}

inline void StoreVisibility(ChunkCells *cells, unsigned i, u8 visibility) {
  cells->visibility[i] = visibility;
  const u64 bit = u64{1} << (i & 63);
  if (visibility == NotVisible) cells->hidden[i >> 6] |= bit;
  else cells->hidden[i >> 6] &= ~bit;
}

inline bool CellOccupied(const ChunkCells &cells, unsigned i) { return (cells.occupied[i >> 6] >> (i & 63) & 1) != 0; }

// The record of a cell, or null while its chunk has none.
inline GraphicBlock *GraphicOf(const ChunkCells &cells, unsigned i) {
  GraphicBlock *graphics = cells.graphicBlocks.load(std::memory_order_acquire);
  return graphics == nullptr ? nullptr : graphics + i;
}

void WriteTail(const Block &b, unsigned i, ChunkCells *cells);  // Only the block's last 6 bytes.
// WriteBlock in cells that the caller has found: head with tempUnstable clear and temp 800, tail, lists.
void WriteBlockInCells(const Block &b, const CellAddress &a, ChunkCells *cells, Ship *ship);
// The raw placing in cells that the caller has found: unlists an old occupant, then writes.
void PlaceBlockInCells(const Block &b, const CellAddress &a, ChunkCells *cells, Ship *ship);
