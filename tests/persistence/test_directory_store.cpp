// Ships as folders: their bytes, single blocks written in place, and what a kill, a full disk or a stranger leaves there.
#include "persistence/directory_store.h"

#include <dlfcn.h>
#include <sys/resource.h>
#include <unistd.h>

#include <thread>

#include "persistence/cursor.h"
#include "persistence/ships.h"
#include "persistence/stream.h"
#include "platform/folders.h"

constexpr size_t Slot = 14002;

namespace {

// A disk that fails: the calls of the system that are numbered here don't reach it.
struct FailingDisk {
  unsigned writes = 0;  // bit n: the n-th write from now on
  bool halves = false;  // and those leave half of their bytes
  bool removes = false;
};
FailingDisk Disk;

}  // namespace

extern "C" ssize_t pwrite(int file, const void *bytes, size_t count, off_t offset) {
  static const auto real = reinterpret_cast<decltype(&pwrite)>(dlsym(RTLD_NEXT, "pwrite"));
  const bool fails = (Disk.writes & 1) != 0;
  Disk.writes >>= 1;
  if (!fails) return real(file, bytes, count, offset);
  if (Disk.halves) real(file, bytes, count / 2, offset);
  errno = EIO;
  return -1;
}

extern "C" int unlinkat(int folder, const char *name, int flags) {
  static const auto real = reinterpret_cast<decltype(&unlinkat)>(dlsym(RTLD_NEXT, "unlinkat"));
  if (!Disk.removes) return real(folder, name, flags);
  errno = EIO;
  return -1;
}

namespace {

struct DirectoryStore : ShipTest {
  static int Update(Ship *to, const Cell &at, u64 head) { return SaveBlockUpdate(BlockFromHead(head), at[0], at[1], at[2], to); }
  static void SaveNew(const char *stem, const Cells &cells) {
    Ship *made = NewShip(cells, stem);
    EXPECT_EQ(SaveShipDirectory(made), 1);
    Drop(made);
  }
};

}  // namespace

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
  EXPECT_EQ(ReadText("saves/a/info.sis"), std::string(info.begin(), info.end()));
  std::string slots(2 * Slot, '\0');  // chunk 104 (5042, 7, 310) and chunk 900 (5001, 0, 399), rising
  slots.replace(0, 2, "\x68\0", 2).replace(2 + 72 * 14, 8, "\xae\0\5\0\2\0\x20\3", 8);
  slots.replace(Slot, 2, "\x84\3", 2).replace(Slot + 2 + 901 * 14, 14, "\x5a\0\3\0\4\0\x34\x12\xaa\0\0\0\0\xbb", 14);
  EXPECT_EQ(ReadText("saves/a/5/300.sss"), slots);
  const Cells cells = CellsOf(*ship);
  ship->fileStem.clear();
  ASSERT_EQ(LoadShipDirectory(ship, "a", true, false), 1);
  EXPECT_EQ(CellsOf(*ship), cells);
  EXPECT_EQ(FindCells(AddressOf(5001, 0, 399), *ship)->tails[901][5], 0xbb);
  EXPECT_TRUE(ship->position[2] == -2 && ship->velocity[0] == 7 && ship->fileStem == "a" && ship->summary->blockCount == 2);
  EXPECT_NE(FindCells(AddressOf(5042, 7, 310), *ship)->visibility[72], VisibilityUndecided) << "finished";
  EXPECT_EQ(ShipFault(*ship), "") << "a block that is due for the heat step is on its list again";
}

