// Ships on disk: what a save leaves behind when it is cut off, and what a load makes of files that were hurt.
#include <poll.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include "persistence/backup.h"
#include "persistence/directory_store.h"
#include "persistence/ships.h"
#include "persistence/stream.h"

namespace {

struct ShipFiles : ShipTest {
  void SetUp() override {
    ShipTest::SetUp();
    Fill(ship, MixedCells(500, 1));
  }
  static std::string Saved(const Cells &cells) {
    Ship *made = NewShip(cells);
    EXPECT_EQ(SaveShipStream(made, "saves/made.sts"), 1);
    Drop(made);
    return ReadText("saves/made.sts");
  }
};

}  // namespace

TEST_F(ShipFiles, ASavedShipIsAPlainGzipFileAndLoadsEqual) {
  ship->displayName = "The Tarn";
  ship->fileStem = "tarn";
  EXPECT_TRUE(SaveShipByName(ship) == 1 && SaveShipRawStream(ship, "raw") == 1);
  const std::string expected = PackByHand("The Tarn", MixedCells(500, 1));
  EXPECT_EQ(Gunzip("saves/tarn.sts"), expected);
  EXPECT_EQ(ReadText("saves/raw.sls"), expected);
  ship->displayName = ship->fileStem = std::string();
  EXPECT_EQ(LoadShipByName(ship, "tarn"), 1);
  EXPECT_EQ(CellsOf(*ship), MixedCells(500, 1));
  EXPECT_TRUE(ship->displayName == "The Tarn" && ship->fileStem == "tarn" && ship->summary->blockCount == 500);
  EXPECT_NE(FindCells(AddressOf(5000, 5000, 5000), *ship)->visibility[0], VisibilityUndecided) << "finished";
}

TEST_F(ShipFiles, AShipOfManyBuffersAndMembersLoadsEqual) {
  const Cells large = MixedCells(200000, 3);  // 1.2 MB of content, a piece of 1 MiB at a time
  Saved(large);
  EXPECT_TRUE(StreamCells("saves/made.sts") == large);
  const std::string content = PackByHand("m", large);
  const size_t buffer = 1 << 20;
  const size_t around = GzipMember(content.substr(0, buffer - 200), 0).size() - (buffer - 200);
  for (const size_t end : {around, buffer - 2, buffer - 1, buffer}) {  // where the first member ends in the reader's buffer
    const std::string first = GzipMember(content.substr(0, end - around), 0);
    EXPECT_TRUE(end == around || first.size() == end) << first.size();
    WriteText("saves/two.sts", first + GzipMember(content.substr(end - around), 1));
    ASSERT_TRUE(StreamCells("saves/two.sts") == large) << end;
  }
  EXPECT_FALSE(fs::exists("saves/two.sts.damaged"));
}

TEST_F(ShipFiles, ASaveThatCannotBeDoneLeavesTheOldFile) {
  ASSERT_EQ(SaveShipStream(ship, "saves/a.sts"), 1);
  const std::string old = ReadText("saves/a.sts");
  ship->displayName = std::string(65, 'n');
  EXPECT_EQ(SaveShipStream(ship, "saves/a.sts"), 0);
  EXPECT_TRUE(Logged("*ERR: Ship name's too long to save. What did you do."));
  ship->displayName = "a";
  EXPECT_EQ(SaveShipStream(ship, "nowhere/a.sts"), 0);
  EXPECT_EQ(OnFullDisk(1000, [this] { return SaveShipStream(ship, "saves/a.sts"); }), 0);
  EXPECT_TRUE(Logged("*ERR: Could not write saves/a.sts"));
  EXPECT_EQ(ReadText("saves/a.sts"), old);
  EXPECT_FALSE(fs::exists("saves/a.sts.tmp"));
}

