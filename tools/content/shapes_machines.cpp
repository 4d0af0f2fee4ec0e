// Machines.
#include "noise.h"
#include "palette.h"
#include "shapes.h"

#include <cmath>

// A fan in a duct, looking away from the surface; `form` is the frame of its turn.
void DrawFan(Grid &grid, int form) {
  constexpr float quarter = 1.5707964f;
  Box(grid, {0, 0, 0, 15, 9, 15}, Stuff(228));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.4f, 2, 9, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.5f, 2, 9, Nothing);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.5f, 1, 1, Charcoal);
  for (int x = 1; x < 15; x++) {
    for (int z = 1; z < 15; z++) {
      const float a = static_cast<float>(x) - 7.5f;
      const float b = static_cast<float>(z) - 7.5f;
      const float turn = std::atan2(b, a) + 4.0f * quarter - static_cast<float>(form) * quarter / 3.0f;
      const float within = std::fmod(turn, quarter) / quarter;
      if (std::hypot(a, b) > 6.0f || within > 0.5f) continue;
      At(grid, x, 5 + static_cast<int>(within * 5.0f), z) = within < 0.2f ? Teal : Scaled(Teal, 1.25f);
    }
  }
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.2f, 2, 8, Brass);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.2f, 9, 9, Oxide);
  for (const int x : {0, 15}) {
    for (const int z : {0, 15}) At(grid, x, 9, z) = Brass;
  }
  Weather(grid, 80);
}

void DrawVent(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 5, 15}, Stuff(228));
  Box(grid, {2, 2, 2, 13, 5, 13}, Nothing);
  Box(grid, {2, 1, 2, 13, 1, 13}, Charcoal);
  for (int z = 2; z < 14; z += 3) {
    Box(grid, {2, 3, z, 13, 3, z}, Graphite);
    Box(grid, {2, 4, z + 1, 13, 4, z + 1}, Steel);
  }
  for (const int x : {0, 15}) {
    for (const int z : {0, 15}) At(grid, x, 5, z) = Brass;
  }
  Weather(grid, 81);
}

static void Lights(Grid &grid, Region region, uint32_t seed, const Paint *colours, int count) {
  Dice dice{seed};
  for (int x = region.x0; x <= region.x1; x += 2) {
    for (int y = region.y0; y <= region.y1; y++) {
      for (int z = region.z0; z <= region.z1; z += 2) {
        if (Roll(&dice) < 0.62f) At(grid, x, y, z) = colours[RollInt(&dice, 0, count - 1)];
      }
    }
  }
}

static const Paint panelLights[4] = {TealGlow, AmberGlow, RedGlow, Steel};

// A desk with a slanting board, seen from z = 0.
void DrawConsole(Grid &grid, int) {
  Box(grid, {1, 0, 4, 14, 6, 14}, OffWhite);
  Box(grid, {1, 0, 4, 14, 0, 14}, Graphite);
  for (int i = 0; i < 6; i++) Box(grid, {0, 6 + i, 2 + 2 * i, 15, 7 + i, 15}, OffWhite);
  for (int i = 0; i < 4; i++) Box(grid, {2, 7 + i, 3 + 2 * i, 13, 7 + i, 3 + 2 * i}, Charcoal);
  Lights(grid, {3, 7, 3, 12, 7, 3}, 90, panelLights, 4);
  Lights(grid, {3, 8, 5, 12, 8, 5}, 91, panelLights, 4);
  Box(grid, {1, 12, 12, 14, 15, 14}, Graphite);
  Box(grid, {2, 12, 12, 13, 14, 12}, {40, 76, 78, 255});
  Box(grid, {3, 13, 12, 8, 13, 12}, TealGlow);
  Box(grid, {3, 14, 12, 5, 14, 12}, TealGlow);
  Box(grid, {10, 12, 12, 11, 14, 12}, AmberGlow);
  Box(grid, {3, 2, 3, 12, 4, 3}, Oxide);
  Weather(grid, 82, 0.8f);
}

