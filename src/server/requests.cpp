// Hello, chat, places and block edits of the clients. Nothing that a packet holds is believed before it was looked at.
//
// A game does its own edits at once and hears of them no more, so two players who change one cell at the same time, or one whose
// edit is refused, would end with different blocks. Such a cell is contested for a while: all edits of it go to everyone, their
// senders too. Then all hear them in one order, and the last one stands everywhere.
#include "server/requests.h"

#include <enet/enet.h>

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <tuple>

#include "core/log.h"
#include "server/server.h"
#include "server/streams.h"
#include "server/world.h"

constexpr double HelloPatience = 5, SilencePatience = 30, PingDelay = 5, RefusalDelay = 1;  // seconds
constexpr double EditsPerSecond = 200, ChatPerSecond = 2, ChatBurst = 10;
constexpr double LampPrice = 8;        // edits as which one of a lamp counts
constexpr double SlotsPerSecond = 10, SlotBurst = 40;
constexpr double SlotTimeShare = 0.2, SlotTimeBurst = 2;  // of the loop, for the new chunks of all players
constexpr u32 MostRefused = 1000;      // edits of one client in a second, before more of them are strange
constexpr size_t MostOfOneAddress = 8;
// Seconds for which an edit is remembered, and a cell contested behind its last one: as long as a game may be behind. While more
// cells than that are edited, the others are soon forgotten.
constexpr double ContestTime = 60, ShortContestTime = 5;
constexpr size_t MostRecentEdits = 100000;
constexpr size_t MostOldFileBytes = 512u << 20;  // of replaced ship files that some still get
constexpr size_t LongestName = 32, LongestLine = 255;
constexpr size_t LargestRequest = 4096;  // bytes, packed or not
constexpr int MostStrange = 20;          // packets that no game sends, before their sender is dropped
constexpr enet_uint32 ConnectPatience = 3000;  // milliseconds that a connection may take to stand
constexpr enet_uint32 Patience = 30000;  // milliseconds in which a game may be busy with loading our ships
constexpr const char *OwnName = "Server";  // who speaks for the server in the chat

static bool OnThisMachine(const ENetAddress &address) { return (ENET_NET_TO_HOST_32(address.host) >> 24) == 127; }

// Connections that were never finished count too: the host looks at its limit for every new one.
static int LimitDuplicates(ENetHost *host, ENetEvent *) {
  host->duplicatePeers = OnThisMachine(host->receivedAddress) ? size_t{ENET_PROTOCOL_MAXIMUM_PEER_ID} : MostOfOneAddress + 1;  // who gets a word
  return 0;
}

void GuardConnections(ENetHost *host) { host->intercept = LimitDuplicates; }

// One that its maker has left unfinished gives its place back soon.
static void HurryUnfinished() {
  for (size_t i = 0; i < ServerHost->peerCount; ++i)
    if (ServerHost->peers[i].state == ENET_PEER_STATE_ACKNOWLEDGING_CONNECT)
      enet_peer_timeout(&ServerHost->peers[i], 0, ConnectPatience, ConnectPatience);
}

static bool TooManyOf(const ENetAddress &address) {
  const auto same = [&address](const Client &c) { return c.peer->address.host == address.host; };
  return !OnThisMachine(address) && static_cast<size_t>(std::count_if(Clients.begin(), Clients.end(), same)) > MostOfOneAddress;
}

void WelcomePeer(ENetPeer *peer) {
  char address[64] = "?";
  enet_address_get_host_ip(&peer->address, address, sizeof address);
  static u32 id = 0;
  enet_peer_timeout(peer, 0, Patience, 2 * Patience);
  Client c;
  c.peer = peer;
  c.id = ++id;
  c.address = std::string(address) + ":" + std::to_string(peer->address.port);
  c.connected = c.heard = c.budgetsAt = Now();
  c.editBudget = EditsPerSecond;
  c.chatBudget = ChatBurst;
  Clients.push_back(c);
  Say("Connection from " + c.address);
  if (TooManyOf(peer->address)) DropClient(&Clients.back(), "too many connections from your address", LastWords);
}

