// The player's body in free flight. Velocities are in ten-thousandths of a block a tick, and a place falls by them.
#include "gameplay/motion.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "audio/sound.h"
#include "content/options.h"
#include "core/log.h"
#include "core/utils.h"
#include "gameplay/injury.h"
#include "platform/window.h"
#include "render/debris.h"
#include "world/access.h"

constexpr float JetFull = 85, JetFullFast = 120, JetWeak = 28.333334f, JetWeakFast = 40;  // Fast: left Shift
constexpr int GripSlot = 48;

constexpr int PushProbes = 25;
constexpr float PushProbeStep = 0.125f, PushPerBlock = 333.33334f, PushBlocked = 0.8f, PushCrowded = 0.2f;

constexpr i32 ThrowBackSpeed = 100;
constexpr float ProbeReach = 0.0625f;     // a voxel
constexpr int ThickStepsAtMost = 16;      // a Ray this short belongs to a slow motion
constexpr float ThickReach = 0.1875f;

float accel[3] = {};
bool wasStuck = false;

i32 ToVelocity(double v) {
  constexpr double most = 2147483647.0;
  return static_cast<i32>(std::clamp(v, -most, most));
}

static void UpdateSpeed(Player *p) {
  double sum = 0;
  for (const i32 v : p->velocity) sum += std::fabs(v);
  p->speed = ToVelocity(sum);
}

// The velocity of the player against the ship on one axis.
static float DriftOn(const Player &p, const Ship &ship, int axis) {
  return static_cast<float>(static_cast<i64>(p.velocity[axis]) - ship.velocity[axis].load());
}

static void MatchShip(Player *p, const Ship &ship) {
  for (int a = 0; a < 3; ++a) p->velocity[a] = ship.velocity[a];
}

int BoundKey(MoveKey key) {
  const Controls &c = Options.controls;
  switch (key) {
    case MoveKey::Forward: return c.moveForward;
    case MoveKey::Backward: return c.moveBackward;
    case MoveKey::Left: return c.moveLeft;
    case MoveKey::Right: return c.moveRight;
    case MoveKey::Up: return c.moveUp;
    case MoveKey::Down: return c.moveDown;
  }
  return -1;
}

bool IsMoveKey(int keyCode) {
  return std::any_of(std::begin(MoveKeys), std::end(MoveKeys), [&](MoveKey k) { return BoundKey(k) == keyCode; });
}

static bool AnyMoveKeyDown() {
  return std::any_of(std::begin(MoveKeys), std::end(MoveKeys), [](MoveKey k) { return KeyIsDown(BoundKey(k)); });
}

Vec3f MoveKeyDirection(const Player &p, MoveKey key) {
  const Vec3f pairs[3] = {{p.sinYaw * p.cosPitch, -p.sinPitch, p.cosYaw * p.cosPitch},
                          {p.cosYaw, 0, -p.sinYaw},
                          {p.sinYaw * p.sinPitch, p.cosPitch, p.cosYaw * p.sinPitch}};
  const unsigned index = static_cast<unsigned>(key);
  const Vec3f &v = pairs[index / 2];
  return index % 2 == 0 ? v : Vec3f{-v.x, -v.y, -v.z};
}

namespace {

struct CellOf {
  int x, y, z;
  bool operator==(const CellOf &) const = default;
};

}  // namespace

static CellOf TruncatedCell(float x, float y, float z) { return {FloatToInt(x), FloatToInt(y), FloatToInt(z)}; }

// Whether a block stands there; nothing stands outside of the ship's cube.
static bool Occupied(const CellOf &c, const Ship &ship) {
  for (const int v : {c.x, c.y, c.z})
    if (v < 0 || v >= CellsPerAxis) return false;
  return BlockExists(static_cast<u16>(c.x), static_cast<u16>(c.y), static_cast<u16>(c.z), ship);
}

