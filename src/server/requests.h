// What the server does with the packets of its clients.
#pragma once

#include "server/clients.h"

void GuardConnections(ENetHost *host);                         // From here on no address can take all places.
void WelcomePeer(ENetPeer *peer);                              // A connection, not yet a player.
void HandleRequest(Client *client, const u8 *bytes, size_t count);
void CheckSilence(double now);                                 // Pings, and drops those who don't answer or never say hello.
