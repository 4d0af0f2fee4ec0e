// Light, noise and the colour rules: one voxel at a time for odd cases, four at a time for the lists of a block.
#include "render/colour.h"

#include <algorithm>
#include <cmath>

#include "core/utils.h"
#include "render/lanes.h"

constexpr float FlashRed = 255.0f, FlashGreen = 250.0f, FlashBlue = 200.0f;
constexpr float ToUnit = 0.003921569f;    // a byte's share of full light
constexpr float ReachShare = 0.0625f;     // light falls to nothing over 16 blocks
constexpr float DarkestShade = 0.4f;      // of a voxel of the material's colour whose shade byte is 0

namespace {

// The brightness of each rule before noise, for voxels of the material's colour and of their own.
struct RuleBase {
  float material, own;
};

}  // namespace
static constexpr RuleBase RuleBases[] = {{1.0f, 1.0f}, {0.2f, 0.6f}, {0.45f, 0.65f}};  // in the order of ColourRule

static float Falloff(float d) { return d > 16.0f ? 0.0f : d <= 1.0f ? 1.0f : 1.0f - d * ReachShare; }
static float LimitLight(float sum) { return sum > 255.0f ? 1.0f : sum * ToUnit; }
static u32 Cut(float f) { return static_cast<u32>(f); }
static u32 Pack(u32 red, u32 green, u32 blue, u32 alpha) { return red | green << 8 | blue << 16 | alpha << 24; }
static float ByteOf(u32 source, int byte) { return static_cast<float>(source >> (8 * byte) & 255u); }

void FillLightTable(LightTable *table, const GraphicBlock &g, int x, int y, int z) {
  table->count = g.lightList == nullptr ? 0 : std::min<int>(g.lightCount, MaxBlockLights);
  for (int i = 0; i < table->count; ++i) {
    const LightEntry &e = g.lightList[i];
    table->x[i] = static_cast<float>(x + e.dx);
    table->y[i] = static_cast<float>(y + e.dy);
    table->z[i] = static_cast<float>(z + e.dz);
    table->red[i] = e.red;
    table->green[i] = e.green;
    table->blue[i] = e.blue;
  }
}

PlaceFrame PlaceFrameOf(const VoxelFrame &frame) {
  PlaceFrame place;
  const i16 strides[3] = {frame.sx, frame.sy, frame.sz};
  for (int axis = 0; axis < 3; ++axis) {
    place.shift[axis] = static_cast<u32>(std::countr_zero(static_cast<u32>(std::abs(strides[axis]))));
    place.flip[axis] = strides[axis] < 0 ? 15 : 0;
  }
  return place;
}

CacheVoxel PlaceOf(const PlaceFrame &frame, u32 v) {
  u8 at[3];
  for (int axis = 0; axis < 3; ++axis) at[axis] = static_cast<u8>((v >> frame.shift[axis] & 15u) ^ frame.flip[axis]);
  return {at[0], at[1], at[2], 0};
}

Light3 LightAt(const ColourInputs &in, float px, float py, float pz) {
  Light3 sum;
  if (in.flashlight) {
    const float d = std::fabs(in.camera[0] - px) + std::fabs(in.camera[1] - py) + std::fabs(in.camera[2] - pz);
    const float f = Falloff(d);
    sum = {FlashRed * f, FlashGreen * f, FlashBlue * f};
  }
  const LightTable &t = in.lights;
  for (int i = 0; i < t.count; ++i) {
    const float dx = t.x[i] - px, dy = t.y[i] - py, dz = t.z[i] - pz;
    const float f = Falloff(FastSqrt(dx * dx + dy * dy + dz * dz));
    sum.red += t.red[i] * f;
    sum.green += t.green[i] * f;
    sum.blue += t.blue[i] * f;
  }
  return {LimitLight(sum.red), LimitLight(sum.green), LimitLight(sum.blue)};
}

// On a voxel of the material's colour the red byte is a shade.
static float Shade(u32 source) { return (source & 255u) == 0 ? DarkestShade : ByteOf(source, 0) / 255.0f; }
static u32 MaterialAlpha(const Material &m, u32 source) {
  return Cut(static_cast<float>(m.alpha) + static_cast<float>(255 - m.alpha) * (1.0f - ByteOf(source, 0) / 255.0f));
}

u32 VoxelColour(const ColourInputs &in, ColourRule rule, u32 source, u32 v, Light3 light) {
  const RuleBase base = RuleBases[static_cast<int>(rule)];
  const float n = HashToUnit(in.seed * v);
  const bool seeThrough = rule == ColourRule::SeeThrough;
  if (source >> 24 != MaterialColoured) {
    const float f = std::max(0.0f, base.own - n * in.comScruff);
    return Pack(Cut(ByteOf(source, 0) * light.red * f), Cut(ByteOf(source, 1) * light.green * f),
                Cut(ByteOf(source, 2) * light.blue * f), seeThrough ? source >> 24 : 255u);
  }
  const Material &m = *in.material;
  const float f = std::max(0.0f, base.material - n * in.matScruff), s = Shade(source);
  return Pack(Cut(static_cast<float>(m.red) * light.red * f * s), Cut(static_cast<float>(m.green) * light.green * f * s),
              Cut(static_cast<float>(m.blue) * light.blue * f * s), seeThrough ? MaterialAlpha(m, source) : 255u);
}

