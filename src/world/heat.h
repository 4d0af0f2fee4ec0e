// Temperatures: units, and the step of the schedule in which heat would flow.
#pragma once

#include "world/tree.h"

inline float QuarterToDegrees(u16 t) { return static_cast<float>(t) * 0.25f; }
inline i32 DegreesToQuarter(float d) { return static_cast<i32>(d * 4.0f); }

void HeatHook(const Ship &ship);  // Once a second under world and heat mutex: no temperature changes on its own.
