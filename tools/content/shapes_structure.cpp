// Structure: beams, lattices, floors, pipes.
#include "palette.h"
#include "shapes.h"

void DrawStrut(Grid &grid, int) {
  Box(grid, {5, 0, 5, 10, 15, 10}, Stuff(226));
  Box(grid, {7, 0, 4, 8, 15, 11}, Nothing);
  Box(grid, {4, 0, 7, 11, 15, 8}, Nothing);
  Box(grid, {6, 0, 6, 9, 15, 9}, Stuff(188));
  for (const int y : {0, 14}) Box(grid, {4, y, 4, 11, y + 1, 11}, Stuff(240));
  Box(grid, {5, 7, 5, 10, 8, 10}, Oxide);
  Weather(grid, 50);
}

void DrawGirder(Grid &grid, int) {
  Box(grid, {2, 0, 2, 13, 15, 4}, Stuff(232));
  Box(grid, {2, 0, 11, 13, 15, 13}, Stuff(232));
  Box(grid, {6, 0, 5, 9, 15, 10}, Stuff(200));
  for (const int y : {3, 11}) Bar(grid, Axis::X, static_cast<float>(y) + 0.5f, 7.5f, 2.1f, 0, 15, Nothing);
  for (int y = 1; y < GridEdge; y += 4) {
    for (const int z : {2, 13}) {
      for (const int x : {3, 12}) At(grid, x, y, z) = Brass;
    }
  }
  Weather(grid, 51);
}

// Four uprights with crossed braces on each side.
void DrawTruss(Grid &grid, int) {
  for (int i = 2; i < 14; i++) {
    Box(grid, {i, i, 0, i + 1, i, 1}, Stuff(206));
    Box(grid, {14 - i, i, 0, 15 - i, i, 1}, Stuff(206));
  }
  Box(grid, {6, 6, 0, 9, 9, 1}, Oxide);
  Box(grid, {0, 0, 0, 2, 15, 2}, Stuff(240));
  Box(grid, {0, 0, 0, 15, 1, 1}, Stuff(226));
  Box(grid, {0, 14, 0, 15, 15, 1}, Stuff(226));
  FourSides(grid);
  Weather(grid, 52, 0.8f);
}

void DrawPillar(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.4f, 0, 15, Stuff(228));
  for (const int at : {5, 10}) {
    Box(grid, {at, 3, 0, at, 12, 2}, Nothing);
    Box(grid, {0, 3, at, 2, 12, at}, Nothing);
    Box(grid, {at, 3, 13, at, 12, 15}, Nothing);
    Box(grid, {13, 3, at, 15, 12, at}, Nothing);
  }
  for (const int end : {0, 14}) Bar(grid, Axis::Y, 7.5f, 7.5f, 6.9f, end, end + 1, Stuff(240));
  for (const int end : {2, 13}) Bar(grid, Axis::Y, 7.5f, 7.5f, 6.1f, end, end, Brass);
  Weather(grid, 53);
}

// A floor that stands out from the surface it is put against.
void DrawGrate(Grid &grid, int) {
  for (int i = 1; i < GridEdge; i += 4) {
    Box(grid, {i, 0, 7, i + 1, 15, 7}, Stuff(212));
    Box(grid, {0, i, 8, 15, i + 1, 8}, Stuff(186));
  }
  BoxEdges(grid, {0, 0, 6, 15, 15, 9}, 2, Stuff(236));
  Box(grid, {2, 2, 6, 13, 13, 6}, Nothing);
  Box(grid, {2, 2, 9, 13, 13, 9}, Nothing);
  Weather(grid, 54, 0.7f);
}

void DrawRailing(Grid &grid, int) {
  for (const int x : {1, 13}) Box(grid, {x, 0, 7, x + 1, 12, 8}, Stuff(210));
  Box(grid, {0, 12, 6, 15, 13, 9}, Oxide);
  Box(grid, {0, 6, 7, 15, 7, 8}, Stuff(226));
  Box(grid, {0, 0, 6, 3, 0, 9}, Stuff(236));
  Box(grid, {12, 0, 6, 15, 0, 9}, Stuff(236));
  Weather(grid, 55, 0.7f);
}

// Rungs on two rails, along z on the surface.
void DrawLadder(Grid &grid, int) {
  for (const int x : {2, 12}) Box(grid, {x, 3, 0, x + 1, 4, 15}, Stuff(226));
  for (int z = 2; z < GridEdge; z += 4) Box(grid, {4, 3, z, 11, 4, z}, Brass);
  for (const int x : {2, 12}) {
    for (const int z : {1, 13}) Box(grid, {x, 0, z, x + 1, 2, z + 1}, Graphite);
  }
  Weather(grid, 56, 0.7f);
}

static void Flange(Grid &grid, int low, int high) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.4f, low, high, Graphite);
}

void DrawPipe(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.3f, 0, 15, Stuff(226), 2.8f);
  Flange(grid, 0, 1);
  Flange(grid, 14, 15);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.8f, 0, 15, Nothing);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.6f, 7, 8, Oxide, 2.8f);
  Weather(grid, 57);
}

// From the surface to the side at z = 15.
void DrawPipeBend(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.3f, 0, 8, Stuff(226));
  Bar(grid, Axis::Z, 7.5f, 7.5f, 4.3f, 8, 15, Stuff(226));
  Ball(grid, 7.5f, 7.5f, 7.5f, 4.4f, Stuff(226));
  Flange(grid, 0, 1);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 5.4f, 14, 15, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.8f, 0, 7, Nothing);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 2.8f, 8, 15, Nothing);
  Weather(grid, 58);
}

void DrawPipeCross(Grid &grid, int) {
  Grid arm;
  Bar(arm, Axis::Y, 7.5f, 7.5f, 4.3f, 0, 15, Stuff(226));
  Bar(arm, Axis::Y, 7.5f, 7.5f, 5.4f, 0, 0, Graphite);
  Bar(arm, Axis::Y, 7.5f, 7.5f, 5.4f, 15, 15, Graphite);
  Ball(grid, 7.5f, 7.5f, 7.5f, 6.0f, Oxide);
  Add(grid, arm);
  Add(grid, Turned(arm, Axis::X));
  Add(grid, Turned(arm, Axis::Z));
  Bar(grid, Axis::X, 7.5f, 7.5f, 2.8f, 0, 15, Nothing);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.8f, 0, 15, Nothing);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 2.8f, 0, 15, Nothing);
  Weather(grid, 59);
}

void DrawValve(Grid &grid, int) {
  DrawPipe(grid, 0);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.4f, 5, 10, Brass, 2.8f);
  Box(grid, {7, 7, 0, 8, 8, 3}, Steel);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 4.8f, 0, 0, RedGlow, 3.4f);
  Tint(grid, {0, 0, 0, 15, 15, 0}, Oxide);
  Box(grid, {3, 7, 0, 12, 8, 0}, Oxide);
  Box(grid, {7, 3, 0, 8, 12, 0}, Oxide);
}

void DrawCables(Grid &grid, int) {
  const Paint colours[5] = {Charcoal, Oxide, Graphite, Teal, Charcoal};
  for (int i = 0; i < 5; i++) {
    const int x = 2 + i * 2 + i / 2;
    Box(grid, {x, 1, 0, x + 1, 2 + i % 2, 15}, colours[i]);
  }
  for (const int z : {2, 12}) {
    Box(grid, {1, 0, z, 14, 4, z + 1}, Stuff(214));
    Box(grid, {1, 0, z, 1, 3, z + 1}, Brass);
    Box(grid, {14, 0, z, 14, 3, z + 1}, Brass);
  }
  Weather(grid, 60);
}