// How many of the seven cells that hands and feet reach hold a block: the six around the player and their own.
static int OccupiedInReach(const Player &p, const Ship &ship) {
  constexpr float reach[7][3] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}, {0, 0, 0}};
  const Vec3f eye = EyeOf(p);
  int count = 0;
  for (const float (&r)[3] : reach) count += Occupied(TruncatedCell(eye.x + r[0], eye.y + r[1], eye.z + r[2]), ship);
  return count;
}

float PushOffForce(const Player &p, const Ship &ship, MoveKey key) {
  const Vec3f eye = EyeOf(p), back = MoveKeyDirection(p, key);
  CellOf last{-1, -1, -1};
  for (int i = 1; i <= PushProbes; ++i) {
    const float d = PushProbeStep * static_cast<float>(i);
    const CellOf cell = TruncatedCell(eye.x + back.x * d, eye.y + back.y * d, eye.z + back.z * d);
    if (cell == last) continue;
    if (Occupied(cell, ship)) return PushBlocked;
    last = cell;
  }
  const int count = OccupiedInReach(p, ship);
  return count >= 5 ? PushCrowded : static_cast<float>(count) * PushPerBlock;
}

static float ForceOfJets(const Player &p) {
  const bool fast = KeyIsDown(KeyLeftShift);
  if (p.suitPower < 2) return fast ? JetWeakFast : JetWeak;
  return fast ? JetFullFast : JetFull;
}

static void MoveKeyStep(Player *p, const Ship &ship, MoveKey key) {
  jetForce = 0;
  float force = 0;
  if (p->pushingOff) {
    force = PushOffForce(*p, ship, key);
    p->gripping = false;
    PlayerFlags.gripping = false;
  } else {
    if (p->jetReserve < 2) return;
    force = ForceOfJets(*p);
    // The key may have come up since this tick looked at it, and its release must have the last word.
    PlayerFlags.thrusting = true;
    if (!KeyIsDown(BoundKey(key))) PlayerFlags.thrusting = false;
    p->thrusting = PlayerFlags.thrusting;
  }
  jetForce = force;
  if (force == 0) return;
  const Vec3f d = MoveKeyDirection(*p, key);
  accel[0] += d.x * force;
  accel[1] += d.y * force;
  accel[2] += d.z * force;
}

static void TakeHold(Player *p, const Ship &ship) {
  dampenMode = 0;
  for (int a = 0; a < 3; ++a) ImpactDamage(p, DriftOn(*p, ship, a));
  MatchShip(p, ship);
  PlaySlotAt(GripSlot, 16.0f, 0.5f);
  PlayerFlags.gripping = true;
}

static void Brake(const Player &p) {
  if (p.speed < 1 || p.suitPower < 2 || p.jetReserve < 2 || p.pushingOff) return;
  dampenMode = 2;
  PlayerFlags.tooFast = p.speed >= WorkSpeed;
  for (const int slot : JetSlots) SetSlotGain(slot, jetForce / 180.0f);
}

static void StopKeyStep(Player *p, const Ship &ship) {
  i8 dampening = 1;  // begun by the sound piece just as the grip took hold: nothing would end it, nor the sound of its jets
  if (p->gripping) {
    dampenMode.compare_exchange_strong(dampening, 0);
    return;
  }
  if (OccupiedInReach(*p, ship) > 0)
    TakeHold(p, ship);
  else
    Brake(*p);
  // The key may have come up while this tick took hold; then nobody else would let go.
  if (!KeyIsDown(Options.controls.stop)) ReleaseStop();
  p->gripping = PlayerFlags.gripping;
}

void JetStep(Player *p, const Ship &ship) {
  if (KeyIsDown(Options.controls.stop)) {
    StopKeyStep(p, ship);
    return;
  }
  for (const MoveKey key : MoveKeys)
    if (KeyIsDown(BoundKey(key))) MoveKeyStep(p, ship, key);
}

void ReleaseStop() {
  if (PlayerFlags.gripping.exchange(false)) {
    PlaySlotAt(GripSlot, 14.0f, 0.5f);
    if (AnyMoveKeyDown()) PlayerFlags.pushingOff = true;
  }
  i8 braking = 2;
  dampenMode.compare_exchange_strong(braking, 0);
}

