// The server on a thread of its own, played with by clients on the loopback.
#include <dlfcn.h>

#include <atomic>

#include "serving.h"

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
  BlockEdit strange = Place(102), future = Place(102), empty = Place(102), flat = Place(102), beyond = Place(102), unseen = Place(102),
            becomes = Of(PacketBlockComponent, 100);
  flat.block.rotation = 0;
  beyond.block.rotation = 7;
  unseen.block.component = becomes.component = ComponentRow(4);  // a mark for debugging
  strange.block.component = 0xffff;
  future.block.state = 3;
  empty.block.state = StateEmpty;
  const struct { BlockEdit edit; bool truth; } refused[] = {
      {Place(1), true}, {Place(9999), true}, {strange, true}, {future, true}, {empty, true}, {flat, true}, {beyond, true}, {unseen, true},
      {becomes, true}, {Of(PacketBlockRemove, 103), true},
      {Of(PacketBlockRemove, 101), true}, {Of(PacketBlockComponent, 101), true}, {Place(20), true},
      {Of(PacketBlockComponent, 103), true}, {Of(PacketBlockRemove, 100, 1), false}, {Of(PacketBlockRemove, 100, -1), false}, {Place(10000), false}};
  for (const auto &r : refused) {
    a.edits.clear();
    SendEdit(&a, r.edit);
    Quiet({&a, &b});
    ASSERT_EQ(a.edits.size(), r.truth ? 1u : 0u) << r.edit.x << " " << r.edit.shipRow;
    EXPECT_TRUE(!r.truth || a.edits[0].type == (r.edit.x == 100 ? PacketBlockPlace : PacketBlockRemove)) << r.edit.x;
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
  EXPECT_EQ(HeadComponent(HeadAt(100, 200, 300, *ship)), 8);
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
  SendEdit(&a, Of(PacketBlockRemove, 100));
  Quiet({&a});
  ConsoleLine("kick Nobody");
  EXPECT_TRUE(a.online);
}

TEST_F(Server, WhoCrashedComesBackInTheirRowAndANamesakeWhoAnswersStays) {
  EnterBoth();
  const Motion place = StandBeside(&a, Place(170));
  ASSERT_TRUE(Until({&a, &b}, [&] { return !b.others.empty(); }));
  ASSERT_TRUE(JoinServer(&c, Here, Port, "Ada"));  // a second one in the same home, while the first plays
  ASSERT_TRUE(Until({&a, &b, &c}, [&] { return Synced(c) && b.players.size() == 3 && Has(b.chat, "* Ada(2) logged on"); }));
  EXPECT_EQ(b.players, (std::vector<std::string>{"Ada", "Ben", "Ada(2)"}));
  CloseBot(&c);
  ASSERT_TRUE(Until({&a, &b}, [&] { return b.players.size() == 2 && Has(b.chat, "* Ada(2) logged off"); }));
  Pause();
  for (Client &client : Clients) client.connected -= 60;  // long enough for a game to have loaded
  Resume();
  const size_t lines = b.chat.size();
  CrashBot(&a);
  const double start = Now();
  ASSERT_TRUE(JoinServer(&c, Here, Port, "Ada"));
  ASSERT_TRUE(Until({&b, &c}, [&] { return Synced(c); }));
  EXPECT_LT(Now() - start, 6);
  EXPECT_EQ(c.chat.size(), 1u) << "why they had to wait";
  EXPECT_EQ(c.players, (std::vector<std::string>{"Ada", "Ben"}));
  EXPECT_EQ(c.ownRow, 0);
  EXPECT_TRUE(std::equal(place.place, place.place + 3, c.place.place)) << "where they were";
  SendLine(&c, "back");
  ASSERT_TRUE(Until({&b, &c}, [&] { return Has(b.chat, "Ada: back"); }));
  EXPECT_EQ(b.chat.size(), lines + 1) << "nobody logged off or on";
}

