// The one connection of this game to a server, as everyone who sends sees it.
#pragma once

#include <atomic>

#include "net/wire.h"

extern std::atomic<bool> Online;             // set while the connection is up; every send looks at it first
extern std::atomic<bool> HasServersShips;    // the table is the server's: its list has come since; before that a row means another ship there
extern std::atomic<ENetHost *> NetHost;      // the game's host, one peer, two channels; made once, never freed
extern std::atomic<ENetPeer *> NetPeer;      // the server; points into the host
