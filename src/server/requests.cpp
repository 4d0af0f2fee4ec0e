// Hello, chat, places and block edits of the clients. Nothing that a packet holds is believed before it was looked at.
//
// A game does its own edits at once and hears of them no more, so two players who change one cell at the same time, or one whose
// edit is refused, would end with different blocks. Such a cell is contested for a while: all edits of it go to everyone, their
// senders too. Then all hear them in one order, and the last one stands everywhere.
#include "server/requests.h"

#include <enet/enet.h>
#include <enet/time.h>

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <tuple>
#include <utility>

#include "core/log.h"
#include "server/budgets.h"
#include "server/server.h"
#include "server/streams.h"
#include "server/world.h"

constexpr double HelloPatience = 5, SilencePatience = 30, PingDelay = 5, RefusalDelay = 1;  // seconds
constexpr double LampPrice = 8;        // edits as which one of a lamp counts
// Seconds of silence behind which a connection is a lost one, when somebody of its name comes from its address; and the same soon
// after it came, when a game may be busy with loading. A game that is there answers in a tenth of a second.
constexpr double LostPatience = 3, LoadPatience = 10, LoadTime = 30;
constexpr double WaitPatience = 0.5;   // seconds of waiting for a name, before its owner is told why
constexpr size_t MostHeld = 8;         // packets of one who waits for their name
constexpr u32 MostRefused = 1000;      // edits of one client in a second, before more of them are strange
constexpr size_t MostPeersOfOneAddress = 2 * MostOfOneAddress;  // lost, unfinished and turned away ones too
// Seconds for which an edit is remembered, and a cell contested behind its last one: as long as a game may be behind. While more
// cells than that are edited, the others are soon forgotten.
constexpr double ContestTime = 60, ShortContestTime = 5;
constexpr size_t MostRecentEdits = 100000;
constexpr size_t MostOldFileBytes = 512u << 20;  // of replaced ship files that some still get
constexpr size_t LongestName = 32, LongestLine = 255;
constexpr size_t LargestRequest = 4096;  // bytes, packed or not
constexpr int MostStrange = 20;          // packets that no game sends, before their sender is dropped
// Milliseconds that a connection may take to stand, by how many there are that don't: a game itself gives up after 500.
constexpr struct { size_t unfinished; enet_uint32 patience; } ConnectPatience[] = {{512, 400}, {64, 1000}, {0, 3000}};
constexpr double HurryDelay = 0.1;     // seconds
constexpr enet_uint32 Patience = 30000;  // milliseconds in which a game may be busy with loading our ships
constexpr std::string_view Greeting = "|logged on";  // the first line of a game, by itself
constexpr const char *OwnName = "Server";  // who speaks for the server in the chat

// Connections that were never finished count too: the host looks at its limit for every new one.
static int LimitDuplicates(ENetHost *host, ENetEvent *) {
  const bool here = (ENET_NET_TO_HOST_32(host->receivedAddress.host) >> 24) == 127;
  host->duplicatePeers = here ? size_t{ENET_PROTOCOL_MAXIMUM_PEER_ID} : MostPeersOfOneAddress;
  return 0;
}

void GuardConnections(ENetHost *host) { host->intercept = LimitDuplicates; }

static bool IsUnfinished(const ENetPeer &peer) { return peer.state == ENET_PEER_STATE_ACKNOWLEDGING_CONNECT; }

// One that its maker has left unfinished gives its place back soon, and sooner while many come.
static void HurryUnfinished() {
  ENetPeer *const first = ServerHost->peers, *const end = first + ServerHost->peerCount;
  const size_t unfinished = static_cast<size_t>(std::count_if(first, end, IsUnfinished));
  const auto *step = ConnectPatience;
  while (unfinished < step->unfinished) ++step;
  for (ENetPeer *peer = first; peer < end && unfinished > 0; ++peer)
    if (IsUnfinished(*peer)) enet_peer_timeout(peer, 0, step->patience, step->patience);
}

