// Pictures in memory, and PNG files.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct Picture {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> pixels;  // red, green, blue, row after row from the top
};

struct RgbaPicture {
  int width = 0;
  int height = 0;
  std::vector<uint8_t> pixels;  // red, green, blue, opacity, row after row from the top
};

// Write a PNG file. False, with a line on the error output, when it can't.
bool WritePicture(const Picture &picture, const std::string &path);
bool WriteRgbaPicture(const RgbaPicture &picture, const std::string &path);

// Reads the size that a PNG file says it has; false when it isn't one.
bool PictureSize(const std::string &path, int *width, int *height);
