// The retry when the window does not open: a table of methods and, when all have failed, of plainer and plainer surfaces.
#pragma once

#include "core/types.h"

// Goes on from *method and *modifier, both 0 at first, and leaves them behind the pair that opened a window. True when
// one opened; it has its title and size callback. False at the end of the ladder (logged).
bool WindowLadder(i8 *method, i8 *modifier);
