// Painting of the instruments.
#include "gui_paint.h"

#include "gui_palette.h"
#include "noise.h"

#include <algorithm>
#include <cmath>

constexpr float LightX = -0.55f;  // the way to the light, which stands above and to the left
constexpr float LightY = -0.83f;
constexpr int BleedSteps = 4;  // how far colour runs into clear pixels

static float Clamped(float value) {
  return std::clamp(value, 0.0f, 1.0f);
}

// 0 below `low`, 1 above `high`, and smooth between.
static float Step(float low, float high, float value) {
  const float t = Clamped((value - low) / (high - low));
  return t * t * (3.0f - 2.0f * t);
}

Canvas NewCanvas(int width, int height) {
  return {width, height, std::vector<float>(PixelIndex(width, 0, height) * 4, 0.0f)};
}

// The colour of the painted neighbours of a clear pixel; false for none.
static bool NeighbourColour(const RgbaPicture &picture, const std::vector<bool> &painted, int x, int y, uint8_t *rgb) {
  int sum[3] = {0, 0, 0};
  int found = 0;
  for (int v = std::max(0, y - 1); v <= std::min(picture.height - 1, y + 1); v++) {
    for (int u = std::max(0, x - 1); u <= std::min(picture.width - 1, x + 1); u++) {
      const size_t at = PixelIndex(picture.width, u, v);
      if (!painted[at]) continue;
      for (size_t i = 0; i < 3; i++) sum[i] += picture.pixels[at * 4 + i];
      found++;
    }
  }
  for (size_t i = 0; i < 3 && found > 0; i++) rgb[i] = static_cast<uint8_t>(sum[i] / found);
  return found > 0;
}

static void Bleed(RgbaPicture *picture) {
  std::vector<bool> painted(PixelIndex(picture->width, 0, picture->height));
  for (size_t at = 0; at < painted.size(); at++) painted[at] = picture->pixels[at * 4 + 3] > 0;
  for (int step = 0; step < BleedSteps; step++) {
    std::vector<bool> next = painted;
    for (int y = 0; y < picture->height; y++) {
      for (int x = 0; x < picture->width; x++) {
        const size_t at = PixelIndex(picture->width, x, y);
        if (!painted[at]) next[at] = NeighbourColour(*picture, painted, x, y, &picture->pixels[at * 4]);
      }
    }
    painted = next;
  }
}

RgbaPicture Finished(const Canvas &canvas) {
  RgbaPicture picture{canvas.width, canvas.height, std::vector<uint8_t>(canvas.pixels.size())};
  for (size_t at = 0; at < canvas.pixels.size(); at += 4) {
    const float opacity = Clamped(canvas.pixels[at + 3]);
    const int alpha = static_cast<int>(opacity * 255.0f + 0.5f);
    picture.pixels[at + 3] = static_cast<uint8_t>(alpha);
    if (alpha == 0) continue;
    for (size_t i = 0; i < 3; i++) {
      picture.pixels[at + i] = static_cast<uint8_t>(Clamped(canvas.pixels[at + i] / opacity) * 255.0f + 0.5f);
    }
  }
  Bleed(&picture);
  return picture;
}

Hue Mixed(const Hue &a, const Hue &b, float part) {
  return {a.red + (b.red - a.red) * part, a.green + (b.green - a.green) * part, a.blue + (b.blue - a.blue) * part};
}

Hue Scaled(const Hue &tint, float factor) {
  return {tint.red * factor, tint.green * factor, tint.blue * factor};
}

static void Over(float *pixel, const Hue &tint, float opacity) {
  pixel[0] += (tint.red - pixel[0]) * opacity;
  pixel[1] += (tint.green - pixel[1]) * opacity;
  pixel[2] += (tint.blue - pixel[2]) * opacity;
  pixel[3] += (1.0f - pixel[3]) * opacity;
}

// Lighter (above 0) or darker, leaving the opacity.
static void Shade(float *pixel, float amount) {
  for (int i = 0; i < 3; i++) {
    pixel[i] = amount < 0.0f ? pixel[i] * (1.0f + amount) : pixel[i] + (pixel[3] - pixel[i]) * amount;
  }
}