bool DampenStep(Player *p, float rate, i32 vx, i32 vy, i32 vz) {
  const i32 target[3] = {vx, vy, vz};
  double drift[3], n = 0;
  for (int a = 0; a < 3; ++a) {
    drift[a] = static_cast<double>(p->velocity[a]) - target[a];
    n += std::fabs(drift[a]);
  }
  const bool arrived = n == 0 || !(n > static_cast<double>(rate));
  for (int a = 0; a < 3; ++a) {
    const bool small = std::fabs(p->velocity[a]) < static_cast<double>(rate);
    if (arrived || small)
      p->velocity[a] = target[a];
    else
      p->velocity[a] = ToVelocity(p->velocity[a] - std::trunc(drift[a] * static_cast<double>(rate) / n));
  }
  if (!arrived) UpdateSpeed(p);
  return arrived;
}

namespace {

// The working values of one MovePlayer.
struct Motion {
  float d[3];                    // the displacement that is asked for, in blocks
  float factor[3] = {1, 1, 1};   // how much of it each axis gets
  bool hit = false;
};

}  // namespace

// The player is inside something: back out the way they came, faster with each tick that it lasts.
static void ThrowBack(Player *p) {
  for (i32 &v : p->velocity) {
    if (wasStuck) {
      v = ToVelocity(v * 1.1);
      continue;
    }
    if (v > -ThrowBackSpeed && v < ThrowBackSpeed) v = v < 0 ? -ThrowBackSpeed : ThrowBackSpeed;
    v = ToVelocity(-static_cast<double>(v));
  }
  wasStuck = true;
}

static void StopAxis(Player *p, const Ship &ship, int axis, Motion *m) {
  ImpactDamage(p, DriftOn(*p, ship, axis));
  p->velocity[axis] = ship.velocity[axis];
  m->factor[axis] = 0;
  m->hit = true;
}

static bool SolidAt(const float (&at)[3], const float (&offset)[3], const Ship &ship) {
  return VoxelSolid(at[0] + offset[0], at[1] + offset[1], at[2] + offset[2], ship);
}

// Feels one voxel ahead on each axis, and then on each pair of axes for the edges between them.
static void ProbeAhead(Player *p, const Ship &ship, Motion *m) {
  constexpr int corners[3][2] = {{0, 1}, {1, 2}, {0, 2}};
  float reach[3];
  for (int a = 0; a < 3; ++a) reach[a] = p->velocity[a] < ship.velocity[a] ? ProbeReach : -ProbeReach;
  for (int a = 0; a < 3; ++a) {
    float offset[3] = {};
    offset[a] = reach[a];
    if (p->velocity[a] != ship.velocity[a] && SolidAt(p->relativeLoc, offset, ship)) StopAxis(p, ship, a, m);
  }
  for (const int (&pair)[2] : corners) {
    const int a = pair[0], b = pair[1];
    if (p->velocity[a] == ship.velocity[a] || p->velocity[b] == ship.velocity[b]) continue;
    float offset[3] = {};
    offset[a] = reach[a];
    offset[b] = reach[b];
    if (!SolidAt(p->relativeLoc, offset, ship)) continue;
    StopAxis(p, ship, a, m);
    StopAxis(p, ship, b, m);
  }
}

// A slow body is thick: whether any of three points beside a sample, each off on one axis, is solid.
static bool BesideIsSolid(const Ray &ray, const float (&thick)[3], const Ship &ship) {
  for (int a = 0; a < 3; ++a) {
    float offset[3] = {};
    offset[a] = thick[a];
    if (SolidAt(ray.pos, offset, ship)) return true;
  }
  return false;
}

