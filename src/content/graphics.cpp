// The voxel grids of components: the two file forms, the run table and the facts that are worked out of a grid.
//
// "3MP" form, little-endian: 3 bytes "3MP"; u32 version, 2; u32 sizes in x, y, z, 16 each; three u32 that mean nothing here;
// u8 compressed flag, 0; 4096 voxels of blue, green, red, alpha.
// "sbf" form, inside gzip: u8 version, 1; 4096 voxels likewise.
#include <zlib.h>

#include <array>
#include <cstdio>
#include <cstring>

#include "content/components.h"
#include "core/log.h"

static constexpr int HeaderSize = 32, GridSize = VoxelsPerBlock * 4;  // bytes of a 3MP file
static constexpr u8 Opaque = 250, MaterialColoured = 254;             // least alpha of solid voxels; the material decides
static constexpr const char *Folder = "config/graphics/components/";

static constexpr const char *VersionWarning =
    "Version number of Graphic File is not one that I recognize. I'll try to import anyway, but don't be surprised if it "
    "looks wrong or causes errors.";
static constexpr const char *SizeWarning =
    "File is the wrong size. I'll try to import anyway, but don't be surprised if it looks wrong or causes errors.";
static constexpr const char *CompressedWarning =
    "File is compressed, and I don't know how to deal with that. I'll try to load anyway, in case the file is lying to me.";

static std::string GraphicPath(const char *stem, const char *ending) { return std::string(Folder) + stem + ending; }

static int NoGraphic(const std::string &path) {
  return LogError((path + " - Unable to open Component Graphic file").c_str());
}

// A file that ends early leaves the rest of the grid empty.
static void WarnIfShort(const std::string &path, size_t got, size_t wanted) {
  if (got < wanted) LogWarn((path + " ends early; the rest of its voxels are empty").c_str());
}

static u32 NumberAt(const u8 *bytes) {
  return static_cast<u32>(bytes[0] | bytes[1] << 8 | bytes[2] << 16) | static_cast<u32>(bytes[3]) << 24;
}

// Fills the grid and the counts; the result is the fill percentage.
static int TakeVoxels(const u8 *bytes, Voxel *grid, u16 *opaque, u16 *translucent) {
  *opaque = *translucent = 0;
  for (int i = 0; i < VoxelsPerBlock; ++i, bytes += 4) {
    grid[i] = {bytes[0], bytes[1], bytes[2], bytes[3], 0};
    if (bytes[3] >= Opaque) ++*opaque;
    else if (bytes[3] > 0) ++*translucent;
  }
  const int percent = static_cast<int>(static_cast<float>(*opaque + *translucent) * 0.024414062f);
  return percent < 1 ? 1 : percent;
}

int Load3mpGraphic(Voxel *grid, const char *stem, u16 *opaque, u16 *translucent) {
  const std::string path = GraphicPath(stem, ".3mp");
  FILE *file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return NoGraphic(path);
  u8 bytes[HeaderSize + GridSize] = {};
  const size_t got = std::fread(bytes, 1, sizeof bytes, file);
  std::fclose(file);
  if (std::memcmp(bytes, "3MP", 3) != 0) return LogError("Component Graphic file not in 3MP format!");
  WarnIfShort(path, got, sizeof bytes);
  if (NumberAt(bytes + 3) != 2) LogWarn(VersionWarning);
  for (int axis = 0; axis < 3; ++axis)
    if (NumberAt(bytes + 7 + 4 * axis) != 16) LogWarn(SizeWarning);
  if (bytes[31] != 0) LogWarn(CompressedWarning);
  return TakeVoxels(bytes + HeaderSize, grid, opaque, translucent);
}

int LoadSbfGraphic(Voxel *grid, const char *stem, u16 *opaque, u16 *translucent) {
  const std::string path = GraphicPath(stem, ".sbf");
  gzFile file = gzopen(path.c_str(), "rb");
  if (file == nullptr) return NoGraphic(path);
  gzbuffer(file, 1 << 20);
  u8 bytes[1 + GridSize] = {};
  const int got = gzread(file, bytes, sizeof bytes);
  gzclose(file);
  WarnIfShort(path, got < 0 ? 0 : static_cast<size_t>(got), sizeof bytes);
  if (bytes[0] != 1) LogWarn(VersionWarning);
  return TakeVoxels(bytes + 1, grid, opaque, translucent);
}

