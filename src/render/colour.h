// The colour of every instance: light, noise and the colour rules, worked out when a block's cache is built.
#pragma once

#include "content/components.h"
#include "content/materials.h"
#include "world/tree.h"

enum class ColourRule : u8 { Lit, SeeThrough, DamagedNeighbour };

// Lights of one block as a build uses them, axis by axis so that several go through the processor at once.
struct LightTable {
  int count = 0;
  float x[MaxBlockLights] = {}, y[MaxBlockLights] = {}, z[MaxBlockLights] = {};
  float red[MaxBlockLights] = {}, green[MaxBlockLights] = {}, blue[MaxBlockLights] = {};
};
// What the rules need of the block and the player.
struct ColourInputs {
  LightTable lights;
  bool flashlight = false;
  float camera[3] = {};
  float blockX = 0, blockY = 0, blockZ = 0;
  u32 seed = 0;  // y * 125 * x * z + x
  float comScruff = 0.1f, matScruff = 0.1f;
  const Material *material = nullptr;
};
struct Light3 {
  float red = 0, green = 0, blue = 0;
};

void FillLightTable(LightTable *table, const GraphicBlock &g, int x, int y, int z);
Light3 LightAt(const ColourInputs &in, float px, float py, float pz);  // Each 0 to 1.
// One colour, red in the lowest byte. v: the voxel's index in the component.
u32 VoxelColour(const ColourInputs &in, ColourRule rule, const Voxel &voxel, u32 v, Light3 light);
u32 GhostColour(const ColourInputs &in, const Voxel &voxel, u32 v, u8 ghostAlpha);
void CubeColour(GraphicBlock *g, u64 head, const Ship &ship);  // Makes cacheState valid.
