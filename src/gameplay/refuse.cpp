// Reasons for a refused press.
#include "gameplay/refuse.h"

#include "content/components.h"
#include "gameplay/target.h"
#include "world/access.h"

constexpr float SightReach = 200.0f;  // blocks: what stands nearer is out of reach and not nothing

// Whether the view meets a block, however far it is off.
static bool SeesBlock(const Player &p, const Ship &ship) {
  if (ship.megaChunks.load(std::memory_order_acquire) == nullptr) return false;
  const Vec3f eye = EyeOf(p), v = ViewDirection(p);
  Ray ray = NewRayToward(eye, {eye.x + SightReach * v.x, eye.y + SightReach * v.y, eye.z + SightReach * v.z});
  for (;;) {
    const int answer = StepCellRay(&ray, ship);
    if (answer == RaySpent) return false;
    if (answer == RaySolid) return true;
  }
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
  return SeesBlock(p, *ship) ? Refusal::OutOfReach : Refusal::NoTarget;
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
