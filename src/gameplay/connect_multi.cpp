// Objects that fill a box of cells, one row of the table for each.
#include "gameplay/connect_rules.h"

// Cells behind the end of the cube are refused, and told, by the placing itself.
int PlaceMultiCell(const Placement &p) {
  const u16 first = static_cast<u16>(p.block.component);
  const PieceSize size = SizeOfPiece(first);
  if (CellsOf(size) == 1) return PlacePlain(p);
  const auto isFree = [&](Cell3 cell, int) {
    Block taken;
    return !ReadBeside(cell, 0, 0, 0, *p.ship, &taken);
  };
  if (!EachPart(p.at, size, isFree)) return 0;
  Placement part = p;
  part.block.rotation = 3;
  EachPart(p.at, size, [&](Cell3 cell, int step) {
    part.block.component = static_cast<u16>(first + step);
    part.at = cell;
    PlacePlain(part);
    return true;
  });
  return 1;
}
