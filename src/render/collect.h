// Finding what lies in the view: the walk over a ship's levels by boxes, for Parse. World mutex held.
#pragma once

#include "render/parse.h"

// Calls visit(Chunk &, ChunkCells &, low corner, how) for the chunks in view, in the order of the tree. how: what
// BoxInViewCounted said of the chunk's box, 1 or 2.
template <typename Visit>
void ForEachChunkInView(const Ship &ship, const FrustumPlanes &f, const float (&camera)[3], Visit visit);

bool RoomForVisible(VoxelList *list, u32 more);  // Grows the visible list in its steps; false without memory (logged).

// A level's child as a box: the corner of the one above plus the decimal digits of the index.
struct LevelBox {
  float low[3], high[3];
};
inline LevelBox ChildBox(const float (&corner)[3], unsigned index, float edge) {
  const float digits[3] = {static_cast<float>(index % 10), static_cast<float>(index / 10 % 10), static_cast<float>(index / 100)};
  LevelBox box;
  for (int axis = 0; axis < 3; ++axis) {
    box.low[axis] = corner[axis] + digits[axis] * edge;
    box.high[axis] = box.low[axis] + edge;
  }
  return box;
}

template <typename Visit>
void ForEachChunkInView(const Ship &ship, const FrustumPlanes &f, const float (&camera)[3], Visit visit) {
  const MegaChunk *megas = ship.megaChunks.load(std::memory_order_acquire);
  if (megas == nullptr) return;
  for (unsigned m = 0; m < 1000; ++m) {
    const SuperChunk *supers = megas[m].children.load(std::memory_order_acquire);
    if (supers == nullptr) continue;
    const LevelBox mega = ChildBox({}, m, 1000);
    if (!BoxInView(f, mega.low, mega.high, camera)) continue;
    for (unsigned s = 0; s < 1000; ++s) {
      Chunk *chunks = supers[s].children.load(std::memory_order_acquire);
      if (chunks == nullptr) continue;
      const LevelBox super = ChildBox(mega.low, s, 100);
      if (!BoxInView(f, super.low, super.high, camera)) continue;
      for (unsigned c = 0; c < 1000; ++c) {
        ChunkCells *cells = chunks[c].cells.load(std::memory_order_acquire);
        if (cells == nullptr) continue;
        const LevelBox box = ChildBox(super.low, c, 10);
        const int how = BoxInViewCounted(f, box.low, box.high, camera);
        if (how != 0) visit(chunks[c], *cells, box.low, how);
      }
    }
  }
}
