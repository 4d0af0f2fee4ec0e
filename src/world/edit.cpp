// What an edit of play leaves behind, and what is done about it.
#include "world/edit.h"

#include <algorithm>
#include <utility>

#include "platform/threads.h"
#include "world/access.h"
#include "world/cells.h"
#include "world/light.h"
#include "world/relight.h"

namespace {

constexpr u64 DecisionsAtOnce = 2000;  // of an edit: about 0.2 ms
constexpr u64 StepsOfDecision = 20;

using Place = std::array<u16, 3>;

// Calls visit(place) for the six cells that lie so far from one; they may be out of range.
template <typename Visit>
void ForEachBeside(const Place &at, int distance, Visit visit) {
  for (size_t axis = 0; axis < 3; ++axis)
    for (int sign = 1; sign >= -1; sign -= 2) {
      Place beside = at;
      beside[axis] = static_cast<u16>(at[axis] + sign * distance);
      visit(beside);
    }
}

void DecideBeside(const Place &at, Ship *ship) {
  ForEachBeside(at, 1, [ship](const Place &beside) { ship->remains.undecided.push_back(beside); });
}

// A shape counts as a full block while it is buried. So whenever one starts or stops being drawn, its neighbours are decided
// again, and so on: every change follows from fewer or more full blocks around, so it comes to an end.
void Decide(u64 *decisions, Ship *ship) {
  std::vector<Place> &undecided = ship->remains.undecided;
  for (; !undecided.empty() && *decisions != 0; --*decisions) {
    const Place at = undecided.back();
    undecided.pop_back();
    if (DecideVisibility(at[0], at[1], at[2], *ship)) DecideBeside(at, ship);
  }
}

// The edit itself has decided cells up to two blocks away, but not what depends on those of them that are shapes; nor its own
// cell, which keeps what was decided for an older block.
void DecideAround(const Place &at, Ship *ship) {
  std::vector<Place> &undecided = ship->remains.undecided;
  for (int distance = 1; distance <= 2; ++distance)
    ForEachBeside(at, distance, [&](const Place &beside) {
      undecided.push_back(beside);
      if (HidesWhileBuried(beside[0], beside[1], beside[2], *ship)) DecideBeside(beside, ship);
    });
  undecided.push_back(at);
  u64 decisions = DecisionsAtOnce;
  Decide(&decisions, ship);
}

bool LampAt(const Place &at, const Ship &ship) {
  const u64 head = HeadAt(at[0], at[1], at[2], ship);
  return HeadState(head) != StateEmpty && GivesLight(HeadComponent(head));
}

// Does an edit of one cell, which `plain` tells, and what belongs to it.
template <typename Plain>
auto Edit(const Place &at, Ship *ship, Plain plain) {
  const bool lamp = KeepLight && InRange(at[0], at[1], at[2]) && LampAt(at, *ship);
  const bool later = std::exchange(ShadowsLater, true);
  const auto done = plain();
  ShadowsLater = later;
  if (!KeepLight || !done) return done;
  DecideAround(at, ship);
  MarkStaleLight(at[0], at[1], at[2], lamp || LampAt(at, *ship), ship);
  return done;
}

}  // namespace

int EditPlace(const Block &b, u16 x, u16 y, u16 z, Ship *ship) {
  return Edit({x, y, z}, ship, [&] { return PlaceBlockHeld(b, x, y, z, ship); });
}

bool EditRemove(u16 x, u16 y, u16 z, Ship *ship) {
  return Edit({x, y, z}, ship, [&] { return RemoveBlockHeld(x, y, z, ship); });
}

int EditComponent(u16 component, u16 x, u16 y, u16 z, Ship *ship) {
  return Edit({x, y, z}, ship, [&] { return ChangeBlockComponent(component, x, y, z, ship); });
}

bool MendEdits(Ship *ship, u64 *steps) {
  u64 decisions = *steps / (2 * StepsOfDecision) + 1;  // half of the time at most
  const u64 before = decisions;
  Decide(&decisions, ship);
  *steps -= std::min(*steps, (before - decisions) * StepsOfDecision);
  return Relight(ship, steps) && ship->remains.undecided.empty();
}

void MendAllShips(u64 steps) {
  Ship *current = CurrentShip();
  if (current != nullptr) MendEdits(current, &steps);
  const u16 count = TheShipTable.count.load();
  for (u16 row = 0; row < count && steps != 0; ++row) {
    Ship *ship = ShipAt(TheShipTable, row);
    if (ship != nullptr && ship != current) MendEdits(ship, &steps);
  }
}
