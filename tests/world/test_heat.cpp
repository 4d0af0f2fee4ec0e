// Heat between blocks, changes of phase, and voxels that grow back.
#include <cmath>
#include <thread>

#include "support/ship_test.h"
#include "world/damage.h"
#include "world/heat.h"
#include "world/lists.h"
#include "world/phase.h"

constexpr u16 Cold = 1, Warm = 2;  // two materials with round numbers

namespace {

struct Heat : ShipTest {
  void SetUp() override {
    ShipTest::SetUp();
    kept[0] = Materials[Cold];
    kept[1] = Materials[Warm];
    Materials[Cold].conductivity = 10;
    Materials[Warm].conductivity = 20;
    Materials[Cold].heatCapacity = Materials[Warm].heatCapacity = 100;
    Materials[Warm].meltingPoint = 500;
    Materials[Warm].boilingPoint = 900;
  }
  void TearDown() override {
    Materials[Cold] = kept[0];
    Materials[Warm] = kept[1];
    ShipTest::TearDown();
  }
  Chunk *ChunkAt(unsigned x, unsigned y, unsigned z) { return FindChunk(AddressOf(x, y, z), *ship); }
  // A block that is on no temperature list, of the given temperature.
  void Put(u16 x, u16 y, u16 z, u16 component = 2, u16 temp = PlacedTemperature, bool unstable = false) {
    PlaceBlockFast(CubeOf(Warm, component), x, y, z, ship);
    Block b = BlockFromHead(HeadAt(x, y, z, *ship));
    b.temp = temp;
    FindCells(AddressOf(x, y, z), *ship)->heads[AddressOf(x, y, z).block] = HeadOf(b);
    ScopedLock heat(&HeatMutex);
    if (unstable) MarkTempUnstable(AddressOf(x, y, z), ship);
  }
  Material kept[2];
};

}  // namespace

static Block OfTemperature(u16 material, unsigned temp) {
  Block b = CubeOf(material);
  b.temp = static_cast<u16>(temp);
  return b;
}

TEST_F(Heat, FlowsOnlyDownwardsAndFromADegreeOn) {
  const struct {
    unsigned from, to;
    float between, ambient;
  } rows[] = {{804, 800, 15, 10}, {803, 800, 0, 0}, {800, 804, 0, 0}, {900, 800, 375, 250}, {40000, 0, 0, 0}, {0, 65535, 0, 0}};
  for (const auto &r : rows) {
    EXPECT_EQ(BlockHeatFlow(OfTemperature(Cold, r.from), OfTemperature(Warm, r.to)), r.between) << r.from << " " << r.to;
    EXPECT_EQ(AmbientHeatFlow(OfTemperature(Cold, r.from), static_cast<u16>(r.to)), r.ambient) << r.from << " " << r.to;
  }
  EXPECT_TRUE(HeatToQuarter(15, OfTemperature(Cold, 0)) == 1 && HeatToQuarter(-100, OfTemperature(Cold, 0)) == -3);
  Materials[Cold].heatCapacity = 0;
  EXPECT_EQ(HeatToQuarter(15, OfTemperature(Cold, 0)), std::numeric_limits<i32>::max());

  Put(5000, 5000, 5000);
  Block out;
  HeatEntry *shadow = nullptr;
  ScopedLock heat(&HeatMutex);
  const auto flow = [&](u16 x, unsigned temp, u16 limit) {
    return NeighbourHeatFlow(x, 5000, 5000, *ship, OfTemperature(Cold, temp), limit, &out, &shadow);
  };
  EXPECT_TRUE(flow(5001, 900, 800) == 0 && flow(10000, 900, 800) == 0) << "free, or outside";
  EXPECT_TRUE(flow(5000, 900, 799) == 0 && flow(5000, 803, 800) == 0) << "too warm";
  EXPECT_EQ(shadow, nullptr);
  EXPECT_EQ(flow(5000, 804, 800), 15);
  EXPECT_EQ(out.component, 2u);
  EXPECT_EQ(shadow, ChunkAt(5000, 5000, 5000)->heatShadow + AddressOf(5000, 5000, 5000).block);
}