TEST_F(DirectoryStore, AnUpdateOnAFailingDiskSaysWhatTheFilesHave) {
  const u64 old = PlacedHead(1, 2, 1, 0), fresh = PlacedHead(7, 5, 6, 3);
  Block block = BlockFromHead(fresh);
  block.tail[5] = 9;  // at the end of the record, where half of it doesn't reach
  const Cell inPage = {5000, 5000, 5000}, acrossPages = {5002, 5009, 5002};  // block 292 stands at 2 + 292 x 14 = 4090
  int torn = 0;
  for (const Cell &at : {inPage, acrossPages}) {
    for (unsigned calls = 0; calls < 32; ++calls) {  // which of three writes, whether by halves, and the removal
      fs::remove_all("saves/a");
      SaveNew("a", {{at, old}});
      ASSERT_EQ(Update(ship, at, old), 1);
      LogInit();
      Disk = {calls & 7, (calls & 8) != 0, (calls & 16) != 0};
      const int result = SaveBlockUpdate(block, at[0], at[1], at[2], ship);
      Disk = {};
      const Cells found = FolderCells("a");
      const bool unknown = Logged("Neither the old block nor the new one is there whole.");
      torn += unknown ? 1 : 0;
      EXPECT_TRUE(!unknown || (calls & 8) != 0) << calls;
      EXPECT_TRUE(unknown || found == (Cells{{at, result != 0 ? fresh : old}})) << at[0] << " " << calls;
      EXPECT_EQ(Logged("The old block stays"), result == 0 && !unknown) << calls;
      EXPECT_TRUE(result == 0 || !Logged("*ERR")) << calls;
    }
  }
  EXPECT_GT(torn, 0) << "halves that nothing can mend are told as such";
}

TEST_F(DirectoryStore, AShipKnownByItsSlotsLosesNothing) {
  Cells expected = MixedCells(3000, 1);
  SaveNew("b", expected);
  ASSERT_EQ(LoadShipDirectory(ship, "b", false, false), 1);
  EXPECT_TRUE(CellsOf(*ship).empty());
  fs::resize_file("saves/b/555/0.sss", fs::file_size("saves/b/555/0.sss") + 5000);  // an append that was cut off
  for (const Cell &at : {Cell{5000, 5000, 5000}, Cell{5200, 5000, 5000}})
    EXPECT_EQ(Update(ship, at, expected[at] = PlacedHead(2, 3, 1, 0)), 1);
  EXPECT_EQ(FolderCells("b"), expected);
  EXPECT_EQ(SaveShipDirectory(ship), 1) << "chunks that aren't in memory come from the old files";
  EXPECT_EQ(FolderCells("b"), expected);
  for (const Cell &at : {Cell{5300, 5000, 5000}, Cell{5001, 5001, 5000}})
    Fill(ship, {{at, expected[at] = PlacedHead(1, 2, 1, 0)}});
  EXPECT_EQ(SaveShipDirectory(ship), 1);
  EXPECT_EQ(FolderCells("b"), expected) << "blocks in memory lie over those of the files";
  fs::remove("saves/b/555/0.sss");
  EXPECT_EQ(SaveShipDirectory(ship), 0) << "what is nowhere can't be saved";
  EXPECT_EQ(FolderCells("b").size(), 2u);
}

