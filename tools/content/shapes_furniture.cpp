// Furniture. Its front looks to z = 0.
#include "noise.h"
#include "palette.h"
#include "shapes_more.h"

void DrawPilotSeat(Grid &grid, int) {
  Box(grid, {4, 0, 4, 11, 0, 12}, Graphite);
  Box(grid, {6, 1, 7, 9, 3, 10}, Steel);
  Box(grid, {3, 4, 2, 12, 5, 13}, Graphite);
  Box(grid, {4, 6, 2, 11, 6, 11}, Teal);
  Box(grid, {2, 5, 3, 3, 9, 11}, OffWhite);
  Box(grid, {12, 5, 3, 13, 9, 11}, OffWhite);
  Box(grid, {3, 6, 11, 12, 15, 14}, Graphite);
  Box(grid, {4, 7, 10, 11, 12, 11}, Teal);
  Box(grid, {5, 13, 10, 10, 15, 11}, Cloth);
  Box(grid, {5, 7, 10, 5, 12, 10}, Oxide);
  Box(grid, {10, 7, 10, 10, 12, 10}, Oxide);
  Box(grid, {2, 10, 3, 3, 11, 4}, RedGlow);
  Box(grid, {12, 10, 3, 13, 10, 5}, Charcoal);
  Weather(grid, 2130, 0.8f);
}

void DrawBench(Grid &grid, int) {
  Box(grid, {0, 5, 3, 15, 6, 13}, Stuff(228));
  for (const int z : {5, 8, 11}) Box(grid, {0, 6, z, 15, 6, z}, Stuff(176));
  for (const int x : {2, 12}) {
    Box(grid, {x, 0, 4, x + 1, 4, 12}, Graphite);
    Box(grid, {x, 0, 3, x + 1, 0, 13}, Steel);
  }
  Weather(grid, 2131, 0.8f);
}

void DrawStool(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.6f, 0, 0, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.3f, 1, 6, Steel);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 3, 3, Brass, 2.4f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.6f, 7, 7, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.2f, 8, 9, Oxide);
  Weather(grid, 2132, 0.8f);
}

void DrawSofa(Grid &grid, int) {
  Box(grid, {0, 1, 2, 15, 4, 14}, Stuff(206));
  Box(grid, {2, 5, 2, 7, 6, 11}, Stuff(236));
  Box(grid, {8, 5, 2, 13, 6, 11}, Stuff(230));
  Box(grid, {0, 5, 11, 15, 12, 14}, Stuff(220));
  Box(grid, {8, 5, 11, 8, 12, 11}, Stuff(170));
  for (const int x : {0, 14}) Box(grid, {x, 4, 2, x + 1, 8, 13}, Stuff(214));
  Box(grid, {10, 7, 8, 13, 10, 10}, Mustard);
  for (const int x : {1, 13}) {
    for (const int z : {3, 12}) Box(grid, {x, 0, z, x + 1, 0, z + 1}, Graphite);
  }
  Weather(grid, 2133);
}

void DrawDesk(Grid &grid, int) {
  Box(grid, {0, 9, 1, 15, 10, 15}, Stuff(232));
  Box(grid, {10, 0, 3, 15, 8, 14}, OffWhite);
  for (const int y : {1, 5}) {
    Box(grid, {11, y, 2, 14, y + 2, 2}, Bone);
    Box(grid, {12, y + 1, 1, 13, y + 1, 1}, Brass);
  }
  for (const int z : {3, 13}) Box(grid, {0, 0, z, 1, 8, z + 1}, Graphite);
  Box(grid, {2, 11, 4, 7, 11, 8}, {226, 222, 206, 255});
  Box(grid, {3, 11, 5, 6, 11, 5}, Graphite);
  Bar(grid, Axis::Y, 12.0f, 11.0f, 1.6f, 11, 11, Graphite);
  Box(grid, {12, 12, 11, 12, 14, 11}, Brass);
  Box(grid, {9, 14, 9, 12, 14, 12}, Teal);
  Box(grid, {9, 13, 9, 11, 13, 12}, WarmGlow);
  Weather(grid, 2134, 0.8f);
}

void DrawCabinet(Grid &grid, int) {
  Box(grid, {0, 0, 3, 15, 15, 15}, Stuff(222));
  for (const int x : {1, 8}) {
    Box(grid, {x, 1, 2, x + 6, 14, 3}, Stuff(240));
    Box(grid, {x + 1, 8, 2, x + 5, 13, 2}, {150, 206, 200, 255});
    Box(grid, {x + 2, 9, 2, x + 2, 12, 2}, {196, 230, 224, 255});
    Box(grid, {x + 1, 2, 2, x + 5, 6, 2}, Stuff(206));
    Box(grid, {x == 1 ? 6 : 9, 6, 1, x == 1 ? 6 : 9, 8, 1}, Brass);
  }
  Weather(grid, 2135);
}

