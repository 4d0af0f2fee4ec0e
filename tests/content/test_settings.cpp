// The settings file: what the game keeps in it, and that nothing else of it is ever lost.
#include "content/settings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <random>

#include "core/log.h"
#include "support/installation.h"

namespace fs = std::filesystem;

static constexpr const char *Path = "config/text/settings";

static std::string LogOf(void (*work)()) {
  testing::internal::CaptureStdout();
  LogInit();
  work();
  testing::internal::GetCapturedStdout();
  return ReadText("errors.txt").substr(32);
}

static std::string LogOfReading(const std::string &file) {
  WriteText(Path, file);
  return LogOf(LoadSettings);
}

TEST(Settings, AValueIsTakenFromItsFirstGoodLineAndFaultsAreTold) {
  UseTemporaryInstallation();
  EXPECT_EQ(LogOf(LoadSettings), "") << "no file";
  EXPECT_EQ(SettingText(Setting::Ship), "");
  const std::string at = "WARN: config/text/settings:", full(251, 'n');
  const struct { std::string file, ship, log; } cases[] = {
      {"Ship Heron of Dusk\n", "Heron of Dusk", ""}, {"\n# ours\r\n  Ship \t Heron  \r\nEnd", "Heron", at + "4: the game has no setting End; the line is kept \n"},
      {"Ship " + full, full, ""}, {"Ship " + full + "n", "", at + "1: the value of Ship is longer than 251 bytes \n"},
      {"Ship ../Heron\nShip .Heron\nShip He\x01ron\nShip Grebe\nShip Late", "Grebe",
       at + "1: the value of Ship is no name of a ship in saves/ \n" + at + "2: the value of Ship is no name of a ship in saves/ \n" + at +
           "3: the value of Ship is no name of a ship in saves/ \n" + at + "5: Ship is given once more; the first line counts \n"},
      {"Ship\nship Heron", "", at + "1: Ship has no value \n" + at + "2: the game has no setting ship; the line is kept \n"},
      {std::string(1025, 'x') + "\nShip Heron", "Heron", at + "1: the line is longer than 1024 bytes \n"}};
  for (const auto &c : cases) {
    EXPECT_EQ(LogOfReading(c.file), c.log) << c.file;
    EXPECT_EQ(SettingText(Setting::Ship), c.ship) << c.file;
  }
  std::mt19937 random(5);
  std::string noise;
  for (int i = 0; i < 60000; ++i) noise += static_cast<char>(random());
  EXPECT_EQ(Count(LogOfReading(noise), "\nWARN: "), 19) << "the first twenty";
}

TEST(Settings, OneLineIsReplacedAndAllOthersStay) {
  UseTemporaryInstallation();
  LoadSettings();
  ASSERT_TRUE(StoreSetting(Setting::Ship, "Heron"));
  EXPECT_EQ(ReadText(Path), "Ship Heron\n") << "a new file";
  const struct { std::string before, after; } files[] = {
      {"Key 3\r\n\n# Ship\n Ship Heron\r\nLater", "Key 3\r\n\n# Ship\nShip Grebe\nLater"}, {"Later 1", "Later 1\nShip Grebe\n"},
      {"Shipyard 3\nShip\nShip Heron\n", "Shipyard 3\nShip Grebe\nShip Heron\n"}};
  for (const auto &f : files) {
    LogOfReading(f.before);
    ASSERT_TRUE(StoreSetting(Setting::Ship, "Grebe"));
    EXPECT_EQ(ReadText(Path), f.after);
    EXPECT_FALSE(fs::exists(std::string(Path) + ".tmp"));
    LoadSettings();
    EXPECT_EQ(SettingText(Setting::Ship), "Grebe");
  }
  WriteText(Path, "Ship Grebe\nWritten meanwhile\n");
  const auto written = fs::last_write_time(Path);
  EXPECT_TRUE(StoreSetting(Setting::Ship, "Grebe"));
  EXPECT_EQ(fs::last_write_time(Path), written) << "what is there is not written again";
  EXPECT_TRUE(StoreSetting(Setting::Ship, "Teal"));
  EXPECT_EQ(ReadText(Path), "Ship Teal\nWritten meanwhile\n");
  for (const char *bad : {"", "a/b", "\t", ".b", "a\nFake 1"}) EXPECT_FALSE(StoreSetting(Setting::Ship, bad)) << bad;
  EXPECT_EQ(SettingText(Setting::Ship) + ReadText(Path), "TealShip Teal\nWritten meanwhile\n");
  const struct { std::string value, line; } forms[] = {
      {" Heron", "\" Heron\""}, {"Heron ", "\"Heron \""}, {" ", "\" \""}, {"\"Heron\"", "\"Heron\""}, {"\"", "\""},
      {"\" Heron\"", "\"\" Heron\"\""}, {"\"\"", "\"\""}, {std::string(250, '"') + " ", '"' + std::string(250, '"') + " \""}};
  for (const auto &f : forms) {
    ASSERT_TRUE(StoreSetting(Setting::Ship, f.value)) << f.value;
    EXPECT_EQ(ReadText(Path), "Ship " + f.line + "\nWritten meanwhile\n");
    LoadSettings();
    EXPECT_EQ(SettingText(Setting::Ship), f.value);
  }
}

TEST(Settings, WhatCantBeReadOrWrittenStaysAndIsToldOnce) {
  UseTemporaryInstallation();
  const std::string large = "Ship Heron\n" + std::string(64 << 10, '#');
  EXPECT_EQ(Count(LogOfReading(large), "over 64 KiB"), 1);
  EXPECT_EQ(SettingText(Setting::Ship), "");
  const auto store = [] {
    EXPECT_FALSE(StoreSetting(Setting::Ship, "Grebe"));
    EXPECT_FALSE(StoreSetting(Setting::Ship, "Grebe"));
  };
  EXPECT_EQ(Count(LogOf(store), "WARN: "), 1);
  EXPECT_EQ(ReadText(Path), large);
  EXPECT_EQ(SettingText(Setting::Ship), "Grebe") << "for this run";
  fs::remove(Path);
  EXPECT_TRUE(StoreSetting(Setting::Ship, "Grebe")) << "it is tried again";
  fs::remove(Path);
  fs::create_directory(Path);
  EXPECT_EQ(Count(LogOf(LoadSettings), "can't be read"), 1);
  EXPECT_EQ(Count(LogOf(store), "WARN: "), 1);
  EXPECT_TRUE(fs::is_directory(Path));
}
