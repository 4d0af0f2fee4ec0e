// Image files into a buffer of the caller's.
#include "render/image.h"

#include <png.h>
#include <string.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "core/log.h"

namespace {

// What a PNG read holds: outside of the reading function, so that its error jump clobbers nothing.
struct PngRead {
  FILE *file = nullptr;
  png_structp png = nullptr;
  png_infop info = nullptr;
  u8 *pixels = nullptr;   // the decoded picture, rows without a gap
  u8 **rows = nullptr;
  u32 width = 0, height = 0;
  size_t rowBytes = 0;
};

}  // namespace

static int WrongSize(const char *path, u32 width, u32 height, u32 wantedWidth, u32 wantedHeight) {
  const std::string text = std::string(path) + " is " + std::to_string(width) + " x " + std::to_string(height) +
                           " pixels. I need " + std::to_string(wantedWidth) + " x " + std::to_string(wantedHeight) + ".";
  return LogError(text.c_str());
}

// libpng's own handlers print; the game's log says what is to be said.
static void OnPngError(png_structp png, png_const_charp) { png_longjmp(png, 1); }
static void OnPngWarning(png_structp, png_const_charp) {}

static bool AllocRows(PngRead *r) {
  r->rowBytes = png_get_rowbytes(r->png, r->info);
  r->pixels = static_cast<u8 *>(calloc(r->height, r->rowBytes));
  r->rows = static_cast<u8 **>(calloc(r->height, sizeof(u8 *)));
  if (r->pixels == nullptr || r->rows == nullptr) return false;
  for (u32 y = 0; y < r->height; y++) r->rows[y] = r->pixels + y * r->rowBytes;
  return true;
}

// Everything that libpng may jump out of.
static int DecodePng(PngRead *r, const char *path, u32 width, u32 height) {
  if (setjmp(png_jmpbuf(r->png)) != 0) return LogError("PNG IO error");
  png_init_io(r->png, r->file);
  png_set_sig_bytes(r->png, 8);
  png_read_info(r->png, r->info);
  r->width = png_get_image_width(r->png, r->info);
  r->height = png_get_image_height(r->png, r->info);
  if (r->width != width || r->height != height) return WrongSize(path, r->width, r->height, width, height);
  if (png_get_bit_depth(r->png, r->info) == 16) return LogError("PNG with 16 bits a sample. I need 8 or fewer.");
  png_set_packing(r->png);
  png_set_expand(r->png);
  png_set_interlace_handling(r->png);
  png_read_update_info(r->png, r->info);
  if (!AllocRows(r)) return LogError("PNG IO error");
  png_read_image(r->png, r->rows);
  png_read_end(r->png, nullptr);
  return 1;
}

static void PutPixel(u8 *to, u8 red, u8 green, u8 blue, u8 alpha) {
  to[0] = red;
  to[1] = green;
  to[2] = blue;
  to[3] = alpha;
}

static void CopyPixels(const PngRead &r, u8 *to) {
  const int type = png_get_color_type(r.png, r.info);
  const size_t step = png_get_channels(r.png, r.info);
  const u8 *from = r.pixels;
  for (size_t left = static_cast<size_t>(r.width) * r.height; left > 0; left--, from += step, to += 4) {
    if (type == PNG_COLOR_TYPE_RGB) PutPixel(to, from[0], from[1], from[2], 255);
    else if (type == PNG_COLOR_TYPE_GRAY_ALPHA) PutPixel(to, from[0], from[0], from[0], from[1]);
    else if (type == PNG_COLOR_TYPE_GRAY) PutPixel(to, from[0], from[0], from[0], 255);
    else memcpy(to, from, 4);
  }
}

static int ReadPng(PngRead *r, u8 *buffer, const char *path, u32 width, u32 height) {
  u8 signature[8] = {};
  if (fread(signature, 1, 8, r->file) != 8 || png_sig_cmp(signature, 0, 8) != 0) return 0;
  r->png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, OnPngError, OnPngWarning);
  if (r->png == nullptr) return LogError("Cannot create png Read Struct. PNG Library error?");
  r->info = png_create_info_struct(r->png);
  if (r->info == nullptr) return LogError("Cannot create png Info Struct. PNG Library error?");
  if (DecodePng(r, path, width, height) == 0) return 0;
  CopyPixels(*r, buffer);
  return 1;
}

int LoadPng(u8 *buffer, const char *path, u32 width, u32 height) {
  PngRead read;
  read.file = fopen(path, "rb");
  if (read.file == nullptr) return LogError("Unable to open png file");
  const int result = ReadPng(&read, buffer, path, width, height);
  if (read.png != nullptr) png_destroy_read_struct(&read.png, &read.info, nullptr);
  free(read.rows);
  free(read.pixels);
  fclose(read.file);
  return result;
}

static int ReadTga(FILE *file, u8 *buffer, const char *path, u32 width, u32 height, u8 *bytesPerPixel) {
  u8 head[12], size[6];
  if (fread(head, 1, sizeof head, file) != sizeof head) return LogError("Unable to read tga header");
  if (fread(size, 1, sizeof size, file) != sizeof size) return LogError("Unable to read more of tga header");
  const u32 fileWidth = size[0] | static_cast<u32>(size[1]) << 8, fileHeight = size[2] | static_cast<u32>(size[3]) << 8;
  if (size[4] != 24 && size[4] != 32) return LogError("Wrong TGA bits per pixel. I need 24 or 32.");
  if (fileWidth != width || fileHeight != height) return WrongSize(path, fileWidth, fileHeight, width, height);
  const size_t step = size[4] / 8u, bytes = step * width * height;
  if (fread(buffer, 1, bytes, file) != bytes) return LogError("Cannot read in image data");
  for (size_t i = 0; i < bytes; i += step) {
    const u8 blue = buffer[i];
    buffer[i] = buffer[i + 2];
    buffer[i + 2] = blue;
  }
  *bytesPerPixel = static_cast<u8>(step);
  return 1;
}

int LoadTga(u8 *buffer, const char *path, u32 width, u32 height, u8 *bytesPerPixel) {
  FILE *file = fopen(path, "rb");
  if (file == nullptr) return LogError("Unable to open tga file");
  const int result = ReadTga(file, buffer, path, width, height, bytesPerPixel);
  fclose(file);
  return result;
}

bool WritePng(const char *path, const u8 *rgb, u32 width, u32 height) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = width;
  image.height = height;
  image.format = PNG_FORMAT_RGB;
  return png_image_write_to_file(&image, path, 0, rgb, 0, nullptr) != 0;
}