TEST_F(Heat, AddedHeatStaysInRangeAndWakesTheNeighbours) {
  const std::pair<float, unsigned> rows[] = {{1.25f, 805}, {-1.25f, 795}, {-1000, 0}, {1e30f, 65535}, {std::nanf(""), 800}};
  for (const auto &[degrees, temp] : rows) {
    for (u16 x = 5009; x <= 5012; ++x) Put(x, 5000, 5000);
    Put(0, 7, 7);
    ScopedLock world(&WorldMutex);
    ScopedLock heat(&HeatMutex);
    EXPECT_EQ(AddHeat(5010, 5000, 5000, ship, degrees), ReadFound);
    EXPECT_EQ(AddHeat(5013, 5000, 5000, ship, degrees), ReadEmpty);
    EXPECT_EQ(AddHeat(0, 7, 7, ship, degrees), ReadFound);  // one neighbour is outside
    const Block b = BlockFromHead(HeadAt(5010, 5000, 5000, *ship));
    EXPECT_EQ(b.temp, temp) << degrees;
    EXPECT_EQ(ChunkAt(5010, 5000, 5000)->heatShadow[AddressOf(5010, 5000, 5000).block].temp, temp);
    for (u16 x = 5009; x <= 5012; ++x) EXPECT_EQ(HeadUnstable(HeadAt(x, 5000, 5000, *ship)), x != 5012) << x;
    EXPECT_EQ(ShipFault(*ship), "");
  }
  EXPECT_EQ(Count(Log(), "Block get attempt outside bounds"), 5);
}

TEST_F(Heat, ABlockIsDueOnce) {
  Put(5000, 5000, 5000);
  Put(5001, 5000, 5000, 2, 900, true);
  ScopedLock heat(&HeatMutex);
  Chunk *chunk = ChunkAt(5000, 5000, 5000);
  const HeatEntry *shadow = GetHeatShadow(chunk);
  EXPECT_TRUE(shadow[0].due == 0 && shadow[1].due == 1 && shadow[1].temp == 900);
  for (const unsigned x : {1u, 5000u, 5001u, 5000u, 5001u}) MarkHeatDue(AddressOf(x, 5000, 5000), ship);  // none is at 1
  EXPECT_TRUE(shadow[0].due == 1 && CheckCount(chunk->checks[ListTemp]) == 2);
}

TEST_F(Heat, PhaseChangesKeepTheBlockAndAMeltedLampIsDark) {
  const u16 lamp = ComponentRow(1000);
  PlaceHere(ship, 1234, 5678, 9012, CubeOf(Warm, lamp, 3, 1));
  PlaceHere(ship, 1236, 5678, 9012, CubeOf());
  const CellAddress a = AddressOf(1234, 5678, 9012);
  const GraphicBlock *neighbour = FindCells(a, *ship)->graphicBlocks.load() + AddressOf(1236, 5678, 9012).block;
  ASSERT_EQ(neighbour->lightCount, 1);
  ScopedLock world(&WorldMutex);
  const Block before = BlockFromHead(HeadAt(1234, 5678, 9012, *ship));
  const std::pair<int (*)(const CellAddress &, Ship *), u16> changes[] = {
      {MeltBlock, LiquidComponent}, {BoilBlock, GasComponent}, {SolidifyBlock, SolidifiedComponent}};
  for (const auto &[change, row] : changes) {
    EXPECT_EQ(change(a, ship), 1);
    Block expected = before;
    expected.component = row;
    EXPECT_EQ(HeadAt(1234, 5678, 9012, *ship), HeadOf(expected));
    EXPECT_EQ(change(AddressOf(1235, 5678, 9012), ship), 0);
    EXPECT_EQ(neighbour->lightCount, 0);
  }
  EXPECT_EQ(ShipFault(*ship), "");
}

TEST_F(Heat, BlocksOnTheWrongSideOfTheirPointsAreFound) {
  // Melting at 2000 quarter degrees, boiling at 3600.
  const struct {
    u16 component, temp;
    bool wrong;
  } rows[] = {{2, 2000, false}, {2, 2001, true}, {LiquidComponent, 2000, false}, {LiquidComponent, 1999, true},
              {LiquidComponent, 3600, false}, {LiquidComponent, 3601, true}, {GasComponent, 3599, true}, {SolidifiedComponent, 2001, true}};
  unsigned x = 100;
  for (const auto &r : rows) {
    const u16 at = static_cast<u16>(x += 1111);
    Put(at, 5000, 5000, r.component, r.temp, true);
    Put(at, 5001, 5000, 2, 9000);  // at rest: never looked at
    ScopedLock world(&WorldMutex);
    EXPECT_EQ(ScanPhaseChange(ship), r.wrong ? 1 : 0) << r.component << " " << r.temp;
    ScopedLock heat(&HeatMutex);
    ClearTempUnstable(AddressOf(at, 5000, 5000), ship);
  }
  EXPECT_EQ(ShipFault(*ship), "");
}

