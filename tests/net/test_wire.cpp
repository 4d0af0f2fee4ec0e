// The packets byte for byte, and what becomes of those that are not in order.
#include "net/wire.h"

#include <gtest/gtest.h>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "net/server_options.h"
#include "persistence/ships.h"
#include "support/installation.h"
#include "world/access.h"

TEST(Wire, StringsHaveAShortAndALongForm) {
  const struct { size_t length; std::vector<u8> head; } cases[] = {
      {0, {0, 0, 0}}, {1, {1}}, {255, {255}}, {256, {0, 0, 1}}, {65535, {0, 255, 255}}, {70000, {0, 255, 255}}};
  for (const auto &c : cases) {
    const std::string text(c.length, 'x');
    std::vector<u8> out;
    WriteString(&out, text);
    EXPECT_EQ(std::vector<u8>(out.begin(), out.begin() + static_cast<long>(c.head.size())), c.head) << c.length;
    EXPECT_EQ(out.size(), c.head.size() + std::min<size_t>(c.length, 65535));
    Reader r{out.data(), out.size()};
    EXPECT_EQ(ReadString(&r), text.substr(0, 65535));
    EXPECT_FALSE(r.failed);
    for (const size_t cut : {size_t{0}, out.size() - 1}) {
      Reader shortened{out.data(), cut};
      ReadString(&shortened);
      EXPECT_TRUE(shortened.failed);
    }
  }
}

TEST(Wire, PayloadsOverAHundredBytesAreCompressedAndCanBeOpened) {
  for (const size_t size : {0u, 1u, 100u, 101u, 5000u}) {
    const std::vector<u8> payload(size, 'a');
    const std::vector<u8> packet = SealPacket(PacketChat, payload.data(), size);
    EXPECT_EQ(packet[0], size > 100 ? PacketChat + 0x80 : +PacketChat);
    u8 type = 0;
    Reader r;
    std::vector<u8> store;
    ASSERT_TRUE(OpenPacket(packet.data(), packet.size(), &type, &r, &store));
    EXPECT_EQ(type, PacketChat);
    EXPECT_EQ(std::vector<u8>(r.bytes, r.bytes + r.left), payload);
  }
}

TEST(Wire, BrokenOrHugePacketsDoNotOpen) {
  u8 type = 0;
  Reader r;
  std::vector<u8> store;
  EXPECT_FALSE(OpenPacket(nullptr, 0, &type, &r, &store));
  const std::vector<u8> rubbish = {PacketChat + 0x80, 1, 2, 3}, plain = {0x80, 7};
  EXPECT_FALSE(OpenPacket(rubbish.data(), rubbish.size(), &type, &r, &store));
  EXPECT_TRUE(OpenPacket(plain.data(), plain.size(), &type, &r, &store));  // 0x80 itself is no compressed packet
  EXPECT_EQ(type, 0x80);
  const std::vector<u8> large(65u << 20, 0);
  const std::vector<u8> bomb = SealPacket(PacketChat, large.data(), large.size());
  EXPECT_LT(bomb.size(), 100000u);
  EXPECT_FALSE(OpenPacket(bomb.data(), bomb.size(), &type, &r, &store));
}

TEST(Wire, BlockEditsHaveTheirBytes) {
  Block b = CubeOf(0x0201, 0x0403, 5, 2);
  b.temp = 0x0605;
  for (u8 &t : b.tail) t = 0xee;
  const BlockEdit edit{.type = PacketBlockPlace, .shipRow = 3, .x = 0x102, .y = 0x304, .z = 0x506, .block = b, .component = 0x1122};
  const std::vector<u8> head = {3, 0, 0, 0, 2, 1, 4, 3, 6, 5};
  const struct { u8 type; std::vector<u8> tail; } cases[] = {
      {PacketBlockPlace, {0, 2 | 5 << 2 | 2 << 5, 0, 1, 2, 3, 4, 5, 6, 0xee, 0xee, 0xee, 0xee, 0xee, 0xee}},
      {PacketBlockRemove, {0}}, {PacketBlockComponent, {0x22, 0x11}}};
  for (const auto &c : cases) {
    BlockEdit sent = edit, got;
    sent.type = c.type;
    std::vector<u8> out, expected = head;
    WriteBlockEdit(&out, sent);
    expected.insert(expected.end(), c.tail.begin(), c.tail.end());
    EXPECT_EQ(out, expected);
    Reader r{out.data(), out.size()};
    ASSERT_TRUE(ReadBlockEdit(c.type, &r, &got));
    EXPECT_EQ(std::tie(got.shipRow, got.x, got.y, got.z), std::tie(edit.shipRow, edit.x, edit.y, edit.z));
    EXPECT_EQ(HeadOf(got.block), c.type == PacketBlockPlace ? HeadOf(b) : 0);
    for (size_t cut = 0; cut < out.size(); ++cut) {
      Reader shortened{out.data(), cut};
      EXPECT_FALSE(ReadBlockEdit(c.type, &shortened, &got)) << cut;
    }
  }
  const std::vector<u8> outside = {0, 0, 0, 0, 0x10, 0x27, 0, 0, 0, 0, 0};  // x is 10000
  Reader r{outside.data(), outside.size()};
  BlockEdit got;
  EXPECT_FALSE(ReadBlockEdit(PacketBlockRemove, &r, &got));
}

