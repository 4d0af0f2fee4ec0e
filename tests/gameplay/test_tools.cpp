#include "gameplay/tools.h"

#include <atomic>
#include <thread>

#include "content/components.h"
#include "gameplay/connect.h"
#include "gameplay/play.h"
#include "platform/threads.h"

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

TEST_F(Tools, BuildPlacesOnAPressAndThenAtEachRepeat) {
  Button(0, true);
  EXPECT_TRUE(TakenAhead(4));
  EXPECT_DOUBLE_EQ(nextToolTime, ClockNow() + 0.2);
  Tick();
  EXPECT_FALSE(TakenAhead(3)) << "before the repeat is due";
  nextToolTime = ClockNow() - 1;
  Tick();
  EXPECT_TRUE(TakenAhead(3)) << "on the aim that the last block left";
  EXPECT_DOUBLE_EQ(nextToolTime, ClockNow() + 0.2);
  Button(0, false);
  EXPECT_EQ(nextToolTime, 0);
  Button(1, true);
  EXPECT_FALSE(TakenAhead(3));
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

TEST_F(Tools, TheCutterWaitsASecondBeforeItRepeats) {
  Place(Middle, Middle, Middle - 6);
  SelectTool(ToolCutter);
  Button(0, true);
  EXPECT_FALSE(TakenAhead(5));
  EXPECT_DOUBLE_EQ(nextToolTime, ClockNow() + 1.0);
  Tick();
  EXPECT_TRUE(TakenAhead(6));
  nextToolTime = ClockNow() - 1;
  Tick();
  EXPECT_FALSE(TakenAhead(6));
}

TEST_F(Tools, PickingTakesTheFamilysBaseAndTheTurnApart) {
  const u16 member = static_cast<u16>(FindComponent(217)), base = static_cast<u16>(FindComponent(215));
  PlaceHere(ship, Middle, Middle, Middle - 5, CubeOf(7, member, 5, 3));
  SelectTool(ToolPick);
  const struct { int button; unsigned rotation, rotation2; } picks[] = {{0, 0, 0}, {1, 5, 3}};
  for (const auto &pick : picks) {
    Button(pick.button, true);
    const Block held = ReadPlayer().heldBlock;
    EXPECT_EQ(held.component, base);
    EXPECT_EQ(held.material, 7u);
    EXPECT_EQ(held.rotation, pick.rotation);
    EXPECT_EQ(held.rotation2, pick.rotation2);
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

TEST_F(Tools, ABlockStandsOnItsTargetUnlessTheTurnWasChosen) {
  const u16 lamp = static_cast<u16>(FindComponent(1000)), plain = static_cast<u16>(FindComponent(2));
  const struct { int dx, dy, dz; unsigned rotation; } cases[] = {
      {0, -1, 0, 2}, {0, 1, 0, 5}, {-1, 0, 0, 4}, {1, 0, 0, 6}, {0, 0, -1, 1}, {0, 0, 1, 3}, {1, 1, 0, 5}};
  for (const auto &c : cases) {
    const Cell3 at{static_cast<u16>(300 + c.dx), static_cast<u16>(300 + c.dy), static_cast<u16>(300 + c.dz)};
    const struct { u16 row; unsigned held, placed; } blocks[] = {{lamp, 0, c.rotation}, {lamp, 6, 6}, {plain, 0, 1}};
    for (const auto &b : blocks) {
      const Placement p{.block = CubeOf(1, b.row, b.held), .at = at, .target = {300, 300, 300}, .ship = ship};
      ASSERT_EQ(PlaceShaped(p), 1);
      EXPECT_EQ(PlaceShaped(p), 0) << "taken";
      Block placed;
      GetBlock(&placed, at.x, at.y, at.z, *ship);
      EXPECT_EQ(placed.rotation, b.placed);
      Remove(at.x, at.y, at.z);
    }
  }
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
