#include "gameplay/motion.h"

#include <array>
#include <cmath>
#include <vector>

#include "gameplay/play.h"

using Motion = Play;

TEST_F(Motion, JetsPushAgainstTheWayInTheViewsOwnAxes) {
  Player p = ReadPlayer();
  p.sinPitch = std::sin(0.5f), p.cosPitch = std::cos(0.5f), p.sinYaw = std::sin(0.7f), p.cosYaw = std::cos(0.7f);
  const Vec3f v = ViewDirection(p), right{p.cosYaw, 0, -p.sinYaw};
  const Vec3f up{-right.z * v.y, right.z * v.x - right.x * v.z, right.x * v.y};  // right x view
  const struct { MoveKey key; Vec3f axis; float sign; } keys[] = {
      {MoveKey::Forward, v, -1}, {MoveKey::Backward, v, 1}, {MoveKey::Left, right, 1},
      {MoveKey::Right, right, -1}, {MoveKey::Up, up, 1}, {MoveKey::Down, up, -1}};
  const struct { bool shift; u16 power, reserve; float force; } jets[] = {
      {false, 2, 2, 85}, {true, 32000, 2, 120}, {false, 1, 2, 28.333334f}, {true, 0, 2, 40}, {false, 2, 1, 0}};
  for (const auto &k : keys)
    for (const auto &jet : jets) {
      SetKeyState(BoundKey(k.key), true);
      SetKeyState(KeyLeftShift, jet.shift);
      p.suitPower = jet.power, p.jetReserve = jet.reserve;
      PlayerFlags.thrusting = false;
      for (float &a : accel) a = 0;
      JetStep(&p, *ship);
      EXPECT_NEAR(accel[0], k.axis.x * k.sign * jet.force, 1e-3);
      EXPECT_NEAR(accel[1], k.axis.y * k.sign * jet.force, 1e-3);
      EXPECT_NEAR(accel[2], k.axis.z * k.sign * jet.force, 1e-3);
      EXPECT_EQ(jetForce, jet.force);
      EXPECT_EQ(PlayerFlags.thrusting, jet.force > 0);
      SetKeyState(BoundKey(k.key), false);
    }
}

TEST_F(Motion, StopTakesHoldOfAnyCellInReach) {
  const int reach[7][3] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}, {0, 0, 0}};
  ship->velocity[1] = 40;
  SetKeyState(Options.controls.stop, true);
  for (const auto &r : reach) {
    Place(Middle + r[0], Middle + r[1], Middle + r[2]);
    dampenMode = 1;
    Player p = ReadPlayer();
    p.velocity[0] = p.velocity[2] = 9000;
    JetStep(&p, *ship);
    EXPECT_TRUE(p.gripping && PlayerFlags.gripping) << r[0] << r[1] << r[2];
    EXPECT_EQ(dampenMode, 0);
    EXPECT_EQ(p.velocity[0], 0);
    EXPECT_EQ(p.velocity[1], 40);
    PlayerFlags.gripping = false;
    Remove(Middle + r[0], Middle + r[1], Middle + r[2]);
  }
}

TEST_F(Motion, StopBrakesInTheOpenWhenTheSuitCan) {
  SetKeyState(Options.controls.stop, true);
  const struct { i32 speed; u16 power, reserve; bool pushing; i8 mode; bool tooFast; } cases[] = {
      {1, 2, 2, false, 2, false}, {0, 2, 2, false, 0, false},     {1, 1, 2, false, 0, false}, {1, 2, 1, false, 0, false},
      {1, 2, 2, true, 0, false},  {24999, 2, 2, false, 2, false}, {25000, 2, 2, false, 2, true}};
  for (const auto &c : cases) {
    Player p = ReadPlayer();
    p.speed = c.speed, p.suitPower = c.power, p.jetReserve = c.reserve, p.pushingOff = c.pushing;
    dampenMode = 0;
    JetStep(&p, *ship);
    EXPECT_EQ(dampenMode, c.mode) << c.speed;
    EXPECT_EQ(PlayerFlags.tooFast, c.tooFast) << c.speed;
  }
}

TEST_F(Motion, PushOffCountsWhatIsInReachAndNeedsRoomBehind) {
  const struct { std::vector<std::array<int, 3>> blocks; float force; } cases[] = {
      {{}, 0},
      {{{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, 0, -1}}, 4 * 333.33334f},
      {{{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, -1}}, 0.2f},
      {{{1, 0, 0}, {0, 0, 3}}, 0.8f},  // behind a view along -z the last probe is in the third cell
      {{{1, 0, 0}, {0, 0, 4}}, 333.33334f}};
  SetKeyState(BoundKey(MoveKey::Forward), true);
  for (const auto &c : cases) {
    for (const auto &b : c.blocks) Place(Middle + b[0], Middle + b[1], Middle + b[2]);
    PlayerFlags.gripping = true;
    ReleaseStop();
    for (int tick = 0; tick < 2; ++tick) {
      Player p = ReadPlayer();
      HeldInputStep(&p);
      EXPECT_FLOAT_EQ(accel[2], c.force) << "anew in each tick";
    }
    for (const auto &b : c.blocks) Remove(Middle + b[0], Middle + b[1], Middle + b[2]);
  }
  OnKey(BoundKey(MoveKey::Forward), 0);
  EXPECT_FALSE(PlayerFlags.pushingOff);
}

