// Why a tool can't do what a press asks for. Works on the records given; takes no lock.
#pragma once

#include "gameplay/player.h"
#include "gui/refusal.h"

Refusal WhyBlocked(const Player &p, const Ship *ship);                 // The target is blocked. Never None.
Refusal WhyNoPlaceCell(const Player &p, const Ship *ship);             // There is no place before the target. Never None.
Refusal WhyNotRemoved(const Player &p, const Ship *ship);              // The target can't be taken away. Never None.
Refusal WhyNotIn(const PieceBox &box, const Player &p, const Ship &ship);  // None when the held piece may go there.
