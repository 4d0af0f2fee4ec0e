// Doors and airlocks. They stand across z, with the way through along z.
#include "palette.h"
#include "shapes_more.h"

static void Frame(Grid &grid, Paint paint) {
  Box(grid, {0, 0, 4, 15, 15, 11}, paint);
  Box(grid, {2, 1, 0, 13, 13, 15}, Nothing);
  Box(grid, {2, 0, 4, 13, 0, 11}, Graphite);
}

// Two leaves that meet in the middle.
void DrawSlidingDoor(Grid &grid, int) {
  Frame(grid, OffWhite);
  Box(grid, {2, 1, 6, 13, 13, 9}, Stuff(228));
  Box(grid, {7, 1, 6, 8, 13, 6}, Charcoal);
  Box(grid, {7, 1, 9, 8, 13, 9}, Charcoal);
  for (const int z : {6, 9}) {
    Box(grid, {3, 3, z, 5, 7, z}, Stuff(196));
    Box(grid, {10, 3, z, 12, 7, z}, Stuff(196));
    Box(grid, {2, 9, z, 6, 10, z}, Oxide);
    Box(grid, {9, 9, z, 13, 10, z}, Oxide);
  }
  for (const int z : {4, 11}) Box(grid, {6, 14, z, 9, 14, z}, TealGlow);
  Weather(grid, 2000);
}

static void Wheel(Grid &grid, int z) {
  Bar(grid, Axis::Z, 7.5f, 7.0f, 3.6f, z, z, Oxide, 2.5f);
  Box(grid, {5, 7, z, 10, 7, z}, Oxide);
  Box(grid, {7, 4, z, 8, 10, z}, Oxide);
  Box(grid, {7, 6, z, 8, 7, z}, Brass);
}

void DrawBulkheadDoor(Grid &grid, int) {
  Frame(grid, Graphite);
  Box(grid, {1, 1, 5, 14, 14, 10}, Stuff(216));
  BoxEdges(grid, {1, 1, 5, 14, 14, 10}, 2, Stuff(240));
  for (const int z : {4, 11}) {
    Wheel(grid, z);
    for (const int y : {3, 10}) Box(grid, {1, y, z, 3, y + 1, z}, Brass);
  }
  Weather(grid, 2001, 1.2f);
}

void DrawGlassDoor(Grid &grid, int) {
  Frame(grid, OffWhite);
  Box(grid, {2, 1, 7, 13, 13, 8}, {150, 206, 200, 80});
  Box(grid, {2, 1, 6, 13, 2, 9}, Teal);
  Box(grid, {7, 1, 6, 8, 13, 9}, OffWhite);
  for (const int z : {5, 10}) {
    Box(grid, {6, 6, z, 6, 9, z}, Brass);
    Box(grid, {9, 6, z, 9, 9, z}, Brass);
  }
  Weather(grid, 2002);
}

void DrawShutter(Grid &grid, int) {
  Frame(grid, Graphite);
  for (int y = 1; y < 14; y++) Box(grid, {2, y, 6 + y % 2, 13, y, 9 - y % 2}, Stuff(y % 2 == 0 ? 236 : 190));
  Box(grid, {1, 12, 4, 14, 15, 11}, OffWhite);
  Box(grid, {2, 1, 5, 13, 2, 10}, Mustard);
  Weather(grid, 2003);
}

void DrawGate(Grid &grid, int) {
  Frame(grid, Stuff(222));
  for (int x = 3; x < 14; x += 3) Box(grid, {x, 1, 7, x, 13, 8}, Stuff(188));
  for (const int y : {4, 10}) Box(grid, {2, y, 7, 13, y, 8}, Brass);
  Box(grid, {8, 6, 6, 11, 8, 9}, Graphite);
  Weather(grid, 2004);
}

// A frame without a door.
void DrawDoorway(Grid &grid, int) {
  Box(grid, {0, 0, 2, 15, 15, 13}, Stuff(228));
  Box(grid, {2, 1, 0, 13, 13, 15}, Nothing);
  Box(grid, {2, 0, 2, 13, 0, 13}, Graphite);
  for (const int x : {1, 14}) Box(grid, {x, 1, 7, x, 13, 8}, Charcoal);
  for (const int x : {1, 14}) Box(grid, {x, 5, 7, x, 8, 8}, TealGlow);
  for (const int z : {2, 13}) Box(grid, {0, 14, z, 15, 14, z}, Oxide);
  Weather(grid, 2005);
}

void DrawCabinDoor(Grid &grid, int) {
  Frame(grid, Bone);
  Box(grid, {2, 1, 6, 13, 13, 8}, Stuff(224));
  for (const int z : {6, 8}) {
    for (const int y : {2, 8}) {
      Box(grid, {4, y, z, 11, y + 4, z}, Stuff(190));
      Box(grid, {5, y + 1, z, 10, y + 3, z}, Stuff(238));
    }
  }
  for (const int z : {5, 9}) Box(grid, {11, 7, z, 12, 7, z}, Brass);
  for (const int y : {3, 11}) Box(grid, {2, y, 5, 2, y + 1, 5}, Steel);
  Weather(grid, 2006);
}