TEST_F(ShipFiles, ADamagedFileOutlivesTheNextSaves) {
  const std::string whole = Saved(MixedCells(25, 2));
  const std::string unknown = std::string(3, '\1') + Words({0, 0, 0, 1, 33, 0x3fff, 0});
  const std::string count = std::string(3, '\1') + Words({0, 0, 0, 0xffff});
  const struct { const char *name; std::string file; int result; } cases[] = {
      {"text", "not a ship", 0}, {"empty", "", 0}, {"cut", whole.substr(0, whole.size() / 2), 1}, {"more", whole + "garbage", 1},
      {"version", GzipMember('\2' + PackByHand("a", MixedCells(9, 2)).substr(1), 1), 1}, {"unknown", GzipMember(unknown, 1), 1}, {"count", GzipMember(count, 1), 1}};
  for (const auto &c : cases) {
    const std::string path = std::string("saves/") + c.name + ".sts", kept = path + ".damaged";
    WriteText(path, c.file);
    for (int round = 0; round < 2; ++round) {  // a second start with the same file keeps no second copy
      LogInit();
      int result = -1;
      StreamCells(path, &result);
      EXPECT_EQ(result, c.result) << path;
      EXPECT_EQ(Count(Log(), "WARN: The file as it was is kept as " + kept + " \n"), 1) << path;
    }
    EXPECT_FALSE(fs::exists(kept + "2")) << path;
    ASSERT_EQ(SaveShipStream(ship, path.c_str()), 1);
    EXPECT_EQ(ReadText(kept), c.file) << path;
    EXPECT_EQ(StreamCells(path), CellsOf(*ship));
  }
  for (int copy = 2; copy <= 11; ++copy) {  // others after it get a number, until there are nine
    fs::remove("saves/cut.sts");
    WriteText("saves/cut.sts", "cut " + std::to_string(copy));
    StreamCells("saves/cut.sts");
    EXPECT_EQ(ReadText("saves/cut.sts.damaged" + std::to_string(copy)), copy <= 9 ? "cut " + std::to_string(copy) : "");
  }
  WriteText("saves/cut.sts", whole.substr(0, whole.size() - 9));
  EXPECT_TRUE(LoadShipByName(ship, "cut") == 1 && ship->fileStem == "cut 2") << "no name is left for the old file";
  ASSERT_EQ(mkfifo("saves/pipe.sts", 0600), 0);
  fs::create_directory("saves/folder.sts");
  for (const char *path : {"saves/none.sts", "saves/folder.sts", "saves/pipe.sts"}) {
    int result = 1;
    EXPECT_TRUE(StreamCells(path, &result).empty() && result == 0) << path;
  }
}

TEST_F(ShipFiles, AFileThatGivesNothingIsNeverGrownOver) {
  const std::string whole = Saved(MixedCells(25, 2));
  fs::create_directory("saves/folder.sts");
  fs::create_symlink("/nowhere/at/all.sts", "saves/lost.sts");
  fs::create_symlink("round.sts", "saves/round.sts");
  WriteText("saves/empty.sts", "");
  WriteText("saves/text.sts", "not a ship");
  WriteText("saves/cut.sts", whole.substr(0, whole.size() - 9));
  WriteText("saves/bare.sts", GzipMember(PackByHand("bare", {}), 1));
  WriteText("saves/head.sts", GzipMember(PackByHand("head", MixedCells(25, 2)), 0).substr(0, 34));  // the name, and not one block
  const struct { const char *stem, *saved, *word; } cases[] = {  // what it is saved as, and what the player is told
      {"none", "none", ""}, {"made", "made", ""}, {"folder", "folder 2", "is no ship file. It stays"},
      {"lost", "lost 2", "is a link to /nowhere/at/all.sts, which is not there"}, {"round", "round 2", "can't be opened"},
      {"empty", "empty 2", "is empty. It stays as it is, and this ship will be saved as empty 2. Put it back and load it, or load a backup"}, {"text", "text 2", "is no ship file"},
      {"bare", "bare", ""}, {"head", "head 2", "is cut short or damaged: no block of it could be read. It stays as it is, and this ship will be saved as head 2"},
      {"cut", "cut", "is cut short or damaged: 25 blocks were read, others not. The file as it was is cut.sts.damaged"}};
  for (const auto &c : cases) {
    std::string news;
    Ship *loaded = NewShip({}, c.stem);
    const std::string path = std::string("saves/") + c.stem + ".sts", before = ReadText(path);
    LoadShipTelling(loaded, c.stem, &news);
    EXPECT_EQ(loaded->fileStem, c.saved);
    EXPECT_TRUE(c.word[0] == '\0' ? news.empty() : Count(news, c.word) == 1) << c.stem << ": " << news;
    EXPECT_EQ(SaveShipByName(loaded), 1) << c.stem;
    EXPECT_TRUE(c.stem == std::string(c.saved) || ReadText(path) == before) << c.stem;
    Drop(loaded);
    const bool ofUse = c.stem == std::string(c.saved);  // what is chosen from the list and gives nothing leads nowhere
    ShipTable table;
    EXPECT_EQ(AddShipTelling(&table, (std::string(c.stem) + ".sts").c_str(), 0, 0, 0, &news), ofUse ? 1 : 0) << c.stem;
    EXPECT_TRUE(table.count == (ofUse ? 1 : 0) && (ofUse || Count(news, ". You stay in the ship that you fly, and the file stays as it is") == 1)) << news;
    if (ofUse) FreeShip(table.ships[0]);
    delete table.ships[0].load();
  }
  EXPECT_FALSE(fs::exists("saves/empty.sts.damaged")) << "it is still there itself";
  EXPECT_TRUE(fs::is_symlink("saves/lost.sts") && fs::is_directory("saves/folder.sts"));
}

