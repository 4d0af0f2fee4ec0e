// What the player aims at.
#pragma once

#include "gameplay/player.h"

constexpr u64 MarkerNone = 1, MarkerFace = 3, MarkerCell = 4;  // rows of Components: nothing in reach, a face, a whole cell

// Fills the target from the player's view; false when there is nothing to aim at. Works on the records given.
bool UpdateTarget(Target *target, const Player &player, const Ship &ship);
// The same for the one player in the current ship, stored back. Once a frame, and after each edit by a tool. Where the eye looks
// out of the block round it into a chunk that isn't there, UpdateTarget keeps the last aim; here nothing is aimed at.
bool RefreshTarget();
