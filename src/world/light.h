// Light is stored by the receiver: every block within 16 blocks of a source lists it. All here under the world mutex, or
// before the world is shared.
#pragma once

#include "core/utils.h"
#include "gameplay/ray.h"
#include "world/tree.h"

constexpr int LightRadius = 16;

// Clear in a program that shows no picture: no list is made or kept. Written before there is a second thread.
extern bool KeepLight;
// Set while this thread edits as play does: with shadows a cast costs milliseconds, so light first passes through blocks and is
// worked out again in its time (world/edit.h).
extern thread_local bool ShadowsLater;

int AddLightEntry(const LightEntry &entry, u16 x, u16 y, u16 z, const Ship &ship);       // Result as of a read.
int RemoveLightEntry(i8 dx, i8 dy, i8 dz, u16 x, u16 y, u16 z, const Ship &ship);        // ... or 6: no such entry.
// A record's whole list, up to MaxBlockLights entries, as a ship file keeps it. False without memory.
bool SetLightList(GraphicBlock *g, const LightEntry *entries, unsigned count);
// How many cells it lit.
u32 CastLight(u16 sx, u16 sy, u16 sz, u8 red, u8 green, u8 blue, const Ship &ship);
void TakeLightAway(u16 sx, u16 sy, u16 sz, const Ship &ship);  // Removes the source from all cells of its cube.
void LightPass(Ship *ship);     // CastLight for every block that gives light.
// The same for a ship of unknown origin: once its lamps have cost all of *cost, the rest stay dark. A lamp costs the cells that
// it lights, and a little for itself. False: some are dark.
bool LightPassWithin(Ship *ship, u64 *cost);
void ClearLights(const Ship &ship);  // Empties every cell's list.
// The upkeep of a block that was just placed: lets in the light of the lamps around it.
void TakeInLights(u16 x, u16 y, u16 z, const Ship &ship);

// What a cast is made of. How far a lamp is from a cell, in whole blocks: it reaches below LightRadius. Offsets below 150.
inline u8 LampDistance(int dx, int dy, int dz) {
  return static_cast<u8>(FastSqrt(static_cast<float>(dx * dx + dy * dy + dz * dz)));
}
// Blocks that a cell's light passes on its way from a lamp, the lamp included; -1 when they are too many. Not the lamp's own cell.
int BlocksBetween(Cell3 cell, Cell3 lamp, const Ship &ship);
// Where a full list of lamps at such distances takes a newcomer: the first farther one but the last, else the last.
inline int PlaceInFullList(const u8 (&distances)[MaxBlockLights], u8 newcomer) {
  int place = 0;
  while (place < MaxBlockLights - 1 && distances[place] <= newcomer) ++place;
  return place;
}
