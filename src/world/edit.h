// The road of every edit of play, from this keyboard or from the network. The plain operations (world/access.h) go by rules whose
// results show: a block beside a buried shape stays undrawn when the shape is dug open, and a lamp that goes may take the light
// of another one with it. So play comes through here, and what an edit has left wrong is mended behind it:
//
// - visibility at once, from cell to cell as far as it changes, and the rest of a very long way later;
// - light later: the edit notes which cells it may have lit wrongly, and MendEdits works their lists out again, in the order of
//   LightPass, so that what stays is what ClearLights and LightPass would leave. Cells that wait are noted once, whatever happens
//   to them meanwhile. What waits belongs to the ship (EditRemains) and goes with its blocks.
//
// All with the world mutex held. A program that keeps no light (KeepLight) shows no picture: there is nothing to mend in it.
#pragma once

#include "world/tree.h"

int EditPlace(const Block &b, u16 x, u16 y, u16 z, Ship *ship);         // As PlaceBlockHeld.
bool EditRemove(u16 x, u16 y, u16 z, Ship *ship);                       // As RemoveBlockHeld; coordinates in range.
int EditComponent(u16 component, u16 x, u16 y, u16 z, Ship *ship);      // As ChangeBlockComponent.

// Work for the Parse thread. A slice of MendingSlice steps takes 1 to 3 ms of the time for which the world stands still.
constexpr u64 MendingSlice = 500000;
// Goes on until nothing waits or all of *steps is spent, but for one cell at least. Whether nothing waits.
bool MendEdits(Ship *ship, u64 *steps);
void MendAllShips(u64 steps);  // The player's ship, then those of the table in their order.
