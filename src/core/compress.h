// Whole buffers through zlib, for packets. Buffers are malloc'ed; *buffer and *size are replaced only on success.
#pragma once

#include "core/types.h"

bool Compress(u8 **buffer, u32 *size, bool freeOld);
// What content is refused for: over 64 MiB, and over eight times what it came packed in.
constexpr u32 DecompressedLimit = 0x4000000;
constexpr u32 DecompressedTimes = 8;
// limit: bytes of content, where the caller knows of less that can make sense. False when the content passes what it may be.
bool Decompress(u8 **buffer, u32 *size, bool freeOld, u32 limit = DecompressedLimit);
