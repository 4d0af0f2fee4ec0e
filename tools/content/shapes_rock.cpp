// Broken rock, the asteroid's heart, and what blocks become when they melt, boil and freeze.
#include "noise.h"
#include "palette.h"
#include "shapes.h"

#include <algorithm>
#include <cmath>

namespace {

// A stone is broken along planes: each site owns the voxels nearest to it, and has its own shade and lean.
constexpr int SiteCount = 11;

struct Site {
  float x, y, z;
  int shade;
  int depth;  // how far its outer faces lie below the block's face
};

namespace {

struct Nearest {
  int site;
  float margin;  // how much farther away the second site is
};

}  // namespace

}  // namespace

static void ScatterSites(Site *sites, Dice *dice) {
  for (int i = 0; i < SiteCount; i++) {
    sites[i] = {RollBetween(dice, 0.0f, 15.0f), RollBetween(dice, 0.0f, 15.0f), RollBetween(dice, 0.0f, 15.0f),
                RollInt(dice, 190, 244), RollInt(dice, 0, 9) < 6 ? 0 : 1};
  }
}

static Nearest NearestSite(const Site *sites, int x, int y, int z) {
  float best = 1e9f;
  float second = 1e9f;
  int which = 0;
  for (int i = 0; i < SiteCount; i++) {
    const float d = std::hypot(static_cast<float>(x) - sites[i].x, static_cast<float>(y) - sites[i].y,
                               static_cast<float>(z) - sites[i].z);
    if (d < best) {
      second = best;
      best = d;
      which = i;
    } else {
      second = std::min(second, d);
    }
  }
  return {which, second - best};
}

// How many layers a voxel lies below the nearest face of the cell.
static int FaceDepth(int x, int y, int z) {
  return std::min({x, 15 - x, y, 15 - y, z, 15 - z});
}

// True where the block keeps its edge although its faces there are broken away. Behind an edge that two
// neighbours have both lost lies the inside of the rock, which isn't drawn.
static bool HoldsEdge(int x, int y, int z, uint32_t seed) {
  int depth[3] = {std::min(x, 15 - x), std::min(y, 15 - y), std::min(z, 15 - z)};
  std::sort(depth, depth + 3);
  const float noise = SmoothNoise(static_cast<float>(x) * 0.4f, static_cast<float>(y) * 0.4f,
                                  static_cast<float>(z) * 0.4f, seed);
  return depth[1] < 2 && noise > 0.31f;
}

// Breaks pieces off along the block's edges. Each edge keeps stretches that reach the corner line, so that
// no crack runs on from block to block.
static void ChipEdges(Grid &grid, Dice *dice, int chips) {
  for (int i = 0; i < chips; i++) {
    float centre[3];
    const int along = RollInt(dice, 0, 2);
    for (int a = 0; a < 3; a++) {
      const float edge = Roll(dice) < 0.5f ? -0.8f : 15.8f;
      centre[a] = a == along ? RollBetween(dice, 1.0f, 14.0f) : edge;
    }
    Ball(grid, centre[0], centre[1], centre[2], RollBetween(dice, 1.9f, 2.8f), Nothing);
  }
}

void DrawRock(Grid &grid, int form) {
  Dice dice{0x51a7e000U + static_cast<uint32_t>(form) * 977U};
  Site sites[SiteCount];
  ScatterSites(sites, &dice);
  for (int x = 0; x < GridEdge; x++) {
    for (int y = 0; y < GridEdge; y++) {
      for (int z = 0; z < GridEdge; z++) {
        const Nearest near = NearestSite(sites, x, y, z);
        const int depth = FaceDepth(x, y, z);
        const bool crack = near.margin < 0.75f && depth < 2;
        const bool lost = depth < sites[near.site].depth || (crack && depth == 0);
        const float grain = LatticeValue(x, y, z, 77U + static_cast<uint32_t>(form));
        if (lost && !HoldsEdge(x, y, z, 40U + static_cast<uint32_t>(form))) continue;
        int shade = sites[near.site].shade + static_cast<int>(grain * 18.0f) - 9;
        if (crack) shade -= 70;
        if (grain > 0.985f) shade = 255;
        At(grid, x, y, z) = Stuff(shade);
      }
    }
  }
  ChipEdges(grid, &dice, 4);
  Weather(grid, 215U + static_cast<uint32_t>(form), 1.1f);
}

// The warm stone in the middle of an asteroid: a dark crust, with its glow in the cracks and in six eyes.
void DrawHeart(Grid &grid, int) {
  Dice dice{4711};
  Site sites[SiteCount];
  ScatterSites(sites, &dice);
  for (int x = 0; x < GridEdge; x++) {
    for (int y = 0; y < GridEdge; y++) {
      for (int z = 0; z < GridEdge; z++) {
        const Nearest near = NearestSite(sites, x, y, z);
        At(grid, x, y, z) = near.margin < 1.3f ? WarmGlow : Scaled(Stuff(sites[near.site].shade), 0.7f);
      }
    }
  }
  Ball(grid, 7.5f, 7.5f, 7.5f, 9.2f, AmberGlow);
  Ball(grid, 7.5f, 7.5f, 7.5f, 8.7f, WarmGlow);
  Weather(grid, 10);
}

void DrawLiquid(Grid &grid, int) {
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) {
      const float wave = LayeredNoise(static_cast<float>(x) * 0.3f, 0.0f, static_cast<float>(z) * 0.3f, 2, 800);
      const int top = 12 + static_cast<int>(wave * 4.0f);
      for (int y = 0; y <= std::min(top, 15); y++) At(grid, x, y, z) = Stuff(y == top ? 250 : 150 + y * 6);
    }
  }
}

void DrawGas(Grid &grid, int) {
  for (int x = 0; x < GridEdge; x++) {
    for (int y = 0; y < GridEdge; y++) {
      for (int z = 0; z < GridEdge; z++) {
        const float cloud = LayeredNoise(static_cast<float>(x) * 0.28f, static_cast<float>(y) * 0.28f,
                                         static_cast<float>(z) * 0.28f, 2, 850);
        const bool wisp = LatticeValue(x, y, z, 851) < (cloud - 0.48f) * 1.6f;
        if (wisp) At(grid, x, y, z) = {214, 220, 226, static_cast<uint8_t>(40.0f + cloud * 60.0f)};
      }
    }
  }
}

// What has melted and frozen again: a cube run smooth, with drops and dimples.
void DrawSolid(Grid &grid, int) {
  Dice dice{900};
  Box(grid, WholeGrid, Stuff(214));
  for (int i = 0; i < 26; i++) {
    float centre[3];
    const int face = RollInt(&dice, 0, 2);
    for (int a = 0; a < 3; a++) centre[a] = RollBetween(&dice, 2.0f, 13.0f);
    centre[face] = Roll(&dice) < 0.5f ? -1.6f : 16.6f;
    Ball(grid, centre[0], centre[1], centre[2], RollBetween(&dice, 2.2f, 3.4f), Nothing);
  }
  Weather(grid, 900, 1.4f);
}
