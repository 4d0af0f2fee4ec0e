// Voxel grids: the two file forms and their faults, and what is worked out of a grid against a child's reading of it.
#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>
#include <random>

#include "content/components.h"
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

static std::string Zipped(const std::string &content) {
  WriteText("zipped", "");
  gzFile file = gzopen("zipped", "wb");
  gzwrite(file, content.data(), static_cast<unsigned>(content.size()));
  gzclose(file);
  return ReadText("zipped");
}

TEST(Graphics, OnlyAMissingFileOrAWrongMagicStopsALoad) {
  UseTemporaryInstallation();
  std::filesystem::remove("config/graphics");
  const std::string grid = GridBytes(), zipped = Zipped("\1" + grid);
  const struct { bool sbf; std::string file; int percent, warnings, errors, opaque, translucent; } cases[] = {
      {false, Header(2, 16, 0) + grid, 1, 0, 0, 1, 2}, {false, Header(3, 16, 0) + grid, 1, 1, 0, 1, 2},
      {false, Header(2, 15, 0) + grid, 1, 1, 0, 1, 2}, {false, Header(2, 16, 1) + grid, 1, 1, 0, 1, 2},
      {false, Header(2, 16, 0) + grid.substr(0, 9), 1, 1, 0, 1, 1}, {false, "3MP", 1, 5, 0, 0, 0},
      {false, "", 0, 0, 1, 0, 0}, {false, "3MQ" + grid, 0, 0, 1, 0, 0},
      {false, Header(2, 16, 0) + std::string(4096 * 4, '\xff'), 100, 0, 0, 4096, 0},
      {true, zipped, 1, 0, 0, 1, 2}, {true, Zipped("\2" + grid), 1, 1, 0, 1, 2}, {true, zipped.substr(0, 20), 1, 2, 0, 0, 0}};
  for (const auto &c : cases) {
    WriteText(std::string("config/graphics/components/g.") + (c.sbf ? "sbf" : "3mp"), c.file);
    std::vector<Voxel> voxels(VoxelsPerBlock);
    u16 opaque = 0, translucent = 0;
    testing::internal::CaptureStdout();
    EXPECT_EQ((c.sbf ? LoadSbfGraphic : Load3mpGraphic)(voxels.data(), "g", &opaque, &translucent), c.percent);
    const std::string log = testing::internal::GetCapturedStdout();
    EXPECT_EQ(Count(log, "WARN: "), c.warnings) << log;
    EXPECT_EQ(Count(log, "*ERR: "), c.errors) << log;
    EXPECT_EQ(opaque, c.opaque);
    EXPECT_EQ(translucent, c.translucent);
  }
  u16 count = 0;
  EXPECT_EQ(Load3mpGraphic(nullptr, "absent", &count, &count), 0);
  EXPECT_EQ(LoadSbfGraphic(nullptr, "absent", &count, &count), 0);
}

// The alphas of the six neighbours, -1 outside the grid.
static void NeighbourAlphas(const std::vector<Voxel> &grid, int i, int (&alphas)[6]) {
  const int at[3] = {i / 256, i / 16 % 16, i % 16};
  for (int n = 0; n < 6; ++n) {
    int place[3] = {at[0], at[1], at[2]};
    place[n / 2] += n % 2 == 0 ? 1 : -1;
    const bool inside = place[n / 2] >= 0 && place[n / 2] <= 15;
    alphas[n] = inside ? grid[static_cast<size_t>(place[0] * 256 + place[1] * 16 + place[2])].alpha : -1;
  }
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
  u16 opaque = 0, translucent = 0, expectedOpaque = 0;
  std::vector<u16> expected, met;
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
