// The body that a player starts on: its bounds, its heart and light, and that it is one and the same everywhere.
#include "worldgen/asteroid.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <thread>

#include "content/components.h"
#include "platform/threads.h"
#include "support/installation.h"
#include "world/access.h"

using Body = std::map<std::array<int, 3>, u64>;  // offsets from the centre to heads

static Body BodyOf(const Ship &ship) {
  Body body;
  ForEachChunk(ship, [&body](Chunk &chunk, ChunkCells &cells, CellAddress) {
    ForEachBit(cells.occupied, [&](u16 i) {
      body[{CellX(chunk, i) - 5000, CellY(chunk, i) - 5000, CellZ(chunk, i) - 5000}] = cells.heads[i].load() & ~HeadUnstableBit;
    });
  });
  return body;
}

static void Drop(Ship *ship) {
  FreeShip(ship);
  delete ship;
}

static Body Grown(u16 size, u32 seed) {
  Ship *ship = NewTestShip();
  GenerateAsteroidSeeded(size, 0, 0, 0, ship, seed);
  const Body body = BodyOf(*ship);
  Drop(ship);
  return body;
}

namespace {

struct Asteroid : testing::Test {
  void SetUp() override { LoadTables(); }
};

}  // namespace

// Whether a cell of the body lies as it should and knows the light of the heart and no other.
static void CheckLitRock(const std::array<int, 3> &at, u64 head, const Ship &ship) {
  const bool heart = at == std::array<int, 3>{0, 0, 0};
  EXPECT_LE(std::max({std::abs(at[0]), std::abs(at[1]), std::abs(at[2])}), 2);
  EXPECT_EQ(HeadMaterial(head), 5);
  EXPECT_EQ(HeadState(head), StateWhole);
  EXPECT_EQ(head >> 48, 800u);
  const u16 id = Components[HeadComponent(head)].id;
  if (heart) EXPECT_TRUE(id == 10 && HeadRotation(head) == 2 && HeadRotation2(head) == 1);
  else EXPECT_TRUE(id >= 215 && id <= 219 && HeadRotation(head) >= 1 && HeadRotation(head) <= 6);
  u64 found;
  GraphicBlock *g;
  const auto cell = [&at](size_t axis) { return static_cast<u16>(5000 + at[axis]); };
  ASSERT_TRUE(GetCellPointers(cell(0), cell(1), cell(2), ship, &found, &g));
  ASSERT_EQ(g->lightCount, 1);
  EXPECT_TRUE(g->lightList[0].dx == -at[0] && g->lightList[0].dy == -at[1] && g->lightList[0].dz == -at[2]);
  EXPECT_GT(g->lightList[0].red, 0);
}

TEST_F(Asteroid, TheFirstBodyIsSmallAndLitByItsHeart) {
  for (u32 seed = 1; seed <= 50; ++seed) {
    Ship *ship = NewTestShip();
    GenerateAsteroidSeeded(1, 70, -80, 90, ship, seed);
    EXPECT_TRUE(AsteroidGenerated);
    for (int a = 0; a < 3; ++a) EXPECT_EQ(ship->position[a], (a == 0 ? 70 : a == 1 ? -80 : 90) - 50000000);
    const Body body = BodyOf(*ship);
    EXPECT_TRUE(body.size() >= 2 && body.size() <= 81 && body.contains({0, 0, 0})) << body.size();
    for (const auto &[at, head] : body) CheckLitRock(at, head, *ship);
    EXPECT_EQ(ship->summary->blockCount, static_cast<i32>(body.size()));
    Drop(ship);
  }
}

TEST_F(Asteroid, ASeedStandsForABodyThatKeepsToItsReach) {
  EXPECT_EQ(Grown(1, 5), Grown(1, 5));
  EXPECT_NE(Grown(1, 5), Grown(1, 6));
  size_t before = 0;
  for (u16 size = 0; size <= 8; size = static_cast<u16>(size + 2)) {
    const Body body = Grown(size, 3);
    const int reach = 2 * size, deepest = static_cast<int>(reach / 3.0 + std::max(0.1 * reach, 1.0));
    for (const auto &[at, head] : body)
      EXPECT_LE(std::max({std::abs(at[0]), std::abs(at[1]), std::abs(at[2])}), reach + deepest) << size;
    EXPECT_GT(body.size(), before) << size;
    before = body.size();
  }
}

TEST_F(Asteroid, RockStaysInsideATableThatLacksShapesOfIt) {
  const u16 base = AsteroidRockBase;
  size_t row = ComponentCount - 2u;  // room for one more shape
  std::swap(Components[row].id, Components[base].id);
  AsteroidRockBase = static_cast<u16>(row);
  std::set<u32> rows;
  for (const auto &[at, head] : Grown(3, 5)) rows.insert(HeadComponent(head));
  EXPECT_EQ(rows, (std::set<u32>{ComponentCount - 2u, ComponentCount - 1u}));
  std::swap(Components[row].id, Components[base].id);
  AsteroidRockBase = base;
}

TEST_F(Asteroid, ABodyCountsInTheTableOnceItIsWhole) {
  static ShipTable table;
  std::thread watcher([] {  // what counts is finished, at any moment
    while (table.count == 0) std::this_thread::yield();
    ScopedLock world(&WorldMutex);
    ASSERT_NE(ShipAt(table, 0)->summary, nullptr);
    EXPECT_EQ(ShipAt(table, 0)->summary->blockCount, static_cast<i32>(BodyOf(*ShipAt(table, 0)).size()));
  });
  EXPECT_TRUE(AddAsteroid(20, 1, 2, 3, &table));
  watcher.join();
  EXPECT_EQ(table.count, 1);
}
