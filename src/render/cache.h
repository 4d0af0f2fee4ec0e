// The render caches: a block's exposed voxels with their colours, and two coarser versions, built on demand and copied by
// Parse. All here with the world mutex held.
#pragma once

#include "gameplay/player.h"
#include "render/voxel_list.h"

// Builds the lists of the block at (x, y, z); the record's ghostAlpha above 0 makes a ghost build. ringHead: null but in
// the recursion of animated blocks. 1, or 0 when an animation frame can't be allocated.
int BuildBlockCache(u64 head, const Ship &ship, u16 x, u16 y, u16 z, const Player &player, GraphicBlock *graphic,
                    GraphicBlock *ringHead);
void RebuildShipCaches(const Ship &ship, const Player &player);  // Every block at once, without a budget.

// Appends: 1, or 0 when the record has no cache. The first four advance the animation clock.
int AppendOpaque(GraphicBlock *graphic, VoxelList *list);
int AppendTransparent(GraphicBlock *graphic, VoxelList *list);
int AppendEight(GraphicBlock *graphic, VoxelList *list);
int AppendQuad(GraphicBlock *graphic, VoxelList *list);
int AppendTransparentSorted(GraphicBlock *graphic, VoxelList *list, const float (&camera)[3]);
int AppendTransparentSparkle(GraphicBlock *graphic, VoxelList *list, const float (&camera)[3], u32 seed);
int AppendCube(GraphicBlock *graphic, VoxelList *list, u64 head, const Ship &ship);
int AppendOtherShipCube(float x, float y, float z, const Ship &ship, u64 head, GraphicBlock *graphic, VoxelList *list);
