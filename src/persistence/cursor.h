// The bounded reader and the growing writer that every binary form of the game goes through. Little-endian.
#pragma once

#include <cstring>
#include <vector>

#include "core/types.h"

struct Reader {
  const u8 *bytes = nullptr;
  size_t left = 0;
  bool failed = false;  // something was asked for behind the end; every later read gives 0
};

inline const u8 *TakeBytes(Reader *r, size_t count) {  // Null when fewer are left.
  if (r->failed || count > r->left) {
    r->failed = true;
    return nullptr;
  }
  const u8 *at = r->bytes;
  r->bytes += count;
  r->left -= count;
  return at;
}
inline u8 TakeU8(Reader *r) {
  const u8 *p = TakeBytes(r, 1);
  return p == nullptr ? u8{0} : *p;
}
inline u16 TakeU16(Reader *r) {
  const u8 *p = TakeBytes(r, 2);
  return p == nullptr ? u16{0} : static_cast<u16>(p[0] | p[1] << 8);
}
inline u32 TakeU32(Reader *r) {
  const u32 low = TakeU16(r);
  return low | static_cast<u32>(TakeU16(r)) << 16;
}
inline u64 TakeU64(Reader *r) {
  const u64 low = TakeU32(r);
  return low | static_cast<u64>(TakeU32(r)) << 32;
}

inline void PutU8(std::vector<u8> *out, u8 v) { out->push_back(v); }
inline void PutU16(std::vector<u8> *out, u16 v) {
  out->push_back(static_cast<u8>(v));
  out->push_back(static_cast<u8>(v >> 8));
}
inline void PutU32(std::vector<u8> *out, u32 v) {
  PutU16(out, static_cast<u16>(v));
  PutU16(out, static_cast<u16>(v >> 16));
}
inline void PutU64(std::vector<u8> *out, u64 v) {
  PutU32(out, static_cast<u32>(v));
  PutU32(out, static_cast<u32>(v >> 32));
}
inline void PutBytes(std::vector<u8> *out, const void *bytes, size_t count) {
  const u8 *p = static_cast<const u8 *>(bytes);
  out->insert(out->end(), p, p + count);
}
