// What the player aims at.
#pragma once

#include "gameplay/player.h"

// Fills the target from the player's view; false when there is nothing to aim at. Works on the records given.
bool UpdateTarget(Target *target, const Player &player, const Ship &ship);
// UpdateTarget for the one player in the current ship, stored back. Once a frame, and after each edit by a tool.
bool RefreshTarget();
