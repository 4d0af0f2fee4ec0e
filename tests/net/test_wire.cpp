// The packets byte for byte, and what becomes of those that are not in order.
#include "net/wire.h"

#include <gtest/gtest.h>

#include "core/log.h"
#include "net/server_options.h"
#include "support/installation.h"

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

TEST(Wire, LongPayloadsAreCompressedAndWhatIsBrokenOrHugeDoesNotOpen) {
  u8 type = 0;
  Reader r;
  std::vector<u8> store;
  const auto opens = [&](const std::vector<u8> &packet) { return OpenPacket(packet.data(), packet.size(), &type, &r, &store); };
  for (const size_t size : {0u, 1u, 100u, 101u, 5000u}) {
    const std::vector<u8> payload(size, 'a'), packet = SealPacket(PacketChat, payload.data(), size);
    EXPECT_EQ(packet[0], size > 100 ? PacketChat + 0x80 : +PacketChat);
    ASSERT_TRUE(opens(packet));
    EXPECT_EQ(type, PacketChat);
    EXPECT_EQ(std::vector<u8>(r.bytes, r.bytes + r.left), payload);
  }
  EXPECT_FALSE(opens({}) || opens({PacketChat + 0x80, 1, 2, 3}));
  EXPECT_TRUE(opens({0x80, 7}) && type == 0x80) << "0x80 itself is no compressed packet";
  const std::vector<u8> large(65u << 20, 0), bomb = SealPacket(PacketChat, large.data(), large.size());
  EXPECT_LT(bomb.size(), 100000u);
  EXPECT_FALSE(opens(bomb));
}

TEST(Wire, ACompressedPacketUnpacksToNoMoreThanItsFormHolds) {
  const struct { u8 type; size_t most; } forms[] = {
      {PacketChat, 65538}, {PacketBlockPlace, 25}, {PacketBlockRemove, 11}, {PacketBlockComponent, 12}, {PacketShipLocation, 40},
      {PacketPlayerLocation, 36}, {PacketSetLocation, 36}, {PacketOtherPlayer, 38}, {PacketShipAdded, 4 + 65538 + 36}};
  u8 type = 0;
  Reader r;
  std::vector<u8> store;
  const auto opens = [&](u8 of, size_t size) {
    const std::vector<u8> payload(std::max<size_t>(size, CompressOver + 1), 0);
    std::vector<u8> packet = SealPacket(of, payload.data(), payload.size());
    if (size <= CompressOver) {
      std::vector<u8> content(size, 0);
      u8 *bytes = content.data();
      u32 count = static_cast<u32>(size);
      EXPECT_TRUE(Compress(&bytes, &count, false));
      packet.assign(1, static_cast<u8>(of + 0x80));
      packet.insert(packet.end(), bytes, bytes + count);
      std::free(bytes);
    }
    return OpenPacket(packet.data(), packet.size(), &type, &r, &store);
  };
  for (const auto &form : forms) {
    EXPECT_TRUE(opens(form.type, form.most) && r.left == form.most) << form.type;
    EXPECT_FALSE(opens(form.type, form.most + 1)) << form.type;
  }
  for (const u8 list : {PacketPlayerList, PacketShipList}) EXPECT_TRUE(opens(list, 60u << 20) && r.left == 60u << 20) << list;
  EXPECT_TRUE(opens(0x11, 60u << 20) && type == 0x11 && r.left == 0) << "an unknown type is named, and not unpacked";
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
  const std::vector<u8> outside = {0, 0, 0, 0, 0x10, 0x27, 0, 0, 0, 0, 0}, tooShort(24, 0);  // x is 10000
  Reader r{outside.data(), outside.size()};
  BlockEdit got;
  EXPECT_FALSE(ReadBlockEdit(PacketBlockRemove, &r, &got));
  EXPECT_FALSE(ApplyBlockPlace({tooShort.data(), tooShort.size()}));
}

TEST(ServerOptions, KeysAreFoundByTheirLongestNameAndWrittenInOrder) {
  UseTemporaryInstallation();
  ServerOptions options;
  EXPECT_FALSE(ReadServerOptions(&options));
  WriteText("serveroptions", "IRCPort 1\nIRC 2\nIRCNick  Nick\r\nPort 99999\nPlayers 3\nNothing 1\n\nPortal 5\nIRCServer " +
                                 std::string(400, 'h') + "\nAddress any\nDataPort x");
  LogInit();
  ASSERT_TRUE(ReadServerOptions(&options));
  EXPECT_TRUE(options.IRCPort == 1 && options.IRC == 2 && options.IRCNick == "Nick");
  EXPECT_TRUE(options.Port == 18150 && options.Players == 3 && options.Address == "0.0.0.0");
  EXPECT_EQ(options.IRCServer.size(), 249u - 10);
  EXPECT_EQ(Count(ReadText("errors.txt"), "serveroptions:"), 3);  // lines 4, 8 and 11
  ASSERT_TRUE(WriteServerOptions(ServerOptions{}));
  EXPECT_EQ(ReadText("serveroptions"),
            "Address 0.0.0.0\nPort 18150\nRunDataServer 1\nDataAddress 0.0.0.0\nDataPort 18160\nMaxAsteroidSize 200\nPlayers 64\n"
            "IRC 0\nIRCServer localhost\nIRCPort 6667\nIRCNick UnknownTarnvaleServerBot\nIRCChannel #tarnvale\nIRCMumble 1\n");
  WriteText("serveroptions", "\xef\xbb\xbfPlayers 0\nPort 0\nDataPort 0\nPort 18151\nMaxAsteroidSize 0\n");
  LogInit();
  ServerOptions zero;
  ASSERT_TRUE(ReadServerOptions(&zero) && zero.Players == 64 && zero.Port == 18151 && zero.DataPort == 18160 && zero.MaxAsteroidSize == 200);
  for (const char *fault : {"serveroptions:1: not a value of Players: 0", "serveroptions:2: not a value of Port: 0", "serveroptions:3:", "serveroptions:5:"})
    EXPECT_EQ(Count(ReadText("errors.txt"), fault), 1) << fault;
  EXPECT_EQ(OptionPlace("Port") + " " + OptionPlace("Players"), "serveroptions:4 serveroptions");
  ASSERT_TRUE(WriteServerOptions(ServerOptions{}));
  ServerOptions again{.Port = 1, .Players = 2};
  ASSERT_TRUE(ReadServerOptions(&again));
  EXPECT_TRUE(again.Port == 18150 && again.Players == 64);
}