TEST_F(Motion, DampenStepSharesTheRateAmongTheAxes) {
  const struct { i32 v[3], target[3]; float rate; i32 after[3]; bool arrived; i32 speed; } cases[] = {
      {{1000, 0, 0}, {0, 0, 0}, 120, {880, 0, 0}, false, 880}, {{300, -300, 0}, {0, 0, 0}, 120, {240, -240, 0}, false, 480},
      {{100, 1000, 0}, {0, 0, 0}, 120, {0, 891, 0}, false, 891}, {{60, 0, -60}, {0, 0, 0}, 120, {0, 0, 0}, true, 7},
      {{500, 0, 0}, {400, 0, 9}, 50, {455, 0, 9}, false, 464}};
  for (const auto &c : cases) {
    Player p;
    for (int a = 0; a < 3; ++a) p.velocity[a] = c.v[a];
    p.speed = 7;
    EXPECT_EQ(DampenStep(&p, c.rate, c.target[0], c.target[1], c.target[2]), c.arrived);
    for (int a = 0; a < 3; ++a) EXPECT_EQ(p.velocity[a], c.after[a]) << c.v[0];
    EXPECT_EQ(p.speed, c.speed);
  }
}

// Moves by the velocity against the ship, as the tick does.
static Player Moved(const Ship &ship, const float (&at)[3], const i32 (&velocity)[3]) {
  Player p = ReadPlayer();
  float d[3];
  for (int a = 0; a < 3; ++a) {
    p.relativeLoc[a] = at[a];
    p.velocity[a] = velocity[a];
    d[a] = static_cast<float>(velocity[a] - ship.velocity[a]) * 0.0001f;
  }
  MovePlayer(&p, ship, d[0], d[1], d[2]);
  return p;
}

TEST_F(Motion, WhoeverIsInsideABlockIsThrownBackFasterAndFaster) {
  Place(Middle, Middle, Middle);
  const struct { i32 before[3], after[3]; } calls[] = {{{0, -99, 2500}, {-100, 100, -2500}},
                                                       {{-100, 101, -2500}, {-110, 111, -2750}}};
  for (const auto &c : calls) {
    const Player p = Moved(*ship, {5005.5f, 5005.5f, 5005.5f}, c.before);
    for (int a = 0; a < 3; ++a) EXPECT_EQ(p.velocity[a], c.after[a]);
    EXPECT_FLOAT_EQ(p.relativeLoc[2], 5005.5f - static_cast<float>(c.before[2]) * 0.0001f);
    EXPECT_TRUE(wasStuck);
  }
  Moved(*ship, {5003.5f, 5005.5f, 5005.5f}, {0, 0, 0});
  EXPECT_FALSE(wasStuck);
}

// A body next to a wall, or in front of an edge where two axes meet, stops on those axes and slides on the others.
TEST_F(Motion, WallsAndEdgesStopASlowBodyOnTheirOwnAxes) {
  const int walls[][3] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}, {-1, 1, 0}, {0, -1, 1}, {1, 0, 1}};
  for (i32 a = 0; a < 3; ++a) ship->velocity[a] = 500;
  for (const auto &w : walls) {
    Place(Middle + w[0], Middle + w[1], Middle + w[2]);
    float at[3];
    i32 velocity[3];
    for (int a = 0; a < 3; ++a) {
      at[a] = 5005.5f + 0.46f * static_cast<float>(w[a]);
      velocity[a] = w[a] == 0 ? 550 : 500 - 90 * w[a];  // a place falls by its velocity
    }
    const Player p = Moved(*ship, at, velocity);
    for (int a = 0; a < 3; ++a) {
      EXPECT_EQ(p.velocity[a], w[a] == 0 ? 550 : 500) << w[0] << w[1] << w[2];
      EXPECT_EQ(p.relativeLoc[a] == at[a], w[a] != 0) << w[0] << w[1] << w[2];
    }
    Remove(Middle + w[0], Middle + w[1], Middle + w[2]);
  }
}

TEST_F(Motion, AFastBodyBouncesOffWhatItsPathMeets) {
  Place(Middle - 1, Middle, Middle);
  const struct { i32 ship; float x; i32 before, after; } cases[] = {
      {0, 5005.5f, 8000, -400}, {0, 5005.2f, 3000, -300}, {0, 5005.2f, 3001, -150},
      {0, 5005.2f, 101, -10},   {0, 5005.2f, 100, -50},   {700, 5005.5f, 8700, 300}};
  for (const auto &c : cases) {
    ship->velocity[0] = c.ship;
    const Player p = Moved(*ship, {c.x, 5005.5f, 5005.5f}, {c.before, 0, 40});
    EXPECT_EQ(p.velocity[0], c.after) << c.before;
    EXPECT_NEAR(p.relativeLoc[0], c.x, 0.001f);
    EXPECT_NEAR(p.relativeLoc[2], 5005.5f, 0.001f) << "a hit cancels the whole displacement of the tick";
  }
}

TEST_F(Motion, WithoutCollisionsTheBodyPassesAndThePlacesAgree) {
  Place(Middle - 1, Middle, Middle);
  CollisionsOn = false;
  ship->position[0] = -123456789;
  const Player p = Moved(*ship, {5005.5f, 5005.5f, 5005.5f}, {8000, -20000, 0});
  EXPECT_EQ(p.speed, 28000);
  EXPECT_FLOAT_EQ(p.relativeLoc[0], 5004.7f);
  for (int a = 0; a < 3; ++a)
    EXPECT_EQ(p.solarLoc[a], ship->position[a] + static_cast<i64>(static_cast<double>(p.relativeLoc[a]) * 10000.0));
}
