// Pictures in memory, and PNG files.
#include "picture.h"

#include "output.h"

#include <cstdio>
#include <png.h>

static void AppendBytes(png_structp png, png_bytep data, png_size_t size) {
  static_cast<std::string *>(png_get_io_ptr(png))->append(reinterpret_cast<const char *>(data), size);
}

static void FlushNothing(png_structp) {}

namespace {

// What the two kinds of picture have in common.
struct Rows {
  int width;
  int height;
  const uint8_t *pixels;
  int channels;  // 3, or 4 with opacity
};

}  // namespace

// False when the library gives up half-way.
static bool Encode(png_structp png, png_infop info, const Rows &rows, std::string *bytes) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_set_write_fn(png, bytes, AppendBytes, FlushNothing);
  png_set_IHDR(png, info, static_cast<png_uint_32>(rows.width), static_cast<png_uint_32>(rows.height), 8,
               rows.channels == 4 ? PNG_COLOR_TYPE_RGBA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_compression_level(png, 9);
  png_write_info(png, info);
  const size_t stride = static_cast<size_t>(rows.width) * static_cast<size_t>(rows.channels);
  for (int y = 0; y < rows.height; y++) png_write_row(png, rows.pixels + static_cast<size_t>(y) * stride);
  png_write_end(png, info);
  return true;
}

static bool WriteRows(const Rows &rows, const std::string &path) {
  std::string bytes;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
  const bool done = info != nullptr && Encode(png, info, rows, &bytes);
  png_destroy_write_struct(&png, &info);
  if (!done) {
    std::fprintf(stderr, "%s: can't be made into a picture\n", path.c_str());
    return false;
  }
  return WriteIfChanged(path, bytes);
}

bool WritePicture(const Picture &picture, const std::string &path) {
  return WriteRows({picture.width, picture.height, picture.pixels.data(), 3}, path);
}

bool WriteRgbaPicture(const RgbaPicture &picture, const std::string &path) {
  return WriteRows({picture.width, picture.height, picture.pixels.data(), 4}, path);
}

static int BigEndian(const std::string &bytes, size_t at) {
  uint32_t value = 0;
  for (size_t i = 0; i < 4; i++) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
  return value > 65535 ? 65535 : static_cast<int>(value);
}

bool ReadPictureForm(const std::string &path, PictureForm *form) {
  std::string bytes;
  if (!ReadWhole(path, &bytes) || bytes.size() < 26) return false;
  if (bytes.compare(0, 8, "\x89PNG\r\n\x1a\n") != 0 || bytes.compare(12, 4, "IHDR") != 0) return false;
  const int colours = static_cast<uint8_t>(bytes[25]);
  *form = {BigEndian(bytes, 16), BigEndian(bytes, 20), static_cast<uint8_t>(bytes[24]),
           colours == PNG_COLOR_TYPE_RGBA ? 4 : colours == PNG_COLOR_TYPE_RGB ? 3 : 0};
  return true;
}

bool PictureDecodes(const std::string &path) {
  std::string bytes;
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  if (!ReadWhole(path, &bytes) || png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()) == 0) return false;
  image.format = PNG_FORMAT_RGBA;
  std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
  return png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) != 0;
}
