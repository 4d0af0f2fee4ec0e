// Ships as text: every shape that they were ever written in, their companions, and what a kill between their files leaves.
#include "persistence/text_form.h"

#include "persistence/ships.h"
#include "persistence/stream.h"
#include "world/cells.h"
#include "world/light.h"

namespace {

struct TextForm : ShipTest {
  void Use(Ship *other) {
    Drop(ship);
    ship = other;
    ship->fileStem = "a";
  }
  int Load(const char *name) {
    Use(NewTestShip());
    LogInit();
    ScopedLock world(&WorldMutex);
    const int result = LoadShipText(ship, name, 0, 0, 0);
    EXPECT_EQ(ShipFault(*ship), "") << name;
    return result;
  }
};

// A block of the corpus by what it should be today. x counts from cell (5000, 5000, 5000).
struct Known {
  u16 x, material, component;
  unsigned rotation, rotation2;
};

}  // namespace

static Cells CellsOfKnown(const std::vector<Known> &blocks) {
  Cells cells;
  for (const Known &k : blocks)
    cells[{static_cast<u16>(5000 + k.x), 5000, 5000}] =
        PlacedHead(MaterialRow(k.material), ComponentRow(k.component), k.rotation, k.rotation2);
  return cells;
}

TEST_F(TextForm, EveryOlderShapeLoadsAsItIsMeant) {
  const struct {
    const char *name, *shipName;
    int result;
    std::vector<Known> blocks;
    std::vector<const char *> told;
  } cases[] = {
      {"current", "Hermit", 1, {{0, 5, 2, 1, 0}, {1, 5, 2, 6, 3}, {2, 10, 215, 4, 2}},
       {"WARN: Lighting file problem. Loading will be slow. \n", "WARN: Cache file problem. Expect movement lag while it rebuilds. \n",
        "info: Loaded first section of ship \n", "info: Successfully loaded file! \n"}},
      {"any_order", "Shuffled", 1, {{0, 5, 2, 3, 2}, {1, 5, 2, 3, 1}}, {"info: File may be loaded successfully. \n"}},
      {"twelve", "Dozen", 1, {{0, 5, 2, 1, 3}, {1, 5, 2, 2, 0}, {2, 5, 2, 3, 0}}, {"WARN: Older ship. Will need to do block translations \n"}},
      {"eleven", "Eleven", 1, {{0, 5, 2, 1, 0}, {1, 5, 2, 6, 0}, {2, 5, 2, 7, 0}, {3, 5, 2, 0, 0}}, {"WARN: Older ship."}},
      {"ten", "Default", 1, {{0, 5, 2, 1, 0}, {1, 5, 251, 3, 2}, {2, 5, 251, 1, 3}},
       {"WARN: Old school file! Don't worry, I can load it anyway! \n", "WARN: Older ship."}},
      {"moved", "Default", 1,
       {{0, 5, 2, 1, 0}, {1, 10, 215, 1, 0}, {2, 25, 2238, 1, 0}, {3, 110, 2, 1, 0}, {4, 5, 6, 1, 0}, {5, 110, 6, 1, 0}, {6, 110, 6, 1, 0}},
       {"WARN: Found old format section - Loading will be slow. \n",
        "WARN: Found a Material type I'm unfamilliar with. I'll just assume it's butter. \n",
        "WARN: Found a block type I'm unfamilliar with. I'll stick a placeholder overtop of it. \n"}},
      {"bad_lines", "", 1, {{0, 5, 2, 1, 0}, {2, 5, 2, 1, 0}, {4, 5, 2, 1, 0}},
       {"info: Error in ship string section on line  2 \n", "info: Error on line  3 \n", "info: Error in float section on line  5 \n",
        "info: Error in float section on line  6 \n", "info: Error in ship float section on line  7 \n",
        "info: Error in float section on line  9 \n", "info: Error in ship int section on line  10 \n", "info: Error on line  14 \n",
        "info: Error on line  15 \n", "info: Error on line  16 \n", "info: Error on line  17 \n", "info: Error on line  18 \n",
        "info: Error on line  19 \n", "info: Error on line  21 \n", "WARN: Ship file saves/bad_lines.ssf has faults in its lines: 14 \n"}},
      {"bad_end", "Default", 0, {{0, 5, 1000, 1, 0}}, {"*ERR: Save file appears corrupted. \n"}},
      {"no_end", "Default", 1, {{0, 5, 2, 1, 0}, {1, 5, 2, 1, 1}}, {"info: File may be loaded successfully. \n"}},
      {"no_blocks", "Hollow", 1, {}, {"*ERR: Corrupted save file \n", "info: File may be loaded successfully. \n"}},
  };
  const fs::path corpus = fs::path(TARNVALE_ROOT) / "tests/persistence/ships";
  for (const auto &c : cases) {
    Cells expected = CellsOfKnown(c.blocks);
    if (c.name == std::string("current")) {
      expected[{5000, 5000, 5000 + 0}] = PlacedHead(5, 2, 1, 0);
      expected[{5009, 5019, 5009}] = PlacedHead(1, ComponentRow(1030), 0, 1);
      expected[{9999, 9999, 9999}] = PlacedHead(MaterialRow(25), ComponentRow(2238), 7, 1);
    }
    const std::string name = c.name + std::string(".ssf"), text = ReadText(corpus / name);
    for (const bool packed : {false, true}) {  // as people write them, and as the game does
      WriteText("saves/" + name, packed ? GzipMember(text, 1) : text);
      EXPECT_EQ(Load(name.c_str()), c.result) << name;
      EXPECT_TRUE(CellsOf(*ship) == expected) << name;
      EXPECT_EQ(ship->displayName, c.shipName) << name;
      EXPECT_EQ(ship->fileStem, c.name);
      for (const char *told : c.told) EXPECT_EQ(Count(Log(), told), 1) << name << ": " << told << "\n" << Log();
    }
  }
}

