// The shell of a ship of any shape, and a shell's file of any content. The first byte of the input says which.
#include "fuzz/fuzz.h"
#include "net/ship_shell.h"
#include "persistence/stream.h"
#include "platform/threads.h"
#include "world/verify.h"

void PrepareTarget() { LoadGameTables(); }

static unsigned CountOf(const Ship &ship) {
  unsigned count = 0;
  ForEachChunk(ship, [&count](const Chunk &, const ChunkCells &cells, CellAddress) {
    ForEachBit(cells.occupied, [&count](u16) { ++count; });
  });
  return count;
}

// The outermost blocks of a ship stay where they are, so something is left of it; and the shell of a shell is the shell.
static void Peel(Ship *ship) {
  const unsigned whole = CountOf(*ship);
  Demand(LoadShipShell(ship) == 1, "a ship has a shell");
  const unsigned outer = CountOf(*ship);
  Demand(outer <= whole && (outer > 0 || whole <= 1), "a shell is a part of the ship");
  Demand(LoadShipShell(ship) == 1 && CountOf(*ship) == outer, "a shell is its own shell");
}

void FuzzOne(Bytes input) {
  if (input.empty()) return;
  const Bytes content = input.subspan(1);
  Ship ship;
  InitShip(&ship, 0);
  Demand(AllocShipTable(&ship), "memory for a ship");
  if (input[0] % 2 == 0) {
    UnpackShip(&ship, content.data(), content.size(), "a");
    Peel(&ship);
  } else {
    bool whole;
    WriteInput("cache/a.sss", content);
    if (ReadShipStream(&ship, "cache/a.sss", &whole) != 0) FinishShip(&ship);
  }
  {
    ScopedLock world(&WorldMutex);
    Demand(ShipFault(ship).empty(), "the ship is sound");
  }
  FreeShip(&ship);
}
