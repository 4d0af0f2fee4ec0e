// The tree against a plain map of cells, and the arithmetic that everything stands on.
#include <set>
#include <thread>

#include "content/options.h"
#include "gameplay/ray.h"
#include "support/ship_test.h"
#include "world/light.h"
#include "world/lists.h"

namespace {

struct World : ShipTest {
  void SetUp() override {
    ShipTest::SetUp();
    ResetOptions();
  }
};

}  // namespace

static u16 GlassRow() {
  u16 row = 1;
  while (Materials[row].alpha == 255) ++row;
  return row;
}
static bool Remove(Ship *ship, int x, int y, int z) {
  return RemoveBlock(static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), ship);
}
static CellAddress At(int x, int y, int z) {
  return AddressOf(static_cast<unsigned>(x), static_cast<unsigned>(y), static_cast<unsigned>(z));
}
static int VisibilityAt(const Ship *ship, int x, int y, int z) {
  const CellAddress a = At(x, y, z);
  return FindCells(a, *ship)->visibility[a.block];
}
static const GraphicBlock *RecordAt(const Ship *ship, int x, int y, int z) {
  const CellAddress a = At(x, y, z);
  const GraphicBlock *records = FindCells(a, *ship)->graphicBlocks.load();
  return records == nullptr ? nullptr : records + a.block;
}
static int LightsAt(const Ship *ship, int x, int y, int z) {
  const GraphicBlock *record = RecordAt(ship, x, y, z);
  return record == nullptr ? 0 : record->lightCount;
}