TEST_F(DirectoryStore, UpdatesReuseTheSlotOfTheirChunk) {
  const char *file = "saves/a/555/0.sss";
  EXPECT_EQ(Update(ship, {5000, 5000, 5000}, 0), 0);
  EXPECT_TRUE(Logged("*ERR: Can't find ship directory to save block update to"));
  ASSERT_EQ(SaveShipDirectory(ship), 1);
  for (const u16 c : {u16{0}, u16{1}, u16{9999}, u16{65535}})
    for (const Cell &at : {Cell{c, 5000, 5000}, Cell{5000, c, 5000}, Cell{5000, 5000, c}}) EXPECT_EQ(Update(ship, at, 0), 0);
  EXPECT_EQ(Count(Log(), "*ERR: Massively out of bounds block update sent. Ignoring."), 12);
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
  EXPECT_EQ(FolderCells("a"), model);
  EXPECT_EQ(Update(ship, {5010, 5000, 5000}, 0), 1) << "a removed block";
  model.erase({5010, 5000, 5000});
  for (const u64 head : {PlacedHead(1, 2, 1, 0), u64{0}}) EXPECT_EQ(Update(ship, {2, 9997, 2}, head), 1);
  Ship loaded;
  ASSERT_TRUE(AllocShipTable(&loaded) && LoadShipDirectory(&loaded, "a", true, true) == 1);
  EXPECT_EQ(loaded.chunkCount, 2u) << "a chunk without blocks is none";
  EXPECT_EQ(Update(&loaded, {2, 9997, 2}, PlacedHead(1, 2, 1, 0)), 1);
  EXPECT_EQ(fs::file_size("saves/a/90/90.sss"), Slot) << "but has its slot";
  FreeShip(&loaded);
  EXPECT_EQ(Update(ship, {2, 9998, 2}, model[{2, 9998, 2}] = PlacedHead(1, 2, 1, 0)), 1);
  SaveNew("a", model);  // another record of the ship changes the order of its slots
  EXPECT_EQ(Update(ship, {5015, 5000, 5000}, model[{5015, 5000, 5000}] = PlacedHead(3, 3, 3, 3)), 1);
  EXPECT_TRUE(FolderCells("a") == model && fs::file_size(file) == 2 * Slot);
  const std::string whole = ReadText(file);
  const size_t torn = whole[0] == 1 ? 2 + 5 * 14 : Slot + 2 + 5 * 14;  // an update of (5015, 5000, 5000) that was killed halfway
  const std::string note("\x2b\2\0\0\0\0\5\0", 8);
  for (const auto &[bytes, fate] : {std::pair{note.substr(0, 4) + (torn < Slot ? "" : "\1") + note.substr(torn < Slot ? 4 : 5) + whole.substr(torn, 14), whole},
                                    {std::string("\x2b\2\0\0\2\0\5\0", 8) + std::string(14, 'x'), std::string()}, {std::string(), std::string()},
                                    {std::string("\x2b\2\0\0\0\0\xe8\3", 8) + std::string(14, 'x'), std::string()}}) {
    const std::string half = std::string(whole).replace(torn, 7, 7, '\x1');
    WriteText(file, half);
    WriteText("saves/a/.update", bytes);
    FolderCells("a");
    EXPECT_TRUE(ReadText(file) == (fate.empty() ? half : fate) && !fs::exists("saves/a/.update")) << bytes.size();
  }
  WriteText("saves/a/.update", std::string("\x2b\2\0\0\0\0\5\0", 8) + whole.substr(2 + 5 * 14, 14));
  OnFullDisk(10, [] { return static_cast<int>(FolderCells("a").size()); });
  EXPECT_TRUE(fs::exists("saves/a/.update")) << "what could not be written stays noted";
  FolderCells("a");
  EXPECT_FALSE(fs::exists("saves/a/.update"));
  fs::rename("saves/a/555", "saves/a/0555");
  EXPECT_EQ(Update(ship, {5015, 5000, 5000}, 0), 0);
  EXPECT_FALSE(fs::exists("saves/a/555")) << "a second folder of the number would hide the first";
  fs::rename("saves/a/0555", "saves/a/555");
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
  const u64 rows[] = {PlacedHead(MaterialRow(110), 2, 1, 0), PlacedHead(1, ComponentRow(6), 1, 0)};
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
    EXPECT_EQ(FolderCells("a"), c.found) << c.what;
    EXPECT_EQ(Logged("WARN"), c.warning != nullptr) << c.what << Log();
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
  EXPECT_EQ(FolderCells("a"), cells);
  EXPECT_EQ(Count(Log(), "can't be read. It was left out."), 5);
  for (const Cell &at : {Cell{5800, 5000, 5000}, Cell{3333, 3333, 3333}, Cell{4444, 4444, 4444}})
    EXPECT_EQ(Update(ship, at, 1), 0);
  EXPECT_EQ(ReadText("outside"), "kept");
  LogInit();
  for (const char *name : {"link", "missing", "../outside", "", ".hidden", "a/555", "outside"}) {
    int result = 1;
    WriteText("saves/outside", "a file");
    EXPECT_TRUE(FolderCells(name, &result).empty() && result == 0) << name;
    ship->fileStem = name;
    EXPECT_EQ(SaveShipDirectory(ship), std::string(name) == "missing" ? 1 : 0) << name;
  }
  EXPECT_TRUE(Logged("*ERR: Missing ship directory!") && Logged("*ERR: Could not open ship dir") && fs::is_symlink("saves/link"));
}

