// Objects that fill a box of cells, one row of the table for each.
#include "gameplay/connect_rules.h"

// Calls visit(dx, dy, dz) for the cells of a box in the order of the object's rows, until one answers false.
template <typename Visit>
static bool EachCell(int x, int y, int z, Visit visit) {
  for (int dx = 0; dx < x; ++dx)
    for (int dy = y - 1; dy >= 0; --dy)
      for (int dz = 0; dz < z; ++dz)
        if (!visit(dx, dy, dz)) return false;
  return true;
}

// Cells behind the end of the cube are refused, and told, by the placing itself.
int PlaceMultiCell(const Placement &p, int x, int y, int z) {
  const u16 first = static_cast<u16>(p.block.component);
  Placement part = p;
  if (!TakeRow(&part.block, first, x * y * z - 1)) return PlacePlain(p);
  const bool isFree = EachCell(x, y, z, [&](int dx, int dy, int dz) {
    Block taken;
    return !ReadBeside(p.at, dx, dy, dz, *p.ship, &taken);
  });
  if (!isFree) return 0;
  int step = 0;
  part.block.rotation = 3;
  EachCell(x, y, z, [&](int dx, int dy, int dz) {
    part.block.component = static_cast<u16>(first + step++);
    part.at = {static_cast<u16>(p.at.x + dx), static_cast<u16>(p.at.y + dy), static_cast<u16>(p.at.z + dz)};
    PlacePlain(part);
    return true;
  });
  return 1;
}
