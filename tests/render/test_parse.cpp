// Runs of Parse: what is in view, what the budget makes of it, and the hand-over.
#include "render/parse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

#include "core/utils.h"
#include "render/blocks.h"
#include "render/matrix.h"
#include "render/view.h"

namespace {

struct ParseTest : Render {
  FrustumPlanes planes{};
  u16 solid = 0, glassy = 0, glass = 1, sparkling = 1;
  void SetUp() override {
    Render::SetUp();
    InitPreview();
    solid = SolidComponent();
    glassy = RandomComponent({0, 200, 255});
    while (Materials[glass].alpha >= 100) ++glass;
    while (Materials[sparkling].alpha < 100 || Materials[sparkling].alpha == 255) ++sparkling;
    player.target.markerHidden = true;
    TheShipTable.ships[0] = ship;
    TheShipTable.count = 1;
    Options.MaxVoxels = 1000000;
  }
  void TearDown() override {
    TheShipTable.count = 0;
    TheShipTable.ships[0] = nullptr;
    Render::TearDown();
  }
  void Look(float x, float y, float z, float pitch, float yaw) {
    float projection[16], rotation[16], view[16];
    Perspective(projection, 75, 1.3f, 0.1f, 500);
    CameraRotationMatrix(rotation, pitch, yaw);
    MultiplyMatrices(projection, rotation, view);
    StoreViewMatrix(view);
    planes = BuildFrustumPlanes(view);
    player.relativeLoc[0] = x, player.relativeLoc[1] = y, player.relativeLoc[2] = z;
  }
  void SetVisibility(int x, int y, int z, u8 visibility) {
    const CellAddress a = AddressOf(static_cast<unsigned>(x), static_cast<unsigned>(y), static_cast<unsigned>(z));
    ChunkCells *cells = FindCells(a, *ship);
    cells->visibility[a.block] = visibility;
    const u64 bit = u64{1} << (a.block & 63);
    cells->hidden[a.block >> 6] = visibility == NotVisible ? cells->hidden[a.block >> 6] | bit : cells->hidden[a.block >> 6] & ~bit;
  }
  // A row of blocks along x, built or not, all in view of an eye in front of them.
  void Row(int count, u16 component, u16 material, u8 visibility, bool built) {
    for (int i = 0; i < count; ++i) {
      const Block b = CubeOf(material, component);
      GraphicBlock *g = Put(100 + 2 * i, 100, 100, b);
      SetVisibility(100 + 2 * i, 100, 100, visibility);
      if (built) Build(g, b);
    }
    Look(98.5f, 100.5f, 100.5f, 0, -90);
  }
  float PlaneValue(int p, float x, float y, float z) const { return planes.a[p] * x + planes.b[p] * y + planes.c[p] * z + planes.d[p]; }
  bool SlowBox(const float (&low)[3], float edge, bool *inside) const {
    bool in = true;
    *inside = true;
    for (int p = 0; p < 6; ++p) {
      bool any = false;
      for (int corner = 0; corner < 8; ++corner) {
        float at[3];
        for (int i = 0; i < 3; ++i) at[i] = low[i] + (corner >> i & 1 ? edge : 0) - player.relativeLoc[i];
        const bool front = PlaneValue(p, at[0], at[1], at[2]) > 0;
        any |= front;
        *inside &= front;
      }
      in &= any;
    }
    return in;
  }
  bool SlowInView(int x, int y, int z) const {
    bool inside;
    for (const int edge : {1000, 100, 10}) {
      const float low[3] = {static_cast<float>(x / edge * edge), static_cast<float>(y / edge * edge), static_cast<float>(z / edge * edge)};
      if (!SlowBox(low, static_cast<float>(edge), &inside)) return false;
    }
    const float *c = player.relativeLoc;
    for (int p = 0; p < 6; ++p)
      if (!(PlaneValue(p, static_cast<float>(x) + (1 - c[0]), static_cast<float>(y) + (1 - c[1]), static_cast<float>(z) - c[2]) > -2)) return false;
    return true;
  }
};

}  // namespace

