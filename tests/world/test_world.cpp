// The tree against a plain map of cells, and the arithmetic that everything stands on.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <thread>
#include <tuple>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "gameplay/ray.h"
#include "platform/threads.h"
#include "support/installation.h"
#include "world/access.h"
#include "world/light.h"
#include "world/lists.h"
#include "world/verify.h"

using Cell = std::tuple<int, int, int>;

struct World : testing::Test {
  void SetUp() override {
    LoadTables();
    UseTemporaryInstallation();
    ResetOptions();
    ship = NewTestShip();
  }
  void TearDown() override {
    FreeShip(ship);
    delete ship;
  }
  Ship *ship = nullptr;
};

static u16 RowOf(u16 id) { return static_cast<u16>(FindComponent(id)); }
static u16 GlassRow() {
  u16 row = 1;
  while (Materials[row].alpha == 255) ++row;
  return row;
}
static bool Remove(Ship *ship, int x, int y, int z) {
  return RemoveBlock(static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), ship);
}
static ChunkCells *CellsAt(const Ship *ship, int x, int y, int z, unsigned *index) {
  const CellAddress a = AddressOf(static_cast<unsigned>(x), static_cast<unsigned>(y), static_cast<unsigned>(z));
  *index = a.block;
  return FindCells(a, *ship);
}
static int VisibilityAt(const Ship *ship, int x, int y, int z) {
  unsigned i;
  return CellsAt(ship, x, y, z, &i)->visibility[i];
}
static const GraphicBlock *RecordAt(const Ship *ship, int x, int y, int z) {
  unsigned i;
  return CellsAt(ship, x, y, z, &i)->graphicBlocks.load() + i;
}
static int LightsAt(const Ship *ship, int x, int y, int z) {
  unsigned i;
  const GraphicBlock *records = CellsAt(ship, x, y, z, &i)->graphicBlocks.load();
  return records == nullptr ? 0 : records[i].lightCount;
}

TEST_F(World, AddressesAndVoxelIndicesFollowTheDigitsAndTheTurns) {
  const CellAddress a = AddressOf(1234, 5678, 9012);
  EXPECT_EQ(std::make_tuple(a.mega, a.super, a.chunk, a.block), std::make_tuple(951, 62, 173, 284));
  EXPECT_EQ(VoxelIndex(0, 0, 0, 1, 0), 0);
  EXPECT_EQ(VoxelIndex(15, 15, 15, 1, 0), 4095);
  EXPECT_EQ(VoxelIndex(0, 0, 0, 3, 0), 4080);
  EXPECT_EQ(VoxelIndex(1, 2, 3, 7, 0), -1);
  EXPECT_EQ(VoxelIndex(3, 5, 7, 4, 1), 5 * 256 + 3 * 16 + 7);
  for (unsigned r = 1; r <= 6; ++r)
    for (unsigned r2 = 0; r2 < 4; ++r2) {
      std::set<int> seen;
      for (int v = 0; v < 4096; ++v) seen.insert(VoxelIndex(v & 15, v >> 4 & 15, v >> 8, r, r2));
      EXPECT_EQ(seen.size(), 4096u) << r << " " << r2;
      EXPECT_EQ(*seen.begin(), 0);
    }
}

