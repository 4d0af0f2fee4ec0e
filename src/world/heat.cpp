// The heat step.
#include "world/heat.h"

void HeatHook(const Ship &) {}
