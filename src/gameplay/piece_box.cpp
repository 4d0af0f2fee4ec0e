// Which cells a piece takes.
#include "gameplay/piece_box.h"

#include <cmath>

#include "content/components.h"
#include "world/access.h"

namespace {

struct SizeOfId {
  u16 id;
  PieceSize size;
};

constexpr SizeOfId Sizes[] = {{30, {1, 1, 2}}, {120, {1, 2, 1}}, {122, {1, 2, 1}}, {124, {1, 2, 1}}, {350, {2, 2, 2}}};

}  // namespace

bool RowBelongs(u16 from, int step) {
  const int rows = static_cast<int>(Components.size()), row = from + step;
  if (from >= rows || row < 1 || row >= rows) return false;
  const int id = Components[static_cast<u16>(row)].id;
  return id != 0 && (FamilyBase(static_cast<u16>(row)) == FamilyBase(from) || id == Components[from].id + step);
}

PieceSize SizeOfPiece(u16 component) {
  if (component >= Components.size()) return {};
  for (const SizeOfId &s : Sizes)
    if (s.id == Components[component].id) return RowBelongs(component, CellsOf(s.size) - 1) ? s.size : PieceSize{};
  return {};
}

static bool IsFree(Cell3 low, PieceSize size, const Ship &ship) {
  if (low.x + size.x > CellsPerAxis || low.y + size.y > CellsPerAxis || low.z + size.z > CellsPerAxis) return false;
  return EachPart(low, size, [&](Cell3 c, int) { return !BlockExists(c.x, c.y, c.z, ship); });
}

// On one axis: where the piece begins when it ends at its place and not begins there. Only where the target lies on the side
// towards which it would grow; false at the wall of the cube.
static bool MoveOff(u16 *low, u16 place, u16 target, u8 size) {
  if (place >= target) return true;
  if (place + 1 < size) return false;
  *low = static_cast<u16>(place - (size - 1));
  return true;
}

// The rule of placing grows a piece towards larger coordinates whatever it is put against, so on three faces of a wall a core
// would be refused. With room there its place stays; without, the piece is handed to the rule from its moved corner.
PieceBox BoxAtPlace(u16 component, Cell3 place, Cell3 target, const Ship &ship) {
  PieceBox box{.low = place, .size = SizeOfPiece(component)};
  box.room = IsFree(box.low, box.size, ship);
  if (box.room) return box;
  Cell3 moved = place;
  const bool inside = MoveOff(&moved.x, place.x, target.x, box.size.x) && MoveOff(&moved.y, place.y, target.y, box.size.y) &&
                      MoveOff(&moved.z, place.z, target.z, box.size.z);
  if (!inside) return box;
  box.low = moved;
  box.room = IsFree(moved, box.size, ship);
  return box;
}

bool BodyInBox(Vec3f eye, const PieceBox &box) {
  const float at[3] = {eye.x, eye.y, eye.z};
  const int low[3] = {box.low.x, box.low.y, box.low.z}, size[3] = {box.size.x, box.size.y, box.size.z};
  for (int axis = 0; axis < 3; ++axis) {
    const float first = std::floor(at[axis] - BodyReach), last = std::floor(at[axis] + BodyReach);
    if (last < static_cast<float>(low[axis]) || first > static_cast<float>(low[axis] + size[axis] - 1)) return false;
  }
  return true;
}
