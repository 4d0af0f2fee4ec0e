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

namespace {

// Somebody who has never played: six blocks from the rock, looks nowhere else, and holds each button for two seconds.
struct Stranger : Play {
  static constexpr int Rock = Middle - 7;  // six free cells between the player and it
  void SetUp() override {
    Play::SetUp();
    for (int x = -3; x <= 3; ++x)
      for (int y = -3; y <= 3; ++y) Place(Middle + x, Middle + y, Rock);
    RefreshTarget();
  }
  static void HoldButton(int button) {
    SetMouseState(button, true);
    OnMouseButton(button, 1);
    for (int repeat = 0; repeat < 10 && uiMode == 0; ++repeat) {
      nextToolTime = ClockNow() - 1;
      Player p = ReadPlayer();
      HeldInputStep(&p);
      RefreshTarget();
    }
    SetMouseState(button, false);
    OnMouseButton(button, 0);
  }
  static void HoldKey(int key) {
    OnKey(key, 1);
    OnKey(key, 0);
    RefreshTarget();
  }
  // What the step asks for; a block that is in the way is taken away first, as the words say.
  static void Do(u8 wait) {
    const Controls &c = Options.controls;
    const int keys[] = {0, c.stop, KeyEsc, c.blockSelect, 0, c.blockSelect, '1', '2', '3', '4', '5', '2', c.moveRight, 0, c.use};
    if (wait != WaitBlockPlace) return HoldKey(keys[wait]);
    HoldButton(0);
    if (tutorialStep != wait || StepText() != Before) return;
    HoldButton(1);
    HoldButton(0);
  }
  static std::string StepText() {
    std::string text;
    for (int line = 0; line < TutorialLineCount; ++line) text += TutorialLines[line];
    return text;
  }
  static inline std::string Before;
};

}  // namespace

TEST_F(Stranger, ReachesTheEndInEveryLanguageAndIsNotTaughtAgain) {
  for (const auto &language : std::filesystem::directory_iterator(std::string(TARNVALE_ROOT) + "/config/language")) {
    SCOPED_TRACE(language.path());
    std::filesystem::remove("config/text/options");
    Options.Language = language.path().filename().string();
    StartTutorial();
    TutorialNext();
    uiMode = 0;
    int steps = 0;
    std::string last;
    for (; Options.Tutorial && steps < 60; ++steps) {
      last = Before = StepText();
      Do(tutorialStep);
      ASSERT_NE(StepText(), Before) << "the step stays";
      for (const int z : {Middle, Middle + 1}) ASSERT_FALSE(Taken(Middle, Middle, z)) << "built into the player: " << Before;
    }
    EXPECT_GE(steps, 20);
    EXPECT_NE(last.find("F1"), std::string::npos) << "the last words wait to be read: " << last;
    EXPECT_NE(ReadText("config/text/options").find("Tutorial 0\n"), std::string::npos);
    SetUp();
  }
}
