// Rays and the aim.
#include <cmath>

#include "content/components.h"
#include "gameplay/play.h"
#include "gameplay/tools.h"

namespace {

struct Aim : Play {
  Player player;
  Target target;
  void SetUp() override {
    Play::SetUp();
    for (float &c : player.relativeLoc) c = 5000.5f;
    ResetTarget(&target, 0, 0, 0);
    target.menuOpen = false;
  }
  void Look(float pitch, float yaw) {
    constexpr float degree = 0.017453292f;
    player.sinPitch = std::sin(pitch * degree);
    player.cosPitch = std::cos(pitch * degree);
    player.sinYaw = std::sin(yaw * degree);
    player.cosYaw = std::cos(yaw * degree);
  }
  int FollowTo(Ray *ray) const {
    int answer;
    do answer = StepVoxelRay(ray, *ship);
    while (answer == RayOpen);
    return answer;
  }
};

}  // namespace

TEST_F(Aim, VoxelRaysSampleThePlaceJustBeyondTheirBlock) {
  Place(5002, 5000, 5000);
  Ray ray = NewRayToward({5000.5f, 5000.5f, 5000.5f}, {5004.5f, 5000.5f, 5000.5f});
  EXPECT_EQ(ray.stepsLeft, 216);  // (4 + 0.5) * 48
  EXPECT_EQ(FollowTo(&ray), RaySpent);  // cell 5001 is free: there it stays
  EXPECT_EQ(static_cast<int>(ray.pos[0]), 5001);
  ray = NewRayToward({5001.5f, 5000.5f, 5000.5f}, {5004.5f, 5000.5f, 5000.5f});
  EXPECT_EQ(FollowTo(&ray), RaySolid);
  EXPECT_FLOAT_EQ(ray.pos[0], 5002.0f);
  ray = NewRayAway({100.5f, 100.5f, 100.5f}, {101.5f, 100.5f, 100.5f});
  EXPECT_EQ(StepVoxelRay(&ray, *ship), RayNoChunk);
  ray = NewRayAway({1, 2, 3}, {1, 2, 3});
  EXPECT_EQ(StepVoxelRay(&ray, *ship), RaySpent);
  ray = NewRayToward({-50000.f, 1e7f, 5.f}, {-50012.f, 1e7f, 5.f});  // far outside of the cube
  EXPECT_EQ(StepVoxelRay(&ray, *ship), RayNoChunk);
  EXPECT_EQ(StepCellRay(&ray, *ship), RayOpen);
}

TEST_F(Aim, CellRaysBreakTiesAndEndOnTheirCell) {
  const struct { Cell3 from, to; u8 rank[3]; } cases[] = {
      {{10, 10, 10}, {20, 15, 12}, {1, 2, 3}}, {{10, 10, 10}, {13, 20, 10}, {2, 1, 3}},
      {{10, 10, 10}, {20, 20, 20}, {2, 1, 3}}, {{20, 20, 20}, {10, 13, 5}, {2, 3, 1}}};
  for (const auto &c : cases) {
    Ray ray = NewCellRay(c.from, c.to);
    for (int axis = 0; axis < 3; ++axis) EXPECT_EQ(ray.rank[axis], c.rank[axis]) << axis;
    int answer = RayOpen, steps = 0;
    while (answer != RaySpent && answer != RayAtDest && ++steps < 1000) answer = StepCellRay(&ray, *ship);
    EXPECT_EQ(answer, RayAtDest);
  }
}

