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

namespace {

// Runs a load over a file in a fresh installation and gives its result and the log.
struct Loaded {
  int result;
  std::string log;
};

}  // namespace
static Loaded LoadText(const std::string &table, const std::string &file) {
  UseTemporaryInstallation();
  std::filesystem::remove("config/graphics");
  WriteText("config/graphics/components/one.3mp", "3MP");
  WriteText("config/graphics/components/bad.3mp", "4MP");
  WriteText("config/text/" + table, file);
  testing::internal::CaptureStdout();
  LogInit();
  const int result = table == "materials" ? LoadMaterials() : LoadComponents();
  testing::internal::GetCapturedStdout();
  return {result, ReadText("errors.txt").substr(32)};
}

TEST(Tables, ABrokenRowIsToldWithItsLineAndTheOldTableStays) {
  const std::string good = MaterialRow(110, "metal Common"), w32(32, 'w'), w64(64, 'w');
  std::string many;
  for (int row = 0; row < 255; ++row) many += good;
  ASSERT_EQ(LoadText("materials", good).result, 2);
  const struct { std::string table, file; int line; } cases[] = {
      {"materials", "# a\n1 2 3 metal\n", 2}, {"materials", good + "1" + numbers, 2}, {"materials", "0" + numbers + "a b\n", 1},
      {"materials", "65537" + numbers + "a b\n", 1}, {"materials", "x" + numbers + "a b\n", 1},
      {"materials", "1.5" + numbers + "a b\n", 1}, {"materials", MaterialRow(1, w64 + " b"), 1},
      {"materials", MaterialRow(1, "a b|" + w32), 1}, {"materials", "\n\n" + MaterialRow(1, "a " + std::string(300, 'w')), 3},
      {"materials", MaterialRow(1, "a b " + std::string(4096, 'c')), 1}, {"materials", many, 255},
      {"materials", std::string("\0\0\xff\n", 4), 1}, {"components", ComponentRow(2, "block 0 - 0"), 1},
      {"components", ComponentRow(2, w64 + " 0 - 0 tag"), 1},
      {"components", "#\n" + ComponentRow(2, "block 0 " + w64 + w64 + " 0 tag"), 2},
      {"components", ComponentRow(2, "block 0 - 0 a|" + w32), 1}, {"components", ComponentRow(2, "block 0 - 0 tag", "absent"), 1},
      {"components", ComponentRow(2, "block 0 - 0 tag", "bad"), 1}, {"components", ComponentRow(-65535, "block 0 - 0 tag"), 1}};
  for (const auto &c : cases) {
    const Loaded loaded = LoadText(c.table, c.file);
    EXPECT_EQ(loaded.result, 0) << c.file.substr(0, 80);
    const std::string line = std::to_string(c.line), told = "*ERR: config/text/" + c.table + ":" + line + ": ";
    EXPECT_EQ(Count(loaded.log, told), 1) << loaded.log;
    const std::string word = c.table == "materials" ? "Materials" : "Components";
    EXPECT_LT(loaded.log.find("info: Error in " + word + " file on line " + line + " \n"), loaded.log.find(told)) << loaded.log;
    EXPECT_EQ(Materials.size(), 3u);
  }
}

TEST(Tables, AFileWithoutRowsIsATableWithoutRows) {
  EXPECT_EQ(LoadText("materials", "# nothing\n#").result, 1);
  EXPECT_EQ(Materials[1].id, 0);
  const Loaded loaded = LoadText("components", "");
  EXPECT_EQ(loaded.result, 1);
  EXPECT_EQ(Count(loaded.log, "row 1 takes its place"), 3);
  EXPECT_FALSE(FindPhaseComponents());
  std::filesystem::remove("config/text/materials");
  EXPECT_EQ(LoadMaterials(), 0);
}

TEST(Tables, MaterialsKeepColumnsAndTags) {
  const Loaded loaded = LoadText("materials", "110" + numbers + "metal a|b|c|d|e|" + std::string(40, 'x') + "  behind it\r\n" +
                                         "7 1 2 3 4 5 6 7 8 9 10 300 1 2 3 soft Common");
  ASSERT_EQ(loaded.result, 3);
  EXPECT_EQ(loaded.log, "");
  const Material &m = Materials[1];
  EXPECT_TRUE(m.density == 3 && m.boilingPoint == 7 && m.red == 12 && m.alpha == 255 && m.soundClass == "metal");
  EXPECT_EQ(m.tags[0] + m.tags[1] + m.tags[2] + m.tags[3], "abcd");
  EXPECT_EQ(Materials[2].red, 300 - 256);
}

TEST(Tables, WhatLeadsOutOfTheTableBecomesZero) {
  const Loaded loaded = LoadText("components", 
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
  LoadText("materials", MaterialRow(1, "a Rock|Common|Rock") + MaterialRow(2, "a Common|Metal") + MaterialRow(3, "a |Rock"));
  LoadText("components", ComponentRow(1, "x 0 - 0 Hull|Common") + ComponentRow(2, "x -1 - 0 Lamps") +
                             ComponentRow(3, "x 0 - 0 Hull") + ComponentRow(4, "x 0 - 0 debug|Lamps"));
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
