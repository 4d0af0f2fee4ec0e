// Start, loop and end of the server.
#include "server/server.h"

#include <enet/enet.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "server/clients.h"
#include "server/console.h"
#include "server/requests.h"
#include "platform/files.h"
#include "server/budgets.h"
#include "server/streams.h"
#include "server/world.h"
#include "world/light.h"

constexpr enet_uint32 LongestWait = 10;  // milliseconds in a pass without packets
constexpr size_t SparePeers = 1024;      // connections beyond the players: of those that are not yet, or are told why not
constexpr double EventSeconds = 0.03;    // after which a pass leaves the rest of the events to the next one
constexpr u16 MostPlayers = 4000;        // the transport can tell 4095 connections apart
constexpr size_t LargestRequest = 4096, MostWaitingRequests = 1 << 20;  // bytes that a client may send at once, and ahead
constexpr int GoodbyeRounds = 50;

constexpr const char *LogName = "server.log";
constexpr int OldLogs = 5;
constexpr std::streamoff LongestLogEnd = 1 << 18;  // bytes: the last line, and all counts that can stand behind it
constexpr const char *NotStarted = "The server did not start";

ServerOptions TheServerOptions;
std::atomic<bool> StopRequested{false};

static std::vector<Asker> WaitForTheEnd;

// The last bytes of the log.
static std::string EndOfLog() {
  std::ifstream file(LogName, std::ios::binary | std::ios::ate);
  const std::streamoff size = file ? static_cast<std::streamoff>(file.tellg()) : 0;
  std::string end(static_cast<size_t>(std::clamp<std::streamoff>(size, 0, LongestLogEnd)), '\0');
  file.seekg(size - static_cast<std::streamoff>(end.size()));
  file.read(end.data(), static_cast<std::streamsize>(end.size()));
  return file ? end : std::string();
}

// Starts that fail one after the other, as those of a service, have one log together: they push no other run's out. Counts of
// lines that came often may stand behind the last one.
static bool LastDidNotStart() {
  std::string end = EndOfLog();
  while (end.ends_with(" times more) \n") || end.ends_with(" times more)\n")) {
    end.pop_back();
    end.erase(end.rfind('\n') + 1);
  }
  return end.ends_with("\n*ERR: " + std::string(NotStarted) + " \n");
}

bool BeginServerLog(std::string *why) {
  std::error_code error;
  *why = "There is no config/ in " + std::filesystem::current_path(error).string() + ": it has the game's tables, copy it there";
  if (!std::filesystem::is_directory("config", error) || !ClaimFolder(why)) return false;
  if (!LastDidNotStart()) MoveLogOn(LogName, OldLogs);
  LogInit(LogName, OldLogs);
  return true;
}

void StopAndTell(Asker asker) {
  WaitForTheEnd.push_back(asker);
  StopRequested = true;
}

static void TellWhatIsKept() {
  const ServerOptions &o = TheServerOptions;
  if (o.RunDataServer != 0) Say("RunDataServer, DataAddress and DataPort are kept, but this server has no data server");
  if (o.IRC != 0) Say("IRC and the keys that begin with it are kept, but this server has no bridge to IRC");
}

// Why there is no host: what its socket would have met.
static std::string WhyNoHost(const ENetAddress &address) {
  const std::string port = std::to_string(address.port);
  const ENetAddress anyPort{address.host, 0};
  const ENetSocket probe = enet_socket_create(ENET_SOCKET_TYPE_DATAGRAM);
  const bool ours = probe != ENET_SOCKET_NULL && enet_socket_bind(probe, &anyPort) == 0;
  if (probe != ENET_SOCKET_NULL) enet_socket_destroy(probe);
  if (!ours) return OptionPlace("Address") + ": this machine doesn't have the address " + TheServerOptions.Address;
  return "Cannot listen on port " + port + ", another program may have it (" + OptionPlace("Port") + ")";
}

