// The large pieces: the game's name, the frame of the block selector, and the window that gives advice.
#include "gui_draw.h"
#include "gui_palette.h"

#include <cmath>

constexpr Finish frameMetal{Iron, Steel, 8.0f, 1.3f, 0.18f, 0.15f, 0.25f, false};
constexpr Finish bracketMetal{DarkSteel, Steel, 6.0f, 1.3f, 0.18f, 0.24f, 0.22f, false};

static float *PixelAt(Canvas *canvas, int x, int y) {
  return &canvas->pixels[PixelIndex(canvas->width, x, y) * 4];
}

static void Blend(float *pixel, const Hue &hue, float cover) {
  pixel[0] += (hue.red - pixel[0]) * cover;
  pixel[1] += (hue.green - pixel[1]) * cover;
  pixel[2] += (hue.blue - pixel[2]) * cover;
  pixel[3] += (1.0f - pixel[3]) * cover;
}

// The name in letters of 66 x 84 points; `top` and `height` may turn it upside down.
static Mask NameMask(const Canvas &canvas, double top, double height, double thickness) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_translate(drawing, 0.0, top);
  cairo_scale(drawing, 1.0, height / 84.0);
  cairo_set_line_width(drawing, thickness);
  cairo_set_line_join(drawing, CAIRO_LINE_JOIN_MITER);
  cairo_set_miter_limit(drawing, 2.2);  // no spikes on the N
  cairo_set_line_cap(drawing, CAIRO_LINE_CAP_SQUARE);
  for (int i = 0; i < 8; i++) {
    const char letter[2] = {"TARNVALE"[i], '\0'};
    cairo_save(drawing);
    cairo_translate(drawing, 34.0 + 112.0 * i, 11.0);
    cairo_scale(drawing, 1.6, 1.0);
    LetterPath(drawing, letter, 0.0, 0.0, 62.0);
    cairo_restore(drawing);
    cairo_stroke(drawing);
  }
  return EndMask(drawing);
}

// The letters stand at a shore, and the water below gives them back in thin, unquiet lines.
static void DrawReflection(Canvas *canvas) {
  const Mask water = NameMask(*canvas, 181, -54, 20);
  for (int y = 128; y < canvas->height; y++) {
    const float depth = static_cast<float>(y - 128) / 58.0f;
    const int ripple = static_cast<int>(std::lround(depth * 5.0f * std::sin(static_cast<float>(y / 3) * 1.9f)));
    for (int x = 0; x < canvas->width; x++) {
      const int from = x + ripple;
      if (from < 0 || from >= canvas->width) continue;
      const float cover = water.cover[PixelIndex(canvas->width, from, y)];
      Blend(PixelAt(canvas, x, y), Teal, cover * (1.0f - depth) * (y % 3 < 2 ? 0.62f : 0.22f));
    }
  }
}

void DrawLogo(Canvas *canvas) {
  DrawReflection(canvas);
  const Mask back = NameMask(*canvas, 14, 96, 32);
  Shadow(canvas, back, 2, 5, 5, 0.6f);
  Plate(canvas, back, {Iron, Steel, 4.0f, 1.2f, 0.14f, 0.14f, 0.2f, false}, 301);
  const Mask name = NameMask(*canvas, 14, 96, 20);
  Shadow(canvas, name, 1, 2, 2, 0.6f);
  Plate(canvas, name, {Enamel, Gunmetal, 3.0f, 1.0f, 0.08f, 0.10f, 0.20f, false}, 302);
  const Mask foot = Both(name, RoundMask(*canvas, 0, 88, canvas->width, 7, 0));
  Coat(canvas, foot, Mustard, 0.36f, 303);
  Scratch(canvas, name, 160, 304);
  Glow(canvas, PolyMask(*canvas, {{4, 123}, {460, 121}, {916, 123}, {460, 125}}), Amber, 5, 1.0f);
}

static Mask FrameMask(const Canvas &canvas) {
  return Without(ChamferMask(canvas, 2, 2, 1889, 953, 34), ChamferMask(canvas, 56, 44, 1781, 856, 18));
}

