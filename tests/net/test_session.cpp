// The game's side of a session: what each packet does, and that none of them does anything else, from whatever server.
#include "net/session.h"

#include <enet/enet.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "content/options.h"
#include "gameplay/player.h"
#include "net/chat_log.h"
#include "net/dispatch.h"
#include "net/edits.h"
#include "persistence/stream.h"
#include "support/ship_test.h"
#include "world/retire.h"

using Bytes = std::vector<u8>;

static Bytes Made(auto write, auto what) {
  Bytes out;
  write(&out, what);
  return out;
}
static Bytes Text(const std::string &text) { return Made(WriteString, text); }
static Bytes Int(u32 v) { return Made(PutU32, v); }
static Bytes Short(u16 v) { return Made(PutU16, v); }
static Bytes Moving(i64 x, i32 speed) { return Made(WriteMotion, Motion{.place = {x, 2, 3}, .velocity = {speed, -20, 30}}); }
static Bytes Edit(u8 type, i32 row, u16 x, u16 component = 2, u16 material = 5) {
  const Block b = CubeOf(material, component);
  const BlockEdit edit{.type = type, .shipRow = row, .x = x, .y = 20, .z = 30, .block = b, .component = component};
  return Made(WriteBlockEdit, edit);
}

static Bytes Join(std::initializer_list<Bytes> parts) {
  Bytes out;
  for (const Bytes &part : parts) out.insert(out.end(), part.begin(), part.end());
  return out;
}

static Bytes Front(const Bytes &bytes, size_t length) { return {bytes.begin(), bytes.begin() + static_cast<long>(length)}; }
static const Bytes PlayerList = Join({Short(2), Short(1), Text("Ada"), Bytes(24, 1), Text("Me"), Bytes(24, 2)});

static Bytes ShipList(std::initializer_list<std::string> names) {
  Bytes out = Int(static_cast<u32>(names.size()));
  for (const std::string &name : names) out = Join({out, Text(name)});
  for (size_t row = 0; row < names.size(); ++row) out = Join({out, Moving(static_cast<i64>(row) * 1000, 0)});
  return out;
}

static void Handle(u8 type, const Bytes &payload) {
  const Bytes packet = type == PacketFile ? Join({{type}, payload}) : SealPacket(type, payload.data(), payload.size());
  HandlePacket(packet.data(), packet.size());
}

// A ship with one block in the given row's material, as the bytes of its file.
static std::string ShipFile(u16 material) {
  Ship *ship = NewTestShip();
  PlaceHere(ship, 5000, 5000, 5000, CubeOf(material));
  EXPECT_EQ(SaveShipStream(ship, "saves/made.sts"), 1);
  const std::string bytes = ReadText("saves/made.sts");
  fs::remove("saves/made.sts");
  Drop(ship);
  return bytes;
}

static Bytes FilePayload(const std::string &name, const std::string &content) {
  return Join({Text(name), Bytes(content.begin(), content.end())});
}

static std::string NewestLine(int row = 0) {
  ChatLines lines;
  CopyChatLog(&lines);
  return lines[static_cast<size_t>(row)];
}

static Ship *ShipOf(int row) { return ShipAt(TheShipTable, static_cast<u16>(row)); }

namespace {

struct Session : ShipTest {
  void SetUp() override {
    ShipTest::SetUp();
    Handle(PacketShipList, ShipList({"NULL", "NULL"}));
    Handle(PacketPlayerList, PlayerList);
  }
  void TearDown() override {
    SweepRetired();
    ShipTest::TearDown();
  }
};

}  // namespace