static std::string FreeName(const std::string &wanted) {
  const size_t first = std::min(wanted.find_first_not_of(' '), wanted.size());
  std::string base = wanted.substr(first, wanted.find_last_not_of(' ') + 1 - first);
  if (base.empty()) base = "Unknown";
  std::string name = base;
  const bool ours = strncasecmp(base.c_str(), OwnName, std::strlen(OwnName)) == 0;  // and all that could be taken for it
  for (int i = 2; (ours && name == base) || FindClientByName(name) != nullptr; ++i) name = base + "(" + std::to_string(i) + ")";
  return name;
}

static void SendEdit(Client *only, const Client *except, const BlockEdit &edit) {
  std::vector<u8> payload;
  WriteBlockEdit(&payload, edit);
  if (only != nullptr) SendTo(only, edit.type, payload, true);
  else SendToAll(edit.type, payload, true, except);
}

// All ships as files, then the table that names them, and what was edited since the files were written: what is edited from now
// on comes behind it.
static void SendWorld(Client *client) {
  WantStreamFiles();  // for those who come later
  std::vector<bool> sent;
  for (const std::string &stem : ShipStems())
    sent.push_back(SafeFileName(stem) && HasStreamFile(static_cast<u16>(sent.size())) && SendShipFile(client, stem, StreamPath(stem)));
  SendTo(client, PacketShipList, ShipListPayload(sent), true);
  for (const BlockEdit &edit : FreshEdits()) SendEdit(client, nullptr, edit);
  client->worldCommands = enet_list_size(&client->peer->outgoingCommands);
}

// A few may come from a game that is newer, or gone wrong.
static void Suspect(Client *client) {
  if (++client->strange >= MostStrange) DropClient(client, "too many packets that no game sends");
}

static void TakeHello(Client *client, Reader r) {
  const std::string version = ReadString(&r), name = Printable(ReadString(&r), LongestName);
  if (!client->name.empty()) return Suspect(client);
  if (r.failed) return DropClient(client, "a hello that can't be read");
  if (version != WireVersion) return DropClient(client, "this server is for another version of the game", LastWords);
  if (PlayerCount() >= TheServerOptions.Players) return DropClient(client, "the server is full", LastWords);
  if (OldFileBytes() > MostOldFileBytes) return DropClient(client, "too many downloads at once, please come back in a minute", LastWords);
  if (StreamFilesComing()) return DropClient(client, "the ships are being written, please come back in a minute", LastWords);
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
  if (r.failed || text.empty()) return Suspect(client);
  if (client->chatBudget < 1) return SayTo(client, "Server: not so fast");
  client->chatBudget -= 1;
  ++client->lines;
  const std::string line = text[0] == '|' ? "* " + client->name + " " + text.substr(1) : client->name + ": " + text;
  Say(line);
  SayToAll(line);
}

namespace {

struct RecentEdit {
  u32 by;          // the client's id
  double at;
  bool contested;
};

}  // namespace
using CellKey = std::tuple<i32, u16, u16, u16>;
static std::map<CellKey, RecentEdit> RecentEdits;  // by cell

static bool IsContested(const Client &client, const BlockEdit &e, double now) {
  RecentEdit fresh{client.id, now, false};
  const auto [found, isNew] = RecentEdits.try_emplace({e.shipRow, e.x, e.y, e.z}, fresh);
  if (isNew) return false;
  const RecentEdit &last = found->second;
  fresh.contested = now - last.at <= ContestTime && (last.contested || last.by != client.id);
  found->second = fresh;
  return fresh.contested;
}

static void ForgetOldEdits(double now) {
  const double age = RecentEdits.size() > MostRecentEdits ? ShortContestTime : ContestTime;
  std::erase_if(RecentEdits, [now, age](const auto &entry) { return now - entry.second.at > age; });
}

// The sender has done the edit already: they are told what really stands there, and hear their next edits of the cell too,
// which may be on their way.
static void Refuse(Client *client, const BlockEdit &edit, const char *why, double now) {
  if (now - client->refusedSince >= 1) {
    client->refusedSince = now;
    client->refusedNow = 0;
  }
  ++client->refused[why];
  if (++client->refusedNow > MostRefused) return Suspect(client);
  BlockEdit truth;
  if (EditOfCell(edit, &truth)) {
    RecentEdits[{edit.shipRow, edit.x, edit.y, edit.z}] = {client->id, now, true};
    SendEdit(client, nullptr, truth);
  }
}

