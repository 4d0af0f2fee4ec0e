// A gzip file as a source and as a target of bytes. Reading gives all that comes before a fault. Local to this folder.
#pragma once

#include <zlib.h>

#include <cstdio>
#include <memory>
#include <vector>

#include "platform/files.h"

constexpr size_t GzipBufferBytes = 1 << 20;

struct GzipReader {
  std::FILE *file = nullptr;
  z_stream z{};
  std::unique_ptr<u8[]> input;  // GzipBufferBytes
  bool plain = false;    // no gzip stream: the file's own bytes are its content
  bool ended = false;    // nothing more comes
  bool damaged = false;  // it ended before the stream did, or at bytes that are none of its
};

// False: no such file, or not a gzip file (*opened tells which). Nothing to close then.
bool OpenGzip(GzipReader *g, const char *path, bool *opened);
bool OpenGzipOrPlain(GzipReader *g, const char *path);  // A file of any kind. False: it can't be opened.
size_t ReadGzip(GzipReader *g, u8 *out, size_t room);  // Fills the room unless the content ends first; a plain file may also come in pieces.
void CloseGzip(GzipReader *g);

// Compresses the bytes into a replacement that has begun. False when they can't all be written.
bool WriteGzip(FileReplacement *file, const std::vector<u8> &bytes);
