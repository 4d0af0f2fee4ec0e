// Ships on disk: what a save leaves behind when it is cut off, and what a load makes of files that were hurt.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <random>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "persistence/ships.h"
#include "persistence/stream.h"
#include "platform/threads.h"
#include "support/installation.h"
#include "world/access.h"

namespace fs = std::filesystem;

class ShipFiles : public testing::Test {
 protected:
  void SetUp() override {
    LoadTables();
    root = UseTemporaryInstallation();
    LogInit();
    ship = NewShip(MixedCells(500, 1));
  }
  void TearDown() override {
    Drop(ship);
    fs::current_path("/");
    fs::remove_all(root);
  }
  static Ship *NewShip(const Cells &cells) {
    Ship *made = NewTestShip();
    Fill(made, cells);
    return made;
  }
  static void Drop(Ship *s) {
    FreeShip(s);
    delete s;
  }
  // The blocks of a file; *result gets the load's answer.
  static Cells Loaded(const char *path, int *result = nullptr) {
    Ship *other = NewTestShip();
    const int answer = LoadShipStream(other, path, false);
    if (result != nullptr) *result = answer;
    const Cells cells = CellsOf(*other);
    Drop(other);
    return cells;
  }
  Ship *ship = nullptr;
  std::string root;
};

TEST_F(ShipFiles, ASavedShipIsAPlainGzipFileAndLoadsEqual) {
  ship->displayName = "The Tarn";
  ship->fileStem = "tarn";
  EXPECT_EQ(SaveShipByName(ship), 1);
  EXPECT_EQ(SaveShipRawStream(ship, "raw"), 1);
  const std::vector<u8> expected = PackByHand("The Tarn", MixedCells(500, 1));
  EXPECT_EQ(Gunzip("saves/tarn.sts"), expected);
  const std::string raw = ReadText("saves/raw.sls");
  EXPECT_EQ(std::vector<u8>(raw.begin(), raw.end()), expected);
  fs::copy("saves/tarn.sts", "cache/shell.sss");

  Ship *other = NewTestShip();
  testing::internal::CaptureStdout();
  EXPECT_EQ(LoadShipByName(other, "tarn"), 1);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "Loading ship: saves/tarn.sts \n");
  EXPECT_EQ(CellsOf(*other), MixedCells(500, 1));
  EXPECT_EQ(other->displayName, "The Tarn");
  EXPECT_EQ(other->fileStem, "tarn");
  ASSERT_NE(other->summary, nullptr);
  EXPECT_EQ(other->summary->blockCount, 500);
  const ChunkCells *cells = FindCells(AddressOf(5000, 5000, 5000), *other);
  EXPECT_NE(cells->visibility[0], VisibilityUndecided) << "a loaded ship is finished";
  Drop(other);
  other = NewTestShip();
  EXPECT_EQ(LoadShipStream(other, "cache/shell.sss", false), 1);
  EXPECT_EQ(other->fileStem, "shell");
  EXPECT_EQ(other->summary, nullptr);
  Drop(other);
}

TEST_F(ShipFiles, AShipOfManyBuffersLoadsEqual) {
  const Cells cells = MixedCells(400000, 3);  // 2.4 MB of content, a piece of 1 MiB at a time
  Ship *large = NewShip(cells);
  ASSERT_EQ(SaveShipStream(large, "saves/large.sts"), 1);
  Drop(large);
  EXPECT_TRUE(Loaded("saves/large.sts") == cells);
}

TEST_F(ShipFiles, ASaveThatCannotBeDoneLeavesTheOldFile) {
  ASSERT_EQ(SaveShipStream(ship, "saves/a.sts"), 1);
  const std::string old = ReadText("saves/a.sts");
  ship->displayName = std::string(65, 'n');
  EXPECT_EQ(SaveShipStream(ship, "saves/a.sts"), 0);
  EXPECT_NE(ReadText("errors.txt").find("*ERR: Ship name's too long to save. What did you do."), std::string::npos);
  ship->displayName = "a";
  EXPECT_EQ(SaveShipStream(ship, "nowhere/a.sts"), 0);
  const pid_t child = fork();
  if (child == 0) {  // a disk that fills up
    const rlimit limit{1000, 1000};
    signal(SIGXFSZ, SIG_IGN);
    LogInit();
    setrlimit(RLIMIT_FSIZE, &limit);
    _exit(SaveShipStream(ship, "saves/a.sts"));
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_NE(ReadText("errors.txt").find("*ERR: Could not write saves/a.sts"), std::string::npos);
  EXPECT_EQ(ReadText("saves/a.sts"), old);
  EXPECT_FALSE(fs::exists("saves/a.sts.tmp"));
}

TEST_F(ShipFiles, FilesThatAreMissingOrSomethingElseAreRefused) {
  WriteText("saves/text.sts", "not a ship");
  WriteText("saves/empty.sts", "");
  fs::create_directory("saves/folder.sts");
  for (const char *path : {"saves/none.sts", "saves/text.sts", "saves/empty.sts", "saves/folder.sts"}) {
    int result = 1;
    EXPECT_TRUE(Loaded(path, &result).empty()) << path;
    EXPECT_EQ(result, 0) << path;
  }
}

TEST_F(ShipFiles, AHurtFileGivesWhatCameBeforeTheHurt) {
  const Cells cells = MixedCells(25, 2);
  Ship *small = NewShip(cells);
  ASSERT_EQ(SaveShipStream(small, "saves/a.sts"), 1);
  Drop(small);
  const std::string whole = ReadText("saves/a.sts");
  size_t most = 0;
  for (size_t length = 0; length <= whole.size(); ++length) {
    WriteText("saves/cut.sts", whole.substr(0, length));
    const Cells found = Loaded("saves/cut.sts");
    EXPECT_GE(found.size(), most) << "more of the file never gives less of the ship";
    most = found.size();
    for (const auto &[at, head] : found) ASSERT_TRUE(cells.contains(at) && cells.at(at) == head) << length;
  }
  EXPECT_EQ(most, cells.size());
  LogInit();
  WriteText("saves/more.sts", whole + "garbage");
  EXPECT_EQ(Loaded("saves/more.sts"), cells);
  EXPECT_NE(ReadText("errors.txt").find("is damaged"), std::string::npos);
  for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
    std::string hurt = whole;
    hurt[bit / 8] = static_cast<char>(hurt[bit / 8] ^ 1 << bit % 8);
    WriteText("saves/hurt.sts", hurt);
    for (const auto &[at, head] : Loaded("saves/hurt.sts")) {
      ASSERT_TRUE(HeadMaterial(head) > 0 && HeadMaterial(head) < MaterialCount) << bit;
      ASSERT_TRUE(HeadComponent(head) > 0 && HeadComponent(head) < ComponentCount) << bit;
      ASSERT_EQ(HeadState(head), StateWhole) << bit;
    }
  }
}

