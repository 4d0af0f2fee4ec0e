// Hull plating: the flat plate, and the styles of edges, corners and plates that close a hull.
#include "noise.h"
#include "palette.h"
#include "shapes_families.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace {

// How an edge falls off from one plate to the other.
enum class Fall { Chamfer, Round, Stepped, Narrow, Notch, Cove };

// What covers the surface.
using Cover = Paint (*)(int a, int b, int look);

struct Style {
  Fall fall;
  Cover cover;
  bool hollow = false;  // a thin shell
};

}  // namespace

static bool OnBorder(int a, int b, int width) {
  return std::min({a, 15 - a, b, 15 - b}) < width;
}

static Paint Panels(int a, int b, int look) {
  const int seam = 5 + look % 3;
  if (OnBorder(a, b, 1)) return Stuff(196);
  if (b == seam || (a == 9 && b > seam)) return Stuff(158);
  if ((a == 2 || a == 13) && (b == 2 || b == 13)) return Brass;
  return Stuff(a > 9 && b > seam ? 216 : 236);
}

static Paint Smooth(int a, int b, int) {
  return Stuff(OnBorder(a, b, 1) ? 210 : 240);
}

static Paint Terraces(int a, int b, int) {
  return Stuff(b % 4 == 3 ? 244 : a % 8 == 0 ? 190 : 216);
}

static Paint Ribs(int a, int, int) {
  return a % 4 < 2 ? Stuff(240) : Stuff(186);
}

static Paint Canopy(int a, int b, int look) {
  const bool mullion = (look == 3 && a / 2 == 4) || (look == 4 && (a / 2 == 4 || b / 2 == 4)) ||
                       (look == 5 && (a == b || a == 15 - b)) || (look == 6 && OnBorder(a, b, 4));
  if (OnBorder(a, b, 2) || mullion) return OnBorder(a, b, 1) ? Graphite : OffWhite;
  return {150, 206, 200, 70};
}

static Paint Bolted(int a, int b, int) {
  if (OnBorder(a, b, 1)) return Stuff(170);
  if (OnBorder(a, b, 2)) return Stuff(226);
  if ((a == 3 || a == 12) && (b == 3 || b == 12)) return Graphite;
  return Stuff(204);
}

static Paint GlowLine(int a, int b, int) {
  if (b == 7 || b == 8) return a == 0 || a == 15 ? Graphite : ColdGlow;
  if (b == 6 || b == 9) return Graphite;
  return Stuff(OnBorder(a, b, 1) ? 200 : 230);
}

static Paint Tiles(int a, int b, int look) {
  if (a % 4 == 3 || b % 4 == 3) return Stuff(120);
  const float tone = LatticeValue(a / 4, b / 4, look, 580);
  return Scaled(Charcoal, 0.9f + tone * 0.5f);
}

static Paint Bricks(int a, int b, int look) {
  const int course = b / 4;
  const int along = (a + course % 2 * 4) & 15;
  if (b % 4 == 3 || along % 8 == 7) return Stuff(130);
  const float tone = LatticeValue(along / 8, course, look, 610);
  return Stuff(196 + static_cast<int>(tone * 56.0f));
}

static Paint Stripes(int a, int b, int) {
  if (b < 4 || b > 11) return Stuff(b == 3 || b == 12 ? 190 : 228);
  return (a + b) % 8 < 4 ? Mustard : Charcoal;
}

static Paint Quilt(int a, int b, int) {
  const int rise = (a + b) % 8;
  const int fall = (a - b + 16) % 8;
  if (rise == 0 && fall == 0) return Brass;
  return rise == 0 || fall == 0 ? Scaled(Bone, 0.84f) : OffWhite;
}

static constexpr Style styles[] = {
    {Fall::Chamfer, Panels}, {Fall::Round, Smooth}, {Fall::Stepped, Terraces}, {Fall::Round, Ribs},
    {Fall::Round, Canopy, true}, {Fall::Narrow, Bolted}, {Fall::Notch, GlowLine}, {Fall::Chamfer, Tiles},
    {Fall::Stepped, Bricks}, {Fall::Narrow, Stripes}, {Fall::Cove, Quilt},
};

// Whether the section of an edge is filled u and v voxels out from the two plates that it joins.
static bool Section(Fall fall, int u, int v) {
  switch (fall) {
    case Fall::Chamfer: return u + v <= 16;
    case Fall::Round: return u * u + v * v <= 240;
    case Fall::Stepped: return u / 4 + v / 4 <= 3;
    case Fall::Narrow: return u + v <= 22;
    case Fall::Notch: return u < 10 || v < 10;
    case Fall::Cove: return (18 - u) * (18 - u) + (18 - v) * (18 - v) >= 130;
  }
  return true;
}

