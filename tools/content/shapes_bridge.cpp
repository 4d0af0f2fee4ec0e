// What stands on a bridge and in an engine room.
#include "noise.h"
#include "palette.h"
#include "shapes_more.h"

#include <cmath>

constexpr Paint Dark{40, 76, 78, 255};  // a screen

// A wheel of a ship's kind on a column, seen from z = 0.
void DrawHelm(Grid &grid, int) {
  Box(grid, {3, 0, 6, 12, 1, 15}, Graphite);
  Box(grid, {5, 2, 9, 10, 9, 13}, OffWhite);
  Box(grid, {2, 9, 8, 13, 11, 15}, OffWhite);
  Box(grid, {3, 12, 10, 12, 12, 14}, Charcoal);
  Box(grid, {4, 12, 11, 7, 12, 13}, TealGlow);
  Box(grid, {9, 12, 11, 11, 12, 11}, AmberGlow);
  Box(grid, {9, 12, 13, 11, 13, 13}, RedGlow);
  Bar(grid, Axis::Z, 7.5f, 9.0f, 1.3f, 3, 8, Steel);
  Bar(grid, Axis::Z, 7.5f, 9.0f, 5.3f, 3, 4, Oxide, 4.0f);
  Box(grid, {3, 9, 3, 12, 9, 3}, Brass);
  Box(grid, {7, 5, 3, 8, 9, 3}, Brass);
  Weather(grid, 2150, 0.8f);
}

// A low table with a map of light above it.
void DrawChartTable(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.6f, 0, 4, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.4f, 5, 7, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.2f, 7, 7, Dark);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.6f, 7, 7, TealGlow, 4.8f);
  for (const int i : {3, 7, 11}) Box(grid, {i, 7, 3, i, 7, 12}, {84, 170, 160, 255});
  Weather(grid, 2151, 0.8f);
  Ball(grid, 7.5f, 11.6f, 7.5f, 2.6f, {150, 250, 228, 120});
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.4f, 11, 11, {255, 190, 96, 140}, 4.6f);
  At(grid, 12, 11, 7) = AmberGlow;
}

// A slim screen and board on a stand.
void DrawTerminal(Grid &grid, int) {
  Box(grid, {4, 0, 5, 11, 0, 13}, Graphite);
  Box(grid, {6, 1, 9, 9, 6, 12}, Steel);
  for (int i = 0; i < 3; i++) Box(grid, {1, 6 + i, 3 + 2 * i, 14, 6 + i, 9}, OffWhite);
  for (int x = 3; x < 13; x += 2) {
    At(grid, x, 7, 3) = Charcoal;
    At(grid, x, 8, 5) = x == 11 ? Oxide : Charcoal;
  }
  Box(grid, {1, 9, 10, 14, 15, 12}, OffWhite);
  Box(grid, {2, 10, 10, 13, 14, 10}, Dark);
  for (int y = 11; y < 15; y += 2) Box(grid, {3, y, 10, 5 + y % 4 * 2, y, 10}, TealGlow);
  Weather(grid, 2152, 0.8f);
}

// A cluster of round dials on a sloping face.
void DrawInstrument(Grid &grid, int) {
  for (int y = 0; y < 12; y++) Box(grid, {0, y, 2 + y / 2, 15, y, 14}, OffWhite);
  Box(grid, {0, 0, 2, 15, 1, 14}, Graphite);
  for (const int x : {2, 9}) {
    for (int a = 0; a < 5; a++) {
      for (int b = 0; b < 5; b++) {
        if ((a == 0 || a == 4) && (b == 0 || b == 4)) continue;
        const int y = 4 + b;
        At(grid, x + a, y, 2 + y / 2) = a == 2 && b > 1 ? Oxide : a == 0 || a == 4 || b == 0 || b == 4 ? Brass : Dark;
      }
    }
  }
  for (int x = 2; x < 14; x += 2) At(grid, x, 10, 7) = x % 4 == 0 ? AmberGlow : TealGlow;
  Box(grid, {0, 12, 8, 15, 12, 14}, Graphite);
  Weather(grid, 2153, 0.8f);
}