TEST_F(Session, EachPacketDoesWhatItSays) {
  Handle(PacketBlockPlace, Edit(PacketBlockPlace, 1, 10));
  EXPECT_EQ(HeadComponent(HeadAt(10, 20, 30, *ShipOf(1))), 2);
  Handle(PacketBlockComponent, Edit(PacketBlockComponent, 1, 10, 3));
  EXPECT_EQ(HeadComponent(HeadAt(10, 20, 30, *ShipOf(1))), 3);
  Handle(PacketBlockComponent, Edit(PacketBlockComponent, 1, 10, 60000));  // no such row
  EXPECT_EQ(HeadComponent(HeadAt(10, 20, 30, *ShipOf(1))), FindComponent(6));
  Handle(PacketBlockRemove, Edit(PacketBlockRemove, 1, 10));
  EXPECT_FALSE(BlockExists(10, 20, 30, *ShipOf(1)));
  Handle(PacketBlockPlace, Edit(PacketBlockPlace, 1, 11, 0, 9999));
  EXPECT_EQ(HeadMaterial(HeadAt(11, 20, 30, *ShipOf(1))), FindMaterial(110));
  Handle(PacketShipLocation, Join({Int(1), Moving(-7, 5)}));
  EXPECT_TRUE(ShipOf(1)->position[0] == -7 && ShipOf(1)->velocity[0] == 5);
  Handle(PacketChat, Text(std::string("Ada: h\0i\n\x1b[2Jyou \xc2\x9b\xc3\xa9", 21)));
  EXPECT_EQ(NewestLine(), "Ada: h?i??[2Jyou \xc2?\xc3\xa9");
  Handle(PacketSetLocation, Moving(50000, 4));
  const Player moved = ReadPlayer();
  EXPECT_TRUE(moved.solarLoc[0] == 50000 && moved.speed == 4 - 20 + 30);
  EXPECT_FLOAT_EQ(moved.relativeLoc[0], 5.0f);
  Handle(PacketSetLocation, Bytes(36, 0));
  EXPECT_EQ(ReadPlayer().speed, 0);
  Handle(PacketOtherPlayer, Join({Short(0), Moving(20000, 7)}));
  EXPECT_EQ(RemotePlayers[0].velocity[0], 7);
  EXPECT_FLOAT_EQ(RemotePlayers[0].relativeLoc[0], 2.0f);
  EXPECT_TRUE(RemotePlayers[1].name == "Me" && OwnPlayerRow == 1);
  Handle(PacketNudge, {});
  ShowPlayerList();
  EXPECT_EQ(NewestLine(), "Players: Ada, Me");
  for (const char *line : {"Server asked us to change location. Changing.", "Are we cheating or lagging?",
                           "Got new player list:", "info: Me", "Chat: Ada"})
    EXPECT_TRUE(Logged(line)) << line;
  EXPECT_FALSE(Logged("*ERR"));
}

TEST_F(Session, WrongRowsAndCountsAreReportedAndChangeNothing) {
  const Player before = ReadPlayer();
  const struct { u8 type; Bytes payload; const char *message; } cases[] = {
      {PacketShipLocation, Join({Int(2), Moving(1, 1)}), "*ERR: Non-existant ship specified."},
      {PacketShipLocation, Join({Int(0xffffffff), Moving(1, 1)}), "*ERR: Non-existant ship specified."},
      {PacketBlockPlace, Edit(PacketBlockPlace, 2, 10), "*ERR: Non-existant ship specified."},
      {PacketBlockPlace, Edit(PacketBlockPlace, INT32_MIN, 10), "*ERR: Non-existant ship specified."},
      {PacketBlockPlace, Edit(PacketBlockPlace, 0, 10000), "out of range, was dropped"},
      {PacketOtherPlayer, Join({Short(2), Moving(1, 1)}), "*ERR: Player number wrong"},
      {PacketPlayerList, Join({Short(0xffff), Short(0)}), "*ERR: Bad number of players from server."},
      {PacketShipList, Int(0xffffffff), "*ERR: A list of ships that can't be right"},
      {PacketShipList, Join({Int(100000), Bytes(5000000, 1)}), "*ERR: A list of ships that can't be right"},
      {PacketShipAdded, Join({Int(4), Text("NULL"), Moving(1, 1)}), "*ERR: We've lost a ship somewhere."},
      {PacketShipAdded, Join({Int(2), Text("NULL"), Moving(1, 1)}), "*ERR: We've lost a ship somewhere."},
      {PacketHello, Text("x"), "WARN: Unknown packet type received."},
      {PacketUnused, Short(1), "WARN: Unknown packet type received."},
      {0x80, {}, "WARN: Unknown packet type received."},
  };
  for (const auto &c : cases) {
    LogInit();
    Handle(c.type, c.payload);
    EXPECT_TRUE(Logged(c.message)) << c.message << +c.type;
    EXPECT_TRUE(TheShipTable.count == 2 && RemotePlayers.size() == 2 && ShipOf(0)->position[0] == 0) << c.message;
    EXPECT_EQ(ReadPlayer().solarLoc[0], before.solarLoc[0]);
  }
}

namespace {

struct Sample {
  u8 type;
  Bytes payload;
};

}  // namespace

