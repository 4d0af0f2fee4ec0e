// Wall panels, vents and tanks. What hangs on a wall has z = 15 at its upper end.
#include "palette.h"
#include "shapes_more.h"

static const Paint bulbs[4] = {TealGlow, AmberGlow, RedGlow, Steel};

static void Studs(Grid &grid, int y) {
  for (const int x : {1, 14}) {
    for (const int z : {1, 14}) At(grid, x, y, z) = Brass;
  }
}

void DrawWallPanel(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 1, 15}, Stuff(188));
  for (const int x : {0, 8}) {
    Box(grid, {x, 2, 0, x + 7, 2, 15}, Stuff(232));
    Box(grid, {x + 2, 2, 4, x + 5, 2, 11}, Stuff(206));
    Box(grid, {x, 2, 0, x, 2, 15}, Stuff(170));
  }
  Box(grid, {0, 2, 0, 15, 3, 1}, Graphite);
  Box(grid, {0, 2, 13, 15, 2, 13}, Oxide);
  Weather(grid, 2110);
}

void DrawSwitchboard(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 2, 15}, Graphite);
  Box(grid, {1, 2, 1, 14, 3, 14}, OffWhite);
  for (int x = 3; x < 14; x += 3) {
    for (int z = 3; z < 11; z += 3) {
      Box(grid, {x, 4, z, x, 4, z + 1}, Charcoal);
      At(grid, x, 5, (x + z) % 2 == 0 ? z + 1 : z) = Brass;
    }
    At(grid, x, 4, 12) = bulbs[x / 3 % 3];
  }
  Weather(grid, 2111);
}

void DrawFusebox(Grid &grid, int) {
  Box(grid, {2, 0, 1, 13, 5, 14}, Stuff(222));
  Box(grid, {3, 6, 2, 12, 6, 13}, Stuff(236));
  Box(grid, {4, 6, 8, 11, 6, 12}, Mustard);
  Box(grid, {7, 6, 10, 8, 6, 12}, Charcoal);
  At(grid, 7, 6, 8) = Charcoal;
  for (int z = 3; z < 7; z += 2) Box(grid, {5, 6, z, 10, 6, z}, Charcoal);
  Box(grid, {12, 6, 6, 12, 7, 8}, Brass);
  Bar(grid, Axis::Z, 7.5f, 2.5f, 1.6f, 0, 15, Graphite);
  Weather(grid, 2112);
}

void DrawKeypad(Grid &grid, int) {
  Box(grid, {4, 0, 2, 11, 2, 13}, OffWhite);
  Box(grid, {5, 3, 10, 10, 3, 12}, {40, 76, 78, 255});
  Box(grid, {6, 3, 11, 8, 3, 11}, TealGlow);
  for (int x = 5; x < 11; x += 2) {
    for (int z = 3; z < 9; z += 2) At(grid, x, 3, z) = z == 3 && x == 9 ? Oxide : Charcoal;
  }
  Weather(grid, 2113);
}

void DrawGauges(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 1, 15}, Stuff(216));
  const int centre[3][2] = {{4, 11}, {11, 11}, {7, 4}};
  for (const auto &c : centre) {
    const float u = static_cast<float>(c[0]);
    const float v = static_cast<float>(c[1]);
    Bar(grid, Axis::Y, u, v, 3.2f, 2, 3, Brass);
    Bar(grid, Axis::Y, u, v, 2.4f, 3, 3, {236, 232, 214, 255});
    Box(grid, {c[0], 3, c[1], c[0], 3, c[1] + 2}, Oxide);
    At(grid, c[0], 3, c[1]) = Charcoal;
  }
  Box(grid, {12, 2, 1, 13, 4, 5}, Oxide);
  Studs(grid, 2);
  Weather(grid, 2114);
}

// Slanting blades over a dark duct.
void DrawLouvre(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 4, 15}, Stuff(226));
  Box(grid, {2, 1, 2, 13, 4, 13}, Nothing);
  Box(grid, {2, 0, 2, 13, 0, 13}, Charcoal);
  for (int z = 2; z < 13; z += 3) {
    for (int y = 1; y < 5; y++) Box(grid, {2, y, z + (4 - y) / 2, 13, y, z + (4 - y) / 2}, Stuff(204));
  }
  Studs(grid, 5);
  Weather(grid, 2115);
}

