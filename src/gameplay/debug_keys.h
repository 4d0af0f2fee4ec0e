// What the function keys do.
#pragma once

#include "gameplay/player.h"

// Logs where the player and the ship are, in world units and in blocks, and how fast the player flies. Any thread.
void DumpPlayer(const Player &p, const Ship &ship);
bool DebugKey(int key);   // F1 to F12 on a press; false for any other key. Main thread.
extern double CacheResetAllowed;  // before this time F12 does nothing; main thread
