// Shells against a plain reading of the rule.
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <map>
#include <random>

#include "content/components.h"
#include "net/ship_shell.h"
#include "persistence/stream.h"
#include "platform/threads.h"
#include "support/installation.h"
#include "world/access.h"
#include "world/verify.h"

using Place = std::array<int, 3>;
using Places = std::map<Place, u64>;

struct Shell : testing::Test {
  void SetUp() override {
    LoadTables();
    UseTemporaryInstallation();
    ship = NewTestShip();
  }
  void TearDown() override {
    FreeShip(ship);
    delete ship;
  }
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
  Ship *ship = nullptr;
};

static Places BlocksOf(const Ship &ship) {
  Places found;
  ForEachChunk(ship, [&found](const Chunk &chunk, const ChunkCells &cells, CellAddress) {
    ForEachBit(cells.occupied, [&](u16 i) { found[{CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i)}] = cells.heads[i].load(); });
  });
  return found;
}

static std::array<Place, 6> Around(const Place &p) {
  const auto [x, y, z] = p;
  return {{{x + 1, y, z}, {x - 1, y, z}, {x, y + 1, z}, {x, y - 1, z}, {x, y, z + 1}, {x, y, z - 1}}};
}

static Places ShellOf(const Places &all) {
  Places shell;
  for (const auto &[at, head] : all) {
    bool reached = false;
    for (const Place &n : Around(at))
      for (const Place &far : Around(n)) reached = reached || (!all.contains(n) && !all.contains(far));
    if (reached) shell[at] = head;
  }
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
  PlaceHere(ship, 702, 700, 700, CubeOf(3, static_cast<u16>(FindComponent(1004))));  // moves, and is unstable
  Places expected = ShellOf(BlocksOf(*ship));
  expected.erase({0, 0, 0});  // the one cell that ships keep free
  expected[{702, 700, 700}] &= ~HeadUnstableBit;
  expected[{700, 700, 700}] = HeadOf(CubeOf(3, 12)) | u64{PlacedTemperature} << 48;
  ASSERT_EQ(expected.lower_bound({104, 0, 0})->first, (Place{208, 100, 100}));
  ASSERT_EQ(std::distance(expected.lower_bound({100, 0, 0}), expected.lower_bound({104, 0, 0})), 26);
  ASSERT_EQ(std::distance(expected.lower_bound({208, 0, 0}), expected.lower_bound({213, 0, 0})), 98);
  ASSERT_EQ(std::distance(expected.lower_bound({308, 0, 0}), expected.lower_bound({314, 0, 0})), 114 + 10);

  ship->displayName = "Ark of two";
  ship->fileStem = "Ark";
  ship->id = 7;
  ship->position[1] = 12345;
  const Places before = BlocksOf(*ship);
  ASSERT_EQ(BuildShipShell(*ship), 1);
  EXPECT_EQ(BlocksOf(*ship), before);
  ASSERT_EQ(LoadShipShell(ship), 1);
  EXPECT_EQ(BlocksOf(*ship), expected);
  EXPECT_EQ(ShipFault(*ship), "");
  EXPECT_EQ(ship->displayName + ship->fileStem, "Ark of twoArk");
  EXPECT_EQ(ship->id + ship->position[1].load(), 7 + 12345);
  EXPECT_EQ(ship->summary->blockCount, static_cast<i32>(expected.size()));

  Ship *again = NewTestShip();
  EXPECT_EQ(LoadShipStream(again, "cache/Ark.sss", false), 1);
  EXPECT_EQ(BlocksOf(*again), expected);
  FreeShip(again);
  delete again;
}

TEST_F(Shell, WithoutAFileTheShipStaysWhole) {
  Fill({5000, 5000, 5000}, {3, 3, 3}, [](int, int, int) { return true; });
  ASSERT_EQ(BuildShipShell(*ship), 1);  // an older shell must not take the place of one that can't be written
  PlaceHere(ship, 5010, 5000, 5000, CubeOf());
  const Places before = BlocksOf(*ship);
  ship->displayName = std::string(65, 'n');
  EXPECT_EQ(LoadShipShell(ship), 0);
  ship->displayName = "Ark";
  for (const char *stem : {"../saves/Ark", "", "none/Ark"}) {
    ship->fileStem = stem;
    EXPECT_EQ(LoadShipShell(ship), 0) << stem;
  }
  ship->fileStem = "Ark";
  std::filesystem::remove_all("cache");
  EXPECT_EQ(LoadShipShell(ship), 0);
  EXPECT_EQ(BlocksOf(*ship), before);
  EXPECT_EQ(Count(ReadText("errors.txt"), "*ERR: Cannot generate Ship Shell \n"), 5);
}
