// The language file: what it names, and that no file, however broken, stops the reading or leaves a row without a text.
#include "gui/language.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "content/categories.h"
#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "core/log.h"
#include "support/installation.h"

// Two materials, and a family of three components with a loner; names are empty.
static void MakeTables() {
  Materials = std::vector<Material>(4);
  Components = std::vector<Component>(6);
  for (u16 i = 1; i < 3; ++i) Materials[i].id = static_cast<u16>(i * 10);
  for (u16 i = 1; i < 5; ++i) Components[i].id = static_cast<u16>(i * 100);
  Components[2].familyOffset = -1;
  Components[3].familyOffset = -2;
}

static std::string LogOfLoading(const std::string &file) {
  WriteText("config/language/test", file);
  Options.Language = "test";
  testing::internal::CaptureStdout();
  LogInit();
  LoadLanguage();
  testing::internal::GetCapturedStdout();
  EXPECT_EQ(GuiStrings.size(), static_cast<size_t>(GuiStringRows));
  EXPECT_EQ(GuiStrings[0], "");
  return ReadText("errors.txt").substr(32);
}

static std::string Names() {
  std::string names;
  for (size_t i = 1; i < 3; ++i) names += Materials[i].name + " ";
  for (size_t i = 1; i < 5; ++i) names += Components[i].name + " ";
  return names;
}

namespace {

struct Language : testing::Test {
  void SetUp() override {
    UseTemporaryInstallation();
    std::filesystem::remove("config/language");
    MakeTables();
  }
};

}  // namespace

TEST_F(Language, NamesRowsAndFamilies) {
  const std::string log = LogOfLoading("Yes\r\n\n" + std::string(200, 'x') +
                                       "\n0 #MatStart\n10 Iron 0 skipped\n20\nRock\n99 Nothing\n0 #ComStart 100 Hull "
                                       "300 Prow 777 Ghost 65636 Wrapped -100 Less 0 #CatStart\n10 Unread\n");
  EXPECT_EQ(Names(), "Iron Rock Hull Hull Prow Unknown ");
  EXPECT_EQ(log, "info: Excess UID in language file: 777 \ninfo: Excess UID in language file: 65636 \n"
                 "info: Excess UID in language file: -100 \ninfo: Successfully loaded language file! \n");
  const std::vector<std::string> texts = {"", "Yes", "", std::string(191, 'x'), std::string(9, 'x'), "0 #MatStart"};
  EXPECT_EQ(std::vector<std::string>(GuiStrings.begin(), GuiStrings.begin() + 6), texts);
  EXPECT_EQ(Materials[3].name + Components[5].name, "UnknownUnknown");
  // Another language replaces everything, and a missing one nothing.
  LogOfLoading("Ja\n0 #MatStart\n10 Eisen 0 #ComStart 100 Rumpf 0 #CatStart\n");
  EXPECT_EQ(Names(), "Eisen Unknown Rumpf Rumpf Rumpf Unknown ");
  EXPECT_EQ(GuiStrings[1] + GuiStrings[4], "Ja");
  for (const char *absent : {"absent", "../text/components", "/etc/passwd"}) {
    Options.Language = absent;
    testing::internal::CaptureStdout();
    LoadLanguage();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "*ERR: Could not open language file! \n");
    EXPECT_EQ(Names(), "Eisen Unknown Rumpf Rumpf Rumpf Unknown ");
  }
}

