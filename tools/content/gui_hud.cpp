// The view while flying: crosshairs, the console in the lower left corner, and what shows in its windows.
#include "gui_draw.h"
#include "gui_palette.h"

#include <array>
#include <cmath>

// Four short arms along the diagonals around a free middle: the game turns them by an eighth.
static Mask CrosshairMask(const Canvas &canvas, double thickness) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_set_line_width(drawing, thickness);
  cairo_set_line_cap(drawing, CAIRO_LINE_CAP_ROUND);
  for (const double dx : {-1.0, 1.0}) {
    for (const double dy : {-1.0, 1.0}) {
      cairo_move_to(drawing, 25 + dx * 5.5, 25 + dy * 5.5);
      cairo_line_to(drawing, 25 + dx * 15.5, 25 + dy * 15.5);
    }
  }
  cairo_stroke(drawing);
  CirclePath(drawing, 25, 25, thickness * 0.55);
  cairo_fill(drawing);
  return EndMask(drawing);
}

static void DrawCrosshair(Canvas *canvas, const Hue &tint) {
  const Mask lines = CrosshairMask(*canvas, 3.6);  // over a pixel in a window half as large as the design
  Fill(canvas, Blurred(CrosshairMask(*canvas, 8.4), 1), Black, 0.9f);
  Fill(canvas, lines, Mixed(tint, White, 0.25f), 1.0f);
}

void DrawCrosshairOrange(Canvas *canvas) {
  DrawCrosshair(canvas, HueOf(255, 150, 40));
}

void DrawCrosshairRed(Canvas *canvas) {
  DrawCrosshair(canvas, HueOf(255, 60, 46));
}

void DrawCrosshairGreen(Canvas *canvas) {
  DrawCrosshair(canvas, HueOf(84, 240, 96));
}

void DrawCrosshairBlue(Canvas *canvas) {
  DrawCrosshair(canvas, HueOf(84, 166, 255));
}

void DrawCrosshairYellow(Canvas *canvas) {
  DrawCrosshair(canvas, HueOf(255, 226, 60));
}

void DrawCrosshairRainbow(Canvas *canvas) {
  DrawCrosshair(canvas, White);
  const Mask lines = CrosshairMask(*canvas, 3.0);
  constexpr std::array<Hue, 6> colours{HueOf(255, 80, 70),  HueOf(255, 170, 50), HueOf(250, 235, 70),
                                        HueOf(90, 235, 100), HueOf(80, 180, 255), HueOf(190, 110, 255)};
  for (size_t i = 0; i < colours.size(); i++) {
    const double from = 1.0471975511965976 * static_cast<double>(i);
    const Mask wedge = PolyMask(*canvas, {{25, 25},
                                          {25 + 60 * std::cos(from), 25 + 60 * std::sin(from)},
                                          {25 + 60 * std::cos(from + 1.0472), 25 + 60 * std::sin(from + 1.0472)}});
    Fill(canvas, Both(lines, wedge), colours[i], 0.9f);
  }
}

// Strips that slide in a holder; the game prints a name at the right.
static void DrawCard(Canvas *canvas, const Hue &paper, const Hue &mark, uint32_t seed) {
  const double width = canvas->width;
  const double height = canvas->height;
  const Mask card = RoundMask(*canvas, 1, 1, width - 2, height - 2, 4);
  Plate(canvas, card, {paper, Gunmetal, 3.0f, 0.5f, 0.05f, 0.05f, 0.16f, false}, seed);
  Scratch(canvas, card, 8, seed + 1);
  Coat(canvas, RoundMask(*canvas, 1, height - 9, width - 2, 4, 0.5), mark, 0.38f, seed + 2);
  Engrave(canvas, RoundMask(*canvas, 20, 7, width - 28, 1, 0.4), 0.35f);
}

void DrawComponentCard(Canvas *canvas) {
  DrawCard(canvas, Card, Mustard, 111);
}

void DrawMaterialCard(Canvas *canvas) {
  DrawCard(canvas, TealCard, HueOf(60, 140, 130), 112);
}

namespace {

// The six sides of a cube seen from above, as corners of a hexagon around its middle.
struct Side {
  std::array<Spot, 4> corners;  // in edge lengths
  Spot outward;
  bool hidden;
};

enum SideName { SideRight, SideLeft, SideUp, SideDown, SideFront, SideBack };

}  // namespace

constexpr double Half = 0.5;
constexpr double Wide = 0.8660254037844386;

static constexpr Side sides[6] = {
    {{{{0, 0}, {Wide, -Half}, {Wide, Half}, {0, 1}}}, {Wide, Half}, false},
    {{{{-Wide, -Half}, {0, -1}, {0, 0}, {-Wide, Half}}}, {-Wide, -Half}, true},
    {{{{0, -1}, {Wide, -Half}, {0, 0}, {-Wide, -Half}}}, {0, -1}, false},
    {{{{0, 0}, {Wide, Half}, {0, 1}, {-Wide, Half}}}, {0, 1}, true},
    {{{{-Wide, -Half}, {0, 0}, {0, 1}, {-Wide, Half}}}, {-Wide, Half}, false},
    {{{{0, -1}, {Wide, -Half}, {Wide, Half}, {0, 0}}}, {Wide, -Half}, true},
};

constexpr double CubeX = 56.5;
constexpr double CubeY = 58.0;
constexpr double CubeEdge = 27.0;

static Spot OnScreen(const Spot &spot) {
  return {CubeX + spot.x * CubeEdge, CubeY + spot.y * CubeEdge};
}

static Mask SideMask(const Canvas &canvas, const Side &side) {
  const auto &c = side.corners;
  return PolyMask(canvas, {OnScreen(c[0]), OnScreen(c[1]), OnScreen(c[2]), OnScreen(c[3])});
}

