// A text ship with its companions. The input: u16 length of the light, u16 length of the voxels, both, then the text.
#include <algorithm>

#include "fuzz/fuzz.h"
#include "persistence/text_form.h"
#include "platform/threads.h"
#include "world/verify.h"

void PrepareTarget() { LoadGameTables(); }

static Bytes TakePart(Bytes *input, size_t length) {
  const Bytes part = input->first(std::min(length, input->size()));
  *input = input->subspan(part.size());
  return part;
}

void FuzzOne(Bytes input) {
  const Bytes head = TakePart(&input, 4);
  if (head.size() < 4) return;
  WriteGzipInput("cache/a.slf", TakePart(&input, static_cast<size_t>(head[0] | head[1] << 8)));
  WriteGzipInput("cache/a.scf", TakePart(&input, static_cast<size_t>(head[2] | head[3] << 8)));
  WriteInput("saves/a.ssf", input);
  Ship ship;
  InitShip(&ship, 0);
  Demand(AllocShipTable(&ship), "memory for a ship");
  ScopedLock world(&WorldMutex);
  LoadShipText(&ship, "a.ssf", 1, 2, 3);
  Demand(ShipFault(ship).empty(), "the ship is sound");
  FreeShip(&ship);
}