// One whole packet of each kind that carries anything.
static std::vector<Sample> Samples() {
  return {{PacketShipLocation, Join({Int(1), Moving(77, 1)})}, {PacketSetLocation, Moving(77, 77)},
          {PacketOtherPlayer, Join({Short(0), Moving(77, 1)})}, {PacketBlockPlace, Edit(PacketBlockPlace, 0, 10)},
          {PacketBlockRemove, Edit(PacketBlockRemove, 0, 10)}, {PacketBlockComponent, Edit(PacketBlockComponent, 0, 10)},
          {PacketShipList, ShipList({"NULL", "NULL", "NULL"})}, {PacketShipAdded, Join({Int(3), Text("NULL"), Moving(1, 1)})},
          {PacketChat, Text("a line")}, {PacketPlayerList, PlayerList}};
}

TEST_F(Session, PacketsCutAnywhereDoNothingButShortenTheListOfPlayers) {
  AddChatLine("before");
  for (const Sample &c : Samples())
    for (size_t length = 0; length < c.payload.size(); ++length) {
      Handle(c.type, Front(c.payload, length));
      ASSERT_TRUE(TheShipTable.count == 2 && ShipOf(1)->position[0] != 77 && !BlockExists(10, 20, 30, *ShipOf(0)))
          << +c.type << " " << length;
      ASSERT_TRUE(ReadPlayer().solarLoc[0] != 77 && NewestLine() == "before") << +c.type << " " << length;
      ASSERT_EQ(RemotePlayers.size(), c.type != PacketPlayerList || length < 4 ? 2u : length < 32 ? 0u : 1u);
    }
}

TEST_F(Session, ShipsComeFromTheirFilesAndThePlayerStaysInTheirPlace) {
  Handle(PacketSetLocation, Moving(123450000, 0));
  TheShipTable.current = 1;
  Handle(PacketFile, FilePayload("Rock", ShipFile(5)));
  EXPECT_EQ(NewestLine(), "Downloading ship Rock ");
  const Ship *old = ShipOf(0);
  Handle(PacketShipList, ShipList({"Rock", "NULL", "Missing", "../up", "Rock"}));
  ASSERT_EQ(TheShipTable.count, 5);
  for (const int row : {0, 4}) EXPECT_EQ(HeadMaterial(HeadAt(5000, 5000, 5000, *ShipOf(row))), 5);
  const std::string stems[] = {"Rock", "NULL", "Missing", "NULL", "Rock"};
  for (int row = 0; row < 5; ++row) {
    EXPECT_EQ(ShipOf(row)->fileStem, stems[row]);
    EXPECT_TRUE(ShipOf(row)->id == static_cast<u32>(row) && ShipOf(row)->position[0] == 1000 * row) << row;
  }
  EXPECT_TRUE(TheShipTable.current == 1 && ReadPlayer().solarLoc[0] == 123450000);
  EXPECT_FLOAT_EQ(ReadPlayer().relativeLoc[0], (123450000 - 1000) * 0.0001f);
  EXPECT_NE(ShipOf(0), old);
  EXPECT_EQ(NewestLine(), "Server Sync Complete!");
  Handle(PacketShipAdded, Join({Int(6), Text("Rock"), Moving(9, 0)}));
  ASSERT_EQ(TheShipTable.count, 6);
  EXPECT_TRUE(HeadMaterial(HeadAt(5000, 5000, 5000, *ShipOf(5))) == 5 && ShipOf(5)->position[0] == 9);
  Handle(PacketFile, FilePayload("Rock", "no ship"));  // what lies there isn't the server's ship any more
  Handle(PacketShipAdded, Join({Int(7), Text("Rock"), Moving(9, 0)}));
  EXPECT_EQ(ShipOf(6)->fileStem, "NULL");
  for (u32 Ship::*level : {&Ship::chunkCount, &Ship::superCount}) {
    ShipOf(6)->*level = 110000;
    Handle(PacketBlockPlace, Edit(PacketBlockPlace, 1, 10));
    EXPECT_FALSE(BlockExists(10, 20, 30, *ShipOf(1))) << "the ships are as large as they may be";
    ShipOf(6)->*level = 0;
  }
  Handle(PacketFile, FilePayload("Rock", ShipFile(5)));
  TheShipTable.current = 5;
  Handle(PacketShipList, ShipList({"NULL", "NULL"}));
  EXPECT_TRUE(TheShipTable.current == 0 && ReadPlayer().shipIndex == 0);
  EXPECT_FLOAT_EQ(ReadPlayer().relativeLoc[0], 123450000 * 0.0001f);
  Handle(PacketShipList, ShipList({}));
  EXPECT_TRUE(TheShipTable.count == 0 && CurrentShip() == nullptr);
  Handle(PacketBlockPlace, Edit(PacketBlockPlace, 0, 10));
  Handle(PacketShipAdded, Join({Int(1), Text("NULL"), Moving(1, 1)}));
  EXPECT_EQ(TheShipTable.count, 1);
}

