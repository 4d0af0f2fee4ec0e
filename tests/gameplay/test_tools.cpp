#include "gameplay/tools.h"

#include <atomic>
#include <thread>

#include "content/components.h"
#include "gameplay/play.h"
#include "platform/threads.h"

namespace {

// The player looks along -z at a block five cells ahead.
struct Tools : Play {
  void SetUp() override {
    Play::SetUp();
    Place(Middle, Middle, Middle - 5);
    ASSERT_TRUE(RefreshTarget());
  }
  static void Tick() {
    Player p = ReadPlayer();
    HeldInputStep(&p);
  }
  static void Button(int button, bool down) {
    SetMouseState(button, down);
    OnMouseButton(button, down);
  }
  bool TakenAhead(int cells) const { return Taken(Middle, Middle, Middle - cells); }
};

}  // namespace

TEST_F(Tools, BuilderAndCutterWorkOnAPressAndThenAtEachRepeat) {
  Place(Middle, Middle, Middle - 6);
  const struct { int tool; double delay; int first, second; bool builds; } tools[] = {
      {ToolBuild, 0.2, 4, 3, true}, {ToolCutter, 1, 3, 4, false}, {ToolCutter, 1, 5, 6, false}};
  for (const auto &t : tools) {
    SelectTool(t.tool);
    RefreshTarget();
    Button(0, true);
    EXPECT_EQ(TakenAhead(t.first), t.builds);
    EXPECT_DOUBLE_EQ(nextToolTime, ClockNow() + t.delay);
    Tick();
    EXPECT_NE(TakenAhead(t.second), t.builds) << "before the repeat is due";
    nextToolTime = ClockNow() - 1;
    Tick();
    EXPECT_EQ(TakenAhead(t.second), t.builds) << "on the aim that the last block left";
    EXPECT_DOUBLE_EQ(nextToolTime, ClockNow() + 0.2);
    Button(0, false);
    EXPECT_EQ(nextToolTime, 0);
  }
}

TEST_F(Tools, AFailedEditWarnsAndARefusedOneIsSilent) {
  Target t = ReadPlayer().target;
  const struct { Cell3 place; bool blocked; int button; const char *warning; } cases[] = {
      {{}, false, 0, ""},          {t.targetCell, true, 0, ""}, {t.targetCell, false, 0, "WARN: Unable to place block \n"},
      {t.placeCell, true, 1, ""},  {t.placeCell, false, 1, "WARN: Unable to remove block \n"}};
  t.targetCell = {9, 9, 9};
  for (const auto &c : cases) {
    t.placeCell = c.place, t.targetBlocked = c.blocked;
    StoreAim(t);
    testing::internal::CaptureStdout();
    Button(c.button, true);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), c.warning);
  }
}

TEST_F(Tools, WhoFliesTooFastCannotWork) {
  Player p = ReadPlayer();
  for (const i32 speed : {25001, 25000}) {
    p.speed = speed;
    StoreMotion(p);
    PlayerFlags.tooFast = true;
    RefreshTarget();
    Button(0, true);
    Button(1, true);
    EXPECT_FALSE(TakenAhead(4));
    EXPECT_TRUE(TakenAhead(5));
    EXPECT_EQ(PlayerFlags.tooFast, speed > 25000) << "the next aim is free again";
  }
}

TEST_F(Tools, PickingTakesTheFamilysBaseAndTheTurnApart) {
  const u16 member = static_cast<u16>(FindComponent(217)), base = static_cast<u16>(FindComponent(215));
  PlaceHere(ship, Middle, Middle, Middle - 5, CubeOf(7, member, 5, 3));
  SelectTool(ToolPick);
  for (const int button : {0, 1}) {
    Button(button, true);
    const Block held = ReadPlayer().heldBlock;
    EXPECT_TRUE(held.component == base && held.material == 7);
    EXPECT_TRUE(held.rotation == (button == 0 ? 0 : 5) && held.rotation2 == (button == 0 ? 0 : 3)) << button;
  }
}

TEST_F(Tools, ThePlaneLocksOnTheAxisOfTheFaceUntilTheRelease) {
  SelectTool(ToolPlane);
  const struct { unsigned face; int axis; } faces[] = {{1, 2}, {2, 1}, {3, 2}, {4, 0}, {5, 1}, {6, 0}};
  for (const auto &f : faces) {
    Target t = ReadPlayer().target;
    t.targetCell = {11, 12, 13};
    t.marker.rotation = f.face & 7u;
    t.aimState = 2;
    StoreAim(t);
    Button(1, true);
    t = ReadPlayer().target;
    EXPECT_EQ(t.aimState, 3);
    for (int a = 0; a < 3; ++a) EXPECT_EQ(t.lockPlane[a], a == f.axis ? 11 + a : 0) << f.face;
    Button(1, false);
    EXPECT_EQ(ReadPlayer().target.aimState, 2);
    EXPECT_EQ(ReadPlayer().target.lockPlane[f.axis], 0);
  }
}

TEST_F(Tools, AClickInTheMenuStartsNoBuildWhenTheMenuCloses) {
  uiMode = 1;
  for (const int button : {0, 1, 2}) Button(button, true);
  uiMode = 0;
  Tick();
  EXPECT_FALSE(TakenAhead(4));
  EXPECT_TRUE(TakenAhead(5));
}

// The thread of Movement polls what the callbacks of the main thread change. Values that are shared badly show under the
// thread sanitizer; in whatever order the two meet, a player with all keys up is free at the end.
TEST_F(Tools, CallbacksAndMovementShareThePlayer) {
  std::atomic<bool> done{false};
  std::thread movement([&] {
    while (!done) {
      const ScopedLock lock(&MoveMutex);
      Player p = ReadPlayer();
      HeldInputStep(&p);
      MovePlayer(&p, *ship, 0.001f, 0, 0);
      StoreMotion(p);
    }
  });
  const int keys[] = {Options.controls.stop, Options.controls.moveForward, '1', '2'};
  for (int i = 0; i < 400; ++i) {
    const bool down = i % 2 == 0;
    for (const int key : keys) {
      SetKeyState(key, down);
      OnKey(key, down);
    }
    Button(0, down);
    OnMousePosition(i, 2 * i);
    OnMouseWheel(1);
    RefreshTarget();
  }
  done = true;
  movement.join();
  EXPECT_FALSE(PlayerFlags.gripping || PlayerFlags.thrusting);
  EXPECT_NE(dampenMode, 2);
}
