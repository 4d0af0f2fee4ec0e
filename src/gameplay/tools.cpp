// The tools as a table: an action for each button. Actions work on a copy of the player and store the group that they
// changed; edits take the world mutex themselves, and the aim is taken anew after each one, so that the next repeat of a
// held button sees the new world.
#include "gameplay/tools.h"

#include "audio/sound.h"
#include "content/options.h"
#include "core/log.h"
#include "core/utils.h"
#include "gameplay/connect.h"
#include "gameplay/input.h"
#include "gameplay/refuse.h"
#include "gameplay/target.h"
#include "gui/tutorial.h"
#include "net/edits.h"
#include "platform/window.h"
#include "world/access.h"

constexpr double RepeatPeriod = 0.2, CutterPause = 1.0;

// None when the block stands. The rules of placing would build into the player, who then looks at the inside of a block and
// is thrown about, and would grow a piece into the wall that it is put against: both are seen to before they are asked.
static Refusal PlaceAtAim(const Player &p) {
  Ship *ship = CurrentShip();
  if (ship == nullptr) return Refusal::NoTarget;
  const Target &t = p.target;
  const PieceBox box = BoxAtPlace(static_cast<u16>(p.heldBlock.component), t.placeCell, t.targetCell, *ship);
  if (const Refusal why = WhyNotIn(box, p, *ship); why != Refusal::None) return why;
  Placement placement{.block = p.heldBlock, .at = box.low, .target = t.targetCell, .ship = ship};
  for (int a = 0; a < 3; ++a) placement.eye[a] = FloatToInt(p.relativeLoc[a]);
  if (PlaceShaped(placement) != 1) return Refusal::NotHere;
  PlaceSound(static_cast<u16>(p.heldBlock.material));
  RefreshTarget();
  return Refusal::None;
}

static bool RemoveAtAim(const Player &p) {
  Ship *ship = CurrentShip();
  const Cell3 c = p.target.targetCell;
  if (ship == nullptr || !RemoveBlockNetworked(c.x, c.y, c.z, ship)) return false;
  RefreshTarget();
  return true;
}

static bool CanPlace(const Player &p) { return !p.target.targetBlocked && p.target.placeCell.x != 0; }

// Only presses tell: a held button that comes to the end of its run has done what it was held for.
static void Refuse(Refusal why) { TellRefusal(why, ClockNow()); }

// False, and told, when the target is blocked.
static bool MayWork(const Player &p) {
  if (p.target.targetBlocked) Refuse(WhyBlocked(p, CurrentShip()));
  return !p.target.targetBlocked;
}

static void PressPlace(Player *p) {
  if (!MayWork(*p)) return;
  if (p->target.placeCell.x == 0) return Refuse(WhyNoPlaceCell(*p, CurrentShip()));
  nextToolTime = ClockNow() + RepeatPeriod;
  if (const Refusal why = PlaceAtAim(*p); why != Refusal::None) {
    LogWarn("Unable to place block");
    return Refuse(why);
  }
  ForgetRefusal();
  TutorialAdvances(WaitBlockPlace);
}

static void HeldPlace(Player *p) {
  if (CanPlace(*p) && PlaceAtAim(*p) == Refusal::None) nextToolTime = ClockNow() + RepeatPeriod;
}

static void PressRemove(Player *p) {
  if (!MayWork(*p)) return;
  if (RemoveAtAim(*p)) return ForgetRefusal();
  LogWarn("Unable to remove block");
  Refuse(WhyNotRemoved(*p, CurrentShip()));
}

static void PressUnbuild(Player *p) {
  if (p->target.aimState == 1 || p->target.aimState == 2) PressRemove(p);
}

// The pause starts before the cut: the thread of Movement looks at the held button while this one waits for the world.
static void PressCut(Player *p) {
  nextToolTime = ClockNow() + CutterPause;
  PressRemove(p);
}

static void HeldCut(Player *p) {
  if (p->target.targetBlocked) return;
  RemoveAtAim(*p);
  nextToolTime = ClockNow() + RepeatPeriod;
}

static void PickBlock(Player *p) {
  const Ship *ship = CurrentShip();
  const Cell3 c = p->target.targetCell;
  if (!MayWork(*p) || ship == nullptr) return;
  GetBlockForPick(&p->heldBlock, c.x, c.y, c.z, *ship);
  StoreHand(*p);
}

static void PickOrientation(Player *p) {
  const Ship *ship = CurrentShip();
  const Cell3 c = p->target.targetCell;
  if (!MayWork(*p) || ship == nullptr) return;
  GetBlockRotation(&p->heldBlock, c.x, c.y, c.z, *ship);
  StoreHand(*p);
}

static void LockPlane(Player *p) {
  Target &t = p->target;
  if (!MayWork(*p) || t.aimState != 2) return;
  t.aimState = 3;
  const u16 cell[3] = {t.targetCell.x, t.targetCell.y, t.targetCell.z};
  constexpr int axisOfFace[8] = {-1, 2, 1, 2, 0, 1, 0, -1};
  const int axis = axisOfFace[t.marker.rotation];
  if (axis >= 0) t.lockPlane[axis] = static_cast<i16>(cell[axis]);
  StoreAim(t);
}

static void UseHeat(Player *) { TutorialAdvances(WaitHeatTool); }

using Action = void (*)(Player *p);

namespace {

struct Tool {
  Action main, secondary, third;  // on a press; null for nothing
  Action held;                    // repeated while the main button is down
};

}  // namespace

constexpr Tool Tools[ToolCount] = {
    {PressPlace, PressUnbuild, PickBlock, HeldPlace},   // build
    {PressCut, LockPlane, nullptr, HeldCut},            // cutter
    {PressPlace, LockPlane, PickBlock, HeldPlace},      // plane
    {PickBlock, PickOrientation, nullptr, nullptr},     // pick
    {UseHeat, nullptr, nullptr, nullptr},               // heat
};

static void RunAction(Action Tool::*button) {
  Player p = ReadPlayer();
  if (p.activeTool >= ToolCount) return;
  const Action action = Tools[p.activeTool].*button;
  if (action != nullptr) action(&p);
}

void SelectTool(int tool) {
  Player p = ReadPlayer();
  p.activeTool = static_cast<u8>(tool);
  StoreHand(p);
}

void MainPress() { RunAction(&Tool::main); }

void MainRelease() { nextToolTime = 0; }

void SecondaryPress() { RunAction(&Tool::secondary); }

void SecondaryRelease() {
  Target t = ReadPlayer().target;
  if (t.aimState != 3) return;
  t.aimState = 2;
  for (i16 &plane : t.lockPlane) plane = 0;
  StoreAim(t);
}

void ThirdPress() { RunAction(&Tool::third); }

void HeldTool() {
  if (MouseIsDown(Options.controls.mainMouse) && ClockNow() > nextToolTime) RunAction(&Tool::held);
}
