// The mouse: it turns the view, works the tools, and its wheel turns the block in hand.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>

#include "content/options.h"
#include "core/utils.h"
#include "gameplay/input.h"
#include "gameplay/motion.h"
#include "gameplay/tools.h"
#include "gui/elements.h"
#include "gui/screens.h"
#include "platform/threads.h"
#include "platform/window.h"

constexpr double MenuClickPause = 60.0;
constexpr float RadiansPerDegree = 0.017453292f;
constexpr u16 HeatStep = 400, CoolestTool = 400, HottestTool = 16400;

std::string BackupName;

// What a copy of the ship from today would be called. World mutex held.
static std::string BackupNameOf(const Ship &ship) {
  char date[32];
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return ship.fileStem + std::string(date, std::strftime(date, sizeof date, "%Y-%m-%d.bak", &local));
}

static void ClickMenu() {
  WakePointer();  // the screen may have been built under a pointer that has not moved since
  if (HandleClick() >= 0) return;
  if (const Ship *ship = CurrentShip(); ship != nullptr) {
    const ScopedLock world(&WorldMutex);
    BackupName = BackupNameOf(*ship);
  }
  RequestQuit();
}

static void PressMain() {
  PlayerFlags.tooFast = ReadPlayer().speed > WorkSpeed;
  if (uiMode != 1) {
    MainPress();
    return;
  }
  nextToolTime = ClockNow() + MenuClickPause;  // so that a click that closes the menu starts no build
  ClickMenu();
  UpdateHover();
}

void OnMouseButton(int button, int action) {
  const Controls &c = Options.controls;
  const bool press = action != 0;
  if (button == c.mainMouse)
    press ? PressMain() : MainRelease();
  else if (button == c.secondaryMouse && !press)
    SecondaryRelease();
  else if (button == c.secondaryMouse)
    uiMode == 1 ? ClickMenu() : SecondaryPress();
  else if (button == c.thirdMouse && press && uiMode != 1)
    ThirdPress();
}

namespace {

// The furthest that one event may turn the view, in degrees; the cinematic camera is slow, and level with Control.
struct TurnLimit {
  float yaw, pitch;
};

}  // namespace

static TurnLimit LimitOfTurn() {
  if (!CinematicCamera) return {6.5f, 5.0f};
  if (KeyIsDown(KeyLeftControl)) return {0.21666665f, 0};
  return {0.65f, 0.45f};
}

static void CacheAngles(Player *p) {
  const float pitch = p->pitch * RadiansPerDegree, yaw = p->yaw * RadiansPerDegree, roll = p->roll * RadiansPerDegree;
  p->sinPitch = std::sin(pitch);
  p->cosPitch = std::cos(pitch);
  p->sinYaw = std::sin(yaw);
  p->cosYaw = std::cos(yaw);
  p->sinRoll = std::sin(roll);
  p->cosRoll = std::cos(roll);
}

static void TurnView(int x, int y) {
  const int dx = x - Options.ScreenWidth / 2, dy = y - Options.ScreenHeight / 2;
  if (dx == 0 && dy == 0) return;
  const TurnLimit most = LimitOfTurn();
  const float sensitivity = Options.MouseSensitivity;
  const float across = static_cast<float>(dx) * sensitivity;
  const float down = static_cast<float>(Options.InvertMouse ? dy : -dy) * sensitivity;
  Player p = ReadPlayer();
  p.pitch = std::clamp(p.pitch - std::clamp(down, -most.pitch, most.pitch), -90.0f, 90.0f);
  p.yaw -= std::clamp(across, -most.yaw, most.yaw);
  if (p.yaw < -180) p.yaw += 360;
  if (p.yaw > 180) p.yaw -= 360;
  CacheAngles(&p);
  StoreView(p);
}

void OnMousePosition(int x, int y) {
  if (uiMode == 0) TurnView(x, y);
  if (uiMode == 1) PointAt(x, y);
}

// False at the end of the tool's range.
static bool HeatTool(Player *p, bool up) {
  if (up ? p->toolTemperature >= HottestTool : p->toolTemperature <= CoolestTool) return false;
  p->toolTemperature = static_cast<u16>(up ? p->toolTemperature + HeatStep : p->toolTemperature - HeatStep);
  StoreHand(*p);
  return true;
}

// Moves the locked plane one cell away from the player, or towards them. Plane 0 would mean that none is locked.
static void MovePlane(Player *p, bool away) {
  Target &t = p->target;
  if (t.aimState != 3) return;
  for (int a = 0; a < 3; ++a) {
    if (t.lockPlane[a] == 0) continue;
    const bool ahead = t.lockPlane[a] >= FloatToInt(p->relativeLoc[a]);
    const int moved = t.lockPlane[a] + (ahead == away ? 1 : -1);
    t.lockPlane[a] = static_cast<i16>(std::clamp(moved, 1, 9999));
    StoreAim(t);
    return;
  }
}

static void TurnBlock(Block *b, bool up) {
  const bool turns = KeyIsDown(KeyLeftControl), faces = !turns && KeyIsDown(KeyLeftAlt);
  const unsigned turn = static_cast<unsigned>(b->rotation2), face = static_cast<unsigned>(b->rotation);
  const bool carries = turn == (up ? 3u : 0u);
  if (!faces) b->rotation2 = (up ? turn + 1 : turn + 3) & 3u;
  if (faces || (!turns && carries)) b->rotation = (up ? face % 6 + 1 : (face + 4) % 6 + 1) & 7u;
}

static void WheelNotch(bool up) {
  Player p = ReadPlayer();
  if (p.activeTool == ToolHeat && HeatTool(&p, up)) return;
  if (p.heldBlock.rotation == 0) {
    MovePlane(&p, up);
    return;
  }
  TurnBlock(&p.heldBlock, up);
  StoreHand(p);
}

void OnMouseWheel(int position) {
  const bool up = position > 0;
  for (int i = 0; i < std::abs(position); ++i) uiMode == 1 ? ScrollScreen(up ? -1 : 1) : WheelNotch(up);
  SetMouseWheel(0);
}
