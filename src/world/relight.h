// The second half of the road of edits (world/edit.h): light that is worked out again, cell by cell. World mutex held.
#pragma once

#include "world/tree.h"

// Notes the cells whose light an edit of this one may have left wrong. lamp: it gave light before the edit, or gives light now.
void MarkStaleLight(u16 x, u16 y, u16 z, bool lamp, Ship *ship);
// Gives the noted cells the lists that LightPass would leave there, until none is left or all of *steps is spent, but one cell at
// least. Whether none is left.
bool Relight(Ship *ship, u64 *steps);