static void StrokeSide(cairo_t *drawing, const Side &side) {
  const auto &c = side.corners;
  PolyPath(drawing, {OnScreen(c[0]), OnScreen(c[1]), OnScreen(c[2]), OnScreen(c[3])});
  cairo_stroke(drawing);
}

static Mask CubeLines(const Canvas &canvas, bool hidden) {
  cairo_t *drawing = BeginMask(canvas.width, canvas.height);
  cairo_set_line_width(drawing, hidden ? 1.4 : 2.4);
  cairo_set_line_join(drawing, CAIRO_LINE_JOIN_ROUND);
  const double dashes[2] = {4.0, 4.0};
  if (hidden) cairo_set_dash(drawing, dashes, 2, 0.0);
  for (const Side &side : sides) {
    if (side.hidden == hidden) StrokeSide(drawing, side);
  }
  return EndMask(drawing);
}

// An arrow from near the middle of a side to beyond it.
static Mask OutwardArrow(const Canvas &canvas, const Side &side) {
  const Spot d = side.outward;
  const Spot from = OnScreen({d.x * 0.62, d.y * 0.62});
  const Spot neck = OnScreen({d.x * 1.22, d.y * 1.22});
  const Spot tip = OnScreen({d.x * 1.66, d.y * 1.66});
  const Mask shaft = LineMask(canvas, {from, neck}, 5.0);
  const Spot left{neck.x - d.y * 10, neck.y + d.x * 10};
  const Spot right{neck.x + d.y * 10, neck.y - d.x * 10};
  return Either(shaft, PolyMask(canvas, {tip, left, right}));
}

static void DrawDarkGlass(Canvas *canvas) {
  const Mask glass = RoundMask(*canvas, 0, 0, canvas->width, canvas->height, 6);
  FillDown(canvas, glass, HueOf(10, 20, 22), HueOf(16, 34, 34), 0, canvas->height);
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  for (int y = 0; y < canvas->height; y += 3) cairo_rectangle(drawing, 0, y, canvas->width, 1);
  cairo_fill(drawing);
  Fill(canvas, EndMask(drawing), Black, 0.28f);
}

static void DrawCube(Canvas *canvas) {
  DrawDarkGlass(canvas);
  Fill(canvas, CubeLines(*canvas, true), Teal, 0.35f);
  const Mask lines = CubeLines(*canvas, false);
  Fill(canvas, lines, Mixed(Teal, White, 0.1f), 0.85f);
  Glow(canvas, lines, Teal, 4, 0.35f);
}

static void DrawRotation(Canvas *canvas, SideName name) {
  DrawCube(canvas);
  const Side &side = sides[name];
  Fill(canvas, SideMask(*canvas, side), Amber, side.hidden ? 0.40f : 0.80f);
  Fill(canvas, CubeLines(*canvas, false), Mixed(Teal, White, 0.3f), 0.9f);
  const Mask arrow = OutwardArrow(*canvas, side);
  Shadow(canvas, arrow, 0, 0, 2, 0.8f);
  Fill(canvas, arrow, Mixed(Amber, White, 0.35f), 1.0f);
  Glow(canvas, arrow, Amber, 5, 0.5f);
}

void DrawRotationRight(Canvas *canvas) {
  DrawRotation(canvas, SideRight);
}

void DrawRotationLeft(Canvas *canvas) {
  DrawRotation(canvas, SideLeft);
}

void DrawRotationUp(Canvas *canvas) {
  DrawRotation(canvas, SideUp);
}

void DrawRotationDown(Canvas *canvas) {
  DrawRotation(canvas, SideDown);
}

void DrawRotationFront(Canvas *canvas) {
  DrawRotation(canvas, SideFront);
}

void DrawRotationBack(Canvas *canvas) {
  DrawRotation(canvas, SideBack);
}

// The cube inside two arrows that chase each other.
void DrawRotationAuto(Canvas *canvas) {
  DrawCube(canvas);
  cairo_t *drawing = BeginMask(canvas->width, canvas->height);
  cairo_set_line_width(drawing, 4.0);
  for (const double from : {0.35, 3.49}) {
    cairo_new_sub_path(drawing);
    cairo_arc(drawing, CubeX, CubeY, 40, from, from + 2.2);
    cairo_stroke(drawing);
    const double end = from + 2.2;
    const Spot out{std::cos(end), std::sin(end)};
    const Spot neck{CubeX + 40 * out.x, CubeY + 40 * out.y};
    PolyPath(drawing, {{neck.x + 9 * out.x, neck.y + 9 * out.y},
                       {neck.x - 9 * out.x, neck.y - 9 * out.y},
                       {neck.x - 15 * out.y, neck.y + 15 * out.x}});
    cairo_fill(drawing);
  }
  const Mask arrows = EndMask(drawing);
  Fill(canvas, arrows, Mixed(Amber, White, 0.2f), 1.0f);
  Glow(canvas, arrows, Amber, 5, 0.5f);
}

static void DrawLamp(Canvas *canvas, const Hue &tint, float lit) {
  Lamp(canvas, 24.5, 22.5, 21.5, tint, lit, 121);
}

void DrawLampOff(Canvas *canvas) {
  DrawLamp(canvas, HueOf(120, 128, 132), 0.0f);
}

void DrawLampRed(Canvas *canvas) {
  DrawLamp(canvas, RedLight, 1.0f);
}

void DrawLampGreen(Canvas *canvas) {
  DrawLamp(canvas, GreenLight, 1.0f);
}

void DrawLampBlue(Canvas *canvas) {
  DrawLamp(canvas, BlueLight, 1.0f);
}

void DrawLampYellow(Canvas *canvas) {
  DrawLamp(canvas, YellowLight, 1.0f);
}
