// Which form of a component goes into a cell and how it is turned.
#pragma once

#include "gameplay/player.h"

// A placement in the making: what the rules look at.
struct Placement {
  Block block;        // rotation 1 in place of 0
  Cell3 at;           // the free cell
  Cell3 target;       // the cell that the player aims at
  i32 eye[3] = {};    // the cell of the player's eye, which may lie outside of the ship
  Ship *ship = nullptr;
  bool automatic = false;  // the player has chosen no rotation: the rule may
};

// Places the block in the cell `at` of the ship. A rotation of 0 leaves the turn to the rules. 1 when the cell was filled, 0
// when it was taken or nothing could be placed. Takes the world mutex for each block that it writes.
int PlaceShaped(Placement p);