// A picture of light over its projector.
void DrawHologram(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.4f, 0, 1, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.4f, 2, 2, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.8f, 2, 2, TealGlow);
  Weather(grid, 2154, 0.8f);
  Ball(grid, 7.5f, 9.5f, 7.5f, 4.6f, {120, 230, 220, 90}, 3.6f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.6f, 9, 9, {255, 214, 140, 130}, 5.8f);
  Ball(grid, 7.5f, 9.5f, 7.5f, 1.6f, TealGlow);
}

// A wall screen whose lines move up; `form` is the frame.
void DrawMonitor(Grid &grid, int form) {
  Box(grid, {0, 0, 0, 15, 2, 15}, Graphite);
  Box(grid, {1, 3, 2, 14, 3, 14}, Dark);
  BoxEdges(grid, {0, 2, 0, 15, 4, 15}, 1, OffWhite);
  Dice dice{77};
  for (int line = 0; line < 6; line++) {
    const int z = 3 + (line * 2 + form * 4) % 12;
    const int length = RollInt(&dice, 3, 11);
    if (z <= 13) Box(grid, {14 - length, 3, z, 13, 3, z}, line % 3 == 1 ? AmberGlow : TealGlow);
  }
  At(grid, 2, 4, 1) = RedGlow;
  Weather(grid, 2080, 0.6f);
}

// A core whose light climbs from ring to ring; `form` is the frame.
void DrawPulseCore(Grid &grid, int form) {
  Box(grid, {0, 0, 0, 15, 1, 15}, Graphite);
  Box(grid, {0, 14, 0, 15, 15, 15}, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 2, 13, {70, 150, 160, 255});
  for (int ring = 0; ring < 4; ring++) {
    const int y = 2 + 3 * ring;
    Bar(grid, Axis::Y, 7.5f, 7.5f, 5.2f, y, y, Brass, 3.4f);
    if (ring == form) Bar(grid, Axis::Y, 7.5f, 7.5f, 4.4f, y + 1, y + 2, ColdGlow);
  }
  for (const int x : {1, 13}) {
    for (const int z : {1, 13}) Box(grid, {x, 2, z, x + 1, 13, z + 1}, OffWhite);
  }
  Weather(grid, 2090, 0.8f);
}

// A turbine on its side, looking to z = 0; `form` is the frame of its turn.
void DrawTurbine(Grid &grid, int form) {
  constexpr float turn = 6.2831853f;
  Bar(grid, Axis::Z, 7.5f, 7.5f, 7.8f, 0, 15, Stuff(224));
  for (const int z : {2, 13}) Bar(grid, Axis::Z, 7.5f, 7.5f, 7.9f, z, z, Oxide, 7.0f);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.6f, 0, 4, Nothing);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.6f, 5, 5, Charcoal);
  Box(grid, {3, 0, 2, 12, 0, 13}, Graphite);
  for (int x = 1; x < 15; x++) {
    for (int y = 1; y < 15; y++) {
      const float a = static_cast<float>(x) - 7.5f;
      const float b = static_cast<float>(y) - 7.5f;
      if (std::hypot(a, b) > 6.4f) continue;
      const float blade = std::fmod((std::atan2(b, a) + turn) * 8.0f / turn + static_cast<float>(form) / 3.0f, 1.0f);
      if (blade < 0.5f) At(grid, x, y, blade < 0.2f ? 2 : 3) = blade < 0.2f ? Steel : Bone;
    }
  }
  Bar(grid, Axis::Z, 7.5f, 7.5f, 2.2f, 1, 4, Brass);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 1.2f, 0, 0, Oxide);
  Weather(grid, 2084, 0.8f);
}