TEST_F(Session, ARetiredShipLivesUntilEveryLoopHasBegunANewPass) {
  for (const int loop : {0, 1}) BeginPass(loop);
  Ship *old = ShipOf(0);
  TheShipTable.ships[0] = new Ship;
  InitShip(ShipOf(0), 0);
  {
    const ScopedLock world(&WorldMutex);
    RetireShip(old);
  }
  SweepRetired();
  EXPECT_EQ(old->fileStem, "NULL");  // still there: a sanitizer would tell
  BeginPass(0);
  SweepRetired();
  EXPECT_EQ(old->fileStem, "NULL");
  EndLoop(1);
  EXPECT_EQ(RetiredCount(), 1u);
  SweepRetired();
  EXPECT_EQ(RetiredCount(), 0u);
  EndLoop(0);
}

TEST_F(Session, ADownloadNeverReplacesAnOwnShipThatIsNotKept) {
  const std::string own = ShipFile(3), first = ShipFile(5), second = ShipFile(7);
  WriteText("saves/Mine.sts", own);
  fs::remove_all("cache");
  Handle(PacketFile, FilePayload("Mine", first));
  EXPECT_EQ(ReadText("saves/Mine.sts"), first);
  EXPECT_EQ(ReadText("saves/Mine (own).sts"), own);
  EXPECT_EQ(NewestLine(), "Your own ship Mine is kept as Mine (own)");
  Handle(PacketFile, FilePayload("Mine", second));  // the last download isn't the player's
  EXPECT_EQ(ReadText("saves/Mine.sts"), second);
  EXPECT_FALSE(fs::exists("saves/Mine (own 2).sts"));
  WriteText("saves/Mine.sts", own + "x");            // but a ship that they saved since is
  Handle(PacketFile, FilePayload("Mine", first));
  EXPECT_EQ(ReadText("saves/Mine (own 2).sts"), own + "x");
  WriteText("saves/Mine.sts", own + "x");
  Handle(PacketFile, FilePayload("Mine", second));
  EXPECT_TRUE(ReadText("saves/Mine.sts") == second && !fs::exists("saves/Mine (own 3).sts")) << "that one is kept already";
  fs::remove_all("cache");
  Handle(PacketFile, FilePayload("Mine", second));
  Handle(PacketFile, FilePayload("Mine (own)", own));
  EXPECT_FALSE(fs::exists("saves/Mine (own 3).sts")) << "what comes is what lies there";
  Handle(PacketFile, FilePayload("Mine (own 2)", first));
  EXPECT_EQ(ReadText("saves/Mine (own 2).sts") + ReadText("saves/Mine (own 3).sts"), first + own + "x");
  EXPECT_FALSE(fs::exists("saves/Mine (own 2) (own).sts"));
  for (int copy = 4; copy <= 99; ++copy) WriteText("saves/Mine (own " + std::to_string(copy) + ").sts", "");
  WriteText("saves/Mine.sts", own + "y");
  Handle(PacketFile, FilePayload("Mine", first));
  EXPECT_EQ(ReadText("saves/Mine.sts"), own + "y") << "no name was left to keep it under";
}

TEST_F(Session, AGameThatSavesNothingKeepsDownloadsOutOfTheFolderAndFliesThem) {
  const std::string own = ShipFile(3);
  const fs::path temporary = fs::current_path() / "temporary", left = temporary / "tarnvale-downloads-left";
  WriteText("saves/Rock.sts", own);
  WriteText(left / "Old.sts", own);
  fs::last_write_time(left, fs::file_time_type::clock::now() - std::chrono::hours(2));
  setenv("TMPDIR", temporary.c_str(), 1);
  SavingOn = false;
  const auto files = [] { return std::distance(fs::recursive_directory_iterator("saves"), {}) + std::distance(fs::recursive_directory_iterator("cache"), {}); };
  const auto before = files();
  for (const char *name : {"Rock", "Other"}) Handle(PacketFile, FilePayload(name, ShipFile(5)));
  Handle(PacketShipList, ShipList({"Rock", "Other", "Missing"}));
  SavingOn = true;
  unsetenv("TMPDIR");
  EXPECT_TRUE(files() == before && ReadText("saves/Rock.sts") == own);
  for (const int row : {0, 1}) EXPECT_TRUE(HeadMaterial(HeadAt(5000, 5000, 5000, *ShipOf(row))) == 5) << row;
  EXPECT_EQ(ShipOf(1)->fileStem, "Other");
  EXPECT_FALSE(fs::exists(left)) << "a killed game's";
  EXPECT_EQ(std::distance(fs::directory_iterator(temporary), {}), 1) << "this one's, until it ends";
}