TEST_F(ParseTest, VisibleBlocksAreThoseOfASlowFilter) {
  std::vector<std::array<int, 3>> cells;
  for (int i = 0; i < 1500; ++i) {
    const int x = 960 + Draw(60), y = 970 + Draw(60), z = 970 + Draw(60);
    if (RecordAt(x, y, z) != nullptr) continue;
    cells.push_back({x, y, z});
    Put(x, y, z, CubeOf());
    SetVisibility(x, y, z, static_cast<u8>(Draw(4)));
  }
  for (int round = 0; round < 8; ++round) {
    Look(990 + 0.37f * static_cast<float>(Draw(60)), 1000.2f, 985 + 0.7f * static_cast<float>(Draw(40)), static_cast<float>(Draw(160) - 80), static_cast<float>(Draw(360)));
    std::vector<const GraphicBlock *> expected, found;
    for (const auto &c : cells) {
      const CellAddress a = AddressOf(static_cast<unsigned>(c[0]), static_cast<unsigned>(c[1]), static_cast<unsigned>(c[2]));
      if (FindCells(a, *ship)->visibility[a.block] != NotVisible && SlowInView(c[0], c[1], c[2])) expected.push_back(RecordAt(c[0], c[1], c[2]));
    }
    CollectVisibleBlocks(&list, *ship, planes, player.relativeLoc);
    for (u32 i = 0; i < list.visibleCount; ++i) {
      const VisibleBlock &b = list.visibleBlocks[i];
      found.push_back(b.graphic);
      const float dx = player.relativeLoc[0] - b.graphic->x, dy = player.relativeLoc[1] - b.graphic->y, dz = player.relativeLoc[2] - b.graphic->z;
      ASSERT_EQ(b.distance, FastSqrt(dx * dx + dy * dy + dz * dz));
      ASSERT_EQ(b.head, HeadAt(b.graphic->x, b.graphic->y, b.graphic->z, *ship));
    }
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    ASSERT_EQ(found, expected) << round;
    ASSERT_GT(found.size(), 20u);
    EmitCurrentShip(&list, *ship, player);
    for (u32 i = 1; i < list.visibleCount; ++i) ASSERT_LE(list.visibleBlocks[i - 1].distance, list.visibleBlocks[i].distance);
  }
  const FrustumPlanes bare = BuildFrustumPlanes({});
  EXPECT_EQ((std::array<float, 6>{bare.d[0], bare.d[1], bare.d[2], bare.d[3], bare.d[4], bare.d[5]}), (std::array<float, 6>{7, 7, 10, 9, 0, 0}));
  for (int round = 0; round < 600; ++round) {
    const auto draw = [this](int below) { return static_cast<float>(Draw(below)); };
    const float edge = 1 + draw(30), low[3] = {980 + draw(60), 970 + draw(60), 970 + draw(60)};
    const float high[3] = {low[0] + edge, low[1] + edge, low[2] + edge};
    bool inside;
    const bool in = SlowBox(low, edge, &inside);
    ASSERT_EQ(BoxInViewCounted(planes, low, high, player.relativeLoc), in ? 1 + inside : 0);
  }
}

TEST_F(ParseTest, BudgetsAreCutToIntegersAndNeverNegative) {
  const struct { u32 voxels, visible, others; bool detail; i64 limits[3]; } cases[] = {
      {1000000, 2000, 0, true, {599400, 899100, 999000}}, {1000000, 2000, 0, false, {999000, 0, 999000}},
      {100000, 250000, 0, true, {0, 0, 0}}, {100, 1, 50, true, {29, 44, 49}}};
  for (const auto &c : cases) {
    Options.MaxVoxels = c.voxels;
    Options.LevelOfDetail = c.detail;
    list.visibleCount = c.visible;
    list.otherInstances = c.others;
    const DetailLimits limits = LimitsOf(list);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(limits.stage[i], c.limits[i]);
  }
  list.visibleCount = 0;
}

TEST_F(ParseTest, EachStageSpendsByItsOwnTable) {
  for (const u8 visibility : {VisibilityUndecided, Visible, MaybeVisible})
    for (const bool detail : {true, false}) {
      Row(40, glassy, 5, visibility, true);
      Options.LevelOfDetail = detail;
      Options.MaxVoxels = 20000;
      list.count = list.otherInstances = 0;
      CollectVisibleBlocks(&list, *ship, planes, player.relativeLoc);
      ASSERT_EQ(list.visibleCount, 40u);
      const DetailLimits limits = LimitsOf(list);
      const BlockCache &c = *RecordAt(100, 100, 100)->cache;  // alike in all, whatever the light
      const bool maybe = visibility == MaybeVisible;
      const i64 costs[3] = {c.counts[OpaqueList] + 5 * c.counts[TransparentList], maybe ? c.counts[QuadList] : c.counts[EightList], maybe ? 1 : c.counts[QuadList]};
      const i64 shown[3] = {c.counts[OpaqueList], costs[1], costs[2]};
      i64 spent = 0, instances = 0;
      u32 left = 40, full = 0;
      for (int stage = 0; stage < 3; ++stage)
        for (; left > 0 && spent < limits.stage[stage]; --left, full += stage == 0) spent += costs[stage], instances += shown[stage];
      EXPECT_EQ(EmitCurrentShip(&list, *ship, player), full);
      EXPECT_EQ(list.count / 4, instances + left);
    }
}

