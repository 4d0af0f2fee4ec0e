// The one player record and its hand-over between threads.
#include "gameplay/player.h"

#include <algorithm>

#include "platform/threads.h"

PlayerFlagValues PlayerFlags;
std::atomic<i8> dampenMode{0};
std::atomic<float> jetForce{0};
std::atomic<u8> uiMode{0};

static Player ThePlayer;                                            // PlayerLock
static Mutex PlayerLock = {MutexRank::Leaf, "player", {}};          // held only for copies, inside any other

Player ReadPlayer() {
  Player p;
  {
    ScopedLock lock(&PlayerLock);
    p = ThePlayer;
  }
  p.pushingOff = PlayerFlags.pushingOff;
  p.thrusting = PlayerFlags.thrusting;
  p.gripping = PlayerFlags.gripping;
  p.target.tooFast = PlayerFlags.tooFast;
  p.target.cinematic = PlayerFlags.cinematic;
  p.target.menuOpen = PlayerFlags.menuOpen;
  return p;
}

void StoreMotion(const Player &p) {
  ScopedLock lock(&PlayerLock);
  for (int axis = 0; axis < 3; ++axis) {
    ThePlayer.solarLoc[axis] = p.solarLoc[axis];
    ThePlayer.relativeLoc[axis] = p.relativeLoc[axis];
    ThePlayer.velocity[axis] = p.velocity[axis];
  }
  ThePlayer.speed = p.speed;
  ThePlayer.shipIndex = p.shipIndex;
  ThePlayer.suitPunctured = p.suitPunctured;
  ThePlayer.woundLevel = p.woundLevel;
}

void StoreView(const Player &p) {
  ScopedLock lock(&PlayerLock);
  ThePlayer.pitch = p.pitch;
  ThePlayer.yaw = p.yaw;
  ThePlayer.roll = p.roll;
  ThePlayer.sinPitch = p.sinPitch;
  ThePlayer.sinYaw = p.sinYaw;
  ThePlayer.sinRoll = p.sinRoll;
  ThePlayer.cosPitch = p.cosPitch;
  ThePlayer.cosYaw = p.cosYaw;
  ThePlayer.cosRoll = p.cosRoll;
}

void StoreHand(const Player &p) {
  ScopedLock lock(&PlayerLock);
  ThePlayer.activeTool = p.activeTool;
  ThePlayer.heldBlock = p.heldBlock;
  ThePlayer.toolTemperature = p.toolTemperature;
}

void StoreAim(const Target &t) {
  ScopedLock lock(&PlayerLock);
  ThePlayer.target = t;
}

// Movement re-aims after a held tool while the main thread locks and frees planes: an aim worked out from an older lock is
// dropped, the next frame takes it anew.
bool StoreAimIfUnlocked(const Target &t, const Target &read) {
  ScopedLock lock(&PlayerLock);
  Target &now = ThePlayer.target;
  const bool same = now.aimState == read.aimState && std::equal(now.lockPlane, now.lockPlane + 3, read.lockPlane);
  if (same) now = t;
  return same;
}

void ResetPlayer() {
  Player fresh;
  fresh.heldBlock.state = StateWhole;
  fresh.heldBlock.material = 1;
  fresh.heldBlock.component = 2;
  ResetTarget(&fresh.target, 0, 0, 0);
  {
    ScopedLock lock(&PlayerLock);
    for (int axis = 0; axis < 3; ++axis) fresh.solarLoc[axis] = ThePlayer.solarLoc[axis];
    fresh.name = ThePlayer.name;
    fresh.suitPunctured = ThePlayer.suitPunctured;
    ThePlayer = fresh;
  }
  PlayerFlags.pushingOff = PlayerFlags.thrusting = PlayerFlags.gripping = false;
  PlayerFlags.tooFast = PlayerFlags.cinematic = false;
  PlayerFlags.menuOpen = true;
}

void ResetTarget(Target *t, u16 x, u16 y, u16 z) {
  *t = Target{};
  t->hitCell = t->placeCell = t->targetCell = {x, y, z};
  t->menuOpen = true;
  for (Block *b : {&t->marker, &t->hitBlock}) {
    b->state = StateWhole;
    b->rotation = 1;
    b->material = 1;
    b->component = 1;
  }
}

Vec3f ViewDirection(const Player &p) { return {-p.sinYaw * p.cosPitch, p.sinPitch, -p.cosYaw * p.cosPitch}; }

void RelativeTo(const Ship &ship, const i64 (&solarLoc)[3], float (&relativeLoc)[3]) {
  for (int axis = 0; axis < 3; ++axis)
    relativeLoc[axis] = static_cast<float>(WorldDifference(solarLoc[axis], ship.position[axis].load(std::memory_order_relaxed))) * 0.0001f;
}
