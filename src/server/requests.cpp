// Hello, chat, places and block edits of the clients. Nothing that a packet holds is believed before it was looked at.
#include "server/requests.h"

#include <enet/enet.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "core/log.h"
#include "server/server.h"
#include "server/world.h"

constexpr double HelloPatience = 5, SilencePatience = 30, PingDelay = 5;  // seconds
constexpr double EditsPerSecond = 200, ChatPerSecond = 2, ChatBurst = 10;
constexpr double ContestTime = 5;      // seconds for which a cell that two players changed counts as contested
constexpr size_t ContestSweep = 4096;  // cells remembered before old ones are thrown out
constexpr size_t LongestName = 32, LongestLine = 255;

void WelcomePeer(ENetPeer *peer) {
  char address[64] = "?";
  enet_address_get_host_ip(&peer->address, address, sizeof address);
  Client c;
  c.peer = peer;
  c.address = std::string(address) + ":" + std::to_string(peer->address.port);
  c.connected = c.heard = c.budgetsAt = Now();
  c.editBudget = EditsPerSecond;
  c.chatBudget = ChatBurst;
  Clients.push_back(c);
  Say("Connection from " + c.address);
}

static std::string FreeName(const std::string &wanted) {
  const std::string base = wanted.empty() ? "Unknown" : wanted;
  std::string name = base;
  for (int i = 2; FindClientByName(name) != nullptr; ++i) name = base + "(" + std::to_string(i) + ")";
  return name;
}

// All ships as files, then the table that names them: what is edited from now on comes behind it.
static void SendWorld(Client *client) {
  RefreshStreamFiles();
  for (const std::string &stem : ShipStems())
    if (SafeFileName(stem)) SendFile(ServerHost, client->peer, StreamPath(stem).c_str(), stem.c_str());
  SendTo(client, PacketShipList, ShipListPayload(), true);
}

static void TakeHello(Client *client, Reader r) {
  const std::string version = ReadString(&r), name = Printable(ReadString(&r), LongestName);
  if (!client->name.empty()) return;
  if (r.failed) return DropClient(client, "a hello that can't be read");
  if (version != WireVersion) return DropClient(client, "this server is for another version of the game");
  if (PlayerCount() >= TheServerOptions.Players) return DropClient(client, "the server is full");
  client->name = FreeName(name);
  client->motion = StartingPlace(PlayerCount() - 1);
  Say(client->name + " plays from " + client->address);
  SendWorld(client);
  std::vector<u8> place;
  WriteMotion(&place, client->motion);
  SendTo(client, PacketSetLocation, place, true);
  SendPlayerLists();
}

static void FillBudgets(Client *c, double now) {
  const double spent = now - c->budgetsAt;
  c->editBudget = std::min(EditsPerSecond, c->editBudget + spent * EditsPerSecond);
  c->chatBudget = std::min(ChatBurst, c->chatBudget + spent * ChatPerSecond);
  c->budgetsAt = now;
}

// A line that begins with "|" tells what its sender does.
static void TakeChat(Client *client, Reader r) {
  const std::string text = Printable(ReadString(&r), LongestLine);
  if (r.failed || text.empty()) return;
  if (client->chatBudget < 1) return SayTo(client, "Server: not so fast");
  client->chatBudget -= 1;
  ++client->lines;
  const std::string line = text[0] == '|' ? "* " + client->name + " " + text.substr(1) : client->name + ": " + text;
  Say(line);
  SayToAll(line);
}

// Cells that were edited lately, by whom, and until when two players' edits may cross on their way. The edits of a contested
// cell go back to their senders too: then everyone hears all of them in one order and ends with the same block.
struct RecentEdit {
  const ENetPeer *by;
  double at;
  bool contested;
};
using CellKey = std::tuple<i32, u16, u16, u16>;
static std::map<CellKey, RecentEdit> RecentEdits;

static bool IsContested(const Client &client, const BlockEdit &e, double now) {
  if (RecentEdits.size() > ContestSweep)
    std::erase_if(RecentEdits, [now](const auto &entry) { return now - entry.second.at > ContestTime; });
  RecentEdit fresh{client.peer, now, false};
  const auto [found, isNew] = RecentEdits.try_emplace({e.shipRow, e.x, e.y, e.z}, fresh);
  if (isNew) return false;
  const RecentEdit &last = found->second;
  fresh.contested = now - last.at <= ContestTime && (last.contested || last.by != client.peer);
  found->second = fresh;
  return fresh.contested;
}

static void SendEdit(Client *only, const Client *except, const BlockEdit &edit) {
  std::vector<u8> payload;
  WriteBlockEdit(&payload, edit);
  if (only != nullptr) SendTo(only, edit.type, payload, true);
  else SendToAll(edit.type, payload, true, except);
}

// The sender has done the edit already: they are told what really stands there.
static void Refuse(Client *client, const BlockEdit &edit, const char *why, double now) {
  ++client->refused;
  BlockEdit truth;
  if (edit.x < CellsPerAxis && edit.y < CellsPerAxis && edit.z < CellsPerAxis && EditOfCell(edit, &truth))
    SendEdit(client, nullptr, truth);
  if (now - client->refusedAt < 1) return;
  Say("Refused " + std::to_string(client->refused) + " edits of " + client->name + ": " + why);
  client->refused = 0;
  client->refusedAt = now;
}

static void TakeEdit(Client *client, u8 type, Reader r, double now) {
  BlockEdit edit;
  if (!ReadBlockEdit(type, &r, &edit)) return Refuse(client, edit, "out of range", now);
  if (client->editBudget < 1) return Refuse(client, edit, "more than 200 a second", now);
  client->editBudget -= 1;
  const char *why = DoEdit(edit);
  if (why != nullptr) return Refuse(client, edit, why, now);
  ++client->edits;
  SendEdit(nullptr, IsContested(*client, edit, now) ? nullptr : client, edit);
}

static void TakePlace(Client *client, Reader r) {
  const Motion m = ReadMotion(&r);
  if (!r.failed) client->motion = m;
}

void HandleRequest(Client *client, const u8 *bytes, size_t count) {
  u8 type = 0;
  Reader r;
  std::vector<u8> store;
  const double now = Now();
  client->heard = now;
  if (!OpenPacket(bytes, count, &type, &r, &store)) return DropClient(client, "a packet that can't be opened");
  if (type == PacketHello) return TakeHello(client, r);
  if (client->name.empty()) return;  // the game says hello first
  FillBudgets(client, now);
  switch (type) {
    case PacketChat: return TakeChat(client, r);
    case PacketPlayerLocation: return TakePlace(client, r);
    case PacketBlockPlace:
    case PacketBlockRemove:
    case PacketBlockComponent: return TakeEdit(client, type, r, now);
    case PacketPong:
    case PacketShipLocation:  // ships stand where the server has them
    case PacketUnused: return;
    default: LogWarn("Unknown packet type received.");
  }
}

void CheckSilence(double now) {
  static double pinged = 0;
  const bool ping = now - pinged >= PingDelay;
  if (ping) pinged = now;
  for (Client &c : Clients) {
    if (c.peer->state != ENET_PEER_STATE_CONNECTED) continue;
    if (c.name.empty() && now - c.connected > HelloPatience) DropClient(&c, "no hello");
    else if (now - c.heard > SilencePatience) DropClient(&c, "no answer");
    else if (ping && !c.name.empty()) SendTo(&c, PacketPing, {}, true);
  }
}