void DrawDrawers(Grid &grid, int) {
  Box(grid, {1, 0, 3, 14, 11, 15}, Stuff(204));
  for (int i = 0; i < 3; i++) {
    const int y = 1 + i * 4;
    Box(grid, {2, y, 2, 13, y + 2, 3}, Stuff(236));
    Box(grid, {6, y + 1, 1, 9, y + 1, 1}, Brass);
  }
  Box(grid, {0, 12, 2, 15, 12, 15}, Stuff(244));
  Bar(grid, Axis::Y, 4.0f, 9.0f, 1.6f, 13, 15, Teal);
  Box(grid, {9, 13, 7, 13, 13, 11}, Oxide);
  Box(grid, {9, 14, 7, 12, 14, 11}, Bone);
  Weather(grid, 2136);
}

// A bed along x with its head at x = 0; beds side by side make a wide one.
void DrawBed(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 2, 15}, Stuff(200));
  Box(grid, {1, 3, 1, 15, 5, 14}, {226, 220, 206, 255});
  Box(grid, {5, 6, 1, 15, 6, 14}, Stuff(236));
  for (int x = 6; x < 16; x += 3) Box(grid, {x, 6, 1, x, 6, 14}, Stuff(206));
  Box(grid, {1, 6, 3, 4, 7, 12}, OffWhite);
  Box(grid, {0, 0, 0, 0, 10, 15}, Stuff(220));
  Weather(grid, 2137, 0.9f);
}

void DrawSink(Grid &grid, int) {
  Box(grid, {1, 0, 4, 14, 9, 15}, OffWhite);
  Box(grid, {0, 10, 2, 15, 11, 15}, Stuff(236));
  Box(grid, {3, 9, 4, 12, 11, 11}, Nothing);
  Box(grid, {3, 8, 4, 12, 8, 11}, Steel);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.2f, 8, 8, Charcoal);
  Box(grid, {7, 12, 13, 8, 15, 14}, Brass);
  Box(grid, {7, 15, 9, 8, 15, 13}, Brass);
  Box(grid, {4, 12, 13, 4, 12, 14}, Oxide);
  Box(grid, {11, 12, 13, 11, 12, 14}, Teal);
  Box(grid, {2, 1, 3, 7, 8, 3}, Bone);
  Box(grid, {9, 1, 3, 13, 8, 3}, Bone);
  Weather(grid, 2138, 0.8f);
}

void DrawStove(Grid &grid, int) {
  Box(grid, {0, 0, 2, 15, 11, 15}, OffWhite);
  Box(grid, {0, 12, 2, 15, 12, 15}, Charcoal);
  for (const float x : {4.0f, 11.0f}) {
    for (const float z : {5.0f, 12.0f}) {
      Bar(grid, Axis::Y, x, z, 2.4f, 13, 13, Graphite);
      Bar(grid, Axis::Y, x, z, 1.4f, 13, 13, x < 5.0f && z < 6.0f ? RedGlow : Charcoal);
    }
  }
  Box(grid, {2, 2, 1, 13, 7, 1}, Graphite);
  Box(grid, {3, 3, 1, 12, 6, 1}, {120, 70, 44, 255});
  Box(grid, {2, 8, 0, 13, 8, 0}, Brass);
  for (int x = 2; x < 14; x += 3) At(grid, x, 10, 1) = Oxide;
  Weather(grid, 2139, 0.8f);
}

void DrawBookcase(Grid &grid, int) {
  Box(grid, {0, 0, 4, 15, 15, 15}, Stuff(204));
  const Paint backs[5] = {Oxide, Teal, Bone, Mustard, Cloth};
  Dice dice{2143};
  for (const int y : {1, 6, 11}) {
    Box(grid, {1, y, 4, 14, y + 3, 13}, Nothing);
    for (int x = 1; x < 14; x++) {
      if (Roll(&dice) < 0.12f) continue;
      const int top = y + RollInt(&dice, 2, 3);
      const Paint back = backs[RollInt(&dice, 0, 4)];
      Box(grid, {x, y, 6, x, top, 13}, Scaled(back, RollBetween(&dice, 0.8f, 1.1f)));
    }
  }
  Weather(grid, 2143, 0.9f);
}

void DrawFridge(Grid &grid, int) {
  Box(grid, {1, 0, 2, 14, 15, 15}, {214, 224, 226, 255});
  Box(grid, {1, 10, 1, 14, 15, 2}, {226, 234, 236, 255});
  Box(grid, {1, 1, 1, 14, 9, 2}, {226, 234, 236, 255});
  Box(grid, {12, 11, 0, 12, 14, 0}, Brass);
  Box(grid, {12, 4, 0, 12, 8, 0}, Brass);
  Box(grid, {3, 12, 1, 5, 13, 1}, Charcoal);
  At(grid, 4, 12, 1) = TealGlow;
  Box(grid, {5, 5, 0, 6, 7, 0}, Mustard);
  Box(grid, {1, 0, 1, 14, 0, 15}, Graphite);
  Weather(grid, 2144, 0.8f);
}

void DrawRug(Grid &grid, int) {
  Box(grid, {0, 0, 1, 15, 0, 14}, Stuff(222));
  BoxEdges(grid, {2, 0, 3, 13, 0, 12}, 1, Stuff(160));
  Box(grid, {4, 0, 5, 11, 0, 10}, Oxide);
  Box(grid, {6, 0, 6, 9, 0, 9}, Mustard);
  for (int x = 0; x < GridEdge; x += 2) {
    for (const int z : {0, 15}) At(grid, x, 0, z) = Bone;
  }
  Weather(grid, 2142, 0.7f);
}
