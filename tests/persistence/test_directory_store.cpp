// Ships as folders: their bytes, single blocks written in place, and what a kill, a full disk or a stranger leaves there.
#include "persistence/directory_store.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "persistence/cursor.h"
#include "persistence/ships.h"
#include "persistence/stream.h"
#include "platform/threads.h"
#include "support/installation.h"
#include "world/access.h"
#include "world/verify.h"

namespace fs = std::filesystem;

constexpr size_t Slot = 14002;

class DirectoryStore : public testing::Test {
 protected:
  void SetUp() override {
    LoadTables();
    UseTemporaryInstallation();
    LogInit();
    ship = NewShip("a", {});
  }
  void TearDown() override { Drop(ship); }
  static Ship *NewShip(const std::string &stem, const Cells &cells) {
    Ship *made = NewTestShip();
    made->fileStem = stem;
    Fill(made, cells);
    return made;
  }
  // The blocks of saves/<name>/; *result gets the load's answer.
  static Cells Loaded(const char *name, int *result = nullptr) {
    Ship *other = NewTestShip();
    const int answer = LoadShipDirectory(other, name, true, true);
    if (result != nullptr) *result = answer;
    EXPECT_EQ(ShipFault(*other), "");
    const Cells cells = CellsOf(*other);
    Drop(other);
    return cells;
  }
  static int Update(Ship *to, const Cell &at, u64 head) { return SaveBlockUpdate(BlockFromHead(head), at[0], at[1], at[2], to); }
  static bool Logged(const std::string &words) { return Count(ReadText("errors.txt"), words) != 0; }
  static void SaveNew(const char *stem, const Cells &cells) {
    Ship *made = NewShip(stem, cells);
    EXPECT_EQ(SaveShipDirectory(made), 1);
    Drop(made);
  }
  Ship *ship = nullptr;
};

static std::string Text(const std::vector<u8> &bytes) { return {bytes.begin(), bytes.end()}; }

TEST_F(DirectoryStore, AShipsFilesHaveTheDocumentedBytes) {
  PlaceHere(ship, 5042, 7, 310, CubeOf(5, 2, 3, 1));
  Block b = CubeOf(3, 4, 6, 2);
  b.tail[0] = 0xaa;
  b.tail[5] = 0xbb;
  PlaceBlockRaw(b, AddressOf(5001, 0, 399), ship);
  ship->position[2] = -2;
  ship->velocity[0] = 7;
  FindCells(AddressOf(5001, 0, 399), *ship)->heads[901] ^= u64{800 ^ 0x1234} << 48;  // its heat
  ASSERT_EQ(SaveShipDirectory(ship), 1);
  std::vector<u8> info;
  PutU16(&info, 1);
  for (const i64 axis : {i64{-50500000}, i64{-50500000}, i64{-2}}) PutU64(&info, static_cast<u64>(axis));
  for (const u32 axis : {7u, 0u, 0u}) PutU32(&info, axis);
  EXPECT_EQ(ReadText("saves/a/info.sis"), Text(info));
  std::string slots(2 * Slot, '\0');  // chunk 104 (5042, 7, 310) and chunk 900 (5001, 0, 399), rising
  slots.replace(0, 2, "\x68\0", 2).replace(2 + 72 * 14, 8, "\xae\0\5\0\2\0\x20\3", 8);
  slots.replace(Slot, 2, "\x84\3", 2).replace(Slot + 2 + 901 * 14, 14, "\x5a\0\3\0\4\0\x34\x12\xaa\0\0\0\0\xbb", 14);
  EXPECT_EQ(ReadText("saves/a/5/300.sss"), slots);
  Ship *other = NewTestShip();
  ASSERT_EQ(LoadShipDirectory(other, "a", true, false), 1);
  EXPECT_EQ(CellsOf(*other), CellsOf(*ship));
  EXPECT_EQ(FindCells(AddressOf(5001, 0, 399), *other)->tails[901][5], 0xbb);
  EXPECT_TRUE(other->position[2] == -2 && other->velocity[0] == 7 && other->fileStem == "a" && other->summary->blockCount == 2);
  EXPECT_NE(FindCells(AddressOf(5042, 7, 310), *other)->visibility[72], VisibilityUndecided) << "finished";
  EXPECT_EQ(ShipFault(*other), "") << "a block that is due for the heat step is on its list again";
  Drop(other);
}