TEST_F(Server, WhoWasKickedComesBackAsEverybodyComes) {
  EnterBoth();
  ASSERT_TRUE(Until({&a, &b}, [&] { return b.players.size() == 2; }));
  b.chat.clear();
  Pause();
  ConsoleLine("kick Ada");
  Resume();
  ASSERT_TRUE(JoinServer(&c, Here, Port, "Ada"));  // while the old connection still tells them why
  ASSERT_TRUE(Until({&b, &c}, [&] { return Synced(c) && Has(b.chat, "* Ada logged on") && b.players.size() == 2; }));
  EXPECT_TRUE(Has(b.chat, "* Ada logged off"));
  EXPECT_EQ(b.players, (std::vector<std::string>{"Ben", "Ada"}));
}

TEST_F(Server, AFileThatCannotBeLoadedEndsTheStartAndIsNamed) {
  Close();
  WriteText("saves/Rubbish.sts", "no ship");
  EXPECT_FALSE(StartServer());
  CloseWorld();
  EXPECT_TRUE(Logged("*ERR: saves/Rubbish.sts is no ship: mend it or take it away"));
  EXPECT_EQ(ReadText("saves/Rubbish.sts"), "no ship");
  fs::remove("saves/Rubbish.sts");
  const struct { const char *options, *fault; } wrong[] = {{"\nAddress 300.1.2.3\n", "serveroptions:2: Address is no address: 300.1.2.3"},
                                                           {"Port 1\nAddress \r\n", "serveroptions:2: Address has no value"},
                                                           {"\xef\xbb\xbf" "Address 300.1.2.4\n", "serveroptions:1: Address is no address: 300.1.2.4"},
                                                           {"Address 8.8.8.8\n", "serveroptions:1: this machine doesn't have the address 8.8.8.8"}};
  for (const auto &w : wrong) {
    WriteText("serveroptions", w.options);
    EXPECT_FALSE(StartServer());
    CloseWorld();
    EXPECT_TRUE(Logged(w.fault)) << w.fault;
  }
  TheServerOptions.Port = 0;
}

TEST_F(Server, AnOwnersFileBesideTheFolderIsKeptAndTheServersOwnIsNot) {
  const auto reopen = [this](const std::string &file) {
    Close();
    if (!file.empty()) fs::copy_file(file, "saves/Asteroid.sts", fs::copy_options::overwrite_existing);
    Open(3);
  };
  const auto kept = [](const char *name) { return ReadText(std::string("saves/Asteroid") + name); };
  PlaceHere(ship, 5000, 5000, 5000, CubeOf(5));
  ASSERT_EQ(SaveShipStream(ship, "mine"), 1);
  const std::string mine = ReadText("mine");
  fs::copy_file("saves/Asteroid.sts", "old");
  Enter(&a, "Ada");
  SendEdit(&a, Place(160));
  SendLine(&a, "built");
  ASSERT_TRUE(Until({&a}, [&] { return Has(a.chat, "Ada: built"); }));
  CloseBot(&a);
  reopen("");
  EXPECT_FALSE(fs::exists("saves/Asteroid (file).sts")) << "what the server wrote is the folder's";
  reopen("mine");
  EXPECT_EQ(kept(" (file).sts"), mine);
  EXPECT_NE(kept(".sts"), mine);
  EXPECT_TRUE(Logged("WARN: saves/Asteroid.sts was not written by this server: it is kept as saves/Asteroid (file).sts"));
  const std::string old = ReadText("old");
  reopen("old");
  EXPECT_EQ(kept(" (file 2).sts"), old) << "an older one that the owner put back is theirs too";
  EXPECT_EQ(TheShipTable.count, 1) << "what is kept is no ship of its own";
  fs::remove("saves/.Asteroid.written");
  reopen("");
  EXPECT_FALSE(fs::exists("saves/Asteroid (file 3).sts")) << "without a note the same blocks tell it";
  fs::copy_file("mine", "saves/Asteroid.sts", fs::copy_options::overwrite_existing);  // while it runs
  Enter(&b, "Ben");
  SendEdit(&b, Place(161));
  SendLine(&b, "built");
  ASSERT_TRUE(Until({&b}, [&] { return Has(b.chat, "Ben: built"); }));
  Close();
  EXPECT_EQ(kept(" (file 3).sts"), mine);
  fs::rename("saves/Asteroid (file).sts", "saves/Asteroid.sts");  // the way back that the log tells
  fs::remove_all("saves/Asteroid");
  Open(3);
  EXPECT_EQ(TheShipTable.count, 1) << "\"Asteroid (file 2)\" comes before \"Asteroid\", which has no folder yet";
  EXPECT_TRUE(Logged("WARN: saves/Asteroid (file 2).sts is taken for a file that was kept beside the ship Asteroid"));
}

