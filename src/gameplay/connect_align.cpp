// Blocks that line up with what stands around them: like their own kind, or towards the eye of the builder.
#include "gameplay/connect_rules.h"

constexpr int X = 0, Y = 1, Z = 2;

namespace {

// A rotation by where the eye is seen from the cell: under it on an axis, or not.
struct Choice {
  int axis;
  u8 under, other;
};

// What a neighbour of another kind makes of the rotation: the first choice when the eye lies less far out on one axis
// than on a second one, otherwise the other.
struct Lining {
  int less, than;
  Choice first, otherwise;
};

}  // namespace

// By the side of the neighbour, in the order of Sides.
constexpr Lining Linings[SideCount] = {
    {Y, Z, {Y, 4, 1}, {Y, 2, 2}},  // x+1
    {Y, Z, {Y, 5, 1}, {Z, 3, 2}},  // x-1
    {Z, X, {Z, 2, 4}, {X, 5, 1}},  // y+1
    {Z, X, {Z, 2, 4}, {X, 5, 1}},  // y-1
    {Y, X, {X, 4, 4}, {X, 5, 2}},  // z+1
    {Y, X, {Y, 5, 4}, {X, 6, 2}},  // z-1
};

static unsigned LinedUp(const Lining &lining, const i64 (&eye)[3]) {
  const Choice &c = eye[lining.less] < eye[lining.than] ? lining.first : lining.otherwise;
  return eye[c.axis] < 0 ? c.under : c.other;
}

int AlignToNeighbours(const Placement &p) {
  if (!p.automatic) return PlacePlain(p);
  const i64 eye[3] = {i64{p.eye[0]} - p.at.x, i64{p.eye[1]} - p.at.y, i64{p.eye[2]} - p.at.z};
  Placement turned = p;
  bool found = false;
  for (int side = 0; side < SideCount; ++side) {
    Block beside;
    if (!ReadSide(p.at, Sides[side], *p.ship, &beside)) continue;
    if (beside.component == p.block.component) {
      turned.block.rotation = beside.rotation;
      return PlacePlain(turned);
    }
    found = true;
    turned.block.rotation = LinedUp(Linings[side], eye) & 7u;
  }
  return found ? PlacePlain(turned) : StandOnTarget(p);
}
