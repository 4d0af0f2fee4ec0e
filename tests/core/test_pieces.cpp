// The timed pieces on a real world, without a window.
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "content/options.h"
#include "core/pieces.h"
#include "gameplay/motion.h"
#include "gameplay/player.h"
#include "platform/threads.h"
#include "support/installation.h"
#include "world/access.h"

struct Pieces : testing::Test {
  void SetUp() override {
    LoadTables();
    UseTemporaryInstallation();
    ResetOptions();
    TheShipTable.count = 0;
    TheShipTable.current = 0;
    ResetPlayer();
    uiMode = 0;
    dampenMode = 0;
    TheThrustSound = {};
  }
  // A ship whose box is the given cells, standing at the origin of the world.
  static Ship *AddShip(int low, int high) {
    Ship *ship = AppendShip(&TheShipTable);
    for (auto &axis : ship->position) axis = 0;
    PlaceHere(ship, low, low, low, CubeOf());
    PlaceHere(ship, high, high, high, CubeOf());
    ship->summary = BuildShipSummary(ship);
    return ship;
  }
  static void PutPlayer(double x, double y, double z) {
    Player p = ReadPlayer();
    const double at[3] = {x, y, z};
    for (int axis = 0; axis < 3; ++axis) p.solarLoc[axis] = static_cast<i64>(at[axis] * 10000);
    RelativeTo(*CurrentShip(), p.solarLoc, p.relativeLoc);
    StoreMotion(p);
  }
  static int ShipAfterUpdate() {
    ScopedLock world(&WorldMutex);
    UpdateCurrentShip();
    return TheShipTable.current;
  }
};

TEST_F(Pieces, ThePlayerBelongsToTheNearestShipWithinThirtyBlocks) {
  AddShip(1000, 1010);
  AddShip(1100, 1110);
  struct Case {
    double x, y, z;
    int from, to;
  };
  const Case cases[] = {{1139, 1139, 1139, 0, 1},    // 29 blocks on every axis
                        {1140.5, 1105, 1105, 0, 0},  // 30 on one
                        {1105, 1105, 1105, 0, 1},
                        {1005, 1005, 1005, 1, 0},
                        {1055, 1055, 1055, 1, 1},    // far from both: stays
                        {5000, 5000, 5000, 1, 1}};
  for (const Case &c : cases) {
    TheShipTable.current = static_cast<u16>(c.from);
    PutPlayer(c.x, c.y, c.z);
    EXPECT_EQ(ShipAfterUpdate(), c.to) << c.x;
    EXPECT_EQ(ReadPlayer().relativeLoc[0], static_cast<float>(static_cast<i64>(c.x * 10000)) * 0.0001f);
  }
  AddShip(1001, 1005);  // inside the first one, with its centre nearer to this place
  TheShipTable.current = 0;
  PutPlayer(1002.5, 1002.5, 1002.5);
  EXPECT_EQ(ShipAfterUpdate(), 2);
  EXPECT_NE(ReadText("errors.txt").find("*ERR: Inside two ships! \n"), std::string::npos);

  // A busy move mutex is never waited for: the switch happens at the next run.
  TheShipTable.current = 0;
  PutPlayer(1105, 1105, 1105);
  LockMutex(&MoveMutex);
  std::thread parse([] { EXPECT_EQ(ShipAfterUpdate(), 0); });
  parse.join();
  UnlockMutex(&MoveMutex);
  EXPECT_EQ(ShipAfterUpdate(), 1);
}

TEST_F(Pieces, MovementAddsTheJetsUpToTheSpeedLimitAndDampensToTheShip) {
  Ship *ship = AddShip(1000, 1010);
  uiMode = 1;  // the held keys stay out of it
  struct Case {
    u32 limit;
    i32 velocity;
    float push;
    i32 after;
  };
  const Case cases[] = {{0, 99, 1, 100}, {100, 99, 1, 99}, {100, 99, -1, 98}, {100, 500, -450, 50}};
  for (const Case &c : cases) {
    Options.MaxSpeed = c.limit;
    Player p = ReadPlayer();
    p.velocity[0] = c.velocity;
    StoreMotion(p);
    accel[0] = c.push;
    double timer = 0;
    MovementPiece(&timer);
    EXPECT_EQ(ReadPlayer().velocity[0], c.after) << c.limit << " " << c.push;
    accel[0] = 0;
  }
  Options.MaxSpeed = 0;
  ship->velocity[0] = 30;
  dampenMode = 1;
  Player p = ReadPlayer();
  p.velocity[0] = 230;
  StoreMotion(p);
  double timer = 0;
  MovementPiece(&timer);
  EXPECT_EQ(ReadPlayer().velocity[0], 110);  // at most 120 nearer
  EXPECT_EQ(dampenMode, 1);
  MovementPiece(&timer);
  EXPECT_EQ(ReadPlayer().velocity[0], 30);
  EXPECT_EQ(dampenMode, 0);

  // Places fall by velocities, the ship's and the player's.
  PutPlayer(1100, 1100, 1100);
  MoveBackendPiece(&timer);
  EXPECT_EQ(ship->position[0], -30);
  EXPECT_NEAR(static_cast<double>(ReadPlayer().solarLoc[0]), 11000000.0 - 30.0, 16.0);  // within a float's grain
}

TEST_F(Pieces, TheJetSoundGoesThroughItsStagesAndThrustEndsInDampening) {
  AddShip(1000, 1010);
  PlayerFlags.thrusting = true;
  double due = 0;
  SoundUpdatesPiece(&due);
  EXPECT_EQ(TheThrustSound.stage, 1);
  due = TheThrustSound.deadline + 0.1;
  SoundUpdatesPiece(&due);
  EXPECT_EQ(TheThrustSound.stage, 2);
  PlayerFlags.thrusting = false;
  Player p = ReadPlayer();
  p.velocity[1] = 40;
  p.speed = 40;
  StoreMotion(p);
  due = 0;
  SoundUpdatesPiece(&due);
  EXPECT_EQ(TheThrustSound.stage, 4);
  EXPECT_EQ(dampenMode, 1);
  due = TheThrustSound.deadline + 0.1;
  SoundUpdatesPiece(&due);
  EXPECT_EQ(TheThrustSound.stage, 0);
  Options.InertialDampening = 0.0f;
  dampenMode = 0;
  SoundUpdatesPiece(&due);
  EXPECT_EQ(dampenMode, 0);
}

TEST_F(Pieces, OnlyASinglePlayerSaves) {
  AddShip(1000, 1010);
  double timer = 0;
  Options.SinglePlayer = false;
  SavePiece(&timer);
  EXPECT_FALSE(std::filesystem::exists("saves/Default.sts"));
  EXPECT_GE(timer, 9000);
  Options.SinglePlayer = true;
  SavePiece(&timer);
  EXPECT_TRUE(std::filesystem::exists("saves/Default.sts"));
  EXPECT_LT(timer, 9000);
}
