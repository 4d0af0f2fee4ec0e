// The server on a thread of its own, played with by clients on the loopback.
#include "server/server.h"

#include <enet/enet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
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

static constexpr const char *Here = "127.0.0.1";

static bool Synced(const Bot &b) { return b.synced && !b.players.empty(); }
static bool Gone(const Bot &b) { return !b.online; }

// Polls all of them until the condition holds.
static bool Until(std::initializer_list<Bot *> bots, const std::function<bool()> &done, double seconds = 10) {
  const double end = Now() + seconds;
  while (!done()) {
    if (Now() > end) return false;
    for (Bot *bot : bots) PollBot(bot);
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

// For so long that what was coming has come.
static void Quiet(std::initializer_list<Bot *> bots) {
  Until(bots, [] { return false; }, 0.3);
}

static bool Has(const std::vector<std::string> &lines, const std::string &line) { return std::count(lines.begin(), lines.end(), line) != 0; }

static BlockEdit Place(u16 x, u16 material = 5) {
  return {.type = PacketBlockPlace, .shipRow = 0, .x = x, .y = 200, .z = 300, .block = CubeOf(material)};
}

static BlockEdit Of(u8 type, u16 x, i32 row = 0) {
  return {.type = type, .shipRow = row, .x = x, .y = 200, .z = 300, .block = {}, .component = 3};
}

static u16 MaterialOf(const BlockEdit &e) { return e.type == PacketBlockPlace ? static_cast<u16>(e.block.material) : u16{0}; }

// What stands at each x for a player who sent and then heard these edits.
static std::map<u16, u16> WorldOf(const std::vector<BlockEdit> &sent, const std::vector<BlockEdit> &heard) {
  std::map<u16, u16> materials;
  for (const auto *edits : {&sent, &heard})
    for (const BlockEdit &e : *edits) materials[e.x] = MaterialOf(e);
  return materials;
}

namespace {

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

}  // namespace

TEST_F(Server, AGameGetsTheWorldTheListsAndAName) {
  Enter(&a, "Ada");
  EXPECT_EQ(a.ships, std::vector<std::string>{"Asteroid"});
  EXPECT_GT(a.files["Asteroid"].size(), 20u);
  EXPECT_EQ(a.players, std::vector<std::string>{"Ada"});
  int lamps = 0;
  ForEachChunk(*ShipAt(TheShipTable, 0), [&lamps](const Chunk &, const ChunkCells &cells, CellAddress) {
    lamps += cells.lampCount;
    EXPECT_EQ(cells.graphicBlocks.load(), nullptr) << "nobody looks at the server's light";
  });
  EXPECT_GE(lamps, 6);
  Enter(&b, " Ada\n ");
  Enter(&c, "Server");
  ASSERT_TRUE(Until({&a, &b, &c}, [&] { return a.players.size() == 3 && b.players.size() == 3; }));
  EXPECT_EQ(a.players, (std::vector<std::string>{"Ada", "Ada?", "Server(2)"}));
  EXPECT_EQ(b.ownRow, 1);
  EXPECT_NE(a.place.place[0], b.place.place[0]);
  EXPECT_TRUE(Until({&a}, [&] { return Has(a.chat, "* Server(2) logged on"); }));
  SendPlace(&b, {.place = {1, 2, 3}, .velocity = {4, 5, 6}});
  EXPECT_TRUE(Until({&a, &b, &c}, [&] { return std::any_of(a.others.begin(), a.others.end(), [](const Motion &m) { return m.place[2] == 3; }); }));
  for (const auto &[version, name, why] : {std::tuple{"0.22", "x", "Server: this server is for another version of the game"},
                                           std::tuple{WireVersion, "x", "Server: the server is full"}}) {
    Bot other;
    ASSERT_TRUE(ConnectBot(&other, Here, Port));
    SayHello(&other, version, name);
    EXPECT_TRUE(PollBotUntil(&other, 10, Gone));
    EXPECT_TRUE(Has(other.chat, why)) << why;
    EXPECT_FALSE(other.synced);
    CloseBot(&other);
  }
  CloseBot(&a);
  EXPECT_TRUE(Until({&b, &c}, [&] { return b.players.size() == 2 && b.ownRow == 0 && Has(b.chat, "* Ada logged off"); }));
}

TEST_F(Server, EditsAreStoredAndRelayedOrRefusedWithTheTruth) {
  EnterBoth();
  SendEdit(&a, Place(100));
  SendEdit(&a, Place(100));
  SendEdit(&a, Of(PacketBlockComponent, 100));
  SendEdit(&a, Of(PacketBlockComponent, 100));  // what stands there already is no edit
  SendEdit(&a, Place(101));
  SendEdit(&a, Of(PacketBlockRemove, 101));
  ASSERT_TRUE(Until({&a, &b}, [&] { return b.edits.size() == 4; }));
  EXPECT_TRUE(a.edits.empty());
  b.edits.clear();
  BlockEdit strange = Place(102), future = Place(102), empty = Place(102);
  strange.block.component = 0xffff;
  future.block.state = 3;
  empty.block.state = StateEmpty;
  const struct { BlockEdit edit; bool truth; } refused[] = {
      {Place(1), true}, {Place(9999), true}, {strange, true}, {future, true}, {empty, true}, {Of(PacketBlockRemove, 103), true},
      {Of(PacketBlockRemove, 101), true}, {Of(PacketBlockComponent, 101), true}, {Place(20), true},
      {Of(PacketBlockComponent, 103), true}, {Of(PacketBlockRemove, 100, 1), false}, {Of(PacketBlockRemove, 100, -1), false}, {Place(10000), false}};
  for (const auto &r : refused) {
    a.edits.clear();
    SendEdit(&a, r.edit);
    Quiet({&a, &b});
    ASSERT_EQ(a.edits.size(), r.truth ? 1u : 0u) << r.edit.x << " " << r.edit.shipRow;
    EXPECT_TRUE(!r.truth || a.edits[0].type == PacketBlockRemove);
  }
  EXPECT_TRUE(b.edits.empty());
  for (const char *words : {"Refused edits of Ada:", "(out of range)", "(out of reach)"})
    EXPECT_TRUE(Until({&a, &b}, [&] { return Logged(words); })) << words;
  Enter(&c, "Cy");
  EXPECT_EQ(c.edits.size(), 4u) << "what the stream files lack comes behind them";
  ASSERT_TRUE(Until({&a, &b, &c}, [&] { return ReadText("saves/Asteroid.sts").size() != c.files["Asteroid"].size(); }));
  Quiet({&a, &b, &c});
  CloseBot(&c);
  c = {};
  Enter(&c, "Cy");
  EXPECT_EQ(c.edits.size(), 0u) << "the files have it by now";
  LoadStored();
  EXPECT_EQ(HeadComponent(HeadAt(100, 200, 300, *ship)), 3);
  EXPECT_EQ(HeadAt(101, 200, 300, *ship), 0u);
}

TEST_F(Server, WhoEditsTooFastEndsInTheSameWorldAsTheOthers) {
  EnterBoth();
  std::vector<BlockEdit> sent;
  for (u16 i = 0; i < 600; ++i) {
    const u16 x = static_cast<u16>(100 + i % 121);
    sent.push_back(i % 4 == 3 ? Of(PacketBlockRemove, x) : Place(x, static_cast<u16>(1 + i % 7)));
    SendEdit(&a, sent.back());
  }
  SendLine(&a, "done");
  ASSERT_TRUE(Until({&a, &b}, [&] { return Has(a.chat, "Ada: done") && Has(b.chat, "Ada: done"); }));
  EXPECT_TRUE(b.edits.size() >= 150 && b.edits.size() < 500) << b.edits.size();
  std::map<u16, u16> theirs = WorldOf({}, b.edits);
  for (const auto &[x, material] : WorldOf(sent, a.edits)) EXPECT_EQ(material, theirs[x]) << x;
  EXPECT_TRUE(Until({&a, &b}, [] { return Logged("(more than 200 a second)"); }));
}

TEST_F(Server, ACellThatTwoPlayersChangeAtOnceIsTheSameForBothAndOnDisk) {
  EnterBoth();
  std::vector<BlockEdit> sent[2];
  for (u16 x = 100; x < 140; ++x) {
    sent[0].push_back(Place(x, static_cast<u16>(1 + x % 3)));
    sent[1].push_back(Place(x, static_cast<u16>(4 + x % 3)));
    SendEdit(&a, sent[0].back());
    SendEdit(&b, sent[1].back());
    if (x % 2 != 0) continue;
    sent[0].push_back(Of(PacketBlockRemove, x));
    SendEdit(&a, sent[0].back());
  }
  Quiet({&a, &b});
  const std::map<u16, u16> world = WorldOf(sent[0], a.edits);
  EXPECT_EQ(world, WorldOf(sent[1], b.edits));
  LoadStored();
  for (const auto &[x, material] : world) EXPECT_EQ(HeadMaterial(HeadAt(x, 200, 300, *ship)), material) << x;
}

TEST_F(Server, ChatComesBackToAllAndHasItsPace) {
  EnterBoth();
  SendLine(&a, "hello\n*ERR: all is lost");
  SendLine(&a, "|waves");
  for (Bot *bot : {&a, &b})
    EXPECT_TRUE(Until({&a, &b}, [&] { return Has(bot->chat, "Ada: hello?*ERR: all is lost") && Has(bot->chat, "* Ada waves"); }));
  Pause();  // so that more waits than one pass takes
  const auto queue = [this](const std::vector<u8> &p) {
    QueuePacket(b.peer, enet_packet_create(p.data(), p.size(), ENET_PACKET_FLAG_RELIABLE));
  };
  for (int i = 0; i < 998; ++i) queue({PacketPong});
  for (const u8 letter : {'1', '2', '3', '4'}) queue({PacketChat, 1, letter});
  enet_host_flush(b.host);
  Resume();
  EXPECT_TRUE(Until({&a, &b}, [&] { return Has(a.chat, "Ben: 4"); }));
  for (const char *line : {"Ben: 1", "Ben: 2", "Ben: 3"}) EXPECT_TRUE(Has(a.chat, line)) << line;
  for (int i = 0; i < 30; ++i) SendLine(&a, "spam");
  EXPECT_TRUE(Until({&a, &b}, [&] { return Has(a.chat, "Server: not so fast"); }));
  Quiet({&a, &b});
  EXPECT_LE(std::count(b.chat.begin(), b.chat.end(), "Ada: spam"), 10);
}

TEST_F(Server, HostilePeersAreDroppedAndAnHonestGamePlaysOn) {
  Enter(&a, "Ada");
  std::vector<std::vector<u8>> samples = {{14, 'x'}, std::vector<u8>(40, 1), std::vector<u8>(5000, 9)};
  for (const BlockEdit &e : {Place(100), Of(PacketBlockRemove, 100), Of(PacketBlockComponent, 100)}) {
    samples.emplace_back();
    WriteBlockEdit(&samples.back(), e);
  }
  const std::vector<u8> large(60u << 20, 0);
  const std::vector<u8> bomb = SealPacket(PacketChat, large.data(), large.size());
  int dropped = 0;
  for (int type = 0; type < 256; ++type) {
    if (!b.online) {
      CloseBot(&b);
      ASSERT_TRUE(ConnectBot(&b, Here, Port)) << type;
      if (type % 2 == 0) SayHello(&b, WireVersion, "Eve");
      ++dropped;
    }
    for (const auto &sample : samples)
      for (size_t length = 0; length < sample.size(); length += sample.size() > 100 ? 499 : 1) {
        std::vector<u8> packet(sample.begin(), sample.begin() + static_cast<long>(length));
        packet.insert(packet.begin(), static_cast<u8>(type));
        if (b.online) SendRaw(&b, packet, length % 2 == 0);
        PollBot(&b);
      }
    PollBotUntil(&b, 0.02, Gone);
  }
  EXPECT_GT(dropped, 10);
  CloseBot(&b);
  ASSERT_TRUE(ConnectBot(&b, Here, Port));
  SendRaw(&b, bomb);
  SendRaw(&b, std::vector<u8>(3000, 0xbb));
  SendEdit(&a, Place(150));
  SendLine(&a, "still here");
  EXPECT_TRUE(Until({&a, &b}, [&] { return Has(a.chat, "Ada: still here"); }));
  Enter(&c, "Cy");
  SendEdit(&c, Place(151));
  EXPECT_TRUE(Until({&a, &b, &c}, [&] { return !a.edits.empty() && a.edits.back().x == 151; }));
  EXPECT_TRUE(a.faults == 0 && !Logged("*ERR"));
}

TEST_F(Server, WhoSaysNothingIsDropped) {
  ASSERT_TRUE(ConnectBot(&a, Here, Port));
  Enter(&b, "Ben");
  EXPECT_TRUE(Until({&a, &b}, [&] { return !a.online; }, 10));
  EXPECT_TRUE(Has(a.chat, "Server: no hello"));
  EXPECT_TRUE(b.online);
  Pause();
  CheckSilence(Now() + 31);
  Resume();
  EXPECT_TRUE(PollBotUntil(&b, 10, Gone));
  EXPECT_TRUE(Has(b.chat, "Server: no answer"));
}

TEST_F(Server, ItsFolderStaysWithinItAndItsShipsComeFromThere) {
  Close();
  fs::remove_all("saves");
  fs::create_directories("saves");
  PlaceHere(ship, 5000, 5000, 5000, CubeOf(5));
  for (const char *path : {"saves/Two.sts", "saves/One (old)-1.x.sts", "saves/Umläut.sts"})
    ASSERT_EQ(SaveShipStream(ship, path), 1);
  ship->fileStem = std::string(70, 'L');
  ASSERT_EQ(SaveShipDirectory(ship), 1);
  fs::create_directories("saves/Two.sts.tmp");  // a ship itself, and what keeps Two.sts from being written
  WriteText("saves/rubbish.txt", "x");
  WriteText("saves/.hidden.sts", "x");
  Open(2);
  Enter(&a, "Ada");
  EXPECT_EQ(a.ships.size(), 5u);
  EXPECT_EQ(std::count(a.ships.begin(), a.ships.end(), "NULL"), 3) << "of names that are none for a game, and what can't be written";
  EXPECT_EQ(a.files.size(), 2u);
  LogInit();
  const ServerOptions kept = TheServerOptions;
  SendEdit(&a, Of(PacketBlockRemove, 100));
  Quiet({&a});
  Pause();
  EXPECT_FALSE(StartServer()) << "two servers in one folder";
  EXPECT_TRUE(Logged("Another server, or a game, runs in this folder"));
  TheServerOptions = kept;
  Resume();
  ConsoleLine("kick Nobody");
  EXPECT_TRUE(a.online);
}

// The program itself, killed while two players build.
static pid_t StartProgram() {
  fs::remove("server.log");
  const pid_t pid = fork();
  if (pid == 0) {
    const int nothing = open("/dev/null", O_RDWR);
    for (const int end : {0, 1}) dup2(nothing, end);
    execl(TARNVALE_BINARIES "/src/server/tarnvale-server", "tarnvale-server", nullptr);
    _exit(127);
  }
  for (int i = 0; i < 1000 && Count(ReadText("server.log"), "Listening") == 0; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return pid;
}

static void EndProgram(pid_t pid, int signal) {
  int status = 0;
  kill(pid, signal);
  waitpid(pid, &status, 0);
  EXPECT_TRUE(signal != SIGTERM || status == 0) << status;
}

// Every fifth one removes what the one before it placed.
static BlockEdit NumberedEdit(u16 number) {
  const u16 of = number % 5 == 4 ? static_cast<u16>(number - 1) : number;
  BlockEdit e = Place(static_cast<u16>(100 + of % 90), static_cast<u16>(1 + of % 7));
  e.z = static_cast<u16>(300 + 10 * (of % 4));
  if (of != number) e.type = PacketBlockRemove;
  return e;
}

// For each cell what may stand there: what was heard of last, and what was sent behind it and may have been stored or not.
using Possible = std::map<std::array<u16, 2>, std::set<u16>>;

static void NoteRound(const std::vector<BlockEdit> &sent, size_t heard, Possible *cells) {
  for (size_t i = 0; i < sent.size(); ++i) {
    std::set<u16> *materials = &(*cells)[{sent[i].x, sent[i].z}];
    if (i < heard) materials->clear();
    else if (materials->empty()) materials->insert(0);
    materials->insert(MaterialOf(sent[i]));
  }
}

TEST_F(Server, AKillLosesNoEditThatAnybodyHeardOf) {
  Close();
  Possible cells;
  u16 number = 0;
  for (int round = 0; round < 4; ++round) {
    const pid_t pid = StartProgram();
    ASSERT_GT(pid, 0);
    EnterBoth();
    std::vector<BlockEdit> sent;
    for (const double end = Now() + 0.7 + 0.13 * round; Now() < end; std::this_thread::sleep_for(std::chrono::milliseconds(6))) {
      sent.push_back(NumberedEdit(number++));
      SendEdit(&a, sent.back());
      PollBot(&a);
      PollBot(&b);
    }
    EndProgram(pid, SIGKILL);
    PollBot(&b);
    EXPECT_GT(b.edits.size(), 20u);
    ASSERT_LE(b.edits.size(), sent.size());
    NoteRound(sent, b.edits.size(), &cells);
    CloseBot(&a);
    CloseBot(&b);
  }
  EndProgram(StartProgram(), SIGTERM);
  EXPECT_EQ(Count(ReadText("server.log"), "Stopped"), 1);
  EXPECT_GT(cells.size(), 60u);
  LoadStored();
  for (const auto &[at, materials] : cells)
    EXPECT_TRUE(materials.contains(static_cast<u16>(HeadMaterial(HeadAt(at[0], 200, at[1], *ship))))) << at[0] << " " << at[1];
}
