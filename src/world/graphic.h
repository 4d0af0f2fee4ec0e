// What belongs to a cell but is not the block's identity: light, damage, the render caches.
#pragma once

#include <atomic>

#include "core/types.h"

constexpr u8 MaxBlockLights = 12;

// One source that reaches a cell: where it stands, seen from the cell, and its colour.
struct LightEntry {
  i8 dx, dy, dz;
  u8 red, green, blue;
  u8 hops;  // blocks passed on the way, with ExperimentalLight
};
static_assert(sizeof(LightEntry) == 7);

struct CacheVoxel {
  u8 x, y, z;  // position in the placed block, 0 to 15
  u8 zero;     // so that a location is base + entry / 16 in all four lanes at once
};

// The four ready-made lists of a block in one allocation: this head, then the lists in the order of CacheLevel, each its
// voxels and then as many colours (red, green, blue, alpha). 8 bytes an entry, and what one append copies lies in one piece:
// Parse copies thousands of lists in an order that no cache can guess.
enum CacheLevel : u8 { OpaqueList, TransparentList, EightList, QuadList, CacheLevels };

struct BlockCache {
  u16 counts[CacheLevels] = {};
};
constexpr size_t CacheReadPastEnd = 16;  // spare bytes behind the last list: appends read four entries at once

struct CacheList {
  const CacheVoxel *voxels;
  const u32 *colours;
  unsigned count;
};

inline unsigned CacheTotal(const BlockCache &c) {
  return static_cast<unsigned>(c.counts[OpaqueList]) + c.counts[TransparentList] + c.counts[EightList] + c.counts[QuadList];
}
inline CacheList ListOf(const BlockCache *c, CacheLevel level) {
  unsigned before = 0;
  for (unsigned l = 0; l < level; ++l) before += c->counts[l];
  const CacheVoxel *voxels = reinterpret_cast<const CacheVoxel *>(c + 1) + 2 * before;
  return {voxels, reinterpret_cast<const u32 *>(voxels + c->counts[level]), c->counts[level]};
}

// The record of one cell. Guarded by the world mutex; damageBits may be read by anyone.
struct GraphicBlock {
  BlockCache *cache = nullptr;           // malloc'ed, or null: never built, or dropped
  LightEntry *lightList = nullptr;       // lightCount entries, malloc'ed; a later animation frame borrows the first's
  GraphicBlock *lodNext = nullptr;       // the next animation frame
  std::atomic<u8 *> damageBits{nullptr}; // 512 bytes, a set bit is a voxel that is gone; or null
  u32 lightId = 0;                       // the ship's light counter at the last light change
  u32 cacheId = 0;                       // kept for ship files
  u16 x = 0, y = 0, z = 0;               // the cell
  u8 lightCount = 0;                     // at most MaxBlockLights
  bool cacheDirty = false;               // the lists must be built again; until then the old ones are drawn
  u8 cacheState[3] = {};                 // colour as a single cube; red 0 means not worked out
  u8 frameTimer = 0;                     // low 7 bits count down to the next frame
  u8 frameLength = 0;                    // low 7 bits: start of frameTimer, 0 for none; bit 7: lodNext is the first frame
  u8 ghostAlpha = 0;                     // above 0: the aim marker or the block about to be placed
};

// Whether a voxel, by its index in the component, is gone. Rays ask this without a lock while voxels grow back, so the
// bytes of damageBits are read and written as atomic ones.
inline bool VoxelGone(const u8 *damageBits, int voxel) {
  return (__atomic_load_n(damageBits + voxel / 8, __ATOMIC_RELAXED) >> (voxel % 8) & 1) != 0;
}

void FreeCacheRecord(GraphicBlock *g);   // Frees the lists of a record and of the animation frames that it owns.
void FreeGraphic(GraphicBlock *g);       // Lists, light list and damage bits: all that a cell owns.