// Plain lines of a ship's plan, seen from the side and from above, as outlines along cells of 20 units.
static Mask PlanMask(const Canvas &canvas, double thickness) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_set_line_width(drawing, thickness);
  const auto outline = [drawing](double x, double y, std::initializer_list<Spot> cells) {
    for (const Spot &cell : cells) cairo_line_to(drawing, x + cell.x * 20, y + cell.y * 20);
    cairo_close_path(drawing);
    cairo_stroke(drawing);
  };
  outline(1240, 200, {{0, 6}, {2, 6}, {2, 5}, {5, 5}, {5, 3}, {8, 3}, {8, 2}, {13, 2}, {13, 3}, {16, 3}, {16, 4},
      {22, 4}, {22, 5}, {25, 5}, {25, 6}, {27, 6}, {27, 8}, {25, 8}, {25, 9}, {18, 9}, {18, 10}, {7, 10}, {7, 9},
      {2, 9}, {2, 8}, {0, 8}});
  outline(1240, 200, {{8, 3}, {13, 3}, {13, 5}, {8, 5}});
  outline(1240, 200, {{5, 5}, {16, 5}, {16, 9}, {5, 9}});
  outline(1240, 200, {{16, 5}, {22, 5}, {22, 8}, {16, 8}});
  outline(1240, 460, {{0, 4}, {2, 4}, {2, 2}, {4, 2}, {4, 0}, {8, 0}, {8, 2}, {16, 2}, {16, 3}, {22, 3}, {22, 4},
      {27, 4}, {27, 6}, {22, 6}, {22, 7}, {16, 7}, {16, 8}, {8, 8}, {8, 10}, {4, 10}, {4, 8}, {2, 8}, {2, 6}, {0, 6}});
  outline(1240, 460, {{5, 3}, {16, 3}, {16, 7}, {5, 7}});
  outline(1240, 460, {{16, 4}, {22, 4}, {22, 6}, {16, 6}});
  return EndMask(drawing);
}

static void DrawPlan(Canvas *canvas) {
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  cairo_set_line_width(drawing, 1.0);
  for (int x = 0; x <= 28; x++) {
    cairo_move_to(drawing, 1230.5 + 20 * x, 160);
    cairo_line_to(drawing, 1230.5 + 20 * x, 700);
  }
  for (int y = 0; y <= 27; y++) {
    cairo_move_to(drawing, 1230, 160.5 + 20 * y);
    cairo_line_to(drawing, 1790, 160.5 + 20 * y);
  }
  cairo_stroke(drawing);
  Fill(canvas, EndMask(drawing), Teal, 0.07f);
  Fill(canvas, PlanMask(*canvas, 2.2), Teal, 0.34f);
  Fill(canvas, LetterMask(*canvas, "TARNVALE  TV-07", 1240, 172, 12, 1.6), Teal, 0.4f);
}

// A field sunk into the panel, so that words stand on a darker ground.
static void DrawField(Canvas *canvas, const Mask &field, const Hue &hue, float opacity) {
  const Mask rim = Without(Blurred(field, 2), field);
  Fill(canvas, rim, Black, 0.5f);
  Fill(canvas, field, hue, opacity);
  EdgeShade(canvas, field, 7, 0.6f);
}

// Where the panel's sheets meet, and what holds them.
static void DrawSeams(Canvas *canvas) {
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  cairo_set_line_width(drawing, 2.0);
  for (const double x : {330.0, 640.0, 950.0}) {
    cairo_move_to(drawing, x, 44);
    cairo_line_to(drawing, x, 900);
  }
  cairo_move_to(drawing, 1190, 762);
  cairo_line_to(drawing, 1837, 762);
  cairo_stroke(drawing);
  Fill(canvas, EndMask(drawing), Black, 0.35f);
}

void DrawSelectorFrame(Canvas *canvas) {
  DrawSeams(canvas);
  DrawField(canvas, ChamferMask(*canvas, 96, 72, 1004, 806, 14), HueOf(22, 23, 25), 0.62f);
  DrawField(canvas, ChamferMask(*canvas, 1204, 72, 604, 664, 14), HueOf(10, 26, 26), 0.72f);
  DrawPlan(canvas);
  EdgeShade(canvas, ChamferMask(*canvas, 56, 44, 1781, 856, 18), 9, 0.7f);
  const Mask frame = FrameMask(*canvas);
  Plate(canvas, frame, frameMetal, 311);
  Scratch(canvas, frame, 700, 312);
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  for (const double x : {2.0, 1641.0}) {
    ChamferPath(drawing, x, 906, 250, 44, 10);
  }
  for (const double y : {60.0, 640.0}) {
    ChamferPath(drawing, 6, y, 42, 250, 9);
    ChamferPath(drawing, 1845, y, 42, 250, 9);
  }
  ChamferPath(drawing, 760, 906, 372, 44, 10);
  cairo_fill(drawing);
  const Mask brackets = Both(EndMask(drawing), frame);
  Shadow(canvas, brackets, 2, 4, 3, 0.6f);
  Plate(canvas, brackets, bracketMetal, 313);
  Coat(canvas, PolyMask(*canvas, {{800, 920}, {1092, 920}, {1082, 936}, {790, 936}}), Mustard, 0.42f, 314);
  Rivets(canvas, {{24, 80}, {24, 290}, {24, 660}, {24, 870}, {1867, 80}, {1867, 290}, {1867, 660}, {1867, 870},
      {60, 928}, {230, 928}, {1662, 928}, {1830, 928}, {776, 928}, {1116, 928}, {400, 928}, {560, 928}, {1300, 928},
      {1480, 928}, {24, 480}, {1867, 480}, {820, 24}, {1120, 24}, {1420, 24}, {1720, 24}}, 7.0, Steel, 315);
}