TEST_F(DirectoryStore, AShipKnownByItsSlotsLosesNothing) {
  const Cells cells = MixedCells(3000, 1);
  SaveNew("b", cells);
  Ship *known = NewTestShip();
  ASSERT_EQ(LoadShipDirectory(known, "b", false, false), 1);
  Block b;
  EXPECT_EQ(GetBlock(&b, 5000, 5000, 5000, *known), ReadNoChunk);
  EXPECT_TRUE(CellsOf(*known).empty());
  fs::resize_file("saves/b/555/0.sss", fs::file_size("saves/b/555/0.sss") + 5000);  // an append that was cut off
  Cells expected = cells;
  expected[{5000, 5000, 5000}] = PlacedHead(2, 3, 1, 0);
  expected[{5200, 5000, 5000}] = PlacedHead(1, 2, 1, 0);
  for (const Cell &at : {Cell{5000, 5000, 5000}, Cell{5200, 5000, 5000}}) EXPECT_EQ(Update(known, at, expected[at]), 1);
  EXPECT_EQ(Loaded("b"), expected);
  EXPECT_EQ(SaveShipDirectory(known), 1) << "chunks that aren't in memory come from the old files";
  EXPECT_EQ(Loaded("b"), expected);
  PlaceHere(known, 5300, 5000, 5000, CubeOf(1, 2));
  EXPECT_EQ(SaveShipDirectory(known), 1);
  fs::remove("saves/b/555/0.sss");
  EXPECT_EQ(SaveShipDirectory(known), 0) << "what is nowhere can't be saved";
  EXPECT_EQ(Loaded("b").size(), 2u);
  Drop(known);
}

