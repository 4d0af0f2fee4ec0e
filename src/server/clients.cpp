// The connected games.
#include "server/clients.h"

#include <enet/enet.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <utility>

#include "core/log.h"
#include "platform/threads.h"
#include "server/budgets.h"

constexpr double ListDelay = 0.5;      // seconds between two lists of players
constexpr double ShareDelay = 0.1;     // seconds between two places of one player, as the others hear of them
constexpr double RefreshDelay = 2.0;   // the same for one who drifts as told
constexpr size_t MostWaiting = 400000;  // commands queued for one client: a largest file is half of it
constexpr double StepSeconds = 0.033;  // of a game's movement: a place falls by its velocity in each

std::vector<Client> Clients;
ENetHost *ServerHost = nullptr;
static std::map<std::string, ENetPacket *> ShipFiles;  // by stem; one use of each packet is the table's
static std::vector<ENetPacket *> OldFiles;             // replaced, and on their way to somebody; the same
static bool ListsWanted = false;                       // the last lists sent are no longer true
static double ListsSentAt = 0;
static u32 Unsaid = 0;                                 // lines about who came or went that are still to be told of

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void Say(const std::string &line) {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char stamp[32] = "";
  std::strftime(stamp, sizeof stamp, "%Y-%m-%d %H:%M:%S ", &local);
  LogInfo((stamp + line).c_str());
}

Client *FindClient(const ENetPeer *peer) {
  const auto found = std::find_if(Clients.begin(), Clients.end(), [peer](const Client &c) { return c.peer == peer; });
  return found == Clients.end() ? nullptr : &*found;
}

Client *FindClientByName(std::string_view name) {
  const auto found = std::find_if(Clients.begin(), Clients.end(), [name](const Client &c) { return c.name == name; });
  return found == Clients.end() || name.empty() ? nullptr : &*found;
}

size_t PlayerCount() {
  return static_cast<size_t>(std::count_if(Clients.begin(), Clients.end(), [](const Client &c) { return !c.name.empty(); }));
}

// A game without a list has no row for a player who moves.
static bool Understands(const Client &c, u8 type) { return !c.name.empty() && (type != PacketOtherPlayer || c.listed); }

// One packet for all who get it: ENet counts its users and frees it behind the last.
static void Queue(u8 type, const std::vector<u8> &payload, bool reliable, const Client *only, const Client *except) {
  const std::vector<u8> bytes = SealPacket(type, payload.data(), payload.size());
  const ScopedLock lock(&NetMutex);
  ENetPacket *packet = enet_packet_create(bytes.data(), bytes.size(), reliable ? ENET_PACKET_FLAG_RELIABLE : 0);
  if (packet == nullptr) return;
  for (const Client &c : Clients)
    if (only != nullptr ? &c == only : Understands(c, type) && &c != except) QueuePacket(c.peer, packet);
  if (packet->referenceCount == 0) enet_packet_destroy(packet);
}

void SendTo(Client *client, u8 type, const std::vector<u8> &payload, bool reliable) {
  Queue(type, payload, reliable, client, nullptr);
}

void SendToAll(u8 type, const std::vector<u8> &payload, bool reliable, const Client *except) {
  Queue(type, payload, reliable, nullptr, except);
}

void ForgetShipFile(const std::string &stem) {
  const ScopedLock lock(&NetMutex);
  if (const auto found = ShipFiles.find(stem); found != ShipFiles.end()) {
    OldFiles.push_back(found->second);
    ShipFiles.erase(found);
  }
}

size_t OldFileBytes() {
  size_t bytes = 0;
  for (const ENetPacket *packet : OldFiles) bytes += packet->dataLength;
  return bytes;
}

// Whether only the table has a use of it. Then it is gone.
static bool EndUnused(ENetPacket *packet) {
  if (packet->referenceCount > 1) return false;
  enet_packet_destroy(packet);
  return true;
}

void ForgetSentShipFiles() {
  const ScopedLock lock(&NetMutex);
  std::erase_if(ShipFiles, [](const auto &file) { return EndUnused(file.second); });
  std::erase_if(OldFiles, EndUnused);
}

static ENetPacket *ShipFilePacket(const std::string &stem, const std::string &path) {
  if (const auto found = ShipFiles.find(stem); found != ShipFiles.end()) return found->second;
  std::vector<u8> bytes;
  if (!ReadFilePacket(path.c_str(), stem.c_str(), &bytes)) return nullptr;
  ENetPacket *packet = enet_packet_create(bytes.data(), bytes.size(), ENET_PACKET_FLAG_RELIABLE);
  if (packet == nullptr) return nullptr;
  packet->referenceCount = 1;  // ours
  return ShipFiles[stem] = packet;
}

bool SendShipFile(Client *client, const std::string &stem, const std::string &path) {
  const ScopedLock lock(&NetMutex);
  ENetPacket *packet = ShipFilePacket(stem, path);
  return packet != nullptr && QueuePacket(client->peer, packet);
}

static std::vector<u8> TextPayload(std::string_view text) {
  std::vector<u8> payload;
  WriteString(&payload, text);
  return payload;
}

