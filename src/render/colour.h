// The colour of every instance: light, noise and the colour rules, worked out when a block's cache is built.
#pragma once

#include "content/components.h"
#include "content/materials.h"
#include "world/tree.h"

enum class ColourRule : u8 { Lit, SeeThrough, DamagedNeighbour };

constexpr u8 MaterialColoured = 254;  // alpha of a voxel that takes the material's colour
constexpr u8 SolidAlpha = 250;        // from here on a voxel's alpha is solid, but for MaterialColoured in glass

// Lights of one block as a build uses them, axis by axis so that several voxels go through the processor at once.
struct LightTable {
  int count = 0;
  float x[MaxBlockLights] = {}, y[MaxBlockLights] = {}, z[MaxBlockLights] = {};  // block space
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

// Where a voxel index lies in the placed block, the reverse of a VoxelFrame: on each axis four bits of the index, from
// shift on, turned round by flip (0 or 15).
struct PlaceFrame {
  u32 shift[3] = {}, flip[3] = {};
};

// A run of voxels that go through one rule together. Arrays have room for count rounded up to four.
struct ColourBatch {
  int count = 0;
  const u16 *indices = nullptr;   // in the component
  const u32 *sources = nullptr;   // red in the lowest byte, green, blue, alpha: the component's own
  CacheVoxel *places = nullptr;   // out: position in the placed block
  u32 *colours = nullptr;         // out: red in the lowest byte, green, blue, alpha
  u32 *cells = nullptr;           // out: which cell of 2 x 2 x 2 voxels, x * 64 + y * 8 + z
};

// A scruffiness as the rules take it: ship files hold any float, and below 0 there is none.
inline float SoundScruff(float stored) { return stored >= 0.0f ? stored : 0.0f; }

void FillLightTable(LightTable *table, const GraphicBlock &g, int x, int y, int z);
PlaceFrame PlaceFrameOf(const VoxelFrame &frame);  // Of a rotation that has voxels.
CacheVoxel PlaceOf(const PlaceFrame &frame, u32 v);
Light3 LightAt(const ColourInputs &in, float px, float py, float pz);  // Each 0 to 1.
// One colour, red in the lowest byte. source: as in ColourBatch; v: the voxel's index in the component.
u32 VoxelColour(const ColourInputs &in, ColourRule rule, u32 source, u32 v, Light3 light);
u32 GhostColour(const ColourInputs &in, u32 source, u32 v, u8 ghostAlpha);
// Places and colours of a whole batch: what PlaceOf, LightAt and VoxelColour give, four voxels at a time, lit or see-through.
void ColourVoxels(const ColourInputs &in, bool seeThrough, const PlaceFrame &frame, const ColourBatch &batch);
void CubeColour(GraphicBlock *g, u64 head, const Ship &ship);  // Makes cacheState valid. World mutex.
