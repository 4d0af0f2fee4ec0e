// Small routines at their limits: strings, numbers, compression, random draws.
#include "core/utils.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "core/compress.h"
#include "core/random.h"

TEST(Utils, Utf8LengthCountsCodePointsAndGivesUpAt1024) {
  const struct { std::string text; int length; } cases[] = {
      {"", 0}, {"abc", 3}, {"gr\xc3\xbc\xc3\x9f", 4}, {std::string(1023, 'a'), 1023}, {std::string(1024, 'a'), -1},
      {std::string(5000, 'a'), -1}, {"\xc3\xbc" + std::string(5000, 'a'), 1023}};
  for (const auto &c : cases) EXPECT_EQ(Utf8Length(c.text.c_str()), c.length);
}

TEST(Utils, NumbersAtTheirEnds) {
  EXPECT_EQ(FastSqrt(16.0f), 4.0f);
  EXPECT_EQ(FastSqrt(2.0f), 1.5f);
  for (float f = 0.001f; f < 1e9f; f *= 1.37f) EXPECT_NEAR(FastSqrt(f) / std::sqrt(f), 1.0f, 0.0625f) << f;
  const float infinite = std::numeric_limits<float>::infinity();
  const struct { float f; int i; } cases[] = {{1.9f, 1}, {-1.9f, -1}, {3e9f, 2147483647}, {-3e9f, -2147483647 - 1},
      {infinite, 2147483647}, {-infinite, -2147483647 - 1}, {std::nanf(""), 0}};
  for (const auto &c : cases) EXPECT_EQ(FloatToInt(c.f), c.i) << c.f;
}

TEST(Random, TheSameSeedDrawsTheSameNumbers) {
  RandomState a, b;
  SeedGeneratorWith(&a, 7);
  SeedGeneratorWith(&b, 7);
  double sum = 0;
  for (int i = 0; i < 10000; ++i) {
    const double draw = NextRandom(&a);
    ASSERT_TRUE(draw > 0 && draw < 1);
    ASSERT_EQ(draw, NextRandom(&b));
    sum += draw;
  }
  EXPECT_NEAR(sum / 10000, 0.5, 0.02);
}

// A malloc'ed buffer as the compression takes it.
struct Buffer {
  u8 *bytes;
  u32 size;
};

static Buffer BufferOf(const std::string &text) {
  Buffer b{static_cast<u8 *>(std::malloc(text.size() + 1)), static_cast<u32>(text.size())};
  std::copy(text.begin(), text.end(), b.bytes);
  return b;
}

static std::string TextOf(const Buffer &b) { return std::string(reinterpret_cast<char *>(b.bytes), b.size); }

TEST(Compress, GivesBackWhatItTook) {
  std::string noise;
  RandomState random;
  SeedGeneratorWith(&random, 1);
  for (int i = 0; i < 9000; ++i) noise += static_cast<char>(NextRandom(&random) * 256);
  for (const std::string &text : {std::string(), std::string("a"), std::string(1 << 20, 'z'), noise}) {
    Buffer b = BufferOf(text);
    ASSERT_TRUE(Compress(&b.bytes, &b.size, true));
    ASSERT_TRUE(Decompress(&b.bytes, &b.size, true));
    EXPECT_TRUE(TextOf(b) == text);
    std::free(b.bytes);
  }
}

// Whether the buffer unpacks; one that doesn't has to stay as it was.
static bool Unpacks(const std::string &packed) {
  Buffer b = BufferOf(packed);
  const bool good = Decompress(&b.bytes, &b.size, true);
  EXPECT_TRUE(good || TextOf(b) == packed);
  std::free(b.bytes);
  return good;
}

TEST(Compress, RefusesWhatIsBrokenCutOrTooLarge) {
  Buffer b = BufferOf("some text, some text, some more text");
  ASSERT_TRUE(Compress(&b.bytes, &b.size, true));
  const std::string packed = TextOf(b);
  std::free(b.bytes);
  EXPECT_TRUE(Unpacks(packed));
  for (size_t length = 0; length < packed.size(); ++length) EXPECT_FALSE(Unpacks(packed.substr(0, length))) << length;
  EXPECT_FALSE(Unpacks("neither packed nor anything else"));
  for (const size_t extra : {size_t{0}, size_t{1}}) {
    Buffer large = BufferOf(std::string((64 << 20) + extra, '\0'));
    ASSERT_TRUE(Compress(&large.bytes, &large.size, true));
    EXPECT_EQ(Unpacks(TextOf(large)), extra == 0);
    std::free(large.bytes);
  }
}
