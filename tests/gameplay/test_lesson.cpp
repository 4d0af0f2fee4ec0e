// What the player does, as the tutorial sees it.
#include <filesystem>

#include "gameplay/play.h"
#include "gui/tutorial.h"

namespace {

// The tutorial runs, and its first step waits for the word; the second one waits for a word that nobody knows.
struct Lesson : Play {
  void SetUp() override {
    Play::SetUp();
    std::filesystem::remove("config/language");
    Options.Language = "test";
    Place(Middle, Middle, Middle - 5);
  }
  static void WaitFor(const std::string &word) {
    WriteText("config/language/test", "0 #DemoTutorialStart\nDo it.\n1 " + word + "\nDone.\n1 #Nothing\n");
    StartTutorial();
    TutorialNext();
    ASSERT_NE(tutorialStep, WaitNothing) << word;
    uiMode = 0;
    RefreshTarget();
  }
};

}  // namespace

TEST_F(Lesson, AdvancesOnTheKeyThatItWaitsForAndOnNoOther) {
  const Controls &c = Options.controls;
  const struct { const char *word; int key, action, other; bool opensMenu; } cases[] = {
      {"#Space", c.stop, 0, c.moveUp, false}, {"#WASD", c.moveUp, 0, c.stop, false}, {"#WASD", c.moveForward, 0, c.stop, false},
      {"#E", c.use, 1, '1', false}, {"#Esc", KeyEsc, 1, c.use, false}, {"#EscorQ", KeyEsc, 1, c.use, false},
      {"#Q", c.blockSelect, 1, '1', true}, {"#EscorQ", c.blockSelect, 1, '1', true}, {"#1", '1', 1, '2', false},
      {"#2", '2', 1, '5', false}, {"#3", '3', 1, '4', false}, {"#4", '4', 1, '3', false}, {"#5", '5', 1, '2', false},
      {"#2or5", '2', 1, '3', false}, {"#2or5", '5', 1, '1', false}};
  for (const auto &k : cases) {
    const std::pair<int, int> presses[] = {{k.other, k.action}, {k.key, 1 - k.action}, {k.key, k.action}};
    for (const auto &press : presses) {
      WaitFor(k.word);
      OnKey(press.first, press.second);
      EXPECT_EQ(tutorialStep == WaitNothing, &press == &presses[2]) << k.word;
    }
    EXPECT_EQ(uiMode == 1, k.opensMenu) << k.word << ": Esc is the tutorial's alone";
  }
  WaitFor("#EscorQ");
  uiMode = 1;
  OnKey(KeyEsc, 1);
  EXPECT_EQ(uiMode, 0) << "a list stays open before the next step";
}

TEST_F(Lesson, AdvancesOnAPressThatPlacesABlockAndOnTheHeatTool) {
  const struct { const char *word; int tool, button; bool blocked, advances; } cases[] = {
      {"#LMB-BlockPlace", '1', 0, true, false}, {"#LMB-BlockPlace", '1', 1, false, false},
      {"#LMB-BlockPlace", '2', 0, false, false}, {"#LMB-Laser", '1', 0, true, false}, {"#LMB-Laser", '5', 0, false, true}};
  for (const auto &k : cases) {
    Place(Middle, Middle, Middle - 5);
    WaitFor(k.word);
    OnKey(k.tool, 1);
    Target t = ReadPlayer().target;
    t.targetBlocked = k.blocked;
    StoreAim(t);
    OnMouseButton(k.button, 1);
    EXPECT_EQ(tutorialStep == WaitNothing, k.advances) << k.word << ' ' << k.tool << ' ' << k.button;
  }
  for (const int tool : {'1', '3'}) {
    WaitFor("#LMB-BlockPlace");
    OnKey(tool, 1);
    OnMouseButton(0, 1);
    EXPECT_EQ(tutorialStep, WaitNothing) << tool;
  }
}

TEST_F(Lesson, F1EndsItAtOnceAndKeepsThatInTheOptions) {
  WaitFor("#Space");
  OnKey(KeyF1, 1);
  EXPECT_FALSE(Options.Tutorial);
  EXPECT_NE(ReadText("config/text/options").find("Tutorial 0\n"), std::string::npos);
  OnKey(KeyF1, 1);
  EXPECT_TRUE(Options.Tutorial);
  EXPECT_EQ(tutorialStep, WaitSpace) << "from the start again";
  EXPECT_EQ(TutorialLines[0], " Do it.");
}
