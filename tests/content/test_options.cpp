// The options file: widths and ranges, sections, what rubbish does to it, and that it reads back as it was written.
#include "content/options.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "core/log.h"
#include "support/installation.h"

static constexpr const char *Path = "config/text/options";

// Reads a file over the defaults and gives the log of it.
static std::string LogOfReading(const std::string &file) {
  ResetOptions();
  WriteText(Path, file);
  testing::internal::CaptureStdout();
  LogInit();
  EXPECT_TRUE(ReadOptionsFile());
  testing::internal::GetCapturedStdout();
  return ReadText("errors.txt").substr(32);
}

TEST(Options, ValuesKeepTheirWidthAndTheirRange) {
  UseTemporaryInstallation();
  EXPECT_EQ(LogOfReading("AntiAliasing 35\nFullScreen 2\nInvertMouse 3\nDistanceScale 17\nFOV 300\nScreenWidth 70000\n"
                         "MaxSpeed 4294967295\nMaxVoxels 99999999999999999999999\nCachePerFrame -1\nSwitchToFloat 1\n"
                         "InertialDampening 1e30\nMouseSensitivity -3\nSoundVolume 7\nMusicVolume 1e-999\nEnd 1\n"), "");
  EXPECT_TRUE(Options.AntiAliasing == 3 && !Options.FullScreen && Options.InvertMouse && Options.DistanceScale == 1);
  EXPECT_TRUE(Options.FOV == 44 && Options.ScreenWidth == 4464 && Options.CachePerFrame == 65535);
  EXPECT_EQ(Options.MaxSpeed, 4294967295u);
  EXPECT_TRUE(Options.InertialDampening == 4 && Options.MouseSensitivity == 0 && Options.SoundVolume == 1 && Options.MusicVolume == 0);
  for (const auto &[written, kept] : {std::pair{"FOV 0", 1}, std::pair{"FOV 256", 1}, std::pair{"FOV 255", 179}}) {
    LogOfReading(written);
    EXPECT_EQ(Options.FOV, kept) << written;
  }
}

TEST(Options, FaultsAreToldWithTheirEntryAndReadingGoesOn) {
  UseTemporaryInstallation();
  const std::string inInt = "info: Error in int section of config/text/options on line ";
  const std::string inFloat = "info: Error in float section of config/text/options on line ";
  const struct { const char *name; std::string file, log; } cases[] = {
      {"key of another section", "SwitchToFloat 1\nFOV 90\nSoundVolume 0.25\n", "info: Unknown option on line 2 \n"},
      {"fraction", "FOV 90.5\nTargetFPS 30\n", inInt + "2 \ninfo: Unknown option on line 2 \n"},
      {"end without value", "TargetFPS 30\nEnd", inInt + "2 \n"},
      {"own section word", "SwitchToInt 1\nTargetFPS 30", "info: Unknown option on line 1 \n"},
      {"text without value", "SwitchToChar 1\nPlayerName", "info: Error in String section of config/text/options on line 2 \n"},
      {"no number", "SwitchToFloat 1\nSoundVolume nan\nMusicVolume 0.5", inFloat + "2 \n"},
      {"too large", "SwitchToFloat 1\nSoundVolume 1e39\nMusicVolume -1e400\n", inFloat + "2 \n" + inFloat + "3 \n"},
      {"behind the end", "End 1\nFOV 90", ""}};
  for (const auto &c : cases) EXPECT_EQ(LogOfReading(c.file), c.log) << c.name;
  // Unknown controls are passed over, and a section word counts though the value in front of it was missing.
  EXPECT_EQ(Count(LogOfReading("SwitchToControls 1\nFly 3\nUse x\nSwitchToInt 1\nTargetFPS 30\n"), "controls section"), 2);
  EXPECT_EQ(Options.controls.use, 69);
  EXPECT_EQ(Options.TargetFPS, 30);
}

TEST(Options, RubbishOfAnyKindAndLengthLeavesWholeValues) {
  UseTemporaryInstallation();
  std::mt19937 random(5);
  for (int round = 0; round < 20; ++round) {
    std::string file = "SwitchToChar 1\nPlayerName " + std::string(5000, 'n') + "\n";
    for (int i = 0; i < 3000; ++i) file += static_cast<char>(random());
    LogOfReading(file);
    EXPECT_LE(Options.PlayerName.size(), 255u);
  }
  EXPECT_EQ(Count(LogOfReading("TargetFPS 31\n" + std::string(1 << 20, ' ') + "TargetFPS 32\n"), "WARN: "), 1);
  EXPECT_EQ(Options.TargetFPS, 31);
}

TEST(Options, AFirstRunWritesAllKeysAndALaterOneReadsThem) {
  UseTemporaryInstallation();
  EXPECT_FALSE(LoadOptions());
  EXPECT_FALSE(std::filesystem::exists(Path));
  ASSERT_TRUE(SaveOptions());
  EXPECT_EQ(ReadText(Path),
            "AntiAliasing 2\nFullScreen 0\nScreenWidth 1024\nScreenHeight 768\nInvertMouse 1\nFOV 75\nFrustumCull 0\n"
            "Tutorial 1\nShowReticle 1\nThreadedInput 0\nExplosionBounce 1\nExplosionFade 12\nHighResDiameter 100\n"
            "MidResDiameter 900\nLowResDiameter 1000\nHighResBlocks 1000\nMidResBlocks 3000\nLowResBlocks 9000\n"
            "ExperimentalLight 0\nFlashlight 1\nCrosshair 1\nHighQualityTransparency 1\nHighQualityFlashlight 0\n"
            "TargetFPS 25\nMesaGPU 0\nDisableSound 0\nDistanceScale 1\nMaxSpeed 0\nSinglePlayer 1\nEightCache 1\n"
            "QuadCache 1\nMaxVoxels 1000000\nLevelOfDetail 1\nCachePerFrame 75\nStealCpu 0\nSwitchToFloat 1\n"
            "MouseSensitivity 0.050000\nGuiScaleX 0.500000\nGuiScaleY 0.500000\nSoundVolume 1.000000\n"
            "MusicVolume 0.700000\nInertialDampening 1.000000\nExplosionScale 4.000000\nSwitchToChar 1\n"
            "Language english\nPlayerName Unknown\nServerURL localhost\nSwitchToControls 1\nUse 69\nBlockSelect 81\n"
            "MoveForward 87\nMoveBackward 83\nMoveLeft 65\nMoveRight 68\nMoveUp 90\nMoveDown 88\nStop 32\nMainMouse 0\n"
            "SecondaryMouse 1\nThirdMouse 2\nEnd 1\n");
  Options.MaxVoxels = 3000000000u;
  Options.SoundVolume = 0.25f;
  Options.PlayerName = "Ada Lovelace";
  Options.ServerURL = "";
  Options.controls.stop = 287;
  ASSERT_TRUE(SaveOptions());
  const std::string written = ReadText(Path);
  EXPECT_TRUE(LoadOptions());
  EXPECT_EQ(ReadText(Path), written);
  EXPECT_EQ(Options.MaxVoxels, 3000000000u);
  EXPECT_TRUE(Options.PlayerName == "Ada" && Options.ServerURL == "localhost" && Options.controls.stop == 287);
}
