// The two tables: broken rows are told with file and line and leave the table in use alone, odd ones are read as told.
#include <gtest/gtest.h>

#include <filesystem>

#include "content/categories.h"
#include "content/components.h"
#include "content/materials.h"
#include "content/text_scan.h"
#include "core/log.h"
#include "support/installation.h"

static const std::string numbers = " 2 3 4 5 6 7 8 9 10 11 12 13 14 255 ";

static std::string MaterialRow(int id, const std::string &words) { return std::to_string(id) + numbers + words + "\n"; }

static std::string ComponentRow(int id, const std::string &rest, const std::string &stem = "one") {
  return std::to_string(id) + " 1 2 3 0 0 0 " + stem + " " + rest + "\n";
}

// A grid file of one opaque voxel at index 0.
static std::string OneVoxelGraphic() {
  std::string bytes("3MP\2\0\0\0\20\0\0\0\20\0\0\0\20\0\0\0", 19);
  bytes.resize(16416, '\0');
  bytes[32 + 3] = '\xff';
  return bytes;
}

// Runs a load over a file in a fresh installation and gives its result and the log.
struct Loaded {
  int result;
  std::string log;
};
static Loaded Load(int (*load)(), const std::string &path, const std::string &file) {
  UseTemporaryInstallation();
  std::filesystem::remove("config/graphics");
  WriteText("config/graphics/components/one.3mp", OneVoxelGraphic());
  WriteText("config/graphics/components/bad.3mp", "4MP");
  WriteText(path, file);
  testing::internal::CaptureStdout();
  LogInit();
  const int result = load();
  testing::internal::GetCapturedStdout();
  return {result, ReadText("errors.txt").substr(32)};
}
static Loaded LoadMaterialText(const std::string &file) { return Load(LoadMaterials, "config/text/materials", file); }
static Loaded LoadComponentText(const std::string &file) { return Load(LoadComponents, "config/text/components", file); }

TEST(Tables, ABrokenRowIsToldWithItsLineAndTheOldTableStays) {
  const std::string good = MaterialRow(110, "metal Common"), w32(32, 'w'), w64(64, 'w');
  std::string many;
  for (int row = 0; row < 255; ++row) many += good;
  ASSERT_EQ(LoadMaterialText(good).result, 2);
  const struct { std::string file; int line; } materials[] = {
      {"# a\n1 2 3 metal\n", 2}, {good + "1" + numbers, 2}, {"0" + numbers + "a b\n", 1}, {"65537" + numbers + "a b\n", 1},
      {"x" + numbers + "a b\n", 1}, {"1.5" + numbers + "a b\n", 1}, {MaterialRow(1, w64 + " b"), 1},
      {MaterialRow(1, "a b|" + w32), 1}, {"\n\n" + MaterialRow(1, "a " + std::string(300, 'w')), 3},
      {MaterialRow(1, "a b " + std::string(4096, 'c')), 1}, {many, 255}, {std::string("\0\0\xff\n", 4), 1}};
  for (const auto &c : materials) {
    const Loaded loaded = LoadMaterialText(c.file);
    EXPECT_EQ(loaded.result, 0) << c.file.substr(0, 80);
    const std::string line = std::to_string(c.line), words = "info: Error in Materials file on line " + line;
    EXPECT_EQ(loaded.log.find(words + " \n*ERR: config/text/materials:" + line + ": "), 0u) << loaded.log;
    EXPECT_EQ(Materials.size(), 3u);
  }
  const struct { std::string file; int line; } components[] = {
      {ComponentRow(2, "block 0 - 0"), 1}, {ComponentRow(2, w64 + " 0 - 0 tag"), 1},
      {"#\n" + ComponentRow(2, "block 0 " + w64 + w64 + " 0 tag"), 2}, {ComponentRow(2, "block 0 - 0 a|" + w32), 1},
      {ComponentRow(2, "block 0 - 0 tag", "absent"), 1}, {ComponentRow(2, "block 0 - 0 tag", "bad"), 1},
      {ComponentRow(-65535, "block 0 - 0 tag"), 1}};
  for (const auto &c : components) {
    const Loaded loaded = LoadComponentText(c.file);
    EXPECT_EQ(loaded.result, 0) << c.file;
    EXPECT_NE(loaded.log.find("config/text/components:" + std::to_string(c.line) + ": "), std::string::npos) << loaded.log;
  }
}

TEST(Tables, AFileWithoutRowsIsATableWithoutRows) {
  EXPECT_EQ(LoadMaterialText("# nothing\n#").result, 1);
  EXPECT_EQ(Materials[1].id, 0);
  const Loaded loaded = LoadComponentText("");
  EXPECT_EQ(loaded.result, 1);
  EXPECT_EQ(Count(loaded.log, "row 1 takes its place"), 3);
  EXPECT_FALSE(FindPhaseComponents());
  std::filesystem::remove("config/text/materials");
  EXPECT_EQ(LoadMaterials(), 0);
}

