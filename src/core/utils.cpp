// Small routines without state that everything shares.
#include "core/utils.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "core/log.h"
#include "core/random.h"

static constexpr int Utf8Limit = 1024;  // bytes that Utf8Length looks at
static constexpr int LongestName = 255;

char *CopyString(const char *s) { return JoinStrings(s, ""); }

char *JoinStrings(const char *a, const char *b) {
  const size_t first = std::strlen(a), second = std::strlen(b);
  char *joined = static_cast<char *>(std::malloc(first + second + 1));
  if (joined == nullptr) return nullptr;
  std::memcpy(joined, a, first);
  std::memcpy(joined + first, b, second + 1);
  return joined;
}

void AppendChar(char *s, char c) {
  const size_t end = std::strlen(s);
  s[end] = c;
  s[end + 1] = '\0';
}

int Utf8Length(const char *s) {
  int count = 0;
  for (int i = 0; i < Utf8Limit && s[i] != '\0'; ++i)
    if ((static_cast<u8>(s[i]) & 0xc0) != 0x80) ++count;
  return count == Utf8Limit ? -1 : count;
}

static bool IsRest(char c) { return (static_cast<u8>(c) & 0xc0) == 0x80; }

size_t CutAtLetter(const char *s, size_t most) {
  size_t length = strnlen(s, most + 1);
  if (length <= most) return length;
  while (length > most || (length > 0 && most - length < 3 && IsRest(s[length]))) --length;
  return IsRest(s[length]) ? most : length;  // bytes that are no letter
}

std::string_view FrontOf(std::string_view text, size_t most) {
  return text.size() <= most ? text : text.substr(0, CutAtLetter(text.data(), most));
}

// The bytes of the UTF-8 letter at s, 1 to 4; 0 where there is none. A longer form of a letter than it needs is none, nor is
// half a pair of 16-bit units.
static int LetterLength(const char *s) {
  const u8 first = static_cast<u8>(s[0]);
  if (first < 0x80) return 1;
  const int length = first >= 0xf0 ? 4 : first >= 0xe0 ? 3 : 2;
  if (first < 0xc2 || first > 0xf4) return 0;
  u32 code = first & (0x7fu >> length);
  for (int i = 1; i < length; ++i) {
    if (!IsRest(s[i])) return 0;
    code = code << 6 | (static_cast<u8>(s[i]) & 0x3fu);
  }
  const bool tooLong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
  return tooLong || (code >= 0xd800 && code < 0xe000) || code > 0x10ffff ? 0 : length;
}

void ReplaceControls(char *s, bool lineEnds) {
  char *out = s;
  while (*s != '\0') {
    const int length = LetterLength(s);
    const u8 first = static_cast<u8>(s[0]);
    const bool secondSet = first == 0xc2 && static_cast<u8>(s[1]) < 0xa0;
    const bool control = (first < 0x20 && !(lineEnds && first == '\n')) || first == 0x7f || (length == 2 && secondSet);
    const int taken = std::max(length, 1);
    if (length == 0 || control) *out++ = '?';
    else for (int i = 0; i < length; ++i) *out++ = s[i];
    s += taken;
  }
  *out = '\0';
}

int FloatToInt(float f) {
  if (std::isnan(f)) return 0;
  if (f >= 2147483648.0f) return std::numeric_limits<int>::max();
  if (f <= -2147483648.0f) return std::numeric_limits<int>::min();
  return static_cast<int>(f);
}

void *GrowClear(void *p, size_t newSize, size_t oldSize) {
  void *grown = std::realloc(p, newSize);
  if (grown != nullptr && newSize > oldSize) std::memset(static_cast<u8 *>(grown) + oldSize, 0, newSize - oldSize);
  return grown;
}

char *GenerateName(int length, int spread) {
  RandomState random;
  SeedGenerator(&random);
  double letters = length;
  if (spread > 0) letters = 2.0 * spread * (NextRandom(&random) + 0.1) + length - spread;
  const int count = static_cast<int>(std::clamp(letters, 0.0, static_cast<double>(LongestName)));
  char *name = static_cast<char *>(std::malloc(static_cast<size_t>(count) + 1));
  if (name == nullptr) return nullptr;
  for (int i = 0; i < count; ++i) {
    const double draw = NextRandom(&random);
    // The last two consonants, y and z, are never drawn.
    name[i] = i % 2 == 0 ? "bcdfghjklmnpqrstvwxyz"[static_cast<int>(draw * 19)] : "aeiou"[static_cast<int>(draw * 5)];
  }
  name[count] = '\0';
  name[0] = static_cast<char>(std::toupper(static_cast<u8>(name[0])));
  Print("Name: %s \n", name);
  return name;
}