// Whether a voxel lies off the grid's faces, so that all six neighbours are in the grid.
static bool IsInner(int i) {
  const auto inner = [](int c) { return c >= 1 && c <= 14; };
  return inner(i >> 8) && inner(i >> 4 & 15) && inner(i & 15);
}

static bool IsBuried(const Voxel *grid, int i) {
  if (!IsInner(i)) return false;
  for (const int step : {1, -1, 16, -16, 256, -256})
    if (grid[i + step].alpha < Opaque) return false;
  return true;
}

int BuildVoxelRuns(const Voxel *grid, Voxel *runs, u16 *drawnOpaque, u16 *drawnTranslucent) {
  *drawnOpaque = *drawnTranslucent = 0;
  int runStart = 0;  // first record of the run of dropped voxels that ends in front of i
  for (int i = 0; i <= VoxelsPerBlock; ++i) {
    const bool kept = i < VoxelsPerBlock && grid[i].alpha != 0 && !IsBuried(grid, i);
    if (i < VoxelsPerBlock) runs[i] = {};
    if (!kept && i < VoxelsPerBlock) continue;
    if (i > runStart) runs[runStart].skip = static_cast<u16>(i - runStart - 1);
    runStart = i + 1;
    if (!kept) break;
    runs[i] = {grid[i].blue, grid[i].green, grid[i].red, grid[i].alpha, 0};
    ++*(grid[i].alpha >= Opaque ? drawnOpaque : drawnTranslucent);
  }
  if (grid[VoxelsPerBlock - 1].alpha == 0) runs[VoxelsPerBlock - 1].skip = 1;
  return *drawnOpaque + *drawnTranslucent;
}

// What a neighbour's alpha lets through, in a block of solid (0) or glass (1) material.
static bool LetsThrough(u8 alpha, int glass) { return alpha < Opaque || (glass == 1 && alpha == MaterialColoured); }

// A bit for each voxel, in the grid's order: a word holds four rows of 16, and four words one layer.
using GridBits = u64[64];
static constexpr u64 FirstOfRows = 0x0001000100010001, LastOfRows = FirstOfRows << 15;

// The bits of the six neighbours of a word's voxels, each at the voxel's own place; 0 for neighbours outside the grid.
static std::array<u64, 6> NeighbourBits(const GridBits &bits, int w) {
  const u64 own = bits[w];
  return {own << 1 & ~FirstOfRows,
          own >> 1 & ~LastOfRows,
          own << 16 | (w % 4 > 0 ? bits[w - 1] >> 48 : 0),
          own >> 16 | (w % 4 < 3 ? bits[w + 1] << 48 : 0),
          w >= 4 ? bits[w - 4] : 0,
          w < 60 ? bits[w + 4] : 0};
}

// Fills the two bit sets of solid (0) or glass (1) material from facts->alpha.
static void BuildNeighbourFacts(int glass, VoxelFacts *facts) {
  GridBits letThrough = {}, seeThrough = {};
  for (int i = 0; i < VoxelsPerBlock; ++i) {
    const u8 alpha = facts->alpha[i];
    const u64 through = LetsThrough(alpha, glass) ? 1 : 0;
    letThrough[i >> 6] |= through << (i & 63);
    seeThrough[i >> 6] |= (alpha >= 2 ? through : 0) << (i & 63);
  }
  for (int w = 0; w < 64; ++w) {
    u64 any = 0, all = letThrough[w];
    for (const u64 bits : NeighbourBits(letThrough, w)) any |= bits;
    for (const u64 bits : NeighbourBits(seeThrough, w)) all &= bits;
    facts->openInside[glass][w] = any;
    facts->sunkInGlass[glass][w] = all;
  }
}

void BuildVoxelFacts(const Voxel *grid, const Voxel *runs, VoxelFacts *facts) {
  facts->drawn.clear();
  facts->drawnColours.clear();
  for (int i = 0; i < VoxelsPerBlock; ++i) {
    facts->alpha[i] = grid[i].alpha;
    if (runs[i].alpha == 0) continue;
    facts->drawn.push_back(static_cast<u16>(i));
    facts->drawnColours.push_back(runs[i].red | static_cast<u32>(runs[i].green) << 8 |
                                  static_cast<u32>(runs[i].blue) << 16 | static_cast<u32>(runs[i].alpha) << 24);
  }
  for (int glass = 0; glass < 2; ++glass) BuildNeighbourFacts(glass, facts);
}
