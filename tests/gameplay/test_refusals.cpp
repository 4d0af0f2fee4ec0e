// What a press is told that can't do what it asks for, and that nobody builds into themselves.
#include "gui/refusal.h"

#include <cmath>
#include <filesystem>
#include <set>

#include "content/components.h"
#include "gameplay/play.h"
#include "gameplay/tools.h"
#include "gui/language.h"

namespace {

// The player looks along -z.
struct Refusals : Play {
  void SetUp() override {
    Play::SetUp();
    LastRefusal = {};
  }
  static void Button(int button, bool down) {
    SetMouseState(button, down);
    OnMouseButton(button, down);
  }
  // So many repeats of the held main button.
  static void Repeat(int times) {
    for (int i = 0; i < times; ++i) {
      nextToolTime = ClockNow() - 1;
      Player p = ReadPlayer();
      HeldInputStep(&p);
    }
  }
  static void MoveTo(float x, float y, float z) {
    Player p = ReadPlayer();
    p.relativeLoc[0] = x, p.relativeLoc[1] = y, p.relativeLoc[2] = z;
    StoreMotion(p);
    RefreshTarget();
  }
  static void HoldPiece(u16 id) {
    Player p = ReadPlayer();
    p.heldBlock.component = static_cast<u16>(FindComponent(id));
    StoreHand(p);
  }
  Refusal After(int tool, int button) {
    SelectTool(tool);
    RefreshTarget();
    LastRefusal = {};
    Button(button, true);
    Button(button, false);
    return LastRefusal.why;
  }
};

}  // namespace

TEST_F(Refusals, AHeldButtonBuildsUpToTheBodyAndNoFurther) {
  // Where the player stands in their cell, along the run, and how many cells of the eight before them stay free.
  const struct { float z; int free; } places[] = {{0.5f, 1}, {0.0f, 2}, {0.1f, 2}, {0.3f, 1}, {0.95f, 1}};
  for (const auto &at : places) {
    for (int z = -9; z <= 1; ++z) if (Taken(Middle, Middle, Middle + z)) Remove(Middle, Middle, Middle + z);
    Place(Middle, Middle, Middle - 8);
    MoveTo(Middle + 0.5f, Middle + 0.5f, Middle + at.z);
    Button(0, true);
    Repeat(20);
    for (int z = -8; z <= 0; ++z) EXPECT_EQ(Taken(Middle, Middle, Middle + z), z <= -at.free) << at.z << " cell " << z;
    EXPECT_EQ(LastRefusal.why, Refusal::None) << "the end of a run is nothing to be told";
    Button(0, false);
    EXPECT_EQ(After(ToolBuild, 0), Refusal::OwnCell) << "but a press is";
    EXPECT_EQ(After(ToolBuild, 1), Refusal::None);
    EXPECT_FALSE(Taken(Middle, Middle, Middle - at.free)) << "the right button makes room";
    EXPECT_EQ(After(ToolBuild, 0), Refusal::None);
    EXPECT_TRUE(Taken(Middle, Middle, Middle - at.free)) << "which the left one fills";
  }
}

