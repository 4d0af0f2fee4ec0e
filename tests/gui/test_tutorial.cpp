// The tutorial's script: how its texts are broken into lines, what its control lines do, and that no file stops the game.
#include "gui/tutorial.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

#include "content/components.h"
#include "content/options.h"
#include "gameplay/player.h"
#include "support/installation.h"

using Lines = std::vector<std::string>;

namespace {

struct Tutorial : testing::Test {
  void SetUp() override {
    LoadTables();
    UseTemporaryInstallation();
    std::filesystem::remove("config/language");
    ResetOptions();
    ResetPlayer();
    Options.Language = "test";
  }

  // Starts the script and shows its first step.
  static void Run(const std::string &script) {
    WriteText("config/language/test", "A text\n0 #MatStart\n0 #DemoTutorialStart\n" + script);
    StartTutorial();
    TutorialNext();
  }
  static Lines Shown() { return {TutorialLines, TutorialLines + TutorialLineCount}; }
};

}  // namespace

TEST_F(Tutorial, BreaksAStepIntoTheLinesOfItsWindow) {
  const std::string words = "abcdefghijkl mnopqrstuvw", eight = "a $b $c $d $e $f $g $h";
  const std::string word40(40, 'x'), tail = " $and more than the last line has room for";
  const struct { std::string text; Lines lines; int warnings; } cases[] = {
      {"", {" "}, 0}, {words, {" " + words}, 0}, {words + "x", {" abcdefghijkl ", " mnopqrstuvwx"}, 0},
      {"\xe9\xe8\xe7 abcdefghijkl mnopqrs\xfc\r", {" \xe9\xe8\xe7 abcdefghijkl ", " mnopqrs\xfc"}, 0},
      {"one $two", {" one ", " two"}, 0}, {"one $ two", {" one ", "  two"}, 0}, {"one$two", {" ", " onetwo"}, 0},
      {"one $", {" one ", " "}, 0}, {word40 + " y", {" ", " " + std::string(38, 'x'), " y"}, 1},
      {eight, {" a ", " b ", " c ", " d ", " e ", " f ", " g ", " h"}, 0},
      {eight + tail, {" a ", " b ", " c ", " d ", " e ", " f ", " g ", " h and more than the last line has room"}, 1}};
  for (const auto &c : cases) {
    std::filesystem::remove("errors.txt");
    Run(c.text + "\n1 #Q\n");
    EXPECT_EQ(Shown(), c.lines) << c.text;
    EXPECT_EQ(Count(ReadText("errors.txt"), "WARN: The text of tutorial step 1 is too long for its window"), c.warnings) << c.text;
    EXPECT_EQ(tutorialStep, WaitQ);
  }
}

TEST_F(Tutorial, DoesWhatTheControlLineSays) {
  const int cube = 2, lamp = FindComponent(1000);
  const struct { const char *control; bool runs; u8 wait; int held; } cases[] = {
      {"1 #Q", true, WaitQ, cube}, {"1 #5 and more", true, WaitKey5, cube}, {"1 #e", true, WaitNothing, cube},
      {"0 #End", false, WaitNothing, cube},
      {"1000 #SetComponent\n1 #Q", true, WaitQ, lamp}, {"64999 #SetComponent\n1 #Q", true, WaitQ, cube},
      {"66536 #SetComponent\n1 #Q", true, WaitQ, cube}, {"1000 #SetComponent\n0 #End", true, WaitUse, lamp},
      {"1000 #SetComponent\n1000 #SetComponent", true, WaitUse, lamp}, {"1000 #SetComponent\n", true, WaitUse, lamp},
      {"1000 #Other\n1 #Q", true, WaitUse, cube}, {"-1 #Space", true, WaitUse, cube}, {"1", true, WaitUse, cube},
      {"#Space", true, WaitUse, cube}, {"", true, WaitUse, cube}, {"99999999999999999999 #SetComponent", true, WaitUse, cube}};
  for (const auto &c : cases) {
    ResetPlayer();
    Run(std::string("First.\n1 #E\nSecond.\n") + c.control + "\n");
    EXPECT_TRUE(TutorialAdvances(WaitUse));
    EXPECT_EQ(Options.Tutorial, c.runs) << c.control;
    EXPECT_EQ(tutorialStep, c.wait) << c.control;
    EXPECT_EQ(static_cast<int>(ReadPlayer().heldBlock.component), c.held) << c.control;
  }
}

TEST_F(Tutorial, WithoutAScriptItGoesOffAndPastItsEndItStays) {
  for (const char *file : {"", "A text\n0 #MatStart\n1 #DemoTutorialStart\n", "0\n#DemoTutorialStart\n"}) {
    WriteText("config/language/test", file);
    StartTutorial();
    EXPECT_FALSE(Options.Tutorial) << file;
  }
  for (const char *language : {"none", "../language/test", ""}) {
    Options.Language = language;
    StartTutorial();
    TutorialNext();
    EXPECT_FALSE(Options.Tutorial) << language;
  }
  Options.Language = "test";
  Run("First.\n1 #Q\nSecond.\n1 #Q\n");
  WriteText("config/language/test", "0 #DemoTutorialStart\nErste.\n1 #E\nZweite.\n1 #E\n");
  for (int press = 0; press < 3; ++press) {
    EXPECT_TRUE(TutorialAdvances(WaitQ)) << "the script that was opened";
    EXPECT_EQ(Shown(), Lines{" Second."});
  }
}

TEST_F(Tutorial, TakesAnyFileWithoutHarm) {
  std::mt19937 random(7);
  const char letters[] = "$ #\n\r\0\t1023Space\xc3\xff";
  bool fits = true;
  testing::internal::CaptureStdout();
  for (int round = 0; round < 200; ++round) {
    std::string script;
    for (int i = 0; i < 3000; ++i) script += letters[random() % sizeof letters];
    Run(script);
    for (int step = 0; step < 300 && Options.Tutorial; ++step) {
      TutorialNext();
      fits &= TutorialLineCount <= TutorialMaxLines;
      for (const std::string &line : Shown()) fits &= line.size() <= TutorialLineLimit;
    }
  }
  testing::internal::GetCapturedStdout();
  EXPECT_TRUE(fits);
}