static float At(const Mask &mask, int x, int y) {
  if (x < 0 || y < 0 || x >= mask.width || y >= mask.height) return 0.0f;
  return mask.cover[PixelIndex(mask.width, x, y)];
}

void Fill(Canvas *canvas, const Mask &mask, const Hue &tint, float opacity) {
  for (size_t i = 0; i < mask.cover.size(); i++) Over(&canvas->pixels[i * 4], tint, mask.cover[i] * opacity);
}

void FillDown(Canvas *canvas, const Mask &mask, const Hue &top, const Hue &bottom, double from, double to) {
  for (size_t i = 0; i < mask.cover.size(); i++) {
    const double row = static_cast<double>(i / static_cast<size_t>(mask.width));
    const float part = Clamped(static_cast<float>((row - from) / (to - from)));
    Over(&canvas->pixels[i * 4], Mixed(top, bottom, part), mask.cover[i]);
  }
}

void Shadow(Canvas *canvas, const Mask &mask, int right, int down, int blur, float strength) {
  const Mask soft = Blurred(mask, blur);
  for (int y = 0; y < mask.height; y++) {
    for (int x = 0; x < mask.width; x++) {
      const float shade = At(soft, x - right, y - down) * strength;
      if (shade > 0.004f) Over(&canvas->pixels[PixelIndex(mask.width, x, y) * 4], {}, shade);
    }
  }
}

// Light and shade of the bevelled edge, from the slope of the softened mask.
static float Relief(const Mask &soft, int x, int y, const Finish &finish) {
  const int right = std::min(x + 1, soft.width - 1);
  const int low = std::min(y + 1, soft.height - 1);
  const float slopeX = At(soft, right, y) - At(soft, std::max(x - 1, 0), y);
  const float slopeY = At(soft, x, low) - At(soft, x, std::max(y - 1, 0));
  const float light = -(slopeX * LightX + slopeY * LightY) * finish.bevel * finish.relief * 0.5f;
  return std::min(light, 0.55f * finish.relief);
}

static float Brushed(float x, float y, bool upright, uint32_t seed) {
  if (upright) std::swap(x, y);
  const float broad = SmoothNoise(x / 170.0f, y / 3.1f, 0.0f, seed);
  const float fine = SmoothNoise(x / 60.0f, y / 1.1f, 0.0f, seed + 1);
  const float cloudy = SmoothNoise(x / 70.0f, y / 45.0f, 0.0f, seed + 2);
  return broad * 0.35f + fine * 0.4f + cloudy * 0.25f - 0.5f;
}

// How much of the coat is gone: at the edges, where `depth` is near 0, and in rare flakes on the flat.
static float Bareness(float x, float y, float depth, const Finish &finish, uint32_t seed) {
  const float wear = finish.wear;
  if (wear <= 0.0f) return 0.0f;
  const float patch = LayeredNoise(x / 23.0f, y / 23.0f, 0.0f, 4, seed + 3);
  const float edge = wear * (0.25f + 1.9f * Clamped(patch - 0.28f));
  const float worn = 1.0f - Step(edge * 0.75f, edge * 1.1f + 0.02f, depth);
  const float flake = finish.flakes ? Step(0.80f - 0.14f * wear, 0.83f - 0.14f * wear, patch) : 0.0f;
  return std::max(worn, flake * 0.85f);
}

void Plate(Canvas *canvas, const Mask &mask, const Finish &finish, uint32_t seed) {
  const Mask soft = Blurred(mask, static_cast<int>(finish.bevel * 0.5f + 0.5f));
  const Mask wide = Blurred(mask, static_cast<int>(finish.bevel + 3.5f));
  for (int y = 0; y < mask.height; y++) {
    for (int x = 0; x < mask.width; x++) {
      const size_t at = PixelIndex(mask.width, x, y);
      if (mask.cover[at] <= 0.0f) continue;
      const float u = static_cast<float>(x);
      const float v = static_cast<float>(y);
      const float depth = Clamped(2.0f * wide.cover[at] - 1.0f);
      const float bare = Bareness(u, v, depth, finish, seed);
      const float dirt =
          finish.grime * (0.55f * LayeredNoise(u / 90.0f, v / 60.0f, 0.0f, 4, seed + 9) + 0.45f * (1.0f - depth));
      const float grain = Brushed(u, v, finish.upright, seed + 5) * finish.grain * (1.0f + bare);
      const float light = 1.0f + grain + Relief(soft, x, y, finish) - dirt * 0.7f;
      const float sheen = 1.05f - 0.10f * v / static_cast<float>(mask.height);
      const Hue coat = Mixed(Mixed(finish.paint, finish.bare, bare), Rust, dirt * 0.8f);
      Over(&canvas->pixels[at * 4], Scaled(coat, std::max(0.0f, light * sheen)), mask.cover[at]);
    }
  }
}

