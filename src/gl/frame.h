// One picture from what was last uploaded. Drawing thread.
#pragma once

#include "gameplay/player.h"
#include "render/voxel_list.h"

void LoadStarBox();                                         // The six textures; texture unit 2.
void DrawFrame(const Player &player, const VoxelList &list);
void FrameMatrices(const Player &player);                   // CameraRotation and ViewMatrix, stored for Parse.
extern float CameraRotation[16], ViewMatrix[16];            // rebuilt each frame
bool SaveScreenshot(const char *path);                      // The frame last drawn, as PNG. False when it can't be written.