namespace {

// Tokens for new chunks on disk. They are of an address: who comes again finds them as they were. Games on this machine, which
// tests and measures others, have their own each.
struct SlotBudget {
  double left = SlotBurst, filled = 0;
};

}  // namespace
static std::map<std::pair<u32, u16>, SlotBudget> SlotBudgets;
static SlotBudget SlotTime{SlotTimeBurst, 0};  // of everybody: seconds of the loop

static void Fill(SlotBudget *b, double most, double rate, double now) {
  b->left = std::min(most, b->left + (now - b->filled) * rate);
  b->filled = now;
}

static SlotBudget *SlotBudgetOf(const Client &client, double now) {
  const ENetAddress &address = client.peer->address;
  SlotBudget *b = &SlotBudgets[{address.host, OnThisMachine(address) ? address.port : u16{0}}];
  Fill(b, SlotBurst, SlotsPerSecond, now);
  return b;
}

static void ForgetFullSlotBudgets(double now) {
  std::erase_if(SlotBudgets, [now](const auto &entry) { return now - entry.second.filled > SlotBurst / SlotsPerSecond; });
}

static const char *DoEditInNewChunk(const Client &client, const BlockEdit &edit, double now) {
  SlotBudget *const slots = SlotBudgetOf(client, now);
  Fill(&SlotTime, SlotTimeBurst, SlotTimeShare, now);
  if (slots->left < 1) return "more than 10 new chunks a second";
  if (SlotTime.left <= 0) return "more new chunks than the disk can take";
  const char *why = DoEdit(edit, client.motion);
  if (why == nullptr) slots->left -= 1;
  SlotTime.left -= Now() - now;
  return why;
}

static void TakeEdit(Client *client, u8 type, Reader r, double now) {
  BlockEdit edit;
  const bool good = ReadBlockEdit(type, &r, &edit);
  if (r.failed) return Suspect(client);
  if (!good) return Refuse(client, edit, "out of range", now);
  if (ChangesNothing(edit)) return;
  const double price = TouchesLamp(edit) ? LampPrice : 1;
  if (client->editBudget < price) return Refuse(client, edit, "more than 200 a second", now);
  client->editBudget -= price;
  const char *why = NeedsSlot(edit) ? DoEditInNewChunk(*client, edit, now) : DoEdit(edit, client->motion);
  if (why != nullptr) return Refuse(client, edit, why, now);
  ++client->edits;
  SendEdit(nullptr, IsContested(*client, edit, now) ? nullptr : client, edit);
}

static void TakePlace(Client *client, Reader r) {
  const Motion m = ReadMotion(&r);
  if (r.failed) return Suspect(client);
  client->motion = m;
}

void HandleRequest(Client *client, const u8 *bytes, size_t count) {
  u8 type = 0;
  Reader r;
  std::vector<u8> store;
  const double now = Now();
  if (client->leaving) return;
  client->heard = now;
  if (count > LargestRequest || !OpenPacket(bytes, count, &type, &r, &store, LargestRequest)) return Suspect(client);
  if (type == PacketHello) return TakeHello(client, r);
  if (client->name.empty()) return Suspect(client);  // the game says hello first
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
    default: LogWarn("Unknown packet type received."); Suspect(client);
  }
}

void CheckSilence(double now) {
  static double pinged = 0, told = 0;
  const bool tell = now - told >= RefusalDelay;
  if (tell) told = now;
  const bool ping = now - pinged >= PingDelay;
  if (ping) {
    pinged = now;
    DropSlowClients();
    ForgetOldEdits(now);
    ForgetFullSlotBudgets(now);
    ForgetSentShipFiles();
  }
  if (tell) HurryUnfinished();
  for (Client &c : Clients) {
    if (tell) LogRefusals(&c);
    if (c.peer->state != ENET_PEER_STATE_CONNECTED) continue;
    if (c.leaving) EndIfDue(&c, now);
    else if (c.name.empty() && now - c.connected > HelloPatience) DropClient(&c, "no hello");
    else if (now - c.heard > SilencePatience) DropClient(&c, "no answer");
    else if (ping && !c.name.empty()) SendTo(&c, PacketPing, {}, true);
  }
}
