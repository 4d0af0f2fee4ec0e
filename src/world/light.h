// Light is stored by the receiver: every block within 16 blocks of a source lists it. All here under the world mutex, or
// before the world is shared.
#pragma once

#include "world/tree.h"

constexpr int LightRadius = 16;

// Clear in a program that shows no picture: no list is made or kept. Written before there is a second thread.
extern bool KeepLight;
// With shadows a cast costs milliseconds. So many may this thread still do; light beyond them passes through blocks. Without a
// limit but for edits from the network.
extern thread_local u32 ShadowCastsLeft;

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
