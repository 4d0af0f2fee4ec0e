// More things for a ship: doors, coloured lamps, furnishings, signs, shapes to build from.
#include "components.h"

void AppendMore(std::vector<ComponentRow> *) {}
