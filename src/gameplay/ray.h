// The one line-marching tool: a Ray walks a ship's cells or voxels, one axis a step, largest component first. A Ray lives
// on its caller's stack and is never shared. Steps read the tree without a lock. Light and the asteroid generator below
// this folder use it too.
#pragma once

#include "world/tree.h"

struct Ray {
  float step[3] = {};
  float pos[3] = {};
  i16 dest[3] = {};
  i32 stepsLeft = 0;       // spent when it falls below 1
  u8 phase = 1;            // which rank moves next: 1, 2 or 3
  u8 rank[3] = {};         // of each axis: 1 the largest component of the direction, 3 the smallest
  u8 axis[4] = {};         // the axis of each rank, so that a step needs no search; entry 0 unused
  bool inFirstCell = true;
  CellAddress at{};        // the cell of pos
  const ChunkCells *cells = nullptr;  // the cells of that address's chunk; null: look them up
};

struct Vec3f {
  float x = 0, y = 0, z = 0;
};
struct Cell3 {
  u16 x = 0, y = 0, z = 0;
};

Ray NewRayAway(Vec3f a, Vec3f b);     // From a in the direction a - b, in sixteenths of a block.
Ray NewRayToward(Vec3f a, Vec3f b);   // From a to b, in sixteenths.
Ray NewCellRay(Cell3 a, Cell3 b);     // From cell to cell, a block a step.

constexpr int RaySpent = -1, RayNoChunk = -2, RayOpen = 0, RaySolid = 1, RayAtDest = 2;
int StepVoxelRay(Ray *ray, const Ship &ship);  // RaySpent, RayNoChunk, RayOpen or RaySolid.
int StepCellRay(Ray *ray, const Ship &ship);   // RaySpent, RayOpen, RaySolid (a block) or RayAtDest.
