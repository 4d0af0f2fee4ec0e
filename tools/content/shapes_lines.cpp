// Things that line up with their neighbours: built side by side, each takes the turn of the one before. Long ones
// run along z.
#include "palette.h"
#include "shapes_families.h"

void DrawRamp(Grid &grid, int) {
  for (int y = 0; y < GridEdge; y++) {
    Box(grid, {0, y, y, 15, y, 15}, Stuff(226));
    if (y % 3 == 1) Box(grid, {3, y, y, 12, y, y}, Charcoal);
  }
  for (const int x : {0, 14}) {
    for (int y = 0; y < GridEdge; y++) Box(grid, {x, y, y, x + 1, y, y}, Mustard);
  }
  Weather(grid, 70, 0.7f);
}

// Open treads between two stringers.
void DrawStairs(Grid &grid, int) {
  for (const int x : {0, 14}) {
    for (int i = 0; i < GridEdge; i++) Box(grid, {x, i - 4, i, x + 1, i + 1, i}, Stuff(206));
  }
  for (int i = 0; i < 4; i++) {
    Box(grid, {1, i * 4 + 2, i * 4, 14, i * 4 + 3, i * 4 + 4}, Stuff(240));
    Box(grid, {2, i * 4 + 3, i * 4, 13, i * 4 + 3, i * 4}, Oxide);
  }
  Weather(grid, 80, 0.7f);
}

// A tray with cables in it.
void DrawTray(Grid &grid, int) {
  Box(grid, {1, 0, 0, 14, 5, 15}, Stuff(224));
  Box(grid, {2, 1, 0, 13, 5, 15}, Nothing);
  const Paint cables[4] = {Charcoal, Oxide, Charcoal, Teal};
  for (int i = 0; i < 4; i++) Bar(grid, Axis::Z, 3.5f + static_cast<float>(i) * 3.0f, 2.0f, 1.3f, 0, 15, cables[i]);
  for (const int z : {3, 11}) Box(grid, {1, 4, z, 14, 5, z + 1}, Stuff(246));
  Weather(grid, 83, 0.8f);
}

void DrawHandrail(Grid &grid, int) {
  for (const int z : {3, 12}) {
    Bar(grid, Axis::Y, 7.5f, static_cast<float>(z), 2.4f, 0, 0, Graphite);
    Bar(grid, Axis::Y, 7.5f, static_cast<float>(z), 1.2f, 1, 6, Stuff(214));
  }
  Bar(grid, Axis::Z, 7.5f, 7.0f, 1.6f, 0, 15, Mustard);
  for (const int z : {0, 15}) Bar(grid, Axis::Z, 7.5f, 7.0f, 1.6f, z, z, Charcoal);
  Weather(grid, 94, 0.6f);
}

// Two rails on sleepers.
void DrawTrack(Grid &grid, int) {
  for (int z = 1; z < GridEdge; z += 4) Box(grid, {1, 0, z, 14, 1, z + 1}, Charcoal);
  for (const int x : {3, 11}) {
    Box(grid, {x - 1, 2, 0, x + 2, 2, 15}, Stuff(190));
    Box(grid, {x, 3, 0, x + 1, 4, 15}, Stuff(206));
    Box(grid, {x - 1, 5, 0, x + 2, 5, 15}, Stuff(250));
    for (int z = 1; z < GridEdge; z += 4) Box(grid, {x - 1, 2, z, x - 1, 2, z}, Brass);
  }
  Weather(grid, 240, 0.7f);
}

// A thin panel for the inside of a wall: skirting below, a rail in the middle.
void DrawWainscot(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 2, 15}, OffWhite);
  Box(grid, {0, 0, 0, 15, 3, 3}, Graphite);
  Box(grid, {0, 3, 4, 15, 3, 4}, Oxide);
  Box(grid, {0, 2, 9, 15, 3, 10}, Stuff(230));
  for (const int x : {0, 15}) Box(grid, {x, 2, 4, x, 2, 15}, Scaled(Bone, 0.8f));
  for (const int x : {3, 12}) Box(grid, {x, 2, 12, x, 2, 13}, Brass);
  Weather(grid, 270, 0.6f);
}

