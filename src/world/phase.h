// Melting, boiling and solidifying. This goes against the order of the folders: a change of phase is an edit like those
// of players, and the server hears of it. So it is a library of its own above the world.
#pragma once

#include "world/tree.h"

// Each makes another component of the block of a cell. 1, or 0 for a free cell. World mutex held.
int MeltBlock(const CellAddress &a, Ship *ship);      // Also takes away the light that it gave.
int BoilBlock(const CellAddress &a, Ship *ship);
int SolidifyBlock(const CellAddress &a, Ship *ship);
// Marks the unstable blocks that stand on the wrong side of their material's melting or boiling point; how many these are.
// World mutex held; takes the heat mutex.
int ScanPhaseChange(Ship *ship);
