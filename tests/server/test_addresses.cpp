// The server as a program, played with from many addresses, honest ones and others: in a network of the test's own, where every
// address that begins with 10 is this machine's.
#include "serving.h"

#include <span>

#include "server/budgets.h"

namespace {

constexpr const char *Address = "10.0.0.1";

// A test begins with it: it runs itself again in a network of its own, and goes on there only.
bool IsInOwnNetwork() {
  if (std::getenv("TARNVALE_OWN_NETWORK") != nullptr) return true;
  const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
  const std::string filter = std::string("--gtest_filter=") + test->test_suite_name() + "." + test->name();
  const std::string self = fs::read_symlink("/proc/self/exe");
  const pid_t child = fork();
  if (child == 0) {
    setenv("TARNVALE_OWN_NETWORK", "1", 1);
    execlp("unshare", "unshare", "-rn", "sh", "-c", "ip link set lo up && ip route add local 10.0.0.0/8 dev lo && exec \"$0\" \"$1\"", self.c_str(),
           filter.c_str(), nullptr);
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "in its own network";
  return false;
}

bool MayHaveNetwork() { return std::getenv("TARNVALE_OWN_NETWORK") != nullptr || std::system("unshare -rn true 2>/dev/null && command -v ip >/dev/null") == 0; }

#define IN_OWN_NETWORK() \
  if (!MayHaveNetwork()) GTEST_SKIP() << "no network of its own can be made here"; \
  if (!IsInOwnNetwork()) return

std::string AddressOf(int number) { return "10.1." + std::to_string(number / 250) + "." + std::to_string(1 + number % 250); }

size_t CountOf(const std::vector<std::string> &lines, const std::string &words) {
  return static_cast<size_t>(std::count_if(lines.begin(), lines.end(), [&](const std::string &l) { return l.find(words) != std::string::npos; }));
}

struct Addresses : ShipTest {
  void SetUp() override {
    ShipTest::SetUp();
    WriteText("serveroptions", "Address 10.0.0.1\nMaxAsteroidSize 1\nPlayers 64\n");
    enet_initialize();
  }
  void TearDown() override {
    CloseBot(&watcher);
    if (pid != 0) EndProgram(pid, SIGTERM);
    ShipTest::TearDown();
  }
  void Begin() {
    pid = StartProgram();
    ASSERT_TRUE(Join(&watcher, "10.0.0.2", "Watcher"));
    ASSERT_TRUE(Until({&watcher}, [this] { return Synced(watcher) && Has(watcher.chat, "* Watcher logged on"); }));
    watcher.chat.clear();
    watcher.edits.clear();
    watcher.lists = 0;
    start = Now();
  }
  static bool Join(Bot *bot, const std::string &from, const std::string &name) {
    bot->from = from;
    return JoinServer(bot, Address, GamePort, name);
  }
  double Passed() const { return Now() - start; }

  pid_t pid = 0;
  Bot watcher;
  double start = 0;
};

void PollAll(std::span<Bot> bots) {
  for (Bot &bot : bots)
    if (bot.host != nullptr) PollBot(&bot);
}

BlockEdit EditNumber(int number) {
  BlockEdit e = Place(static_cast<u16>(100 + number % 60), static_cast<u16>(1 + number / 60 % 7));
  e.y = static_cast<u16>(200 + number / 420 % 10);
  return e;
}

}  // namespace

// One connection after the other, each of which uses what it is given to the last.
TEST_F(Addresses, WhoComesAgainFindsTheBudgetsAsTheyWereLeft) {
  IN_OWN_NETWORK();
  Begin();
  int joined = 0, edit = 0;
  while (Passed() < 5) {
    Bot eve;
    const bool in = Join(&eve, "10.0.0.3", "Eve") && Until({&eve, &watcher}, [&] { return eve.synced || !eve.online; }) && eve.synced;
    joined += in ? 1 : 0;
    if (in) StandBeside(&eve, Place(130));
    for (int i = 0; in && i < 400; ++i) SendEdit(&eve, EditNumber(edit++));
    for (int i = 0; in && i < 15; ++i) SendLine(&eve, "spam");
    for (int i = 0; i < 40; ++i) Until({&eve, &watcher}, [] { return false; }, 0.001);
    CloseBot(&eve);
  }
  const double seconds = Passed();
  Quiet({&watcher});
  const size_t lines = CountOf(watcher.chat, "spam"), edits = watcher.edits.size(), presence = CountOf(watcher.chat, "* ");
  std::printf("in %.1f s: %i joins, %zu lines, %zu edits, %zu lines about who came and went, %zu lists\n", seconds, joined, lines, edits,
              presence, watcher.lists);
  EXPECT_TRUE(joined >= 5 && lines >= 10 && edits >= 200) << "what is anybody's due";
  EXPECT_LE(static_cast<double>(joined), 16 + 0.5 * seconds + 1);
  EXPECT_LE(static_cast<double>(lines), 10 + 2 * (seconds + 1));
  EXPECT_LE(static_cast<double>(edits), 200 + 200 * (seconds + 1));
  EXPECT_LE(static_cast<double>(watcher.lists), 2 * (seconds + 1));
}

TEST_F(Addresses, EightPlayersOfOneHomeHaveAllThatIsTheirs) {
  IN_OWN_NETWORK();
  Begin();
  Bot home[9];
  for (int i = 0; i < 8; ++i) {
    ASSERT_TRUE(Join(&home[i], "10.0.0.4", "Player" + std::to_string(i)));
    ASSERT_TRUE(Until({&home[i], &watcher}, [&] { return home[i].synced; }));
    StandBeside(&home[i], Place(130));
  }
  Until({&watcher}, [] { return false; }, 3.5);  // longer silent than a lost connection, as games that load
  EXPECT_TRUE(Join(&home[8], "10.0.0.4", "Ninth"));
  EXPECT_TRUE(Until({&watcher}, [&] { return PollAll(home), !home[8].online; }));
  EXPECT_EQ(CountOf(home[8].chat, "too many connections from your address"), 1u);
  for (int i = 0; i < 8; ++i) {
    for (int e = 0; e < 150; ++e) SendEdit(&home[i], EditNumber(150 * i + e));
    for (int line = 0; line < 9; ++line) SendLine(&home[i], "hello");
  }
  const auto all = [&] {
    PollAll(home);
    return watcher.edits.size() == 1200 && CountOf(watcher.chat, ": hello") == 72;
  };
  EXPECT_TRUE(Until({&watcher}, all)) << watcher.edits.size() << " " << CountOf(watcher.chat, ": hello");
  for (Bot &bot : home) CloseBot(&bot);
}

TEST_F(Addresses, OfSixteenOfOneAddressNeverMoreThanEightPlay) {
  IN_OWN_NETWORK();
  Begin();
  Bot old[8], fresh[8];
  for (int i = 0; i < 8; ++i) ASSERT_TRUE(Join(&old[i], "10.0.0.6", "Old" + std::to_string(i)));
  const auto synced = [](const Bot (&bots)[8]) { return std::count_if(std::begin(bots), std::end(bots), [](const Bot &b) { return b.synced; }); };
  ASSERT_TRUE(Until({&watcher}, [&] { return PollAll(old), synced(old) == 8; }));
  Until({&watcher}, [] { return false; }, 3.5);
  for (int i = 0; i < 8; ++i) ASSERT_TRUE(Join(&fresh[i], "10.0.0.6", "New" + std::to_string(i)));
  Until({&watcher}, [&] { return PollAll(fresh), false; }, 1);
  EXPECT_EQ(synced(fresh), 0);
  EXPECT_EQ(CountOf(fresh[0].chat, "please wait"), 1u);
  for (int i = 0; i < 5; ++i) CrashBot(&old[i]);
  const auto gone = [&] { return std::count_if(std::begin(fresh), std::end(fresh), Gone); };
  ASSERT_TRUE(Until({&watcher}, [&] { return PollAll(old), PollAll(fresh), synced(fresh) == 5 && gone() == 3; }, 20));
  ASSERT_TRUE(Until({&watcher}, [&] { return PollAll(old), PollAll(fresh), CountOf(watcher.chat, "logged off") == 5; }));
  ASSERT_TRUE(Until({&watcher}, [&] { return PollAll(old), PollAll(fresh), watcher.players.size() == 9; }));
  for (auto *bots : {&old, &fresh})
    for (Bot &bot : *bots) CloseBot(&bot);
}

// Nine of an address, and the first one's going, leave nobody with what is no longer theirs.
TEST(Budgets, ASeatIsOnePlayersAndStaysWhileTheyDo) {
  ENetPeer peer{};
  peer.address.host = ENET_HOST_TO_NET_32(0x0a000009);
  Client players[9];
  for (int i = 0; i < 9; ++i) {
    players[i].peer = &peer;
    EXPECT_EQ(TakeSeat(&players[i]), i < 8);
  }
  EXPECT_FALSE(HasFreeSeat(&peer) || SpendLine(&players[8], Now()));
  for (int line = 0; line < 10; ++line) EXPECT_TRUE(SpendLine(&players[1], 1000));
  LeaveSeat(&players[0]);
  ForgetFullBudgets(Now() + 1000);
  EXPECT_FALSE(SpendLine(&players[1], 1000)) << "the address is remembered while somebody plays from it";
  EXPECT_TRUE(SpendLine(&players[2], 1000) && TakeSeat(&players[8]) && SpendLine(&players[8], 1000));
  for (Client &player : players) LeaveSeat(&player);
}

TEST_F(Addresses, ManyWhoComeAndGoDoNotFillTheChatAndTheLastListIsTrue) {
  IN_OWN_NETWORK();
  Begin();
  int joined = 0;
  for (; Passed() < 5; ++joined) {
    Bot guest;
    ASSERT_TRUE(Join(&guest, AddressOf(joined), "Guest"));
    Until({&guest, &watcher}, [&] { return guest.synced; });
    CloseBot(&guest);
  }
  const double seconds = Passed();
  Bot last;
  ASSERT_TRUE(Join(&last, "10.0.0.5", "Last"));
  EXPECT_TRUE(Until({&last, &watcher}, [&] { return Synced(last) && watcher.players == std::vector<std::string>{"Watcher", "Last"}; }));
  const size_t presence = CountOf(watcher.chat, "* ");
  std::printf("in %.1f s: %i joins, %zu lines about who came and went, %zu lists\n", seconds, joined, presence, watcher.lists);
  EXPECT_GT(joined, 40);
  EXPECT_LE(static_cast<double>(presence), 20 + 2 * (seconds + 2));
  EXPECT_GE(CountOf(watcher.chat, " more came or went"), 1u);
  EXPECT_LE(static_cast<double>(watcher.lists), 2 * (seconds + 2));
  SendPlace(&last, {.place = {1, 2, 3}, .velocity = {}});
  EXPECT_TRUE(Until({&last, &watcher}, [&] { return !watcher.others.empty() && watcher.others.back().place[2] == 3; }));
  CloseBot(&last);
}

// Asks for connections that it never finishes, each from another address.
static void AskForConnections(const std::atomic<bool> *stop, int perSecond) {
  const ENetAddress to = [] {
    ENetAddress a{};
    enet_address_set_host(&a, Address);
    a.port = GamePort;
    return a;
  }();
  u8 packet[] = {0x8f, 0xff, 0, 0, 0x82, 0xff, 0, 1, 0, 0, 0, 0, 0, 0, 5, 120, 0, 0, 128, 0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0,
                 0, 0, 19, 136, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0};
  for (int i = 0; !*stop; ++i) {
    ENetAddress from{};
    enet_address_set_host(&from, ("10.2." + std::to_string(i / 250 % 250) + "." + std::to_string(1 + i % 250)).c_str());
    const ENetSocket socket = enet_socket_create(ENET_SOCKET_TYPE_DATAGRAM);
    if (enet_socket_bind(socket, &from) == 0) {
      packet[44] = static_cast<u8>(i);
      packet[45] = static_cast<u8>(i >> 8);
      ENetBuffer buffer{packet, sizeof packet};
      enet_socket_send(socket, &to, &buffer, 1);
    }
    enet_socket_destroy(socket);
    std::this_thread::sleep_for(std::chrono::microseconds(1000000 / perSecond));
  }
}

TEST_F(Addresses, ConnectionsThatAreNeverFinishedKeepNobodyOut) {
  IN_OWN_NETWORK();
  Begin();
  std::atomic<bool> stop{false};
  std::thread flood(AskForConnections, &stop, 60);
  Until({&watcher}, [] { return false; }, 6);
  int out = 0;
  for (int i = 0; i < 20; ++i) {
    Bot player;
    player.patience = 500;  // as a game has it
    const bool in = Join(&player, AddressOf(i), "Player") && Until({&player, &watcher}, [&] { return player.synced; });
    out += in ? 0 : 1;
    CloseBot(&player);
    Until({&watcher}, [] { return false; }, 0.15);
  }
  stop = true;
  flood.join();
  std::printf("%i of 20 players were kept out\n", out);
  EXPECT_LE(out, 2);
}