// A screen on the wall; the picture looks away from the surface.
void DrawScreen(Grid &grid, int) {
  Box(grid, {0, 0, 1, 15, 3, 14}, Graphite);
  Box(grid, {1, 3, 2, 14, 3, 13}, {36, 66, 70, 255});
  for (int x = 2; x < 14; x++) {
    const float wave = 7.5f + 3.2f * std::sin(static_cast<float>(x) * 0.9f);
    At(grid, x, 3, static_cast<int>(wave)) = TealGlow;
  }
  Box(grid, {2, 3, 12, 5, 3, 12}, AmberGlow);
  Box(grid, {11, 3, 3, 13, 3, 3}, TealGlow);
  Weather(grid, 83, 0.6f);
}

void DrawPanel(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 3, 15}, OffWhite);
  Box(grid, {1, 3, 1, 14, 3, 14}, Bone);
  Box(grid, {2, 4, 9, 7, 4, 13}, Graphite);
  Lights(grid, {3, 4, 10, 7, 4, 12}, 95, panelLights, 3);
  Box(grid, {9, 4, 9, 13, 4, 13}, Oxide);
  Box(grid, {10, 5, 10, 12, 5, 12}, Brass);
  Greeble(grid, {2, 4, 2, 13, 6, 6}, 6, 96, Steel);
  Weather(grid, 84);
}

void DrawTank(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.6f, 2, 13, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.4f, 1, 14, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.0f, 15, 15, Brass);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.0f, 4, 4, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.0f, 11, 11, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.6f, 6, 9, Teal, 5.4f);
  for (const int x : {2, 12}) {
    for (const int z : {2, 12}) Box(grid, {x, 0, z, x + 1, 3, z + 1}, Graphite);
  }
  Box(grid, {6, 5, 0, 9, 10, 1}, Charcoal);
  Box(grid, {7, 6, 0, 8, 8, 0}, TealGlow);
  Weather(grid, 85);
}

void DrawReactor(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 2, 15}, Graphite);
  Box(grid, {0, 13, 0, 15, 15, 15}, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.0f, 3, 12, ColdGlow);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.2f, 4, 5, TealGlow, 3.6f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.2f, 10, 11, TealGlow, 3.6f);
  for (const int x : {1, 12}) {
    for (const int z : {1, 12}) {
      Box(grid, {x, 3, z, x + 2, 12, z + 2}, OffWhite);
      Box(grid, {x, 7, z, x + 2, 8, z + 2}, Oxide);
    }
  }
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.4f, 3, 3, Brass, 4.4f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.4f, 12, 12, Brass, 4.4f);
  Weather(grid, 86);
}

void DrawGenerator(Grid &grid, int) {
  Box(grid, {1, 0, 1, 14, 2, 14}, Graphite);
  Bar(grid, Axis::X, 7.5f, 7.5f, 6.0f, 2, 13, OffWhite);
  for (int x = 3; x < 13; x += 2) Bar(grid, Axis::X, 7.5f, 7.5f, 6.6f, x, x, Bone);
  Bar(grid, Axis::X, 7.5f, 7.5f, 3.0f, 0, 15, Brass);
  Bar(grid, Axis::X, 7.5f, 7.5f, 1.4f, 0, 15, Charcoal);
  Box(grid, {5, 13, 5, 10, 15, 10}, Oxide);
  Box(grid, {6, 15, 6, 9, 15, 9}, Charcoal);
  Weather(grid, 87);
}

void DrawBattery(Grid &grid, int) {
  Box(grid, {1, 0, 1, 14, 13, 14}, Graphite);
  for (const int x : {2, 9}) {
    for (const int z : {2, 9}) {
      Box(grid, {x, 1, z, x + 4, 14, z + 4}, Bone);
      Box(grid, {x + 1, 15, z + 1, x + 3, 15, z + 3}, Brass);
    }
  }
  Box(grid, {1, 5, 0, 14, 8, 0}, Charcoal);
  for (int i = 0; i < 5; i++) Box(grid, {3 + 2 * i, 6, 0, 3 + 2 * i, 7, 0}, i < 4 ? TealGlow : Steel);
  Box(grid, {0, 3, 1, 15, 3, 14}, Oxide);
  Weather(grid, 88);
}