TEST_F(World, AddressesAndVoxelIndicesFollowTheDigitsAndTheTurns) {
  const CellAddress a = AddressOf(1234, 5678, 9012);
  EXPECT_EQ(std::make_tuple(a.mega, a.super, a.chunk, a.block), std::make_tuple(951, 62, 173, 284));
  const struct { int x, y, z; unsigned rotation, rotation2; int index; } turns[] = {
      {0, 0, 0, 1, 0, 0}, {15, 15, 15, 1, 0, 4095}, {0, 0, 0, 3, 0, 4080}, {1, 2, 3, 7, 0, -1}, {3, 5, 7, 4, 1, 0x537}};
  for (const auto &t : turns) EXPECT_EQ(VoxelIndex(t.x, t.y, t.z, t.rotation, t.rotation2), t.index) << t.index;
  for (unsigned r = 1; r <= 6; ++r)
    for (unsigned r2 = 0; r2 < 4; ++r2) {
      std::set<int> seen;
      for (int v = 0; v < 4096; ++v) seen.insert(VoxelIndex(v & 15, v >> 4 & 15, v >> 8, r, r2));
      EXPECT_TRUE(seen.size() == 4096 && *seen.begin() == 0) << r << " " << r2;
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
  EXPECT_TRUE(PlaceHere(ship, 10000, 5, 5, CubeOf()) == 0 && !Remove(ship, 5, 5, 10001));
  EXPECT_TRUE(Logged("*ERR: Block get attempt outside bounds \n") && Logged("*ERR: Block place attempt outside bounds \n"));

  Block hot = CubeOf();
  hot.temp = 100;
  hot.tail[3] = 9;
  PlaceHere(ship, 7, 7, 7, hot);
  b.tempUnstable = 0;
  ASSERT_EQ(GetBlock(&b, 7, 7, 7, *ship), ReadFound);
  EXPECT_TRUE(b.temp == 800 && b.tempUnstable == 0);  // stays as the caller had it, though the block is on the list
  EXPECT_EQ(FindCells(At(7, 7, 7), *ship)->tails[At(7, 7, 7).block][3], 9);
}

static Cell CellWithin(std::mt19937 *random, Cell low, const Cell &size) {
  for (size_t axis = 0; axis < 3; ++axis) low[axis] = static_cast<u16>(low[axis] + (*random)() % size[axis]);
  return low;
}

namespace {

// A model that a child could write: a map of cells with the same rules read straight from them.
struct Model {
  std::map<Cell, Block> cells;
  std::map<Cell, int> visibility;  // a cell keeps its last decision while it is free

  int Kind(const Cell &at) {
    const auto found = cells.find(at);
    if (found == cells.end()) return 0;
    const int id = Components[static_cast<size_t>(found->second.component)].id;
    if (id == 21 || id == 22 || id == 330 || id == 550) return 0;
    if (Materials[static_cast<size_t>(found->second.material)].alpha != 255) return 1;
    const bool full = id == 2 || id == 24 || id == 90 || id == 91 || id == 900 || (id >= 10 && id <= 14) || (id >= 60 && id <= 69) ||
                      (id >= 200 && id <= 219) || (id >= 320 && id <= 329) || (id >= 400 && id <= 459) || (id >= 760 && id <= 769);
    return full || visibility[at] == 2 ? 2 : 1;
  }
  void RefreshAround(const Cell &at) {
    for (const int d : {1, 2})
      for (const Cell &n : Around(at, d)) {
        int least = 2;
        for (const Cell &beside : Around(n, 1)) least = std::min(least, Kind(beside));
        if (cells.contains(n)) visibility[n] = least == 2 ? 2 : least == 1 ? 3 : 1;
      }
  }
  static std::vector<Cell> Around(const Cell &c, int d) {
    std::vector<Cell> around(6, c);
    for (size_t i = 0; i < 6; ++i) around[i][i / 2] = static_cast<u16>(c[i / 2] + (i % 2 == 0 ? d : -d));
    return around;
  }
};

}  // namespace

TEST_F(World, RandomEditsAgreeWithAPlainMapOfCells) {
  std::mt19937 random(7);
  const u16 ids[] = {2, 2, 2, 215, 1000, 1004, 1010, 900, Components[5].id};
  Model model;
  for (int step = 0; step < 4000; ++step) {
    const Cell at = CellWithin(&random, {198, 998, 5008}, {5, 4, 4});
    const auto [x, y, z] = at;
    if (random() % 4 == 0) {
      EXPECT_EQ(Remove(ship, x, y, z), model.cells.erase(at) == 1);
    } else {
      const u16 row = ComponentRow(ids[random() % std::size(ids)]), material = random() % 6 == 0 ? GlassRow() : u16{5};
      const Block b = CubeOf(material, row, static_cast<unsigned>(random() % 6 + 1), static_cast<unsigned>(random() % 4));
      ASSERT_EQ(PlaceHere(ship, x, y, z, b), 1);
      model.cells[at] = b;
    }
    model.RefreshAround(at);
    if (step % 250 != 0) continue;
    ASSERT_EQ(ShipFault(*ship), "");
    double mass = 0;
    for (const auto &[cell, expected] : model.cells) {
      const auto [cx, cy, cz] = cell;
      Block b;
      ASSERT_EQ(GetBlock(&b, cx, cy, cz, *ship), ReadFound);
      EXPECT_TRUE(b.component == expected.component && b.rotation2 == expected.rotation2) << "step " << step;
      ASSERT_EQ(VisibilityAt(ship, cx, cy, cz), model.visibility[cell]) << "step " << step;
      mass += 0.01 * Materials[HeadMaterial(HeadOf(expected))].density * Components[HeadComponent(HeadOf(expected))].fillPercent;
    }
    const auto summary = BuildShipSummary(ship);
    EXPECT_EQ(static_cast<size_t>(summary->blockCount), model.cells.size());
    EXPECT_NEAR(summary->mass, mass, 1e-6 * mass);
  }
  for (const auto &[cell, unused] : model.cells) Remove(ship, cell[0], cell[1], cell[2]);
  EXPECT_EQ(ShipFault(*ship), "");
  for (u16 check : ship->checks) EXPECT_EQ(check, 0);
}

TEST_F(World, LoadersGetTheSameWorldAsPlay) {
  std::mt19937 random(3);
  Ship *loaded = NewTestShip();
  for (int i = 0; i < 700; ++i) {
    const auto [x, y, z] = CellWithin(&random, {4995, 4995, 4995}, {9, 9, 9});
    const Block b = CubeOf(random() % 9 == 0 ? GlassRow() : u16{5}, random() % 40 == 0 ? ComponentRow(1000) : ComponentRow(215));
    PlaceHere(ship, x, y, z, b);
    PlaceBlockFast(b, x, y, z, loaded);
  }
  AssignCoordinates(loaded);
  LightPass(loaded);
  StatePass(*loaded);
  StatePass(*ship);
  EXPECT_EQ(ShipFault(*loaded), "");
  EXPECT_EQ(CheckCount(loaded->checks[ListTemp]), 0u);  // only play puts blocks on the temperature list
  EXPECT_GT(CheckCount(ship->checks[ListTemp]), 0u);
  for (const auto &[at, head] : CellsOf(*loaded)) {
    const auto [x, y, z] = at;
    EXPECT_EQ(VisibilityAt(loaded, x, y, z), VisibilityAt(ship, x, y, z));
    EXPECT_EQ(LightsAt(loaded, x, y, z), LightsAt(ship, x, y, z));
  }
  Drop(loaded);
}

TEST_F(World, LightReachesItsSphereAndListsStayBounded) {
  const Block cube = CubeOf(), lamp = CubeOf(5, ComponentRow(1000));
  const int c = 5000;
  for (int d = -17; d <= 17; ++d) {
    PlaceHere(ship, c + d, c, c, cube);
    PlaceHere(ship, c, c, c + d, cube);
  }
  PlaceHere(ship, c, c, c, lamp);
  for (int d = -17; d <= 17; ++d)
    for (const int lights : {LightsAt(ship, c + d, c, c), LightsAt(ship, c, c, c + d)})
      EXPECT_EQ(lights, std::abs(d) <= 15 ? 1 : 0) << d;
  const LightEntry &own = RecordAt(ship, c, c, c)->lightList[0], &far = RecordAt(ship, c - 9, c, c)->lightList[0];
  EXPECT_EQ(std::make_tuple(own.dx, own.dy, own.dz), std::make_tuple(0, 0, 0));
  EXPECT_EQ(std::make_tuple(far.dx, far.red), std::make_tuple(9, Components[ComponentRow(1000)].lightRed));
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

  // Next to a low face a lamp casts nothing at all, but a block there takes in what is there, and gives it back.
  PlaceHere(ship, 15, 500, 500, lamp);
  EXPECT_EQ(LightsAt(ship, 15, 500, 500), 0);
  PlaceHere(ship, 500, 20, 500, lamp);
  for (const auto &[at, lights] : {std::pair{Cell{5, 500, 500}, 1}, {Cell{500, 6, 500}, 1}, {Cell{500, 4, 500}, 0}, {Cell{500, 0, 0}, 0}}) {
    PlaceHere(ship, at[0], at[1], at[2], cube);
    EXPECT_EQ(LightsAt(ship, at[0], at[1], at[2]), lights) << at[0] << " " << at[1];
  }
  Remove(ship, 15, 500, 500);
  Remove(ship, 500, 20, 500);
  EXPECT_EQ(LightsAt(ship, 5, 500, 500) + LightsAt(ship, 500, 6, 500), 0);
  EXPECT_EQ(ShipFault(*ship), "");
}

TEST_F(World, ShadowsFallBehindThickWallsOnly) {
  Options.ExperimentalLight = true;
  for (int d = 1; d <= 10; ++d) PlaceHere(ship, 5000 + d, 5000, 5000, CubeOf());
  PlaceHere(ship, 5000, 5000, 5000, CubeOf(5, ComponentRow(1000)));
  // Each block is counted once, however many steps the ray takes in it: five may stand before the lamp.
  for (int d = 1; d <= 10; ++d) {
    ASSERT_EQ(LightsAt(ship, 5000 + d, 5000, 5000), d <= 6 ? 1 : 0) << d;
    const int hops = d > 6 ? 0 : RecordAt(ship, 5000 + d, 5000, 5000)->lightList[0].hops;
    EXPECT_EQ(hops, d == 1 || d > 6 ? 0 : d) << "the lamp is one of them, but not for its neighbour";
  }
  ShadowsLater = true;
  PlaceHere(ship, 5011, 5000, 5000, CubeOf());
  EXPECT_EQ(LightsAt(ship, 5011, 5000, 5000), 1) << "lit without a cast";
  ShadowsLater = false;
  for (int d = 2; d <= 8; ++d) Remove(ship, 5000 + d, 5000, 5000);
  EXPECT_EQ(LightsAt(ship, 5009, 5000, 5000), 1);
}

TEST_F(World, ReadersWithoutALockSeeWholeCells) {
  const Block one = CubeOf(5, 2, 1), other = CubeOf(7, ComponentRow(215), 2);
  std::atomic<bool> stop{false};
  std::atomic<int> torn{0};
  std::thread reader([&] {
    while (!stop) {
      Block b;
      if (GetBlock(&b, 5000, 5000, 5000, *ship) != ReadFound) continue;
      const bool isOne = b.material == 5 && b.component == 2 && b.rotation == 1;
      const bool isOther = b.material == 7 && b.component == ComponentRow(215) && b.rotation == 2;
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
