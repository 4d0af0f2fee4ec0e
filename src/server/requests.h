// What the server does with the packets of its clients.
#pragma once

#include "server/clients.h"

void GuardConnections(ENetHost *host);                         // From here on no address can take all places.
void WelcomePeer(ENetPeer *peer);                              // A connection, not yet a player.
void HandleRequest(Client *client, const u8 *bytes, size_t count);
// Pings, drops those who don't answer or never say hello, and lets those in whose name had to be looked at.
void CheckSilence(double now);
