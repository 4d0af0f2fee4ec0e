// Which voxels of a placed block can be seen, asked for all 4096 at once: what the component's own grid shows was worked
// out when it was read, so that only the six faces have to look at the cells next to them. World mutex held.
#pragma once

#include "content/components.h"
#include "world/tree.h"

// Bit sets over the component's voxel indices, as in VoxelFacts.
struct Exposure {
  u64 shown[64];        // some side of the voxel is open or seen through
  u64 gone[64];         // it lies next to a voxel that is gone from a damaged block; such bits are in shown too
  bool anyGone = false;
};

inline u64 BitOf(const u64 (&bits)[64], unsigned v) { return bits[v >> 6] >> (v & 63) & 1; }

// The block at (x, y, z), of a rotation that has voxels and a component that has facts.
void FindExposure(u64 head, const Ship &ship, u16 x, u16 y, u16 z, Exposure *out);