// The rows of one family of plating: what each old rotation 1 to 6 becomes, as rotation x 10 + turn. 2 was the turn in the file.
TEST_F(TextForm, OldPlatingBecomesTheTurnedPiecesOfToday) {
  const u16 family = ComponentRow(261);  // a base and its pieces -1 to -7 in the rows behind it
  const u16 far = ComponentRow(209), second = ComponentRow(31);
  ASSERT_EQ(Components[family + 7u].familyOffset, -7);
  ASSERT_TRUE(Components[far].familyOffset == -9 && Components[second].familyOffset == -1 && Components[second + 1u].familyOffset == 0);
  const struct {
    int row, newRow;
    i8 above;  // the offset that the row above is given, or 0
    unsigned turns[6];
  } cases[] = {
      {family, family, 0, {10, 20, 32, 30, 50, 32}},
      {family + 1, family, 0, {21, 11, 13, 20, 13, 22}},
      {family + 1, family - 4, -5, {21, 11, 13, 20, 13, 22}},
      {family + 2, family, 0, {11, 31, 33, 41, 33, 10}},
      {family + 3, family, 0, {10, 10, 12, 10, 10, 10}},
      {family + 4, family + 1, 0, {12, 23, 31, 10, 52, 60}},
      {family + 5, family + 1, 0, {11, 22, 32, 42, 52, 62}},
      {family + 6, family + 1, 0, {12, 12, 22, 42, 52, 62}},
      {family + 7, family + 1, 0, {12, 22, 30, 42, 52, 62}},
      {far, far - 8, 0, {12, 22, 32, 42, 52, 62}},
      {second, second - 1, 0, {12, 22, 32, 42, 52, 62}},
  };
  for (const auto &c : cases)
    for (const char *version : {"", "Version 0\n", "Version 2\n"}) {
      const bool old = version[0] == '\0', translated = version != std::string("Version 2\n");
      Component &component = Components[c.row], &above = Components[c.row - 1];
      const std::string className = component.className;
      const i8 offset = above.familyOffset;
      component.className = c.row % 2 == 0 ? "platingedg" : "platingcor";
      if (c.above != 0) above.familyOffset = c.above;
      std::string text = version + std::string("MainSection 1\n");
      Cells expected;
      for (unsigned r = 1; r <= 6; ++r) {
        text += "555 0 0 " + std::to_string(r) + " 5 " + std::to_string(c.row) + " 2 " + std::to_string(old ? r - 1 : r) + " 5 " +
                std::to_string(component.id) + " 0 0 2\n";
        const unsigned row = static_cast<unsigned>(translated ? c.newRow : c.row);
        const unsigned turn = translated ? c.turns[r - 1] : 10 * r + 2;
        expected[{static_cast<u16>(5000 + r), 5000, 5000}] = PlacedHead(5, row, turn / 10, turn % 10);
      }
      WriteText("saves/plating.ssf", text);
      Load("plating.ssf");
      EXPECT_TRUE(CellsOf(*ship) == expected) << c.row << " " << version;
      component.className = className;
      above.familyOffset = offset;
    }
}