void DrawRack(Grid &grid, int) {
  Box(grid, {1, 0, 1, 14, 15, 14}, Charcoal);
  for (int i = 0; i < 4; i++) {
    const int y = 1 + i * 4;
    Box(grid, {2, y, 0, 13, y + 2, 14}, Graphite);
    Lights(grid, {3, y + 1, 0, 8, y + 1, 0}, 120U + static_cast<uint32_t>(i), panelLights, 3);
    Box(grid, {10, y, 0, 12, y, 0}, Steel);
  }
  BoxEdges(grid, {1, 0, 0, 14, 15, 15}, 1, OffWhite);
  Weather(grid, 89, 0.8f);
}

// A nozzle that blows away from the surface.
void DrawThruster(Grid &grid, int) {
  Box(grid, {2, 0, 2, 13, 3, 13}, OffWhite);
  for (int y = 4; y < GridEdge; y++) {
    const float radius = 3.2f + static_cast<float>((y - 4) / 2) * 0.8f;
    Bar(grid, Axis::Y, 7.5f, 7.5f, radius, y, y, y == 15 ? OffWhite : y == 12 ? Brass : Graphite);
    Bar(grid, Axis::Y, 7.5f, 7.5f, radius - 1.3f, y, y, y < 11 ? AmberGlow : Nothing);
  }
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.8f, 3, 4, Brass);
  for (const int x : {1, 13}) Box(grid, {x, 0, 6, x + 1, 6, 9}, Oxide);
  Weather(grid, 90);
}

void DrawAntenna(Grid &grid, int) {
  Box(grid, {4, 0, 4, 11, 1, 11}, Graphite);
  Box(grid, {5, 2, 5, 10, 3, 10}, OffWhite);
  Box(grid, {7, 4, 7, 8, 15, 8}, Steel);
  for (const int y : {6, 9, 12}) {
    const int reach = 5 - (y - 6) / 3;
    Box(grid, {7 - reach, y, 7, 8 + reach, y, 8}, Brass);
  }
  Box(grid, {7, 15, 7, 8, 15, 8}, RedGlow);
  Weather(grid, 91, 0.7f);
}

void DrawDish(Grid &grid, int) {
  Box(grid, {4, 0, 4, 11, 1, 11}, Graphite);
  Box(grid, {6, 2, 6, 9, 5, 9}, Steel);
  Ball(grid, 7.5f, 16.0f, 7.5f, 10.6f, OffWhite, 9.4f);
  for (int y = 12; y < GridEdge; y++) Box(grid, {0, y, 0, 15, y, 15}, Nothing);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 0.8f, 6, 14, Brass);
  Box(grid, {6, 14, 6, 9, 15, 9}, Oxide);
  Weather(grid, 92);
}

void DrawPump(Grid &grid, int) {
  Box(grid, {1, 0, 1, 14, 1, 14}, Graphite);
  Bar(grid, Axis::Z, 7.5f, 6.5f, 4.8f, 2, 13, Teal);
  Bar(grid, Axis::Z, 7.5f, 6.5f, 5.4f, 4, 5, OffWhite);
  Bar(grid, Axis::Z, 7.5f, 6.5f, 5.4f, 10, 11, OffWhite);
  Bar(grid, Axis::Z, 7.5f, 6.5f, 2.4f, 0, 15, Brass);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.4f, 10, 15, Steel);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 14, 15, Graphite);
  Box(grid, {12, 2, 5, 14, 5, 10}, Oxide);
  Weather(grid, 93);
}

void DrawRadiator(Grid &grid, int) {
  Box(grid, {0, 0, 2, 15, 1, 13}, Graphite);
  for (int x = 1; x < GridEdge; x += 2) Box(grid, {x, 2, 1, x, 14, 14}, Stuff(230));
  for (const int y : {5, 11}) Bar(grid, Axis::X, static_cast<float>(y), 7.5f, 1.6f, 0, 15, Brass);
  Box(grid, {0, 0, 0, 0, 14, 0}, Nothing);
  Weather(grid, 94, 0.7f);
}
