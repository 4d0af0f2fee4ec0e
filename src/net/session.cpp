// Reaching the server, receiving, and chat.
#include "net/session.h"

#include <enet/enet.h>

#include <chrono>
#include <cstring>
#include <string_view>

#include "content/options.h"
#include "core/log.h"
#include "core/utils.h"
#include "net/chat_log.h"
#include "net/dispatch.h"
#include "platform/threads.h"
#include "world/retire.h"

constexpr enet_uint32 ConnectPatience = 500, PollPatience = 1, ServerPatience = 10000;  // milliseconds
constexpr int DisconnectRows = 4;
constexpr size_t LargestPacket = LargestFile + 1024;  // with the file's name
constexpr size_t LongestLine = 255;       // of chat, as it is sent
constexpr size_t LongestShownLine = 512;  // as it comes back, with its sender's name
constexpr size_t MostRetired = 200;       // ships
constexpr int LogBurst = 200;             // lines of the log that a server may cause in a second
constexpr double RoundSeconds = 0.05;     // after which a round of receiving leaves the rest to the next one

static bool EnetReady = false;  // main thread
static LogLimit ServersLines{LogBurst, 0};  // of this second; main thread at the start, then the thread that polls

static bool MakeHost() {
  if (!EnetReady && enet_initialize() != 0) return LogError("Cannot initialize Enet") != 0;
  EnetReady = true;
  if (NetHost.load() != nullptr) return true;
  ENetHost *host = enet_host_create(nullptr, 1, NetChannels, 0, 0);
  if (host == nullptr) return LogError("Could not create enet host.") != 0;
  LimitHost(host, LargestPacket, LargestPacket);
  NetHost = host;
  return true;
}

// Waits for the connect event. A sender that saw the last session still online waits as long, and then sends nothing.
static bool Reach(const ENetAddress &address) {
  const ScopedLock net(&NetMutex);
  ENetPeer *peer = enet_host_connect(NetHost, &address, NetChannels, 0);
  NetPeer = peer;
  if (peer == nullptr) return false;
  enet_peer_timeout(peer, 0, ServerPatience, 3 * ServerPatience);
  ENetEvent event{};
  const bool any = enet_host_service(NetHost, &event, ConnectPatience) > 0;
  if (any && event.type == ENET_EVENT_TYPE_CONNECT) return true;
  if (any && event.type == ENET_EVENT_TYPE_RECEIVE) enet_packet_destroy(event.packet);
  enet_peer_reset(peer);
  return false;
}

static bool FindAddress(const char *name, u16 port, ENetAddress *address) {
  if (enet_address_set_host(address, name) != 0) return false;
  address->port = port;
  char numbers[64] = "";
  if (enet_address_get_host_ip(address, numbers, sizeof numbers) == 0) LogText("Connecting to:", numbers);
  return true;
}

static void Greet() {
  std::vector<u8> hello;
  WriteString(&hello, WireVersion);
  WriteString(&hello, FrontOf(Options.PlayerName, LongestLine));
  PutU8(&hello, 0);
  SendPacket(NetHost, NetPeer, hello, PacketHello, true);
  SendText(NetHost, NetPeer, "|logged on", PacketChat, true);
}

static bool Connect(const char *name, u16 port) {
  Online = false;
  ENetAddress address{};
  if (!FindAddress(name, port, &address) || !Reach(address)) {
    LogWarn("Failed to connect to server.");
    AddChatLine("Could not connect to server");
    return false;
  }
  LogInfo("Connected to server successfully!");
  ServersLines = {LogBurst, 0};
  HasServersShips = false;
  Online = true;
  Greet();
  return true;
}

bool InitNetwork() {
  {
    const ScopedLock world(&WorldMutex);
    RemotePlayers.reserve(1);
  }
  return MakeHost() && Connect(Options.ServerURL.c_str(), GamePort);
}

bool ConnectToServer(const char *address, u16 port) {
  if (!MakeHost()) return false;
  Online = false;
  if (ENetPeer *peer = NetPeer.load(); peer != nullptr) {
    const ScopedLock net(&NetMutex);
    enet_peer_disconnect(peer, 0);
    enet_host_flush(NetHost);
    enet_peer_reset(peer);  // the only peer's place is needed for the next server
  }
  return Connect(address, port);
}

