// The shell of a ship: a copy with only the blocks that can be seen or reached from outside, in "cache/<fileStem>.sss". It
// is a ship file in stream form.
#pragma once

#include "world/tree.h"

// Writes the shell's file. 1, or 0 and the old file as it was. Takes the world mutex for the walk over the blocks; the
// caller must not hold it.
int BuildShipShell(const Ship &ship);
// Makes the ship its shell. 1, or 0 (logged) and the ship as it was. No other thread may be reading the ship: its blocks are
// freed. The caller must not hold the world mutex. A shell keeps the fileStem of the ship; the next save under it keeps the
// whole ship as ".replaced".
int LoadShipShell(Ship *ship);
