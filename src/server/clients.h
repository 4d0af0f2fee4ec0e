// Who is connected, and what is sent to them. The server has one thread; nothing here takes a lock but the calls of ENet.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "net/wire.h"

constexpr double LastWords = 4;  // seconds for which somebody who is dropped can read why

struct Client {
  ENetPeer *peer = nullptr;
  u32 id = 0;                 // never used again for another one
  std::string address;        // for the log
  std::string name;           // empty until the hello
  Motion motion;              // as last told
  Motion shown;               // as last sent to the others
  double connected = 0, heard = 0;  // times
  double shownAt = 0;
  int seat = -1;              // of their address's (server/budgets.h), from the name on; -1: none
  int row = -1;               // of the list of players as it was last sent; -1: not in it yet
  bool listed = false;        // they have had a list
  std::string wanted;         // the name that they asked for, while it may be their own from before
  double wantedAt = 0;        // when they asked; the name is theirs or another one's soon behind that
  bool toldToWait = false;
  std::vector<std::vector<u8>> held;  // packets from before they have one
  bool greeted = false;       // their line about coming has come
  bool returned = false;      // from a lost connection: nobody heard that they were gone
  std::map<std::string_view, u32> refused;  // edits since the last line in the log about them, by the reason
  int strange = 0;            // packets that no game would send
  double refusedSince = 0;    // the second that refusedNow counts
  u32 refusedNow = 0;         // edits refused in it
  size_t worldCommands = 0;   // that the world they were sent took of the queue
  bool leaving = false;       // dropped: nothing more of theirs counts
  double leavesAt = 0;        // ... and when the connection ends
  bool unanswered = false;    // dropped because nothing came from there: their name waits for them
  u32 edits = 0, lines = 0;   // in all, for the log and the list
};

extern std::vector<Client> Clients;  // in the order of their arrival; those with a name are rows of the player list
extern ENetHost *ServerHost;

double Now();                                            // Seconds, monotonic.
void Say(const std::string &line);                       // An event, with date and time, to the log.
Client *FindClient(const ENetPeer *peer);                // Null: none.
Client *FindClientByName(std::string_view name);
size_t PlayerCount();                                    // Clients with a name.

// To one or to all with a name but one (null: to all). Queued, on its way at the end of the loop's pass.
void SendTo(Client *client, u8 type, const std::vector<u8> &payload, bool reliable);
void SendToAll(u8 type, const std::vector<u8> &payload, bool reliable, const Client *except);
void SayTo(Client *client, std::string_view text);       // A line of chat.
void SayToAll(std::string_view text);
// Queues a ship's file, which is in memory once for all who get it at the same time. False: there is none to send.
bool SendShipFile(Client *client, const std::string &stem, const std::string &path);
void ForgetShipFile(const std::string &stem);            // It has been replaced. Those who are getting it still do.
size_t OldFileBytes();                                   // What replaced files take of the memory.
void ForgetSentShipFiles();                              // Those that nobody is getting any more.
void WantPlayerLists();                                  // Somebody came or went: SharePlayerLists sends the lists soon.
void SharePlayerLists(double now);                       // To everyone, each with their own row; twice a second at most.
void ShareMotions(double now);                           // Who has moved, to the others, by the rows of the last lists.
// A line for all about somebody who came or went. When too many do, the rest are told of together a little later.
void SayPresence(const std::string &line);
void TellPresence(double now);
void LogRefusals(Client *client);                        // One line for all since the last one, or none.
// Says goodbye to them, and ends the connection after some seconds, for a game shows nothing else from
// then on. The disconnect event removes the row.
void DropClient(Client *client, const char *why, double after = 0);
void EndIfDue(Client *client, double now);               // The connection of one who was dropped.
void DropSlowClients();                                  // Those who leave more unanswered than the server wants to hold.
void RemoveClient(const ENetPeer *peer);                 // After the disconnect event.
