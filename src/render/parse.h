// Parse turns the world into instance arrays: nearest blocks first, under a budget that decides the level of detail.
#pragma once

#include "gameplay/player.h"
#include "render/voxel_list.h"

struct FrustumPlanes {
  float a[6], b[6], c[6], d[6];
};

FrustumPlanes BuildFrustumPlanes(const float (&viewMatrix)[16]);
bool BoxInView(const FrustumPlanes &f, const float (&low)[3], const float (&high)[3], const float (&camera)[3]);
int BoxInViewCounted(const FrustumPlanes &f, const float (&low)[3], const float (&high)[3], const float (&camera)[3]);  // 0, 1; 2 when wholly inside.

// The preview record: the aim marker, or the block about to be placed.
void InitPreview();
bool ShowsPreview(const Player &player);  // Not while the marker is hidden or the eye is in the cell aimed at.
bool Builds(const Player &player);        // With a tool that shows the held block.
int Parse(VoxelList *list, const Player &player);  // One run; world mutex held. Always 1.
// The stages of a run, for tests and benchmarks.
void CollectVisibleBlocks(VoxelList *list, const Ship &ship, const FrustumPlanes &f, const float (&camera)[3]);
// What each of the three stages of detail may spend in all, in instances. Floats, each cut to an integer.
struct DetailLimits {
  i64 stage[3];  // full voxels, cells of 2, cells of 4
};
DetailLimits LimitsOf(const VoxelList &list);
u32 EmitCurrentShip(VoxelList *list, const Ship &ship, const Player &player);  // Blocks handled at full detail.
