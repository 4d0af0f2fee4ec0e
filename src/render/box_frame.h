// The frame round the cells that a piece of several cells would take.
#pragma once

#include "gameplay/player.h"
#include "render/voxel_list.h"

// Whether the frame is shown: the tool builds, the piece has several cells, and there is a place that isn't hidden.
bool ShowsBoxFrame(const Player &player);
void EmitBoxFrame(VoxelList *list, const Player &player);  // Only when it is shown. World mutex held.