TEST_F(ShipFiles, WhatAnotherProgramPutThereIsKeptBesideIt) {
  const auto others = [] { return std::array{ReadText("saves/a (other).sts"), ReadText("saves/a (other 2).sts")}; };
  const std::string first = Saved(MixedCells(25, 2)), second = Saved(MixedCells(26, 3));
  std::string news;
  LoadShipTelling(ship, "a", &news);  // there is none yet
  ASSERT_TRUE(SaveShipTelling(ship, &news) == 1 && SaveShipTelling(ship, &news) == 1 && news.empty());
  WriteText("saves/a.sts", first);
  ASSERT_EQ(SaveShipTelling(ship, &news), 1);
  EXPECT_EQ(news, "a.sts was changed by another program. That ship is kept as a (other).sts");
  EXPECT_TRUE(others()[0] == first && StreamCells("saves/a.sts") == CellsOf(*ship));
  const std::string own = ReadText("saves/a.sts");
  fs::remove("saves/a.sts");
  WriteText("saves/a.sts", own);  // as by one who syncs folders: not the same file, but the same ship
  news.clear();
  EXPECT_TRUE(SaveShipTelling(ship, &news) == 1 && news.empty());
  for (const std::string &other : {first, second}) {
    WriteText("saves/a.sts", other);
    EXPECT_EQ(SaveShipTelling(ship, &news), 1);
  }
  EXPECT_TRUE(others()[0] == first && others()[1] == second) << "each once";
  fs::remove("saves/a.sts");
  EXPECT_TRUE(SaveShipTelling(ship, &news) == 1 && news.empty()) << "a file that is gone is nobody's";
  WriteText("saves/b.sts", second);
  ship->fileStem = std::string("b");
  EXPECT_TRUE(SaveShipTelling(ship, &news) == 1 && ReadText("saves/b (other).sts") == second) << "one that came under a new name";
  WriteText("saves/c.sts", first);
  Ship *loaded = NewShip({}, "c");
  LoadShipByName(loaded, "c");
  WriteText("saves/c.sts", second);
  EXPECT_TRUE(SaveShipTelling(loaded, &news) == 1 && ReadText("saves/c (other).sts") == second);
  Drop(loaded);
}

TEST_F(ShipFiles, WhatMayNotBeReadIsKeptAllTheSame) {
  for (const char *path : {".", "saves", "errors.txt"}) fs::permissions(path, fs::perms::all);
  const auto lock = [](const char *path) { fs::permissions(path, fs::perms::none); };
  std::string news;
  LoadShipTelling(ship, "a", &news);
  Ship *fresh = NewShip({}, "c");
  LoadShipTelling(fresh, "c", &news);
  ASSERT_EQ(SaveShipTelling(ship, &news), 1);
  fs::remove("saves/a.sts");
  WriteText("saves/a.sts", "somebody's");
  WriteText("saves/c.sts", "somebody's");
  WriteText("saves/a (other).sts", "another's");
  for (const char *path : {"saves/a.sts", "saves/c.sts"}) lock(path);
  const auto asAnother = [&](const std::function<bool()> &work) {  // root may read everything
    return OnFullDisk(1 << 20, [&] { return (geteuid() != 0 || seteuid(65534) == 0) && work() ? 1 : 0; }) == 1;
  };
  EXPECT_TRUE(asAnother([&] { return SaveShipTelling(ship, &news) == 1 && Count(news, "a.sts was changed by another program. That ship is kept as a (other 2).sts") == 1; }));
  fs::permissions("saves/a (other 2).sts", fs::perms::all);
  EXPECT_TRUE(ReadText("saves/a (other 2).sts") == "somebody's" && ReadText("saves/a (other).sts") == "another's");
  EXPECT_EQ(StreamCells("saves/a.sts"), CellsOf(*ship));
  EXPECT_TRUE(asAnother([&] { return SaveShipTelling(fresh, &news) == 1; })) << "one that has not been saved before";
  fs::permissions("saves/c.sts.damaged", fs::perms::all);
  EXPECT_EQ(ReadText("saves/c.sts.damaged"), "somebody's");
  Drop(fresh);
  ship->fileStem = "b";
  EXPECT_TRUE(asAnother([&] {  // the game's own, to which somebody set other rights
    const bool first = SaveShipTelling(ship, &news) == 1;
    lock("saves/b.sts");
    return first && SaveShipTelling(ship, &news) == 1 && news.empty();
  }));
  EXPECT_TRUE(Logged("WARN: saves/b.sts can't be read. The ship is saved without a backup.") && !Logged("is no backup"));
  EXPECT_FALSE(fs::exists("saves/b (other).sts"));
}

