// The timed pieces on a real world, without a window.
#include "core/pieces.h"

#include <thread>

#include "content/options.h"
#include "gameplay/motion.h"
#include "gameplay/player.h"
#include "net/edits.h"
#include "support/ship_test.h"

namespace {

struct Pieces : ShipTest {
  void SetUp() override {
    ShipTest::SetUp();
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
  static void PutPlayer(std::array<double, 3> at) {
    Player p = ReadPlayer();
    for (size_t axis = 0; axis < 3; ++axis) p.solarLoc[axis] = static_cast<i64>(at[axis] * 10000);
    RelativeTo(*CurrentShip(), p.solarLoc, p.relativeLoc);
    StoreMotion(p);
  }
  static void SetVelocity(int axis, i32 velocity) {
    Player p = ReadPlayer();
    p.velocity[axis] = velocity;
    p.speed = velocity;
    StoreMotion(p);
  }
  static int ShipAfterUpdate() {
    ScopedLock world(&WorldMutex);
    UpdateCurrentShip();
    return TheShipTable.current;
  }
};

}  // namespace

// A lamp that goes takes the light of a farther one along, until the next runs of Parse; no edit has to wait for that.
TEST_F(Pieces, ParseMendsTheLightThatAnEditLeftWrong) {
  Ship *rock = AddShip(1000, 1013);
  const Block lamp = CubeOf(5, ComponentRow(1000));
  for (const int at : {1000, 1020}) PlaceBlockNetworked(lamp, static_cast<u16>(at), static_cast<u16>(at), 1000, rock);
  PlaceBlockNetworked(CubeOf(), 1013, 1013, 1000, rock);
  const CellAddress a = AddressOf(1013, 1013, 1000);
  const auto lights = [&] { return static_cast<int>(FindCells(a, *rock)->graphicBlocks.load()[a.block].lightCount); };
  ASSERT_EQ(lights(), 1);
  ASSERT_TRUE(RemoveBlockNetworked(1000, 1000, 1000, rock));
  EXPECT_EQ(lights(), 0) << "by the rule of removing";
  double timer = 0;
  for (int run = 0; run < 100 && !rock->remains.stale.empty(); ++run) ParsePiece(&timer);
  EXPECT_EQ(lights(), 1);
}

TEST_F(Pieces, ThePlayerBelongsToTheNearestShipWithinThirtyBlocks) {
  AddShip(1000, 1010);
  AddShip(1100, 1110);
  const struct {
    std::array<double, 3> at;
    int from, to;
  } cases[] = {{{1139, 1139, 1139}, 0, 1},    // 29 blocks on every axis
               {{1140.5, 1105, 1105}, 0, 0},  // 30 on one
               {{1105, 1105, 1105}, 0, 1},
               {{1005, 1005, 1005}, 1, 0},
               {{1055, 1055, 1055}, 1, 1},    // far from both: stays
               {{5000, 5000, 5000}, 1, 1}};
  for (const auto &c : cases) {
    TheShipTable.current = static_cast<u16>(c.from);
    PutPlayer(c.at);
    EXPECT_EQ(ShipAfterUpdate(), c.to) << c.at[0];
    EXPECT_EQ(ReadPlayer().relativeLoc[0], static_cast<float>(static_cast<i64>(c.at[0] * 10000)) * 0.0001f);
  }
  AddShip(1001, 1005);  // inside the first one, with its centre nearer to this place
  TheShipTable.current = 0;
  PutPlayer({1002.5, 1002.5, 1002.5});
  EXPECT_EQ(ShipAfterUpdate(), 2);
  EXPECT_TRUE(Logged("*ERR: Inside two ships! \n"));

  // A busy move mutex is never waited for: the switch happens at the next run.
  TheShipTable.current = 0;
  PutPlayer({1105, 1105, 1105});
  LockMutex(&MoveMutex);
  std::thread parse([] { EXPECT_EQ(ShipAfterUpdate(), 0); });
  parse.join();
  UnlockMutex(&MoveMutex);
  EXPECT_EQ(ShipAfterUpdate(), 1);
}

TEST_F(Pieces, MovementAddsTheJetsUpToTheSpeedLimitAndDampensToTheShip) {
  Ship *current = AddShip(1000, 1010);
  uiMode = 1;  // the held keys stay out of it
  double timer = 0;
  const struct {
    u32 limit;
    i32 velocity;
    float push;
    i32 after;
  } cases[] = {{0, 99, 1, 100}, {100, 99, 1, 99}, {100, 99, -1, 98}, {100, 500, -450, 50}};
  for (const auto &c : cases) {
    Options.MaxSpeed = c.limit;
    SetVelocity(0, c.velocity);
    accel[0] = c.push;
    MovementPiece(&timer);
    EXPECT_EQ(ReadPlayer().velocity[0], c.after) << c.limit << " " << c.push;
    accel[0] = 0;
  }
  Options.MaxSpeed = 0;
  current->velocity[0] = 30;
  dampenMode = 1;
  SetVelocity(0, 230);
  MovementPiece(&timer);
  EXPECT_TRUE(ReadPlayer().velocity[0] == 110 && dampenMode == 1) << "at most 120 nearer";
  MovementPiece(&timer);
  EXPECT_TRUE(ReadPlayer().velocity[0] == 30 && dampenMode == 0);

  // Places fall by velocities, the ship's and the player's.
  PutPlayer({1100, 1100, 1100});
  MoveBackendPiece(&timer);
  EXPECT_EQ(current->position[0], -30);
  EXPECT_NEAR(static_cast<double>(ReadPlayer().solarLoc[0]), 11000000.0 - 30.0, 16.0);  // within a float's grain
}

TEST_F(Pieces, TheJetSoundGoesThroughItsStagesAndThrustEndsInDampening) {
  AddShip(1000, 1010);
  SetVelocity(1, 40);
  const struct {
    bool thrusting, late;
    float dampening;
    int stage, dampens;
  } steps[] = {{true, false, 1, 1, 0}, {true, true, 1, 2, 0}, {false, false, 1, 4, 1},
               {false, true, 1, 0, 1}, {false, true, 0, 0, 0}};
  for (const auto &s : steps) {
    PlayerFlags.thrusting = s.thrusting;
    Options.InertialDampening = s.dampening;
    dampenMode = 0;
    double due = s.late ? TheThrustSound.deadline + 0.1 : 0;
    SoundUpdatesPiece(&due);
    EXPECT_TRUE(TheThrustSound.stage == s.stage && dampenMode == s.dampens) << s.stage << TheThrustSound.stage << dampenMode;
  }
}

TEST_F(Pieces, OnlyASinglePlayerSaves) {
  AddShip(1000, 1010);
  for (const bool alone : {false, true}) {
    double timer = 0;
    Options.SinglePlayer = alone;
    SavePiece(&timer);
    EXPECT_TRUE(fs::exists("saves/Default.sts") == alone && (timer < 9000) == alone) << alone;
  }
}

TEST_F(Pieces, TheCountOfAFloodIsToldThoughNothingElseIs) {
  uiMode = 1;
  for (int i = 0; i < 25; ++i) LogError("Inside two ships!");
  double timer = 0;
  for (int i = 0; i < 500 && !Logged("times more"); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    MiscPiece(&timer);
  }
  EXPECT_TRUE(Logged("*ERR: Inside two ships! (5 times more) \n"));
}
