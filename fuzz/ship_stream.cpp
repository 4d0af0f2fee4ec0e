// A stream ship. The first byte of the input says whether the rest is the file or what it unpacks to.
#include <unistd.h>

#include "fuzz/fuzz.h"
#include "persistence/stream.h"
#include "platform/threads.h"
#include "world/verify.h"

void PrepareTarget() { LoadGameTables(); }

static void Begin(Ship *ship) {
  InitShip(ship, 0);
  Demand(AllocShipTable(ship), "memory for a ship");
}

// What was read once is written and read the same for ever.
static void CheckRoundTrip(const Ship &ship) {
  std::vector<u8> first, second;
  Demand(PackShip(ship, &first), "a ship that was read can be written");
  Ship again;
  Begin(&again);
  UnpackShip(&again, first.data(), first.size(), "again");
  Demand(PackShip(again, &second) && first == second, "a ship survives");
  FreeShip(&again);
}

void FuzzOne(Bytes input) {
  if (input.empty()) return;
  const Bytes content = input.subspan(1);
  Ship ship;
  Begin(&ship);
  ScopedLock world(&WorldMutex);
  if (input[0] % 2 == 0) {
    UnpackShip(&ship, content.data(), content.size(), "a");
  } else {
    WriteInput("saves/a.sts", content);
    LoadShipStream(&ship, "saves/a.sts", true);
    unlink("saves/a.sts.damaged");
  }
  Demand(ShipFault(ship).empty(), "the ship is sound");
  CheckRoundTrip(ship);
  FreeShip(&ship);
}
