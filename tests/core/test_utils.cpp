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
}