TEST_F(Refusals, EachPressIsToldItsReason) {
  const auto far = [&](int z) { MoveTo(Middle + 0.5f, Middle + 0.5f, static_cast<float>(Middle + z) + 0.5f); };
  const auto all = [&](Refusal why, const char *where) {
    const struct { int tool, button; } presses[] = {{ToolBuild, 0}, {ToolBuild, 1}, {ToolBuild, 2}, {ToolCutter, 0}, {ToolCutter, 1},
                                                    {ToolPlane, 0}, {ToolPlane, 1}, {ToolPick, 0}, {ToolPick, 1}};
    for (const auto &press : presses) EXPECT_EQ(After(press.tool, press.button), why) << where << press.tool << press.button;
    EXPECT_EQ(After(ToolHeat, 0), Refusal::None);
  };
  all(Refusal::NoTarget, "no ship to see ");
  // Nothing of it is the place of the aim: another ship whose blocks stand sixty places off from where they are seen.
  Ship *other = AppendShip(&TheShipTable);
  const Player eye = ReadPlayer();
  for (int a = 0; a < 3; ++a)
    other->position[a] = eye.solarLoc[a] - static_cast<i64>((eye.relativeLoc[a] + 60) * UnitsPerBlock);
  ASSERT_EQ(PlaceHere(other, Middle + 60, Middle + 60, Middle + 45, CubeOf()), 1);
  all(Refusal::OtherShip, "another ship ");
  Place(Middle, Middle, Middle - 14);
  all(Refusal::OutOfReach, "behind a block of one's own ");
  Remove(Middle, Middle, Middle - 14);
  Place(Middle, Middle, Middle - 20);
  far(0);
  all(Refusal::OtherShip, "before a block of one's own ");
  RemoveBlock(Middle + 60, Middle + 60, Middle + 45, other);
  all(Refusal::OutOfReach, "twenty blocks ");
  Place(Middle, Middle, Middle - 5);
  Player p = ReadPlayer();
  p.speed = WorkSpeed + 1;
  StoreMotion(p);
  PlayerFlags.tooFast = true;
  all(Refusal::TooFast, "flying ");
  p.speed = 0;
  StoreMotion(p);
  PlayerFlags.tooFast = false;

  SelectTool(ToolBuild);
  RefreshTarget();
  LastRefusal = {};
  Place(Middle, Middle, Middle - 4);  // by somebody else, since the last look
  MainPress();
  EXPECT_EQ(LastRefusal.why, Refusal::FullCell);
  Remove(Middle, Middle, Middle - 4);
  RefreshTarget();
  Remove(Middle, Middle, Middle - 5);
  LastRefusal = {};
  SecondaryPress();
  EXPECT_EQ(LastRefusal.why, Refusal::NoTarget);
  Place(Middle, Middle, Middle - 5);

  HoldPiece(350);
  Place(Middle + 1, Middle, Middle - 4);
  EXPECT_EQ(After(ToolBuild, 0), Refusal::NoRoom);
  EXPECT_FALSE(Taken(Middle, Middle, Middle - 4));
  Remove(Middle + 1, Middle, Middle - 4);
  far(-3);
  EXPECT_EQ(After(ToolBuild, 0), Refusal::OwnCell) << "the core would reach to the player";
  Place(Middle, Middle, Middle - 3);
  EXPECT_EQ(After(ToolBuild, 0), Refusal::InsideBlock);
  EXPECT_EQ(After(ToolBuild, 1), Refusal::None) << "which the right button takes away";
  EXPECT_FALSE(Taken(Middle, Middle, Middle - 3));
}

TEST_F(Refusals, AreToldOnceASecondForAWhileInEveryLanguage) {
  EXPECT_TRUE(TellRefusal(Refusal::NoTarget, 10));
  EXPECT_FALSE(TellRefusal(Refusal::TooFast, 10.9));
  EXPECT_EQ(LastRefusal.why, Refusal::NoTarget);
  EXPECT_TRUE(TellRefusal(Refusal::TooFast, 11));
  EXPECT_NE(RefusalLine(13.4), nullptr);
  EXPECT_EQ(RefusalLine(13.6), nullptr);
  std::set<std::string> lines;
  for (const auto &language : std::filesystem::directory_iterator("config/language")) {
    Options.Language = language.path().filename().string();
    ASSERT_TRUE(LoadLanguage());
    for (int why = 1; why <= static_cast<int>(Refusal::OtherShip); ++why) {
      LastRefusal = {static_cast<Refusal>(why), 20};
      ASSERT_NE(RefusalLine(21), nullptr);
      lines.insert(RefusalLine(21));
    }
  }
  EXPECT_EQ(lines.size(), 4 * static_cast<size_t>(Refusal::OtherShip)) << "each has its own words";
  EXPECT_EQ(lines.count(""), 0u);
  ForgetRefusal();
  EXPECT_EQ(RefusalLine(21), nullptr);
  EXPECT_FALSE(TellRefusal(Refusal::NoTarget, 20.5)) << "a press between that works is no reason to hurry";
}
