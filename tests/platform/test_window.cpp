// The real window on the display that the tests run on, driven from outside with xdotool.
#include "platform/window.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

static std::vector<std::string> Events;

static void Note(const char *kind, int a, int b) {
  Events.push_back(std::string(kind) + " " + std::to_string(a) + " " + std::to_string(b));
}

static void Xdo(const std::string &words) { ASSERT_EQ(system(("xdotool " + words).c_str()), 0) << words; }

// Polls until a condition holds, at most two seconds, then a little longer for what should not come.
static void PollUntil(const std::function<bool()> &reached) {
  for (int i = 0, after = 0; i < 200 && after < 5; i++) {
    after += after > 0 || reached() ? 1 : 0;
    SwapBuffers();
    usleep(10000);
  }
}
static void PollForEvents(size_t count) {
  PollUntil([count] { return Events.size() >= count; });
}

namespace {

struct WindowTest : testing::Test {
  void SetUp() override {
    if (getenv("DISPLAY") == nullptr) GTEST_SKIP() << "no display";
    ASSERT_TRUE(InitPlatform());
    WindowRequest request;
    request.width = 400;
    request.height = 300;
    ASSERT_TRUE(OpenWindow(request));
    SetKeyCallback([](int key, int action) { Note("key", key, action); });
    SetCharCallback([](int character, int action) { Note("char", character, action); });
    SetMouseButtonCallback([](int button, int action) { Note("button", button, action); });
    SetMousePositionCallback([](int x, int y) { Note("at", x, y); });
    SetMouseWheelCallback([](int position) { Note("wheel", position, 0); });
    ShowMouseCursor(true);
    PollForEvents(0);
    Events.clear();
  }
  void TearDown() override {
    SetSizeCallback(nullptr);
    CloseWindow();
  }
};

}  // namespace
using Strings = std::vector<std::string>;

TEST_F(WindowTest, HeldKeyIsOnePressAndOneCharacter) {
  Xdo("keydown a sleep 1.2 keyup a");
  Xdo("key Shift_L+t");
  PollForEvents(10);
  EXPECT_EQ(Events, (Strings{"key 65 1", "char 97 1", "key 65 0", "char 97 0", "key 287 1", "key 84 1", "char 84 1",
                             "key 287 0", "key 84 0", "char 84 0"}));
}

TEST_F(WindowTest, LostFocusReleasesWhatIsHeld) {
  EXPECT_TRUE(GetWindowParameters().active);
  Xdo("keydown w");
  PollForEvents(2);
  EXPECT_TRUE(KeyIsDown('W'));
  Xdo("windowfocus $(xdotool search --maxdepth 0 '.*' 2>/dev/null | head -1)");  // the root window
  PollUntil([] { return !GetWindowParameters().active; });
  Xdo("keyup w");
  EXPECT_FALSE(GetWindowParameters().active);
  EXPECT_FALSE(KeyIsDown('W'));
  EXPECT_EQ(Events, (Strings{"key 87 1", "char 119 1", "key 87 0", "char 119 0"}));
}

TEST_F(WindowTest, HiddenPointerReportsTheWayFromWhereItWasPut) {
  ShowMouseCursor(false);
  SetMousePosition(200, 150);
  PollForEvents(0);
  EXPECT_EQ(Events, Strings{}) << "putting the pointer back is not a movement";
  for (int step = 0; step < 3; step++) {  // the same way each time: none of them may be lost
    Events.clear();
    Xdo("mousemove_relative 7 0 mousemove_relative -- 0 -3");
    PollForEvents(1);
    EXPECT_EQ(Events, Strings{"at 207 147"}) << "step " << step;
    SetMousePosition(200, 150);
  }
}

TEST_F(WindowTest, ClickFindsThePointerWhereItWasClicked) {
  Xdo("mousemove 120 80 click 1 mousemove 60 40 click 3 click 4");
  PollForEvents(7);
  EXPECT_EQ(Events, (Strings{"at 120 80", "button 0 1", "button 0 0", "at 60 40", "button 1 1", "button 1 0", "wheel 1 0"}));
}

TEST_F(WindowTest, SizeIsToldAtOnceAndAtEachChange) {
  SetSizeCallback([](int width, int height) { Note("size", width, height); });
  EXPECT_EQ(Events, Strings{"size 400 300"});
  SetWindowTitle("a window to be resized");
  Xdo("windowsize $(xdotool search --name '^a window to be resized$') 500 320");
  PollForEvents(2);
  EXPECT_EQ(Events.back(), "size 500 320");
}