TEST(Wire, ReceivedEditsAreDoneOrRefused) {
  LoadTables();
  UseTemporaryInstallation();
  LogInit();
  Ship *ship = AppendShip(&TheShipTable);
  const i32 row = TheShipTable.count.load() - 1;
  const BlockEdit place{.type = PacketBlockPlace, .shipRow = row, .x = 10, .y = 20, .z = 30, .block = CubeOf(5, 2)};
  EXPECT_TRUE(ApplyBlockEdit(place));
  EXPECT_EQ(HeadComponent(HeadAt(10, 20, 30, *ship)), 2);
  BlockEdit change = place;
  change.type = PacketBlockComponent;
  change.component = 60000;  // no such row
  EXPECT_TRUE(ApplyBlockEdit(change));
  EXPECT_EQ(HeadComponent(HeadAt(10, 20, 30, *ship)), FindComponent(6));
  BlockEdit strange = place;
  strange.x = 11;
  strange.block = CubeOf(9999, 0);
  EXPECT_TRUE(ApplyBlockEdit(strange));
  EXPECT_EQ(HeadMaterial(HeadAt(11, 20, 30, *ship)), FindMaterial(110));
  BlockEdit remove = place;
  remove.type = PacketBlockRemove;
  EXPECT_TRUE(ApplyBlockEdit(remove));
  EXPECT_FALSE(BlockExists(10, 20, 30, *ship));
  for (const i32 wrong : {-1, row + 1, INT32_MAX, INT32_MIN}) {
    BlockEdit edit = place;
    edit.shipRow = wrong;
    EXPECT_FALSE(ApplyBlockEdit(edit));
  }
  EXPECT_EQ(Count(ReadText("errors.txt"), "*ERR: Non-existant ship specified."), 4);
  const std::vector<u8> tooShort(24, 0);
  EXPECT_FALSE(ApplyBlockPlace({tooShort.data(), tooShort.size()}));
}

TEST(Wire, NamesOfFilesStayInTheirFolder) {
  for (const char *good : {"Default", "My ship-2_(old).x", "a"}) EXPECT_TRUE(SafeFileName(good)) << good;
  for (const std::string &bad : {std::string(), std::string(".hidden"), std::string("../x"), std::string("a/b"), std::string("a\\b"),
                                std::string("a\nb"), std::string("a\0b", 3), std::string("\xe4"), std::string(64, 'x')})
    EXPECT_FALSE(SafeFileName(bad)) << bad;
}

TEST(ServerOptions, KeysAreFoundByTheirLongestNameAndWrittenInOrder) {
  UseTemporaryInstallation();
  ServerOptions options;
  EXPECT_FALSE(ReadServerOptions(&options));
  WriteText("serveroptions", "IRCPort 1\nIRC 2\nIRCNick  Nick\r\nPort 99999\nPlayers 3\nNothing 1\n\nPortal 5\nIRCServer " +
                                 std::string(400, 'h') + "\nAddress any\nDataPort x");
  LogInit();
  ASSERT_TRUE(ReadServerOptions(&options));
  EXPECT_EQ(options.IRCPort, 1);
  EXPECT_EQ(options.IRC, 2);
  EXPECT_EQ(options.IRCNick, "Nick");
  EXPECT_EQ(options.Port, 18150);
  EXPECT_EQ(options.Players, 3);
  EXPECT_EQ(options.IRCServer.size(), 249u - 10);
  EXPECT_EQ(options.Address, "0.0.0.0");
  EXPECT_EQ(Count(ReadText("errors.txt"), "serveroptions:"), 3);  // lines 4, 8 and 11
  ASSERT_TRUE(WriteServerOptions(ServerOptions{}));
  EXPECT_EQ(ReadText("serveroptions"),
            "Address 0.0.0.0\nPort 18150\nRunDataServer 1\nDataAddress 0.0.0.0\nDataPort 18160\nMaxAsteroidSize 200\nPlayers 64\n"
            "IRC 0\nIRCServer localhost\nIRCPort 6667\nIRCNick UnknownTarnvaleServerBot\nIRCChannel #tarnvale\nIRCMumble 1\n");
  ServerOptions again{.Port = 1, .Players = 2};
  ASSERT_TRUE(ReadServerOptions(&again));
  EXPECT_EQ(again.Port, 18150);
  EXPECT_EQ(again.Players, 64);
}
