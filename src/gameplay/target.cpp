// Aiming.
#include "gameplay/target.h"

#include "content/options.h"
#include "world/access.h"

constexpr float ArmReach = 12.0f;                        // blocks

static bool InCube(Vec3f p) {
  constexpr float limit = CellsPerAxis;
  return p.x >= 0 && p.x < limit && p.y >= 0 && p.y < limit && p.z >= 0 && p.z < limit;
}

static Cell3 CellOf(const float (&p)[3]) {
  return {static_cast<u16>(p[0]), static_cast<u16>(p[1]), static_cast<u16>(p[2])};
}

// The block that the eye stands in, when the eye looks at one of its voxels. What the probe met last.
static int ProbeOwnBlock(Target *t, Vec3f eye, Vec3f v, const Ship &ship) {
  if (!InCube(eye)) return RaySpent;
  const Cell3 own = CellOf({eye.x, eye.y, eye.z});
  if (!BlockExists(own.x, own.y, own.z, ship)) return RaySpent;
  Ray ray = NewRayAway(eye, {eye.x - v.x, eye.y - v.y, eye.z - v.z});
  int answer;
  do answer = StepVoxelRay(&ray, ship);
  while (answer == RayOpen);
  if (answer != RaySolid) return answer;
  GetBlock(&t->hitBlock, own.x, own.y, own.z, ship);
  t->hitCell = t->targetCell = own;
  t->marker.component = MarkerCell;
  t->placeCell = {};
  return answer;
}

static bool NothingInReach(Target *t) {
  t->marker.component = MarkerNone;
  t->aimState = 1;
  t->markerHidden = true;
  t->targetBlocked = true;
  return false;
}

// The free cell in front of the face through which the ray came from `before`.
static void ChoosePlace(Target *t, const float (&before)[3], const float (&hit)[3], const Ship &ship) {
  static constexpr u64 faces[3][2] = {{6, 4}, {5, 2}, {3, 1}};  // [axis][before lies on the larger side]
  for (int axis = 0; axis < 3; ++axis) {
    if (before[axis] < 0 || static_cast<int>(before[axis]) == static_cast<int>(hit[axis])) continue;
    float front[3] = {hit[0], hit[1], hit[2]};
    front[axis] = before[axis];
    if (!InCube({front[0], front[1], front[2]})) break;
    const Cell3 cell = CellOf(front);
    if (BlockExists(cell.x, cell.y, cell.z, ship)) break;
    t->placeCell = cell;
    t->marker.rotation = faces[axis][before[axis] > hit[axis] ? 1 : 0] & 7u;
    return;
  }
  t->marker.component = MarkerCell;
  t->placeCell = {};
}

// Follows the view to the first block in reach.
static bool AimAlongView(Target *t, Vec3f eye, Vec3f v, const Ship &ship) {
  Ray ray = NewRayToward(eye, {eye.x + ArmReach * v.x, eye.y + ArmReach * v.y, eye.z + ArmReach * v.z});
  for (;;) {
    const float before[3] = {ray.pos[0], ray.pos[1], ray.pos[2]};
    const int answer = StepCellRay(&ray, ship);
    if (answer == RaySpent) return NothingInReach(t);
    if (answer != RaySolid) continue;
    const Cell3 cell = CellOf(ray.pos);
    GetBlock(&t->hitBlock, cell.x, cell.y, cell.z, ship);
    t->hitCell = t->targetCell = t->placeCell = cell;
    ChoosePlace(t, before, ray.pos, ship);
    return true;
  }
}

// keep: the last aim stays when the eye looks out of its own block into a chunk that isn't there.
static bool Aim(Target *t, const Player &player, const Ship &ship, bool keep) {
  if (ship.megaChunks.load(std::memory_order_acquire) == nullptr) {
    t->markerHidden = true;
    return false;
  }
  if (t->aimState == 1 || t->aimState == 2) {
    t->marker.component = MarkerFace;
    const Vec3f eye = EyeOf(player), v = ViewDirection(player);
    const int probe = ProbeOwnBlock(t, eye, v, ship);
    if (probe == RayNoChunk && !keep) return NothingInReach(t);
    if (probe == RaySpent && !AimAlongView(t, eye, v, ship)) return false;
  }
  t->markerHidden = t->tooFast || t->cinematic || t->menuOpen || t->aimState == 0 || !Options.ShowReticle;
  t->targetBlocked = t->aimState == 0 || t->tooFast;
  return true;
}

bool UpdateTarget(Target *t, const Player &player, const Ship &ship) { return Aim(t, player, ship, true); }

// The two tools that can lock a plane follow the view in state 2, the others in state 1.
static void ChooseFollowing(Target *t, u8 tool) {
  if (t->aimState == 1 || t->aimState == 2) t->aimState = tool == 1 || tool == 2 ? 2 : 1;
}

bool RefreshTarget() {
  const Ship *ship = CurrentShip();
  if (ship == nullptr) return false;
  Player p = ReadPlayer();
  const Target read = p.target;
  ChooseFollowing(&p.target, p.activeTool);
  // The block that was aimed at before is out of sight by now, and a press would still remove it: nothing is aimed at instead.
  const bool processed = Aim(&p.target, p, *ship, false);
  p.target.box = processed ? BoxAtPlace(static_cast<u16>(p.heldBlock.component), p.target.placeCell, p.target.targetCell, *ship)
                           : PieceBox{};
  StoreAimIfUnlocked(p.target, read);
  return processed;
}
