// Whole buffers through zlib, for packets. Buffers are malloc'ed; *buffer and *size are replaced only on success.
#pragma once

#include "core/types.h"

bool Compress(u8 **buffer, u32 *size, bool freeOld);
constexpr u32 DecompressedLimit = 0x4000000;  // 64 MiB: what no packet has any business to pass
bool Decompress(u8 **buffer, u32 *size, bool freeOld, u32 limit = DecompressedLimit);  // False too when the content passes limit.
