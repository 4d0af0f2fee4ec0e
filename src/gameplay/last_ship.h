// The ship that the player flew last, from one start of the game to the next. A server's ships are no one's own.
#pragma once

#include "world/tree.h"

// Its name is kept for the next start if the player is alone and the ship has a file; that of a ship that flies in a remembered
// one's place only when the player has flown another one since. Any thread, no mutex.
void RememberShip(const Ship &ship);
// Start-up, into the first and still empty ship: the remembered one as a stream file, or as text round the place. False when
// none is remembered but the ship's own name; and, with a line in the chat, when it is gone or can't be read: then the ship
// is as it was.
bool LoadLastShip(Ship *ship, const i64 (&at)[3]);
