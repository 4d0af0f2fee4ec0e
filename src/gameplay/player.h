// The one person at the keyboard. Many threads look at the record, so nobody works on it in place: ReadPlayer gives a
// copy, and each Store function writes back one group of fields, both under a lock held only for the copy.
//
// | group  | fields                                             | writers                                           |
// |--------|----------------------------------------------------|---------------------------------------------------|
// | motion | solarLoc, relativeLoc, velocity, speed, shipIndex, | Movement, MoveBackend, ship switch, network: all  |
// |        | suitPunctured, woundLevel                          | with the move mutex held                          |
// | view   | pitch, yaw, roll, sines and cosines                | mouse callback                                    |
// | hand   | activeTool, heldBlock, toolTemperature             | callbacks                                         |
// | aim    | target but for its three flags below               | UpdateTarget's callers (main and Movement), tools |
// Single flags are atomics beside the record: any thread may set them at any time.
#pragma once

#include <atomic>

#include "gameplay/piece_box.h"
#include "gameplay/ray.h"
#include "world/block.h"

struct Target {
  Cell3 hitCell, placeCell, targetCell;  // aimed at; empty cell in front of it, or (0,0,0); what tools act on
  i16 lockPlane[3] = {};                 // plane of the plane tool; 0 is not locked on that axis
  u8 aimState = 1;                       // 1, 2 follow the view; 3 frozen on a plane
  bool markerHidden = false;
  bool targetBlocked = false;            // tools are refused
  bool tooFast = false, cinematic = false, menuOpen = false;  // copies of the flags in PlayerFlags
  Block marker;                          // what is drawn at the aim
  Block hitBlock;                        // the block aimed at
  PieceBox box;                          // what the held piece would take; one cell for most
};

struct Player {
  u8 activeTool = 0;
  bool pushingOff = false, thrusting = false, gripping = false;  // copies of the flags in PlayerFlags
  Block heldBlock;
  Target target;
  i64 solarLoc[3] = {};       // world place
  u8 health = 200;
  bool suitOn = true, suitPunctured = false;
  u8 woundLevel = 1;
  u16 shipIndex = 0;
  u16 suitAir = 1200, jetReserve = 30000, suitPower = 32000;
  i32 velocity[3] = {};       // ten-thousandths of a block a tick; a position decreases by it
  i32 speed = 0;              // sum of the absolute components
  u16 toolTemperature = 2000; // quarter degrees
  float relativeLoc[3] = {};  // place in the current ship, in blocks
  const char *name = "";  // not owned
  float pitch = 0, yaw = 0, roll = 0;  // degrees
  float sinPitch = 0, sinYaw = 0, sinRoll = 0, cosPitch = 1, cosYaw = 1, cosRoll = 1;
};

// Flags of the player that any thread sets and reads by themselves.
struct PlayerFlagValues {
  std::atomic<bool> pushingOff{false}, thrusting{false}, gripping{false};
  std::atomic<bool> tooFast{false}, cinematic{false}, menuOpen{true};
};
extern PlayerFlagValues PlayerFlags;

extern std::atomic<i8> dampenMode;      // 0 idle, 1 inertial dampening, 2 Stop-key brake
extern std::atomic<float> jetForce;     // force of the last jet command; the sound code reads it
extern std::atomic<u8> uiMode;          // 0 playing, 1 menu, 2 chat typing; written by the main thread

Player ReadPlayer();                    // A copy with the flags filled in. Any thread.
void StoreMotion(const Player &p);      // Each writes its group back. Any thread, under the group's rule above.
void StoreView(const Player &p);
void StoreHand(const Player &p);
void StoreAim(const Target &t);
bool StoreAimIfUnlocked(const Target &t, const Target &read);  // Only while the plane's lock is still as it was read.
void ResetPlayer();                     // The values at the start of a game; solarLoc, name and suitPunctured stay.
void ResetTarget(Target *t, u16 x, u16 y, u16 z);

// Where the player looks: (-sinYaw cosPitch, sinPitch, -cosYaw cosPitch).
Vec3f ViewDirection(const Player &p);
inline Vec3f EyeOf(const Player &p) { return {p.relativeLoc[0], p.relativeLoc[1], p.relativeLoc[2]}; }

// The place in a ship's block space of a world place, in floats.
void RelativeTo(const Ship &ship, const i64 (&solarLoc)[3], float (&relativeLoc)[3]);
