// Lamps in colours, and lights for work.
#include "palette.h"
#include "shapes_more.h"

// Red, green, blue, amber, white, violet: what glows, and the same with its inner light.
static const Paint glows[LampColours] = {{255, 84, 66, 255},  {112, 250, 132, 255}, {96, 160, 255, 255},
                                         {255, 184, 84, 255}, {250, 250, 246, 255}, {204, 130, 255, 255}};

static Paint Core(int form) {
  const Paint g = glows[form];
  const auto half = [](uint8_t v) { return static_cast<uint8_t>((v + 2 * 255) / 3); };
  return {half(g.red), half(g.green), half(g.blue), 255};
}

// A shallow dome for ceilings.
void DrawDomeLamp(Grid &grid, int form) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.4f, 0, 1, OffWhite);
  Ball(grid, 7.5f, -1.0f, 7.5f, 6.2f, glows[form]);
  Box(grid, {0, 0, 0, 15, 0, 15}, Nothing);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.4f, 0, 0, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.4f, 1, 1, OffWhite, 5.6f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.6f, 5, 5, Core(form));
  for (const int i : {2, 13}) {
    for (const int k : {2, 13}) Box(grid, {i, 0, k, i, 1, k}, Brass);
  }
  Weather(grid, 2020, 0.7f);
}

// A wall lamp: a bracket, and a shade that is open above and below.
void DrawWallLamp(Grid &grid, int form) {
  Box(grid, {5, 0, 4, 10, 0, 11}, Graphite);
  Box(grid, {7, 1, 7, 8, 3, 8}, Brass);
  Bar(grid, Axis::Z, 7.5f, 5.0f, 3.2f, 3, 12, glows[form]);
  Bar(grid, Axis::Z, 7.5f, 5.0f, 1.8f, 2, 13, Core(form));
  Bar(grid, Axis::Z, 7.5f, 5.0f, 3.7f, 5, 10, OffWhite, 2.6f);
  Bar(grid, Axis::Z, 7.5f, 5.0f, 3.7f, 7, 8, Oxide, 2.6f);
  Weather(grid, 2021, 0.7f);
}

// A bollard for floors and paths.
void DrawPostLamp(Grid &grid, int form) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.2f, 0, 0, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.8f, 1, 8, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 2, 2, Brass);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 9, 12, glows[form]);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.0f, 13, 14, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.0f, 15, 15, Oxide);
  for (const int i : {5, 10}) {
    for (const int k : {5, 10}) Box(grid, {i, 9, k, i, 12, k}, Graphite);
  }
  Weather(grid, 2022, 0.7f);
}

// A thin tube that runs on from block to block along x.
void DrawTubeLamp(Grid &grid, int form) {
  Box(grid, {0, 0, 6, 15, 0, 9}, Graphite);
  Bar(grid, Axis::X, 2.5f, 7.5f, 1.6f, 0, 15, glows[form]);
  Box(grid, {0, 3, 7, 15, 3, 8}, Core(form));
  for (const int x : {0, 7, 14}) Box(grid, {x, 0, 5, x + 1, 2, 5}, OffWhite);
  for (const int x : {0, 7, 14}) Box(grid, {x, 0, 10, x + 1, 2, 10}, OffWhite);
  Weather(grid, 2023, 0.7f);
}

void DrawFloodlight(Grid &grid, int) {
  Box(grid, {6, 0, 6, 9, 2, 9}, Graphite);
  for (const int x : {0, 15}) Box(grid, {x, 2, 6, x, 9, 9}, Steel);
  Box(grid, {0, 2, 6, 15, 3, 9}, Steel);
  Box(grid, {1, 5, 3, 14, 13, 12}, OffWhite);
  for (int x = 3; x < 13; x += 2) Box(grid, {x, 4, 4, x, 4, 11}, Charcoal);
  Box(grid, {2, 14, 4, 13, 14, 11}, ColdGlow);
  BoxEdges(grid, {1, 13, 3, 14, 15, 12}, 1, Graphite);
  Box(grid, {7, 14, 4, 8, 14, 11}, Graphite);
  Weather(grid, 2060, 0.7f);
}

void DrawSpotlight(Grid &grid, int) {
  Box(grid, {5, 0, 5, 10, 1, 10}, Graphite);
  Box(grid, {7, 2, 7, 8, 5, 8}, Steel);
  for (int y = 6; y < 15; y++) {
    Bar(grid, Axis::Y, 7.5f, 7.5f, 2.6f + 0.36f * static_cast<float>(y - 6), y, y, y == 12 ? Oxide : OffWhite);
  }
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.6f, 13, 14, WarmGlow);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.8f, 14, 15, Graphite, 4.6f);
  Weather(grid, 2061, 0.7f);
}

// A low marker in a ground plate.
void DrawRunway(Grid &grid, int) {
  Box(grid, {2, 0, 2, 13, 0, 13}, Graphite);
  BoxEdges(grid, {2, 0, 2, 13, 1, 13}, 1, Mustard);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.6f, 1, 2, Steel);
  Ball(grid, 7.5f, 2.0f, 7.5f, 2.8f, AmberGlow);
  Box(grid, {7, 1, 3, 8, 4, 12}, Graphite);
  Weather(grid, 2062, 0.7f);
}

// A flat panel of light with a grid of bars.
void DrawLightPanel(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 2, 15}, OffWhite);
  Box(grid, {1, 2, 1, 14, 2, 14}, ColdGlow);
  Box(grid, {5, 2, 1, 5, 3, 14}, OffWhite);
  Box(grid, {10, 2, 1, 10, 3, 14}, OffWhite);
  BoxEdges(grid, {0, 2, 0, 15, 3, 15}, 1, Graphite);
  Weather(grid, 2063, 0.7f);
}

// A light that goes on and off; `form` 1 is off.
void DrawBlinker(Grid &grid, int form) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.4f, 0, 1, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 2, 3, Brass);
  Ball(grid, 7.5f, 5.0f, 7.5f, 3.4f, form == 0 ? RedGlow : Paint{130, 50, 42, 255});
  Box(grid, {7, 3, 3, 8, 3, 12}, Graphite);
  Weather(grid, 2070, 0.7f);
}