TEST_F(DirectoryStore, UpdatesReuseTheSlotOfTheirChunk) {
  const char *file = "saves/a/555/0.sss";
  EXPECT_EQ(Update(ship, {5000, 5000, 5000}, 0), 0);
  EXPECT_TRUE(Logged("*ERR: Can't find ship directory to save block update to"));
  ASSERT_EQ(SaveShipDirectory(ship), 1);
  for (const u16 c : {u16{0}, u16{1}, u16{9999}, u16{65535}})
    for (const Cell &at : {Cell{c, 5000, 5000}, Cell{5000, c, 5000}, Cell{5000, 5000, c}}) EXPECT_EQ(Update(ship, at, 0), 0);
  EXPECT_EQ(Count(ReadText("errors.txt"), "*ERR: Massively out of bounds block update sent. Ignoring."), 12);
  Cells model = {{{5090, 5000, 5000}, PlacedHead(1, 2, 3, 1)}, {{5010, 5000, 5000}, PlacedHead(5, 2, 1, 0)}};
  PlaceBlockRaw(BlockFromHead(model[{5090, 5000, 5000}]), AddressOf(5090, 5000, 5000), ship);
  EXPECT_EQ(Update(ship, {5091, 5000, 5000}, model[{5091, 5000, 5000}] = PlacedHead(2, 2, 1, 0)), 1) << "with the rest of its chunk";
  EXPECT_EQ(Update(ship, {5010, 5000, 5000}, model[{5010, 5000, 5000}]), 1);
  EXPECT_TRUE(fs::file_size(file) == 2 * Slot && ReadText(file)[0] == 9 && ReadText(file)[Slot] == 1) << "in order of touch";
  for (u16 i = 0; i < 2000; ++i) {  // records on the borders of pages among them
    const Cell at = {static_cast<u16>(5010 + i % 10 + (i < 1000 ? 0 : 80)), static_cast<u16>(5000 + i / 10 % 10), static_cast<u16>(5000 + i / 100 % 10)};
    ASSERT_EQ(Update(ship, at, model[at] = PlacedHead(1u + i % 7, 1u + i % 11, i % 8u, i % 4u)), 1);
  }
  EXPECT_EQ(fs::file_size(file), 2 * Slot);
  EXPECT_EQ(Loaded("a"), model);
  EXPECT_EQ(Update(ship, {5010, 5000, 5000}, 0), 1) << "a removed block";
  model.erase({5010, 5000, 5000});
  EXPECT_EQ(Update(ship, {2, 9998, 2}, model[{2, 9998, 2}] = PlacedHead(1, 2, 1, 0)), 1);
  SaveNew("a", model);  // another record of the ship changes the order of its slots
  EXPECT_EQ(Update(ship, {5015, 5000, 5000}, model[{5015, 5000, 5000}] = PlacedHead(3, 3, 3, 3)), 1);
  EXPECT_TRUE(Loaded("a") == model && fs::file_size(file) == 2 * Slot);
  const std::string whole = ReadText(file);
  const size_t torn = whole[0] == 1 ? 2 + 5 * 14 : Slot + 2 + 5 * 14;  // an update of (5015, 5000, 5000) that was killed halfway
  const std::string note("\x2b\2\0\0\0\0\5\0", 8);
  for (const auto &[bytes, fate] : {std::pair{note.substr(0, 4) + (torn < Slot ? "" : "\1") + note.substr(torn < Slot ? 4 : 5) + whole.substr(torn, 14), whole},
                                    {std::string("\x2b\2\0\0\2\0\5\0", 8) + std::string(14, 'x'), std::string()}, {std::string(), std::string()},
                                    {std::string("\x2b\2\0\0\0\0\xe8\3", 8) + std::string(14, 'x'), std::string()}}) {
    const std::string half = std::string(whole).replace(torn, 7, 7, '\x1');
    WriteText(file, half);
    WriteText("saves/a/.update", bytes);
    Loaded("a");
    EXPECT_TRUE(ReadText(file) == (fate.empty() ? half : fate) && !fs::exists("saves/a/.update")) << bytes.size();
  }
  fs::remove(file);
  EXPECT_EQ(Update(ship, {5015, 5000, 5000}, 0), 0);
  EXPECT_TRUE(Logged("*ERR: Coult not open superchunk file to save block update"));
}