TEST_F(Session, OnlyShipsAreWrittenAndOnlyIntoTheirFolder) {
  const std::string good = ShipFile(5);
  const auto files = [] { return std::distance(fs::recursive_directory_iterator("."), fs::recursive_directory_iterator()); };
  const auto before = files();
  const std::string names[] = {"../up", "a/b", "..", ".hidden", "", std::string("a\0b", 3), std::string(64, 'x'),
                               "a\nb", "/tmp/x", "a\\b", "\xe4"};
  for (const std::string &name : names) Handle(PacketFile, FilePayload(name, good));
  for (const char *content : {"", "\x1f", "#!/bin/sh\n"}) Handle(PacketFile, FilePayload("A", content));
  EXPECT_EQ(files(), before);
  for (const std::string &name : {std::string(63, 'x'), std::string("My ship-2_(old).x")})
    Handle(PacketFile, FilePayload(name, good));
  EXPECT_EQ(files(), before + 4);  // the ships, and the notes that they were downloads
}

namespace {

// A server on the loopback that does what a test tells it.
struct OnTheWire : Session {
  void SetUp() override {
    Session::SetUp();
    Options.PlayerName = "Me";
    enet_initialize();
    u16 port = static_cast<u16>(20000 + getpid() % 20000);
    for (; host == nullptr; ++port) {
      ENetAddress address{ENET_HOST_ANY, port};
      host = enet_host_create(&address, 2, NetChannels, 0, 0);
    }
    EXPECT_FALSE(ConnectToServer("127.0.0.1", 1));
    EXPECT_EQ(NewestLine(), "Could not connect to server");
    WhileServing([&] { EXPECT_TRUE(ConnectToServer("127.0.0.1", static_cast<u16>(port - 1))); });
    ASSERT_TRUE(PollUntil([this] { return peer != nullptr; }));
  }
  void TearDown() override {
    Online = false;
    enet_host_destroy(host);
    Session::TearDown();
  }
  void Serve() {
    ENetEvent event{};
    while (enet_host_service(host, &event, 1) > 0) {
      peer = event.peer;
      if (event.type != ENET_EVENT_TYPE_RECEIVE) continue;
      received.emplace_back(event.packet->data, event.packet->data + event.packet->dataLength);
      enet_packet_destroy(event.packet);
    }
  }
  // The server answers on a thread of its own while the work is done; ENet is not shared between the two.
  void WhileServing(const std::function<void()> &work) {
    std::atomic<bool> done{false};
    std::thread server([&] { while (!done) Serve(); });
    work();
    done = true;
    server.join();
  }
  void Send(const Bytes &packet) {
    enet_peer_send(peer, 0, enet_packet_create(packet.data(), packet.size(), ENET_PACKET_FLAG_RELIABLE));
  }
  bool PollUntil(const std::function<bool()> &done, int passes = 60000) {
    for (int i = 0; i < passes && !done(); ++i) {
      Serve();
      if (Online) PollNetwork();
    }
    return done();
  }
  bool HeardOf(const Bytes &packet, int passes = 60000) {
    return PollUntil([&] { return std::find(received.begin(), received.end(), packet) != received.end(); }, passes);
  }
  // Pongs may get lost on the way.
  bool Answers() {
    for (int i = 0; i < 30; ++i) {
      Send({PacketPing});
      if (HeardOf({PacketPong}, 2000)) return true;
    }
    return false;
  }

  ENetHost *host = nullptr;
  ENetPeer *peer = nullptr;
  std::vector<Bytes> received;
};

}  // namespace

