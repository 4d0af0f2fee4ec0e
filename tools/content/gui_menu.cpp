// The menus' pieces: enamel plates, switches, sliders and arrows.
#include "gui_draw.h"
#include "gui_palette.h"

namespace {

// Black words stand on these.
constexpr Finish lightEnamel{Enamel, Gunmetal, 5.0f, 1.1f, 0.07f, 0.34f, 0.20f, false, false};
constexpr Finish darkMetal{Iron, Steel, 5.0f, 1.3f, 0.16f, 0.22f, 0.22f, false, false};
constexpr Finish steelPart{Steel, Bright, 6.0f, 1.2f, 0.16f, 0.28f, 0.22f, false};

}  // namespace

// A sign that hangs by four rivets.
static void DrawSign(Canvas *canvas, const Finish &finish, uint32_t seed) {
  const Mask plate = ChamferMask(*canvas, 9, 13, 282, 112, 15);
  Shadow(canvas, plate, 3, 6, 4, 0.55f);
  Plate(canvas, plate, finish, seed);
  Scratch(canvas, plate, 26, seed + 1);
}

static void SignRivets(Canvas *canvas, const Hue &tint, uint32_t seed) {
  Rivets(canvas, {{32, 31}, {268, 31}, {32, 107}, {268, 107}}, 6.0, tint, seed);
}

void DrawButton(Canvas *canvas) {
  DrawSign(canvas, lightEnamel, 11);
  const Mask groove = Without(ChamferMask(*canvas, 17, 21, 266, 96, 13), ChamferMask(*canvas, 19, 23, 262, 92, 12.5));
  Engrave(canvas, groove, 0.55f);
  Coat(canvas, PolyMask(*canvas, {{62, 101}, {238, 101}, {232, 109}, {56, 109}}), Mustard, 0.40f, 12);
  Engrave(canvas, LetterMask(*canvas, "TV-07", 124, 30, 8, 1.3), 0.6f);
  SignRivets(canvas, Steel, 13);
}

void DrawButtonDown(Canvas *canvas) {
  DrawSign(canvas, darkMetal, 11);
  const Mask groove = Without(ChamferMask(*canvas, 16, 20, 268, 98, 13.5), ChamferMask(*canvas, 19, 23, 262, 92, 12.5));
  Engrave(canvas, groove, 0.9f);
  Fill(canvas, groove, Amber, 0.85f);
  Glow(canvas, groove, Amber, 9, 0.9f);
  Glow(canvas, PolyMask(*canvas, {{62, 101}, {238, 101}, {232, 109}, {56, 109}}), Amber, 5, 0.75f);
  Glow(canvas, LetterMask(*canvas, "TV-07", 124, 30, 8, 1.3), Amber, 2, 0.8f);
  SignRivets(canvas, Steel, 13);
}

// A sliding switch: the cap stands right for on and left for off, and a coloured lens shows where it isn't.
static void DrawToggle(Canvas *canvas, bool on, const Hue &light, uint32_t seed) {
  const Mask plate = ChamferMask(*canvas, 5, 5, 190, 70, 12);
  Shadow(canvas, plate, 2, 4, 3, 0.55f);
  Plate(canvas, plate, {DarkSteel, Steel, 5.0f, 1.2f, 0.16f, 0.26f, 0.22f, false}, seed);
  const Mask slot = RoundMask(*canvas, 24, 17, 152, 46, 14);
  Fill(canvas, slot, Pit, 1.0f);
  Sink(canvas, slot, 6, 0.9f);
  const double lens = on ? 32 : 104;
  const Mask glass = RoundMask(*canvas, lens, 24, 64, 32, 9);
  FillDown(canvas, glass, Scaled(light, 0.55f), Scaled(light, 0.95f), 24, 56);
  Glow(canvas, RoundMask(*canvas, lens + 12, 34, 40, 14, 7), Mixed(light, White, 0.5f), 6, 0.8f);
  Glow(canvas, glass, light, 10, 0.45f);
  Fill(canvas, RoundMask(*canvas, lens + 6, 27, 52, 6, 3), White, 0.22f);
  const double cap = on ? 102 : 26;
  const Mask body = RoundMask(*canvas, cap, 12, 72, 55, 9);
  Shadow(canvas, body, 2, 5, 3, 0.7f);
  Plate(canvas, body, steelPart, seed + 2);
  for (int i = 0; i < 5; i++) Engrave(canvas, RoundMask(*canvas, cap + 16 + 9 * i, 22, 3.5, 35, 1.5), 0.75f);
  Rivets(canvas, {{14, 40}, {186, 40}}, 4.0, Steel, seed + 3);
}

