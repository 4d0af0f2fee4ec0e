// Whole buffers through zlib.
#include "core/compress.h"

#include <zlib.h>

#include <algorithm>
#include <cstdlib>

static constexpr uLong CompressSlack = 12;             // room beyond the input for data that doesn't get smaller

static void Replace(u8 **buffer, u32 *size, bool freeOld, u8 *made, uLong madeSize) {
  if (freeOld) std::free(*buffer);
  *buffer = made;
  *size = static_cast<u32>(madeSize);
}

bool Compress(u8 **buffer, u32 *size, bool freeOld) {
  uLongf madeSize = *size + CompressSlack;
  u8 *made = static_cast<u8 *>(std::malloc(madeSize));
  if (made == nullptr) return false;
  if (compress(made, &madeSize, *buffer, *size) != Z_OK || madeSize > UINT32_MAX) {
    std::free(made);
    return false;
  }
  Replace(buffer, size, freeOld, made, madeSize);
  return true;
}

// Only a caller without a limit of its own takes what is large because it came large.
static uLong MostContent(u32 size, u32 limit) {
  const uLong most = limit < DecompressedLimit ? limit : std::max<uLong>(limit, uLong{size} * DecompressedTimes);
  return std::min<uLong>(most, UINT32_MAX);
}

// Tries with room for twice the input and doubles it while the content doesn't fit; broken data fails at once.
bool Decompress(u8 **buffer, u32 *size, bool freeOld, u32 limit) {
  const uLong most = MostContent(*size, limit);
  uLong room = std::clamp<uLong>(uLong{*size} * 2, 1, most);
  for (;; room = std::min<uLong>(room * 2, most)) {
    u8 *made = static_cast<u8 *>(std::malloc(room));
    if (made == nullptr) return false;
    uLongf madeSize = room;
    const int result = uncompress(made, &madeSize, *buffer, *size);
    if (result == Z_OK) {
      u8 *shrunk = static_cast<u8 *>(std::realloc(made, std::max<uLong>(madeSize, 1)));
      Replace(buffer, size, freeOld, shrunk != nullptr ? shrunk : made, madeSize);
      return true;
    }
    std::free(made);
    if (result != Z_BUF_ERROR || room == most) return false;
  }
}
