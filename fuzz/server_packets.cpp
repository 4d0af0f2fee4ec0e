// What games send: packets one after the other, each behind the number of one of two players and two bytes of its length, to a
// server with a ship on disk.
#include <enet/enet.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "fuzz/fuzz.h"
#include "persistence/cursor.h"
#include "platform/threads.h"
#include "server/budgets.h"
#include "server/requests.h"
#include "server/server.h"
#include "server/streams.h"
#include "server/world.h"
#include "world/verify.h"

static ENetPeer *Peers[2];
static u64 PacketCount = 0, EditCount = 0;
constexpr size_t MostFresh = 100;     // edits that a new player is told of, before the ship's file is written anew
constexpr i64 MiddleCell = 5000;

// Peers that are connected to nobody: what is sent to them is thrown away as it is made.
void PrepareTarget() {
  LoadGameTables();
  std::atexit([] {
    ForgetSentShipFiles();
    std::fprintf(stderr, "%llu packets, %llu edits done\n", static_cast<unsigned long long>(PacketCount), static_cast<unsigned long long>(EditCount));
  });
  Demand(enet_initialize() == 0 && OpenWorld(1), "a world");
  ServerHost = enet_host_create(nullptr, 2, NetChannels, 0, 0);
  Demand(ServerHost != nullptr, "a host");
  for (u16 i = 0; i < 2; ++i) {
    Peers[i] = &ServerHost->peers[i];
    Peers[i]->address = {ENET_HOST_TO_NET_32(0x7f000001), i};
  }
  TheServerOptions.Players = 2;
}

static void Join(ENetPeer *peer) {
  WelcomePeer(peer);
  std::vector<u8> hello{PacketHello};
  WriteString(&hello, WireVersion);
  WriteString(&hello, "x");
  HandleRequest(&Clients.back(), hello.data(), hello.size());
  const Ship &ship = *ShipAt(TheShipTable, 0);
  for (int axis = 0; axis < 3; ++axis) Clients.back().motion.place[axis] = ship.position[axis] + MiddleCell * UnitsPerBlock;
}

void FuzzOne(Bytes input) {
  if (FreshEdits().size() > MostFresh) Demand(RefreshStreamFiles(), "the ship can be written");
  Join(Peers[0]);
  WelcomePeer(Peers[1]);
  Reader r{input.data(), input.size()};
  while (r.left > 0 && !r.failed) {
    Client *client = &Clients[TakeU8(&r) % Clients.size()];
    const size_t length = std::min<size_t>(TakeU16(&r), r.left);
    const u8 *bytes = TakeBytes(&r, length);
    client->strange = 0;
    client->leaving = false;
    if (bytes == nullptr) break;
    HandleRequest(client, bytes, length);
    ++PacketCount;
  }
  CheckSilence(Now() + 10);
  ShareMotions(Now());
  u32 edits = 0;
  for (const Client &c : Clients) edits += c.edits;
  EditCount += edits;
  RemoveClient(Peers[1]);
  for (Client &c : Clients) LeaveSeat(&c);
  Clients.clear();
  if (edits == 0) return;
  const ScopedLock world(&WorldMutex);
  const std::string fault = ShipFault(*ShipAt(TheShipTable, 0));
  Demand(fault.empty(), fault.c_str());
}
