// One picture from what was last uploaded. Drawing thread.
#pragma once

#include "gameplay/player.h"
#include "render/view.h"
#include "render/voxel_list.h"

// Clears, stars, voxels, then the state for 2D: SquareArray and Program2D in use, texture unit 0, no depth test, blending
// on, GL_CCW as front face. Reads drawnCount of the list and nothing else.
void DrawFrame(const Player &player, const VoxelList &list);