TEST_F(Aim, EveryFaceIsFoundWithTheFreeCellInFrontOfIt) {
  const struct { float pitch, yaw; int dx, dy, dz; u64 face; } cases[] = {
      {0, 0, 0, 0, -4, 1}, {0, 180, 0, 0, 4, 3}, {0, 90, -4, 0, 0, 4},
      {0, -90, 4, 0, 0, 6}, {90, 0, 0, 4, 0, 5}, {-90, 0, 0, -4, 0, 2}};
  for (const auto &c : cases) {
    const int x = 5000 + c.dx, y = 5000 + c.dy, z = 5000 + c.dz;
    PlaceHere(ship, x, y, z, CubeOf(5, 2, 3));
    Look(c.pitch, c.yaw);
    ASSERT_TRUE(UpdateTarget(&target, player, *ship));
    EXPECT_EQ(target.marker.rotation, c.face) << c.pitch << " " << c.yaw;
    EXPECT_EQ(target.marker.component, 3u);
    EXPECT_EQ(std::make_tuple(target.targetCell.x, target.targetCell.y, target.targetCell.z), std::make_tuple(x, y, z));
    EXPECT_EQ(std::abs(target.placeCell.x - x) + std::abs(target.placeCell.y - y) + std::abs(target.placeCell.z - z), 1);
    EXPECT_EQ(target.hitBlock.rotation, 3u);
    EXPECT_FALSE(target.markerHidden || target.targetBlocked);
    Remove(x, y, z);
  }
  ASSERT_FALSE(UpdateTarget(&target, player, *ship));  // nothing left in reach
  EXPECT_TRUE(target.markerHidden && target.targetBlocked);
  EXPECT_EQ(target.marker.component, 1u);
}

TEST_F(Aim, TheBlockRoundTheEyeIsAimedAtOnlyByItsVoxels) {
  Place(5000, 5000, 5000);
  ASSERT_TRUE(UpdateTarget(&target, player, *ship));
  EXPECT_EQ(target.marker.component, 4u);
  EXPECT_EQ(target.placeCell.x, 0);
  EXPECT_EQ(target.targetCell.x, 5000);
  const u16 window = static_cast<u16>(FindComponent(1010));  // a pane leaves room in its cell
  PlaceHere(ship, 5000, 5000, 5000, CubeOf(5, window));
  Place(5000, 5000, 4990);
  UpdateTarget(&target, player, *ship);
  EXPECT_EQ(target.targetCell.x, 5000);
}

// Out of a block with room in it, across the edge of a chunk beyond which nothing was ever built: the block that was aimed at
// before must not go when the right button is pressed.
TEST_F(Aim, NothingIsAimedAtOutOfTheOwnBlockIntoAMissingChunk) {
  const auto solidAhead = [](u16 row) {
    int solid = 0;
    for (int vz = 0; vz < 9; ++vz) solid += HeadVoxelSolid(HeadOf(CubeOf(5, row)), nullptr, 8, 8, vz) ? 1 : 0;
    return solid;
  };
  u16 row = 5;
  while (solidAhead(row) != 0) ++row;
  Place(5000, 5000, 5003);
  Look(0, 180);
  StoreAim(target);
  StoreMotion(player);
  StoreView(player);
  ASSERT_TRUE(RefreshTarget());
  target = ReadPlayer().target;
  ASSERT_TRUE(target.targetCell.z == 5003 && !target.targetBlocked);
  PlaceHere(ship, 5000, 5000, 5000, CubeOf(5, row));
  Look(0, 0);
  StoreView(player);
  EXPECT_FALSE(RefreshTarget());
  EXPECT_TRUE(ReadPlayer().target.targetBlocked && ReadPlayer().target.markerHidden);
  SecondaryPress();
  EXPECT_TRUE(Taken(5000, 5000, 5003));
  EXPECT_TRUE(UpdateTarget(&target, player, *ship)) << "the plain operation keeps the aim";
  EXPECT_EQ(target.targetCell.z, 5003);
}

TEST_F(Aim, SpeedMenuAndPlanesHideOrHoldTheMarker) {
  Place(5000, 5000, 4996);
  for (const bool tooFast : {true, false}) {
    target.tooFast = tooFast;
    target.menuOpen = !tooFast;
    ASSERT_TRUE(UpdateTarget(&target, player, *ship));
    EXPECT_TRUE(target.markerHidden);
    EXPECT_EQ(target.targetBlocked, tooFast);
  }
  target.menuOpen = false;
  target.aimState = 3;  // frozen: the view no longer moves it
  const Cell3 held = target.targetCell;
  Look(0, 180);
  ASSERT_TRUE(UpdateTarget(&target, player, *ship));
  EXPECT_EQ(target.targetCell.z, held.z);
  EXPECT_FALSE(target.markerHidden);
  player.relativeLoc[0] = -3;
  target.aimState = 1;
  EXPECT_FALSE(UpdateTarget(&target, player, *ship));
}
