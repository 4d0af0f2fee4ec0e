// The players of the server, the local one included.
#include <algorithm>

#include "core/log.h"
#include "gameplay/player.h"
#include "net/chat_log.h"
#include "net/dispatch.h"
#include "net/session.h"
#include "platform/threads.h"

constexpr size_t LongestShownName = 64;
constexpr i16 MostPlayers = 4000;             // what a server can tell apart
constexpr size_t SmallestPlayerRow = 2 + 24;  // bytes of a list row: a name of one letter and a place

std::vector<RemotePlayer> RemotePlayers;
u16 OwnPlayerRow = 0;

// World mutex held.
static void Relate(RemotePlayer *p) {
  const Ship *ship = CurrentShip();
  if (ship != nullptr) RelativeTo(*ship, p->solarLoc, p->relativeLoc);
}

// Those that are there, when the list ends too early.
static std::vector<RemotePlayer> ReadPlayers(Reader *r, size_t count) {
  std::vector<RemotePlayer> players;
  players.reserve(std::min(count, r->left / SmallestPlayerRow));
  while (players.size() < count) {
    RemotePlayer p;
    p.name = Printable(ReadString(r), LongestShownName);
    for (i64 &v : p.solarLoc) v = static_cast<i64>(TakeU64(r));
    if (r->failed) {
      LogWarn("The list of players ends too early");
      return players;
    }
    players.push_back(std::move(p));
  }
  return players;
}

void TakePlayerList(Reader r) {
  const i16 count = static_cast<i16>(TakeU16(&r));
  const u16 own = TakeU16(&r);
  if (r.failed || count < 0 || count > MostPlayers) {
    LogError("Bad number of players from server.");
    return;
  }
  std::vector<RemotePlayer> players = ReadPlayers(&r, static_cast<size_t>(count));
  LogInfo("Got new player list:");
  for (const RemotePlayer &p : players) LogInfo(p.name.c_str());
  const ScopedLock world(&WorldMutex);
  OwnPlayerRow = own;
  RemotePlayers.swap(players);
  for (RemotePlayer &p : RemotePlayers) Relate(&p);
}

void TakeOtherPlayer(Reader r) {
  const u16 row = TakeU16(&r);
  const Motion m = ReadMotion(&r);
  const ScopedLock world(&WorldMutex);
  if (r.failed || row >= RemotePlayers.size()) {
    LogError("Player number wrong");
    return;
  }
  RemotePlayer &p = RemotePlayers[row];
  std::copy(std::begin(m.place), std::end(m.place), p.solarLoc);
  std::copy(std::begin(m.velocity), std::end(m.velocity), p.velocity);
  Relate(&p);
}

void TakeOwnLocation(Reader r) {
  const Motion m = ReadMotion(&r);
  if (r.failed) {
    LogWarn("A location packet that is too short was dropped");
    return;
  }
  LogInfo("Server asked us to change location. Changing.");
  const ScopedLock move(&MoveMutex);
  Player p = ReadPlayer();
  u32 speed = 0;
  for (int axis = 0; axis < 3; ++axis) {
    p.solarLoc[axis] = m.place[axis];
    p.velocity[axis] = m.velocity[axis];
    speed += static_cast<u32>(m.velocity[axis]);  // the plain sum; it wraps
  }
  p.speed = static_cast<i32>(speed);
  if (const Ship *ship = CurrentShip(); ship != nullptr) RelativeTo(*ship, p.solarLoc, p.relativeLoc);
  StoreMotion(p);
}

void SendPlayerLocation(const i64 (&solarLoc)[3], const i32 (&velocity)[3]) {
  if (!Online) return;
  Motion m;
  std::copy(std::begin(solarLoc), std::end(solarLoc), m.place);
  std::copy(std::begin(velocity), std::end(velocity), m.velocity);
  std::vector<u8> payload;
  WriteMotion(&payload, m);
  SendPacket(NetHost, NetPeer, payload, PacketPlayerLocation, false);
}

void ShowPlayerList() {
  std::string line = "Players: ";
  {
    const ScopedLock world(&WorldMutex);
    for (size_t row = 0; row < RemotePlayers.size(); ++row) line += (row == 0 ? "" : ", ") + RemotePlayers[row].name;
  }
  AddChatLine(line.c_str());
}
