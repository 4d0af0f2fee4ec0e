// What the rules of placing share: for the connect files alone. A rule gets the cell to fill in a Placement and answers
// 1 when it filled it.
#pragma once

#include <string>

#include "gameplay/connect.h"

struct Turn {
  u8 rotation = 1, rotation2 = 0;
};

// The six neighbours of a cell in the order in which every rule visits them.
constexpr int SideCount = 6;
struct Side {
  int axis, sign;
};
constexpr Side Sides[SideCount] = {{0, 1}, {0, -1}, {1, 1}, {1, -1}, {2, 1}, {2, -1}};

// Reads the cell that lies (dx, dy, dz) from one. False for a free cell and for one outside of the cube, which is not told.
bool ReadBeside(Cell3 c, int dx, int dy, int dz, const Ship &ship, Block *out);
bool ReadSide(Cell3 c, Side side, const Ship &ship, Block *out);

u16 IdOf(const Block &b);  // The id of a block's component; 0 for a row behind the table.
const std::string &ClassOf(const Block &b);  // Its class word; empty for a row behind the table.
// Gives a block the row that lies `step` rows from another one. A content set may lack that row: when it leaves the table or
// the family, the block stays as it is and the answer is false.
bool TakeRow(Block *b, u16 from, int step);
void TakeTurn(Block *b, Turn turn);

int PlacePlain(const Placement &p);
int StandOnTarget(const Placement &p);
int AlignToNeighbours(const Placement &p);                    // In line with what stands around, as seen from the eye.
int ShapePlating(const Placement &p);                         // Edge or corner by the plating around.
int PlaceMultiCell(const Placement &p);                       // An object of several cells: all of them or none.
int PlaceRandomised(const Placement &p, int variants);        // One of the rows from the held one on, turned at random.
int ConnectFamily(const Placement &p, u16 base);              // Joins with kin; bases 20, 40, 310 and 340.
