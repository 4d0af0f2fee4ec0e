// Gzip streams on zlib's own calls: its file functions hide what was decoded just before a fault.
#include "persistence/gzip_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <new>

constexpr int GzipWindow = 15 + 16;  // the largest window, in gzip's wrapping
constexpr int DefaultMemory = 8;

// Reads on behind what is left of the input.
static void FillInput(GzipReader *g) {
  u8 *input = g->input.get();
  if (g->z.avail_in > 0) std::memmove(input, g->z.next_in, g->z.avail_in);
  g->z.next_in = input;
  g->z.avail_in += static_cast<uInt>(std::fread(input + g->z.avail_in, 1, GzipBufferBytes - g->z.avail_in, g->file));
}

static bool AtMagic(GzipReader *g) {
  if (g->z.avail_in < 2) FillInput(g);
  return g->z.avail_in >= 2 && g->z.next_in[0] == 0x1f && g->z.next_in[1] == 0x8b;
}

// A gzip file may be several, one behind the other.
static void BeginNextMember(GzipReader *g) {
  if (AtMagic(g) && inflateReset(&g->z) == Z_OK) return;
  g->ended = true;
  g->damaged = g->z.avail_in > 0 || std::ferror(g->file) != 0;
}

// Plain files only: the opening of a pipe would wait for one who writes into it.
static bool OpenInput(GzipReader *g, const char *path, bool *opened) {
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  *opened = descriptor >= 0;
  struct stat info;
  if (*opened && fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode)) g->file = fdopen(descriptor, "rb");
  if (g->file == nullptr) {
    if (*opened) close(descriptor);
    return false;
  }
  g->input = std::make_unique_for_overwrite<u8[]>(GzipBufferBytes);  // a small file touches little of it
  return true;
}

bool OpenGzip(GzipReader *g, const char *path, bool *opened) {
  if (!OpenInput(g, path, opened)) return false;
  if (AtMagic(g) && inflateInit2(&g->z, GzipWindow) == Z_OK) return true;
  std::fclose(g->file);
  return false;
}

bool OpenGzipOrPlain(GzipReader *g, const char *path) {
  bool opened;
  if (!OpenInput(g, path, &opened)) return false;
  g->plain = !AtMagic(g);
  if (g->plain || inflateInit2(&g->z, GzipWindow) == Z_OK) return true;
  std::fclose(g->file);
  return false;
}

static size_t ReadPlain(GzipReader *g, u8 *out, size_t room) {
  if (g->z.avail_in == 0) FillInput(g);
  g->ended = g->z.avail_in == 0;
  g->damaged = std::ferror(g->file) != 0;
  const size_t count = std::min<size_t>(g->z.avail_in, room);
  std::memcpy(out, g->z.next_in, count);
  g->z.next_in += count;
  g->z.avail_in -= static_cast<uInt>(count);
  return count;
}

size_t ReadGzip(GzipReader *g, u8 *out, size_t room) {
  if (g->plain) return ReadPlain(g, out, room);
  g->z.next_out = out;
  g->z.avail_out = static_cast<uInt>(room);
  while (!g->ended && g->z.avail_out > 0) {
    if (g->z.avail_in == 0) FillInput(g);
    const bool starved = g->z.avail_in == 0;
    const int code = inflate(&g->z, Z_NO_FLUSH);
    if (code == Z_STREAM_END) BeginNextMember(g);
    else if (starved || code != Z_OK) g->ended = g->damaged = true;
  }
  return room - g->z.avail_out;
}

void CloseGzip(GzipReader *g) {
  if (!g->plain) inflateEnd(&g->z);
  std::fclose(g->file);
}

// Runs the compressor until it has taken its input (or, at the end, given all its output). The buffer has GzipBufferBytes.
static bool WriteDeflated(z_stream *z, int flush, u8 *buffer, FileReplacement *file) {
  int code = Z_OK;
  do {
    z->next_out = buffer;
    z->avail_out = static_cast<uInt>(GzipBufferBytes);
    code = deflate(z, flush);
    if (!WriteReplacement(file, buffer, GzipBufferBytes - z->avail_out)) return false;
  } while (z->avail_out == 0);
  return flush != Z_FINISH || code == Z_STREAM_END;
}

bool WriteGzip(FileReplacement *file, const std::vector<u8> &bytes) {
  z_stream z{};
  if (deflateInit2(&z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, GzipWindow, DefaultMemory, Z_DEFAULT_STRATEGY) != Z_OK) return false;
  const std::unique_ptr<u8[]> buffer(new (std::nothrow) u8[GzipBufferBytes]);  // a small file touches little of it
  bool good = buffer != nullptr;
  for (size_t done = 0, piece; good && done < bytes.size(); done += piece) {
    piece = std::min(bytes.size() - done, GzipBufferBytes);
    z.next_in = const_cast<Bytef *>(bytes.data() + done);
    z.avail_in = static_cast<uInt>(piece);
    good = WriteDeflated(&z, Z_NO_FLUSH, buffer.get(), file);
  }
  good = good && WriteDeflated(&z, Z_FINISH, buffer.get(), file);
  deflateEnd(&z);
  return good;
}