void DrawToggleGreen(Canvas *canvas) {
  DrawToggle(canvas, true, GreenLight, 21);
}

void DrawToggleRed(Canvas *canvas) {
  DrawToggle(canvas, false, RedLight, 22);
}

// An arrow as a path that points along (dx, dy), `reach` from its middle to its tip.
static Mask ArrowMask(const Canvas &canvas, double reach, int dx, int dy) {
  const double x = canvas.width / 2.0;
  const double y = canvas.height / 2.0 - 1.0;
  const Spot tip{x + dx * reach, y + dy * reach};
  const Spot left{x - dx * reach * 0.75 - dy * reach * 0.95, y - dy * reach * 0.75 + dx * reach * 0.95};
  const Spot right{x - dx * reach * 0.75 + dy * reach * 0.95, y - dy * reach * 0.75 - dx * reach * 0.95};
  const Spot notch{x - dx * reach * 0.35, y - dy * reach * 0.35};
  return PolyMask(canvas, {tip, left, notch, right});
}

static void DrawArrow(Canvas *canvas, int dx, int dy, bool lit, uint32_t seed) {
  const double width = canvas->width;
  const double height = canvas->height;
  const double inset = width * 0.045;
  const Mask plate = ChamferMask(*canvas, inset, inset, width - 2 * inset, height - 2.6 * inset, width * 0.14);
  Shadow(canvas, plate, 1, static_cast<int>(width / 24), static_cast<int>(width / 28), 0.55f);
  Plate(canvas, plate, {lit ? Gunmetal : DarkSteel, Steel, static_cast<float>(width) * 0.06f, 1.3f, 0.16f, 0.26f,
      0.22f, false}, seed);
  const Mask arrow = ArrowMask(*canvas, width * 0.25, dx, dy);
  Fill(canvas, arrow, Pit, 0.9f);
  Sink(canvas, arrow, static_cast<int>(width / 20), 0.9f);
  if (!lit) return;
  Fill(canvas, arrow, GreenLight, 0.9f);
  Glow(canvas, ArrowMask(*canvas, width * 0.12, dx, dy), White, static_cast<int>(width / 14), 0.7f);
  Glow(canvas, arrow, GreenLight, static_cast<int>(width / 9), 0.7f);
}

void DrawArrowLeftDark(Canvas *canvas) {
  DrawArrow(canvas, -1, 0, false, 31);
}

void DrawArrowLeftGreen(Canvas *canvas) {
  DrawArrow(canvas, -1, 0, true, 31);
}

void DrawArrowRightDark(Canvas *canvas) {
  DrawArrow(canvas, 1, 0, false, 32);
}

void DrawArrowRightGreen(Canvas *canvas) {
  DrawArrow(canvas, 1, 0, true, 32);
}

void DrawArrowUpDark(Canvas *canvas) {
  DrawArrow(canvas, 0, -1, false, 33);
}

void DrawArrowUpGreen(Canvas *canvas) {
  DrawArrow(canvas, 0, -1, true, 33);
}

void DrawArrowDownDark(Canvas *canvas) {
  DrawArrow(canvas, 0, 1, false, 34);
}

void DrawArrowDownGreen(Canvas *canvas) {
  DrawArrow(canvas, 0, 1, true, 34);
}

