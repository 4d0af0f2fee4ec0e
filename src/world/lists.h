// The work lists: four counters at each level of the tree tell a walk whether anything below wants attention. A chunk
// counts its listed blocks; each level above counts its children whose counter is not 0. tempChecks and tempUnstable
// change under the heat mutex, the others under the world mutex.
#pragma once

#include "world/tree.h"

void ListAdd(ListKind kind, const CellAddress &a, Ship *ship);
void ListRemove(ListKind kind, const CellAddress &a, Ship *ship);
void MarkTempUnstable(const CellAddress &a, Ship *ship);     // Heat mutex held. Counts once.
void ClearTempUnstable(const CellAddress &a, Ship *ship);    // Heat mutex held.
void ListBlock(u16 component, const CellAddress &a, Ship *ship);  // Anim and Rmv, as the component says.
void UnlistBlock(const CellAddress &a, Ship *ship);          // Off all four lists; takes the heat mutex.
void UnlistBlockNoHeat(const CellAddress &a, Ship *ship);    // Anim, Rmv and Dmg only.
void StatePass(const Ship &ship);                            // RefreshVisibility on every occupied cell. World mutex.

inline unsigned CheckCount(u16 counter) { return counter & 0x3ffu; }