static void TakeChat(Reader r) {
  const std::string text = ReadString(&r);
  if (r.failed) {
    LogWarn("A chat packet that is too short was dropped");
    return;
  }
  AddLabelledChatLine("Chat:", Printable(text, LongestShownLine).c_str());
}

static void DoPacket(const u8 *data, size_t length) {
  u8 type = 0;
  Reader r;
  std::vector<u8> store;
  if (!OpenPacket(data, length, &type, &r, &store)) {
    LogWarn("A packet that can't be opened was dropped");
    return;
  }
  switch (type) {
    case PacketFile: return TakeFile(r);
    case PacketShipLocation: return TakeShipLocation(r);
    case PacketPing: SendPacket(NetHost, NetPeer, nullptr, 0, PacketPong, false); return;
    case PacketChat: return TakeChat(r);
    case PacketSetLocation: return TakeOwnLocation(r);
    case PacketOtherPlayer: return TakeOtherPlayer(r);
    case PacketNudge: LogInfo("Server nudged our location. Are we cheating or lagging?"); return;
    case PacketBlockPlace: ApplyBlockPlace(r); return;
    case PacketBlockRemove: ApplyBlockRemove(r); return;
    case PacketBlockComponent: ApplyBlockComponent(r); return;
    case PacketPlayerList: return TakePlayerList(r);
    case PacketShipList: return TakeShipList(r);
    case PacketShipAdded: return TakeShipAdded(r);
    default: LogWarn("Unknown packet type received.");
  }
}

// What a server makes this game log has its pace: what is beyond it is told of once a second.
void HandlePacket(const u8 *data, size_t length) {
  using Clock = std::chrono::steady_clock;
  static Clock::time_point filled = Clock::now();
  const Clock::time_point now = Clock::now();
  if (now - filled >= std::chrono::seconds(1)) {
    if (ServersLines.dropped != 0) LogInt("Lines about the server that were left out:", ServersLines.dropped);
    ServersLines = {LogBurst, 0};
    filled = now;
  }
  LimitLog(&ServersLines);
  DoPacket(data, length);
  LimitLog(nullptr);
}

static void LoseServer() {
  Online = false;
  ReplaceChatLines(DisconnectRows, "ERROR: DISCONNECTED FROM SERVER! Please quit and re-enter tarnvale");
}

static bool NextEvent(ENetEvent *event) {
  const ScopedLock net(&NetMutex);
  return NetHost.load() != nullptr && enet_host_service(NetHost, event, PollPatience) > 0;
}

static void DestroyPacket(ENetPacket *packet) {
  const ScopedLock net(&NetMutex);
  enet_packet_destroy(packet);
}

// A flood must not keep the player from moving: what isn't reached in this round waits in the host, up to its limit. So does
// everything while many ships of old lists wait for their end.
void PollNetwork() {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  ENetEvent event{};
  while (std::chrono::duration<double>(Clock::now() - start).count() < RoundSeconds && RetiredCount() <= MostRetired && NextEvent(&event)) {
    if (event.type == ENET_EVENT_TYPE_DISCONNECT) {
      LoseServer();
    } else if (event.type == ENET_EVENT_TYPE_RECEIVE) {
      HandlePacket(event.packet->data, event.packet->dataLength);
      DestroyPacket(event.packet);
    } else {
      LogWarn("Unknown Enet event occurred.");
    }
  }
}

// The place where the line as it is sent begins: an action begins with "|" in place of ": " or "/me ". Null: not sent at all.
static const char *StartOfLine(char *line) {
  if (line[0] == ':' && line[1] == ' ') {
    line[1] = '|';
    return line + 1;
  }
  if (line[0] != '/') return line;
  const bool action = (line[1] | 32) == 'm' && (line[2] | 32) == 'e' && line[3] == ' ';
  if (!action) return nullptr;
  line[3] = '|';
  return line + 3;
}

std::string LineToSend(const char *text) {
  if (std::strlen(text) > LongestLine) return "";
  std::string line = text;
  const char *start = StartOfLine(line.data());
  return start == nullptr ? "" : start;
}

void SendChat(const char *text) {
  if (!Online) return;
  const std::string line = LineToSend(text);
  if (!line.empty()) SendText(NetHost, NetPeer, line, PacketChat, true);
}
