// A radix sort of 11 bits a pass: three passes cover the 31 bits of a float without its sign.
#include "render/sort.h"

#include <algorithm>
#include <utility>

constexpr unsigned DigitBits = 11, Digits = 1u << DigitBits, Passes = 3;
constexpr size_t FewKeys = 256;  // below this the digit tables cost more than they save

static unsigned DigitOf(u64 key, unsigned pass) {
  return static_cast<unsigned>(key >> (32 + pass * DigitBits)) & (Digits - 1);
}

void SortKeys(std::vector<u64> *keys, std::vector<u64> *spare) {
  if (keys->size() < FewKeys) return std::sort(keys->begin(), keys->end());  // an index grows with its place
  u32 counts[Passes][Digits] = {};
  for (const u64 key : *keys)
    for (unsigned pass = 0; pass < Passes; ++pass) ++counts[pass][DigitOf(key, pass)];
  spare->resize(keys->size());
  for (unsigned pass = 0; pass < Passes; ++pass) {
    u32 *const count = counts[pass];
    if (count[DigitOf(keys->front(), pass)] == keys->size()) continue;  // all alike in this digit
    u32 start = 0;
    for (unsigned d = 0; d < Digits; ++d) start += std::exchange(count[d], start);
    for (const u64 key : *keys) (*spare)[count[DigitOf(key, pass)]++] = key;
    keys->swap(*spare);
  }
}
