// Ships that leave the table while other threads may still be reading them. Nobody locks to read the tree, so a retired
// ship lives until every thread loop of the game has begun a new pass: then nobody can hold a pointer from before.
#pragma once

#include "world/tree.h"

constexpr int MaxLoops = 4;

void BeginPass(int loop);      // A loop's thread, at the top of each pass: it holds no pointer into any ship.
void EndLoop(int loop);        // The loop's thread, after its last pass.
void RetireShip(Ship *ship);   // ship, out of the table by now and owned here from now on. World mutex held.
size_t RetiredCount();         // Ships that wait. Any thread.
void SweepRetired();           // Frees those that nobody can see any more. Takes the world mutex, but not for the freeing.