// The knob's middle runs from 51 to 421 of the picture's width.
void DrawSliderTrack(Canvas *canvas) {
  const Mask plate = ChamferMask(*canvas, 3, 8, 469, 64, 12);
  Shadow(canvas, plate, 2, 4, 3, 0.5f);
  Plate(canvas, plate, {DarkSteel, Steel, 5.0f, 1.2f, 0.16f, 0.24f, 0.22f, false}, 41);
  Scratch(canvas, plate, 20, 42);
  for (int i = 0; i <= 20; i++) {
    const bool major = i % 5 == 0;
    const double x = 51 + 18.5 * i;
    Engrave(canvas, RoundMask(*canvas, x - 1, major ? 51 : 54, 2, major ? 12 : 7, 0.5), 0.7f);
    if (major) Coat(canvas, RoundMask(*canvas, x - 1.5, 51, 3, 12, 0.5), Mustard, 0.3f, 43);
  }
  const Mask slot = RoundMask(*canvas, 34, 30, 407, 14, 7);
  Fill(canvas, slot, Pit, 1.0f);
  Sink(canvas, slot, 4, 0.9f);
  Glow(canvas, RoundMask(*canvas, 42, 36, 391, 2.5, 1), Teal, 3, 0.5f);
  Rivets(canvas, {{18, 40}, {457, 40}}, 4.5, Steel, 44);
}

void DrawSliderKnob(Canvas *canvas) {
  const Mask body = ChamferMask(*canvas, 8, 3, 52, 70, 9);
  Shadow(canvas, body, 3, 5, 3, 0.6f);
  Plate(canvas, body, steelPart, 45);
  const Mask groove = RoundMask(*canvas, 31, 10, 6, 56, 2);
  Engrave(canvas, groove, 0.9f);
  Fill(canvas, groove, Amber, 0.9f);
  Glow(canvas, groove, Amber, 5, 0.45f);
  for (int i = 0; i < 2; i++) {
    Engrave(canvas, RoundMask(*canvas, 15 + 6 * i, 14, 3, 48, 1.5), 0.7f);
    Engrave(canvas, RoundMask(*canvas, 44 + 6 * i, 14, 3, 48, 1.5), 0.7f);
  }
}

void DrawScrollTrack(Canvas *canvas) {
  const Mask plate = ChamferMask(*canvas, 2, 2, 32, 548, 7);
  Plate(canvas, plate, {DarkSteel, Steel, 4.0f, 1.2f, 0.16f, 0.24f, 0.22f, true}, 51);
  const Mask slot = RoundMask(*canvas, 12, 16, 12, 520, 6);
  Fill(canvas, slot, Pit, 1.0f);
  Sink(canvas, slot, 4, 0.9f);
  Glow(canvas, RoundMask(*canvas, 17, 24, 2, 504, 1), Teal, 3, 0.5f);
}

void DrawScrollKnob(Canvas *canvas) {
  const Mask body = ChamferMask(*canvas, 3, 3, 35, 60, 8);
  Shadow(canvas, body, 2, 4, 2, 0.6f);
  Plate(canvas, body, steelPart, 55);
  for (int i = 0; i < 2; i++) {
    Engrave(canvas, RoundMask(*canvas, 10, 13 + 6 * i, 21, 3, 1.5), 0.7f);
    Engrave(canvas, RoundMask(*canvas, 10, 43 + 6 * i, 21, 3, 1.5), 0.7f);
  }
  const Mask groove = RoundMask(*canvas, 8, 30, 25, 5, 2);
  Engrave(canvas, groove, 0.9f);
  Fill(canvas, groove, Amber, 0.9f);
  Glow(canvas, groove, Amber, 4, 0.45f);
}

// A dim strip behind a line of words, without hard ends: longer words stand out of it on both sides.
void DrawTextRow(Canvas *canvas) {
  for (int y = 0; y < canvas->height; y++) {
    for (int x = 0; x < canvas->width; x++) {
      const float u = 1.0f - static_cast<float>(x < 100 ? 99 - x : x - 100) / 100.0f;
      const float v = static_cast<float>(y < 20 ? y : 39 - y) / 6.0f;
      const float edge = (u < 0.3f ? u / 0.3f : 1.0f) * (v < 1.0f ? v : 1.0f);
      float *pixel = &canvas->pixels[PixelIndex(canvas->width, x, y) * 4];
      pixel[3] = 0.60f * edge * edge * (3.0f - 2.0f * edge);
    }
  }
}