TEST(Tables, MaterialsKeepColumnsAndTags) {
  const Loaded loaded = LoadMaterialText("110" + numbers + "metal a|b|c|d|e|" + std::string(40, 'x') + "  behind it\r\n" +
                                         "7 1 2 3 4 5 6 7 8 9 10 300 1 2 3 soft Common");
  ASSERT_EQ(loaded.result, 3);
  EXPECT_EQ(loaded.log, "");
  const Material &m = Materials[1];
  EXPECT_TRUE(m.density == 3 && m.boilingPoint == 7 && m.red == 12 && m.alpha == 255 && m.soundClass == "metal");
  EXPECT_EQ(m.tags[0] + m.tags[1] + m.tags[2] + m.tags[3], "abcd");
  EXPECT_EQ(Materials[2].red, 300 - 256);
}

TEST(Tables, WhatLeadsOutOfTheTableBecomesZero) {
  const Loaded loaded = LoadComponentText(
      ComponentRow(160, "animation 0 - 1 a|b") + ComponentRow(7, "animation -1 - -1 a") + ComponentRow(8, "x -3 - 3 a") +
      ComponentRow(9, "x -200 - 300 a") + ComponentRow(10, "x 1 - -5 a") + ComponentRow(900, "x 1 - 0 a") +
      ComponentRow(215, "x 0 - 1 a"));
  ASSERT_EQ(loaded.result, 8);
  const struct { i8 family, step; u8 delay, traits; } rows[] = {
      {0, 1, 17, TraitAnimated}, {-1, -1, 17, TraitAnimated}, {0, 3, 17, 0}, {0, 0, 255, TraitRemoves},
      {1, 0, 255, TraitFullBlock}, {1, 0, 255, TraitFullBlock}, {0, 0, 255, TraitFullBlock}};
  for (size_t i = 0; i < std::size(rows); ++i) {
    const Component &c = Components[i + 1];
    EXPECT_TRUE(c.familyOffset == rows[i].family && c.frameStep == rows[i].step && c.frameDelay == rows[i].delay) << i;
    EXPECT_EQ(ComponentTraits[i + 1], rows[i].traits) << i;
  }
  EXPECT_EQ(Count(loaded.log, "leads outside the table"), 5) << loaded.log;
  EXPECT_EQ(Count(loaded.log, "components:4: column 1"), 2) << loaded.log;
  EXPECT_EQ(RemotePlayerComponent, 1);
  EXPECT_EQ(AsteroidRockBase, 7);
  EXPECT_EQ(Count(loaded.log, "needs five rows of rock"), 1);
  EXPECT_EQ(FamilyBase(60000), 0);
}

TEST(Tables, CategoriesListBasesByName) {
  LoadMaterialText(MaterialRow(1, "a Rock|Common|Rock") + MaterialRow(2, "a Common|Metal") + MaterialRow(3, "a |Rock"));
  LoadComponentText(ComponentRow(1, "x 0 - 0 Hull|Common") + ComponentRow(2, "x -1 - 0 Lamps") + ComponentRow(3, "x 0 - 0 Hull") +
                    ComponentRow(4, "x 0 - 0 debug|Lamps"));
  const char *names[] = {"", "b", "B", "a", "c"};
  for (size_t row = 1; row < 4; ++row) Materials[row].name = names[row];
  for (size_t row = 1; row < 5; ++row) Components[row].name = names[row];
  SortMaterials();
  SortComponents();
  std::string listed;
  for (const auto *categories : {&MaterialCategories, &ComponentCategories})
    for (const Category &c : *categories) {
      listed += c.name + ":";
      for (const u16 row : c.rows) listed.append(" ").append(std::to_string(row));
      listed += "\n";
    }
  EXPECT_EQ(listed, "debug:\nCommon: 2 1\nRock: 3 1\ndebug: 4\nCommon: 1\nHull: 3 1\nLamps: 4\n");
}

TEST(Tables, ALineOfFullLengthIsOneRowWhateverEndsIt) {
  const std::pair<std::string, std::string> cases[] = {
      {"123456789\r\ny", "9 1 "}, {"1234567890\ny", "10 1 "}, {"1234567890\r\ny", "10 1 "}, {"12345678901\r\ny", "10 1 1 "},
      {"1234567890", "10 "}, {"1234567890123", "10 3 "}, {"\n\r\n", "0 0 "}};
  for (const auto &[text, lengths] : cases) {
    TextCursor cursor{text, 0};
    std::string_view line;
    std::string found;
    while (ScanLine(&cursor, 10, &line)) found += std::to_string(line.size()) + " ";
    EXPECT_EQ(found, lengths) << text;
  }
}