// The same for a corner, which meets three edges: at a joined side it has the edge's section.
static bool Solid(Fall fall, const std::array<int, 3> &out) {
  const auto [u, v, w] = out;
  if (fall == Fall::Chamfer) return u + v + w <= 16;
  if (fall == Fall::Round) return u * u + v * v + w * w <= 240;
  if (fall == Fall::Stepped) return u / 4 + v / 4 + w / 4 <= 3;
  return Section(fall, u, v) && Section(fall, v, w) && Section(fall, u, w);
}

// How far a place lies out from the plates that an edge (w = 0) or a corner joins.
static std::array<int, 3> Outward(int look, int x, int y, int z) {
  if (look == 0) return {15 - x, 15 - y, 0};
  return {15 - x, y, z};
}

// True when the place is filled and hides behind at least two filled places on each way out.
static bool Inner(Fall fall, std::array<int, 3> out, int look) {
  for (int a = 0; a < (look == 0 ? 2 : 3); a++) out[static_cast<size_t>(a)] += 2;
  return std::max({out[0], out[1], out[2]}) < 16 && Solid(fall, out);
}

// The picture's two axes at a place are those along the side that lies farthest out.
static Paint CoverAt(const Style &style, int look, int x, int y, int z) {
  const auto [u, v, w] = Outward(look, x, y, z);
  if (look == 0) return u > v ? style.cover(z, y, look) : style.cover(z, x, look);
  if (u >= v && u >= w) return style.cover(z, y, look);
  return v >= w ? style.cover(z, x, look) : style.cover(x, y, look);
}

static void DrawFall(Grid &grid, const Style &style, int look) {
  for (int x = 0; x < GridEdge; x++) {
    for (int y = 0; y < GridEdge; y++) {
      for (int z = 0; z < GridEdge; z++) {
        const std::array<int, 3> out = Outward(look, x, y, z);
        if (!Solid(style.fall, out) || (style.hollow && Inner(style.fall, out, look))) continue;
        At(grid, x, y, z) = CoverAt(style, look, x, y, z);
      }
    }
  }
}

static void Slits(Grid &top, const Dice &) {
  for (int x = 4; x < 12; x += 2) Box(top, {x, 15, 4, x, 15, 11}, Charcoal);
}

static void Ring(Grid &top, const Dice &) {
  Bar(top, Axis::Y, 7.5f, 7.5f, 5.4f, 15, 15, Graphite, 4.2f);
  Box(top, {7, 15, 5, 8, 15, 10}, Oxide);
}

static void Cross(Grid &top, const Dice &) {
  Box(top, {7, 15, 1, 8, 15, 14}, Stuff(176));
  Box(top, {1, 15, 7, 14, 15, 8}, Stuff(176));
}

static void Lines(Grid &top, const Dice &seed) {
  Dice dice = seed;
  for (int i = 0; i < 3; i++) {
    const int x = 2 + i * 4 + RollInt(&dice, 0, 1);
    Box(top, {x, 15, 1, x, 15, RollInt(&dice, 6, 14)}, i == 1 ? Oxide : Graphite);
  }
}

static void Boxes(Grid &top, const Dice &seed) {
  Dice dice = seed;
  for (int i = 0; i < 6; i++) {
    const int x = RollInt(&dice, 2, 10);
    const int z = RollInt(&dice, 2, 10);
    const Paint shade = Stuff(RollInt(&dice, 150, 250));
    Box(top, {x, 15, z, x + RollInt(&dice, 1, 3), 15, z + RollInt(&dice, 1, 3)}, shade);
  }
}

// A full plate, alike on all sides, with a fitting that its look chooses.
static void DrawPlate(Grid &grid, const Style &style, int look, const Dice &dice) {
  Grid top;
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) At(top, x, 15, z) = style.cover(x, z, look);
  }
  void (*const fittings[])(Grid &, const Dice &) = {Slits, Ring, Boxes, Cross, Lines};
  if (look > 2 && !style.hollow) fittings[look - 3](top, dice);
  if (!style.hollow) Box(grid, WholeGrid, Stuff(210));
  SixSides(grid, top);
}

void DrawPlating(Grid &grid, int form) {
  const Style &style = styles[form / PlatingLooks];
  const int look = form % PlatingLooks;
  if (look < 2) DrawFall(grid, style, look);
  if (look >= 2) DrawPlate(grid, style, look, Dice{static_cast<uint32_t>(form) * 7919U + 5U});
  Weather(grid, 251U + static_cast<uint32_t>(form), 0.6f);
}

// As thick as the cell, so that it meets every edge, and alike on all sides, since it may face either way.
void DrawFlatPlating(Grid &grid, int) {
  Grid top;
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) At(top, x, 15, z) = Panels(x, z, 0);
  }
  Box(grid, WholeGrid, Stuff(218));
  SixSides(grid, top);
  Weather(grid, 250, 0.6f);
}
