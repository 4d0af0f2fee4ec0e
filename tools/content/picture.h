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

// What a PNG file says of itself.
struct PictureForm {
  int width = 0;
  int height = 0;
  int depth = 0;     // bits of a channel
  int channels = 0;  // 3, or 4 with opacity; 0 for grey and palettes
};

// Reads the head of a PNG file; false when it isn't one.
bool ReadPictureForm(const std::string &path, PictureForm *form);

// True when the whole picture can be decoded.
bool PictureDecodes(const std::string &path);