// A round grille.
void DrawGrille(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.4f, 0, 2, Stuff(226));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.2f, 1, 2, Charcoal);
  for (float r = 1.6f; r < 6.0f; r += 2.2f) Bar(grid, Axis::Y, 7.5f, 7.5f, r, 2, 2, Steel, r - 1.0f);
  Box(grid, {7, 2, 1, 8, 3, 14}, Steel);
  Box(grid, {1, 2, 7, 14, 3, 8}, Steel);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.6f, 3, 3, Oxide);
  Weather(grid, 2116);
}

// A short chimney with a hood.
void DrawExhaust(Grid &grid, int) {
  Box(grid, {2, 0, 2, 13, 1, 13}, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.6f, 2, 9, Stuff(220));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.2f, 4, 4, Brass);
  for (const int x : {4, 11}) Box(grid, {x, 10, 7, x, 12, 8}, Steel);
  for (const int z : {4, 11}) Box(grid, {7, 10, z, 8, 12, z}, Steel);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 9, 9, Charcoal);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.2f, 13, 13, Stuff(236));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.0f, 14, 14, Stuff(236));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.6f, 15, 15, Oxide);
  Weather(grid, 2117);
}

void DrawGlobeTank(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.0f, 0, 1, Graphite);
  for (const int x : {3, 11}) {
    for (const int z : {3, 11}) Box(grid, {x, 0, z, x + 1, 6, z + 1}, Steel);
  }
  Ball(grid, 7.5f, 8.4f, 7.5f, 6.9f, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.3f, 8, 8, Oxide, 6.0f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.8f, 15, 15, Brass);
  Weather(grid, 2120);
}

void DrawCanisters(Grid &grid, int) {
  Box(grid, {0, 0, 1, 15, 0, 14}, Graphite);
  const Paint colours[4] = {Oxide, Teal, Mustard, Bone};
  int next = 0;
  for (const float x : {3.5f, 11.5f}) {
    for (const float z : {4.0f, 11.0f}) {
      Bar(grid, Axis::Y, x, z, 3.1f, 1, 12, colours[next++]);
      Bar(grid, Axis::Y, x, z, 2.2f, 13, 13, Steel);
      Bar(grid, Axis::Y, x, z, 0.9f, 14, 15, Brass);
    }
  }
  for (const int y : {4, 10}) BoxEdges(grid, {0, y, 1, 15, y, 14}, 1, Graphite);
  Weather(grid, 2121);
}

// A cold tank with frost on its lower half.
void DrawDewar(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.6f, 1, 11, {206, 222, 228, 255});
  Ball(grid, 7.5f, 10.0f, 7.5f, 5.5f, {206, 222, 228, 255});
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.8f, 1, 4, {232, 242, 246, 255});
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.2f, 0, 0, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.1f, 7, 8, {92, 142, 190, 255}, 5.0f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.4f, 14, 15, Brass);
  Box(grid, {7, 14, 7, 13, 14, 8}, Brass);
  Box(grid, {13, 2, 7, 13, 14, 8}, Brass);
  Weather(grid, 2122);
}

// A long tank on two cradles, along x.
void DrawFuelTank(Grid &grid, int) {
  for (const int x : {2, 11}) Box(grid, {x, 0, 1, x + 2, 6, 14}, Graphite);
  Bar(grid, Axis::X, 8.0f, 7.5f, 6.4f, 1, 14, Stuff(226));
  Bar(grid, Axis::X, 8.0f, 7.5f, 5.0f, 0, 15, Stuff(206));
  for (const int x : {3, 12}) Bar(grid, Axis::X, 8.0f, 7.5f, 6.9f, x, x, Oxide, 5.6f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.9f, 14, 15, Brass);
  Box(grid, {6, 5, 0, 9, 10, 1}, Charcoal);
  Box(grid, {7, 6, 0, 8, 9, 0}, AmberGlow);
  Weather(grid, 2123);
}