static GraphicBlock *RecordAt(const Ship &ship, const Cell &at) {
  const CellAddress a = AddressOf(at[0], at[1], at[2]);
  return EnsureGraphics(FindCells(a, ship), *FindChunk(a, ship)) + a.block;
}

// Voxels of one colour, as if Parse had built them.
static void GiveVoxels(GraphicBlock *g, u16 count, u32 colour) {
  g->cache = static_cast<BlockCache *>(std::calloc(1, sizeof(BlockCache) + count * 8u + CacheReadPastEnd));
  g->cache->counts[OpaqueList] = count;
  const CacheList list = ListOf(g->cache, OpaqueList);
  for (u16 i = 0; i < count; ++i) {
    const_cast<CacheVoxel *>(list.voxels)[i] = {static_cast<u8>(i & 15), static_cast<u8>(i / 16 & 15), 9, 0};
    const_cast<u32 *>(list.colours)[i] = colour + i;
  }
}

using Lights = std::vector<std::array<int, 7>>;
static Lights LightsOf(const Ship &ship) {  // of all cells, sorted within each
  Lights all;
  for (const auto &[at, head] : CellsOf(ship)) {
    const GraphicBlock *g = RecordAt(ship, at);
    Lights own;
    for (unsigned i = 0; i < g->lightCount; ++i) {
      const LightEntry &e = g->lightList[i];
      own.push_back({e.dx, e.dy, e.dz, e.red, e.green, e.blue, at[0]});
    }
    std::sort(own.begin(), own.end());
    all.insert(all.end(), own.begin(), own.end());
  }
  return all;
}

// A bar of twelve blocks with a lamp in it, all lit; two blocks have voxel lists.
static Ship *LitShip() {
  Ship *ship = NewTestShip();
  for (u16 x = 5000; x < 5012; ++x) PlaceBlockFast(CubeOf(5, 2, 2, 1), x, 5000, 5000, ship);
  PlaceBlockFast(CubeOf(5, ComponentRow(1000)), 5004, 5000, 5000, ship);
  PlaceBlockFast(CubeOf(MaterialRow(6), 2), 5005, 5000, 5000, ship);  // glass
  LightPass(ship);
  GiveVoxels(RecordAt(*ship, {5002, 5000, 5000}), 300, 0xff001000);
  GiveVoxels(RecordAt(*ship, {5005, 5000, 5000}), 1, 0xff002000);
  return ship;
}

