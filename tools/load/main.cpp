// Fills a server with players that fly and build, and proves that all of them end in the same world: each sender's edits reach
// every other one whole and in order, and a player who comes afterwards finds in the server's files what the others see.
//
//   tarnvale_load ADDRESS PORT CLIENTS SECONDS [PID OF THE SERVER]
//
// To be run in an installation, for its tables. Ends with 1 when the worlds differ or an edit was lost.
#include <enet/enet.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <thread>
#include <unordered_map>

#include "content/components.h"
#include "content/materials.h"
#include "bot.h"
#include "persistence/stream.h"

constexpr int MostClients = 200;             // their numbers travel in a byte of the block
constexpr double MoveDelay = 0.033, EditDelay = 0.2, Patience = 60;  // seconds
constexpr u16 SharedCells = 8;               // that all build in
constexpr int OwnCells = 1000;

namespace {

// One player, and the world as they know it: the material of each cell that anyone has changed, 0 for a removed block.
struct Player {
  Bot bot;
  std::unordered_map<u64, u16> world;
  std::array<u16, MostClients> lastSeen{};   // number of the last block of each player
  u16 sent = 0;                              // blocks placed
  Motion motion;
  u64 room = 0;                              // where they build now: blocks are placed from near
  int placed = 0;                            // edits, to come back in time
  double nextMove = 0, nextEdit = 0;
  size_t lost = 0, heard = 0;
};

}  // namespace

static std::vector<std::unique_ptr<Player>> Players;
static std::minstd_rand Generator(7);

static unsigned Random() { return static_cast<unsigned>(Generator()); }

static double Now() { return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(); }

static u64 KeyOf(const BlockEdit &e) { return static_cast<u64>(e.shipRow) << 48 | u64{e.x} << 32 | u64{e.y} << 16 | e.z; }

static void Note(Player *p, const BlockEdit &e) { p->world[KeyOf(e)] = e.type == PacketBlockPlace ? static_cast<u16>(e.block.material) : u16{0}; }

// A block carries its sender's number in its second byte and their count of blocks in its temperature.
static void TakeEdit(Player *p, const BlockEdit &e) {
  Note(p, e);
  ++p->heard;
  if (e.type != PacketBlockPlace || e.block.second >= Players.size()) return;
  const size_t sender = e.block.second;
  const bool own = Players[sender].get() == p;  // only contested cells come back
  const u16 count = static_cast<u16>(e.block.temp);
  if (own ? count <= p->lastSeen[sender] : count != p->lastSeen[sender] + 1) ++p->lost;
  p->lastSeen[sender] = count;
}

// Mostly in a room of one's own, sometimes where all build.
static BlockEdit NextEdit(size_t number) {
  const Player &p = *Players[number];
  BlockEdit e;
  e.shipRow = static_cast<i32>(number % p.bot.ships.size());
  const unsigned cell = Random() % OwnCells, kind = Random() % 20;
  e.x = static_cast<u16>(1000 + 10 * number + cell % 10);
  e.y = static_cast<u16>(2000 + cell / 10 % 10);
  e.z = static_cast<u16>(3000 + cell / 100);
  if (kind < 4) {
    e.shipRow = 0;
    e.x = e.y = 500;  // in nobody's own room
    e.z = static_cast<u16>(1500 + Random() % SharedCells);
  } else if (kind < 8) {
    const auto found = p.world.find(KeyOf(e));
    if (found != p.world.end() && found->second != 0) e.type = PacketBlockRemove;
  }
  return e;
}

static void Edit(size_t number) {
  Player *p = Players[number].get();
  BlockEdit e = NextEdit(number);
  if (e.type == PacketBlockPlace) {
    e.block.state = StateWhole;
    e.block.rotation = 1;
    e.block.component = 2;
    e.block.material = (1 + Random() % 5) & 0xffff;
    e.block.second = number & 0xff;
    e.block.temp = ++p->sent;
    e.block.tail[0] = 1;  // unlike any game's: a server passes on no block that stands there already
  }
  Note(p, e);
  if (const u64 room = (KeyOf(e) >> 32) - e.x % 10; p->room != room || p->placed++ % 100 == 0) {
    p->room = room;
    p->motion = StandBeside(&p->bot, e);
  }
  SendEdit(&p->bot, e);
}