TEST_F(World, ReadsSayHowFarTheyCame) {
  Block b;
  EXPECT_EQ(GetBlock(&b, 0, 0, 0, *ship), ReadNoMega);
  ASSERT_EQ(PlaceHere(ship, 5, 5, 5, CubeOf()), 1);
  const std::tuple<u16, u16, u16, int> reads[] = {{5, 5, 5, ReadFound}, {6, 5, 5, ReadEmpty}, {15, 5, 5, ReadNoChunk},
                                                  {105, 5, 5, ReadNoSuper}, {1005, 5, 5, ReadNoMega}, {65535, 5, 5, ReadOutOfRange},
                                                  {5, 10000, 5, ReadOutOfRange}};
  for (const auto &[x, y, z, code] : reads) EXPECT_EQ(GetBlock(&b, x, y, z, *ship), code) << x << " " << y;
  EXPECT_NE(ReadText("errors.txt").find("*ERR: Block get attempt outside bounds \n"), std::string::npos);
  EXPECT_EQ(PlaceHere(ship, 10000, 5, 5, CubeOf()), 0);
  EXPECT_FALSE(Remove(ship, 5, 5, 10001));
  EXPECT_NE(ReadText("errors.txt").find("*ERR: Block place attempt outside bounds \n"), std::string::npos);

  Block hot = CubeOf();
  hot.temp = 100;
  hot.tail[3] = 9;
  PlaceHere(ship, 7, 7, 7, hot);
  b.tempUnstable = 0;
  ASSERT_EQ(GetBlock(&b, 7, 7, 7, *ship), ReadFound);
  EXPECT_EQ(b.temp, 800u);
  EXPECT_EQ(b.tempUnstable, 0u);  // stays as the caller had it, though the block is on the list
  unsigned i;
  EXPECT_EQ(CellsAt(ship, 7, 7, 7, &i)->tails[i][3], 9);

  // Picking moves to the family's base and leaves out what is not for players.
  PlaceHere(ship, 8, 7, 7, CubeOf(5, RowOf(217)));
  ASSERT_EQ(GetBlockForPick(&b, 8, 7, 7, *ship), ReadFound);
  EXPECT_EQ(b.component, RowOf(215));
  PlaceHere(ship, 8, 8, 7, CubeOf(5, 1, 3));
  EXPECT_EQ(GetBlockForPick(&b, 8, 8, 7, *ship), ReadEmpty);
  EXPECT_EQ(b.component, RowOf(215));
  EXPECT_EQ(GetBlockRotation(&b, 8, 8, 7, *ship), ReadEmpty);
}

// A model that a child could write: a map of cells with the same rules read straight from them.
struct ModelCell {
  Block block;
  int visibility = 0;
};
struct Model {
  std::map<Cell, ModelCell> cells;
  std::map<Cell, int> forgotten;  // a cell keeps its last decision while it is free

  int Kind(const Cell &at) const {
    const auto found = cells.find(at);
    if (found == cells.end()) return 0;
    const int id = Components[static_cast<size_t>(found->second.block.component)].id;
    if (id == 21 || id == 22 || id == 330 || id == 550) return 0;
    if (Materials[static_cast<size_t>(found->second.block.material)].alpha != 255) return 1;
    const bool full = id == 2 || id == 24 || id == 90 || id == 91 || id == 900 || (id >= 10 && id <= 14) || (id >= 60 && id <= 69) ||
                      (id >= 200 && id <= 219) || (id >= 320 && id <= 329) || (id >= 400 && id <= 459) || (id >= 760 && id <= 769);
    return full || found->second.visibility == 2 ? 2 : 1;
  }
  static std::vector<Cell> Around(const Cell &c, int d) {
    const auto [x, y, z] = c;
    return {{x + d, y, z}, {x - d, y, z}, {x, y + d, z}, {x, y - d, z}, {x, y, z + d}, {x, y, z - d}};
  }
  void Refresh(const Cell &at) {
    const auto found = cells.find(at);
    if (found == cells.end()) return;
    int least = 2;
    for (const Cell &n : Around(at, 1)) least = std::min(least, Kind(n));
    found->second.visibility = least == 2 ? 2 : least == 1 ? 3 : 1;
  }
  void RefreshTwelve(const Cell &at) {
    for (int d = 1; d <= 2; ++d)
      for (const Cell &n : Around(at, d)) Refresh(n);
  }
  void Place(const Cell &at, const Block &b) {
    const auto old = cells.find(at);
    const int kept = old != cells.end() ? old->second.visibility : forgotten[at];
    cells[at] = {b, kept};
    RefreshTwelve(at);
  }
  void Remove(const Cell &at) {
    forgotten[at] = cells[at].visibility;
    cells.erase(at);
    RefreshTwelve(at);
  }
};

