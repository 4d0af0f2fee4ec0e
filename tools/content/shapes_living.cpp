// What people live with.
#include "noise.h"
#include "palette.h"
#include "shapes.h"

// A seat that looks to z = 0.
void DrawSeat(Grid &grid, int) {
  Box(grid, {5, 0, 5, 10, 1, 10}, Graphite);
  Box(grid, {6, 2, 6, 9, 3, 9}, Steel);
  Box(grid, {3, 4, 2, 12, 5, 12}, OffWhite);
  Box(grid, {4, 6, 2, 11, 6, 11}, Cloth);
  Box(grid, {3, 6, 11, 12, 15, 13}, OffWhite);
  Box(grid, {4, 7, 10, 11, 13, 11}, Cloth);
  Box(grid, {5, 13, 10, 10, 15, 11}, Oxide);
  for (const int x : {2, 12}) Box(grid, {x, 6, 3, x + 1, 8, 11}, Graphite);
  Weather(grid, 130, 0.8f);
}

void DrawCrate(Grid &grid, int) {
  Box(grid, {1, 1, 1, 14, 14, 14}, Stuff(196));
  BoxEdges(grid, WholeGrid, 3, Stuff(236));
  Box(grid, {3, 7, 0, 12, 8, 15}, Stuff(222));
  Box(grid, {0, 7, 3, 15, 8, 12}, Stuff(222));
  for (const int z : {0, 15}) {
    Box(grid, {6, 6, z, 9, 9, z}, Oxide);
    Box(grid, {z, 6, 6, z, 9, 9}, Oxide);
  }
  BoxEdges(grid, WholeGrid, 1, Stuff(226));
  Weather(grid, 131, 1.2f);
}

void DrawBarrel(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.0f, 0, 15, Stuff(224));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.2f, 15, 15, Nothing);
  for (const int y : {0, 5, 10, 15}) Bar(grid, Axis::Y, 7.5f, 7.5f, 6.7f, y, y, Stuff(240), 5.2f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.0f, 6, 9, Oxide, 5.2f);
  Box(grid, {9, 15, 9, 10, 15, 10}, Brass);
  Weather(grid, 132);
}

void DrawLocker(Grid &grid, int) {
  Box(grid, {0, 0, 2, 15, 15, 15}, OffWhite);
  for (const int x : {1, 8}) {
    Box(grid, {x, 1, 1, x + 6, 14, 2}, Teal);
    for (const int y : {11, 12, 13}) Box(grid, {x + 2, y, 1, x + 4, y, 1}, y == 12 ? Teal : Charcoal);
    Box(grid, {x == 1 ? 6 : 9, 6, 0, x == 1 ? 6 : 9, 8, 0}, Brass);
  }
  Box(grid, {0, 0, 1, 15, 0, 15}, Graphite);
  Weather(grid, 133);
}

void DrawTable(Grid &grid, int) {
  Box(grid, {0, 12, 0, 15, 13, 15}, Stuff(232));
  BoxEdges(grid, {0, 12, 0, 15, 13, 15}, 1, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.8f, 1, 11, Steel);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.8f, 0, 0, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 1, 1, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 11, 11, Brass);
  Weather(grid, 134, 0.8f);
}

void DrawBunk(Grid &grid, int) {
  Box(grid, {0, 0, 1, 15, 3, 14}, OffWhite);
  Box(grid, {0, 1, 0, 15, 2, 0}, Graphite);
  Box(grid, {1, 4, 2, 14, 6, 13}, Cloth);
  Box(grid, {5, 7, 2, 14, 7, 13}, Teal);
  Box(grid, {1, 7, 3, 4, 8, 12}, OffWhite);
  Box(grid, {0, 4, 1, 0, 9, 14}, Graphite);
  Weather(grid, 135, 0.9f);
}

void DrawPlanter(Grid &grid, int) {
  Box(grid, {1, 0, 1, 14, 5, 14}, OffWhite);
  Box(grid, {2, 5, 2, 13, 5, 13}, {96, 74, 58, 255});
  BoxEdges(grid, {1, 0, 1, 14, 5, 14}, 1, Bone);
  Dice dice{136};
  for (int i = 0; i < 22; i++) {
    const int x = RollInt(&dice, 2, 13);
    const int z = RollInt(&dice, 2, 13);
    const int height = RollInt(&dice, 7, 14);
    const Paint green = Scaled(Leaf, RollBetween(&dice, 0.75f, 1.2f));
    Box(grid, {x, 6, z, x, height, z}, Scaled(green, 0.8f));
    Box(grid, {x - 1, height - 1, z, x + 1, height - 1, z}, green);
    Box(grid, {x, height - 1, z - 1, x, height, z + 1}, green);
    if (i % 7 == 3) At(grid, x, height, z) = Mustard;
  }
  Weather(grid, 136);
}

void DrawShelf(Grid &grid, int) {
  for (const int y : {0, 7, 14}) Box(grid, {0, y, 3, 15, y + 1, 15}, Stuff(230));
  Box(grid, {0, 0, 14, 15, 15, 15}, Stuff(196));
  for (const int x : {0, 15}) Box(grid, {x, 0, 3, x, 15, 15}, Graphite);
  const Paint wares[4] = {Oxide, Teal, Bone, Brass};
  Dice dice{137};
  for (const int y : {2, 9}) {
    for (int x = 2; x < 13; x += 3) {
      const int top = y + RollInt(&dice, 1, 3);
      Box(grid, {x, y, 6, x + 1, top, 12}, wares[RollInt(&dice, 0, 3)]);
    }
  }
  Weather(grid, 137, 0.9f);
}