void DrawSelectorDivider(Canvas *canvas) {
  const Mask band = RoundMask(*canvas, 58, -10, 48, 902, 2);
  Shadow(canvas, band, 5, 2, 5, 0.6f);
  Plate(canvas, band, {Iron, Steel, 6.0f, 1.3f, 0.18f, 0.18f, 0.25f, true}, 321);
  Scratch(canvas, band, 60, 322);
  const Mask port = CircleMask(*canvas, 72.5, 611, 38);
  Shadow(canvas, port, 3, 5, 4, 0.6f);
  Plate(canvas, port, bracketMetal, 323);
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  for (const double y : {60.0, 340.0, 780.0}) ChamferPath(drawing, 50, y, 64, 60, 8);
  cairo_fill(drawing);
  const Mask clamps = EndMask(drawing);
  Shadow(canvas, clamps, 2, 4, 3, 0.6f);
  Plate(canvas, clamps, bracketMetal, 324);
  Rivets(canvas, {{62, 90}, {102, 90}, {62, 370}, {102, 370}, {62, 810}, {102, 810}, {72, 580}, {72, 642}, {42, 611},
      {103, 611}}, 5.0, Steel, 325);
  const Mask hole = CircleMask(*canvas, 72.5, 611, 22);
  Sink(canvas, hole, 3, 1.0f);
  Cut(canvas, hole);
  EdgeShade(canvas, hole, 4, 0.8f);
}

// Dark glass with fine lines, brighter at its middle.
static void DrawTube(Canvas *canvas, const Mask &glass, double x, double y, double width, double height) {
  for (int row = 0; row < canvas->height; row++) {
    for (int column = 0; column < canvas->width; column++) {
      const float cover = glass.cover[PixelIndex(canvas->width, column, row)];
      if (cover <= 0.0f) continue;
      const float u = static_cast<float>((column - x) / width * 2.0);
      const float v = static_cast<float>((row - y) / height * 2.0);
      const float far = u * u * 0.55f + v * v * 0.55f;
      const float light = (1.0f - 0.75f * (far > 1.0f ? 1.0f : far)) * (row % 4 < 2 ? 1.0f : 0.78f);
      Blend(PixelAt(canvas, column, row), Scaled(HueOf(9, 46, 24), light), cover);
    }
  }
}

void DrawInfoWindow(Canvas *canvas) {
  const Mask box = ChamferMask(*canvas, 4, 4, 610, 368, 18);
  Shadow(canvas, box, 3, 6, 4, 0.55f);
  Plate(canvas, box, frameMetal, 331);
  Scratch(canvas, box, 90, 332);
  const Mask bezel = RoundMask(*canvas, 16, 14, 558, 312, 26);
  Shadow(canvas, bezel, 1, 3, 3, 0.6f);
  Plate(canvas, bezel, bracketMetal, 333);
  const Mask glass = RoundMask(*canvas, 28, 25, 534, 290, 22);
  DrawTube(canvas, glass, 295, 170, 534, 290);
  Sink(canvas, glass, 8, 0.85f);
  Fill(canvas, Both(glass, PolyMask(*canvas, {{60, 0}, {200, 0}, {90, 330}, {-40, 330}})), White, 0.025f);
  for (int i = 0; i < 9; i++) Engrave(canvas, RoundMask(*canvas, 582, 40 + 14 * i, 22, 6, 3), 0.95f);
  Engrave(canvas, LetterMask(*canvas, "TARNVALE", 40, 340, 13, 2.0), 0.85f);
  Coat(canvas, PolyMask(*canvas, {{190, 340}, {330, 340}, {322, 354}, {182, 354}}), Mustard, 0.42f, 334);
  for (int i = 0; i < 2; i++) {
    const double x = 420 + 52 * i;
    const Mask knob = CircleMask(*canvas, x, 347, 15);
    Shadow(canvas, knob, 2, 4, 3, 0.6f);
    Plate(canvas, knob, {Steel, Bright, 6.0f, 1.4f, 0.16f, 0.2f, 0.2f, false}, 335);
    Engrave(canvas, LineMask(*canvas, {{x, 347}, {x - 5 + 12 * i, 336}}, 3), 0.9f);
  }
  Lamp(canvas, 540, 347, 13, Amber, 1.0f, 336);
  Rivets(canvas, {{593, 22}, {593, 352}, {20, 352}, {593, 190}}, 5.0, Steel, 337);
}

// Lines of a screen over the whole window, darker at its corners.
void DrawScreenGlass(Canvas *canvas) {
  for (int y = 0; y < canvas->height; y++) {
    for (int x = 0; x < canvas->width; x++) {
      const float u = (static_cast<float>(x) + 0.5f) / 960.0f - 1.0f;
      const float v = (static_cast<float>(y) + 0.5f) / 540.0f - 1.0f;
      const float far = u * u * u * u + v * v * v * v;
      const float level = std::floor(far * 20.0f) / 20.0f;
      PixelAt(canvas, x, y)[3] = 0.20f * level + (y % 4 < 2 ? 0.07f : 0.0f);
    }
  }
}

void DrawClear(Canvas *) {}
