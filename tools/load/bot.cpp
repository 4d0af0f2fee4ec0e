// A player without a picture.
#include "bot.h"

#include <enet/enet.h>

#include <chrono>
#include <thread>

bool ConnectBot(Bot *bot, const char *address, u16 port) {
  ENetAddress to{}, from{};
  if (!bot->from.empty() && enet_address_set_host(&from, bot->from.c_str()) != 0) return false;
  bot->host = enet_host_create(bot->from.empty() ? nullptr : &from, 1, NetChannels, 0, 0);
  if (bot->host == nullptr || enet_address_set_host(&to, address) != 0) return false;
  LimitHost(bot->host, LargestFile, LargestFile);
  to.port = port;
  bot->peer = enet_host_connect(bot->host, &to, NetChannels, 0);
  ENetEvent event{};
  bot->online = bot->peer != nullptr && enet_host_service(bot->host, &event, bot->patience) > 0 && event.type == ENET_EVENT_TYPE_CONNECT;
  return bot->online;
}

void SayHello(Bot *bot, const std::string &version, const std::string &name) {
  std::vector<u8> hello;
  WriteString(&hello, version);
  WriteString(&hello, name);
  PutU8(&hello, 0);
  SendPacket(bot->host, bot->peer, hello, PacketHello, true);
}

bool JoinServer(Bot *bot, const char *address, u16 port, const std::string &name) {
  if (!ConnectBot(bot, address, port)) return false;
  SayHello(bot, WireVersion, name);
  SendLine(bot, "|logged on");
  return true;
}

static void TakeShips(Bot *bot, Reader *r) {
  bot->ships.resize(std::min<size_t>(TakeU32(r), r->left));
  for (std::string &name : bot->ships) name = ReadString(r);
  bot->shipPlaces.resize(bot->ships.size());
  for (Motion &place : bot->shipPlaces) place = ReadMotion(r);
  bot->synced = true;
}

static void TakePlayers(Bot *bot, Reader *r) {
  ++bot->lists;
  bot->players.resize(std::min<size_t>(TakeU16(r), r->left));
  bot->ownRow = TakeU16(r);
  for (std::string &name : bot->players) {
    name = ReadString(r);
    TakeBytes(r, 24);
  }
}

static void TakeEdit(Bot *bot, u8 type, Reader *r) {
  BlockEdit edit;
  if (ReadBlockEdit(type, r, &edit)) bot->edits.push_back(edit);
  else ++bot->faults;
}

static void TakeFile(Bot *bot, Reader *r) {
  const std::string name = ReadString(r);
  bot->files[name] = {r->bytes, r->bytes + r->left};
}

static void TakeOther(Bot *bot, Reader *r) {
  TakeU16(r);
  bot->others.push_back(ReadMotion(r));
}

static void Take(Bot *bot, const u8 *bytes, size_t count) {
  u8 type = 0;
  Reader r;
  std::vector<u8> store;
  bool known = OpenPacket(bytes, count, &type, &r, &store);
  switch (known ? type : 0) {
    case PacketFile: TakeFile(bot, &r); break;
    case PacketShipList: TakeShips(bot, &r); break;
    case PacketPlayerList: TakePlayers(bot, &r); break;
    case PacketOtherPlayer: TakeOther(bot, &r); break;
    case PacketChat: bot->chat.push_back(ReadString(&r)); break;
    case PacketPing: SendPacket(bot->host, bot->peer, nullptr, 0, PacketPong, false); break;
    case PacketSetLocation: bot->place = ReadMotion(&r); break;
    case PacketBlockPlace:
    case PacketBlockRemove:
    case PacketBlockComponent: TakeEdit(bot, type, &r); break;
    default: known = false;
  }
  if (!known || r.failed) ++bot->faults;
}

void PollBot(Bot *bot) {
  ENetEvent event{};
  while (bot->host != nullptr && enet_host_service(bot->host, &event, 0) > 0) {
    if (event.type == ENET_EVENT_TYPE_DISCONNECT) bot->online = false;
    if (event.type != ENET_EVENT_TYPE_RECEIVE) continue;
    Take(bot, event.packet->data, event.packet->dataLength);
    enet_packet_destroy(event.packet);
  }
}

bool PollBotUntil(Bot *bot, double seconds, bool (*done)(const Bot &)) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
  for (PollBot(bot); !done(*bot); PollBot(bot)) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

void SendRaw(Bot *bot, const std::vector<u8> &bytes, bool reliable) {
  ENetPacket *packet = enet_packet_create(bytes.data(), bytes.size(), reliable ? ENET_PACKET_FLAG_RELIABLE : 0);
  if (packet != nullptr && !QueuePacket(bot->peer, packet)) enet_packet_destroy(packet);
  enet_host_flush(bot->host);
}

void SendEdit(Bot *bot, const BlockEdit &edit) {
  std::vector<u8> payload;
  WriteBlockEdit(&payload, edit);
  SendPacket(bot->host, bot->peer, payload, edit.type, true);
}

void SendPlace(Bot *bot, const Motion &m) {
  std::vector<u8> payload;
  WriteMotion(&payload, m);
  SendPacket(bot->host, bot->peer, payload, PacketPlayerLocation, false);
}

Motion StandBeside(Bot *bot, const BlockEdit &edit) {
  Motion m = bot->shipPlaces[static_cast<size_t>(edit.shipRow)];
  const u16 cell[3] = {edit.x, edit.y, edit.z};
  for (int axis = 0; axis < 3; ++axis) m.place[axis] += cell[axis] * UnitsPerBlock;
  std::vector<u8> payload;
  WriteMotion(&payload, m);
  SendPacket(bot->host, bot->peer, payload, PacketPlayerLocation, true);
  return m;
}

void SendLine(Bot *bot, const std::string &text) { SendText(bot->host, bot->peer, text, PacketChat, true); }

void CrashBot(Bot *bot) {
  if (bot->host != nullptr) enet_host_destroy(bot->host);
  *bot = Bot{};
}

void CloseBot(Bot *bot) {
  if (bot->host != nullptr) {
    if (bot->online) enet_peer_disconnect_now(bot->peer, 0);
    enet_host_destroy(bot->host);
  }
  *bot = Bot{};
}