TEST_F(World, RandomEditsAgreeWithAPlainMapOfCells) {
  std::mt19937 random(7);
  const u16 rows[] = {2, 2, 2, RowOf(215), RowOf(1000), RowOf(1004), RowOf(1010), RowOf(900), 5};
  Model model;
  for (int step = 0; step < 4000; ++step) {
    const Cell at{198 + static_cast<int>(random() % 5), 998 + static_cast<int>(random() % 4), 5008 + static_cast<int>(random() % 4)};
    const auto [x, y, z] = at;
    if (random() % 4 == 0) {
      EXPECT_EQ(Remove(ship, x, y, z), model.cells.count(at) == 1);
      if (model.cells.count(at) == 1) model.Remove(at);
    } else {
      const Block b = CubeOf(random() % 6 == 0 ? GlassRow() : u16{5}, rows[random() % std::size(rows)], static_cast<unsigned>(random() % 6 + 1),
                             static_cast<unsigned>(random() % 4));
      ASSERT_EQ(PlaceHere(ship, x, y, z, b), 1);
      model.Place(at, b);
    }
    if (step % 250 != 0) continue;
    ASSERT_EQ(ShipFault(*ship), "");
    for (const auto &[cell, expected] : model.cells) {
      const auto [cx, cy, cz] = cell;
      Block b;
      ASSERT_EQ(GetBlock(&b, static_cast<u16>(cx), static_cast<u16>(cy), static_cast<u16>(cz), *ship), ReadFound);
      EXPECT_EQ(b.component, expected.block.component);
      EXPECT_EQ(b.rotation2, expected.block.rotation2);
      ASSERT_EQ(VisibilityAt(ship, cx, cy, cz), expected.visibility) << "step " << step;
    }
    const auto summary = BuildShipSummary(ship);
    EXPECT_EQ(static_cast<size_t>(summary->blockCount), model.cells.size());
  }
  const auto cells = model.cells;
  for (const auto &[cell, unused] : cells) Remove(ship, std::get<0>(cell), std::get<1>(cell), std::get<2>(cell));
  EXPECT_EQ(ShipFault(*ship), "");
  for (u16 check : ship->checks) EXPECT_EQ(check, 0);
}

TEST_F(World, LoadersGetTheSameWorldAsPlay) {
  std::mt19937 random(3);
  Ship *loaded = NewTestShip();
  for (int i = 0; i < 700; ++i) {
    const int x = 4995 + static_cast<int>(random() % 9), y = 4995 + static_cast<int>(random() % 9), z = 4995 + static_cast<int>(random() % 9);
    const Block b = CubeOf(random() % 9 == 0 ? GlassRow() : u16{5}, random() % 40 == 0 ? RowOf(1000) : RowOf(215));
    PlaceHere(ship, x, y, z, b);
    PlaceBlockFast(b, static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), loaded);
  }
  AssignCoordinates(loaded);
  LightPass(loaded);
  StatePass(*loaded);
  StatePass(*ship);
  EXPECT_EQ(ShipFault(*loaded), "");
  EXPECT_EQ(CheckCount(loaded->checks[ListTemp]), 0u);  // only play puts blocks on the temperature list
  EXPECT_GT(CheckCount(ship->checks[ListTemp]), 0u);
  ForEachChunk(*loaded, [&](Chunk &chunk, ChunkCells &cells, CellAddress) {
    ForEachBit(cells.occupied, [&](u16 i) {
      const int x = CellX(chunk, i), y = CellY(chunk, i), z = CellZ(chunk, i);
      EXPECT_EQ(cells.visibility[i], VisibilityAt(ship, x, y, z));
      EXPECT_EQ(LightsAt(loaded, x, y, z), LightsAt(ship, x, y, z));
    });
  });
  FreeShip(loaded);
  delete loaded;
}

