// Who owns the input, and the tutorial's state, without a window.
#include "gui/mode.h"

#include <gtest/gtest.h>

#include "content/options.h"
#include "gui/tutorial.h"

TEST(Mode, OpensAndClosesTheMenuUnlessItIsLocked) {
  const struct { bool closable; u8 mode; int result; u8 after; } steps[] = {
      {true, 0, 1, 1}, {true, 1, 0, 0}, {false, 0, 0, 0}, {false, 1, 0, 1}, {true, 2, 0, 2}};
  for (const auto &s : steps) {
    MenuClosable = s.closable;
    uiMode = s.mode;
    PlayerFlags.menuOpen = s.mode == 1;
    testing::internal::CaptureStdout();
    EXPECT_EQ(ToggleMenu(), s.result);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), s.mode == 2 ? "WARN: Problem setting UI Mode \n" : "");
    EXPECT_EQ(uiMode, s.after);
    EXPECT_EQ(PlayerFlags.menuOpen, s.after == 1);
  }
  MenuClosable = true;
}

TEST(Tutorial, AdvancesOnlyWhileItRunsAndWaitsForThis) {
  const struct { bool runs; u8 step, seen; bool advances; } cases[] = {
      {true, WaitEsc, WaitEsc, true}, {true, WaitEsc, WaitQ, false}, {true, WaitNothing, WaitNothing, false},
      {false, WaitEsc, WaitEsc, false}};
  for (const auto &c : cases) {
    Options.Tutorial = c.runs;
    tutorialStep = c.step;
    EXPECT_EQ(TutorialAdvances(c.seen), c.advances);
    EXPECT_EQ(tutorialStep, c.advances ? 0 : c.step);
  }
  StartTutorial();
  EXPECT_TRUE(Options.Tutorial);
  testing::internal::CaptureStdout();
  EndTutorial();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "info: Ending Tutorial \n");
  EXPECT_FALSE(Options.Tutorial);
}