TEST_F(ShipFiles, WhatComesDuringASaveIsKept) {
  Fill(ship, MixedCells(400000, 1));
  std::string news;
  LoadShipTelling(ship, "none", &news);
  ASSERT_EQ(SaveShipTelling(ship, &news), 1);
  WriteText("synced", Saved(MixedCells(26, 3)));
  const std::string other = ReadText("synced");
  const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  ASSERT_GE(inotify_add_watch(watch, "saves/a.sts", IN_OPEN | IN_CLOSE), 0);
  bool inTime = false;
  std::thread syncs([&] {  // an open file that is not closed at once is being read for the backup: all has been looked at before
    pollfd events{watch, POLLIN, 0};
    alignas(inotify_event) char buffer[4096];
    while (!inTime && poll(&events, 1, 20000) > 0) {
      const ssize_t got = read(watch, buffer, sizeof buffer);
      u32 last = 0;
      for (ssize_t at = 0; at < got; at += static_cast<ssize_t>(sizeof(inotify_event) + reinterpret_cast<inotify_event *>(buffer + at)->len))
        last = reinterpret_cast<inotify_event *>(buffer + at)->mask;
      inTime = last == IN_OPEN && poll(&events, 1, 1) == 0;
    }
    fs::rename("synced", "saves/a.sts");
  });
  EXPECT_EQ(SaveShipTelling(ship, &news), 1);
  syncs.join();
  close(watch);
  EXPECT_TRUE(inTime);
  EXPECT_TRUE(ReadText("saves/a (other).sts") == other || ReadText("saves/a.sts") == other) << "it is nowhere";
}

TEST_F(ShipFiles, ALinkStaysOneAndTheFileBehindItIsReplacedInItsFolder) {
  fs::create_directory("synced");
  fs::create_symlink("../synced/ship.sts", "saves/a.sts");
  Fill(ship, MixedCells(25, 2));
  ASSERT_EQ(SaveShipByName(ship), 1);
  const std::string first = ReadText("synced/ship.sts");
  Fill(ship, MixedCells(30, 3));
  ASSERT_EQ(SaveShipByName(ship), 1);
  EXPECT_TRUE(fs::is_symlink("saves/a.sts") && StreamCells("synced/ship.sts") == CellsOf(*ship));
  const std::string backup = "saves/a" + LocalDate() + ".bak";
  EXPECT_TRUE(!fs::is_symlink(backup) && ReadText(backup) == first);
  EXPECT_EQ(std::distance(fs::directory_iterator("synced"), fs::directory_iterator()), 1);
  fs::create_directory("saves/folder");
  const std::string whole = ReadText("synced/ship.sts");
  for (const char *to : {"a.sts", "folder", "/dev/null", "../nowhere/a.sts"}) {  // a circle, and what is no ship's place
    fs::remove("saves/a.sts");
    fs::create_symlink(to, "saves/a.sts");
    EXPECT_EQ(SaveShipByName(ship), 0) << to;
    EXPECT_TRUE(fs::is_symlink("saves/a.sts") && ReadText("synced/ship.sts") == whole);
  }
  EXPECT_TRUE(fs::is_character_file("/dev/null") && fs::is_directory("saves/folder"));
  EXPECT_TRUE(Logged("*ERR: Could not create saves/a.sts"));
}

