// The timed pieces.
#include "core/pieces.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "audio/sound.h"
#include "content/options.h"
#include "core/log.h"
#include "gameplay/input.h"
#include "gameplay/motion.h"
#include "gameplay/target.h"
#include "gl/frame.h"
#include "gl/init.h"
#include "gl/link.h"
#include "gui/mode.h"
#include "gui/paint.h"
#include "net/session.h"
#include "persistence/stream.h"
#include "platform/files.h"
#include "platform/threads.h"
#include "platform/window.h"
#include "render/debris.h"
#include "render/parse.h"
#include "world/edit.h"
#include "world/heat.h"
#include "world/retire.h"

constexpr double RenderDelay = 1.0 / 64, LinkDelay = 0.066, TickDelay = 0.033, MiscDelay = 0.25, OpsDelay = 1.0,
                 NetworkDelay = 0.1, SaveDelay = 300, SaveDelayOnline = 9000;
constexpr double SlowPiece = 4.0;  // milliseconds
constexpr float BrakeRate = 120;
constexpr i32 MostOwedRuns = 10000;

std::atomic<bool> StartupGate{true};
ThrustSound TheThrustSound;

// Misc asks for the menu, Render opens it: the cursor and the screens belong to the main thread.
static std::atomic<bool> MenuWanted{false};

static void LogIfSlow(const char *label, double start) {
  if (!LogSlowPieces) return;
  const double spent = (ClockNow() - start) * 1000.0;
  if (spent > SlowPiece) LogLabelInt(label, static_cast<i64>(spent));
}

void RenderPiece(double *timer) {
  double start = ClockNow();
  SwapBuffers();
  LogIfSlow("SwapBuffers:", start);
  start = ClockNow();
  if (MenuWanted.exchange(false) && uiMode == 0) ToggleMenu();
  if (uiMode == 0) SetMousePosition(Options.ScreenWidth / 2, Options.ScreenHeight / 2);
  RefreshTarget();
  if (ResizePending) {
    ResizeViewport(Options.ScreenWidth, Options.ScreenHeight);
    ResizePending = false;
  }
  const Player player = ReadPlayer();
  DrawFrame(player, TheVoxelList);
  DrawOverlay(player);
  LogIfSlow("Render:", start);
  *timer = ClockNow() + RenderDelay;
}

void GpuLinkPiece(double *timer) {
  if (!TryLockMutex(&LinkMutex)) return;
  const double start = ClockNow();
  if (!KeyIsDown(KeyF4)) GpuLink(&TheVoxelList);
  UnlockMutex(&LinkMutex);
  LogIfSlow("GpuLink:", start);
  *timer = ClockNow() + LinkDelay;
}

void ParsePiece(double *timer) {
  if (!TryLockMutex(&WorldMutex)) return;
  const double start = ClockNow();
  UpdateCurrentShip();
  MendAllShips(MendingSlice);  // before Parse, so that few pictures show what an edit has left wrong
  Parse(&TheVoxelList, ReadPlayer());
  UnlockMutex(&WorldMutex);
  LogIfSlow("Parse:", start);
  *timer = ClockNow() + TickDelay;
}

void MiscPiece(double *timer) {
  const double start = ClockNow();
  const WindowParameters window = GetWindowParameters();
  if (uiMode == 0 && (!window.active || window.iconified)) MenuWanted = true;
  TellRepeats();
  LogIfSlow("Misc:", start);
  *timer = ClockNow() + MiscDelay;
}

// The stages of the jet sound that end by themselves.
static void AdvanceThrustSound(double due) {
  ThrustSound &s = TheThrustSound;
  if (s.stage == 1 && due > s.deadline) {
    StopSlot(JetStart);
    PlaySlot(JetLoop);
    s.stage = 2;
  } else if (s.stage == 4 && due > s.deadline) {
    for (int slot : JetSlots) StopSlot(slot);
    PlaySlot(JetStop);
    s.stage = 0;
    s.deadline = 0;
  }
}

static void EndThrustSound() {
  ThrustSound &s = TheThrustSound;
  if (s.stage != 1 && s.stage != 2) return;
  s.deadline = s.stage == 1 ? s.deadline - 0.6 : ClockNow() - 0.2;
  s.stage = 4;
}

// Thrust's end starts the dampener.
static void StartDampening(const Player &p) {
  if (!(Options.InertialDampening > 0.0f) || p.suitPower < 2 || p.speed <= 0 || PlayerFlags.gripping) return;
  dampenMode = 1;
  if (p.speed < WorkSpeed) PlayerFlags.tooFast = false;
}

static void UpdateThrustSound(double due) {
  const Player p = ReadPlayer();
  if (p.thrusting)
    for (int slot : JetSlots) SetSlotGain(slot, jetForce / 180.0f);
  if ((p.thrusting || (dampenMode > 0 && p.speed != 0)) && TheThrustSound.stage == 0) {
    TheThrustSound.stage = 1;
    TheThrustSound.deadline = ClockNow() + 0.5;
    PlaySlot(JetStart);
  }
  AdvanceThrustSound(due);
  if (p.thrusting) {
    if (uiMode != 0) return;
    dampenMode = 0;
    PlayerFlags.tooFast = p.speed > WorkSpeed;
    return;
  }
  if (dampenMode == 0) EndThrustSound();
  StartDampening(p);
}

