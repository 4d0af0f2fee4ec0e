// Voxel grids: the two file forms and their faults, and what is worked out of a grid against a child's reading of it.
#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <random>

#include "content/components.h"
#include "core/log.h"
#include "support/installation.h"

static std::string Header(char version, char sizeZ, char compressed) {
  std::string h("3MP\0\0\0\0\20\0\0\0\20\0\0\0\0\0\0\0abcdefghijkl\0", 32);
  h[3] = version;
  h[15] = sizeZ;
  h[31] = compressed;
  return h;
}

// Blue, green, red and alpha of every voxel: 1 opaque, 1 of the least and 1 of the greatest translucent, 4093 empty.
static std::string GridBytes() {
  std::string grid(4096 * 4, '\0');
  grid.replace(0, 4, "\1\2\3\xfa");
  grid.replace(4, 4, "\1\2\3\1");
  grid.replace(4095 * 4, 4, "\1\2\3\xf9");
  return grid;
}

TEST(Graphics, OnlyAMissingFileOrAWrongMagicStopsALoad) {
  UseTemporaryInstallation();
  std::filesystem::remove("config/graphics");
  const std::string path = "config/graphics/components/g.3mp", grid = GridBytes();
  const struct { std::string file; int percent, warnings, errors, opaque, translucent; } cases[] = {
      {Header(2, 16, 0) + grid, 1, 0, 0, 1, 2}, {Header(3, 16, 0) + grid, 1, 1, 0, 1, 2},
      {Header(2, 15, 0) + grid, 1, 1, 0, 1, 2}, {Header(2, 16, 1) + grid, 1, 1, 0, 1, 2},
      {Header(2, 16, 0) + grid + "more", 1, 0, 0, 1, 2}, {Header(2, 16, 0) + grid.substr(0, 9), 1, 1, 0, 1, 1},
      {"3MP", 1, 5, 0, 0, 0}, {"", 0, 0, 1, 0, 0}, {"3MQ" + grid, 0, 0, 1, 0, 0},
      {Header(2, 16, 0) + std::string(4096 * 4, '\xff'), 100, 0, 0, 4096, 0}};
  for (const auto &c : cases) {
    WriteText(path, c.file);
    std::vector<Voxel> voxels(VoxelsPerBlock);
    u16 opaque = 0, translucent = 0;
    testing::internal::CaptureStdout();
    EXPECT_EQ(Load3mpGraphic(voxels.data(), "g", &opaque, &translucent), c.percent);
    const std::string log = testing::internal::GetCapturedStdout();
    EXPECT_EQ(Count(log, "WARN: "), c.warnings) << log;
    EXPECT_EQ(Count(log, "*ERR: "), c.errors) << log;
    EXPECT_EQ(opaque, c.opaque);
    EXPECT_EQ(translucent, c.translucent);
  }
  u16 count = 0;
  testing::internal::CaptureStdout();
  EXPECT_EQ(Load3mpGraphic(nullptr, "absent", &count, &count), 0);
  EXPECT_EQ(LoadSbfGraphic(nullptr, "absent", &count, &count), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "*ERR: config/graphics/components/absent.3mp - Unable to open Component Graphic file \n"
            "*ERR: config/graphics/components/absent.sbf - Unable to open Component Graphic file \n");
}

TEST(Graphics, TheZippedFormHoldsTheSameGrid) {
  UseTemporaryInstallation();
  std::filesystem::remove("config/graphics");
  const std::string path = "config/graphics/components/g.sbf";
  WriteText(path, "");
  gzFile file = gzopen(path.c_str(), "wb");
  const std::string content = std::string(1, '\1') + GridBytes();
  gzwrite(file, content.data(), static_cast<unsigned>(content.size()));
  gzclose(file);
  std::vector<Voxel> voxels(VoxelsPerBlock);
  u16 opaque = 0, translucent = 0;
  EXPECT_EQ(LoadSbfGraphic(voxels.data(), "g", &opaque, &translucent), 1);
  EXPECT_EQ(opaque + translucent, 3);
  EXPECT_EQ(voxels[4095].alpha, 0xf9);
  WriteText(path, ReadText(path).substr(0, 20));
  testing::internal::CaptureStdout();
  EXPECT_EQ(LoadSbfGraphic(voxels.data(), "g", &opaque, &translucent), 1);
  EXPECT_EQ(Count(testing::internal::GetCapturedStdout(), "ends early"), 1);
}

