// The function keys: the tutorial, the cinematic camera, and looks behind the scenes. All on the main thread; what touches
// the world or the ship's caches holds the world mutex, and the picture waits for that time.
#include "gameplay/debug_keys.h"

#include <cinttypes>
#include <cmath>
#include <cstdio>

#include "content/options.h"
#include "core/log.h"
#include "gameplay/injury.h"
#include "gameplay/input.h"
#include "gui/screens.h"
#include "gui/tutorial.h"
#include "net/edits.h"
#include "platform/threads.h"
#include "platform/window.h"
#include "render/cache.h"
#include "render/debris.h"
#include "world/access.h"
#include "world/dump.h"
#include "world/light.h"

constexpr int ExplosionPieces = 300;
constexpr float TraceReach = 16, ScruffStep = 0.05f, LeastScruff = 0.1f, MostScruff = 0.95f;
constexpr double CacheResetPause = 5.0;

double CacheResetAllowed = 0;

static void ToggleTutorial(Ship *) {
  if (Options.Tutorial) {
    EndTutorial();
    SaveOptions();
  } else {
    StartTutorial();
    TutorialNext();
  }
}

static void RemoveAndExplode(Ship *ship) {
  const Cell3 c = ReadPlayer().target.targetCell;
  Block block;
  if (GetBlock(&block, c.x, c.y, c.z, *ship) != ReadFound) return;
  RemoveBlockNetworked(c.x, c.y, c.z, ship);
  const ScopedLock lock(&WorldMutex);
  SpawnDebris(c.x, c.y, c.z, ExplosionPieces, Options.ExplosionFade, static_cast<u16>(block.material));
}

static void ExplodeOrTime(Ship *ship) {
  if (!KeyIsDown(KeyLeftControl))
    LogSlowPieces = !LogSlowPieces;
  else if (ship != nullptr)
    RemoveAndExplode(ship);
}

static void ToggleCinematic(Ship *) {
  const bool on = !CinematicCamera;
  CinematicCamera = on;
  HudVisible = !on;
  PlayerFlags.cinematic = on;
}

static void QuitWithAlt(Ship *) {
  if (KeyIsDown(KeyLeftAlt) || KeyIsDown(KeyRightAlt)) RequestQuit();
}

// Two markers for a sample: red where it is, green at the corner of its voxel.
static void MarkSample(const float (&at)[3]) {
  float voxel[3];
  for (int a = 0; a < 3; ++a) voxel[a] = std::floor(at[a] * 16) / 16;
  SpawnColouredMarker(at[0], at[1], at[2], 255, 0, 0);
  SpawnColouredMarker(voxel[0], voxel[1], voxel[2], 0, 255, 0);
}

// Marks what a voxel Ray sees on the way ahead. A Ray that has left its first block stands still and answers the same to
// the end, so only a step that moved it makes a new sample.
static void TraceView(Ship *ship) {
  const Player p = ReadPlayer();
  const Vec3f eye = EyeOf(p), v = ViewDirection(p);
  Ray ray = NewRayToward(eye, {eye.x + v.x * TraceReach, eye.y + v.y * TraceReach, eye.z + v.z * TraceReach});
  float last[3] = {-1, -1, -1};
  for (;;) {
    const int found = StepVoxelRay(&ray, *ship);
    if (found == RaySpent) return;
    if (ray.pos[0] != last[0] || ray.pos[1] != last[1] || ray.pos[2] != last[2]) MarkSample(ray.pos);
    for (int a = 0; a < 3; ++a) last[a] = ray.pos[a];
    if (found == RaySolid) {
      LogError("Found one");
      return;
    }
  }
}

// World mutex held.
static void ChangeScruff(Ship *ship, float by) {
  ship->ComScruffiness += by;
  ship->MatScruffiness += by;
  ClearShipCaches(ship);
}

