// The retry when the window does not open: a table of methods and, when all have failed, of plainer and plainer surfaces.
#pragma once

#include "core/types.h"

bool WindowLadder(i8 *method, i8 *modifier);  // True when a window opened; false at the end of the ladder (logged).
