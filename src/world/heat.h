// Temperatures: units, how heat flows between two blocks, and how it is brought to one. Nothing drives this in play yet:
// the step of the schedule is there and does nothing.
//
// All that changes anything here is for that step: the world mutex and the heat mutex are held.
#pragma once

#include "core/utils.h"
#include "world/tree.h"

inline float QuarterToDegrees(u16 t) { return static_cast<float>(t) * 0.25f; }
inline i32 DegreesToQuarter(float d) { return FloatToInt(d * 4.0f); }

void HeatHook(const Ship &ship);  // The step, once a second: no temperature changes on its own.

// Flows: 0 unless the sender is at least a degree warmer than the receiver. Rows of the blocks are rows of the table.
float BlockHeatFlow(const Block &a, const Block &b);    // From a to b.
float AmbientHeatFlow(const Block &a, u16 t);           // From a to surroundings of t quarter degrees.
i32 HeatToQuarter(float flow, const Block &b);          // By how many quarter degrees a flow into b changes it.
// The flow from a into a cell that holds a block of at most limit quarter degrees. When it isn't 0, out is that block and
// outShadow its entry; both stay as they are otherwise. Out of range is logged.
float NeighbourHeatFlow(u16 x, u16 y, u16 z, const Ship &ship, const Block &a, u16 limit, Block *out, HeatEntry **outShadow);

HeatEntry *GetHeatShadow(Chunk *chunk);  // A chunk's 1000 entries, made at need from its blocks; null without memory (logged).
// Warms a block, or cools it, and calls it and its neighbours unstable. Stops at the ends of what a temperature can be.
int AddHeat(u16 x, u16 y, u16 z, Ship *ship, float degrees);  // Result as of a read; 0 without memory.
void MarkHeatDue(const CellAddress &a, Ship *ship);  // The block of an existing cell takes part in the next round.
