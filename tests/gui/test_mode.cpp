// Who owns the input, without a window.
#include "gui/mode.h"

#include <gtest/gtest.h>

#include "gui/elements.h"

TEST(Mode, OpensAndClosesTheMenuUnlessItIsLocked) {
  const struct { bool closable; u8 mode; int result; u8 after; } steps[] = {
      {true, 0, 1, 1}, {true, 1, 0, 0}, {false, 0, 0, 0}, {false, 1, 0, 1}, {true, 2, 0, 2}};
  for (const auto &s : steps) {
    MenuClosable = s.closable;
    uiMode = s.mode;
    PlayerFlags.menuOpen = s.mode == 1;
    testing::internal::CaptureStdout();
    PointAt(3, 4);
    EXPECT_EQ(ToggleMenu(), s.result);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), s.mode == 2 ? "WARN: Problem setting UI Mode \n" : "");
    EXPECT_EQ(uiMode, s.after);
    EXPECT_EQ(PlayerFlags.menuOpen, s.after == 1);
    // A click right after Esc goes to where the pointer is seen, not to where the last menu left it.
    EXPECT_EQ(GuiPointerX == 0 && GuiPointerY == 0, s.mode == 0 && s.closable);
  }
  MenuClosable = true;
}