void SayTo(Client *client, std::string_view text) { SendTo(client, PacketChat, TextPayload(text), true); }

void SayToAll(std::string_view text) { SendToAll(PacketChat, TextPayload(text), true, nullptr); }

static void SendPlayerLists() {
  std::vector<u8> rows;
  int row = 0;
  for (Client &c : Clients) {
    if (c.name.empty()) continue;
    c.row = row++;
    WriteString(&rows, c.name);
    for (const i64 v : c.motion.place) PutU64(&rows, static_cast<u64>(v));
  }
  for (Client &c : Clients) {
    if (c.name.empty()) continue;
    std::vector<u8> list;
    PutU16(&list, static_cast<u16>(row));
    PutU16(&list, static_cast<u16>(c.row));
    PutBytes(&list, rows.data(), rows.size());
    SendTo(&c, PacketPlayerList, list, true);
    c.listed = true;
    c.shownAt = 0;  // new rows stand still until the next place
  }
}

void WantPlayerLists() { ListsWanted = true; }

// However fast players come and go, each list is a packet with all names for everyone. Until the next one the rows of the last
// one count: who is new has none yet, and a row of who has left is spoken of no more.
void SharePlayerLists(double now) {
  if (!ListsWanted || now - ListsSentAt < ListDelay) return;
  ListsWanted = false;
  ListsSentAt = now;
  SendPlayerLists();
}

void SayPresence(const std::string &line) {
  if (Unsaid == 0 && SpendPresence(Now())) SayToAll(line);
  else ++Unsaid;
}

void TellPresence(double now) {
  if (Unsaid == 0 || !SpendPresence(now)) return;
  SayToAll("* " + std::to_string(std::exchange(Unsaid, 0)) + " more came or went");
}

static bool SameMotion(const Motion &a, const Motion &b) {
  return std::equal(a.place, a.place + 3, b.place) && std::equal(a.velocity, a.velocity + 3, b.velocity);
}

static bool SameVelocity(const Motion &a, const Motion &b) { return std::equal(a.velocity, a.velocity + 3, b.velocity); }

// Whether a game that carries the shown motion on by itself is still right, to a twentieth of a block.
static bool DriftsAsShown(const Client &c, double now) {
  if (!SameVelocity(c.motion, c.shown)) return false;
  const double steps = (now - c.shownAt) / StepSeconds;
  for (int axis = 0; axis < 3; ++axis) {
    const double foretold = static_cast<double>(c.shown.place[axis]) - steps * c.shown.velocity[axis];
    const double slack = 500 + 2.0 * std::abs(static_cast<double>(c.shown.velocity[axis]));
    if (std::abs(foretold - static_cast<double>(c.motion.place[axis])) > slack) return false;
  }
  return true;
}

void ShareMotions(double now) {
  for (Client &c : Clients) {
    if (c.row < 0) continue;
    if (now - c.shownAt < ShareDelay) continue;
    if (now - c.shownAt < RefreshDelay && (SameMotion(c.motion, c.shown) || DriftsAsShown(c, now))) continue;
    std::vector<u8> payload;
    PutU16(&payload, static_cast<u16>(c.row));
    WriteMotion(&payload, c.motion);
    SendToAll(PacketOtherPlayer, payload, false, &c);
    c.shown = c.motion;
    c.shownAt = now;
  }
}

void LogRefusals(Client *client) {
  if (client->refused.empty()) return;
  std::string line = "Refused edits of " + client->name + ":";
  for (const auto &[why, count] : client->refused) line.append(" ").append(std::to_string(count)).append(" (").append(why).append(")");
  Say(line);
  client->refused.clear();
}

void EndIfDue(Client *client, double now) {
  if (now >= client->leavesAt) enet_peer_disconnect_later(client->peer, 0);
}

void DropClient(Client *client, const char *why, double after) {
  if (client->leaving) return;
  Say("Dropping " + (client->name.empty() ? client->address : client->name) + ": " + why);
  SayTo(client, std::string("Server: ") + why);
  client->leaving = true;
  client->leavesAt = Now() + after;
  EndIfDue(client, Now());
}

// No goodbye: it would only wait in the same queue.
void DropSlowClients() {
  for (Client &c : Clients) {
    if (enet_list_size(&c.peer->outgoingCommands) < MostWaiting + c.worldCommands || c.peer->state != ENET_PEER_STATE_CONNECTED) continue;
    Say("Dropping " + (c.name.empty() ? c.address : c.name) + ": too slow for what happens here");
    c.leaving = true;
    enet_peer_disconnect(c.peer, 0);
  }
}

void RemoveClient(const ENetPeer *peer) {
  Client *found = FindClient(peer);
  if (found == nullptr) return;
  LogRefusals(found);
  LeaveSeat(found);
  const Client gone = *found;
  Clients.erase(Clients.begin() + (found - Clients.data()));
  Say((gone.name.empty() ? gone.address : gone.name + " (" + gone.address + ")") + " has left, with " +
      std::to_string(gone.edits) + " edits and " + std::to_string(gone.lines) + " lines");
  if (gone.name.empty()) return;
  SayPresence("* " + gone.name + " logged off");
  WantPlayerLists();
}