constexpr u8 PlainGhost = 200;  // from this ghost alpha on colours are shown as they are

u32 GhostColour(const ColourInputs &in, u32 source, u32 v, u8 ghostAlpha) {
  const bool plain = ghostAlpha >= PlainGhost;
  const float n = HashToUnit(in.seed * v);
  if (source >> 24 != MaterialColoured) {
    const float f = plain ? 1.0f : std::max(0.0f, RuleBases[1].own - n * in.comScruff);
    return Pack(Cut(ByteOf(source, 0) * f), Cut(ByteOf(source, 1) * f), Cut(ByteOf(source, 2) * f),
                std::min<u32>(ghostAlpha, source >> 24));
  }
  const Material &m = *in.material;
  const float f = plain ? 1.0f : std::max(0.0f, RuleBases[1].material - n * in.matScruff) * Shade(source);
  return Pack(Cut(static_cast<float>(m.red) * f), Cut(static_cast<float>(m.green) * f), Cut(static_cast<float>(m.blue) * f),
              std::min<u32>(ghostAlpha, m.alpha));
}

namespace {

// Lights as a batch uses them: in sixteenths of a block from the block's corner, which are whole numbers small enough that
// no square or sum is rounded, each value in four lanes. The distance that FastSqrt gives is then sixteen times the other to
// the bit, as 16 is a power of 4.
struct BatchLights {
  int count;
  Float4 x[MaxBlockLights], y[MaxBlockLights], z[MaxBlockLights];
  Float4 red[MaxBlockLights], green[MaxBlockLights], blue[MaxBlockLights];
};

// What stays the same over a batch, on the stack of its loop: nothing that the loop writes can change it.
struct BatchConstants {
  PlaceFrame frame;
  Uint4 seed;
  Float4 comScruff, matScruff;
  Float4 red, green, blue;            // the material's
  Float4 alpha, clear;                // its alpha, and what is missing from 255
  BatchLights lights;
};

}  // namespace

static BatchConstants ConstantsOf(const ColourInputs &in, const PlaceFrame &frame) {
  const Material &m = *in.material;
  BatchConstants k;
  k.frame = frame;
  k.seed = Splat(in.seed);
  k.comScruff = Splat(in.comScruff);
  k.matScruff = Splat(in.matScruff);
  k.red = Splat(static_cast<float>(m.red));
  k.green = Splat(static_cast<float>(m.green));
  k.blue = Splat(static_cast<float>(m.blue));
  k.alpha = Splat(static_cast<float>(m.alpha));
  k.clear = Splat(static_cast<float>(255 - m.alpha));
  const LightTable &t = in.lights;
  k.lights.count = t.count;
  for (int i = 0; i < t.count; ++i) {
    k.lights.x[i] = Splat((t.x[i] - in.blockX) * 16.0f);
    k.lights.y[i] = Splat((t.y[i] - in.blockY) * 16.0f);
    k.lights.z[i] = Splat((t.z[i] - in.blockZ) * 16.0f);
    k.lights.red[i] = Splat(t.red[i]);
    k.lights.green[i] = Splat(t.green[i]);
    k.lights.blue[i] = Splat(t.blue[i]);
  }
  return k;
}

namespace {

struct Light3x4 {
  Float4 red, green, blue;
};

}  // namespace

// d: sixteenths of a block.
static Float4 Falloff4(Float4 d) {
  const Float4 one = Splat(1.0f);
  return Choose(d <= Splat(16.0f), one, Larger(one - d * Splat(ReachShare / 16.0f), Float4{}));
}

static Float4 Away(float from, Float4 at) {  // the distance on one axis
  return std::bit_cast<Float4>(std::bit_cast<Int4>(Splat(from) - at) & 0x7fffffff);
}

static Light3x4 FlashlightFour(const ColourInputs &in, Float4 x, Float4 y, Float4 z) {
  const Float4 share = Splat(ReachShare);
  const Float4 d = Away(in.camera[0], Splat(in.blockX) + x * share) + Away(in.camera[1], Splat(in.blockY) + y * share) +
                   Away(in.camera[2], Splat(in.blockZ) + z * share);
  const Float4 f = Falloff4(d * Splat(16.0f));
  return {Splat(FlashRed) * f, Splat(FlashGreen) * f, Splat(FlashBlue) * f};
}

// 255 is exactly 1.0 here, so that the smaller one is the limit of LimitLight.
static Float4 LimitLight4(Float4 sum) { return Smaller(sum * Splat(ToUnit), Splat(1.0f)); }