TEST_F(World, LightReachesItsSphereAndListsStayBounded) {
  const Block cube = CubeOf(), lamp = CubeOf(5, RowOf(1000));
  const int c = 5000;
  for (int d = -17; d <= 17; ++d) {
    PlaceHere(ship, c + d, c, c, cube);
    PlaceHere(ship, c, c, c + d, cube);
  }
  PlaceHere(ship, c, c, c, lamp);
  for (int d = -17; d <= 17; ++d) {
    EXPECT_EQ(LightsAt(ship, c + d, c, c), std::abs(d) <= 15 ? 1 : 0) << d;
    EXPECT_EQ(LightsAt(ship, c, c, c + d), std::abs(d) <= 15 ? 1 : 0) << d;
  }
  const LightEntry &own = RecordAt(ship, c, c, c)->lightList[0], &far = RecordAt(ship, c - 9, c, c)->lightList[0];
  EXPECT_EQ(std::make_tuple(own.dx, own.dy, own.dz), std::make_tuple(0, 0, 0));
  EXPECT_EQ(std::make_tuple(far.dx, far.red), std::make_tuple(9, Components[RowOf(1000)].lightRed));
  PlaceHere(ship, c + 3, c + 1, c, cube);  // a newcomer takes in the light that is there
  EXPECT_EQ(LightsAt(ship, c + 3, c + 1, c), 1);
  PlaceHere(ship, c + 40, c, c, lamp);
  ClearLights(*ship);
  u64 cost = 100;  // the first lamp takes it all
  EXPECT_FALSE(LightPassWithin(ship, &cost));
  EXPECT_EQ(std::make_tuple(LightsAt(ship, c + 3, c, c), LightsAt(ship, c + 40, c, c)), std::make_tuple(1, 0));
  ClearLights(*ship);
  cost = 1000;
  EXPECT_TRUE(LightPassWithin(ship, &cost));
  EXPECT_EQ(LightsAt(ship, c + 40, c, c), 1);
  EXPECT_LT(cost, 1000u - 2 * 16);
  Remove(ship, c + 40, c, c);
  Remove(ship, c, c, c);
  EXPECT_EQ(LightsAt(ship, c + 3, c, c), 0);

  // A full list keeps the nearer lights; its last place goes to the newcomer.
  const u16 x = static_cast<u16>(c + 5), y = static_cast<u16>(c), z = static_cast<u16>(c);
  for (int i = 0; i < 12; ++i) AddLightEntry({static_cast<i8>(i == 4 ? 12 : 3), static_cast<i8>(i), 0, 1, 1, 1, 0}, x, y, z, *ship);
  const GraphicBlock *g = RecordAt(ship, x, y, z);
  AddLightEntry({2, 0, 1, 9, 9, 9, 0}, x, y, z, *ship);
  EXPECT_EQ(g->lightCount, 12);
  int newcomers = 0;
  for (int i = 0; i < 12; ++i) newcomers += g->lightList[i].red == 9 ? 1 : 0;
  EXPECT_EQ(newcomers, 1);
  AddLightEntry({15, 0, 0, 7, 7, 7, 0}, x, y, z, *ship);
  EXPECT_EQ(g->lightList[11].red, 7);
  EXPECT_EQ(RemoveLightEntry(-8, -8, -8, x, y, z, *ship), 6);
  EXPECT_EQ(RemoveLightEntry(15, 0, 0, x, y, z, *ship), ReadFound);
  EXPECT_EQ(g->lightCount, 11);

  // Next to the low edge a lamp casts nothing at all.
  PlaceHere(ship, 15, 500, 500, lamp);
  EXPECT_EQ(LightsAt(ship, 15, 500, 500), 0);
  EXPECT_EQ(ShipFault(*ship), "");
}

TEST_F(World, ShadowsFallBehindThickWallsOnly) {
  Options.ExperimentalLight = true;
  for (int d = 1; d <= 10; ++d) PlaceHere(ship, 5000 + d, 5000, 5000, CubeOf());
  PlaceHere(ship, 5000, 5000, 5000, CubeOf(5, RowOf(1000)));
  EXPECT_EQ(LightsAt(ship, 5002, 5000, 5000), 1);
  EXPECT_EQ(LightsAt(ship, 5010, 5000, 5000), 0);
  for (int d = 2; d <= 8; ++d) Remove(ship, 5000 + d, 5000, 5000);
  EXPECT_EQ(LightsAt(ship, 5009, 5000, 5000), 1);
}