TEST_F(DirectoryStore, FilesOfStrangersAreReportedAndNotFollowed) {
  const Cells cells = {{{5000, 5000, 5000}, PlacedHead(1, 2, 1, 0)}};
  const std::string file = "saves/a/555/0.sss";
  SaveNew("whole", cells);
  const std::string whole = ReadText("saves/whole/555/0.sss");
  const auto put = [&](size_t at, const std::string &bytes) { return std::string(whole).replace(at, bytes.size(), bytes); };
  const u64 rows[] = {PlacedHead(static_cast<unsigned>(FindMaterial(110)), 2, 1, 0),
                      PlacedHead(1, static_cast<unsigned>(FindComponent(6)), 1, 0)};
  const struct {
    const char *what, *warning;
    std::string bytes;
    Cells found;
  } cases[] = {{"chunk 1000", "outside every ship", put(0, "\xe8\3"), {}}, {"chunk 65535", "outside every ship", put(0, "\xff\xff"), {}},
               {"cut", "ends within a chunk", whole + whole.substr(0, Slot - 1), cells}, {"short", "ends within a chunk", "ab", {}},
               {"empty", nullptr, "", {}}, {"material", "Placeholders", put(4, "\xff\xff"), {{{5000, 5000, 5000}, rows[0]}}},
               {"component 0", "Placeholders", put(6, std::string(2, '\0')), {{{5000, 5000, 5000}, rows[1]}}},
               {"a later slot counts", nullptr, put(4, "\2") + whole, cells}, {"emptied later", nullptr, whole + std::string(Slot, '\0'), {}}};
  for (const auto &c : cases) {
    LogInit();
    fs::remove_all("saves/a");
    fs::copy("saves/whole", "saves/a", fs::copy_options::recursive);
    WriteText(file, c.bytes);
    EXPECT_EQ(Loaded("a"), c.found) << c.what;
    EXPECT_EQ(Logged("WARN"), c.warning != nullptr) << c.what << ReadText("errors.txt");
    EXPECT_TRUE(c.warning == nullptr || Logged(c.warning)) << c.what;
    EXPECT_EQ(ReadText(file), c.bytes) << "a load changes nothing";
  }
  LogInit();
  WriteText(file, whole);
  for (const char *name : {"saves/a/555/0.bak", "saves/a/555/1000.sss", "saves/a/555/99999999999.sss", "saves/a/555/x.sss", "saves/a/1000/0.sss",
                           "saves/a/0555/0.sss", "saves/a/longer/0.sss", "saves/a/555/.0.sss.tmp"}) WriteText(name, put(4, "\2"));
  fs::create_directories("saves/a/555/7.sss");
  WriteText("saves/a/444", "a file");
  WriteText("outside", "kept");
  fs::create_symlink(fs::absolute("outside"), "saves/a/555/8.sss");
  fs::create_directory_symlink(fs::absolute("saves/a/555"), "saves/a/333");
  fs::create_directory_symlink("a", "saves/link");
  EXPECT_EQ(Loaded("a"), cells);
  EXPECT_EQ(Count(ReadText("errors.txt"), "can't be read. It was left out."), 5);
  ship->fileStem = "a";
  EXPECT_EQ(Update(ship, {5800, 5000, 5000}, 1), 0);
  EXPECT_EQ(Update(ship, {3333, 3333, 3333}, 1), 0);
  EXPECT_EQ(Update(ship, {4444, 4444, 4444}, 1), 0);
  EXPECT_EQ(ReadText("outside"), "kept");
  LogInit();
  for (const char *name : {"link", "missing", "../outside", "", ".hidden", "a/555", "outside"}) {
    int result = 1;
    WriteText("saves/outside", "a file");
    EXPECT_TRUE(Loaded(name, &result).empty() && result == 0) << name;
    ship->fileStem = name;
    EXPECT_EQ(SaveShipDirectory(ship), std::string(name) == "missing" ? 1 : 0) << name;
  }
  EXPECT_TRUE(Logged("*ERR: Missing ship directory!") && Logged("*ERR: Could not open ship dir") && fs::is_symlink("saves/link"));
}

TEST_F(DirectoryStore, ALostOrOldInfoFileOnlyWarns) {
  SaveNew("a", {});
  const std::string info = ReadText("saves/a/info.sis");
  for (const auto &[bytes, words] : {std::pair{std::string(), "WARN: Ship lost its info file. I'll try to load anyway."},
                                     {info.substr(0, 37), "WARN: Ship lost its info file."}, {"\2" + info.substr(1), "WARN: Old save \n"}}) {
    LogInit();
    WriteText("saves/a/info.sis", bytes);
    Ship *other = NewShip("x", {});
    other->position[1] = 5;
    EXPECT_EQ(LoadShipDirectory(other, "a", true, true), 1);
    EXPECT_TRUE(Logged(words) && other->position[1] == (bytes.size() == 38 ? -50500000 : 5)) << words;
    Drop(other);
  }
}