static Mask TabMask(const Canvas &canvas) {
  return PolyMask(canvas, {{6, 118}, {26, 24}, {44, 8}, {226, 8}, {244, 24}, {264, 118}});
}

void DrawTab(Canvas *canvas) {
  const Mask plate = TabMask(*canvas);
  Shadow(canvas, plate, 2, 2, 4, 0.5f);
  Plate(canvas, plate, lightEnamel, 61);
  Scratch(canvas, plate, 18, 62);
  Coat(canvas, PolyMask(*canvas, {{38, 22}, {46, 15}, {224, 15}, {232, 22}}), Mustard, 0.44f, 63);
  Engrave(canvas, LineMask(*canvas, {{20, 106}, {250, 106}}, 2), 0.6f);
  Rivets(canvas, {{34, 94}, {236, 94}}, 4.5, Steel, 64);
}

// What lies over the tab of the list that isn't shown.
void DrawTabShade(Canvas *canvas) { Fill(canvas, TabMask(*canvas), Black, 0.62f); }

// A round key with a mark.
static void DrawKey(Canvas *canvas, bool check, bool lit, const Hue &light, uint32_t seed) {
  const Mask body = ChamferMask(*canvas, 5, 5, 92, 92, 26);
  Shadow(canvas, body, 2, 5, 3, 0.55f);
  Plate(canvas, body, {DarkSteel, Steel, 6.0f, 1.3f, 0.16f, 0.3f, 0.22f, false}, seed);
  const Mask well = CircleMask(*canvas, 51, 51, 34);
  Fill(canvas, well, Pit, 1.0f);
  Sink(canvas, well, 6, 0.9f);
  const Mask cap = CircleMask(*canvas, 51, 51, 30);
  Plate(canvas, cap, {lit ? Mixed(Iron, light, 0.25f) : Iron, Steel, 6.0f, 1.4f, 0.12f, 0.1f, 0.15f, false}, seed + 1);
  const Mask mark = check ? LineMask(*canvas, {{36, 52}, {47, 63}, {67, 39}}, 8)
                          : Either(LineMask(*canvas, {{39, 39}, {63, 63}}, 8), LineMask(*canvas, {{63, 39}, {39, 63}}, 8));
  Engrave(canvas, mark, 0.9f);
  Fill(canvas, mark, lit ? Mixed(light, White, 0.35f) : Scaled(light, 0.45f), 0.95f);
  if (lit) Glow(canvas, mark, light, 9, 0.9f);
}

void DrawOkDull(Canvas *canvas) {
  DrawKey(canvas, true, false, GreenLight, 71);
}

void DrawOkBright(Canvas *canvas) {
  DrawKey(canvas, true, true, GreenLight, 71);
}

void DrawCancelDull(Canvas *canvas) {
  DrawKey(canvas, false, false, RedLight, 72);
}

void DrawCancelBright(Canvas *canvas) {
  DrawKey(canvas, false, true, RedLight, 72);
}

static void DrawExpander(Canvas *canvas, bool plus, bool lit) {
  const Mask body = ChamferMask(*canvas, 1, 1, 23, 23, 4);
  Plate(canvas, body, {lit ? Gunmetal : DarkSteel, Steel, 3.0f, 1.3f, 0.1f, 0.15f, 0.15f, false}, 81);
  Mask mark = RoundMask(*canvas, 6, 11, 13, 3, 0.5);
  if (plus) mark = Either(mark, RoundMask(*canvas, 11, 6, 3, 13, 0.5));
  Engrave(canvas, mark, 0.9f);
  Fill(canvas, mark, lit ? Mixed(Amber, White, 0.4f) : Mixed(Amber, Steel, 0.6f), 1.0f);
  if (lit) Glow(canvas, mark, Amber, 4, 0.8f);
}

void DrawPlusDull(Canvas *canvas) {
  DrawExpander(canvas, true, false);
}

void DrawPlusBright(Canvas *canvas) {
  DrawExpander(canvas, true, true);
}

void DrawMinusDull(Canvas *canvas) {
  DrawExpander(canvas, false, false);
}

void DrawMinusBright(Canvas *canvas) {
  DrawExpander(canvas, false, true);
}
