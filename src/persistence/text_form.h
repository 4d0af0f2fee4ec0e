// The text form of a ship, the older one: lines of keys and one line of numbers for each block in "saves/", with its light
// and its voxel lists in companions in "cache/". Every shape that ships were ever written in loads.
#pragma once

#include "world/tree.h"

// Reads saves/<name>, and the companions that the file calls current; companions that don't fit it are left out. The
// ship's middle of mass comes to world coordinates (x, y, z). 1; 0 when the file can't be opened, or ends with a line of
// state 0 that isn't its end mark. World mutex, or a ship that no other thread sees.
int LoadShipText(Ship *ship, const char *name, i64 x, i64 y, i64 z);
int AddShipFromText(ShipTable *table, const char *name, i64 x, i64 y, i64 z);  // World mutex held. 1 or 0.

// Writes saves/<name>, with ".ssf" added unless the name has its ending, and, where asked for, the companions of the ship's
// fileStem. Takes the world mutex for the copy of the blocks. 1, or 0 (logged) and the old ship as it was. Whenever it is
// stopped in between, the file is the old ship or the new one, and no companion belongs to another text.
int SaveShipText(const Ship &ship, const char *name, bool nameHasExtension, bool withLight, bool withCache);
