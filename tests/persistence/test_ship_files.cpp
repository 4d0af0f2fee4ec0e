// Ships on disk: what a save leaves behind when it is cut off, and what a load makes of files that were hurt.
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
    UseTemporaryInstallation();
    LogInit();
    ship = NewShip(MixedCells(500, 1));
  }
  void TearDown() override { Drop(ship); }
  static Ship *NewShip(const Cells &cells) {
    Ship *made = NewTestShip();
    Fill(made, cells);
    return made;
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
  static std::string Saved(const Cells &cells) {
    Ship *made = NewShip(cells);
    EXPECT_EQ(SaveShipStream(made, "saves/made.sts"), 1);
    Drop(made);
    return ReadText("saves/made.sts");
  }
  Ship *ship = nullptr;
};

TEST_F(ShipFiles, ASavedShipIsAPlainGzipFileAndLoadsEqual) {
  ship->displayName = "The Tarn";
  ship->fileStem = "tarn";
  EXPECT_TRUE(SaveShipByName(ship) == 1 && SaveShipRawStream(ship, "raw") == 1);
  const std::vector<u8> expected = PackByHand("The Tarn", MixedCells(500, 1));
  EXPECT_EQ(Gunzip("saves/tarn.sts"), expected);
  EXPECT_EQ(ReadText("saves/raw.sls"), std::string(expected.begin(), expected.end()));
  Ship *other = NewTestShip();
  EXPECT_EQ(LoadShipByName(other, "tarn"), 1);
  EXPECT_EQ(CellsOf(*other), MixedCells(500, 1));
  EXPECT_TRUE(other->displayName == "The Tarn" && other->fileStem == "tarn" && other->summary->blockCount == 500);
  EXPECT_NE(FindCells(AddressOf(5000, 5000, 5000), *other)->visibility[0], VisibilityUndecided) << "finished";
  Drop(other);
}

TEST_F(ShipFiles, AShipOfManyBuffersAndMembersLoadsEqual) {
  const Cells large = MixedCells(200000, 3);  // 1.2 MB of content, a piece of 1 MiB at a time
  Saved(large);
  EXPECT_TRUE(Loaded("saves/made.sts") == large);
  const std::vector<u8> bytes = PackByHand("m", large);
  const std::string content(bytes.begin(), bytes.end());
  const size_t buffer = 1 << 20;
  const size_t around = GzipMember(content.substr(0, buffer - 200), 0).size() - (buffer - 200);
  for (const size_t end : {around, buffer - 2, buffer - 1, buffer}) {  // where the first member ends in the reader's buffer
    const std::string first = GzipMember(content.substr(0, end - around), 0);
    EXPECT_TRUE(end == around || first.size() == end) << first.size();
    WriteText("saves/two.sts", first + GzipMember(content.substr(end - around), 1));
    ASSERT_TRUE(Loaded("saves/two.sts") == large) << end;
  }
  EXPECT_FALSE(fs::exists("saves/two.sts.damaged"));
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

TEST_F(ShipFiles, ADamagedFileOutlivesTheNextSaves) {
  const std::string whole = Saved(MixedCells(25, 2));
  std::string unknown(3, '\1'), count(3, '\1');
  unknown += std::string("\0\0\0\0\0\0\1\0\x21\0\xff\x3f\0\0", 14);
  count += std::string("\0\0\0\0\0\0\xff\xff", 8);
  const struct { const char *name; std::string file; int result; } cases[] = {
      {"text", "not a ship", 0}, {"empty", "", 0}, {"cut", whole.substr(0, whole.size() / 2), 1}, {"more", whole + "garbage", 1},
      {"unknown", GzipMember(unknown, 1), 1}, {"count", GzipMember(count, 1), 1}};
  for (const auto &c : cases) {
    const std::string path = std::string("saves/") + c.name + ".sts", kept = path + ".damaged";
    WriteText(path, c.file);
    for (int round = 0; round < 2; ++round) {  // a second start with the same file keeps no second copy
      LogInit();
      int result = -1;
      Loaded(path.c_str(), &result);
      EXPECT_EQ(result, c.result) << path;
      EXPECT_EQ(Count(ReadText("errors.txt"), "WARN: The file as it was is kept as " + kept + " \n"), 1) << path;
    }
    EXPECT_FALSE(fs::exists(kept + "2")) << path;
    ASSERT_EQ(SaveShipStream(ship, path.c_str()), 1);
    EXPECT_EQ(ReadText(kept), c.file) << path;
    EXPECT_EQ(Loaded(path.c_str()), CellsOf(*ship));
  }
  for (int copy = 2; copy <= 11; ++copy) {  // others after it get a number, until there are nine
    fs::remove("saves/cut.sts");
    WriteText("saves/cut.sts", "cut " + std::to_string(copy));
    Loaded("saves/cut.sts");
    EXPECT_EQ(ReadText("saves/cut.sts.damaged" + std::to_string(copy)), copy <= 9 ? "cut " + std::to_string(copy) : "");
  }
  fs::create_directory("saves/folder.sts");
  for (const char *path : {"saves/none.sts", "saves/folder.sts"}) {
    int result = 1;
    EXPECT_TRUE(Loaded(path, &result).empty() && result == 0) << path;
  }
}

TEST_F(ShipFiles, AHurtFileGivesWhatCameBeforeTheHurt) {
  const Cells cells = MixedCells(25, 2);
  const std::string whole = Saved(cells);
  size_t most = 0;
  for (size_t length = 0; length <= whole.size(); ++length) {
    WriteText("saves/cut.sts", whole.substr(0, length));
    const Cells found = Loaded("saves/cut.sts");
    EXPECT_GE(found.size(), most) << "more of the file never gives less of the ship";
    most = found.size();
    for (const auto &[at, head] : found) ASSERT_TRUE(cells.contains(at) && cells.at(at) == head) << length;
  }
  EXPECT_EQ(most, cells.size());
  for (size_t bit = 0; bit < whole.size() * 8; ++bit) {
    std::string hurt = whole;
    hurt[bit / 8] = static_cast<char>(hurt[bit / 8] ^ 1 << bit % 8);
    WriteText("saves/hurt.sts", hurt);
    for (const auto &[at, head] : Loaded("saves/hurt.sts"))
      ASSERT_TRUE(HeadMaterial(head) > 0 && HeadMaterial(head) < MaterialCount && HeadComponent(head) > 0 &&
                  HeadComponent(head) < ComponentCount && HeadState(head) == StateWhole) << bit;
  }
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
    const pid_t child = fork();
    if (child == 0)
      for (int turn = 1;; turn = 1 - turn) SaveShipStream(ships[turn], "saves/a.sts");  // until it is killed
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
  ASSERT_EQ(table.count, 1) << "an empty ship stays";
  EXPECT_EQ(AddShipFromStream(&table, "a.sts", 1000, -70000000, 0), 1);
  EXPECT_EQ(AddShipFromStream(&table, "saves/a.sts", INT64_MIN, INT64_MAX, 5), 1);
  ASSERT_EQ(table.count, 3);
  const i64 places[2][3] = {{1000 - 500000 - 50030000, -70000000 - 25000 - 50030000, -5000 - 50030000},
                            {INT64_MIN, INT64_MAX - 25000 - 50030000, 5 - 5000 - 50030000}};
  for (u16 row = 1; row <= 2; ++row)
    for (int axis = 0; axis < 3; ++axis) EXPECT_EQ(ShipAt(table, row)->position[axis], places[row - 1][axis]);
  EXPECT_EQ(ShipAt(table, 2)->id, 2u);
}
