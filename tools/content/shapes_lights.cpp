// Lamps.
#include "palette.h"
#include "shapes.h"

// A round lamp: a dome of light in a dish.
void DrawCeilingLamp(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.9f, 0, 0, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.9f, 1, 3, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.6f, 2, 3, Nothing);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.6f, 2, 2, Brass);
  Ball(grid, 7.5f, 2.0f, 7.5f, 4.7f, WarmGlow);
  Box(grid, {0, 0, 0, 15, 0, 15}, Nothing);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.9f, 0, 0, Graphite);
  for (const int end : {1, 14}) {
    Box(grid, {end, 0, 7, end, 3, 8}, Brass);
    Box(grid, {7, 0, end, 8, 3, end}, Brass);
  }
  Weather(grid, 70, 0.7f);
}

// A tube in a trough, from block to block.
void DrawStripLamp(Grid &grid, int) {
  Box(grid, {0, 0, 4, 15, 1, 11}, OffWhite);
  Box(grid, {0, 2, 4, 15, 3, 5}, OffWhite);
  Box(grid, {0, 2, 10, 15, 3, 11}, OffWhite);
  Bar(grid, Axis::X, 3.0f, 7.5f, 1.8f, 0, 15, ColdGlow);
  for (const int x : {0, 14}) Box(grid, {x, 0, 5, x + 1, 4, 10}, Graphite);
  Weather(grid, 71, 0.7f);
}

void DrawLantern(Grid &grid, int) {
  Box(grid, {4, 0, 4, 11, 1, 11}, Graphite);
  Box(grid, {5, 2, 5, 10, 10, 10}, AmberGlow);
  Box(grid, {6, 2, 6, 9, 11, 9}, WarmGlow);
  BoxEdges(grid, {4, 1, 4, 11, 11, 11}, 1, Graphite);
  for (const int y : {6, 11}) BoxEdges(grid, {4, y, 4, 11, y, 11}, 1, Brass);
  Box(grid, {5, 12, 5, 10, 12, 10}, Graphite);
  Box(grid, {6, 13, 7, 6, 14, 8}, Brass);
  Box(grid, {9, 13, 7, 9, 14, 8}, Brass);
  Box(grid, {6, 15, 7, 9, 15, 8}, Brass);
  Weather(grid, 72, 0.7f);
}

// A warning light whose bright side goes round; `form` is the frame.
void DrawBeacon(Grid &grid, int form) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.4f, 0, 3, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.4f, 0, 0, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.2f, 4, 11, {196, 60, 46, 255});
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 12, 12, {196, 60, 46, 255});
  const Region side[4] = {{0, 4, 0, 7, 11, 7}, {8, 4, 0, 15, 11, 7}, {8, 4, 8, 15, 11, 15}, {0, 4, 8, 7, 11, 15}};
  Tint(grid, side[form], {255, 206, 180, 255});
  for (const int x : {3, 12}) {
    Box(grid, {x, 3, 7, x, 13, 8}, Graphite);
    Box(grid, {7, 3, x, 8, 13, x}, Graphite);
  }
  Box(grid, {3, 13, 7, 12, 13, 8}, Graphite);
  Box(grid, {7, 13, 3, 8, 13, 12}, Graphite);
  Weather(grid, 73, 0.7f);
}