TEST_F(DirectoryStore, ALostOrOldInfoFileOnlyWarns) {
  SaveNew("a", {});
  const std::string info = ReadText("saves/a/info.sis");
  for (const auto &[bytes, words] : {std::pair{std::string(), "WARN: Ship lost its info file. I'll try to load anyway."},
                                     {info.substr(0, 37), "WARN: Ship lost its info file."},
                                     {std::string("\2").append(info, 1), "WARN: Old save \n"}}) {
    LogInit();
    WriteText("saves/a/info.sis", bytes);
    ship->position[1] = 5;
    EXPECT_EQ(LoadShipDirectory(ship, "a", true, true), 1);
    EXPECT_TRUE(Logged(words) && ship->position[1] == (bytes.size() == 38 ? -50500000 : 5)) << words;
    EXPECT_STREQ(ship->keepFolderAs, ".damaged");
  }
}

TEST_F(DirectoryStore, ASaveReplacesTheFolderWholeOrNotAtAll) {
  Cells cells = MixedCells(300, 1);
  SaveNew("a", MixedCells(30, 2));
  WriteText("saves/a/111/7.sss", "stale");
  WriteText("saves/.a.new/left/file", "by a game that was killed");
  Fill(ship, cells);
  EXPECT_EQ(SaveShipDirectory(ship), 1);
  EXPECT_TRUE(FolderCells("a") == cells && !fs::exists("saves/a/111") && !fs::exists("saves/.a.new"));
  FolderReplacement others, late;
  ASSERT_TRUE(BeginFolder(&others, "saves/a") && !BeginFolder(&late, "saves/a")) << "one program at a time";
  AbandonFolder(&late);
  EXPECT_TRUE(fs::exists("saves/.a.new"));
  AbandonFolder(&others);
  EXPECT_EQ(OnFullDisk(4092, [this] { return Update(ship, {5002, 5009, 5002}, PlacedHead(1, 2, 1, 0)); }), 0) << "torn by a page's end";
  EXPECT_TRUE(fs::exists("saves/a/.update") && FolderCells("a") == cells && !fs::exists("saves/a/.update")) << "the old block stays";
  const int answers = OnFullDisk(20000, [this] {
    PlaceHere(ship, 4000, 4000, 4000, CubeOf());
    const int saved = SaveShipDirectory(ship);
    return saved + Update(ship, {5900, 5900, 5900}, PlacedHead(1, 2, 1, 0)) + Update(ship, {5005, 5055, 5000}, 0);
  });
  EXPECT_EQ(answers, 1) << "one update fits";
  EXPECT_TRUE(Logged("*ERR: Couldn't save SuperChunk - Maybe we're out of disk space?"));
  EXPECT_TRUE(Logged("saves/a/555/0.sss. The old block stays.") && !fs::exists("saves/.a.new"));
  EXPECT_EQ(fs::file_size("saves/a/555/0.sss"), 10 * Slot);
  cells[{5900, 5900, 5900}] = PlacedHead(1, 2, 1, 0);
  fs::rename("saves/a", "saves/.a.old");  // killed between two renames, on a disk that can't exchange names
  EXPECT_EQ(FolderCells("a"), cells);
  fs::copy("saves/a", "saves/.a.old", fs::copy_options::recursive);  // killed behind them
  WriteText("saves/.notes.old/file", "a stranger's");
  static ShipTable table;
  LoadAllShips(&table);
  EXPECT_TRUE(!fs::exists("saves/.a.old") && fs::exists("saves/.notes.old/file") && !fs::exists("saves/notes"));
  ship->fileStem = "NULL";
  EXPECT_TRUE(SaveShipDirectory(ship) == 0 && !fs::exists("saves/NULL"));
}

