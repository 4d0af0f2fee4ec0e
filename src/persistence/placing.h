// Where a loaded ship is put. Local to this folder.
#pragma once

#include "world/block.h"

// The place of cell (0, 0, 0) on one axis for a ship of the given size at a world coordinate; stops at the end of the
// world's range. distance: from the ship's corner to that cell, and what the ship is held off.
inline i64 PlaceOnAxis(i64 at, u16 size, i64 distance) {
  i64 place;
  return __builtin_sub_overflow(at, UnitsPerBlock / 2 * size + distance, &place) ? INT64_MIN : place;
}
