// Plain shapes to build from, all in the material's colour.
#include "palette.h"
#include "shapes_more.h"

#include <algorithm>

// The shade of a sloping layer: a seam every few voxels.
static Paint Layer(int y) {
  return Stuff(y % 5 == 4 ? 202 : 230);
}

// The lower and the upper half of a slope that takes two blocks.
void DrawLowRamp(Grid &grid, int) {
  for (int y = 0; y < 8; y++) Box(grid, {0, y, 2 * y, 15, y, 15}, Layer(y));
  Weather(grid, 2220, 0.6f);
}

void DrawHighRamp(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 7, 15}, Stuff(230));
  for (int y = 8; y < GridEdge; y++) Box(grid, {0, y, 2 * (y - 8), 15, y, 15}, Layer(y));
  Weather(grid, 2221, 0.6f);
}

static void Seamed(Grid &grid, Region region) {
  Box(grid, region, Stuff(232));
  BoxEdges(grid, region, 1, Stuff(204));
}

// An upright half, against z = 15.
void DrawHalf(Grid &grid, int) {
  Seamed(grid, {0, 0, 8, 15, 15, 15});
  Box(grid, {3, 7, 8, 12, 8, 8}, Stuff(196));
}

void DrawQuarter(Grid &grid, int) {
  Seamed(grid, {0, 0, 8, 15, 7, 15});
}

void DrawEighth(Grid &grid, int) {
  Seamed(grid, {0, 0, 8, 7, 7, 15});
}

// Where two wedges meet in an inner corner.
void DrawInnerCorner(Grid &grid, int) {
  for (int y = 0; y < GridEdge; y++) {
    Box(grid, {0, y, y, 15, y, 15}, Layer(y));
    Box(grid, {y, y, 0, 15, y, 15}, Layer(y));
  }
  Weather(grid, 2225, 0.6f);
}

void DrawPyramid(Grid &grid, int) {
  for (int y = 0; y < 8; y++) Box(grid, {y, y, y, 15 - y, y, 15 - y}, Layer(y));
  Weather(grid, 2226, 0.6f);
}

void DrawPole(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.6f, 0, 15, Stuff(230));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.4f, 7, 8, Stuff(204));
  Weather(grid, 2227, 0.6f);
}

void DrawColumn(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.9f, 0, 15, Stuff(230));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.9f, 0, 0, Stuff(204));
  Weather(grid, 2228, 0.6f);
}

// A quarter of a column as big as the block: the outside of a round corner.
void DrawRound(Grid &grid, int) {
  Bar(grid, Axis::X, 0.0f, 15.0f, 15.5f, 0, 15, Stuff(230));
  for (const int x : {0, 15}) Bar(grid, Axis::X, 0.0f, 15.0f, 15.5f, x, x, Stuff(204));
  Weather(grid, 2229, 0.6f);
}

// The inside of a round corner.
void DrawCove(Grid &grid, int) {
  Box(grid, WholeGrid, Stuff(226));
  Bar(grid, Axis::X, 15.0f, 0.0f, 14.6f, 0, 15, Nothing);
  Weather(grid, 2230, 0.6f);
}

// Half an arch along x: two side by side, one of them turned, span two blocks.
void DrawArch(Grid &grid, int) {
  Box(grid, {0, 0, 3, 15, 15, 12}, Stuff(228));
  Bar(grid, Axis::Z, 15.0f, 0.0f, 12.6f, 0, 15, Nothing);
  Bar(grid, Axis::Z, 15.0f, 0.0f, 13.8f, 3, 12, Stuff(196), 12.6f);
  Weather(grid, 2231, 0.6f);
}

void DrawTreads(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 7, 15}, Stuff(230));
  Box(grid, {0, 8, 8, 15, 15, 15}, Stuff(230));
  Box(grid, {0, 7, 0, 15, 7, 1}, Stuff(190));
  Box(grid, {0, 15, 8, 15, 15, 9}, Stuff(190));
  Weather(grid, 2232, 0.7f);
}

void DrawSphere(Grid &grid, int) {
  Ball(grid, 7.5f, 7.5f, 7.5f, 7.9f, Stuff(230));
  Weather(grid, 2233, 0.7f);
}

void DrawDome(Grid &grid, int) {
  Ball(grid, 7.5f, -0.5f, 7.5f, 8.2f, Stuff(230));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.9f, 0, 0, Stuff(204));
  Weather(grid, 2234, 0.7f);
}

void DrawCone(Grid &grid, int) {
  for (int y = 0; y < GridEdge; y++) {
    Bar(grid, Axis::Y, 7.5f, 7.5f, std::max(0.8f, 7.9f - 0.48f * static_cast<float>(y)), y, y, Layer(y));
  }
  Weather(grid, 2235, 0.6f);
}

void DrawRing(Grid &grid, int) {
  Bar(grid, Axis::Z, 7.5f, 7.5f, 7.9f, 4, 11, Stuff(228), 5.4f);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 7.9f, 7, 8, Stuff(200), 5.4f);
  Weather(grid, 2236, 0.7f);
}

// A knee that holds a shelf to a wall.
void DrawBracket(Grid &grid, int) {
  Box(grid, {5, 0, 0, 10, 1, 15}, Stuff(226));
  Box(grid, {5, 0, 14, 10, 15, 15}, Stuff(226));
  for (int y = 2; y < 14; y++) Box(grid, {7, y, y, 8, y, std::min(15, y + 2)}, Stuff(204));
  for (const int i : {2, 12}) {
    At(grid, 6, 2, i) = Brass;
    At(grid, 9, 2, i) = Brass;
  }
  Weather(grid, 2237, 0.7f);
}

void DrawBars(Grid &grid, int) {
  for (const int y : {2, 13}) Box(grid, {0, y, 7, 15, y + 1, 8}, Stuff(232));
  for (int x = 1; x < GridEdge; x += 4) Box(grid, {x, 0, 7, x + 1, 15, 8}, Stuff(212));
  Weather(grid, 2238, 0.7f);
}
