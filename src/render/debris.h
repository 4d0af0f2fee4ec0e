// The short-lived pieces of explosions, and the markers of debug traces. World mutex held, unless said otherwise.
#pragma once

#include "render/voxel_list.h"

struct Debris {
  float x = 0, y = 0, z = 0;  // in the current ship's block space
  u8 red = 0, green = 0, blue = 0;
  u8 life = 0;                // seconds left
};

void InitDebris();            // The empty list of capacity 4096.
u32 DebrisCount();
u32 DebrisCapacity();           // Records that memory is held for; moves in steps of 4096.
const Debris *DebrisAt(u32 i);
void SpawnDebris(float x, float y, float z, int count, u8 life, u16 material);
void SpawnMarker(float x, float y, float z);                                  // Takes the world mutex itself.
void SpawnColouredMarker(float x, float y, float z, u8 r, u8 g, u8 b);        // Takes the world mutex itself.
void AgeDebris();             // Once a second.
void EmitDebris(VoxelList *list);
void EmitRemotePlayers(VoxelList *list);
