// The session with a server. The list of players belongs to the world mutex; the connection to NetMutex (net/wire.h).
#pragma once

#include <string>
#include <vector>

#include "net/connection.h"

struct RemotePlayer {
  i64 solarLoc[3] = {};
  i32 velocity[3] = {};
  float relativeLoc[3] = {};  // blocks, in the current ship
  std::string name;
};

extern std::vector<RemotePlayer> RemotePlayers;   // the server's list, the local player included; world mutex
extern u16 OwnPlayerRow;                          // the local player's row, never drawn; world mutex

bool InitNetwork();                               // Connects to Options.ServerURL. True if the session is up. Main thread.
bool ConnectToServer(const char *address, u16 port);  // Leaves the present server first. The thread that polls.
void PollNetwork();                               // One round of receiving. Movement's thread; takes world, then move, not both.
void HandlePacket(const u8 *data, size_t length); // Does what one packet says; what can't be right is logged and dropped.

// Any thread; nothing is sent while Online is clear.
void SendChat(const char *text);                  // Lines of over 255 bytes and unknown commands go nowhere.
std::string LineToSend(const char *text);         // As SendChat sends it: actions begin with "|". Empty for what goes nowhere.
void SendPlayerLocation(const i64 (&solarLoc)[3], const i32 (&velocity)[3]);
void ShowPlayerList();                            // A chat line of its own with all names. Takes the world mutex.
