// A PNG picture for a place of 16 x 16.
#include <zlib.h>

#include <vector>

#include "fuzz/fuzz.h"
#include "render/image.h"

void PrepareTarget() {}

constexpr size_t SignatureBytes = 8, ChunkAround = 12;  // of a chunk: length, name and checksum

static u32 BigEndian(const u8 *at) { return u32{at[0]} << 24 | u32{at[1]} << 16 | u32{at[2]} << 8 | at[3]; }

// Every chunk gets the checksum that it should have, or else hardly any changed picture came behind the first check.
static void MendChecksums(std::vector<u8> *file) {
  for (size_t at = SignatureBytes; file->size() - at >= ChunkAround;) {
    u8 *chunk = file->data() + at;
    const size_t length = BigEndian(chunk);
    if (length > file->size() - at - ChunkAround) return;
    const uLong sum = crc32(0, chunk + 4, static_cast<uInt>(length + 4));
    for (unsigned i = 0; i < 4; ++i) chunk[8 + length + i] = static_cast<u8>(sum >> (24 - 8 * i));
    at += ChunkAround + length;
  }
}

void FuzzOne(Bytes input) {
  static u8 buffer[16 * 16 * 4];
  std::vector<u8> file(input.begin(), input.end());
  if (file.size() > SignatureBytes) MendChecksums(&file);
  WriteInput("input.png", file);
  LoadPng(buffer, "input.png", 16, 16);
}
