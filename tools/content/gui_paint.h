// Painting of the instruments: worn metal, enamel, glass and light laid through masks.
// A picture is built from below: a shadow, a plate on it, what is sunk into the plate, what stands on it, and light.
#pragma once

#include "gui_mask.h"
#include "picture.h"

#include <cstdint>
#include <initializer_list>

struct Hue {
  float red = 0.0f;  // 0 to 1 each
  float green = 0.0f;
  float blue = 0.0f;
};

// What a plate is made of.
struct Finish {
  Hue paint;             // the coat
  Hue bare;              // the metal where the coat is gone
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
// Black that comes in from the edges of the mask, on clear ground too: what lies deeper than its frame.
void EdgeShade(Canvas *canvas, const Mask &mask, int depth, float strength);
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
