// Outlines of what is painted: masks that say how much of each pixel is covered.
#pragma once

#include <cairo.h>
#include <cstddef>
#include <initializer_list>
#include <vector>

// A picture in the making. Colours are multiplied by the opacity.
struct Canvas {
  int width = 0;
  int height = 0;
  std::vector<float> pixels;  // red, green, blue, opacity, row after row from the top
};

// How much of each pixel an outline covers, 0 to 1.
struct Mask {
  int width = 0;
  int height = 0;
  std::vector<float> cover;
};

struct Spot {
  double x = 0.0;
  double y = 0.0;
};

// The place of a pixel among the rows of that width; with x = 0, the number of pixels above row y as well.
inline size_t PixelIndex(int width, int x, int y) {
  return static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x);
}

// An outline is drawn between the two: anything that the drawing library puts on the surface, by its opacity.
cairo_t *BeginMask(int width, int height);
Mask EndMask(cairo_t *drawing);

// Outlines, added to the current path.
void RoundPath(cairo_t *drawing, double x, double y, double width, double height, double radius);
void ChamferPath(cairo_t *drawing, double x, double y, double width, double height, double cut);
void PolyPath(cairo_t *drawing, std::initializer_list<Spot> spots);
void CirclePath(cairo_t *drawing, double x, double y, double radius);
// Capital letters and digits as lines to be stroked; `height` is a capital's, (x, y) its upper left corner.
void LetterPath(cairo_t *drawing, const char *text, double x, double y, double height);

// The same in one call.
Mask RoundMask(const Canvas &canvas, double x, double y, double width, double height, double radius);
Mask ChamferMask(const Canvas &canvas, double x, double y, double width, double height, double cut);
Mask PolyMask(const Canvas &canvas, std::initializer_list<Spot> spots);
Mask CircleMask(const Canvas &canvas, double x, double y, double radius);
Mask LineMask(const Canvas &canvas, std::initializer_list<Spot> spots, double thickness);
Mask LetterMask(const Canvas &canvas, const char *text, double x, double y, double height, double thickness);

Mask Blurred(const Mask &mask, int radius);
Mask Both(const Mask &a, const Mask &b);
Mask Without(const Mask &a, const Mask &b);
Mask Either(const Mask &a, const Mask &b);
