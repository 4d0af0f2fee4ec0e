// Hull: plates, armour, wedges, windows.
#include "palette.h"
#include "shapes.h"

// Draws one face's picture at y = 15 six times, so that a cube looks alike from all sides.
static void AllFaces(Grid &grid, void (*face)(Grid &)) {
  Grid top;
  face(top);
  SixSides(grid, top);
}

// A plain block: one plate on each side, with a fine seam round it.
void DrawCube(Grid &grid, int) {
  Box(grid, WholeGrid, Stuff(236));
  BoxEdges(grid, WholeGrid, 1, Stuff(206));
  BoxEdges(grid, {1, 0, 1, 14, 15, 14}, 1, Stuff(246));
  BoxEdges(grid, {0, 1, 1, 15, 14, 14}, 1, Stuff(246));
  BoxEdges(grid, {1, 1, 0, 14, 14, 15}, 1, Stuff(246));
}

static void PlateFace(Grid &grid) {
  Box(grid, {0, 15, 0, 15, 15, 15}, Stuff(232));
  Box(grid, {0, 15, 5, 15, 15, 5}, Stuff(150));
  Box(grid, {9, 15, 6, 9, 15, 15}, Stuff(150));
  Box(grid, {10, 15, 6, 15, 15, 15}, Stuff(214));
  for (const int x : {1, 14}) {
    for (const int z : {1, 14}) Box(grid, {x, 15, z, x, 15, z}, Stuff(255));
  }
  Box(grid, {11, 15, 8, 13, 15, 8}, Oxide);
}

void DrawHullPlate(Grid &grid, int) {
  Box(grid, WholeGrid, Stuff(220));
  AllFaces(grid, PlateFace);
  BoxEdges(grid, WholeGrid, 1, Stuff(186));
}

void DrawRibs(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 13, 15}, Stuff(204));
  for (int x = 1; x < GridEdge; x += 4) Box(grid, {x, 13, 0, x + 1, 15, 15}, Stuff(236));
  Box(grid, {0, 0, 0, 15, 2, 15}, Stuff(222));
  Weather(grid, 31);
}

void DrawArmour(Grid &grid, int) {
  Box(grid, WholeGrid, Stuff(222));
  BevelCube(grid, 3);
  for (const int x : {4, 11}) {
    for (const int z : {4, 11}) {
      Box(grid, {x, 0, z, x, 15, z}, Graphite);
      Box(grid, {x, z, 0, x, z, 15}, Graphite);
      Box(grid, {0, x, z, 15, x, z}, Graphite);
    }
  }
  Weather(grid, 32, 1.3f);
}

void DrawWedge(Grid &grid, int) {
  for (int y = 0; y < GridEdge; y++) Box(grid, {0, y, y, 15, y, 15}, Stuff(y % 5 == 4 ? 200 : 230));
  Weather(grid, 33, 0.6f);
}

void DrawCornerWedge(Grid &grid, int) {
  for (int y = 0; y < GridEdge; y++) Box(grid, {y, y, y, 15, y, 15}, Stuff(y % 5 == 4 ? 200 : 230));
  Weather(grid, 34, 0.6f);
}

void DrawSlab(Grid &grid, int form) {
  const int top = form;
  Box(grid, {0, 0, 0, 15, top, 15}, Stuff(232));
  BoxEdges(grid, {0, 0, 0, 15, top, 15}, 1, Stuff(204));
  Box(grid, {7, top, 1, 8, top, 14}, Stuff(196));
  Box(grid, {1, top, 7, 14, top, 8}, Stuff(196));
}

void DrawStep(Grid &grid, int) {
  for (int i = 0; i < 4; i++) {
    Box(grid, {0, i * 4, i * 4, 15, i * 4 + 3, 15}, Stuff(224));
    Box(grid, {0, i * 4 + 3, i * 4, 15, i * 4 + 3, i * 4}, Oxide);
  }
  Weather(grid, 36, 0.7f);
}

static void HazardFace(Grid &grid) {
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) {
      const bool border = x < 2 || x > 13 || z < 2 || z > 13;
      const Paint stripe = (x + z) / 4 % 2 == 0 ? Mustard : Charcoal;
      At(grid, x, 15, z) = border ? Stuff(214) : stripe;
    }
  }
}

void DrawHazard(Grid &grid, int) {
  Box(grid, WholeGrid, Stuff(200));
  AllFaces(grid, HazardFace);
}

// A round hatch in a plate, with a wheel.
void DrawHatch(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 9, 15}, Stuff(226));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.3f, 8, 10, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.2f, 8, 11, Stuff(206));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.4f, 14, 14, Oxide, 4.2f);
  Box(grid, {3, 14, 7, 12, 14, 8}, Oxide);
  Box(grid, {7, 14, 3, 8, 14, 12}, Oxide);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.6f, 11, 15, Brass);
  for (const int x : {1, 14}) {
    for (const int z : {1, 14}) Box(grid, {x, 9, z, x, 10, z}, Brass);
  }
  Weather(grid, 38);
}

// A cube of glass in a frame. Glass is drawn first and clear: a shade would cloud it.
void DrawWindow(Grid &grid, int) {
  BoxShell(grid, {1, 1, 1, 14, 14, 14}, 1, Stuff(255));
  Grid frame;
  BoxEdges(frame, WholeGrid, 2, OffWhite);
  BoxEdges(frame, {1, 1, 1, 14, 14, 14}, 1, Graphite);
  Weather(frame, 39, 0.6f);
  Add(grid, frame);
}

void DrawPorthole(Grid &grid, int) {
  Box(grid, {0, 0, 4, 15, 15, 11}, Stuff(226));
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.4f, 3, 12, Brass);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 5.0f, 0, 15, Nothing);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 5.0f, 7, 8, {150, 206, 200, 70});
  for (const int x : {1, 14}) {
    for (const int y : {1, 14}) Box(grid, {x, y, 3, x, y, 12}, Graphite);
  }
  Weather(grid, 40);
}

void DrawPane(Grid &grid, int) {
  Box(grid, {0, 0, 7, 15, 15, 8}, Stuff(255));
  Grid frame;
  Box(frame, {0, 0, 6, 15, 15, 9}, OffWhite);
  Box(frame, {2, 2, 0, 13, 13, 15}, Nothing);
  BoxEdges(frame, {0, 0, 6, 15, 15, 9}, 1, Bone);
  Weather(frame, 41, 0.6f);
  Add(grid, frame);
}