// Seconds since anything came from there, or was acknowledged.
static double SilentFor(const Client &c, double now) {
  const double unanswered = ENET_TIME_DIFFERENCE(ServerHost->serviceTime, c.peer->lastReceiveTime) / 1000.0;
  return std::min(now - c.heard, unanswered);
}

static bool MayBeLost(const Client &c, double now) {
  return SilentFor(c, now) >= (now - c.connected < LoadTime ? LoadPatience : LostPatience);
}

static u32 TurnedAway = 0;  // connections since the last line about them

void WelcomePeer(ENetPeer *peer) {
  const double now = Now();
  if (!OnThisMachine(peer) && !SpendConnection(peer, now)) {
    ++TurnedAway;
    return enet_peer_disconnect_now(peer, 0);
  }
  char address[64] = "?";
  enet_address_get_host_ip(&peer->address, address, sizeof address);
  static u32 id = 0;
  enet_peer_timeout(peer, 0, Patience, 2 * Patience);
  Client c;
  c.peer = peer;
  c.id = ++id;
  c.address = std::string(address) + ":" + std::to_string(peer->address.port);
  c.connected = c.heard = now;
  Clients.push_back(c);
  Say("Connection from " + c.address);
}

static void TellTurnedAway() {
  if (TurnedAway == 0) return;
  Say("Turned away " + std::to_string(std::exchange(TurnedAway, 0)) + " connections of addresses that connect all the time");
}

static std::string CleanName(const std::string &wanted) {
  const size_t first = std::min(wanted.find_first_not_of(' '), wanted.size());
  const std::string name = wanted.substr(first, wanted.find_last_not_of(' ') + 1 - first);
  return name.empty() ? "Unknown" : name;
}