// An owner who puts a file there at the worst moment: behind the n-th time that the disk was made sure of something.
static std::atomic<int> OwnerComesAt{0};

extern "C" int fsync(int file) {
  static const auto real = reinterpret_cast<decltype(&fsync)>(dlsym(RTLD_NEXT, "fsync"));
  const int result = real(file);
  if (OwnerComesAt > 0 && --OwnerComesAt == 0) rename("put", "saves/Asteroid.sts");
  return result;
}

TEST_F(Server, AnOwnersFileThatComesWhileTheServersIsWrittenIsKept) {
  for (int moment = 1; moment <= 5; ++moment) {
    WriteText("put", "owner's " + std::to_string(moment));
    OwnerComesAt = moment;
    for (int start = 0; start < 3; ++start) {
      Close();
      Open(3);
    }
    EXPECT_FALSE(fs::exists("put")) << moment;
  }
  std::set<std::string> there;
  for (const auto &entry : fs::directory_iterator("saves"))
    if (entry.is_regular_file() && entry.path().filename().string()[0] != '.') there.insert(ReadText(entry.path().string()));
  for (int moment = 1; moment <= 5; ++moment) EXPECT_TRUE(there.contains("owner's " + std::to_string(moment))) << moment;
}

// What a command line says, and its status.
static std::pair<std::string, int> Said(const std::string &command) {
  FILE *pipe = popen((command + " 2>&1").c_str(), "r");
  std::string text;
  for (int letter; (letter = std::fgetc(pipe)) != EOF;) text += static_cast<char>(letter);
  return {text, WEXITSTATUS(pclose(pipe))};
}

TEST_F(Server, TheControlSocketDoesWhatIsTypedForItsOwnerOnly) {
  Close();
  const auto send = [](const std::string &line) { return Said(Program() + " --send . '" + line + "'"); };
  using Answers = std::pair<std::string, int>;
  EXPECT_EQ(send("list"), Answers("No server runs in .\n", 1));
  const auto isOpen = [] { return fs::is_socket("server.control"); };
  const pid_t killed = StartProgram();
  ASSERT_TRUE(Until({}, isOpen));
  EndProgram(killed, SIGKILL);
  EXPECT_EQ(send("list"), Answers("No server runs in .\n", 1)) << "a killed one's socket";
  const pid_t pid = StartProgram();
  ASSERT_TRUE(Until({&a}, [&] { return send("list").second == 0; }));
  EXPECT_EQ(fs::status("server.control").permissions() & fs::perms::all, fs::perms::owner_read | fs::perms::owner_write);
  Enter(&a, "Ada");
  EXPECT_EQ(send("list").first.substr(0, 26), "1 of 3 players\n  Ada  127.");
  EXPECT_EQ(send("say good morning"), Answers("", 0));
  EXPECT_TRUE(Until({&a}, [&] { return Has(a.chat, "Server: good morning"); }));
  EXPECT_EQ(send("kick Nobody"), Answers("nobody is called \"Nobody\"\n", 1));
  EXPECT_EQ(send("what"), Answers("list | say TEXT | kick NAME | save | stop\n", 1));
  const std::string before = ReadText("saves/Asteroid.sts");
  SendEdit(&a, Place(160));
  SendLine(&a, "built");
  ASSERT_TRUE(Until({&a}, [&] { return Has(a.chat, "Ada: built"); }));
  EXPECT_EQ(send("save"), Answers("saved\n", 0));
  EXPECT_NE(ReadText("saves/Asteroid.sts"), before) << "when the sender hears of it, it is done";
  EXPECT_EQ(send(std::string(5000, 'x')).second, 2);
  EXPECT_EQ(Said("python3 -c \"import socket; s = socket.socket(socket.AF_UNIX); s.connect('server.control'); s.sendall(b'x' * 9000); "
                 "print(s.recv(99).decode())\""), Answers("the line is too long\n= 1\n\n", 0));
  if (geteuid() == 0) {
    fs::permissions(".", fs::perms::all);
    const std::string stranger = "setpriv --reuid 65534 --clear-groups ";
    EXPECT_EQ(Said(stranger + Program() + " --send . list"), Answers("Only the owner of . may do that\n", 1));
    ASSERT_EQ(chmod("server.control", 0777), 0);
    EXPECT_EQ(Said(stranger + Program() + " --send . stop"), Answers("only the owner of the folder may do that\n", 1));
  }
  EXPECT_EQ(send("  list  ").first.substr(0, 14), "1 of 3 players");
  EXPECT_EQ(send("  "), Answers("That is no line\n", 2));
  EXPECT_EQ(Said("python3 -c \"import socket, time\n"
                 "def ask(line):\n  s = socket.socket(socket.AF_UNIX); s.connect('server.control'); s.sendall(line); return s\n"
                 "askers = [ask(b'stop\\n')]\n"
                 "while 'Stopping' not in open('server.log').read(): time.sleep(0.01)\n"
                 "askers += [ask(b'stop\\n'), ask(b'save\\n')]\n"
                 "for s in askers: print(s.makefile().read().split())\""),
            Answers("['stopped', '=', '0']\n['stopped', '=', '0']\n['saved', '=', '0']\n", 0)) << "while a player who doesn't answer is waited for";
  EndProgram(pid, 0);
  EXPECT_FALSE(isOpen());
}