// What is gone after a pass in which everything grows that can, by positions and not by bits.
static std::vector<bool> GrowAll(const std::vector<bool> &gone, const u8 *alpha) {
  std::vector<bool> left = gone;
  for (int v = 0; v < VoxelsPerBlock; ++v)
    for (int axis = 0; axis < 3; ++axis)
      for (const int step : {-1, 1}) {
        int p[3] = {v / 256, v / 16 % 16, v % 16};
        p[axis] += step;
        const int n = p[0] * 256 + p[1] * 16 + p[2];
        if (p[axis] >= 0 && p[axis] < 16 && !gone[static_cast<size_t>(n)] && alpha[n] != 0) left[static_cast<size_t>(v)] = false;
      }
  return left;
}

static void SetGone(u8 *bits, const std::vector<bool> &gone) {
  std::fill_n(bits, 512, u8{0});
  for (unsigned v = 0; v < VoxelsPerBlock; ++v) bits[v / 8] |= static_cast<u8>(gone[v] << v % 8);
}

static std::vector<bool> GoneOf(const u8 *bits) {
  std::vector<bool> gone;
  for (int v = 0; v < VoxelsPerBlock; ++v) gone.push_back(VoxelGone(bits, v));
  return gone;
}

// Single holes all over a cube, where so many of their neighbours stand.
static std::vector<bool> HolesWith(int standing) {
  std::vector<bool> holes;
  for (int v = 0; v < VoxelsPerBlock; ++v) {
    int outer = 0, odd = 0;
    for (const int p : {v / 256, v / 16 % 16, v % 16}) {
      outer += p == 0 || p == 15 ? 1 : 0;
      odd += p % 2 == 1 && p < 15 ? 1 : 0;
    }
    holes.push_back(outer == 6 - standing && odd + outer == 3);
  }
  return holes;
}

TEST_F(Heat, VoxelsGrowBackALayerAPass) {
  const struct {
    int standing, surely, never;  // thresholds
  } rows[] = {{6, 179, 1179}, {5, 149, 1149}, {4, 11, 1011}, {3, 8, 1008}};
  const std::vector<bool> none(VoxelsPerBlock);
  GraphicBlock g;
  BlockCache cache;
  u8 bits[512] = {};
  g.damageBits = bits;
  g.cache = &cache;
  EXPECT_EQ(RegrowVoxels(CubeOf(), &g, -1), 2);
  for (const auto &r : rows) {
    SetGone(bits, HolesWith(r.standing));
    EXPECT_EQ(RegrowVoxels(CubeOf(5, 2, 7), &g, -1), 2);
    g.cacheDirty = false;
    EXPECT_EQ(RegrowVoxels(CubeOf(), &g, r.never), 1);
    EXPECT_TRUE(g.cacheDirty);
    EXPECT_EQ(GoneOf(bits), HolesWith(r.standing));
    EXPECT_EQ(RegrowVoxels(CubeOf(), &g, r.surely), 1);
    EXPECT_EQ(GoneOf(bits), none) << r.standing;
  }
  for (const u16 id : {u16{10}, u16{340}, u16{1000}}) {
    const u16 row = ComponentRow(id);
    std::vector<bool> gone;
    for (u32 v = 0; v < VoxelsPerBlock; ++v) gone.push_back(HashToUnit(v) < 0.98f);
    SetGone(bits, gone);
    for (unsigned pass = 0; pass < 8; ++pass) {
      gone = GrowAll(gone, Components[row].facts->alpha);
      RegrowVoxels(CubeOf(5, row, 1 + pass % 6), &g, -1);
      ASSERT_EQ(GoneOf(bits), gone) << id << " " << pass;
    }
  }
  g.damageBits = nullptr;
  g.cache = nullptr;
}

TEST_F(Heat, RaysReadVoxelsThatGrowBack) {
  Block hurt = CubeOf();
  hurt.state = StateDamaged;
  PlaceHere(ship, 5000, 5000, 5000, hurt);
  const CellAddress a = AddressOf(5000, 5000, 5000);
  ASSERT_TRUE(AllocDamageBits(a, *ship));
  GraphicBlock *g = FindCells(a, *ship)->graphicBlocks.load() + a.block;
  std::fill_n(g->damageBits.load(), 512, u8{0xfe});
  std::thread reader([this] {
    for (int i = 0; i < 20000; ++i) VoxelSolid(5000.5f, 5000.5f, 5000.0f + static_cast<float>(i % 16) / 16.0f, *ship);
  });
  while (RegrowVoxels(hurt, g, -1) != 2) {}
  reader.join();
  EXPECT_TRUE(VoxelSolid(5000.5f, 5000.5f, 5000.1f, *ship));
}
