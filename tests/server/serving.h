// What tests of the server share: the server on a thread of its own or as a program, and clients on the loopback.
#pragma once

#include "server/server.h"

#include <enet/enet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <set>
#include <thread>

#include "bot.h"
#include "persistence/directory_store.h"
#include "persistence/stream.h"
#include "server/clients.h"
#include "server/console.h"
#include "server/requests.h"
#include "server/world.h"
#include "support/ship_test.h"

constexpr const char *Here = "127.0.0.1";

inline bool Synced(const Bot &b) { return b.synced && !b.players.empty(); }
inline bool Gone(const Bot &b) { return !b.online; }

// Polls all of them until the condition holds.
inline bool Until(std::initializer_list<Bot *> bots, const std::function<bool()> &done, double seconds = 10) {
  const double end = Now() + seconds;
  while (!done()) {
    if (Now() > end) return false;
    for (Bot *bot : bots) PollBot(bot);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

// For so long that what was coming has come.
inline void Quiet(std::initializer_list<Bot *> bots) {
  Until(bots, [] { return false; }, 0.3);
}

inline bool Has(const std::vector<std::string> &lines, const std::string &line) { return std::count(lines.begin(), lines.end(), line) != 0; }

inline BlockEdit Place(u16 x, u16 material = 5) {
  return {.type = PacketBlockPlace, .shipRow = 0, .x = x, .y = 200, .z = 300, .block = CubeOf(material)};
}

inline BlockEdit Of(u8 type, u16 x, i32 row = 0) {
  return {.type = type, .shipRow = row, .x = x, .y = 200, .z = 300, .block = {}, .component = 8};
}

inline u16 MaterialOf(const BlockEdit &e) { return e.type == PacketBlockPlace ? static_cast<u16>(e.block.material) : u16{0}; }

// What stands at each x for a player who sent and then heard these edits.
inline std::map<u16, u16> WorldOf(const std::vector<BlockEdit> &sent, const std::vector<BlockEdit> &heard) {
  std::map<u16, u16> materials;
  for (const auto *edits : {&sent, &heard})
    for (const BlockEdit &e : *edits) materials[e.x] = MaterialOf(e);
  return materials;
}

struct Server : ShipTest {
  void SetUp() override {
    ShipTest::SetUp();
    Open(3);
  }
  void TearDown() override {
    for (Bot *bot : {&a, &b, &c}) CloseBot(bot);
    if (TheServerOptions.Port != 0) Close();
    ShipTest::TearDown();
  }
  void Open(int players) {
    WriteText("serveroptions", "Port " + std::to_string(Port) + "\nPlayers " + std::to_string(players) + "\n");
    ASSERT_TRUE(StartServer());
    Resume();
  }
  void Close() {
    Pause();
    StopServer();
    TheServerOptions.Port = 0;
  }
  void Resume() {
    StopRequested = false;
    thread = std::thread(RunServer);
  }
  void Pause() {
    StopRequested = true;
    thread.join();
  }
  void Enter(Bot *bot, const char *name) {
    ASSERT_TRUE(JoinServer(bot, Here, Port, name));
    ASSERT_TRUE(PollBotUntil(bot, 10, Synced));
    StandBeside(bot, Place(160));
  }
  void EnterBoth() {
    Enter(&a, "Ada");
    Enter(&b, "Ben");
  }
  void LoadStored() { ASSERT_EQ(LoadShipDirectory(ship, "Asteroid", true, true), 1); }

  const u16 Port = static_cast<u16>(20000 + (getpid() * 7) % 20000);
  std::thread thread;
  Bot a, b, c;
};

// The program itself, or another one that TARNVALE_SERVER names.
inline std::string Program() {
  const char *named = std::getenv("TARNVALE_SERVER");
  return named != nullptr ? named : TARNVALE_BINARIES "/src/server/tarnvale-server";
}

inline pid_t StartProgram() {
  const auto runs = [] { return Count(ReadText("server.log"), "Listening on"); };
  const auto before = fs::exists("server.log") ? fs::last_write_time("server.log") : fs::file_time_type::min();
  const pid_t pid = fork();
  if (pid == 0) {
    const int nothing = open("/dev/null", O_RDWR);
    for (const int end : {0, 1}) dup2(nothing, end);
    execl(Program().c_str(), "tarnvale-server", nullptr);
    _exit(127);
  }
  const auto begun = [&] { return fs::exists("server.log") && fs::last_write_time("server.log") != before && runs() != 0; };
  for (int i = 0; i < 1000 && !begun(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return pid;
}

inline void EndProgram(pid_t pid, int signal) {
  int status = 0;
  if (signal != 0) kill(pid, signal);
  waitpid(pid, &status, 0);
  EXPECT_TRUE(signal == SIGKILL || status == 0) << status;
}
