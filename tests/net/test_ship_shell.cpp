// Shells against a plain reading of the rule.
#include "net/ship_shell.h"

#include "persistence/stream.h"
#include "support/ship_test.h"

using Place = std::array<int, 3>;

namespace {

struct Shell : ShipTest {
  void Fill(const Place &low, const Place &size, auto wanted) {
    for (int x = 0; x < size[0]; ++x)
      for (int y = 0; y < size[1]; ++y)
        for (int z = 0; z < size[2]; ++z)
          if (wanted(x, y, z)) {
            const unsigned turn = static_cast<unsigned>(x + y);
            PlaceBlockFast(CubeOf(static_cast<u16>(1 + z % 3), static_cast<u16>(7 + x % 9), 1 + turn % 6, turn % 4),
                           static_cast<u16>(low[0] + x), static_cast<u16>(low[1] + y), static_cast<u16>(low[2] + z), ship);
          }
  }
};

}  // namespace

static std::array<Place, 6> Around(const Place &p) {
  const auto [x, y, z] = p;
  return {{{x + 1, y, z}, {x - 1, y, z}, {x, y + 1, z}, {x, y - 1, z}, {x, y, z + 1}, {x, y, z - 1}}};
}

static Cells ShellOf(const Cells &all) {
  const auto free = [&all](const Place &p) {
    return !all.contains({static_cast<u16>(p[0]), static_cast<u16>(p[1]), static_cast<u16>(p[2])});
  };
  Cells shell;
  for (const auto &[at, head] : all)
    for (const Place &n : Around({at[0], at[1], at[2]}))
      for (const Place &far : Around(n))
        if (free(n) && free(far)) shell[at] = head;
  return shell;
}

TEST_F(Shell, HoldsWhatCanBeReachedFromOutside) {
  std::mt19937 random(7);
  const auto every = [](int, int, int) { return true; };
  Fill({100, 100, 100}, {3, 3, 3}, every);
  Fill({208, 100, 100}, {5, 5, 5}, [](int x, int y, int z) { return x != 2 || y != 2 || z != 2; });  // one cell sealed in
  Fill({308, 100, 100}, {6, 5, 5}, [](int x, int y, int z) { return (x != 2 && x != 3) || y != 2 || z != 2; });  // two cells
  Fill({0, 0, 0}, {6, 6, 6}, every);
  Fill({9994, 9993, 9992}, {6, 7, 8}, every);
  Fill({4990, 4990, 4990}, {25, 25, 25}, [&random](int, int, int) { return random() % 5 != 0; });
  Block hurt = CubeOf(3, 12);
  hurt.state = StateDamaged;
  hurt.tail[0] = 1;
  PlaceBlockFast(hurt, 700, 700, 700, ship);
  PlaceHere(ship, 702, 700, 700, CubeOf(3, ComponentRow(1004)));  // moves, and is unstable
  Cells expected = ShellOf(CellsOf(*ship));
  expected.erase({0, 0, 0});  // the one cell that ships keep free
  expected[{702, 700, 700}] &= ~HeadUnstableBit;
  expected[{700, 700, 700}] = HeadOf(CubeOf(3, 12)) | u64{PlacedTemperature} << 48;
  ship->displayName = "Ark of two";
  ship->fileStem = "Ark";
  ship->id = 7;
  ship->position[1] = 12345;
  const Cells before = CellsOf(*ship);
  ASSERT_EQ(BuildShipShell(*ship), 1);
  EXPECT_EQ(CellsOf(*ship), before);
  ASSERT_EQ(LoadShipShell(ship), 1);
  EXPECT_EQ(CellsOf(*ship), expected);
  EXPECT_EQ(ShipFault(*ship), "");
  EXPECT_EQ(ship->displayName + ship->fileStem, "Ark of twoArk");
  EXPECT_TRUE(ship->keepStreamAs != nullptr && ship->keepFolderAs != nullptr) << "a save must not cost the inside";
  EXPECT_EQ(ship->id + ship->position[1].load(), 7 + 12345);
  EXPECT_EQ(ship->summary->blockCount, static_cast<i32>(expected.size()));

  EXPECT_EQ(LoadShipStream(ship, "cache/Ark.sss", false), 1);
  EXPECT_EQ(CellsOf(*ship), expected);
}

TEST_F(Shell, WithoutAFileTheShipStaysWhole) {
  Fill({5000, 5000, 5000}, {3, 3, 3}, [](int, int, int) { return true; });
  ASSERT_EQ(BuildShipShell(*ship), 1);  // an older shell must not take the place of one that can't be written
  PlaceHere(ship, 5010, 5000, 5000, CubeOf());
  const Cells before = CellsOf(*ship);
  ship->displayName = std::string(65, 'n');
  EXPECT_EQ(LoadShipShell(ship), 0);
  ship->displayName = "Ark";
  for (const char *stem : {"../saves/Ark", "", "none/Ark"}) {
    ship->fileStem = stem;
    EXPECT_EQ(LoadShipShell(ship), 0) << stem;
  }
  ship->fileStem = "Ark";
  ship->slotsOnly = true;
  EXPECT_EQ(LoadShipShell(ship), 0) << "half a ship has no shell";
  ship->slotsOnly = false;
  fs::remove_all("cache");
  EXPECT_EQ(LoadShipShell(ship), 0);
  EXPECT_EQ(CellsOf(*ship), before);
  EXPECT_EQ(Count(Log(), "*ERR: Cannot generate Ship Shell \n"), 6);
}
