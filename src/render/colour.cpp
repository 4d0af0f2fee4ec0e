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

// The brightness of each rule before noise, for voxels of the material's colour and of their own.
struct RuleBase {
  float material, own;
};
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

// Four voxels on their way through the rules.
struct FourVoxels {
  Float4 at[3];     // block space
  Float4 light[3];  // 0 to 1
};

static Float4 Falloff4(Float4 d) {
  return Choose(d <= Splat(1.0f), Splat(1.0f), AtLeastZero(Splat(1.0f) - d * Splat(ReachShare)));
}

static Float4 Away(float from, Float4 at) {  // the distance on one axis
  return std::bit_cast<Float4>(std::bit_cast<Int4>(Splat(from) - at) & 0x7fffffff);
}

static void LightFour(const ColourInputs &in, FourVoxels *four) {
  Float4 red = {}, green = {}, blue = {};
  const Float4 px = four->at[0], py = four->at[1], pz = four->at[2];
  if (in.flashlight) {
    const Float4 f = Falloff4(Away(in.camera[0], px) + Away(in.camera[1], py) + Away(in.camera[2], pz));
    red = Splat(FlashRed) * f;
    green = Splat(FlashGreen) * f;
    blue = Splat(FlashBlue) * f;
  }
  const LightTable &t = in.lights;
  for (int i = 0; i < t.count; ++i) {
    const Float4 dx = Splat(t.x[i]) - px, dy = Splat(t.y[i]) - py, dz = Splat(t.z[i]) - pz;
    const Float4 f = Falloff4(FastSqrt4(dx * dx + dy * dy + dz * dz));
    red += Splat(t.red[i]) * f;
    green += Splat(t.green[i]) * f;
    blue += Splat(t.blue[i]) * f;
  }
  const Float4 full = Splat(255.0f), one = Splat(1.0f), share = Splat(ToUnit);
  four->light[0] = Choose(red > full, one, red * share);
  four->light[1] = Choose(green > full, one, green * share);
  four->light[2] = Choose(blue > full, one, blue * share);
}

static Uint4 ColourFour(const ColourInputs &in, ColourRule rule, Uint4 source, Uint4 v, const FourVoxels &four) {
  const RuleBase base = RuleBases[static_cast<int>(rule)];
  const Material &m = *in.material;
  const Uint4 alpha = source >> 24;
  const Int4 ofMaterial = alpha == Splat(u32{MaterialColoured});
  const Float4 n = HashToUnit4(v * in.seed);
  const Float4 noise = AtLeastZero(Choose(ofMaterial, Splat(base.material), Splat(base.own)) -
                                   n * Choose(ofMaterial, Splat(in.matScruff), Splat(in.comScruff)));
  const Float4 red = ToFloat(source & 255u), portion = red / Splat(255.0f);
  const Float4 shade = Choose(ofMaterial, Choose(red == Splat(0.0f), Splat(DarkestShade), portion), Splat(1.0f));
  const Float4 plain[3] = {red, ToFloat(source >> 8 & 255u), ToFloat(source >> 16 & 255u)};
  const u8 painted[3] = {m.red, m.green, m.blue};
  Uint4 out = {};
  for (u32 c = 0; c < 3; ++c) {
    const Float4 colour = Choose(ofMaterial, Splat(static_cast<float>(painted[c])), plain[c]);
    out |= CutToInt(colour * four.light[c] * noise * shade) << (8 * c);
  }
  if (rule != ColourRule::SeeThrough) return out | 0xff000000u;
  const Float4 through = Splat(static_cast<float>(m.alpha)) + Splat(static_cast<float>(255 - m.alpha)) * (Splat(1.0f) - portion);
  const Uint4 mask = std::bit_cast<Uint4>(ofMaterial);
  return out | ((mask & CutToInt(through)) | (~mask & alpha)) << 24;
}

void ColourVoxels(const ColourInputs &in, ColourRule rule, const PlaceFrame &frame, const ColourBatch &batch) {
  for (int e = 0; e < batch.count; e += 4) {
    const u16 *i = batch.indices + e;
    const Uint4 v = {i[0], i[1], i[2], i[3]};
    const Uint4 x = (v >> frame.shift[0] & 15u) ^ frame.flip[0];
    const Uint4 y = (v >> frame.shift[1] & 15u) ^ frame.flip[1];
    const Uint4 z = (v >> frame.shift[2] & 15u) ^ frame.flip[2];
    FourVoxels four;
    four.at[0] = Splat(in.blockX) + ToFloat(x) * Splat(ReachShare);
    four.at[1] = Splat(in.blockY) + ToFloat(y) * Splat(ReachShare);
    four.at[2] = Splat(in.blockZ) + ToFloat(z) * Splat(ReachShare);
    LightFour(in, &four);
    Store(batch.colours + e, ColourFour(in, rule, Load<Uint4>(batch.sources + e), v, four));
    Store(batch.places + e, x | y << 8 | z << 16);
    Store(batch.cells + e, (x >> 1) << 6 | (y >> 1) << 3 | z >> 1);
  }
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
  const float f = std::max(0.0f, 1.0f - ship.ComScruffiness * 2.5f * HashToUnit(cell));
  const Material &m = Materials[HeadMaterial(head)];
  g->cacheState[0] = static_cast<u8>(std::max(1u, Cut(static_cast<float>(m.red) * LimitLight(sum.red) * f)));
  g->cacheState[1] = static_cast<u8>(Cut(static_cast<float>(m.green) * LimitLight(sum.green) * f));
  g->cacheState[2] = static_cast<u8>(Cut(static_cast<float>(m.blue) * LimitLight(sum.blue) * f));
}