TEST_F(TextForm, AShipWithCompanionsIsWrittenToTheByteAndLoadsEqual) {
  Use(LitShip());
  ship->displayName = "Lit\nbar";
  ship->fileStem = "bar";
  ship->ComScruffiness = 0.25f;
  const Lights lights = LightsOf(*ship);
  ASSERT_EQ(lights.size(), 12u);
  ASSERT_EQ(SaveShipText(*ship, "bar", false, true, true), 1);
  std::string text = "Version 2\nStringSection 1\nName Lit bar\nIntSection 1\nLightingCurrent 1\nCacheCurrent 1\nFloatSection 1\n"
                     "ComScruffiness 0.250000\nMatScruffiness 0.100000\nMainSection 1\n";
  std::string light;
  for (int i = 0; i < 12; ++i) {
    const char *rows = i == 4 ? "5 16 2 1 5 1000" : i == 5 ? "6 2 2 1 6 2" : "5 2 2 2 5 2";
    text += "555 0 " + std::to_string(i / 10) + " " + std::to_string(i % 10) + " " + rows + " 1 " + (i == 2 ? "300" : i == 5 ? "1" : "0") +
            (i == 4 || i == 5 ? " 0\n" : " 1\n");
    const Component &lamp = Components[16];
    for (const int byte : {4 - i, 0, 0, int{lamp.lightRed}, int{lamp.lightGreen}, int{lamp.lightBlue}, 0}) light += static_cast<char>(byte);
  }
  EXPECT_EQ(Gunzip("saves/bar.ssf"), text + "0 0 0 0 0 0 0 0 0 0 0 0\n");
  EXPECT_EQ(Gunzip("cache/bar.slf"), light);
  const std::string cache = Gunzip("cache/bar.scf");
  ASSERT_EQ(cache.size(), 301u * 10);
  const int index = VoxelIndex(1, 2, 9, 2, 1);  // entry 33 of the first block
  EXPECT_EQ(cache.substr(33 * 6, 6), (std::string{1, 2, 9, 0, static_cast<char>(index), static_cast<char>(index >> 8)}));
  EXPECT_EQ(cache.substr(300 * 6 + 33 * 4, 4), std::string("\x21\x10\0\xff", 4));
  EXPECT_EQ(cache.substr(3000 + 6), std::string("\0\x20\0\xff", 4));

  const Cells cells = CellsOf(*ship);
  EXPECT_EQ(Load("bar.ssf"), 1);
  EXPECT_FALSE(Logged("WARN")) << Log();
  EXPECT_TRUE(CellsOf(*ship) == cells && LightsOf(*ship) == lights && ship->ComScruffiness == 0.25f && ship->displayName == "Lit");
  const GraphicBlock *full = RecordAt(*ship, {5002, 5000, 5000}), *glass = RecordAt(*ship, {5005, 5000, 5000});
  ASSERT_TRUE(full->cache != nullptr && glass->cache != nullptr && RecordAt(*ship, {5006, 5000, 5000})->cache == nullptr);
  const CacheList list = ListOf(full->cache, OpaqueList);
  EXPECT_TRUE(list.count == 300 && list.voxels[33].y == 2 && list.colours[33] == 0xff001021u && CacheTotal(*full->cache) == 300);
  EXPECT_TRUE(full->cacheId == 1 && glass->cacheId == 2 && glass->lightId == 6);
  EXPECT_TRUE(full->cacheDirty) << "drawn as it was until it is built again, with what the file doesn't keep";
  WriteText("cache/bar.slf", "of bar.ssf");
  EXPECT_EQ(SaveShipText(*ship, "again.txt", true, true, false), 1);
  EXPECT_TRUE(fs::exists("saves/again.txt") && !fs::exists("cache/again.slf") && ReadText("cache/bar.slf") == "of bar.ssf");
}

