// Which form of a component goes into a cell and how it is turned.
#pragma once

#include "gameplay/player.h"

// Places the block in the free cell (x, y, z) of the ship, aimed at from cell t by an eye in cell e; 1 when the cell was filled.
int PlaceShaped(Block b, Cell3 at, Ship *ship, Cell3 t, Cell3 e);
