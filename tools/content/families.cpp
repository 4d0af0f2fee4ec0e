// The families that join up with their neighbours.
#include "components.h"

void AppendFamilies(std::vector<ComponentRow> *) {}
