// Appends: a block's lists become instances.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "content/materials.h"
#include "core/utils.h"
#include "render/animation.h"
#include "render/cache.h"
#include "render/colour.h"
#include "render/lanes.h"
#include "render/sort.h"

// Locations come from entries by way of a float's bits: a float between 2^19 and 2^20 counts in sixteenths, so the byte b
// under the high half of 2^19 is the number 2^19 + b / 16, and one sum with (base - 2^19) is the location. All of this is
// exact: bases are multiples of 1/32 under 10000.
constexpr float Sixteenths = 524288.0f;
constexpr u16 SixteenthsHigh = 0x4900;

namespace {

// How a list is drawn: the scale of its cubes, and what takes a corner to a cube's centre.
struct ListForm {
  float offset, scale;
};

}  // namespace
constexpr ListForm VoxelForm{0.0f, 1.0f}, EightForm{0.03125f, 2.0f}, QuadForm{0.09375f, 4.0f}, CubeForm{0.46875f, 15.875f};

static Float4 BaseOf(const GraphicBlock &g, ListForm form) {
  const float shift = form.offset - Sixteenths;
  return Float4{g.x + shift, g.y + shift, g.z + shift, form.scale - Sixteenths};
}

static Float4 LocationOf(Float4 base, Short8 lowBytes, bool upper) {
  const Short8 high = Short8{} + SixteenthsHigh;
  const Short8 bits = upper ? __builtin_shufflevector(lowBytes, high, 4, 12, 5, 13, 6, 14, 7, 15)
                            : __builtin_shufflevector(lowBytes, high, 0, 8, 1, 9, 2, 10, 3, 11);
  return std::bit_cast<Float4>(bits) + base;
}

