// What the players of an address may do in a time. The budgets are the address's, however often they come again: each address
// has a seat for each player who may be there at once, and who comes next takes the one that was left last, as it was left. A
// client names its seat by the number: what it spends is looked up by the address each time. Games on this machine, which tests
// and measures others, have budgets of their own each.
#pragma once

#include "server/clients.h"

constexpr size_t MostOfOneAddress = 8;

struct Tokens {
  double left = 0, filled = 0;  // filled: when left was counted; 0 never, and then there is the most
};

struct Seat {
  Tokens edits, lines;
  bool taken = false;
  double leftAt = 0;            // when its last player went; 0: there was none
};

bool OnThisMachine(const ENetPeer *peer);
bool HasFreeSeat(const ENetPeer *peer);     // Its address has.
bool TakeSeat(Client *client);              // Of its address, for itself alone. False: none is free, and it has none.
void LeaveSeat(Client *client);             // Does nothing for one without.
// False: there is not so much left, or the client has no seat, and nothing is spent.
bool SpendEdit(Client *client, double price, double now);
bool SpendLine(Client *client, double now);
bool SpendConnection(const ENetPeer *peer, double now);
bool SpendJoin(const ENetPeer *peer, double now);
bool SpendPresence(double now);             // A line for all about somebody who came or went: of everybody.
bool HasSlot(const ENetPeer *peer, double now);   // A new chunk on disk.
void SpendSlot(const ENetPeer *peer);
bool HasSlotTime(double now);               // The loop's share for the new chunks of all players.
void SpendSlotTime(double seconds);
void ForgetFullBudgets(double now);         // Addresses that nobody plays from and that have all back by now.
