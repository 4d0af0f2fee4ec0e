// The way of every block edit of play. An edit is sent and done under one hold of the world, so that the server hears of the
// edits of a cell in the order in which they happened here.
#include "net/edits.h"

#include "core/log.h"
#include "net/connection.h"
#include "platform/threads.h"
#include "world/cells.h"
#include "world/edit.h"

// With a server the table is replaced when its list comes, and again maybe between the aim and the edit: a row is another ship's then.
static bool MayEdit(u16 x, u16 y, u16 z, const Ship *ship) {
  if (!InRange(x, y, z)) return LogError("Block place attempt outside bounds") != 0;
  return !Online || (HasServersShips && ship->id < MaxShips && ShipAt(TheShipTable, static_cast<u16>(ship->id)) == ship);
}

int PlaceBlockNetworked(const Block &b, u16 x, u16 y, u16 z, Ship *ship) {
  const ScopedLock world(&WorldMutex);
  if (!MayEdit(x, y, z, ship)) return 0;
  if (Online) SendBlockPlace(NetHost, NetPeer, static_cast<i32>(ship->id), x, y, z, b);
  return EditPlace(b, x, y, z, ship);
}

bool RemoveBlockNetworked(u16 x, u16 y, u16 z, Ship *ship) {
  const ScopedLock world(&WorldMutex);
  if (!MayEdit(x, y, z, ship)) return false;
  if (Online) SendBlockRemove(NetHost, NetPeer, static_cast<i32>(ship->id), x, y, z);
  return EditRemove(x, y, z, ship);
}

int SetBlockComponentNetworked(u16 component, u16 x, u16 y, u16 z, Ship *ship) {
  if (!MayEdit(x, y, z, ship)) return 0;
  if (Online) SendBlockComponent(NetHost, NetPeer, static_cast<i32>(ship->id), x, y, z, component);
  return EditComponent(component, x, y, z, ship);
}
