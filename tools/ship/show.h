// What the tool tells of a ship that was read.
#pragma once

#include "forms.h"

void ShowInfo(const ShipName &name, Ship *ship);  // Name, size, mass, place.
void ShowRows(const ShipName &name, const Ship &ship);  // Materials and components, the most used first.
u64 CountBlocks(const Ship &ship);