// Materials 10 and 20; components 100 with its family 200 and 300, and 400.
TEST_F(Language, WhatItLacksIsEnglish) {
  const std::string loaded = "info: Successfully loaded language file! \n";
  const auto lacks = [&loaded](int count) {
    return "info: Texts and names that the language lacks, in English instead: " + std::to_string(count) + " \n" + loaded;
  };
  WriteText("config/language/english", "Yes\nNo\nBack\n0 #MatStart\n10 Iron 20 Rock 99 Ghost 0 #ComStart 100 Hull 300 Prow 400 Lamp 0 #CatStart\n");
  const struct { std::string file, names, texts, log; } cases[] = {
      {"Ja\n\nZur\xfc" "ck\n0 #MatStart\n10 Eisen 20 Fels 0 #ComStart 100 Rumpf 300 Bug 400 Lampe 0 #CatStart\n",
       "Eisen Fels Rumpf Rumpf Bug Lampe ", "Ja,,Zur\xfc" "ck", loaded},
      {"Ja\n0 #MatStart\n10 Eisen 0 #ComStart 100 Rumpf 0 #CatStart\n", "Eisen Rock Rumpf Rumpf Rumpf Lamp ", "Ja,No,Back", lacks(4)},
      {"Ja\nNein\nx\ny\n0 #MatStart\n20 Fels 0 #ComStart 300 Bug 0 #CatStart\n", "Iron Fels Hull Hull Bug Lamp ", "Ja,Nein,x", lacks(3)},
      {"Ja\n0 #MatStart\n10 Eisen", "Eisen Rock Hull Hull Prow Lamp ", "Ja,No,Back",
       "info: Error in language file in Material section \ninfo: Texts and names that the language lacks, in English instead: 6 \n"}};
  for (const auto &c : cases) {
    EXPECT_EQ(LogOfLoading(c.file), c.log);
    EXPECT_EQ(Names(), c.names);
    EXPECT_EQ(GuiStrings[1] + "," + GuiStrings[2] + "," + GuiStrings[3], c.texts);
  }
  // A start in a language that has gone, or is no language.
  for (const char *gone : {"absent", "test"}) {
    MakeTables();
    GuiStrings.assign(GuiStringRows, "");
    WriteText("config/language/test", "Ja\n");
    Options.Language = gone;
    EXPECT_FALSE(LoadLanguage());
    EXPECT_EQ(Names() + GuiStrings[3], "Iron Rock Hull Hull Prow Lamp Back");
  }
}

TEST_F(Language, AnotherOneOrdersTheListsAnew) {
  for (size_t i = 1; i < 3; ++i) Materials[i].tags[0] = "Common";
  for (const size_t i : {1u, 4u}) Components[i].primaryTag = "Common";
  using Rows = std::vector<u16>;
  LogOfLoading("Yes\n0 #MatStart\n10 Iron 20 Rock 0 #ComStart 100 Hull 400 Prow 0 #CatStart\n");
  SortMaterials();
  SortComponents();
  ComponentCategories[1].open = true;
  LogOfLoading("Oui\n0 #MatStart\n10 Fer 20 Eau 0 #ComStart 100 Coque 400 Avant 0 #CatStart\n");
  SortByNewNames();
  EXPECT_EQ(MaterialCategories[1].rows, (Rows{2, 1}));
  EXPECT_EQ(ComponentCategories[1].rows, (Rows{4, 1}));
  EXPECT_TRUE(ComponentCategories[1].open);
}

TEST_F(Language, EndsWithOneMessageWhereAMarkIsMissing) {
  const std::string material = "info: Error in language file in Material section \n";
  const std::string component = "info: Error in language file in Component section \n";
  const struct { std::string file, log; } cases[] = {
      {"", "*ERR: The language file ends before its line \"0 #MatStart\" \n"},
      {"Yes\nNo", "*ERR: The language file ends before its line \"0 #MatStart\" \n"},
      {"0 #MatStart", material}, {"0 #MatStart\n10 Iron 20", material}, {"0 #MatStart\n0 #CatStart\n", material},
      {"0 #MatStart\n0 #ComStart\n100 Hull", component},
      {"0 #MatStart\n10 Iron\noops 20 Rock 0 #ComStart 0 #CatStart", material + "info: Successfully loaded language file! \n"}};
  LogOfLoading("Ja\n0 #MatStart\n10 Eisen 0 #ComStart 0 #CatStart\n");
  for (const auto &c : cases) {
    EXPECT_EQ(LogOfLoading(c.file), c.log) << c.file;
    EXPECT_TRUE(c.log[0] != '*' || GuiStrings[1] + Materials[1].name == "JaEisen") << "no language file, and yet it was taken";
    EXPECT_NE(Components[4].name, "");
    EXPECT_NE(Materials[2].name, "");
  }
}

TEST_F(Language, RubbishEndsToo) {
  std::mt19937 random(3);
  std::string noise, lines;
  for (int i = 0; i < 200000; ++i) noise += static_cast<char>(random());
  for (int i = 0; i < 1000; ++i) lines += "row " + std::to_string(i) + "\n";
  LogOfLoading(noise);
  const std::string log = LogOfLoading(lines + "0 #MatStart\n" + noise);
  EXPECT_LT(log.size(), 10000u);
  EXPECT_EQ(GuiStrings[127], "row 126");
}