static void LessScruff(Ship *ship) {
  const ScopedLock lock(&WorldMutex);
  if (ship->ComScruffiness > LeastScruff) ChangeScruff(ship, -ScruffStep);
}

static void MoreScruff(Ship *ship) {
  const ScopedLock lock(&WorldMutex);
  if (ship->MatScruffiness < MostScruff) ChangeScruff(ship, ScruffStep);
}

static void LogPlace(const char *label, i64 x, i64 y, i64 z) {
  char text[80];
  std::snprintf(text, sizeof text, "%" PRId64 " %" PRId64 " %" PRId64, x, y, z);
  LogLabelText(label, text);
}

// The speed of all axes together and of each, in metres a second: a tick is a thirtieth of one, a block a metre.
static void LogSpeed(const Player &p) {
  const double metres = 30.0 / UnitsPerBlock, speed = p.speed;
  char line[160];
  std::snprintf(line, sizeof line, "Speed : %4.2fm/s %4.2fG's (%+4.5fx %+4.5fy %+4.5fz) \n", speed * metres,
                speed * static_cast<double>(GravitiesPerUnit), p.velocity[0] * metres, p.velocity[1] * metres, p.velocity[2] * metres);
  LogRaw(line, line);
}

void DumpPlayer(const Player &p, const Ship &ship) {
  char text[160];
  std::snprintf(text, sizeof text, "%f %f %f", static_cast<double>(p.relativeLoc[0]), static_cast<double>(p.relativeLoc[1]),
                static_cast<double>(p.relativeLoc[2]));
  LogPlace("PlayerSolarLoc", p.solarLoc[0], p.solarLoc[1], p.solarLoc[2]);
  LogLabelText("PlayerRelativeLoc", text);
  LogPlace("PlayerShipSolarLoc", ship.position[0], ship.position[1], ship.position[2]);
  LogLabelInt("Shipnum", p.shipIndex);
  LogSpeed(p);
}

static void DumpTarget(Ship *ship) {
  const Player p = ReadPlayer();
  const Cell3 c = p.target.targetCell;
  DumpBlock(c.x, c.y, c.z, *ship);
  DumpPlayer(p, *ship);
}

static void ToggleCollisions(Ship *) {
  CollisionsOn = !CollisionsOn;
  if (uiMode == 1 && GuiScreen == ScreenOther) BuildOtherOptions(0);  // it has a switch for this
}

static void ResetCaches(Ship *ship) {
  if (ClockNow() <= CacheResetAllowed) return;
  const bool rebuild = KeyIsDown(KeyLeftControl);
  LogInfo(rebuild ? "Emptying Lighting and Graphics Cache, then regnerating it ALL."
                  : "Emptying Lighting and Graphics Cache");
  const Player p = ReadPlayer();
  {
    const ScopedLock lock(&WorldMutex);
    ClearLights(*ship);
    LightPass(ship);
    ClearShipCaches(ship);
    if (rebuild) RebuildShipCaches(*ship, p);
  }
  CacheResetAllowed = ClockNow() + CacheResetPause;
}

namespace {

struct FunctionKey {
  void (*act)(Ship *ship);  // null for a key that does nothing
  bool needsShip;           // not done when there is no ship at all
};

}  // namespace

constexpr FunctionKey FunctionKeys[] = {
    {ToggleTutorial, false}, {ExplodeOrTime, false}, {ToggleCinematic, false}, {QuitWithAlt, false},
    {TraceView, true},       {nullptr, false},      {LessScruff, true},       {MoreScruff, true},
    {DumpTarget, true},      {ToggleCollisions, false}, {nullptr, false},     {ResetCaches, true},
};

bool DebugKey(int key) {
  if (key < KeyF1 || key > KeyF12) return false;
  const FunctionKey &f = FunctionKeys[key - KeyF1];
  Ship *ship = CurrentShip();
  if (f.act != nullptr && (ship != nullptr || !f.needsShip)) f.act(ship);
  return true;
}