static void Move(Player *p) {
  for (int axis = 0; axis < 3; ++axis) {
    if (Random() % 30 == 0) p->motion.velocity[axis] = static_cast<i32>(Random() % 2001) - 1000;
    p->motion.place[axis] -= p->motion.velocity[axis];
  }
  SendPlace(&p->bot, p->motion);
}

static void Poll(Player *p) {
  PollBot(&p->bot);
  for (const BlockEdit &e : p->bot.edits) TakeEdit(p, e);
  p->bot.edits.clear();
  p->bot.others.clear();
}

static bool Join(const char *address, u16 port, int count) {
  double longest = 0;
  for (int i = 0; i < count; ++i) {
    Players.push_back(std::make_unique<Player>());
    const double start = Now();
    Bot *bot = &Players.back()->bot;
    if (!JoinServer(bot, address, port, "bot" + std::to_string(i)) || !PollBotUntil(bot, Patience, [](const Bot &b) { return b.synced; })) {
      std::fprintf(stderr, "player %i can't join\n", i);
      return false;
    }
    longest = std::max(longest, Now() - start);
    Players.back()->motion = bot->place;
    for (auto &p : Players) Poll(p.get());
  }
  std::printf("%i players have joined, the slowest in %.2f s\n", count, longest);
  return true;
}