void Sink(Canvas *canvas, const Mask &mask, int depth, float strength) {
  const Mask soft = Blurred(mask, depth);
  for (int y = 0; y < mask.height; y++) {
    for (int x = 0; x < mask.width; x++) {
      const size_t at = PixelIndex(mask.width, x, y);
      const float inside = mask.cover[at];
      if (inside > 0.0f) {
        const float shade = 1.0f - At(soft, x - depth / 2, y - depth);
        Shade(&canvas->pixels[at * 4], -Clamped(shade * 1.3f) * strength * inside);
      }
      const float lip = Clamped(At(mask, x - 1, y - 2) - inside);
      if (lip > 0.0f) Shade(&canvas->pixels[at * 4], 0.35f * lip * strength);
      const float rim = Clamped(At(mask, x + 1, y + 2) - inside);
      if (rim > 0.0f) Shade(&canvas->pixels[at * 4], -0.35f * rim * strength);
    }
  }
}

void EdgeShade(Canvas *canvas, const Mask &mask, int depth, float strength) {
  Mask outside = mask;
  for (float &cover : outside.cover) cover = 1.0f - cover;
  Fill(canvas, Both(Blurred(outside, depth), mask), Black, strength);
}

void Engrave(Canvas *canvas, const Mask &mask, float strength) {
  for (int y = 0; y < mask.height; y++) {
    for (int x = 0; x < mask.width; x++) {
      const size_t at = PixelIndex(mask.width, x, y);
      const float lip = Clamped(At(mask, x - 1, y - 1) - mask.cover[at]);
      if (lip > 0.0f) Shade(&canvas->pixels[at * 4], 0.45f * lip * strength);
      if (mask.cover[at] > 0.0f) Shade(&canvas->pixels[at * 4], -0.75f * strength * mask.cover[at]);
    }
  }
}

void Coat(Canvas *canvas, const Mask &mask, const Hue &tint, float wear, uint32_t seed) {
  for (int y = 0; y < mask.height; y++) {
    for (int x = 0; x < mask.width; x++) {
      const size_t at = PixelIndex(mask.width, x, y);
      if (mask.cover[at] <= 0.0f) continue;
      const float u = static_cast<float>(x);
      const float v = static_cast<float>(y);
      const float patch = LayeredNoise(u / 11.0f, v / 11.0f, 0.0f, 4, seed);
      const float left = Step(wear - 0.04f, wear + 0.04f, patch);
      const float shade = 0.86f + 0.22f * LayeredNoise(u / 40.0f, v / 40.0f, 0.0f, 3, seed + 7);
      float *pixel = &canvas->pixels[at * 4];
      Over(pixel, Scaled(tint, shade), mask.cover[at] * left * 0.94f * pixel[3]);
    }
  }
}

// Light on what is there and on nothing: it covers as much as it is bright.
static void AddLight(float *pixel, const Hue &tint, float amount) {
  const float parts[3] = {tint.red * amount, tint.green * amount, tint.blue * amount};
  for (int i = 0; i < 3; i++) pixel[i] += parts[i] * (1.0f - pixel[i]);
  pixel[3] = std::max(pixel[3], std::max({pixel[0], pixel[1], pixel[2]}));
  pixel[3] += (1.0f - pixel[3]) * Clamped(amount) * 0.5f;
}