static int AppendList(const GraphicBlock &g, CacheLevel level, ListForm form, VoxelList *list) {
  const CacheList part = ListOf(g.cache, level);
  if (!MakeRoom(list, part.count)) return 0;
  const Float4 base = BaseOf(g, form);
  float *locations = list->locations + list->count;
  u8 *colours = list->colours + list->count;
  for (unsigned e = 0; e < part.count; e += 4, locations += 16, colours += 16) {
    const Byte16 four = Load<Byte16>(part.voxels + e), none{};
    const Short8 low = std::bit_cast<Short8>(__builtin_shufflevector(four, none, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
    const Short8 high = std::bit_cast<Short8>(__builtin_shufflevector(four, none, 8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31));
    Store(locations, LocationOf(base, low, false));
    Store(locations + 4, LocationOf(base, low, true));
    Store(locations + 8, LocationOf(base, high, false));
    Store(locations + 12, LocationOf(base, high, true));
    Store(colours, Load<Byte16>(part.colours + e));
  }
  list->count += part.count * 4;
  return 1;
}

// A cache that was read from a file has voxels only: its coarser lists are missing, not empty.
static bool HasCoarser(const BlockCache &c) { return c.counts[EightList] > 0 || c.counts[OpaqueList] < 2; }

int AppendOpaque(GraphicBlock *graphic, VoxelList *list) {
  const GraphicBlock *frame = CurrentFrame(graphic);
  return frame == nullptr ? 0 : AppendList(*frame, OpaqueList, VoxelForm, list);
}

int AppendTransparent(GraphicBlock *graphic, VoxelList *list) {
  const GraphicBlock *frame = CurrentFrame(graphic);
  return frame == nullptr ? 0 : AppendList(*frame, TransparentList, VoxelForm, list);
}

int AppendEight(GraphicBlock *graphic, VoxelList *list) {
  const GraphicBlock *frame = CurrentFrame(graphic);
  return frame == nullptr || !HasCoarser(*frame->cache) ? 0 : AppendList(*frame, EightList, EightForm, list);
}

int AppendQuad(GraphicBlock *graphic, VoxelList *list) {
  const GraphicBlock *frame = CurrentFrame(graphic);
  return frame == nullptr || !HasCoarser(*frame->cache) ? 0 : AppendList(*frame, QuadList, QuadForm, list);
}

// Positions of a see-through list from the nearest voxel on, in order[i] & 0xffffffff. Under the world mutex, like all here.
static std::vector<u64> VoxelOrder, VoxelOrderSpare;

static void OrderByDistance(const GraphicBlock &g, const CacheList &part, const float (&camera)[3]) {
  const float x = camera[0] - g.x, y = camera[1] - g.y, z = camera[2] - g.z;
  VoxelOrder.resize(part.count);
  for (u32 e = 0; e < part.count; ++e) {
    const CacheVoxel &v = part.voxels[e];
    const float key = std::fabs(x - static_cast<float>(v.x) * 0.0625f) + std::fabs(y - static_cast<float>(v.y) * 0.0625f) +
                      std::fabs(z - static_cast<float>(v.z) * 0.0625f);
    VoxelOrder[e] = SortKey(key, e);
  }
  SortKeys(&VoxelOrder, &VoxelOrderSpare);
}

constexpr float GlintShare = 0.04f;  // of the voxels shine at a time

static u32 Glint(u32 colour, float h) {
  u32 glint = colour & 0xff000000u;
  for (unsigned channel = 0; channel < 24; channel += 8) {
    const u32 c = colour >> channel & 255u;
    const float bright = static_cast<float>(c) + (HashToUnit(c) * 0.29411763f + h * 50.0f) * static_cast<float>(c);
    glint |= std::min(255u, static_cast<u32>(bright)) << channel;
  }
  return glint;
}

static u32 Sparkle(const CacheVoxel &v, u32 colour, u32 seed) {
  const float h = HashToUnit(u32{v.x} + u32{v.y} * v.z + (colour & 255u) * seed);
  return h < GlintShare ? Glint(colour, h) : colour;
}

static int AppendOrdered(GraphicBlock *graphic, VoxelList *list, const float (&camera)[3], bool sparkle, u32 seed) {
  const GraphicBlock *frame = CurrentFrame(graphic);
  if (frame == nullptr) return 0;
  const CacheList part = ListOf(frame->cache, TransparentList);
  if (!MakeRoom(list, part.count)) return 0;
  OrderByDistance(*frame, part, camera);
  for (const u64 key : VoxelOrder) {
    const u32 e = static_cast<u32>(key);
    const CacheVoxel &v = part.voxels[e];
    const u32 colour = sparkle ? Sparkle(v, part.colours[e], seed) : part.colours[e];
    float *at = list->locations + list->count;
    at[0] = frame->x + static_cast<float>(v.x) * 0.0625f;
    at[1] = frame->y + static_cast<float>(v.y) * 0.0625f;
    at[2] = frame->z + static_cast<float>(v.z) * 0.0625f;
    at[3] = VoxelForm.scale;
    std::memcpy(list->colours + list->count, &colour, sizeof colour);
    list->count += 4;
  }
  return 1;
}

int AppendTransparentSorted(GraphicBlock *graphic, VoxelList *list, const float (&camera)[3]) {
  return AppendOrdered(graphic, list, camera, false, 0);
}

int AppendTransparentSparkle(GraphicBlock *graphic, VoxelList *list, const float (&camera)[3], u32 seed) {
  return AppendOrdered(graphic, list, camera, true, seed);
}

static int AppendOneCube(float x, float y, float z, const u8 (&colour)[4], VoxelList *list) {
  if (!MakeRoomStep(list)) return 0;
  const float location[4] = {x + CubeForm.offset, y + CubeForm.offset, z + CubeForm.offset, CubeForm.scale};
  std::memcpy(list->locations + list->count, location, sizeof location);
  std::memcpy(list->colours + list->count, colour, sizeof colour);
  list->count += 4;
  return 1;
}

int AppendCube(GraphicBlock *graphic, VoxelList *list, u64 head, const Ship &ship) {
  if (graphic == nullptr) return 0;
  CubeColour(graphic, head, ship);
  const u8 colour[4] = {graphic->cacheState[0], graphic->cacheState[1], graphic->cacheState[2], 255};
  return AppendOneCube(graphic->x, graphic->y, graphic->z, colour, list);
}

int AppendOtherShipCube(float x, float y, float z, const Ship &ship, u64 head, GraphicBlock *graphic, VoxelList *list) {
  const Material &m = Materials[HeadMaterial(head)];
  u8 colour[4] = {m.red, m.green, m.blue, m.alpha};
  if (!AsteroidGenerated) {
    if (graphic == nullptr) return 0;
    CubeColour(graphic, head, ship);
    std::copy_n(graphic->cacheState, 3, colour);
  }
  return AppendOneCube(x, y, z, colour, list);
}
