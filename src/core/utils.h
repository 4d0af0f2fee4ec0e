// Small routines without state that everything shares: strings, hashing, the fast square root, memory.
#pragma once

#include <bit>
#include <exception>
#include <string_view>
#include <vector>

#include "core/types.h"

char *CopyString(const char *s);                   // A new malloc'ed copy that the caller frees; null without memory.
char *JoinStrings(const char *a, const char *b);   // A new malloc'ed string of a then b; the caller frees it.
void AppendChar(char *s, char c);                  // Appends c in place; the buffer must have room for it.
int Utf8Length(const char *s);                     // Code points among the first 1024 bytes; -1 at exactly 1024.
size_t CutAtLetter(const char *s, size_t most);    // The length of s, or where to cut it so that at most so many bytes and no part of a letter stay.
// Makes a text from outside fit for a log or a terminal, in place: every control character, of the second set too, and every
// byte that is no UTF-8 becomes "?". Line ends stay where lineEnds says so.
void ReplaceControls(char *s, bool lineEnds = false);
// The front of a text: at most so many bytes, and never a part of a letter in UTF-8.
std::string_view FrontOf(std::string_view text, size_t most);
int FloatToInt(float f);                           // Truncation; out of range values stop at the ends of int.
void *GrowClear(void *p, size_t newSize, size_t oldSize);  // realloc; clears the bytes behind oldSize. Null on failure.
char *GenerateName(int length, int spread);        // A malloc'ed pronounceable word of length +- spread letters.

// Makes room for count elements in all. False, with the vector as it was, when there is no memory for them.
template <typename T>
bool TryReserve(std::vector<T> *v, size_t count) {
  try {
    v->reserve(count);
  } catch (const std::exception &) {
    return false;
  }
  return true;
}

// A fixed value in 0 to 1 for an input: stands in for a random number where a look has to stay the same.
// The mixing steps are Thomas Wang's 32-bit integer hash.
inline float HashToUnit(u32 i) {
  u32 h = (i ^ 61u ^ (i >> 16)) * 9u;
  h = (h ^ (h >> 4)) * 0x27d4eb2du;
  h = h ^ (h >> 15);
  return static_cast<float>(h) * 2.3283064e-10f;
}

// A square root within about 6 percent: halves the exponent in the float's bits. f must not be negative.
inline float FastSqrt(float f) {
  const i32 b = std::bit_cast<i32>(f);
  return std::bit_cast<float>(((b - 0x800000) >> 1) + 0x20000000);
}