// A grid read by the place of its voxels; 0 outside.
static int AlphaAt(const std::vector<Voxel> &grid, int a, int b, int c) {
  if (a < 0 || b < 0 || c < 0 || a > 15 || b > 15 || c > 15) return -1;
  return grid[static_cast<size_t>(a * 256 + b * 16 + c)].alpha;
}

static void NeighbourAlphas(const std::vector<Voxel> &grid, int i, int (&alphas)[6]) {
  const int a = i / 256, b = i / 16 % 16, c = i % 16;
  const int places[6][3] = {{a + 1, b, c}, {a - 1, b, c}, {a, b + 1, c}, {a, b - 1, c}, {a, b, c + 1}, {a, b, c - 1}};
  for (int n = 0; n < 6; ++n) alphas[n] = AlphaAt(grid, places[n][0], places[n][1], places[n][2]);
}

static void CheckFacts(const std::vector<Voxel> &grid, const VoxelFacts &facts, int i, int glass) {
  int alphas[6], open = 0, clear = 0;
  NeighbourAlphas(grid, i, alphas);
  for (const int alpha : alphas) {
    open += alpha == 0 || alpha == 1;
    clear += (alpha >= 2 && alpha <= 249) || (alpha == 254 && glass == 1);
  }
  const int own = grid[static_cast<size_t>(i)].alpha;
  const bool sunk = clear == 6 && (own < 250 || (own == 254 && glass == 1));
  ASSERT_EQ(facts.openInside[glass][i / 64] >> (i % 64) & 1, open + clear > 0 ? 1u : 0u) << i << " " << glass;
  ASSERT_EQ(facts.sunkInGlass[glass][i / 64] >> (i % 64) & 1, sunk ? 1u : 0u) << i << " " << glass;
}

static void CheckGrid(const std::vector<Voxel> &grid) {
  std::vector<Voxel> runs(VoxelsPerBlock, Voxel{9, 9, 9, 9, 9});
  u16 opaque = 0, translucent = 0;
  std::vector<u16> expected, met;
  u16 expectedOpaque = 0;
  for (int i = 0; i < VoxelsPerBlock; ++i) {
    int alphas[6], solid = 0;
    NeighbourAlphas(grid, i, alphas);
    for (const int alpha : alphas) solid += alpha >= 250;
    const int own = grid[static_cast<size_t>(i)].alpha;
    if (own == 0 || solid == 6) continue;
    expected.push_back(static_cast<u16>(i));
    expectedOpaque = static_cast<u16>(expectedOpaque + (own >= 250));
  }
  EXPECT_EQ(BuildVoxelRuns(grid.data(), runs.data(), &opaque, &translucent), static_cast<int>(expected.size()));
  EXPECT_EQ(opaque, expectedOpaque);
  EXPECT_EQ(static_cast<size_t>(opaque + translucent), expected.size());
  for (size_t i = 0; i < VoxelsPerBlock;) {
    if (runs[i].alpha == 0) {
      i += runs[i].skip + 1u;
      continue;
    }
    EXPECT_EQ(runs[i].red, grid[i].red);
    met.push_back(static_cast<u16>(i++));
  }
  EXPECT_EQ(met, expected);
  VoxelFacts facts;
  BuildVoxelFacts(grid.data(), runs.data(), &facts);
  EXPECT_EQ(facts.drawn, expected);
  for (int i = 0; i < VoxelsPerBlock * 2; ++i) CheckFacts(grid, facts, i / 2, i % 2);
}

TEST(Graphics, RunsAndFactsAgreeWithANaiveReading) {
  std::mt19937 random(11);
  const std::vector<std::vector<u8>> palettes = {
      {0}, {255}, {249}, {254}, {0, 255}, {250, 250, 250, 250, 250, 250, 249, 255}, {0, 1, 2, 100, 249, 250, 253, 254, 255},
      {2, 254}, {254, 254, 254, 254, 255}, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3}};
  for (const std::vector<u8> &palette : palettes) {
    std::vector<Voxel> grid(VoxelsPerBlock);
    for (Voxel &v : grid) v = {0, 0, static_cast<u8>(random()), palette[random() % palette.size()], 0};
    CheckGrid(grid);
  }
}
