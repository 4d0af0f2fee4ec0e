// Voxel grids: the two file forms and their faults.
#include <gtest/gtest.h>
#include <zlib.h>

#include <filesystem>

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
      {false, Header(2, 16, 0) + grid.substr(0, 9), 1, 1, 0, 1, 1}, {false, "3MP", 1, 5, 0, 0, 0}, {false, "", 0, 0, 1, 0, 0},
      {false, "3MQ" + grid, 0, 0, 1, 0, 0}, {false, Header(2, 16, 0) + std::string(4096 * 4, '\xff'), 100, 0, 0, 4096, 0},
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
