// Painting of the instruments: masks drawn as outlines, and worn metal, enamel, glass and light laid through them.
// A picture is built from below: a shadow, a plate on it, what is sunk into the plate, what stands on it, and light.
#pragma once

#include "picture.h"

#include <cairo.h>
#include <cstdint>
#include <initializer_list>
#include <vector>

struct Hue {
  float red = 0.0f;  // 0 to 1 each
  float green = 0.0f;
  float blue = 0.0f;
};

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

// What a plate is made of.
struct Finish {
  Hue paint;            // the coat
  Hue bare;             // the metal where the coat is gone
  float bevel = 4.0f;    // pixels from the edge to the flat
  float relief = 1.0f;   // how strongly the edge takes light and shade
  float grain = 0.1f;    // marks of the brush
  float wear = 0.3f;     // how far the coat has come off the edges
  float grime = 0.2f;    // dirt
  bool upright = false;  // brushed from top to bottom
  bool flakes = true;    // the coat is gone in spots on the flat as well
};

Canvas NewCanvas(int width, int height);

// The finished picture in 8 bits. Clear pixels beside painted ones take their colour, so that smaller versions
// of the picture get no dark seams.
RgbaPicture Finished(const Canvas &canvas);

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
double LettersWidth(const char *text, double height);

// The same in one call.
Mask RoundMask(const Canvas &canvas, double x, double y, double width, double height, double radius);
Mask ChamferMask(const Canvas &canvas, double x, double y, double width, double height, double cut);
Mask PolyMask(const Canvas &canvas, std::initializer_list<Spot> spots);
Mask CircleMask(const Canvas &canvas, double x, double y, double radius);
Mask RingMask(const Canvas &canvas, double x, double y, double radius, double thickness);
Mask LineMask(const Canvas &canvas, std::initializer_list<Spot> spots, double thickness);
Mask LetterMask(const Canvas &canvas, const char *text, double x, double y, double height, double thickness);

Mask Blurred(const Mask &mask, int radius);
Mask Both(const Mask &a, const Mask &b);
Mask Without(const Mask &a, const Mask &b);
Mask Either(const Mask &a, const Mask &b);

Hue Mixed(const Hue &a, const Hue &b, float part);
Hue Scaled(const Hue &tint, float factor);

// Plain colour through the mask.
void Fill(Canvas *canvas, const Mask &mask, const Hue &tint, float opacity);
// Colour that runs from one tint at the top row given to another at the bottom row.
void FillDown(Canvas *canvas, const Mask &mask, const Hue &top, const Hue &bottom, double from, double to);
void Shadow(Canvas *canvas, const Mask &mask, int right, int down, int blur, float strength);
void Plate(Canvas *canvas, const Mask &mask, const Finish &finish, uint32_t seed);
// A hollow in what is there: shade under its upper edge, a bright lip below it.
void Sink(Canvas *canvas, const Mask &mask, int depth, float strength);
// A fine groove: dark, with light on its lower side.
void Engrave(Canvas *canvas, const Mask &mask, float strength);
// A coat of paint on what is there, chipped where noise says so.
void Coat(Canvas *canvas, const Mask &mask, const Hue &tint, float wear, uint32_t seed);
// Light around and on the mask.
void Glow(Canvas *canvas, const Mask &mask, const Hue &tint, int radius, float strength);
// Takes away what is there.
void Cut(Canvas *canvas, const Mask &mask);
// Fine scratches in what lies under the mask.
void Scratch(Canvas *canvas, const Mask &mask, int count, uint32_t seed);
// Rivet heads.
void Rivets(Canvas *canvas, std::initializer_list<Spot> spots, double radius, const Hue &tint, uint32_t seed);
// A dome of coloured glass in a metal ring; `lit` 0 to 1.
void Lamp(Canvas *canvas, double x, double y, double radius, const Hue &tint, float lit, uint32_t seed);
