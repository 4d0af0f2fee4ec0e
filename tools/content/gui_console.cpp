// The console in the lower left corner. It is drawn over cards, lamps and the picture of the rotation, which show
// through its windows; the cards slide to the left behind its pillar.
#include "gui_draw.h"
#include "gui_palette.h"

namespace {

constexpr Spot lampPlaces[4] = {{80.5, 384.5}, {148.5, 384.5}, {219.5, 384.5}, {285.5, 384.5}};
constexpr double LampHole = 21.0;
constexpr Finish body{Iron, Steel, 7.0f, 1.3f, 0.18f, 0.16f, 0.25f, false};
constexpr Finish raised{DarkSteel, Steel, 5.0f, 1.3f, 0.18f, 0.22f, 0.22f, false};

}  // namespace

static Mask ConsoleMask(const Canvas &canvas) {
  return PolyMask(canvas, {{-12, 74},  {30, 74},   {50, 94},   {50, 116},  {64, 130},  {172, 130}, {190, 148},
      {190, 260}, {208, 278},
                           {314, 278}, {334, 298}, {334, 466}, {362, 494}, {412, 494}, {430, 512}, {430, 532}, {-12, 532}});
}

// Where cards and the cube show.
static Mask WindowMask(const Canvas &canvas) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  RoundPath(drawing, 58, 149, 104, 107, 6);
  RoundPath(drawing, 46, 299, 261, 49, 5);
  RoundPath(drawing, 46, 421, 261, 45, 5);
  cairo_fill(drawing);
  return EndMask(drawing);
}

static Mask LampMask(const Canvas &canvas, double radius) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  for (const Spot &place : lampPlaces) CirclePath(drawing, place.x, place.y, radius);
  cairo_fill(drawing);
  return EndMask(drawing);
}

// A hose that comes over the top, and a thin wire beside it.
static void DrawHoses(Canvas *canvas) {
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  cairo_set_line_width(drawing, 11.0);
  cairo_move_to(drawing, -8, 30);
  cairo_curve_to(drawing, 40, 18, 120, 40, 128, 140);
  cairo_stroke(drawing);
  const Mask hose = EndMask(drawing);
  Shadow(canvas, hose, 3, 5, 3, 0.5f);
  Plate(canvas, hose, {HueOf(58, 52, 48), Gunmetal, 8.0f, 1.9f, 0.05f, 0.06f, 0.2f, false}, 131);
  drawing = BeginMask(canvas->width, canvas->height);
  cairo_set_line_width(drawing, 4.0);
  cairo_move_to(drawing, -8, 46);
  cairo_curve_to(drawing, 30, 40, 96, 50, 104, 140);
  cairo_stroke(drawing);
  const Mask wire = EndMask(drawing);
  Shadow(canvas, wire, 2, 3, 2, 0.5f);
  Plate(canvas, wire, {Oxide, Steel, 4.0f, 1.8f, 0.05f, 0.1f, 0.2f, false}, 132);
  const Mask clamp = ChamferMask(*canvas, 92, 116, 48, 18, 4);
  Plate(canvas, clamp, raised, 133);
}

static Mask HazardMask(const Canvas &canvas, double x, double y, double width, double height) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_rectangle(drawing, x, y, width, height);
  cairo_clip(drawing);
  for (double at = x - height; at < x + width; at += height * 1.6) {
    PolyPath(drawing, {{at, y + height}, {at + height, y}, {at + height * 1.8, y}, {at + height * 0.8, y + height}});
  }
  cairo_fill(drawing);
  return EndMask(drawing);
}

static void DrawFrames(Canvas *canvas) {
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  ChamferPath(drawing, 48, 139, 124, 127, 10);
  ChamferPath(drawing, 36, 289, 281, 69, 8);
  ChamferPath(drawing, 36, 411, 281, 65, 8);
  cairo_fill(drawing);
  const Mask frames = EndMask(drawing);
  Shadow(canvas, frames, 1, 3, 2, 0.6f);
  Plate(canvas, frames, raised, 134);
}

void DrawConsole(Canvas *canvas) {
  DrawHoses(canvas);
  const Mask shape = ConsoleMask(*canvas);
  Shadow(canvas, shape, 3, 2, 4, 0.5f);
  Plate(canvas, shape, body, 135);
  Scratch(canvas, shape, 60, 136);
  DrawFrames(canvas);
  Coat(canvas, HazardMask(*canvas, 344, 500, 74, 14), Mustard, 0.40f, 137);
  Coat(canvas, RoundMask(*canvas, 6, 100, 30, 10, 1), Mustard, 0.44f, 138);
  Engrave(canvas, LetterMask(*canvas, "TARNVALE", 214, 494, 9, 1.4), 0.8f);
  Engrave(canvas, LetterMask(*canvas, "07", 12, 120, 11, 1.6), 0.8f);
  Engrave(canvas, LineMask(*canvas, {{44, 485}, {200, 485}}, 1.5), 0.7f);
  for (int i = 0; i < 6; i++) Engrave(canvas, RoundMask(*canvas, 8, 430 + 9 * i, 20, 4, 2), 0.95f);
  const Mask rings = Without(LampMask(*canvas, 26), LampMask(*canvas, LampHole));
  Sink(canvas, LampMask(*canvas, 26.5), 3, 0.7f);
  Plate(canvas, rings, raised, 139);
  Rivets(canvas, {{56, 283}, {16, 283}, {324, 366}, {324, 480}, {16, 368}, {16, 506}, {180, 156}, {180, 250},
      {16, 156}, {180, 506}, {324, 306}}, 5.0, Steel, 140);
  const Mask windows = WindowMask(*canvas);
  Sink(canvas, windows, 2, 1.0f);
  Cut(canvas, Either(windows, LampMask(*canvas, LampHole)));
  // The frame throws a shade on what lies behind it, and the panes shine a little.
  EdgeShade(canvas, windows, 4, 0.75f);
  Fill(canvas, Both(windows, PolyMask(*canvas, {{190, 280}, {230, 280}, {130, 480}, {90, 480}})), White, 0.05f);
}
