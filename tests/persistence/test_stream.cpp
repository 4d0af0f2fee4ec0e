// The stream form, byte for byte, and what is made of bytes that are not in order.
#include "persistence/stream.h"

#include "persistence/ships.h"

namespace {

struct Stream : ShipTest {
  std::string Packed() {
    ScopedLock world(&WorldMutex);
    std::vector<u8> bytes;
    EXPECT_TRUE(PackShip(*ship, &bytes));
    return {bytes.begin(), bytes.end()};
  }
  // Into the ship, which is a new one.
  Cells Unpacked(const std::string &bytes) {
    LogInit();
    Drop(ship);
    ship = NewTestShip();
    UnpackShip(ship, reinterpret_cast<const u8 *>(bytes.data()), bytes.size(), "saves/test.sts");
    return CellsOf(*ship);
  }
};

}  // namespace

TEST_F(Stream, ShipsKeepEveryBlockAndTheirName) {
  Cells corners;
  const std::vector<u16> xs = {0, 9, 10, 99, 100, 999, 1000, 9999}, ys = {0, 5678, 9999}, zs = {1, 9012, 9999};
  for (const u16 x : xs)
    for (const u16 y : ys)
      for (const u16 z : zs)
        corners[{x, y, z}] = PlacedHead(1u + x % 7u, 1u + y % 13u, z % 8u, x % 4u);
  const std::pair<std::string, Cells> cases[] = {{"Default", {}}, {"", corners}, {"A name with blanks", MixedCells(3000, 1)},
                                                 {std::string(64, 'n'), MixedCells(1, 2)}};
  for (const auto &[name, cells] : cases) {
    FreeShip(ship);
    ASSERT_TRUE(AllocShipTable(ship));
    ship->displayName = name;
    Fill(ship, cells);
    if (ChunkCells *hot = FindCells(AddressOf(0, 0, 1), *ship))  // damage and heat are not kept
      hot->heads[100] = (hot->heads[100].load() & ~u64{3} & ~(u64{0xffff} << 48)) | StateDamaged | u64{17} << 48;
    const std::string bytes = Packed();
    EXPECT_EQ(bytes, PackByHand(name, cells)) << name;
    EXPECT_EQ(Unpacked(bytes), cells) << name;
    EXPECT_TRUE(ship->displayName == name && !Logged("WARN")) << name << Log();
  }
}

TEST_F(Stream, WhatTheTablesOrTheTreeDontHaveIsReportedAndNotFollowed) {
  const u64 good = PlacedHead(1, 2, 1, 0), strange = PlacedHead(1, ComponentRow(6), 1, 0);
  const Cell home = {0, 0, 0}, away = {9007, 9000, 9000};
  const Cells onlyAway = {{away, good}}, placeholder = {{home, strange}, {away, good}};
  const Cells butter = {{home, PlacedHead(MaterialRow(110), 2, 1, 0)}, {away, good}};
  const struct {
    const char *what;
    std::vector<u16> words;  // a group of one entry; a good group follows
    Cells cells;
    const char *warning;
  } cases[] = {
      {"all good", {0, 0, 0, 1, 33, 2, 0}, {{home, good}, {away, good}}, nullptr},
      {"mega", {1000, 0, 0, 1, 33, 2, 0}, onlyAway, "outside every ship"},
      {"super", {0, 65535, 0, 1, 33, 2, 0}, onlyAway, "outside every ship"},
      {"chunk", {0, 0, 1023, 1, 33, 2, 0}, onlyAway, "outside every ship"},
      {"block", {0, 0, 0, 1, 33, 2, 1000}, onlyAway, "outside every ship"},
      {"count above", {0, 0, 0, 1001, 33, 2, 0}, {}, "impossible number"},
      {"count of all bits", {0, 0, 0, 65535, 33, 2, 0}, {}, "impossible number"},
      {"component 0", {0, 0, 0, 1, 33, 0, 0}, placeholder, "Placeholders"},
      {"end row", {0, 0, 0, 1, 33, ComponentCount, 0}, placeholder, "Placeholders"},
      {"component", {0, 0, 0, 1, 33, 16383, 0}, placeholder, "Placeholders"},
      {"material 0", {0, 0, 0, 1, 1, 2, 0}, butter, "Placeholders"},
      {"material", {0, 0, 0, 1, 0x7fe1, 2, 0}, butter, "Placeholders"},
  };
  for (const auto &c : cases) {
    EXPECT_EQ(Unpacked(std::string("\1\0\0", 3) + Words(c.words) + Words({999, 0, 0, 1, 33, 2, 7})), c.cells) << c.what;
    EXPECT_TRUE(c.warning == nullptr ? !Logged("WARN") : Logged(c.warning)) << c.what << ": " << Log();
  }
}

TEST_F(Stream, OddHeadersAndRepeatedGroupsAreTakenAsFarAsTheyGo) {
  std::string bytes = PackByHand(std::string(200, 'x'), MixedCells(10, 3));
  bytes[0] = 2;
  EXPECT_EQ(Unpacked(bytes), MixedCells(10, 3));
  EXPECT_EQ(ship->displayName, std::string(64, 'x'));
  EXPECT_TRUE(Logged("over 64 letters") && Logged("WARN: Old save file. Going to try to load anyway")) << Log();
  const Cells again = {{{1, 1, 1}, PlacedHead(2, 3, 4, 1)}};
  EXPECT_EQ(Unpacked(PackByHand("two", {{{1, 1, 1}, PlacedHead(1, 2, 1, 0)}}) + PackByHand("", again).substr(3)), again);
}

TEST_F(Stream, AFileCannotAskForMoreMemoryThanAShipMayTake) {
  std::string bytes("\1\0\0", 3);  // groups of no block, each in a super chunk of its own: 8 bytes for 40 kilobytes of tree
  for (u16 mega = 0; mega < 200; ++mega)
    for (u16 super = 0; super < 1000; ++super) bytes += Words({mega, super, 0, 0});
  EXPECT_TRUE(Unpacked(bytes).empty() && Logged("too large")) << Log();
}
