// Whole buffers through zlib, for packets. Buffers are malloc'ed; *buffer and *size are replaced only on success.
#pragma once

#include "core/types.h"

bool Compress(u8 **buffer, u32 *size, bool freeOld);
bool Decompress(u8 **buffer, u32 *size, bool freeOld);  // Gives up with false when the content passes 64 MiB.
