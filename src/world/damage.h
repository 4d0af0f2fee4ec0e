// Damaged blocks: voxels that are gone, and how they come back. AllocDamageBits gives a block its bits. Nothing damages a
// block in play yet.
#pragma once

#include "world/graphic.h"

struct Block;

// One pass of growth: of the gone voxels beside a standing one, some come back, fewer the higher the threshold: all below
// 0, none from 1179 up. 1, or 2 when none was gone or the block's rotation has no voxels. World mutex held.
int RegrowVoxels(const Block &b, GraphicBlock *g, int threshold);
