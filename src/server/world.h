// The server's ships: in memory for its own rules, and in the directory store so that each edit is on disk at once.
#pragma once

#include <string>
#include <vector>

#include "net/wire.h"

// Takes the folder's saves/ for this server, until CloseWorld. False: why not.
bool ClaimFolder(std::string *why);
// Loads all ships of saves/, and grows an asteroid of up to largest when there are none. False: a ship that can't be loaded, no
// world, or another server has it (logged).
bool OpenWorld(u16 largestAsteroid);
void CloseWorld();                            // Another server may have the folder then. RefreshStreamFiles comes before.
// Stores the edit on disk, then does it. Null: done; else why not, and nothing has changed.
// by: where its player is; a block may stand beside another one, or near them.
const char *DoEdit(const BlockEdit &edit, const Motion &by);
bool ChangesNothing(const BlockEdit &edit);   // It would put what stands there already.
bool TouchesLamp(const BlockEdit &edit);      // It puts or replaces a block that gives light: work for every game.
bool NeedsSlot(const BlockEdit &edit);        // Whether the edit is a chunk's first on disk, which takes some milliseconds.
// What stands in the cell of an edit, as the edit that would put it there. False: no such cell.
bool EditOfCell(const BlockEdit &at, BlockEdit *found);
std::vector<std::string> ShipStems();         // By row.
std::vector<u8> ShipListPayload(const std::vector<bool> &sent);  // PacketShipList: by row, whether the file was sent.
bool HasRoom(const Motion &m);                // Whether a player has room there: no ship has a block in the cells around.
Motion StartingPlace(size_t player);          // Before the first ship, or aside of what stands there; players beside each other.