TEST_F(Server, ItsLogOutlivesStartsThatFailAndFiveThatDoNot) {
  Close();
  const auto log = [](const char *age) { return ReadText(std::string("server.log") + age); };
  const pid_t pid = StartProgram();
  const std::string running = log("");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Said(Program()), std::make_pair(std::string("Another server, or a game, runs in this folder\n"), 1));
  EXPECT_EQ(log(""), running);
  EXPECT_FALSE(fs::exists("server.log.old") || fs::exists("errors.txt.old"));
  EndProgram(pid, SIGKILL);
  WriteText("server.log", "the crashed one's");
  WriteText("saves/Rubbish.sts", "no ship");
  for (int i = 0; i < 7; ++i) EXPECT_EQ(Said(Program()).second, 1);
  EXPECT_EQ(log(".old"), "the crashed one's") << "starts that fail again and again take one place";
  EXPECT_NE(log("").find("Rubbish"), std::string::npos);
  for (int i = 0; i < 30; ++i) fs::create_directory("saves/empty" + std::to_string(i));
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Said(Program()).second, 1);
  EXPECT_EQ(log(".old"), "the crashed one's") << "nor does one that says a line so often that it is counted";
  EXPECT_NE(log("").find(" times more)"), std::string::npos);
  EXPECT_TRUE(log("").ends_with("\n*ERR: The server did not start \n"));
  for (const char *behind : {"WARN: a (3 times more) \n", "a (40 times more)\n"}) WriteText("server.log", log("") + behind);
  EXPECT_EQ(Said(Program()).second, 1);
  EXPECT_EQ(log(".old"), "the crashed one's");
  for (int i = 0; i < 30; ++i) fs::remove_all("saves/empty" + std::to_string(i));
  for (int age = 5; age > 1; --age) WriteText("server.log.old" + std::to_string(age), std::to_string(age));
  fs::remove("saves/Rubbish.sts");
  WriteText("server.log", "Ada: *ERR: The server did not start \n");
  EndProgram(StartProgram(), SIGTERM);
  EXPECT_EQ(log(".old"), "Ada: *ERR: The server did not start \n") << "a player's words are no end of a start";
  EXPECT_EQ(log(".old2") + log(".old3") + log(".old5"), "the crashed one's24");
  fs::create_directory("bare");
  const auto [words, status] = Said(Program() + " bare");
  EXPECT_TRUE(status == 1 && words.starts_with("There is no config/ in ")) << words;
  EXPECT_TRUE(fs::is_empty("bare"));
}

// The program is killed while two players build. Every fifth one removes what the one before it placed.
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