void DrawBlastDoor(Grid &grid, int) {
  Box(grid, {0, 0, 2, 15, 15, 13}, Graphite);
  Box(grid, {1, 1, 3, 14, 14, 12}, Stuff(204));
  for (const int z : {2, 13}) {
    for (int x = 1; x < 15; x++) {
      for (int y = 1; y < 15; y++) {
        const bool stripe = y > 5 && y < 10;
        At(grid, x, y, z) = stripe ? ((x + y) / 3 % 2 == 0 ? Mustard : Charcoal) : Stuff(x == 7 || x == 8 ? 150 : 222);
      }
    }
  }
  for (const int x : {2, 12}) {
    for (const int y : {2, 12}) Box(grid, {x, y, 1, x + 1, y + 1, 14}, Brass);
  }
  Weather(grid, 2007, 1.2f);
}

// A round hatch in a square collar.
void DrawAirlock(Grid &grid, int) {
  Box(grid, {0, 0, 3, 15, 15, 12}, Stuff(220));
  BoxEdges(grid, {0, 0, 3, 15, 15, 12}, 2, OffWhite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.6f, 2, 13, Graphite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 5.4f, 1, 14, OffWhite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 3.4f, 0, 15, Oxide, 2.2f);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 1.4f, 0, 15, Brass);
  for (const int z : {0, 15}) {
    Box(grid, {5, 7, z, 10, 8, z}, Oxide);
    Box(grid, {7, 5, z, 8, 10, z}, Oxide);
  }
  for (const int z : {3, 12}) {
    for (const int x : {1, 14}) {
      Box(grid, {x, 1, z, x, 1, z}, RedGlow);
      Box(grid, {x, 14, z, x, 14, z}, TealGlow);
    }
  }
  Weather(grid, 2010);
}

// A leaf with a small round window under a pair of lamps.
void DrawLockDoor(Grid &grid, int) {
  Frame(grid, OffWhite);
  Box(grid, {2, 1, 5, 13, 13, 10}, Stuff(214));
  Box(grid, {2, 1, 5, 13, 4, 10}, Mustard);
  for (int x = 2; x < 14; x++) {
    if (x / 2 % 2 == 0) Box(grid, {x, 1, 5, x, 4, 10}, Charcoal);
  }
  Bar(grid, Axis::Z, 7.5f, 9.0f, 3.6f, 4, 11, Brass);
  Bar(grid, Axis::Z, 7.5f, 9.0f, 3.6f, 5, 10, Graphite);
  Bar(grid, Axis::Z, 7.5f, 9.0f, 2.6f, 0, 15, Nothing);
  Bar(grid, Axis::Z, 7.5f, 9.0f, 2.6f, 7, 8, {150, 206, 200, 80});
  for (const int z : {4, 11}) {
    Box(grid, {3, 14, z, 5, 14, z}, RedGlow);
    Box(grid, {10, 14, z, 12, 14, z}, TealGlow);
  }
  Weather(grid, 2011);
}

// Six blades that close in a spiral.
void DrawIris(Grid &grid, int) {
  Box(grid, {0, 0, 4, 15, 15, 11}, OffWhite);
  BoxEdges(grid, {0, 0, 4, 15, 15, 11}, 1, Graphite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 7.2f, 3, 12, Brass);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 7.2f, 5, 10, Graphite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.2f, 0, 15, Nothing);
  for (int x = 1; x < 15; x++) {
    for (int y = 1; y < 15; y++) {
      const int a = 2 * x - 15;
      const int b = 2 * y - 15;
      if (a * a + b * b > 150) continue;
      const int blade = (a + 2 * b > 2) + 2 * (2 * a - b > 3) + 4 * (a - 3 * b > 1);
      for (int z = 7; z < 9; z++) At(grid, x, y, z) = Stuff(180 + blade * 10);
    }
  }
  Bar(grid, Axis::Z, 7.5f, 7.5f, 1.2f, 6, 9, Charcoal);
  for (const int z : {4, 11}) Box(grid, {1, 14, z, 2, 14, z}, AmberGlow);
  Weather(grid, 2012);
}

// The open ring that two ships meet at.
void DrawDockRing(Grid &grid, int) {
  Box(grid, {0, 0, 2, 15, 15, 13}, Stuff(220));
  BevelCube(grid, 5);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.6f, 0, 15, Graphite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.6f, 4, 11, OffWhite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 5.2f, 0, 15, Nothing);
  for (const int z : {0, 15}) {
    Box(grid, {6, 13, z, 9, 14, z}, Mustard);
    Box(grid, {6, 1, z, 9, 2, z}, Mustard);
    Box(grid, {1, 6, z, 2, 9, z}, Mustard);
    Box(grid, {13, 6, z, 14, 9, z}, Mustard);
  }
  Weather(grid, 2013);
}