void SoundUpdatesPiece(double *timer) {
  const double start = ClockNow();
  UpdateThrustSound(*timer);
  LogIfSlow("SoundUpdates:", start);
  *timer = ClockNow() + TickDelay;
}

void OpsPiece(double *timer) {
  if (!TryLockMutex(&WorldMutex)) return;
  const double start = ClockNow();
  if (DebrisCount() != 0) AgeDebris();
  {
    ScopedLock heat(&HeatMutex);
    const Ship *ship = CurrentShip();
    if (ship != nullptr) HeatHook(*ship);
  }
  UnlockMutex(&WorldMutex);
  SweepRetired();
  LogIfSlow("OPS:", start);
  *timer = ClockNow() + OpsDelay;
}

void NetworkPiece(double *timer) {
  if (Online) PollNetwork();
  *timer = ClockNow() + NetworkDelay;
}

// Adds what the jets have collected, unless the speed limit refuses it.
static void ApplyAccel(Player *p) {
  float sum = 0;
  for (int axis = 0; axis < 3; ++axis) sum += std::fabs(static_cast<float>(p->velocity[axis]) + accel[axis]);
  const u32 limit = Options.MaxSpeed;
  if (limit != 0 && sum >= static_cast<float>(limit)) return;
  for (int axis = 0; axis < 3; ++axis) {
    p->velocity[axis] = ToVelocity(static_cast<float>(p->velocity[axis]) + accel[axis]);
    accel[axis] = 0;
  }
  p->speed = ToVelocity(sum);
}

static void Dampen(Player *p, const Ship &ship) {
  const i8 mode = dampenMode;
  if (PlayerFlags.gripping || p->suitPower < 2 || (mode != 1 && mode != 2)) return;
  const float rate = mode == 1 ? std::max(Options.InertialDampening.load(), 0.0f) * BrakeRate : BrakeRate;
  if (DampenStep(p, rate, ship.velocity[0], ship.velocity[1], ship.velocity[2])) dampenMode = 0;
}

// Between packets, and behind the last one, the others fly on by themselves. The list belongs to the world mutex: while that is
// busy, runs are owed.
static void AdvanceRemotePlayers() {
  static i32 owed = 0;
  if (NetHost.load() == nullptr) return;
  owed = std::min(owed + 1, MostOwedRuns);
  if (!TryLockMutex(&WorldMutex)) return;
  const i64 runs = std::exchange(owed, 0);
  const Ship *ship = CurrentShip();
  for (RemotePlayer &other : RemotePlayers) {
    for (int axis = 0; axis < 3; ++axis) other.solarLoc[axis] = WorldDifference(other.solarLoc[axis], runs * other.velocity[axis]);
    if (ship != nullptr) RelativeTo(*ship, other.solarLoc, other.relativeLoc);
  }
  UnlockMutex(&WorldMutex);
}

void MovementPiece(double *timer) {
  if (!TryLockMutex(&MoveMutex)) return;
  const double start = ClockNow();
  Player p = ReadPlayer();
  if (uiMode != 1) HeldInputStep(&p);
  ApplyAccel(&p);
  const Ship *ship = CurrentShip();
  if (ship != nullptr) Dampen(&p, *ship);
  StoreMotion(p);
  UnlockMutex(&MoveMutex);
  AdvanceRemotePlayers();
  LogIfSlow("Movement:", start);
  *timer = ClockNow() + TickDelay;
}

static void MoveShip(Ship *ship) {
  for (int axis = 0; axis < 3; ++axis) {
    const i32 velocity = ship->velocity[axis];
    if (velocity != 0) ship->position[axis] -= velocity;
  }
}

void MoveBackendPiece(double *timer) {
  if (!TryLockMutex(&MoveMutex)) return;
  const double start = ClockNow();
  const u16 count = TheShipTable.count.load(), current = TheShipTable.current.load();
  for (u16 row = 0; row < count; ++row) {
    Ship *ship = ShipAt(TheShipTable, row);
    MoveShip(ship);
    if (row != current) continue;
    Player p = ReadPlayer();
    float d[3];
    for (int axis = 0; axis < 3; ++axis)
      d[axis] = static_cast<float>(static_cast<i64>(p.velocity[axis]) - ship->velocity[axis]) * 0.0001f;
    MovePlayer(&p, *ship, d[0], d[1], d[2]);
    StoreMotion(p);
    SendPlayerLocation(p.solarLoc, p.velocity);
  }
  UnlockMutex(&MoveMutex);
  LogIfSlow("MoveBackend:", start);
  *timer = ClockNow() + TickDelay;
}

void SavePiece(double *timer) {
  if (!Options.SinglePlayer || !SavingOn) {
    *timer = ClockNow() + SaveDelayOnline;
    return;
  }
  const double start = ClockNow();
  Ship *ship = CurrentShip();
  if (ship != nullptr) SaveOrTell(ship);
  LogIfSlow("Save:", start);
  *timer = ClockNow() + SaveDelay;
}