static void BeamFlange(Grid &grid, int y) {
  Box(grid, {1, y, 0, 14, y + 2, 15}, Stuff(238));
  for (int z = 2; z < GridEdge; z += 4) {
    for (const int x : {3, 12}) Box(grid, {x, y, z, x, y + 2, z}, Graphite);
  }
}

void DrawBeamLine(Grid &grid, int form) {
  BeamFlange(grid, 0);
  BeamFlange(grid, 13);
  if (form == 0) Box(grid, {6, 3, 0, 9, 12, 15}, Stuff(208));
  if (form == 1) Box(grid, {1, 3, 0, 3, 12, 15}, Stuff(208));
  if (form == 0) Bar(grid, Axis::X, 7.5f, 7.5f, 3.2f, 0, 15, Nothing);
  Weather(grid, 360U + static_cast<uint32_t>(form), 0.8f);
}

// Planks along z that fill the cell.
void DrawPlanking(Grid &grid, int) {
  for (int x = 0; x < GridEdge; x++) {
    const Paint plank = Scaled(Cloth, x / 4 % 2 == 0 ? 1.1f : 0.95f);
    Box(grid, {x, 0, 0, x, 15, 15}, x % 4 == 3 ? Scaled(Cloth, 0.6f) : plank);
    for (const int z : {1, 14}) {
      if (x % 4 == 1) Box(grid, {x, 0, z, x, 15, z}, Graphite);
    }
  }
  Weather(grid, 450, 0.4f);
}

// A cube of wires.
void DrawMesh(Grid &grid, int) {
  Grid top;
  for (int i = 1; i < GridEdge; i += 4) {
    Box(top, {i, 15, 0, i, 15, 15}, Stuff(214));
    Box(top, {0, 15, i, 15, 15, i}, Stuff(214));
  }
  SixSides(grid, top);
  BoxEdges(grid, WholeGrid, 1, Stuff(240));
  Weather(grid, 330, 0.5f);
}

void DrawFence(Grid &grid, int form) {
  if (form == 0) {
    for (int i = 1; i < GridEdge; i += 3) {
      Box(grid, {7, 0, i, 7, 14, i}, Stuff(206));
      Box(grid, {8, i, 0, 8, i, 15}, Stuff(190));
    }
  }
  for (const int y : {0, 14}) Box(grid, {7, y, 0, 8, y + 1, 15}, Stuff(240));
  if (form == 1) {
    Box(grid, {5, 0, 5, 10, 15, 10}, Stuff(226));
    Box(grid, {5, 12, 5, 10, 13, 10}, Oxide);
    Box(grid, {4, 0, 4, 11, 1, 11}, Graphite);
  }
  Weather(grid, 550U + static_cast<uint32_t>(form), 0.6f);
}

static void Belt(Grid &grid) {
  Box(grid, {2, 4, 0, 13, 7, 15}, Charcoal);
  for (int z = 1; z < GridEdge; z += 4) {
    for (int x = 2; x <= 13; x++) {
      const int bend = x < 8 ? x - 2 : 13 - x;
      At(grid, x, 7, (z + bend / 2) % 16) = Graphite;
    }
  }
}

void DrawConveyor(Grid &grid, int form) {
  for (const int x : {0, 14}) {
    Box(grid, {x, 3, 0, x + 1, 8, 15}, Stuff(232));
    Box(grid, {x, 5, 0, x + 1, 5, 15}, Mustard);
    for (const int z : {2, 12}) Box(grid, {x, 0, z, x + 1, 2, z + 1}, Graphite);
  }
  if (form == 0) Belt(grid);
  for (int z = 1; form == 1 && z < GridEdge; z += 4) {
    Bar(grid, Axis::X, 6.0f, static_cast<float>(z) + 0.5f, 1.7f, 2, 13, Stuff(246));
  }
  Weather(grid, 600U + static_cast<uint32_t>(form), 0.7f);
}
