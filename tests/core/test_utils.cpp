// Small routines at their limits: strings, numbers, memory, compression.
#include "core/utils.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "core/compress.h"
#include "core/random.h"

TEST(Utils, StringsNumbersAndMemoryAtTheirEnds) {
  const struct { std::string text; int length; } texts[] = {
      {"", 0}, {"gr\xc3\xbc\xc3\x9f", 4}, {std::string(1023, 'a'), 1023}, {std::string(1024, 'a'), -1},
      {"\xc3\xbc" + std::string(5000, 'a'), 1023}};
  for (const auto &t : texts) EXPECT_EQ(Utf8Length(t.text.c_str()), t.length);
  for (float f = 0.001f; f < 1e9f; f *= 1.37f) EXPECT_NEAR(FastSqrt(f) / std::sqrt(f), 1.0f, 0.0625f) << f;
  const float infinite = std::numeric_limits<float>::infinity();
  const struct { float f; int i; } numbers[] = {{1.9f, 1}, {-1.9f, -1}, {3e9f, 2147483647}, {-3e9f, -2147483647 - 1},
      {infinite, 2147483647}, {-infinite, -2147483647 - 1}, {std::nanf(""), 0}};
  for (const auto &n : numbers) EXPECT_EQ(FloatToInt(n.f), n.i) << n.f;
  std::vector<u64> kept{7};
  EXPECT_TRUE(TryReserve(&kept, 100));
  EXPECT_FALSE(TryReserve(&kept, SIZE_MAX));
  EXPECT_TRUE(kept.capacity() == 100 && kept == std::vector<u64>{7});
}

TEST(Utils, TheFrontOfATextEndsBetweenLetters) {
  const std::string mixed = "a\xc3\xbc\xe2\x82\xac\xf0\x9f\x9a\x80z";  // letters of 1, 2, 3, 4 and 1 bytes
  const size_t ends[] = {0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11};
  for (size_t most = 0; most < std::size(ends); ++most) EXPECT_EQ(FrontOf(mixed, most).size(), ends[most]) << most;
  const struct { const char *text; size_t most, length; } odd[] = {  // what is no UTF-8 is cut where it falls
      {"gr\xfc\xdf", 3, 3}, {"\x80\x80\x80\x80\x80\x80", 5, 5}, {"\xc3", 1, 1}, {"a\xc3z", 2, 2}};
  for (const auto &o : odd) EXPECT_EQ(FrontOf(o.text, o.most).size(), o.length) << o.text;
}

// Packs or unpacks a text through the malloc'ed buffer that the compression takes; one that fails has to leave it as it was.
static bool Through(bool (*work)(u8 **, u32 *, bool), std::string *text) {
  u8 *bytes = static_cast<u8 *>(std::malloc(text->size() + 1));
  u32 size = static_cast<u32>(text->size());
  std::copy(text->begin(), text->end(), bytes);
  const bool good = work(&bytes, &size, true);
  const std::string result(reinterpret_cast<char *>(bytes), size);
  EXPECT_TRUE(good || result == *text);
  std::free(bytes);
  *text = result;
  return good;
}
static bool Unpack(u8 **bytes, u32 *size, bool freeOld) { return Decompress(bytes, size, freeOld); }
static bool Unpacks(std::string packed) { return Through(Unpack, &packed); }

TEST(Compress, GivesBackWhatItTookAndRefusesWhatIsBrokenCutOrTooLarge) {
  std::string noise;
  RandomState random;
  SeedGeneratorWith(&random, 1);
  for (int i = 0; i < 9000; ++i) noise += static_cast<char>(NextRandom(&random) * 256);
  for (const std::string &text : {std::string(), std::string("a"), std::string(1 << 20, 'z'), noise}) {
    std::string turned = text;
    ASSERT_TRUE(Through(Compress, &turned) && Through(Unpack, &turned));
    EXPECT_TRUE(turned == text);
  }
  std::string packed = "some text, some text, some more text";
  ASSERT_TRUE(Through(Compress, &packed) && Unpacks(packed));
  for (size_t length = 0; length < packed.size(); ++length) EXPECT_FALSE(Unpacks(packed.substr(0, length))) << length;
  EXPECT_FALSE(Unpacks("neither packed nor anything else"));
  for (const size_t extra : {size_t{0}, size_t{1}}) {
    std::string large((64 << 20) + extra, '\0');
    ASSERT_TRUE(Through(Compress, &large));
    EXPECT_EQ(Unpacks(large), extra == 0);
  }
  std::string times(80 << 20, '\0');  // over 64 MiB, from a little over or under an eighth of it
  u64 next = 1;
  for (size_t i = 0; i < times.size() / 8 + (1 << 20); ++i) times[i] = static_cast<char>((next = next * 6364136223846793005 + 1) >> 56);
  for (const bool small : {false, true}) {
    std::string turned = small ? std::string(2 << 20, '\0') + times.substr(2 << 20) : times;
    ASSERT_TRUE(Through(Compress, &turned));
    EXPECT_EQ(turned.size() * 8 < times.size(), small) << turned.size();
    EXPECT_EQ(Unpacks(turned), !small);
    u8 *bytes = reinterpret_cast<u8 *>(turned.data());
    u32 size = static_cast<u32>(turned.size());
    EXPECT_FALSE(Decompress(&bytes, &size, false, 1 << 20)) << "a caller's own limit holds";
  }
}
