// Pieces of several cells, a row of the components for each: which cells one takes where it is put, and what is in their way.
#pragma once

#include "gameplay/ray.h"
#include "world/block.h"

constexpr int MostParts = 8;           // cells of the largest piece
constexpr float BodyReach = 0.1875f;   // blocks from the eye to the sides of the player's body

struct PieceSize {
  u8 x = 1, y = 1, z = 1;  // cells
};

// The cells from low on, towards larger coordinates.
struct PieceBox {
  Cell3 low;
  PieceSize size;
  bool room = false;  // all cells lie in the ship's cube and are free
};

inline int CellsOf(PieceSize s) { return s.x * s.y * s.z; }

// Whether the row that lies `step` rows from another one belongs to it: the same family, or an id that rises with the rows.
bool RowBelongs(u16 from, int step);
PieceSize SizeOfPiece(u16 component);  // One cell for all others, and for a piece whose rows the table lacks. Any row.

// Calls visit(cell, part) for the cells of a piece, parts counted in the order of its rows, until one answers false. Whether
// none did.
template <typename Visit>
bool EachPart(Cell3 low, PieceSize size, Visit visit) {
  int part = 0;
  for (int dx = 0; dx < size.x; ++dx)
    for (int dy = size.y - 1; dy >= 0; --dy)
      for (int dz = 0; dz < size.z; ++dz) {
        const Cell3 cell = {static_cast<u16>(low.x + dx), static_cast<u16>(low.y + dy), static_cast<u16>(low.z + dz)};
        if (!visit(cell, part++)) return false;
      }
  return true;
}

// Where a piece goes whose place in front of the target is given. It grows from the place towards larger coordinates; where
// that meets what it is put against, it is moved off that face. Takes no lock.
PieceBox BoxAtPlace(u16 component, Cell3 place, Cell3 target, const Ship &ship);
bool BodyInBox(Vec3f eye, const PieceBox &box);  // Whether the player's body is in any of its cells.
