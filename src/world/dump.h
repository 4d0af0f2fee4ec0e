// The debug dump of one cell.
#pragma once

#include "world/tree.h"

void DumpBlock(u16 x, u16 y, u16 z, const Ship &ship);  // Takes world and heat for the copy; prints to standard output.
