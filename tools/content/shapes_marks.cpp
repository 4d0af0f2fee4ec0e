// Shapes that the game itself shows: aim markers, stand-ins, other players.
#include "palette.h"
#include "shapes.h"

void DrawAimMarker(Grid &grid, int) {
  for (const int x : {6, 9}) {
    for (const int z : {6, 9}) Box(grid, {x, 6, z, x, 9, z}, MarkerLine);
  }
  BoxEdges(grid, {6, 6, 6, 9, 9, 9}, 1, MarkerLine);
}

// Four brackets on the face that the block's rotation selects: the surface at y = 0.
void DrawFaceMarker(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 0, 15}, MarkerLine);
  Box(grid, {1, 0, 1, 14, 0, 14}, Nothing);
  Box(grid, {5, 0, 0, 10, 0, 15}, Nothing);
  Box(grid, {0, 0, 5, 15, 0, 10}, Nothing);
  for (const int x : {1, 14}) {
    for (const int z : {1, 14}) Box(grid, {x, 0, z, x, 0, z}, MarkerLine);
  }
}

void DrawCellMarker(Grid &grid, int) {
  BoxEdges(grid, WholeGrid, 1, MarkerCell);
}

// A crate-like cube in two colours that nobody would build with: a shape that this table doesn't have.
void DrawPlaceholder(Grid &grid, int) {
  const Paint light{246, 70, 214, 255};
  const Paint dark{58, 30, 62, 255};
  for (int x = 0; x < 4; x++) {
    for (int y = 0; y < 4; y++) {
      for (int z = 0; z < 4; z++) {
        Box(grid, {x * 4, y * 4, z * 4, x * 4 + 3, y * 4 + 3, z * 4 + 3}, (x + y + z) % 2 == 0 ? light : dark);
      }
    }
  }
  Box(grid, {2, 2, 2, 13, 13, 13}, dark);
}

// A suited figure. It is shown without rotation: z is up here, and y = 0 is the way it looks.
void DrawFigure(Grid &grid, int) {
  Box(grid, {4, 5, 2, 6, 8, 6}, OffWhite);              // leg
  Box(grid, {4, 4, 0, 6, 9, 1}, Graphite);              // boot
  Box(grid, {4, 5, 4, 6, 5, 5}, Oxide);                 // knee
  Box(grid, {4, 5, 7, 7, 9, 11}, OffWhite);             // half of the trunk
  Box(grid, {4, 5, 7, 7, 9, 7}, Brass);                 // belt
  Box(grid, {2, 6, 6, 3, 8, 11}, OffWhite);             // arm
  Box(grid, {2, 6, 5, 3, 8, 6}, Graphite);              // glove
  Box(grid, {2, 6, 9, 3, 8, 9}, Oxide);                 // band on the arm
  Box(grid, {5, 10, 7, 7, 12, 12}, Graphite);           // pack
  Box(grid, {5, 11, 6, 6, 12, 6}, Brass);               // jet
  Mirror(grid, Axis::X);
  Ball(grid, 7.5f, 7.0f, 13.0f, 3.3f, OffWhite);        // helmet
  Box(grid, {5, 0, 12, 10, 4, 14}, Teal);               // visor
  Ball(grid, 7.5f, 7.0f, 13.0f, 2.0f, Charcoal);
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 11; z < GridEdge; z++) {
      for (int y = 0; y < 4; y++) At(grid, x, y, z) = Nothing;
    }
  }
  Box(grid, {6, 4, 13, 7, 4, 14}, TealGlow);            // what the visor mirrors
  Box(grid, {6, 4, 9, 7, 4, 10}, Steel);                // breast controls
  Box(grid, {6, 4, 10, 6, 4, 10}, AmberGlow);
  Box(grid, {9, 13, 9, 9, 13, 11}, AmberGlow);          // pack light
  Weather(grid, 160, 0.8f);
}