// The first, second, third ... of a name: "Ada", "Ada(2)", "Ada(3)".
static std::string NumberedName(const std::string &base, int number) {
  const bool ours = strncasecmp(base.c_str(), OwnName, std::strlen(OwnName)) == 0;  // and all that could be taken for it
  if (ours) ++number;
  return number == 1 ? base : base + "(" + std::to_string(number) + ")";
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

// They have their name: the game gets the world. Its own lines from before are taken now.
static void Enter(Client *client) {
  const std::vector<std::vector<u8>> held = std::exchange(client->held, {});
  client->wanted.clear();
  Say(client->name + " plays from " + client->address);
  SendWorld(client);
  std::vector<u8> place;
  WriteMotion(&place, client->motion);
  SendTo(client, PacketSetLocation, place, true);
  WantPlayerLists();
  for (const std::vector<u8> &packet : held) HandleRequest(client, packet.data(), packet.size());
}

static bool IsHome(const Client &a, const Client &b) { return a.peer->address.host == b.peer->address.host; }

// For good, and all hear of it. The clients behind this one change their places.
static void EndNow(const Client &client) {
  ENetPeer *peer = client.peer;
  RemoveClient(peer);
  enet_peer_disconnect_now(peer, 0);  // should it be there after all, it hears of it
}

// Of the players of their address, the one whose seat can be had: who is leaving, or lost. Null: none.
static const Client *WhoGivesWay(const Client &client, double now) {
  const Client *best = nullptr;
  for (const Client &c : Clients)
    if (c.seat >= 0 && IsHome(c, client) && (c.leaving || MayBeLost(c, now)) &&
        (best == nullptr || SilentFor(c, now) > SilentFor(*best, now))) best = &c;
  return best;
}

// Whether somebody of their address has not been heard of since they asked.
static bool MayGetASeat(const Client &client, double now) {
  return std::any_of(Clients.begin(), Clients.end(), [&client, now](const Client &c) {
    return c.seat >= 0 && IsHome(c, client) && SilentFor(c, now) >= now - client.wantedAt;
  });
}

// An address has no more players than seats. One who comes when all are taken gets a lost one's, or waits while it isn't known
// whether one is lost. True: the clients have changed their places, or this one is in or dropped.
static bool EnterAnew(Client *client, const std::string &name, double now) {
  if (!HasFreeSeat(client->peer)) {
    const ENetPeer *peer = client->peer;
    const Client *other = WhoGivesWay(*client, now);
    if (other == nullptr && MayGetASeat(*client, now)) return false;
    if (other == nullptr) return DropClient(client, "too many connections from your address", LastWords), true;
    Say(other->name + " gives their place to " + client->wanted + " from " + client->address);
    EndNow(*other);
    client = FindClient(peer);
  }
  if (PlayerCount() >= TheServerOptions.Players) return DropClient(client, "the server is full", LastWords), true;
  if (!TakeSeat(client)) return DropClient(client, "too many connections from your address", LastWords), true;
  client->name = name;
  client->motion = StartingPlace(PlayerCount() - 1);
  Enter(client);
  return true;
}

// The row, the place and the budgets of the lost connection are theirs again, and nobody hears of it.
static void TakeOver(Client *client, Client *lost) {
  Say(lost->name + " is back from " + client->address + ": the connection from " + lost->address + " was lost");
  LogRefusals(lost);
  client->name = lost->name;
  client->row = lost->row;
  LeaveSeat(lost);
  TakeSeat(client);  // the one that was left last
  client->motion = lost->motion;
  std::fill(std::begin(client->motion.velocity), std::end(client->motion.velocity), 0);
  if (!HasRoom(client->motion)) client->motion = StartingPlace(static_cast<size_t>(std::max(lost->row, 0)));
  client->edits += lost->edits;
  client->lines += lost->lines;
  client->returned = true;
  enet_peer_disconnect_now(lost->peer, 0);  // should it be there after all, it hears of it
  std::swap(*client, *lost);
  Clients.erase(Clients.begin() + (client - Clients.data()));
  Enter(lost < client ? lost : lost - 1);
}

// Those whose connection was lost, and not those whom somebody sent away.
static bool IsLost(const Client &c, double now) { return MayBeLost(c, now) && (!c.leaving || c.unanswered); }

// Gives them the first name that is free, or that a lost connection of their address has. One that still answers keeps its name,
// however much its namesake is at home there too: so the second of two players in one home is "Ada(2)", and after a crash gets that
// again. While it isn't known whether somebody answers, they wait. True: the clients have changed their places.
static bool TryToEnter(Client *client, double now);

// The name of one who was sent away is free at once for who comes from there: as for anybody else, all hear who goes and who comes.
static void ComeBehind(const Client &leaving, const ENetPeer *peer, double now) {
  EndNow(leaving);
  TryToEnter(FindClient(peer), now);
}

static bool TryToEnter(Client *client, double now) {
  for (int number = 1;; ++number) {
    const std::string name = NumberedName(client->wanted, number);
    Client *other = FindClientByName(name);
    if (other == nullptr) return EnterAnew(client, name, now);
    if (!IsHome(*other, *client)) continue;
    if (IsLost(*other, now)) return TakeOver(client, other), true;
    if (other->leaving) return ComeBehind(*other, client->peer, now), true;
    if (SilentFor(*other, now) >= now - client->wantedAt) return false;
  }
}

// Those of their address who have such a name, or all when one of them would have to give way.
static void AskTheirHome(const Client &client) {
  const bool all = !HasFreeSeat(client.peer);
  for (Client &c : Clients)
    if (!c.name.empty() && (all || c.name.starts_with(client.wanted)) && IsHome(c, client)) SendTo(&c, PacketPing, {}, true);
}

static const char *WhyNoHello(const Client &client, const std::string &version) {
  if (version != WireVersion) return "this server is for another version of the game";
  if (!OnThisMachine(client.peer) && !SpendJoin(client.peer, Now()))
    return "too many players come from your address, please come back in a minute";
  if (OldFileBytes() > MostOldFileBytes) return "too many downloads at once, please come back in a minute";
  if (StreamFilesComing()) return "the ships are being written, please come back in a minute";
  return nullptr;
}

static void TakeHello(Client *client, Reader r) {
  const std::string version = ReadString(&r), name = Printable(ReadString(&r), LongestName);
  if (!client->name.empty() || !client->wanted.empty()) return Suspect(client);
  if (r.failed) return DropClient(client, "a hello that can't be read");
  if (const char *why = WhyNoHello(*client, version); why != nullptr) return DropClient(client, why, LastWords);
  client->wanted = CleanName(name);
  client->wantedAt = Now();
  AskTheirHome(*client);
  TryToEnter(client, client->wantedAt);
}

static void TellToWait(Client *client, double now) {
  if (client->toldToWait || now - client->wantedAt < WaitPatience) return;
  client->toldToWait = true;
  SayTo(client, "Server: a connection from your address doesn't answer, it may be your last one; please wait, for 10 seconds at most");
}

static void LetWaitingIn(double now) {
  for (size_t i = 0; i < Clients.size(); ++i) {
    if (Clients[i].wanted.empty() || Clients[i].leaving) continue;
    if (TryToEnter(&Clients[i], now)) return LetWaitingIn(now);
    TellToWait(&Clients[i], now);
  }
}

static void Hold(Client *client, u8 type, const u8 *bytes, size_t count) {
  if (type == PacketChat && client->held.size() < MostHeld) client->held.emplace_back(bytes, bytes + count);
}

// A line that begins with "|" tells what its sender does.
static void TakeChat(Client *client, Reader r) {
  const std::string text = Printable(ReadString(&r), LongestLine);
  if (r.failed || text.empty()) return Suspect(client);
  const std::string line = text[0] == '|' ? "* " + client->name + " " + text.substr(1) : client->name + ": " + text;
  if (text == Greeting && !std::exchange(client->greeted, true)) return client->returned ? void() : SayPresence(line);
  if (!SpendLine(client, Now())) return SayTo(client, "Server: not so fast");
  ++client->lines;
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

static const char *DoEditInNewChunk(const Client &client, const BlockEdit &edit, double now) {
  if (!HasSlot(client.peer, now)) return "more than 10 new chunks a second";
  if (!HasSlotTime(now)) return "more new chunks than the disk can take";
  const char *why = DoEdit(edit, client.motion);
  if (why == nullptr) SpendSlot(client.peer);
  SpendSlotTime(Now() - now);
  return why;
}

static void TakeEdit(Client *client, u8 type, Reader r, double now) {
  BlockEdit edit;
  const bool good = ReadBlockEdit(type, &r, &edit);
  if (r.failed) return Suspect(client);
  if (!good) return Refuse(client, edit, "out of range", now);
  if (ChangesNothing(edit)) return;
  const double price = TouchesLamp(edit) ? LampPrice : 1;
  if (!SpendEdit(client, price, now)) return Refuse(client, edit, "more than 200 a second", now);
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
  if (!client->wanted.empty()) return Hold(client, type, bytes, count);
  if (client->name.empty()) return Suspect(client);  // the game says hello first
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

static void DropUnanswered(Client *client) {
  client->unanswered = true;
  DropClient(client, "no answer");
}

void CheckSilence(double now) {
  static double pinged = 0, told = 0, hurried = 0;
  const bool tell = now - told >= RefusalDelay;
  if (tell) told = now;
  const bool ping = now - pinged >= PingDelay;
  if (ping) {
    pinged = now;
    DropSlowClients();
    ForgetOldEdits(now);
    ForgetFullBudgets(now);
    ForgetSentShipFiles();
  }
  if (tell) TellTurnedAway();
  if (now - hurried >= HurryDelay) {
    hurried = now;
    HurryUnfinished();
  }
  LetWaitingIn(now);
  for (Client &c : Clients) {
    if (tell) LogRefusals(&c);
    if (c.peer->state != ENET_PEER_STATE_CONNECTED) continue;
    if (c.leaving) EndIfDue(&c, now);
    else if (c.name.empty() && c.wanted.empty() && now - c.connected > HelloPatience) DropClient(&c, "no hello");
    else if (now - c.heard > SilencePatience) DropUnanswered(&c);
    else if (ping && !c.name.empty()) SendTo(&c, PacketPing, {}, true);
  }
}
