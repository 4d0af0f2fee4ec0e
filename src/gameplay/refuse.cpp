// Reasons for a refused press.
#include "gameplay/refuse.h"

#include <cmath>

#include "content/components.h"
#include "gameplay/target.h"
#include "world/access.h"

constexpr float SightReach = 200.0f;  // blocks: what stands nearer is out of reach and not nothing
constexpr float NoSight = 1000.0f;    // further than all that is seen

// How far along the view, in blocks, it meets a block of the ship, in whose places the eye is given; NoSight for none.
static float SightTo(const Ship &ship, Vec3f eye, Vec3f v) {
  if (ship.megaChunks.load(std::memory_order_acquire) == nullptr) return NoSight;
  Ray ray = NewRayToward(eye, {eye.x + SightReach * v.x, eye.y + SightReach * v.y, eye.z + SightReach * v.z});
  for (;;) {
    const int answer = StepCellRay(&ray, ship);
    if (answer == RaySpent) return NoSight;
    if (answer == RaySolid) return std::hypot(ray.pos[0] - eye.x, ray.pos[1] - eye.y, ray.pos[2] - eye.z);
  }
}

// Within sight of the ship's cube; of all others nothing is near.
static bool NearCube(const float (&place)[3]) {
  for (const float c : place)
    if (!(c > -SightReach && c < CellsPerAxis + SightReach)) return false;
  return true;
}

// Whether the view meets a block of a ship other than this one before it has come so far.
static bool OtherShipBefore(float distance, const Player &p, const Ship *but) {
  const u16 count = TheShipTable.count.load();
  for (u16 row = 0; row < count; ++row) {
    const Ship *other = ShipAt(TheShipTable, row);
    if (other == nullptr || other == but) continue;
    float place[3];
    RelativeTo(*other, p.solarLoc, place);
    if (NearCube(place) && SightTo(*other, {place[0], place[1], place[2]}, ViewDirection(p)) < distance) return true;
  }
  return false;
}

static bool EyeInBlock(const Player &p, const Ship &ship) {
  for (const float at : p.relativeLoc)
    if (!(at >= 0 && at < static_cast<float>(CellsPerAxis))) return false;
  const auto cell = [&](int axis) { return static_cast<u16>(p.relativeLoc[axis]); };
  return BlockExists(cell(0), cell(1), cell(2), ship);
}

Refusal WhyBlocked(const Player &p, const Ship *ship) {
  if (ship == nullptr) return Refusal::NoTarget;
  if (p.target.marker.component != MarkerNone) return Refusal::TooFast;
  if (EyeInBlock(p, *ship)) return Refusal::NotHere;  // looking out of it at nothing
  const float distance = SightTo(*ship, EyeOf(p), ViewDirection(p));
  if (OtherShipBefore(distance, p, ship)) return Refusal::OtherShip;
  return distance < NoSight ? Refusal::OutOfReach : Refusal::NoTarget;
}

Refusal WhyNoPlaceCell(const Player &p, const Ship *ship) {
  if (ship == nullptr) return Refusal::NoTarget;
  return EyeInBlock(p, *ship) ? Refusal::InsideBlock : Refusal::NotHere;
}

Refusal WhyNotRemoved(const Player &p, const Ship *ship) {
  const Cell3 c = p.target.targetCell;
  return ship != nullptr && BlockExists(c.x, c.y, c.z, *ship) ? Refusal::NotHere : Refusal::NoTarget;
}

Refusal WhyNotIn(const PieceBox &box, const Player &p, const Ship &ship) {
  const Cell3 c = p.target.placeCell;
  if (BlockExists(c.x, c.y, c.z, ship)) return Refusal::FullCell;
  if (BodyInBox(EyeOf(p), box)) return Refusal::OwnCell;
  return box.room ? Refusal::None : Refusal::NoRoom;
}