// x, y, z: sixteenths in the block.
[[gnu::always_inline]] static inline Light3x4 LightFour(const ColourInputs &in, const BatchLights &lights, Float4 x, Float4 y, Float4 z) {
  Light3x4 sum{};
  if (in.flashlight) sum = FlashlightFour(in, x, y, z);
  for (int i = 0; i < lights.count; ++i) {
    const Float4 dx = lights.x[i] - x, dy = lights.y[i] - y, dz = lights.z[i] - z;
    const Float4 f = Falloff4(FastSqrt4(dx * dx + dy * dy + dz * dz));
    sum.red += lights.red[i] * f;
    sum.green += lights.green[i] * f;
    sum.blue += lights.blue[i] * f;
  }
  return {LimitLight4(sum.red), LimitLight4(sum.green), LimitLight4(sum.blue)};
}

template <ColourRule rule>
static Uint4 ColourFour(const BatchConstants &k, Uint4 source, Uint4 v, const Light3x4 &light) {
  constexpr RuleBase base = RuleBases[static_cast<int>(rule)];
  const Uint4 alpha = source >> 24;
  const Int4 ofMaterial = std::bit_cast<Int4>(alpha) == i32{MaterialColoured};
  const Float4 n = HashToUnit4(v * k.seed);
  const Float4 start = base.material == base.own ? Splat(base.own) : Choose(ofMaterial, Splat(base.material), Splat(base.own));
  const Float4 noise = Larger(start - n * Choose(ofMaterial, k.matScruff, k.comScruff), Float4{});
  const Float4 red = ToFloat(source & 255u), portion = red / Splat(255.0f);
  const Float4 shade = Choose(ofMaterial, Choose(red == Splat(0.0f), Splat(DarkestShade), portion), Splat(1.0f));
  const Uint4 r = CutToInt(Choose(ofMaterial, k.red, red) * light.red * noise * shade);
  const Uint4 g = CutToInt(Choose(ofMaterial, k.green, ToFloat(source >> 8 & 255u)) * light.green * noise * shade);
  const Uint4 b = CutToInt(Choose(ofMaterial, k.blue, ToFloat(source >> 16 & 255u)) * light.blue * noise * shade);
  const Uint4 colour = r | g << 8 | b << 16;
  if (rule != ColourRule::SeeThrough) return colour | 0xff000000u;
  const Uint4 through = CutToInt(k.alpha + k.clear * (Splat(1.0f) - portion)), mask = std::bit_cast<Uint4>(ofMaterial);
  return colour | ((mask & through) | (~mask & alpha)) << 24;
}

template <ColourRule rule>
static void ColourAll(const ColourInputs &in, const PlaceFrame &frame, const ColourBatch &batch) {
  const BatchConstants k = ConstantsOf(in, frame);
  for (int e = 0; e < batch.count; e += 4) {
    const u16 *i = batch.indices + e;
    const Uint4 v = {i[0], i[1], i[2], i[3]};
    const Uint4 x = (v >> k.frame.shift[0] & 15u) ^ k.frame.flip[0];
    const Uint4 y = (v >> k.frame.shift[1] & 15u) ^ k.frame.flip[1];
    const Uint4 z = (v >> k.frame.shift[2] & 15u) ^ k.frame.flip[2];
    const Light3x4 light = LightFour(in, k.lights, ToFloat(x), ToFloat(y), ToFloat(z));
    Store(batch.colours + e, ColourFour<rule>(k, Load<Uint4>(batch.sources + e), v, light));
    Store(batch.places + e, x | y << 8 | z << 16);
    Store(batch.cells + e, (x >> 1) << 6 | (y >> 1) << 3 | z >> 1);
  }
}

void ColourVoxels(const ColourInputs &in, bool seeThrough, const PlaceFrame &frame, const ColourBatch &batch) {
  if (batch.count == 0) return;
  if (seeThrough) ColourAll<ColourRule::SeeThrough>(in, frame, batch);
  else ColourAll<ColourRule::Lit>(in, frame, batch);
}

void CubeColour(GraphicBlock *g, u64 head, const Ship &ship) {
  if (g->cacheState[0] != 0) return;
  Light3 sum = {1, 1, 1};
  const int count = g->lightList == nullptr ? 0 : std::min<int>(g->lightCount, MaxBlockLights);
  for (int i = 0; i < count; ++i) {
    const LightEntry &e = g->lightList[i];
    const float f = Falloff(FastSqrt(static_cast<float>(e.dx * e.dx + e.dy * e.dy + e.dz * e.dz)));
    sum.red += static_cast<float>(e.red) * f;
    sum.green += static_cast<float>(e.green) * f;
    sum.blue += static_cast<float>(e.blue) * f;
  }
  const u32 cell = u32{g->x} * g->y * g->z;
  const float f = std::max(0.0f, 1.0f - SoundScruff(ship.ComScruffiness) * 2.5f * HashToUnit(cell));
  const Material &m = Materials[HeadMaterial(head)];
  g->cacheState[0] = static_cast<u8>(std::max(1u, Cut(static_cast<float>(m.red) * LimitLight(sum.red) * f)));
  g->cacheState[1] = static_cast<u8>(Cut(static_cast<float>(m.green) * LimitLight(sum.green) * f));
  g->cacheState[2] = static_cast<u8>(Cut(static_cast<float>(m.blue) * LimitLight(sum.blue) * f));
}
