// Marching along a line.
#include "gameplay/ray.h"

#include <algorithm>
#include <cmath>

#include "world/access.h"
#include "world/cells.h"

constexpr CellAddress NoAddress = {0xffff, 0xffff, 0xffff, 0xffff};  // a place outside of the ship's cube

static bool InCube(const float (&pos)[3]) {
  constexpr float limit = CellsPerAxis;
  return pos[0] >= 0 && pos[0] < limit && pos[1] >= 0 && pos[1] < limit && pos[2] >= 0 && pos[2] < limit;
}

static CellAddress AddressAt(const float (&pos)[3]) {
  if (!InCube(pos)) return NoAddress;
  return AddressOf(static_cast<unsigned>(pos[0]), static_cast<unsigned>(pos[1]), static_cast<unsigned>(pos[2]));
}

static i16 ToCell(float f) { return static_cast<i16>(std::clamp(std::fabs(f), 0.0f, 32767.0f)); }

// Ranks of the axes, largest component first.
static void RankAxes(Ray *ray, const float (&raw)[3]) {
  u8 order[3] = {0, 1, 2};
  std::stable_sort(order, order + 3, [&raw](u8 a, u8 b) { return std::fabs(raw[a]) > std::fabs(raw[b]); });
  for (u8 i = 0; i < 3; ++i) {
    ray->axis[i + 1] = order[i];
    ray->rank[order[i]] = static_cast<u8>(i + 1);
  }
}

static float Longest(const float (&raw)[3]) {
  return std::max({std::fabs(raw[0]), std::fabs(raw[1]), std::fabs(raw[2])});
}

static i32 StepCount(float length, float more, float factor) {
  return static_cast<i32>(std::min((length + more) * factor, 1e9f));
}

// A ray of sixteenths from a along raw.
static Ray SixteenthsRay(Vec3f a, const float (&raw)[3], Vec3f b, float more) {
  Ray ray;
  const float length = Longest(raw);
  const float start[3] = {a.x, a.y, a.z}, end[3] = {b.x, b.y, b.z};
  for (int axis = 0; axis < 3; ++axis) {
    ray.step[axis] = length > 0 ? raw[axis] / (16.0f * length) : 0.0f;
    ray.pos[axis] = start[axis];
    ray.dest[axis] = ToCell(end[axis]);
  }
  RankAxes(&ray, raw);
  ray.stepsLeft = StepCount(length, more, 48.0f);
  ray.at = AddressAt(ray.pos);
  return ray;
}

Ray NewRayAway(Vec3f a, Vec3f b) {
  const bool equal = a.x == b.x && a.y == b.y && a.z == b.z;
  if (equal) b = {b.x + 0.001f, b.y + 0.001f, b.z + 0.001f};
  const float raw[3] = {a.x - b.x, a.y - b.y, a.z - b.z};
  Ray ray = SixteenthsRay(a, raw, b, 0.05f);
  if (equal) ray.stepsLeft = 1;  // so that the first step answers that it is spent
  return ray;
}

Ray NewRayToward(Vec3f a, Vec3f b) {
  const float raw[3] = {b.x - a.x, b.y - a.y, b.z - a.z};
  return SixteenthsRay(a, raw, b, 0.5f);
}

Ray NewCellRay(Cell3 a, Cell3 b) {
  const u16 start[3] = {a.x, a.y, a.z}, end[3] = {b.x, b.y, b.z};
  float raw[3];
  for (int axis = 0; axis < 3; ++axis) raw[axis] = static_cast<float>(end[axis] - start[axis]);
  if (raw[0] == raw[1]) raw[0] *= 0.999f;
  if (raw[0] == raw[2]) raw[1] *= 0.999f;
  if (raw[2] == raw[1]) raw[2] *= 0.999f;
  Ray ray;
  const float length = Longest(raw);
  for (int axis = 0; axis < 3; ++axis) {
    ray.step[axis] = length > 0 ? raw[axis] / length : 0.0f;
    ray.pos[axis] = static_cast<float>(start[axis]) + 0.25f + ray.step[axis];
    ray.dest[axis] = static_cast<i16>(end[axis]);
  }
  RankAxes(&ray, raw);
  ray.phase = 3;
  ray.stepsLeft = StepCount(length, 3.5f, 3.0f);
  ray.at = AddressAt(ray.pos);
  return ray;
}

static void MoveOneStep(Ray *ray) {
  const u8 axis = ray->axis[ray->phase];
  ray->pos[axis] += ray->step[axis];
  ray->phase = ray->phase == 3 ? u8{1} : static_cast<u8>(ray->phase + 1);
}

// Takes the ray's cell from pos; whether it is another one than before.
static bool Readdress(Ray *ray) {
  const CellAddress a = AddressAt(ray->pos);
  const u64 now = std::bit_cast<u64>(a), before = std::bit_cast<u64>(ray->at);
  if (now == before) return false;
  if ((now ^ before) >> 16 != 0) ray->cells = nullptr;  // another chunk
  ray->at = a;
  return true;
}

static const ChunkCells *CellsOfRay(Ray *ray, const Ship &ship) {
  if (ray->cells == nullptr && ray->at.mega != NoAddress.mega) ray->cells = FindCells(ray->at, ship);
  return ray->cells;
}

static int SixteenthOf(float f) { return static_cast<int>((f - static_cast<float>(static_cast<int>(f))) * 16.0f); }

int StepVoxelRay(Ray *ray, const Ship &ship) {
  if (--ray->stepsLeft < 1) return RaySpent;
  if (ray->inFirstCell) MoveOneStep(ray);
  if (Readdress(ray)) ray->inFirstCell = false;
  const ChunkCells *cells = CellsOfRay(ray, ship);
  if (cells == nullptr) return RayNoChunk;
  const u64 head = HeadOfCell(*cells, ray->at.block);
  if (HeadState(head) == StateEmpty) return RayOpen;
  const GraphicBlock *g = HeadState(head) == StateDamaged ? GraphicOf(*cells, ray->at.block) : nullptr;
  const u8 *damage = g == nullptr ? nullptr : g->damageBits.load(std::memory_order_acquire);
  return HeadVoxelSolid(head, damage, SixteenthOf(ray->pos[0]), SixteenthOf(ray->pos[1]), SixteenthOf(ray->pos[2])) ? RaySolid
                                                                                                                  : RayOpen;
}

static bool AtDest(const Ray &ray) {
  for (int axis = 0; axis < 3; ++axis)
    if (!(std::fabs(ray.pos[axis]) < 40000.0f) || static_cast<int>(ray.pos[axis]) != ray.dest[axis]) return false;
  return true;
}

int StepCellRay(Ray *ray, const Ship &ship) {
  if (--ray->stepsLeft < 1) return RaySpent;
  if (AtDest(*ray)) return RayAtDest;
  MoveOneStep(ray);
  Readdress(ray);
  const ChunkCells *cells = CellsOfRay(ray, ship);
  if (cells == nullptr) return RayOpen;
  return HeadState(HeadOfCell(*cells, ray->at.block)) != StateEmpty ? RaySolid : RayOpen;
}