TEST_F(ShipFiles, NamesThatFillTheDiskAreSavedAndKeptWhole) {
  std::string letters;
  while (letters.size() < 250) letters += "\xc3\xbc";
  for (const std::string &stem : {std::string(251, 'n'), "n" + letters, std::string(248, 'm'), std::string(240, 'k')}) {
    ship->fileStem = stem;
    for (unsigned save = 1; save <= 2; ++save) {
      Fill(ship, MixedCells(10 * save, 1));
      ASSERT_EQ(SaveShipByName(ship), 1) << stem;
      EXPECT_EQ(StreamCells("saves/" + stem + ".sts"), CellsOf(*ship));
    }
    int backups = 0;
    for (const auto &entry : fs::directory_iterator("saves")) {
      const std::string name = entry.path().filename();
      EXPECT_TRUE(name.ends_with(".sts") || name.ends_with(LocalDate() + ".bak")) << name;
      backups += name[0] == stem[0] && name.ends_with(".bak") ? 1 : 0;
    }
    EXPECT_EQ(backups, 1) << stem.size();
    fs::remove_all("saves");
    fs::create_directory("saves");
  }
  // Names inside files are cut between letters too.
  WriteText("saves/long.sts", GzipMember(PackByHand("n" + letters.substr(0, 80), {}), 1));
  LoadShipByName(ship, "long");
  EXPECT_EQ(ship->displayName, "n" + letters.substr(0, 62));
}

TEST_F(ShipFiles, AHurtFileGivesWhatCameBeforeTheHurt) {
  const Cells cells = MixedCells(25, 2);
  const std::string packed = Saved(cells), content = PackByHand("a", cells), stored = GzipMember(content, 0);
  for (const std::string &whole : {packed, stored}) {
    size_t most = 0;
    for (size_t length = 0; length <= whole.size(); ++length) {
      WriteText("saves/cut.sts", whole.substr(0, length));
      const Cells found = StreamCells("saves/cut.sts");
      EXPECT_GE(found.size(), most) << "more of the file never gives less of the ship";
      most = found.size();
      for (const auto &[at, head] : found) ASSERT_TRUE(cells.contains(at) && cells.at(at) == head) << length;
    }
    EXPECT_EQ(most, cells.size());
  }
  WriteText("saves/cut.sts", stored.substr(0, stored.size() - 9));  // the last byte of the content, before 8 of the gzip form
  EXPECT_EQ(StreamCells("saves/cut.sts").size(), cells.size() - 1);
  for (size_t bit = 0; bit < packed.size() * 8; ++bit) {
    std::string hurt = packed;
    hurt[bit / 8] = static_cast<char>(hurt[bit / 8] ^ 1 << bit % 8);
    WriteText("saves/hurt.sts", hurt);
    for (const auto &[at, head] : StreamCells("saves/hurt.sts"))
      ASSERT_TRUE(HeadMaterial(head) > 0 && HeadMaterial(head) < MaterialCount && HeadComponent(head) > 0 &&
                  HeadComponent(head) < ComponentCount && HeadState(head) == StateWhole) << bit;
  }
}

TEST_F(ShipFiles, AKillDuringASaveLeavesTheOldOrTheNewShip) {
  const struct {
    std::function<int(Ship *)> save;
    std::function<Cells()> load;
    const char *half;
  } forms[] = {{SaveShipByName, [] { return StreamCells("saves/a.sts"); }, "saves/a.sts.tmp"},
               {SaveShipDirectory, [] { return FolderCells("a"); }, "saves/.a.new"}};
  const Cells cells[2] = {MixedCells(50000, 1), MixedCells(50000, 2)};
  Ship *ships[2] = {NewShip(cells[0]), NewShip(cells[1])};
  std::mt19937 random(7);
  for (const auto &form : forms) {
    ASSERT_EQ(form.save(ships[0]), 1);
    int seen[2] = {}, midway = 0;
    for (int i = 0; i < Kills(); ++i) {
      Killed(&random, 200000, [&](unsigned turn) { form.save(ships[1 - turn % 2]); });
      midway += fs::exists(form.half) ? 1 : 0;
      const Cells found = form.load();
      ASSERT_TRUE(found == cells[0] || found == cells[1]) << "after kill " << i;
      ++seen[found == cells[0] ? 0 : 1];
    }
    std::printf("%i kills, %i in the middle of a save; %i and %i times whole\n", Kills(), midway, seen[0], seen[1]);
    EXPECT_GT(midway, 0);
  }
  EXPECT_FALSE(Logged("WARN"));
  for (Ship *s : ships) Drop(s);
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
    const Cells found = StreamCells("saves/a.sts");
    for (const auto &[at, head] : found)
      EXPECT_TRUE(at[1] != 200 || found.contains({at[0], 8000, 300}));
    EXPECT_EQ(found.size() % 2, 0u);
  }
  done = true;
  editor.join();
}
