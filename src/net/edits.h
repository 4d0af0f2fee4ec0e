// The way of every block edit of play: told to the server when there is one, then done in the world.
#pragma once

#include "world/tree.h"

int PlaceBlockNetworked(const Block &b, u16 x, u16 y, u16 z, Ship *ship);        // As PlaceBlock: takes the world mutex.
bool RemoveBlockNetworked(u16 x, u16 y, u16 z, Ship *ship);                      // As RemoveBlock: takes the world mutex.
int SetBlockComponentNetworked(u16 component, u16 x, u16 y, u16 z, Ship *ship);  // World mutex held.