TEST_F(ParseTest, OnlyTheNearestBlocksAreBuiltInARun) {
  Row(10, solid, 5, Visible, false);
  Options.CachePerFrame = 3;
  for (const u32 built : {3u, 6u, 9u, 10u}) {
    Parse(&list, player);
    EXPECT_EQ(list.publishedCount / 4, built * 1352 + 10 - built);
    EXPECT_EQ(RecordAt(100 + 2 * static_cast<int>(built) - 2, 100, 100)->cache->counts[OpaqueList], 1352);
  }
  RecordAt(100, 100, 100)->cacheDirty = true;
  Parse(&list, player);
  EXPECT_FALSE(RecordAt(100, 100, 100)->cacheDirty);
  Options.CachePerFrame = 0;
  FreeCacheRecord(RecordAt(100, 100, 100));
  Parse(&list, player);  // the nearest block is a single cube
  EXPECT_EQ(list.publishedLocations[3], 15.875f);
  EXPECT_EQ(list.publishedLocations[0], 100.46875f);
}

TEST_F(ParseTest, SeeThroughVoxelsComeLastAndOnlyAtFullDetail) {
  Row(3, glassy, glass, Visible, true);
  for (const bool sorted : {true, false}) {
    Options.HighQualityTransparency = sorted;
    Parse(&list, player);
    const BlockCache &c = *RecordAt(100, 100, 100)->cache;
    ASSERT_EQ(list.publishedCount / 4, 3u * (c.counts[OpaqueList] + c.counts[TransparentList]));
    for (u32 i = 0; i < list.publishedCount / 4; ++i)
      ASSERT_EQ(list.publishedColours[4 * i + 3] == 255, i < 3u * c.counts[OpaqueList]) << i;
  }
  Options.MaxVoxels = 1;
  Parse(&list, player);
  EXPECT_EQ(list.publishedCount / 4, 3u);
}

TEST_F(ParseTest, GlassGlintsWithASeedThatFollowsTheEye) {
  for (const u16 material : {glass, sparkling}) {
    Row(4, glassy, material, Visible, false);
    for (int i = 0; i < 4; ++i) {
      GiveLights(RecordAt(100 + 2 * i, 100, 100), 12);
      Build(RecordAt(100 + 2 * i, 100, 100), CubeOf(material, glassy));
    }
    Parse(&list, player);
    VoxelList expected;
    ASSERT_TRUE(AllocVoxelList(&expected));
    u32 seed = 0;
    for (int i = 0; i < 4; ++i, seed += 100 * 125 * 100 + 98) {
      if (material == glass) AppendTransparentSorted(RecordAt(100 + 2 * i, 100, 100), &expected, player.relativeLoc);
      else AppendTransparentSparkle(RecordAt(100 + 2 * i, 100, 100), &expected, player.relativeLoc, seed);
    }
    EXPECT_EQ(memcmp(expected.colours, list.publishedColours + list.publishedCount - expected.count, expected.count), 0);
    FreeArrays(&expected);
  }
}

TEST_F(ParseTest, PreviewStandsInFrontUnlessTheEyeIsInIt) {
  Row(1, solid, 5, Visible, true);
  player.target.markerHidden = false;
  player.target.hitCell = {100, 100, 100};
  player.target.marker = CubeOf(5, solid);
  player.heldBlock = CubeOf(5, solid);
  const struct { u8 tool; u16 x; float eye; u32 more; u8 alpha; } cases[] = {
      {0, 99, 98.5f, 1352 - 196, 120}, {2, 99, 98.5f, 1352 - 196, 120}, {1, 99, 98.5f, 1352, 200},
      {0, 0, 98.5f, 0, 255}, {0, 99, 100.5f, 0, 255}};
  for (const auto &c : cases) {
    player.activeTool = c.tool;
    player.target.placeCell = c.x == 0 ? Cell3{} : Cell3{c.x, 100, 100};
    player.relativeLoc[0] = c.eye;
    Parse(&list, player);
    ASSERT_EQ(list.publishedCount / 4, 1352 + c.more) << int{c.tool};
    EXPECT_EQ(list.publishedColours[list.publishedCount - 1], c.alpha);
  }
}