// A process that saves two ships in turn, for ever.
static pid_t StartSaving(Ship *a, Ship *b) {
  const pid_t child = fork();
  while (child == 0) {
    SaveShipStream(a, "saves/a.sts");
    SaveShipStream(b, "saves/a.sts");
  }
  return child;
}

TEST_F(ShipFiles, AKillDuringASaveLeavesTheOldOrTheNewShip) {
  const char *wanted = std::getenv("TARNVALE_KILLS");
  const int kills = wanted == nullptr ? 20 : std::atoi(wanted);
  const Cells cells[2] = {MixedCells(100000, 1), MixedCells(100000, 2)};
  Ship *ships[2] = {NewShip(cells[0]), NewShip(cells[1])};
  ASSERT_EQ(SaveShipStream(ships[0], "saves/a.sts"), 1);
  std::mt19937 random(7);
  int seen[2] = {}, midway = 0;
  for (int i = 0; i < kills; ++i) {
    fs::remove("saves/a.sts.tmp");
    const pid_t child = StartSaving(ships[0], ships[1]);
    usleep(static_cast<useconds_t>(random() % 300000));
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    midway += fs::exists("saves/a.sts.tmp") ? 1 : 0;
    const Cells found = Loaded("saves/a.sts");
    ASSERT_TRUE(found == cells[0] || found == cells[1]) << "after kill " << i;
    ++seen[found == cells[0] ? 0 : 1];
  }
  std::printf("%i kills, %i in the middle of a write; %i and %i times whole\n", kills, midway, seen[0], seen[1]);
  EXPECT_GT(midway, 0);
  EXPECT_EQ(ReadText("errors.txt").find("WARN"), std::string::npos);
  Drop(ships[0]);
  Drop(ships[1]);
}

TEST_F(ShipFiles, ASaveDuringEditsHoldsOneMomentOfTheShip) {
  std::atomic<bool> done{false};
  std::thread editor([&] {
    for (u16 i = 0; !done; i = static_cast<u16>((i + 1) % 2000)) {
      ScopedLock world(&WorldMutex);  // both ends of a pair, or neither
      const u16 x = static_cast<u16>(100 + i);
      for (const u16 y : {u16{200}, u16{8000}})
        if (!RemoveBlockHeld(x, y, 300, ship)) PlaceBlockFast(CubeOf(), x, y, 300, ship);
    }
  });
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(SaveShipStream(ship, "saves/a.sts"), 1);
    const Cells found = Loaded("saves/a.sts");
    for (const auto &[at, head] : found)
      EXPECT_TRUE(at[1] != 200 || found.contains({at[0], 8000, 300}));
    EXPECT_EQ(found.size() % 2, 0u);
  }
  done = true;
  editor.join();
}

TEST_F(ShipFiles, AShipJoinsTheTableAtItsPlace) {
  static ShipTable table;
  ASSERT_EQ(SaveShipStream(ship, "saves/a.sts"), 1);  // 100 x 5 x 1 cells
  ScopedLock world(&WorldMutex);
  EXPECT_EQ(AddShipFromStream(&table, "none.sts", 0, 0, 0), 0);
  const u16 before = table.count;
  EXPECT_EQ(AddShipFromStream(&table, "a.sts", 1000, -70000000, 0), 1);
  EXPECT_EQ(AddShipFromStream(&table, "saves/a.sts", INT64_MIN, INT64_MAX, 5), 1);
  ASSERT_EQ(table.count, before + 2);
  const Ship &first = *ShipAt(table, before), &second = *ShipAt(table, static_cast<u16>(before + 1));
  EXPECT_EQ(first.position[0], 1000 - 500000 - 50030000);
  EXPECT_EQ(first.position[1], -70000000 - 25000 - 50030000);
  EXPECT_EQ(first.position[2], -5000 - 50030000);
  EXPECT_EQ(second.position[0], INT64_MIN);
  EXPECT_EQ(second.position[1], INT64_MAX - 25000 - 50030000);
  EXPECT_EQ(second.id, before + 1u);
  EXPECT_EQ(second.fileStem, "a");
}
