// Round gauge, its needles, and the pointers of the temperature scale.
#include "gui_draw.h"
#include "gui_palette.h"

#include <cmath>

constexpr double GaugeX = 179.0;
constexpr double GaugeY = 182.0;

// Marks around the dial, from lower left over the top to lower right; `every` picks one in so many.
static Mask Ticks(const Canvas &canvas, int every, double inner, double outer, double thickness) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_set_line_width(drawing, thickness);
  for (int i = 0; i <= 50; i += every) {
    const double turn = 2.356194490192345 + 4.71238898038469 * i / 50.0;
    cairo_move_to(drawing, GaugeX + inner * std::cos(turn), GaugeY + inner * std::sin(turn));
    cairo_line_to(drawing, GaugeX + outer * std::cos(turn), GaugeY + outer * std::sin(turn));
  }
  cairo_stroke(drawing);
  return EndMask(drawing);
}

static Mask Arc(const Canvas &canvas, double radius, double thickness, double from, double to) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_set_line_width(drawing, thickness);
  cairo_arc(drawing, GaugeX, GaugeY, radius, from, to);
  cairo_stroke(drawing);
  return EndMask(drawing);
}

void DrawGauge(Canvas *canvas) {
  const Mask foot = ChamferMask(*canvas, 109, 320, 140, 50, 12);
  Shadow(canvas, foot, 3, 4, 3, 0.5f);
  Plate(canvas, foot, {Iron, Steel, 5.0f, 1.3f, 0.16f, 0.25f, 0.22f, false}, 201);
  const Mask ring = CircleMask(*canvas, GaugeX, GaugeY, 172);
  Shadow(canvas, ring, 3, 6, 4, 0.55f);
  Plate(canvas, ring, {DarkSteel, Steel, 12.0f, 1.3f, 0.16f, 0.20f, 0.22f, false}, 202);
  const Mask face = CircleMask(*canvas, GaugeX, GaugeY, 148);
  Plate(canvas, face, {Card, Gunmetal, 3.0f, 0.4f, 0.05f, 0.0f, 0.22f, false}, 203);
  Coat(canvas, Arc(*canvas, 120, 12, -0.2, 0.785), Oxide, 0.36f, 204);
  Coat(canvas, Arc(*canvas, 120, 12, -1.2, -0.2), Mustard, 0.36f, 205);
  Fill(canvas, Ticks(*canvas, 1, 126, 136, 1.6), Iron, 0.9f);
  Fill(canvas, Ticks(*canvas, 5, 114, 138, 3.6), Iron, 0.95f);
  Fill(canvas, LetterMask(*canvas, "TV-07", 151, 246, 13, 1.8), Iron, 0.8f);
  Sink(canvas, face, 12, 0.75f);
  Rivets(canvas, {{GaugeX, 22}, {GaugeX, 342}, {19, GaugeY}, {339, GaugeY}}, 6.0, Steel, 206);
  const Mask hub = CircleMask(*canvas, GaugeX, GaugeY, 17);
  Shadow(canvas, hub, 2, 4, 3, 0.6f);
  Plate(canvas, hub, {Iron, Steel, 8.0f, 1.6f, 0.1f, 0.2f, 0.15f, false}, 207);
  Fill(canvas, Both(face, PolyMask(*canvas, {{60, 0}, {150, 0}, {20, 300}, {-60, 300}})), White, 0.08f);
}

static void DrawNeedle(Canvas *canvas, const Hue &tint, uint32_t seed) {
  const double middle = canvas->width / 2.0;
  const double bottom = canvas->height;
  const Mask hand = PolyMask(*canvas, {{middle, 2}, {middle + 4, bottom - 40}, {middle + 7, bottom - 6},
      {middle - 7, bottom - 6}, {middle - 4, bottom - 40}});
  Shadow(canvas, hand, 1, 2, 1, 0.5f);
  Plate(canvas, hand, {tint, Steel, 3.0f, 1.0f, 0.04f, 0.0f, 0.12f, true}, seed);
  Engrave(canvas, LineMask(*canvas, {{middle, bottom - 36}, {middle, bottom - 12}}, 2), 0.6f);
}

void DrawNeedleBlack(Canvas *canvas) {
  DrawNeedle(canvas, Pit, 211);
}

void DrawNeedleYellow(Canvas *canvas) {
  DrawNeedle(canvas, Mustard, 212);
}

void DrawNeedleBlue(Canvas *canvas) {
  DrawNeedle(canvas, HueOf(56, 116, 196), 213);
}

void DrawTemperature(Canvas *canvas) {
  const Mask pointer = PolyMask(*canvas, {{2, 11}, {17, 2}, {17, 20}});
  Shadow(canvas, pointer, 1, 1, 1, 0.6f);
  Plate(canvas, pointer, {Enamel, Gunmetal, 3.0f, 1.2f, 0.05f, 0.1f, 0.1f, false}, 221);
}

void DrawTemperatureRed(Canvas *canvas) {
  const Mask bar = ChamferMask(*canvas, 2, 2, 37, 13, 4);
  Plate(canvas, bar, {HueOf(150, 34, 24), Gunmetal, 3.0f, 1.2f, 0.05f, 0.12f, 0.1f, false}, 222);
  Glow(canvas, RoundMask(*canvas, 7, 7, 27, 3, 1.5), RedLight, 4, 0.9f);
}

void DrawTemperatureOver(Canvas *canvas) {
  const Mask pointer = PolyMask(*canvas, {{2, 12.5}, {19, 2}, {19, 23}});
  Fill(canvas, pointer, RedLight, 1.0f);
  Glow(canvas, PolyMask(*canvas, {{7, 12.5}, {16, 7}, {16, 18}}), Mixed(RedLight, White, 0.6f), 3, 0.9f);
  Glow(canvas, pointer, RedLight, 3, 0.3f);
}
