// More windows. Frames have colours of their own, so that they stand in a material of glass too. Glass is put in
// last and clear: the worn look would cloud it.
#include "palette.h"
#include "shapes_more.h"

static void AddGlass(Grid &grid, const Grid &glass) {
  Grid both = glass;
  Add(both, grid);
  grid = both;
}

// A thin cross over a flat pane.
void DrawSkylight(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 4, 15}, OffWhite);
  Box(grid, {2, 0, 2, 13, 4, 13}, Nothing);
  Box(grid, {7, 1, 2, 8, 3, 13}, OffWhite);
  Box(grid, {2, 1, 7, 13, 3, 8}, OffWhite);
  for (const int x : {1, 14}) {
    for (const int z : {1, 14}) At(grid, x, 4, z) = Brass;
  }
  Weather(grid, 2100);
  Grid glass;
  Box(glass, {2, 2, 2, 13, 2, 13}, {150, 206, 200, 70});
  AddGlass(grid, glass);
}

void DrawBubble(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.6f, 0, 2, Graphite, 5.8f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.0f, 3, 3, Brass, 6.0f);
  Weather(grid, 2101);
  Grid glass;
  Ball(glass, 7.5f, 2.0f, 7.5f, 7.2f, {150, 206, 200, 70}, 6.2f);
  Box(glass, {0, 0, 0, 15, 2, 15}, Nothing);
  AddGlass(grid, glass);
}

void DrawSlit(Grid &grid, int) {
  Box(grid, {0, 0, 4, 15, 15, 11}, OffWhite);
  Box(grid, {2, 6, 0, 13, 9, 15}, Nothing);
  for (const int z : {3, 12}) {
    Box(grid, {1, 5, z, 14, 10, z}, Graphite);
    Box(grid, {2, 6, z, 13, 9, z}, Nothing);
    Box(grid, {1, 2, z, 14, 2, z}, Oxide);
  }
  Weather(grid, 2102);
  Grid glass;
  Box(glass, {2, 6, 7, 13, 9, 8}, {150, 206, 200, 80});
  AddGlass(grid, glass);
}

// Nine small panes.
void DrawMullion(Grid &grid, int) {
  BoxEdges(grid, {0, 0, 6, 15, 15, 9}, 1, OffWhite);
  for (const int i : {5, 10}) {
    Box(grid, {i, 0, 6, i, 15, 9}, Bone);
    Box(grid, {0, i, 6, 15, i, 9}, Bone);
  }
  Weather(grid, 2103);
  Grid glass;
  Box(glass, {1, 1, 7, 14, 14, 8}, {176, 222, 214, 66});
  AddGlass(grid, glass);
}

// The front of a cockpit: a pane that leans back at 45 degrees.
void DrawSlopedGlass(Grid &grid, int) {
  for (const int x : {0, 15}) {
    for (int y = 0; y < GridEdge; y++) Box(grid, {x, y, y, x, y, y + 1}, OffWhite);
  }
  Box(grid, {0, 0, 0, 15, 0, 2}, Graphite);
  Box(grid, {0, 15, 14, 15, 15, 15}, Graphite);
  for (int y = 0; y < GridEdge; y++) Box(grid, {7, y, y, 8, y, y + 1}, Graphite);
  Weather(grid, 2104);
  Grid glass;
  for (int y = 1; y < 15; y++) Box(glass, {1, y, y, 14, y, y + 1}, {150, 206, 200, 72});
  AddGlass(grid, glass);
}

void DrawGlassTile(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 1, 15}, Stuff(255));
  for (const int x : {0, 14}) {
    for (const int z : {0, 14}) Box(grid, {x, 0, z, x + 1, 2, z + 1}, Brass);
  }
}

// Two panes that meet in a post.
void DrawGlassCorner(Grid &grid, int) {
  Box(grid, {6, 0, 6, 9, 15, 9}, OffWhite);
  for (const int y : {0, 15}) {
    Box(grid, {6, y, 6, 15, y, 9}, Bone);
    Box(grid, {6, y, 6, 9, y, 15}, Bone);
  }
  Weather(grid, 2106);
  Grid glass;
  Box(glass, {7, 1, 7, 15, 14, 8}, {176, 222, 214, 66});
  Box(glass, {7, 1, 7, 8, 14, 15}, {176, 222, 214, 66});
  AddGlass(grid, glass);
}

// A big round window in a full block, seen through on the way along z.
void DrawOculus(Grid &grid, int) {
  Box(grid, WholeGrid, OffWhite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 7.4f, 0, 15, Graphite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.6f, 0, 15, Nothing);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.6f, 6, 9, Brass, 5.6f);
  Box(grid, {7, 1, 7, 8, 14, 8}, Brass);
  Weather(grid, 2107);
  Grid glass;
  Bar(glass, Axis::Z, 7.5f, 7.5f, 5.8f, 7, 8, {150, 206, 200, 70});
  AddGlass(grid, glass);
}