void Glow(Canvas *canvas, const Mask &mask, const Hue &tint, int radius, float strength) {
  const Mask near = Blurred(mask, std::max(1, radius / 3));
  const Mask far = Blurred(mask, radius);
  for (size_t i = 0; i < mask.cover.size(); i++) {
    const float light = strength * (0.55f * near.cover[i] + 0.75f * far.cover[i]);
    if (light > 0.006f) AddLight(&canvas->pixels[i * 4], tint, Clamped(light));
  }
}

void Cut(Canvas *canvas, const Mask &mask) {
  for (size_t i = 0; i < mask.cover.size(); i++) {
    for (size_t k = 0; k < 4; k++) canvas->pixels[i * 4 + k] *= 1.0f - mask.cover[i];
  }
}

void Scratch(Canvas *canvas, const Mask &mask, int count, uint32_t seed) {
  Dice dice{seed};
  cairo_t *drawing = BeginMask(mask.width, mask.height);
  for (int i = 0; i < count; i++) {
    const float x = RollBetween(&dice, 0.0f, static_cast<float>(mask.width));
    const float y = RollBetween(&dice, 0.0f, static_cast<float>(mask.height));
    const float turn = RollBetween(&dice, -0.9f, 0.5f);
    const float length = RollBetween(&dice, 6.0f, 60.0f);
    const float bright = RollBetween(&dice, 0.15f, 0.6f);
    cairo_set_source_rgba(drawing, 0.0, 0.0, 0.0, static_cast<double>(bright));
    cairo_set_line_width(drawing, static_cast<double>(RollBetween(&dice, 0.6f, 1.3f)));
    cairo_move_to(drawing, static_cast<double>(x), static_cast<double>(y));
    cairo_rel_line_to(drawing, static_cast<double>(length * std::cos(turn)), static_cast<double>(length * std::sin(turn)));
    cairo_stroke(drawing);
  }
  const Mask lines = Both(EndMask(drawing), mask);
  for (int y = 0; y < mask.height; y++) {
    for (int x = 0; x < mask.width; x++) {
      float *pixel = &canvas->pixels[PixelIndex(mask.width, x, y) * 4];
      Shade(pixel, 0.4f * At(lines, x, y));
      Shade(pixel, -0.35f * At(lines, x, y - 1));
    }
  }
}

void Rivets(Canvas *canvas, std::initializer_list<Spot> spots, double radius, const Hue &tint, uint32_t seed) {
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  for (const Spot &spot : spots) CirclePath(drawing, spot.x, spot.y, radius);
  cairo_fill(drawing);
  const Mask heads = EndMask(drawing);
  const float bevel = static_cast<float>(radius);
  Shadow(canvas, heads, 1, 2, 2, 0.7f);
  Plate(canvas, heads, {tint, Scaled(tint, 1.25f), bevel, 1.7f, 0.05f, 0.25f, 0.15f, false}, seed);
}

void Lamp(Canvas *canvas, double x, double y, double radius, const Hue &tint, float lit, uint32_t seed) {
  const Mask ring = CircleMask(*canvas, x, y, radius);
  const Mask glass = CircleMask(*canvas, x, y, radius * 0.74);
  Shadow(canvas, ring, 1, 2, 2, 0.6f);
  Plate(canvas, ring, {DarkSteel, Steel, 4.0f, 1.3f, 0.08f, 0.4f, 0.2f, false}, seed);
  Sink(canvas, CircleMask(*canvas, x, y, radius * 0.82), 3, 0.9f);
  FillDown(canvas, glass, Scaled(tint, 0.16f + 0.55f * lit), Scaled(tint, 0.30f + 0.70f * lit), y - radius, y + radius);
  if (lit > 0.0f) {
    Glow(canvas, CircleMask(*canvas, x, y + radius * 0.1, radius * 0.42), Mixed(tint, White, 0.55f),
        static_cast<int>(radius * 0.35), 0.9f * lit);
    Glow(canvas, glass, tint, static_cast<int>(radius * 0.5), 0.45f * lit);
  }
  const Mask glint = Both(CircleMask(*canvas, x - radius * 0.22, y - radius * 0.30, radius * 0.26), glass);
  Fill(canvas, Blurred(glint, 1), White, 0.28f + 0.3f * lit);
}