static void Play(double seconds) {
  const double end = Now() + seconds;
  for (double now = Now(); now < end; now = Now()) {
    for (size_t i = 0; i < Players.size(); ++i) {
      Player *p = Players[i].get();
      if (now >= p->nextMove) {
        p->nextMove = now + MoveDelay;
        Move(p);
      }
      if (now >= p->nextEdit) {
        p->nextEdit = (p->nextEdit == 0 ? now + 0.001 * static_cast<double>(i) : p->nextEdit) + EditDelay;
        Edit(i);
      }
      Poll(p);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

static bool AllHeard() {
  for (const auto &p : Players)
    for (size_t s = 0; s < Players.size(); ++s)
      if (Players[s] != p && p->lastSeen[s] != Players[s]->sent) return false;
  return true;
}

// Until everyone has heard of everything, and a little longer for the last removed blocks and contested cells.
static bool Settle() {
  double end = Now() + Patience;
  bool heard = false;
  while (Now() < end) {
    for (auto &p : Players) Poll(p.get());
    if (!heard && AllHeard()) {
      heard = true;
      end = Now() + 2;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return heard;
}

static size_t LostEdits() {
  size_t lost = 0;
  for (const auto &p : Players) lost += p->lost + p->bot.faults + (p->bot.online ? 0 : 1);
  return lost;
}

// Cells in which another player's world isn't the first one's.
static size_t DifferentCells() {
  size_t different = 0;
  for (const auto &p : Players) {
    for (const auto &[key, material] : Players[0]->world) {
      const auto found = p->world.find(key);
      different += found == p->world.end() || found->second != material;
    }
    different += p->world.size() != Players[0]->world.size();
  }
  return different;
}

// The same against what a new player gets, who takes the place of the last one: the ship files, and the edits since.
static size_t DifferentOnServer(const char *address, u16 port) {
  Bot late;
  CloseBot(&Players.back()->bot);
  if (!JoinServer(&late, address, port, "late") || !PollBotUntil(&late, Patience, [](const Bot &b) { return !b.players.empty(); })) return 1;
  const std::string file = (std::filesystem::temp_directory_path() / ("tarnvale-load-" + std::to_string(getpid()))).string();
  size_t different = 0;
  std::unordered_map<u64, u16> edited;
  for (const BlockEdit &e : late.edits) edited[KeyOf(e)] = e.type == PacketBlockPlace ? static_cast<u16>(e.block.material) : u16{0};
  for (size_t row = 0; row < late.ships.size(); ++row) {
    const std::vector<u8> &bytes = late.files[late.ships[row]];
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char *>(bytes.data()), static_cast<long>(bytes.size()));
    Ship ship;
    InitShip(&ship, 0);
    if (!AllocShipTable(&ship) || LoadShipStream(&ship, file.c_str(), false) == 0) ++different;
    for (const auto &[key, material] : Players[0]->world) {
      if (key >> 48 != row) continue;
      const auto found = edited.find(key);
      const u16 there = found != edited.end() ? found->second : HeadMaterial(HeadAt(key >> 32 & 0xffff, key >> 16 & 0xffff, key & 0xffff, ship));
      different += there != material;
    }
    FreeShip(&ship);
  }
  std::filesystem::remove(file);
  CloseBot(&late);
  return different;
}

namespace {

// Seconds of processor time of a process so far, and its memory in MiB now and at most.
struct Usage {
  double cpu = 0, memory = 0, most = 0;
};

}  // namespace

static Usage UsageOf(const char *pid) {
  Usage u;
  std::ifstream stat(std::string("/proc/") + pid + "/stat"), status(std::string("/proc/") + pid + "/status");
  std::string text, word;
  std::getline(stat, text);
  std::istringstream fields(text.substr(std::min(text.rfind(')') + 1, text.size())));
  for (int i = 0; i < 11; ++i) fields >> word;
  double user = 0, system = 0;
  fields >> user >> system;
  u.cpu = (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
  while (status >> word) {
    if (word == "VmRSS:") status >> u.memory;
    if (word == "VmHWM:") status >> u.most;
  }
  u.memory /= 1024;
  u.most /= 1024;
  return u;
}

static void PrintTraffic(double seconds) {
  double sent = 0, received = 0, edits = 0, heard = 0;
  for (const auto &p : Players) {
    sent += p->bot.host->totalSentData;
    received += p->bot.host->totalReceivedData;
    edits += p->sent;
    heard += static_cast<double>(p->heard);
  }
  const double share = static_cast<double>(Players.size()) * seconds;
  std::printf("blocks placed: %.0f, edits heard: %.0f\n", edits, heard);
  std::printf("for each player and second: %.0f bytes to the server, %.0f from it\n", sent / share, received / share);
}

int main(int argc, char **argv) {
  const int clients = argc > 3 ? std::atoi(argv[3]) : 0;
  const double seconds = argc > 4 ? std::atof(argv[4]) : 0;
  if (argc < 5 || argc > 6 || clients < 1 || clients > MostClients || seconds <= 0) {
    std::fprintf(stderr, "usage: tarnvale_load ADDRESS PORT CLIENTS SECONDS [PID]\n");
    return 2;
  }
  const u16 port = static_cast<u16>(std::atoi(argv[2]));
  const char *pid = argc > 5 ? argv[5] : "self";
  if (LoadMaterials() == 0 || LoadComponents() == 0 || enet_initialize() != 0 || !Join(argv[1], port, clients)) return 1;
  const Usage before = UsageOf(pid);
  const double start = Now();
  Play(seconds);
  const double played = Now() - start;
  const Usage after = UsageOf(pid);
  const bool settled = Settle();
  PrintTraffic(played);
  if (argc > 5)
    std::printf("server: %.1f %% of a processor, %.1f MiB, %.1f MiB at most\n", 100 * (after.cpu - before.cpu) / played, after.memory, after.most);
  const size_t lost = LostEdits(), different = DifferentCells(), stored = DifferentOnServer(argv[1], port);
  std::printf("lost or out of order: %zu, cells that differ: %zu, on the server: %zu\n", lost, different, stored);
  return settled && lost == 0 && different == 0 && stored == 0 ? 0 : 1;
}
