// The invariants of a ship's tree, for tests and debug traces.
//
// 1. A cell is in `occupied` exactly when its state isn't 0; material and component of a free cell are 0.
// 2. `hidden` holds exactly the cells whose visibility is NotVisible.
// 3. lampCount is the number of blocks of the chunk that give light.
// 4. A chunk's counter is the number of its listed blocks; every counter above is the number of children whose own isn't 0.
// 5. lightCount is at most 12, and a list stands where it isn't 0.
// 6. The ship's remains.stale names exactly the chunks with a bit in `stale`, each once.
#pragma once

#include <string>

#include "world/tree.h"

std::string ShipFault(const Ship &ship);  // The first broken invariant in words; empty when all hold. World mutex.
