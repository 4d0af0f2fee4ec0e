// What a server sends: packets one after the other, each behind two bytes of its length, to a game with ships and players.
#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzz.h"
#include "net/session.h"
#include "persistence/cursor.h"
#include "platform/threads.h"
#include "world/retire.h"
#include "world/verify.h"

static u64 PacketCount = 0;

// With files of the player's own, under names that the server may have ships of.
void PrepareTarget() {
  LoadGameTables();
  for (const char *path : {"saves/a.sts", "saves/b.sts"}) WriteInput(path, {});
  std::atexit([] { std::fprintf(stderr, "%llu packets\n", static_cast<unsigned long long>(PacketCount)); });
}

static void BeginWithTwoShips() {
  const std::vector<u8> list = {2, 0, 0, 0, 4, 'N', 'U', 'L', 'L', 1, 'a'};
  std::vector<u8> packet{PacketShipList};
  packet.insert(packet.end(), list.begin(), list.end());
  packet.resize(packet.size() + 72);
  HandlePacket(packet.data(), packet.size());
}

static void CheckWorld() {
  SweepRetired();
  const ScopedLock world(&WorldMutex);
  Demand(TheShipTable.count.load() == 0 || CurrentShip() != nullptr, "the player's ship is one of the table");
  for (u16 row = 0; row < TheShipTable.count.load(); ++row) {
    const Ship &ship = *ShipAt(TheShipTable, row);
    Demand(ship.id == row, "a ship's id is its row");
    const std::string fault = ShipFault(ship);
    Demand(fault.empty(), fault.c_str());
    Demand(ship.fileStem.find('/') == std::string::npos, "the ship's name stays in its folder");
  }
}

void FuzzOne(Bytes input) {
  BeginWithTwoShips();
  Reader r{input.data(), input.size()};
  while (r.left > 0 && !r.failed) {
    const size_t length = std::min<size_t>(TakeU16(&r), r.left);
    const u8 *bytes = TakeBytes(&r, length);
    if (bytes == nullptr) break;
    HandlePacket(bytes, length);
    ++PacketCount;
  }
  CheckWorld();
}