TEST_F(DirectoryStore, WhatWasNotReadWholeCostsNothingThatIsThere) {
  const Cells cells = MixedCells(30, 2);
  const char *file = "saves/a/555/0.sss";
  SaveNew("a", cells);
  fs::resize_file(file, fs::file_size(file) - 1);
  const std::string cut = ReadText(file);
  fs::copy("saves/a", "saves/b", fs::copy_options::recursive);
  ASSERT_EQ(LoadShipDirectory(ship, "a", true, true), 1);
  for (int round = 0; round < 2; ++round) EXPECT_EQ(SaveShipByName(ship), 1);
  EXPECT_FALSE(fs::exists("saves/a.sts.damaged")) << "the stream file was not what lacked something";
  EXPECT_EQ(SaveShipDirectory(ship) + SaveShipDirectory(ship), 2);
  EXPECT_TRUE(ReadText("saves/a.damaged/555/0.sss") == cut && !fs::exists("saves/a.damaged2"));
  EXPECT_EQ(FolderCells("a"), CellsOf(*ship));
  ship->keepFolderAs = ".damaged";
  for (char copy = '2'; copy <= '9'; ++copy) fs::create_directory(std::string("saves/a.damaged") + copy);
  EXPECT_EQ(SaveShipDirectory(ship), 0) << "all names are taken";
  Ship *whole = NewShip(cells, "b");
  ASSERT_EQ(SaveShipByName(whole), 1);
  EXPECT_EQ(ConvertDirectoryToStream("b"), 1);
  EXPECT_EQ(StreamCells("saves/b.sts.replaced"), cells);
  whole->fileStem = "c";
  ASSERT_TRUE(SaveShipByName(whole) == 1 && SaveShipDirectory(whole) == 1);
  fs::resize_file("saves/c.sts", fs::file_size("saves/c.sts") - 9);
  EXPECT_EQ(ConvertStreamToDirectory("c"), 1);
  EXPECT_EQ(FolderCells("c.replaced"), cells);
  const std::string left = ReadText("saves/c.sts");
  ASSERT_TRUE(LoadShipStream(whole, "saves/c.sts", false) == 1 && SaveShipDirectory(whole) == 1);
  EXPECT_FALSE(fs::exists("saves/c.damaged")) << "the folder was not what lacked something";
  fs::remove_all("saves/c");
  fs::remove("saves/c.sts.damaged");
  for (const char *copy : {"", "2", "3", "4", "5", "6", "7", "8", "9"}) WriteText(std::string("saves/c.sts.damaged") + copy, "another");
  static ShipTable table;
  EXPECT_TRUE(ConvertStreamToDirectory("c") == 0 && LoadAllShips(&table) == 0 && ReadText("saves/c.sts") == left);
  EXPECT_TRUE(Logged("*ERR: saves/c.sts is damaged, and can't be kept") && !fs::exists("saves/c 2") && !fs::exists("saves/c 2.sts"));
  Drop(whole);
}

TEST_F(DirectoryStore, AFolderThatCannotBeListedIsNotAnEmptyOne) {
  static ShipTable table;
  SaveNew("a", MixedCells(30, 2));
  const int next = dup(0);
  close(next);
  for (const auto &[files, all] : {std::pair{1u, 0}, {2u, 0}, {9u, 1}}) {  // that may be open at once
    const rlim_t most = static_cast<rlim_t>(next) + files;
    const rlimit limit{most, most};
    EXPECT_EQ(OnFullDisk(1 << 30, [&] { return setrlimit(RLIMIT_NOFILE, &limit) + LoadAllShips(&table); }), all) << files;
  }
}