TEST_F(DirectoryStore, ASaveReplacesTheFolderWholeOrNotAtAll) {
  const Cells cells = MixedCells(300, 1);
  SaveNew("a", MixedCells(30, 2));
  WriteText("saves/a/111/7.sss", "stale");
  WriteText("saves/.a.new/left/file", "by a game that was killed");
  Fill(ship, cells);
  EXPECT_EQ(SaveShipDirectory(ship), 1);
  EXPECT_TRUE(Loaded("a") == cells && !fs::exists("saves/a/111") && !fs::exists("saves/.a.new"));
  const pid_t child = fork();
  if (child == 0) {  // a disk that fills up
    const rlimit limit{20000, 20000};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    PlaceHere(ship, 4000, 4000, 4000, CubeOf());
    const int saved = SaveShipDirectory(ship);
    _exit(saved + Update(ship, {5900, 5900, 5900}, PlacedHead(1, 2, 1, 0)) + Update(ship, {5005, 5055, 5000}, 0));
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 256) << "one update fits";
  EXPECT_TRUE(Logged("*ERR: Couldn't save SuperChunk - Maybe we're out of disk space?"));
  EXPECT_TRUE(Logged("saves/a/555/0.sss. The old block stays.") && !fs::exists("saves/.a.new"));
  EXPECT_EQ(fs::file_size("saves/a/555/0.sss"), 10 * Slot);
  Cells expected = cells;
  expected[{5900, 5900, 5900}] = PlacedHead(1, 2, 1, 0);
  fs::rename("saves/a", "saves/.a.old");  // killed between two renames, on a disk that can't exchange names
  EXPECT_EQ(Loaded("a"), expected);
  ship->fileStem = "NULL";
  EXPECT_TRUE(SaveShipDirectory(ship) == 0 && !fs::exists("saves/NULL"));
}

TEST_F(DirectoryStore, SavesBetweenUpdatesLoseNoneOfThem) {
  ASSERT_EQ(SaveShipDirectory(ship), 1);
  std::atomic<bool> done{false};
  std::thread editor([&] {
    for (u16 i = 0; i < 3000; ++i) {
      const Cell at = {static_cast<u16>(5080 + i * 7 % 40), static_cast<u16>(5000 + i % 20), static_cast<u16>(5000 + i % 3)};
      const u64 head = PlacedHead(1u + i % 7, 1u + i % 11, i % 8u, i % 4u);
      {
        ScopedLock world(&WorldMutex);
        PlaceBlockFast(BlockFromHead(head), at[0], at[1], at[2], ship);
      }
      EXPECT_EQ(Update(ship, at, head), 1);
    }
    done = true;
  });
  while (!done) EXPECT_EQ(SaveShipDirectory(ship), 1);
  editor.join();
  EXPECT_EQ(Loaded("a"), CellsOf(*ship));
}