// Walks the path of this tick; true when something is in the way, with the Ray left at it.
static bool PathIsBlocked(Ray *ray, const float (&d)[3], const Ship &ship, bool traced) {
  const bool slow = ray->stepsLeft <= ThickStepsAtMost;
  float thick[3];
  for (int a = 0; a < 3; ++a) thick[a] = d[a] < 0 ? ThickReach : -ThickReach;
  for (int count = 0;; ++count) {
    const int found = StepVoxelRay(ray, ship);
    if (found == RaySpent) return false;
    if (traced) {
      Print("Count: %i : %f %f %f \n", count, static_cast<double>(ray->pos[0]), static_cast<double>(ray->pos[1]),
            static_cast<double>(ray->pos[2]));
      SpawnMarker(ray->pos[0], ray->pos[1], ray->pos[2]);
    }
    if (found == RaySolid || (found == RayOpen && slow && BesideIsSolid(*ray, thick, ship))) return true;
  }
}

static float BounceOf(float drift) {
  const float size = std::fabs(drift);
  if (size > 3000) return 0.05f;
  return size > 100 ? 0.1f : 0.5f;
}

// The share of a displacement that a hit leaves. Against positions in the thousands it is next to nothing; at the very
// edge of the cube it must not become more than the whole.
static float ShareLeft(float d, float pos) { return pos == 0 ? 0 : std::clamp(d / pos, -1.0f, 1.0f); }

static void Bounce(Player *p, const Ship &ship, const Ray &ray, Motion *m) {
  const int axis = ray.axis[1];
  const float drift = DriftOn(*p, ship, axis);
  ImpactDamage(p, drift);
  m->factor[axis] = ShareLeft(m->d[axis], ray.pos[axis]);
  if (m->factor[axis] < 0.5f)
    for (int a = 0; a < 3; ++a) m->factor[a] = ShareLeft(m->d[a], ray.pos[a]);
  p->velocity[axis] = ToVelocity(ship.velocity[axis] - std::trunc(static_cast<double>(drift * BounceOf(drift))));
}

static void FollowPath(Player *p, const Ship &ship, Motion *m) {
  const Vec3f from = EyeOf(*p), to{from.x + m->d[0], from.y + m->d[1], from.z + m->d[2]};
  const bool traced = KeyIsDown(KeyF4);
  if (traced) {
    Print("RayLength: %f %f %f \n", static_cast<double>(m->d[0]), static_cast<double>(m->d[1]), static_cast<double>(m->d[2]));
    Print("Points: %f %f %f : %f %f %f \n", static_cast<double>(from.x), static_cast<double>(from.y),
          static_cast<double>(from.z), static_cast<double>(to.x), static_cast<double>(to.y), static_cast<double>(to.z));
  }
  Ray ray = NewRayAway(from, to);
  if (PathIsBlocked(&ray, m->d, ship, traced)) Bounce(p, ship, ray, m);
}

static void Collide(Player *p, const Ship &ship, Motion *m) {
  if (VoxelSolid(p->relativeLoc[0], p->relativeLoc[1], p->relativeLoc[2], ship)) {
    ThrowBack(p);
    return;
  }
  wasStuck = false;
  if (p->gripping) {
    MatchShip(p, ship);
    return;
  }
  if (m->d[0] == 0 && m->d[1] == 0 && m->d[2] == 0) return;
  ProbeAhead(p, ship, m);
  if (!m->hit) FollowPath(p, ship, m);
}

// World units of a place in blocks. A server may send any place, so the sum wraps rather than overflows.
static i64 WorldPlace(i64 shipPosition, float blocks) {
  constexpr double most = 9.0e18;
  const double units = std::clamp(static_cast<double>(blocks) * static_cast<double>(UnitsPerBlock), -most, most);
  return static_cast<i64>(static_cast<u64>(shipPosition) + static_cast<u64>(static_cast<i64>(units)));
}

void MovePlayer(Player *p, const Ship &ship, float dx, float dy, float dz) {
  Motion m{.d = {dx, dy, dz}};
  if (CollisionsOn) Collide(p, ship, &m);
  for (int a = 0; a < 3; ++a) {
    p->relativeLoc[a] -= m.factor[a] * m.d[a];
    p->solarLoc[a] = WorldPlace(ship.position[a], p->relativeLoc[a]);
  }
  UpdateSpeed(p);
}