TEST_F(ParseTest, APieceOfSeveralCellsHasAFrameRoundAllOfThem) {
  Row(1, solid, 5, Visible, true);
  player.target.markerHidden = false;
  player.target.hitCell = {100, 100, 100};
  player.target.placeCell = {99, 100, 100};
  player.target.marker = CubeOf(5, solid);
  player.heldBlock = CubeOf(5, static_cast<u16>(FindComponent(350)), 0);
  const auto drawn = [&] {
    Parse(&list, player);
    return list.publishedCount / 4;
  };
  const u32 alone = drawn();
  player.target.box = {.low = {102, 100, 100}, .size = {2, 2, 2}, .room = true};
  constexpr u32 frame = 4 * (32 + 30 + 30);
  for (const bool room : {true, false}) {
    player.target.box.room = room;
    ASSERT_EQ(drawn(), alone + frame);
    std::set<std::array<float, 3>> places;
    for (u32 i = alone; i < alone + frame; ++i) {
      const float *at = list.publishedLocations + 4 * i;
      const float low[3] = {102, 100, 100};
      int ends = 0;
      for (int a = 0; a < 3; ++a) ends += at[a] == low[a] || at[a] == low[a] + 31.0f / 16;
      EXPECT_GE(ends, 2);
      places.insert({at[0], at[1], at[2]});
      EXPECT_EQ(list.publishedColours[4 * i + 1] > 128, room) << "red where there is no room";
    }
    EXPECT_EQ(places.size(), frame) << "each voxel once";
  }
  player.target.box = {.low = {98, 100, 100}, .size = {2, 2, 2}, .room = true};
  ASSERT_EQ(drawn(), alone + frame);
  EXPECT_LT(list.publishedColours[4 * alone + 1], 128) << "and where the player is";
  player.target.box = {.low = {102, 100, 100}, .size = {2, 2, 2}, .room = false};
  player.heldBlock.rotation = 4;
  EXPECT_LT(drawn(), alone + frame) << "without room no part is shown, and no marker";
  player.target.box.room = true;
  u32 parts = 0;
  for (unsigned part = 0; part < 8; ++part) {
    const Component &c = Components[player.heldBlock.component + part];
    parts += static_cast<u32>(c.drawnOpaque + c.drawnTranslucent);
  }
  EXPECT_GT(drawn(), frame + parts / 2) << "all parts are";
  const struct { u8 tool; bool hidden; u16 place; } without[] = {{1, false, 99}, {0, true, 99}, {0, false, 0}};
  for (const auto &w : without) {
    player.activeTool = w.tool, player.target.markerHidden = w.hidden, player.target.placeCell.x = w.place;
    const PieceBox box = std::exchange(player.target.box, PieceBox{});
    const u32 plain = drawn();
    player.target.box = box;
    EXPECT_EQ(drawn(), plain) << int{w.tool};
  }
}

TEST_F(ParseTest, OtherShipsAreCubesThatTheNextBudgetPaysFor) {
  Row(1, solid, 5, Visible, true);
  Ship *other = AppendShip(&TheShipTable);
  other->position[0] = ship->position[0] + 15000;
  for (const u8 visibility : {Visible, MaybeVisible, NotVisible, VisibilityUndecided}) {
    const int x = 100 + 2 * visibility;
    PlaceBlockFast(CubeOf(glass, solid), static_cast<u16>(x), 100, 100, other);
    std::swap(ship, other);
    SetVisibility(x, 100, 100, visibility);
    std::swap(ship, other);
  }
  for (const bool grown : {false, true}) {
    AsteroidGenerated = grown;
    Parse(&list, player);
    ASSERT_EQ(list.publishedCount / 4, 1353u);
    EXPECT_EQ(list.otherInstances, 1u);
    const float expected[4] = {102 + 1.5f + 0.46875f, 100.46875f, 100.46875f, 15.875f};
    EXPECT_EQ(memcmp(list.publishedLocations + 4 * 1352, expected, sizeof expected), 0);
    EXPECT_EQ(list.publishedColours[4 * 1352 + 1] == Materials[glass].green, grown);
    EXPECT_EQ(list.publishedColours[4 * 1352 + 3], Materials[glass].alpha);
  }
  FreeShip(other);
}

TEST_F(ParseTest, PublishingSwapsThePairsAndDropsWhatNobodyTook) {
  float *const a = list.locations, *const b = list.publishedLocations;
  for (const u32 count : {8u, 4u}) {
    list.linked = 1;
    list.count = count;
    PublishVoxelList(&list);
    EXPECT_EQ(list.publishedLocations, count == 8 ? a : b);
    EXPECT_EQ(list.locations, count == 8 ? b : a);
    EXPECT_TRUE(list.publishedCount == count && list.linked == 0);
  }
  const u32 capacity = ArrayCapacity;
  list.count = capacity - 16;
  EXPECT_TRUE(MakeRoom(&list, 4));
  EXPECT_EQ(ArrayCapacity, capacity);
  EXPECT_TRUE(MakeRoom(&list, 4097));
  EXPECT_EQ(ArrayCapacity, capacity + 2 * ArrayStep - ArrayStep);
  EXPECT_TRUE(MakeRoomStep(&list));
  EXPECT_EQ(ArrayCapacity, capacity + ArrayStep);
  list.count = ArrayCapacity - ArrayStep + 4;
  EXPECT_TRUE(MakeRoomStep(&list));
  EXPECT_EQ(ArrayCapacity, capacity + 2 * ArrayStep);
  EXPECT_TRUE(RenewParseSide(&list));
  Parse(&list, player);  // an empty ship publishes an empty list
  EXPECT_EQ(list.publishedCount, 0u);
}
