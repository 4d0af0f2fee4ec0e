// Which ship the player is in, or nearest to.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "core/log.h"
#include "core/pieces.h"
#include "core/utils.h"
#include "gameplay/player.h"
#include "platform/threads.h"
#include "world/access.h"

constexpr int SwitchReach = 30;  // blocks on each axis from which a ship takes the player over

namespace {

struct BoxDistance {
  int axis[3] = {SwitchReach, SwitchReach, SwitchReach};
};

}  // namespace

static int Whole(float f) { return static_cast<int>(std::min(std::fabs(f), 1e9f)); }

// How far a place lies from a ship's box: 0 strictly inside, otherwise to the nearer side in whole blocks.
static BoxDistance DistanceTo(const ShipSummary &s, const float (&place)[3]) {
  const u16 low[3] = {s.minX, s.minY, s.minZ}, high[3] = {s.maxX, s.maxY, s.maxZ};
  BoxDistance d;
  for (int axis = 0; axis < 3; ++axis) {
    const float l = low[axis], h = high[axis];
    d.axis[axis] = place[axis] > l && place[axis] < h ? 0 : std::min(Whole(place[axis] - l), Whole(place[axis] - h));
  }
  return d;
}

static bool NearerOnAllAxes(const BoxDistance &a, const BoxDistance &b) {
  return a.axis[0] < b.axis[0] && a.axis[1] < b.axis[1] && a.axis[2] < b.axis[2];
}

static bool Inside(const BoxDistance &d) { return d.axis[0] == 0 && d.axis[1] == 0 && d.axis[2] == 0; }

static float CentreDistance(const Ship &ship, const i64 (&solarLoc)[3]) {
  float place[3], sum = 0;
  RelativeTo(ship, solarLoc, place);
  const u16 centre[3] = {ship.summary->comX, ship.summary->comY, ship.summary->comZ};
  for (int axis = 0; axis < 3; ++axis) {
    const float d = static_cast<float>(Whole(place[axis] - static_cast<float>(centre[axis])));
    sum += d * d;
  }
  return FastSqrt(sum);
}

static void SwitchTo(u16 row, Player p) {
  // Movement may wait for the world with the move mutex in hand: never wait for it here. The next Parse tries again.
  if (!TryLockMutex(&MoveMutex)) return;
  LogInfo("Switching Ships");
  p = ReadPlayer();
  TheShipTable.current.store(row);
  p.shipIndex = row;
  RelativeTo(*ShipAt(TheShipTable, row), p.solarLoc, p.relativeLoc);
  StoreMotion(p);
  UnlockMutex(&MoveMutex);
}

void UpdateCurrentShip() {
  const Player p = ReadPlayer();
  BoxDistance best;
  u16 bestRow = TheShipTable.current.load();
  const u16 count = TheShipTable.count.load();
  for (u16 row = 0; row < count; ++row) {
    Ship *ship = ShipAt(TheShipTable, row);
    if (ship->megaChunks.load() == nullptr) continue;
    if (ship->summary == nullptr) ship->summary = BuildShipSummary(ship);
    float place[3];
    RelativeTo(*ship, p.solarLoc, place);
    const BoxDistance d = DistanceTo(*ship->summary, place);
    if (NearerOnAllAxes(d, best)) {
      best = d;
      bestRow = row;
    } else if (Inside(d) && Inside(best)) {
      LogError("Inside two ships!");
      if (CentreDistance(*ship, p.solarLoc) < CentreDistance(*ShipAt(TheShipTable, bestRow), p.solarLoc)) bestRow = row;
    }
  }
  if (bestRow != TheShipTable.current.load()) SwitchTo(bestRow, p);
}