TEST_F(OnTheWire, BothSidesHearOfAllAndNobodyTwice) {
  EXPECT_TRUE(HeardOf(Join({{PacketHello}, Text("0.23.0 Demo "), Text("Me"), {0}})));
  EXPECT_TRUE(HeardOf(Join({{PacketChat}, Text("|logged on")})));

  const struct { std::string typed, sent; } lines[] = {
      {"hello", "hello"}, {": waves", "|waves"}, {":waves", ":waves"}, {"/Me sits", "|sits"}, {"/men", ""}, {"/kick", ""},
      {std::string(256, 'a'), ""}, {std::string(99, 'b'), std::string(99, 'b')}, {"end", "end"}};
  const size_t before = received.size();
  std::vector<Bytes> expected;
  for (const auto &line : lines) {
    SendChat(line.typed.c_str());
    if (!line.sent.empty()) expected.push_back(Join({{PacketChat}, Text(line.sent)}));
  }
  ASSERT_TRUE(PollUntil([&] { return received.size() >= before + expected.size(); }));
  EXPECT_EQ(std::vector<Bytes>(received.begin() + static_cast<long>(before), received.end()), expected);
  SendChat(std::string(255, 'c').c_str());
  ASSERT_TRUE(PollUntil([&] { return received.size() > before + expected.size(); }));
  EXPECT_EQ(received.back()[0], PacketChat + 0x80);

  EXPECT_EQ(PlaceBlockNetworked(CubeOf(5), 50, 20, 30, ShipOf(0)), 0) << "for the server row 0 is another ship";
  const Bytes three = ShipList({"NULL", "NULL", "NULL"});
  Send(SealPacket(PacketShipList, three.data(), three.size()));
  ASSERT_TRUE(PollUntil([] { return TheShipTable.count == 3; }));
  Send(Join({{PacketPing}}));
  EXPECT_TRUE(HeardOf({PacketPong}));
  Send(Join({{PacketBlockPlace}, Edit(PacketBlockPlace, 2, 40)}));
  ASSERT_TRUE(PollUntil([] { return BlockExists(40, 20, 30, *ShipOf(2)); }));

  const size_t quiet = received.size();
  EXPECT_EQ(PlaceBlockNetworked(CubeOf(5), 50, 20, 30, ShipOf(2)), 1);
  EXPECT_TRUE(RemoveBlockNetworked(50, 20, 30, ShipOf(2)));
  EXPECT_TRUE(HeardOf(Join({{PacketBlockPlace}, Edit(PacketBlockPlace, 2, 50)})));
  EXPECT_TRUE(HeardOf(Join({{PacketBlockRemove}, Edit(PacketBlockRemove, 2, 50)})));
  EXPECT_EQ(received.size(), quiet + 2) << "what is received is never sent on";

  enet_peer_disconnect(peer, 0);
  ASSERT_TRUE(PollUntil([] { return !Online; }));
  for (int row = 0; row < 4; ++row) EXPECT_EQ(NewestLine(row), "ERROR: DISCONNECTED FROM SERVER! Please quit and re-enter tarnvale");
  EXPECT_EQ(PlaceBlockNetworked(CubeOf(5), 60, 20, 30, ShipOf(2)), 1);
  SendChat("nobody");
  PollUntil([] { return false; }, 50);
  EXPECT_EQ(received.size(), quiet + 2);
}

TEST_F(OnTheWire, AfterAnythingThatAServerMaySendAnHonestPacketStillWorks) {
  for (unsigned type = 0; type < 256; ++type) {
    if (type % 0x80 > PacketShipAdded + 2) continue;
    for (const Sample &sample : Samples())
      for (size_t length = 0; length < sample.payload.size(); ++length)
        Send(Join({{static_cast<u8>(type)}, Front(sample.payload, length)}));
    received.clear();
    ASSERT_TRUE(Answers()) << type;
  }
  const Bytes one = ShipList({"NULL"});
  Send(SealPacket(PacketShipList, one.data(), one.size()));
  Send(Join({{PacketBlockPlace}, Edit(PacketBlockPlace, 0, 40)}));
  EXPECT_TRUE(PollUntil([] { return TheShipTable.count == 1 && BlockExists(40, 20, 30, *ShipOf(0)); }));
  EXPECT_TRUE(Online);
}

TEST_F(OnTheWire, AFloodLeavesTimeForTheGame) {
  const Bytes file = Join({{PacketFile}, FilePayload("Rock", ShipFile(5))});  // takes a while to store
  for (int i = 0; i < 1000; ++i) Send(file);
  WhileServing([] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (int round = 0; round < 20; ++round) {
      const auto start = std::chrono::steady_clock::now();
      PollNetwork();
      EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500)) << round;
    }
  });
  TellRepeats(true);
  EXPECT_GT(Count(Log(), "Downloading ship Rock"), 20) << "20 lines, and the counts of the others once a second";
}