// Lets a child work until it is killed at some moment; its answer is what it had counted by then.
template <typename Work>
static unsigned Killed(std::mt19937 *random, Work work) {
  static auto *count = static_cast<std::atomic<unsigned> *>(
      mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  *count = 0;
  const pid_t child = fork();
  if (child == 0)
    for (unsigned i = 0;; *count = ++i) work(i);
  usleep(static_cast<useconds_t>((*random)() % 150000));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return *count;
}

static int Kills() {
  const char *wanted = std::getenv("TARNVALE_KILLS");
  return wanted == nullptr ? 20 : std::atoi(wanted);
}

TEST_F(DirectoryStore, AKillDuringASaveLeavesTheOldOrTheNewShip) {
  const Cells cells[2] = {MixedCells(20000, 1), MixedCells(20000, 2)};
  Ship *ships[2] = {NewShip("k", cells[0]), NewShip("k", cells[1])};
  ASSERT_EQ(SaveShipDirectory(ships[0]), 1);
  std::mt19937 random(7);
  int midway = 0, seen[2] = {};
  for (int i = 0; i < Kills(); ++i) {
    Killed(&random, [&](unsigned turn) { SaveShipDirectory(ships[turn % 2]); });
    midway += fs::exists("saves/.k.new") ? 1 : 0;
    const Cells found = Loaded("k");
    ASSERT_TRUE(found == cells[0] || found == cells[1]) << "after kill " << i;
    ++seen[found == cells[0] ? 0 : 1];
  }
  std::printf("%i kills, %i in the middle of a save; %i and %i times whole\n", Kills(), midway, seen[0], seen[1]);
  EXPECT_TRUE(midway > 0 && !Logged("WARN"));
  Drop(ships[0]);
  Drop(ships[1]);
}

TEST_F(DirectoryStore, AKillDuringUpdatesLeavesEachBlockOldOrNew) {
  Cells model;
  SaveNew("a", model);
  std::mt19937 random(7);
  const auto place = [](u32 n) {  // mostly in 8 chunks of two files, now and then in one of 160
    const u32 h = n * 2654435761u, wide = n % 8 == 0 ? 4 : 1;
    return Cell{static_cast<u16>(5080 + (h >> 8) % 40), static_cast<u16>(5000 + (h >> 16) % (20 * wide)),
                static_cast<u16>(5000 + (h >> 23) % (10 * wide))};
  };
  const auto head = [](u32 n) { return n % 5 == 0 ? 0 : PlacedHead(1 + n % 7, 1 + n % 13, n % 8, n % 4); };
  const auto apply = [&](u32 n) {
    if (head(n) == 0) model.erase(place(n));
    else model[place(n)] = head(n);
  };
  u32 done = 0;
  int cut = 0, between = 0;
  for (int i = 0; i < Kills(); ++i) {
    FreeShip(ship);
    ASSERT_TRUE(LoadShipDirectory(ship, "a", false, true) == 1);
    for (u32 made = Killed(&random, [&](u32 n) { Update(ship, place(done + n), head(done + n)); }); made > 0; --made) apply(done++);
    const Cells found = Loaded("a");
    cut += Logged("ends within a chunk") ? 1 : 0;
    LogInit();
    if (found == model) continue;
    apply(done++);  // the one that was under way
    ++between;
    ASSERT_TRUE(found == model) << "after kill " << i;
  }
  std::printf("%i kills in %u updates, %i in the middle of an append, %i behind a write\n", Kills(), done, cut, between);
  EXPECT_GT(done, 20u);
}

TEST_F(DirectoryStore, ShipsGoFromFormToFormAndIntoTheTable) {
  static ShipTable table;
  const Cells cells = MixedCells(500, 3);
  Ship *made = NewShip("one", cells);
  ASSERT_EQ(SaveShipByName(made), 1);
  Drop(made);
  SaveNew("two", cells);
  for (const char *name : {"three.ssf", "four.sts", "five.sts.damaged"}) WriteText(std::string("saves/") + name, "no ship");
  const std::string before = ReadText("saves/four.sts");
  for (u16 round = 0; round < 2; ++round) {  // the second time, the stream has its folder
    LoadAllShips(&table);
    ASSERT_EQ(table.count, 2);
    EXPECT_TRUE(ShipAt(table, 0)->fileStem == "one" && ShipAt(table, 1)->fileStem == "two");
    EXPECT_EQ(CellsOf(*ShipAt(table, 0)).size(), round == 0 ? 500u : 0u);
    EXPECT_GE(FindChunk(AddressOf(5000, 5000, 5000), *ShipAt(table, round))->slot, 0);
  }
  EXPECT_TRUE(Loaded("one") == cells && ReadText("saves/four.sts") == before);
  EXPECT_EQ(ConvertDirectoryToStream("two"), 1);
  made = NewTestShip();
  EXPECT_TRUE(LoadShipStream(made, "saves/two.sts", false) == 1 && CellsOf(*made) == cells);
  Drop(made);
  for (const char *name : {"NULL", "missing", "four", "../saves/two", ""})
    EXPECT_EQ(ConvertDirectoryToStream(name) + ConvertStreamToDirectory(name), 0) << name;
  ScopedLock world(&WorldMutex);
  EXPECT_EQ(AddShipFromDirectory(&table, "missing", 0, 0, 0), 0);
  ASSERT_EQ(AddShipFromDirectory(&table, "two", 1000, INT64_MIN, 0), 1);  // 100 x 5 x 1 cells
  const i64 place[3] = {1000 - 500000 - 25030000, INT64_MIN, -5000 - 25030000};
  for (int axis = 0; axis < 3; ++axis) EXPECT_EQ(ShipAt(table, 3)->position[axis], place[axis]);
}
