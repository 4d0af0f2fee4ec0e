// A player without a picture, for the load tool and for the tests of the server: it joins, answers pings, and keeps what it is
// told for whoever plays it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "net/wire.h"

struct Bot {
  std::string from;                  // its address on this machine; empty: as the system chooses
  u32 patience = 5000;               // milliseconds for a connection to stand
  ENetHost *host = nullptr;
  ENetPeer *peer = nullptr;
  bool online = false;
  bool synced = false;               // the list of ships has come
  std::map<std::string, std::vector<u8>> files;  // by ship
  std::vector<std::string> ships;    // by row
  std::vector<Motion> shipPlaces;    // by row
  std::vector<std::string> players;  // by row
  u16 ownRow = 0;
  size_t lists = 0;                  // of players, that have come
  std::vector<std::string> chat;
  std::vector<BlockEdit> edits;      // as they came; the caller empties it
  std::vector<Motion> others;        // the same, of PacketOtherPlayer
  Motion place;                      // where the server has put it
  size_t faults = 0;                 // packets that can't be right
};

bool ConnectBot(Bot *bot, const char *address, u16 port);  // Only the connection. False: not in time.
bool JoinServer(Bot *bot, const char *address, u16 port, const std::string &name);  // ... and the hello of a game.
void SayHello(Bot *bot, const std::string &version, const std::string &name);
void PollBot(Bot *bot);                                     // All that has come by now.
bool PollBotUntil(Bot *bot, double seconds, bool (*done)(const Bot &));  // False: not within that time.
void SendRaw(Bot *bot, const std::vector<u8> &bytes, bool reliable = true);  // A packet as it is, type byte and all.
void SendEdit(Bot *bot, const BlockEdit &edit);
void SendPlace(Bot *bot, const Motion &m);
Motion StandBeside(Bot *bot, const BlockEdit &edit);  // Sends a place from which the edit is in reach.
void SendLine(Bot *bot, const std::string &text);
void CrashBot(Bot *bot);                                    // Is gone, and the server hears nothing of it.
void CloseBot(Bot *bot);                                    // Without a word, when it is still online. Keeps nothing.