TEST_F(TextForm, CompanionsThatDontFitAreLeftOut) {
  Use(LitShip());
  ASSERT_EQ(SaveShipText(*ship, "a.ssf", true, true, true), 1);
  const Lights lights = LightsOf(*ship);
  const Cells cells = CellsOf(*ship);
  const std::string text = Gunzip("saves/a.ssf"), light = Gunzip("cache/a.slf"), cache = Gunzip("cache/a.scf");
  const auto with = [&](const std::string &from, const std::string &to) { return std::string(text).replace(text.find(from), from.size(), to); };
  const struct { const char *what; std::string text, light, cache; bool lightGood, cacheGood; } cases[] = {
      {"as they are", text, GzipMember(light, 1), GzipMember(cache, 1), true, true},
      {"one entry more", text, GzipMember(light + "1234567", 1), GzipMember(cache + "1234567890", 1), false, false},
      {"one byte less", text, GzipMember(light.substr(1), 1), GzipMember(cache.substr(1), 1), false, false},
      {"cut", text, GzipMember(light, 1).substr(0, 20), GzipMember(cache, 1).substr(0, 20), false, false},
      {"no gzip", text, light, cache, false, false},
      {"empty", text, "", "", false, false},
      {"too many lights", with("5 2 1 0 1\n", "5 2 13 0 1\n"), GzipMember(light, 1), GzipMember(cache, 1), false, true},
      {"negative voxels", with(" 300 1\n", " -1 1\n"), GzipMember(light, 1), GzipMember(cache, 1), true, false},
      {"too many voxels", with(" 300 1\n", " 2000000000 1\n"), GzipMember(light, 1), GzipMember(cache, 1), true, false},
  };
  for (const auto &c : cases) {
    WriteText("saves/a.ssf", c.text);
    WriteText("cache/a.slf", c.light);
    WriteText("cache/a.scf", c.cache);
    EXPECT_EQ(Load("a.ssf"), 1) << c.what;
    EXPECT_TRUE(CellsOf(*ship) == cells && LightsOf(*ship) == lights) << c.what;
    EXPECT_EQ(RecordAt(*ship, {5002, 5000, 5000})->cache != nullptr, c.cacheGood) << c.what;
    EXPECT_EQ(Count(Log(), "WARN: Lighting file problem."), c.lightGood ? 0 : 1) << c.what;
    EXPECT_EQ(Count(Log(), "WARN: Cache file problem."), c.cacheGood ? 0 : 1) << c.what;
  }
}

TEST_F(TextForm, ASaveThatCannotBeDoneLeavesTheOldShipWhole) {
  Use(LitShip());
  ASSERT_EQ(SaveShipText(*ship, "a", false, true, true), 1);
  const auto files = [] { return ReadText("saves/a.ssf") + ReadText("cache/a.slf") + ReadText("cache/a.scf"); };
  const std::string old = files();
  Fill(ship, MixedCells(20000, 4));
  EXPECT_EQ(OnFullDisk(3000, [this] { return SaveShipText(*ship, "a", false, true, true); }), 0);
  EXPECT_TRUE(Logged("*ERR: Could not write saves/a.ssf. The old file stays. \n")) << Log();
  for (const char *name : {"../a", "", ".a", "none/a"}) EXPECT_EQ(SaveShipText(*ship, name, false, false, false), 0) << name;
  ship->displayName = std::string(65, 'n');
  EXPECT_EQ(SaveShipText(*ship, "a", false, true, true), 0);
  EXPECT_EQ(files(), old);
  for (const char *folder : {"saves", "cache"})
    for (const auto &entry : fs::directory_iterator(folder)) EXPECT_NE(entry.path().extension(), ".tmp") << entry;
  ship->displayName = "a";
  fs::remove_all("cache");
  EXPECT_EQ(SaveShipText(*ship, "b", false, true, true), 1) << "companions can be done without";
  EXPECT_EQ(Load("b.ssf"), 1);
}