static bool Listen() {
  const ServerOptions &o = TheServerOptions;
  if (enet_initialize() != 0) return LogError("Cannot initialize Enet") != 0;
  ENetAddress address{};
  address.host = ENET_HOST_ANY;
  address.port = o.Port;
  if (o.Address.empty()) return LogError((OptionPlace("Address") + ": Address has no value; any is all of this machine's").c_str()) != 0;
  if (o.Address != "0.0.0.0" && enet_address_set_host(&address, o.Address.c_str()) != 0)
    return LogError((OptionPlace("Address") + ": Address is no address: " + o.Address).c_str()) != 0;
  const size_t peers = std::min<size_t>(o.Players + SparePeers, ENET_PROTOCOL_MAXIMUM_PEER_ID);
  ServerHost = enet_host_create(&address, peers, NetChannels, 0, 0);
  if (ServerHost == nullptr) return LogError(WhyNoHost(address).c_str()) != 0;
  GuardConnections(ServerHost);
  LimitHost(ServerHost, LargestRequest, MostWaitingRequests);
  Say("Listening on " + o.Address + " port " + std::to_string(o.Port) + " for " + std::to_string(o.Players) + " players");
  return true;
}

// A file that is there but can't be read stays as its owner wrote it.
static void WriteMissingOptions() {
  std::error_code error;
  if (std::filesystem::symlink_status("serveroptions", error).type() != std::filesystem::file_type::not_found) {
    LogWarn("serveroptions can't be read: the defaults are in force");
    return;
  }
  Say("No serveroptions: writing one with the defaults");
  WriteServerOptions(TheServerOptions);
}

static bool Start() {
  InitServerOptions(&TheServerOptions);
  if (!ReadServerOptions(&TheServerOptions)) WriteMissingOptions();
  if (TheServerOptions.Players > MostPlayers) {
    LogWarn((OptionPlace("Players") + ": Players can be 4000 at most").c_str());
    TheServerOptions.Players = MostPlayers;
  }
  TellWhatIsKept();
  if (LoadMaterials() == 0) return LogError("Unable to load Materials Array") != 0;
  if (LoadComponents() == 0) return LogError("Unable to load Components Array in main program") != 0;
  KeepLight = false;  // nobody looks at it here
  if (!OpenWorld(TheServerOptions.MaxAsteroidSize) || !Listen()) return false;
  OpenControl();
  return true;
}

bool StartServer() {
  if (Start()) return true;
  TellRepeats(true);  // the next start looks for the last line
  return LogError(NotStarted) != 0;
}

static void HandleEvent(const ENetEvent &event) {
  switch (event.type) {
    case ENET_EVENT_TYPE_CONNECT: WelcomePeer(event.peer); break;
    case ENET_EVENT_TYPE_DISCONNECT: RemoveClient(event.peer); break;
    case ENET_EVENT_TYPE_RECEIVE:
      if (Client *client = FindClient(event.peer); client != nullptr)
        HandleRequest(client, event.packet->data, event.packet->dataLength);
      enet_packet_destroy(event.packet);
      break;
    case ENET_EVENT_TYPE_NONE: break;
  }
}

static void Pass() {
  ENetEvent event{};
  int got = enet_host_service(ServerHost, &event, LongestWait);
  for (const double end = Now() + EventSeconds; got > 0; got = Now() < end ? enet_host_check_events(ServerHost, &event) : 0)
    HandleEvent(event);
  const double now = Now();
  CheckSilence(now);
  SharePlayerLists(now);
  ShareMotions(now);
  TellPresence(now);
  PollStreamFiles(now);
  TellRepeats();
  enet_host_flush(ServerHost);
  ReadConsole();
  PollControl(now);
}

void RunServer() {
  while (!StopRequested) Pass();
}

void StopServer() {
  Say("Stopping");
  SayToAll("Server: stopping");
  for (const Client &c : Clients) enet_peer_disconnect_later(c.peer, 0);
  ENetEvent event{};
  for (int round = 0; round < GoodbyeRounds && !Clients.empty(); ++round)
    if (enet_host_service(ServerHost, &event, LongestWait) > 0) HandleEvent(event);
  for (Client &c : Clients) LeaveSeat(&c);
  Clients.clear();
  enet_host_destroy(ServerHost);
  ForgetSentShipFiles();
  ServerHost = nullptr;
  enet_deinitialize();
  RefreshStreamFiles();
  TakeLastLines(Now());
  const bool good = RefreshStreamFiles();  // tries again what failed, and answers who wanted a save meanwhile
  for (const Asker asker : std::exchange(WaitForTheEnd, {})) {
    Answer(asker, good ? "stopped" : "stopped, and not all could be saved");
    EndAnswer(asker, good);
  }
  CloseControl();
  CloseWorld();  // the socket is gone by now: another server may make its own
  Say("Stopped");
}
