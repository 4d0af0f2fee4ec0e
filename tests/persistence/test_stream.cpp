// The stream form, byte for byte, and what is made of bytes that are not in order.
#include "persistence/stream.h"

#include <gtest/gtest.h>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "persistence/cursor.h"
#include "persistence/ships.h"
#include "platform/threads.h"
#include "support/installation.h"
#include "world/access.h"

class Stream : public testing::Test {
 protected:
  void SetUp() override {
    LoadTables();
    UseTemporaryInstallation();
    ship = NewTestShip();
  }
  void TearDown() override { Drop(ship); }
  std::vector<u8> Packed() {
    ScopedLock world(&WorldMutex);
    std::vector<u8> bytes;
    EXPECT_TRUE(PackShip(*ship, &bytes));
    return bytes;
  }
  Cells Unpacked(const std::vector<u8> &bytes, std::string *log = nullptr) {
    LogInit();
    Ship *other = NewTestShip();
    UnpackShip(other, bytes.data(), bytes.size(), "saves/test.sts");
    const Cells cells = CellsOf(*other);
    unpackedName = other->displayName;
    Drop(other);
    if (log != nullptr) *log = ReadText("errors.txt");
    return cells;
  }
  Ship *ship = nullptr;
  std::string unpackedName;
};

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
    const std::vector<u8> bytes = Packed();
    EXPECT_EQ(bytes, PackByHand(name, cells)) << name;
    std::string log;
    EXPECT_EQ(Unpacked(bytes, &log), cells) << name;
    EXPECT_EQ(unpackedName, name);
    EXPECT_EQ(log.find("WARN"), std::string::npos) << log;
  }
}

TEST_F(Stream, AContentCutAnywhereGivesItsWholeEntries) {
  Cells cells;
  for (u16 i = 0; i < 40; ++i) cells[{static_cast<u16>(i * 7), 3, static_cast<u16>(i % 3)}] = PlacedHead(1, 2, i % 8u, i % 4u);
  const std::vector<u8> whole = PackByHand("Cut", cells);
  for (size_t length = 0; length < whole.size(); ++length) {
    size_t expected = 0;  // counts the entries that end before the cut
    for (size_t at = 6; at + 8 <= length;) {
      const size_t count = whole[at + 6];
      expected += std::min(count, (length - at - 8) / 6);
      at += 8 + 6 * count;
    }
    std::string log;
    const Cells found = Unpacked({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)}, &log);
    EXPECT_EQ(found.size(), expected) << length;
    for (const auto &[at, head] : found) ASSERT_TRUE(cells.contains(at) && cells[at] == head) << length;
  }
}

TEST_F(Stream, WhatTheTablesOrTheTreeDontHaveIsReportedAndNotFollowed) {
  const u16 unknownComponent = static_cast<u16>(FindComponent(6)), unknownMaterial = static_cast<u16>(FindMaterial(110));
  ASSERT_TRUE(unknownComponent != 0 && unknownMaterial != 0);
  const u64 good = PlacedHead(1, 2, 1, 0), strange = PlacedHead(1, unknownComponent, 1, 0);
  const Cell home = {0, 0, 0}, away = {9007, 9000, 9000};
  const Cells onlyAway = {{away, good}}, placeholder = {{home, strange}, {away, good}};
  const Cells butter = {{home, PlacedHead(unknownMaterial, 2, 1, 0)}, {away, good}};
  const struct {
    const char *what;
    std::array<u16, 7> words;  // a group of one entry; a good group follows
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
    std::vector<u8> bytes = {1, 0, 0};
    for (const u16 v : c.words) PutU16(&bytes, v);
    for (const u16 v : std::initializer_list<u16>{999, 0, 0, 1, 33, 2, 7}) PutU16(&bytes, v);
    std::string log;
    EXPECT_EQ(Unpacked(bytes, &log), c.cells) << c.what;
    if (c.warning == nullptr) EXPECT_EQ(log.find("WARN"), std::string::npos) << log;
    else EXPECT_NE(log.find(c.warning), std::string::npos) << c.what << ": " << log;
  }
}

TEST_F(Stream, OddHeadersAndRepeatedGroupsAreTakenAsFarAsTheyGo) {
  std::string log;
  std::vector<u8> bytes = PackByHand(std::string(200, 'x'), MixedCells(10, 3));
  bytes[0] = 2;
  EXPECT_EQ(Unpacked(bytes, &log), MixedCells(10, 3));
  EXPECT_EQ(unpackedName, std::string(64, 'x'));
  EXPECT_NE(log.find("over 64 letters"), std::string::npos) << log;
  EXPECT_NE(log.find("WARN: Old save file. Going to try to load anyway"), std::string::npos) << log;
  bytes = PackByHand("two", {{{1, 1, 1}, PlacedHead(1, 2, 1, 0)}});
  const std::vector<u8> again = PackByHand("", {{{1, 1, 1}, PlacedHead(2, 3, 4, 1)}});
  bytes.insert(bytes.end(), again.begin() + 3, again.end());
  EXPECT_EQ(Unpacked(bytes), (Cells{{{1, 1, 1}, PlacedHead(2, 3, 4, 1)}}));
}

TEST_F(Stream, AFileCannotAskForMoreMemoryThanAShipMayTake) {
  // Groups of one block, each in a super chunk of its own: 14 bytes for 40 kilobytes of tree.
  std::vector<u8> bytes = {1, 0, 0};
  for (u16 mega = 0; mega < 200; ++mega)
    for (u16 super = 0; super < 1000; ++super)
      for (const u16 v : {mega, super, u16{0}, u16{0}}) PutU16(&bytes, v);
  std::string log;
  EXPECT_TRUE(Unpacked(bytes, &log).empty());
  EXPECT_NE(log.find("too large"), std::string::npos) << log;
}