TEST_F(TextForm, AKillBetweenTheFilesLeavesOneShipWhole) {
  Ship *ships[2] = {LitShip(), LitShip()};
  Cells cells[2];
  Lights lights[2];
  for (u16 i = 0; i < 2; ++i) {
    ships[i]->fileStem = "a";
    for (int x = 5020 + 7 * i, end = x + 6; x < end; ++x) PlaceHere(ships[i], x, 5000, 5000, CubeOf(5, ComponentRow(1000)));
    Fill(ships[i], MixedCells(3000, i));
    ClearLights(*ships[i]);
    ClearShipCaches(ships[i]);
    cells[i] = CellsOf(*ships[i]);
    for (const auto &[at, head] : cells[i])
      if (at[0] % 3 == 0) GiveVoxels(RecordAt(*ships[i], at), 20, 0xff000000u + i);
    LightPass(ships[i]);
    lights[i] = LightsOf(*ships[i]);
  }
  ASSERT_EQ(SaveShipText(*ships[0], "a", false, true, true), 1);
  std::mt19937 random(11);
  int seen[2] = {}, without = 0, midway = 0;
  for (int i = 0; i < Kills(); ++i) {
    Killed(&random, 400000, [&](unsigned turn) { SaveShipText(*ships[1 - turn % 2], "a", false, true, true); });
    for (const char *left : {"saves/a.ssf.tmp", "cache/a.slf.tmp", "cache/a.scf.tmp"}) midway += fs::remove(left) ? 1 : 0;
    ASSERT_EQ(Load("a.ssf"), 1);
    const Cells found = CellsOf(*ship);
    const int which = found == cells[0] ? 0 : 1;
    ASSERT_TRUE(found == cells[which] && LightsOf(*ship) == lights[which]) << "after kill " << i;
    for (const auto &[at, head] : found) {
      const BlockCache *cache = RecordAt(*ship, at)->cache;
      ASSERT_TRUE(cache == nullptr || ListOf(cache, OpaqueList).colours[0] == 0xff000000u + static_cast<u32>(which)) << "after kill " << i;
    }
    ++seen[which];
    without += Logged("file problem") ? 1 : 0;
  }
  std::printf("%i kills, %i temporaries left; %i and %i times whole, %i times without a companion\n", Kills(), midway, seen[0],
              seen[1], without);
  EXPECT_GT(midway, 0);
  for (Ship *s : ships) Drop(s);
}

TEST_F(TextForm, AShipJoinsTheTableBesideThePlayer) {
  static ShipTable table;
  ASSERT_TRUE(fs::copy_file(fs::path(TARNVALE_ROOT) / "tests/persistence/ships/no_end.ssf", "saves/pair.ssf"));
  WriteText("saves/pair.sts", "today's work");
  fs::create_directory("saves/folder.ssf");
  LockMutex(&WorldMutex);
  for (const char *name : {"none.ssf", "folder.ssf", "../saves/pair.ssf", "", ".ssf", "ab"}) {
    LogInit();
    EXPECT_EQ(AddShipFromText(&table, name, 0, 0, 0), 0) << name;
    EXPECT_EQ(Count(Log(), "*ERR: Cannot open save file \n"), 1) << name;
  }
  const u16 before = table.count;  // empty ones stay
  ASSERT_EQ(AddShipFromText(&table, "pair.ssf", 1000, -70000000, INT64_MIN), 1);
  UnlockMutex(&WorldMutex);
  Ship &pair = *ShipAt(table, before);  // cells (5000, 5000, 5000) and (5001, ...): the middle is rounded up
  const i64 places[3] = {1000 - 50010000 + 30000 + 10000, -70000000 - 50000000 + 30000 + 5000, INT64_MIN + 30000 + 5000};
  for (int axis = 0; axis < 3; ++axis) EXPECT_EQ(pair.position[axis], places[axis]) << axis;
  EXPECT_EQ(pair.id, before);
  EXPECT_TRUE(SaveShipByName(&pair) == 1 && SaveShipByName(&pair) == 1);
  EXPECT_TRUE(ReadText("saves/pair.sts.replaced") == "today's work" && !fs::exists("saves/pair.sts.replaced2"));
}

TEST_F(TextForm, ACutFileGivesWhatIsWholeAndNothingElse) {
  Use(LitShip());
  const Cells cells = CellsOf(*ship);
  ASSERT_EQ(SaveShipText(*ship, "whole", false, false, false), 1);
  const std::string whole = ReadText("saves/whole.ssf");
  for (size_t length = 18; length < whole.size(); ++length) {
    WriteText("saves/cut.ssf", whole.substr(0, length));
    Load("cut.ssf");
    for (const auto &[at, head] : CellsOf(*ship)) ASSERT_TRUE(cells.contains(at) && cells.at(at) == head) << length;
  }
}