TEST_F(World, CountersRiseOnlyWithTheFirstOfALevel) {
  const u16 animated = RowOf(1004);
  PlaceHere(ship, 5005, 5005, 5005, CubeOf(5, animated));
  const auto counts = [&](int x) {
    const CellAddress a = AddressOf(static_cast<unsigned>(x), 5005, 5005);
    const MegaChunk &m = ship->megaChunks.load()[a.mega];
    const SuperChunk &s = m.children.load()[a.super];
    return std::make_tuple(ship->checks[ListAnim], m.checks[ListAnim], s.checks[ListAnim], s.children.load()[a.chunk].checks[ListAnim]);
  };
  EXPECT_EQ(counts(5005), std::make_tuple(1, 1, 1, 1));
  PlaceHere(ship, 5006, 5005, 5005, CubeOf(5, animated));
  EXPECT_EQ(counts(5005), std::make_tuple(1, 1, 1, 2));
  PlaceHere(ship, 5015, 5005, 5005, CubeOf(5, animated));
  EXPECT_EQ(counts(5015), std::make_tuple(1, 1, 2, 1));
  PlaceHere(ship, 5015, 5005, 5005, CubeOf());  // replaced by a plain one: no trace
  EXPECT_EQ(counts(5015), std::make_tuple(1, 1, 1, 0));
  {
    ScopedLock heat(&HeatMutex);
    const CellAddress a = AddressOf(5005, 5005, 5005);
    MarkTempUnstable(a, ship);
    MarkTempUnstable(a, ship);
  }
  EXPECT_EQ(ShipFault(*ship), "");
  ScopedLock world(&WorldMutex);
  EXPECT_EQ(ChangeBlockComponent(2, 5005, 5005, 5005, ship), 1);
  EXPECT_EQ(counts(5005), std::make_tuple(1, 1, 1, 1));
}

TEST_F(World, SummaryWeighsExtentAndCentre) {
  PlaceHere(ship, 0, 0, 0, CubeOf());
  PlaceHere(ship, 5, 6, 7, CubeOf());
  auto s = BuildShipSummary(ship);
  EXPECT_EQ(std::make_tuple(s->blockCount, s->minX, s->maxY, s->sizeZ), std::make_tuple(1, 5, 6, 1));
  EXPECT_FALSE(BlockExists(0, 0, 0, *ship));  // the corner cell never stays
  PlaceHere(ship, 25, 6, 7, CubeOf());
  s = BuildShipSummary(ship);
  EXPECT_EQ(std::make_tuple(s->comX, s->comY, s->comZ, s->sizeX), std::make_tuple(15, 6, 7, 21));
  EXPECT_DOUBLE_EQ(s->mass, 2.0 * Materials[5].density * Components[2].fillPercent * 0.01);
}

TEST_F(World, ReadersWithoutALockSeeWholeCells) {
  const Block one = CubeOf(5, 2, 1), other = CubeOf(7, RowOf(215), 2);
  std::atomic<bool> stop{false};
  std::atomic<int> torn{0};
  std::thread reader([&] {
    while (!stop) {
      Block b;
      if (GetBlock(&b, 5000, 5000, 5000, *ship) != ReadFound) continue;
      const bool isOne = b.material == 5 && b.component == 2 && b.rotation == 1;
      const bool isOther = b.material == 7 && b.component == RowOf(215) && b.rotation == 2;
      if (!isOne && !isOther) ++torn;
      Ray ray = NewRayToward({4995.5f, 5000.5f, 5000.5f}, {5004.f, 5000.2f, 5000.3f});
      while (StepVoxelRay(&ray, *ship) != RaySpent) {}
      VoxelSolid(5000.5f, 5000.5f, 5000.5f, *ship);
    }
  });
  for (int i = 0; i < 1500; ++i) {
    PlaceHere(ship, 5000, 5000, 5000, i % 2 == 0 ? one : other);
    PlaceHere(ship, 5010 + i % 40, 5000, 5000, one);
    if (i % 3 == 0) Remove(ship, 5000, 5000, 5000);
  }
  stop = true;
  reader.join();
  EXPECT_EQ(torn, 0);
}
