// The way of every block edit of play. While no server is reached an edit only happens in the world.
#include "net/edits.h"

#include "world/access.h"

int PlaceBlockNetworked(const Block &b, u16 x, u16 y, u16 z, Ship *ship) { return PlaceBlock(b, x, y, z, ship); }

bool RemoveBlockNetworked(u16 x, u16 y, u16 z, Ship *ship) { return RemoveBlock(x, y, z, ship); }

int SetBlockComponentNetworked(u16 component, u16 x, u16 y, u16 z, Ship *ship) {
  return ChangeBlockComponent(component, x, y, z, ship);
}
