// Small letters for the sheets: capitals, digits and signs of 5 x 7 points.
#pragma once

#include <string>

#include "paint.h"

constexpr int LetterWidth = 6, LetterHeight = 8;  // with the gap to the next one

struct Ink {
  u8 red, green, blue;
};

// Writes one line with its upper left corner at (x, y), each point `size` pixels wide. Small letters become capitals.
void Write(Canvas *canvas, int x, int y, int size, Ink ink, const std::string &text);