TEST_F(DirectoryStore, WhatAnotherProgramBeginsMeanwhileStays) {
  for (int round = 0; round < 20; ++round) {
    SaveNew("a", {});
    FolderReplacement ours, theirs;
    ASSERT_TRUE(BeginFolder(&ours, "saves/a"));
    ours.kept = "saves/a.damaged" + std::to_string(round);
    std::thread other([&theirs] {
      for (int i = 0; i < 1000000 && fs::exists("saves/.a.new"); ++i) {}
      ASSERT_TRUE(BeginFolder(&theirs, "saves/a"));
      WriteText(theirs.fresh + "/file", "half a ship");
    });
    EXPECT_TRUE(CommitFolder(&ours));
    other.join();
    EXPECT_TRUE(fs::exists(theirs.fresh + "/file") && fs::exists(ours.kept + "/info.sis")) << round;
    AbandonFolder(&theirs);
  }
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
  EXPECT_EQ(FolderCells("a"), CellsOf(*ship));
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
    u32 made = Killed(&random, 150000, [&](u32 n) { Update(ship, place(done + n), head(done + n)); });
    for (; made > 0; --made) apply(done++);
    const Cells found = FolderCells("a");
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
  Fill(ship, cells);
  for (const char *stem : {"one", "x.Car"}) {
    ship->fileStem = stem;
    ASSERT_EQ(SaveShipByName(ship), 1);
  }
  SaveNew("two", cells);
  SaveNew("two.damaged", cells);
  SaveNew("six.damaged", cells);  // a ship's own name
  fs::create_directory("saves/six.sts");
  WriteText("saves/one (file 2).sts", "no ship");  // before "one.sts", which has no folder yet
  for (const char *name : {"three.ssf", "four.sts", "five.sts.damaged", "two (file).sts", "two (file 7).sts"}) WriteText(std::string("saves/") + name, "no ship");
  const std::string before = ReadText("saves/four.sts");
  for (u16 round = 0; round < 2; ++round) {  // the second time, the stream has its folder
    EXPECT_EQ(LoadAllShips(&table), 0) << "four.sts is no ship";
    ASSERT_EQ(table.count, 4);
    EXPECT_TRUE(Logged("WARN: saves/six.sts is a folder with the name of a file"));
    EXPECT_TRUE(Logged("WARN: saves/one (file 2).sts is taken for a file that was kept beside the ship one"));
    EXPECT_TRUE(Logged("*ERR: saves/four.sts is no ship: mend it or take it away"));
    for (u16 row = 0; row < 4; ++row) EXPECT_EQ(ShipAt(table, row)->fileStem, (std::array{"one", "six.damaged", "two", "x.Car"}[row]));
    EXPECT_EQ(CellsOf(*ShipAt(table, 0)).size(), round == 0 ? 500u : 0u);
    EXPECT_GE(FindChunk(AddressOf(5000, 5000, 5000), *ShipAt(table, round))->slot, 0);
  }
  EXPECT_TRUE(FolderCells("one") == cells && ReadText("saves/four.sts") == before);
  EXPECT_EQ(ConvertDirectoryToStream("two"), 1);
  EXPECT_EQ(StreamCells("saves/two.sts"), cells);
  for (const char *name : {"NULL", "missing", "four", "../saves/two", ""})
    EXPECT_EQ(ConvertDirectoryToStream(name) + ConvertStreamToDirectory(name), 0) << name;
  ScopedLock world(&WorldMutex);
  EXPECT_EQ(AddShipFromDirectory(&table, "missing", 0, 0, 0), 0);
  ASSERT_EQ(AddShipFromDirectory(&table, "two", 1000, INT64_MIN, 0), 1);  // 100 x 5 x 1 cells
  const i64 place[3] = {1000 - 500000 - 25030000, INT64_MIN, -5000 - 25030000};
  for (int axis = 0; axis < 3; ++axis) EXPECT_EQ(ShipAt(table, 5)->position[axis], place[axis]);
}
