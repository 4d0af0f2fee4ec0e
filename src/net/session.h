// The session with a server, as the rest of the game sees it.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "core/types.h"

struct RemotePlayer {
  i64 solarLoc[3] = {};
  i32 velocity[3] = {};
  float relativeLoc[3] = {};  // blocks, in the current ship
  std::string name;
};

extern std::atomic<bool> Online;                  // set while the connection is up; every send looks at it
extern std::vector<RemotePlayer> RemotePlayers;   // the server's list, the local player included; world mutex
extern u16 OwnPlayerRow;                          // the local player's row, never drawn; world mutex

bool InitNetwork();                               // True if the session is up.
void PollNetwork();
void SendChat(const char *text);
void SendPlayerLocation(const i64 (&solarLoc)[3], const i32 (&velocity)[3]);
void ShowPlayerList();
