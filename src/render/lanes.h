// Four values at once, in the compiler's own vector form, so that no processor has to be named. Every operation here gives
// each lane exactly what the same scalar operation gives: a voxel's colour does not depend on the way it was worked out.
#pragma once

#include <bit>
#include <cstring>

#include "core/types.h"

using Float4 = float __attribute__((vector_size(16)));
using Int4 = i32 __attribute__((vector_size(16)));
using Uint4 = u32 __attribute__((vector_size(16)));
using Short8 = u16 __attribute__((vector_size(16)));
using Byte16 = u8 __attribute__((vector_size(16)));

inline Float4 Splat(float f) { return Float4{f, f, f, f}; }
inline Uint4 Splat(u32 u) { return Uint4{u, u, u, u}; }

template <typename Lanes>
inline Lanes Load(const void *from) {
  Lanes lanes;
  std::memcpy(&lanes, from, sizeof lanes);
  return lanes;
}
template <typename Lanes>
inline void Store(void *to, Lanes lanes) {
  std::memcpy(to, &lanes, sizeof lanes);
}

// a where the mask is set, else b.
inline Float4 Choose(Int4 mask, Float4 a, Float4 b) {
  return std::bit_cast<Float4>((mask & std::bit_cast<Int4>(a)) | (~mask & std::bit_cast<Int4>(b)));
}
inline Float4 Larger(Float4 a, Float4 b) { return a > b ? a : b; }
inline Float4 Smaller(Float4 a, Float4 b) { return a < b ? a : b; }

// Lanes under 2^31 on both sides: these conversions never see the sign bit.
inline Float4 ToFloat(Uint4 a) { return __builtin_convertvector(std::bit_cast<Int4>(a), Float4); }
inline Uint4 CutToInt(Float4 a) { return std::bit_cast<Uint4>(__builtin_convertvector(a, Int4)); }

inline Float4 FastSqrt4(Float4 f) {
  return std::bit_cast<Float4>(((std::bit_cast<Int4>(f) - 0x800000) >> 1) + 0x20000000);
}

// HashToUnit in four lanes. The hash is turned into a float in two halves, which rounds once, as a whole conversion does.
inline Float4 HashToUnit4(Uint4 i) {
  Uint4 h = (i ^ 61u ^ (i >> 16)) * 9u;
  h = (h ^ (h >> 4)) * 0x27d4eb2du;
  h = h ^ (h >> 15);
  return (ToFloat(h >> 16) * Splat(65536.0f) + ToFloat(h & 0xffffu)) * Splat(2.3283064e-10f);
}
