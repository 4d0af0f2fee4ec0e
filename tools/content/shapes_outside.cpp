// What sits on a ship's outside: sensors, antennas, engines.
#include "palette.h"
#include "shapes_more.h"

#include <cmath>

void DrawWhip(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.6f, 0, 1, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.6f, 2, 4, Brass);
  Box(grid, {7, 5, 7, 8, 9, 8}, Steel);
  Box(grid, {7, 10, 7, 7, 15, 7}, Steel);
  At(grid, 7, 15, 7) = RedGlow;
  Weather(grid, 2160, 0.7f);
}

void DrawYagi(Grid &grid, int) {
  Box(grid, {5, 0, 6, 10, 1, 9}, Graphite);
  Box(grid, {7, 2, 7, 8, 8, 8}, Steel);
  Box(grid, {7, 8, 0, 8, 9, 15}, OffWhite);
  for (int z = 1; z < GridEdge; z += 4) {
    const int reach = 3 + z / 4;
    Box(grid, {7 - reach, 9, z, 8 + reach, 9, z}, Brass);
  }
  Box(grid, {6, 7, 12, 9, 10, 13}, Oxide);
  Weather(grid, 2161, 0.7f);
}

void DrawCamera(Grid &grid, int) {
  Box(grid, {5, 0, 6, 10, 0, 11}, Graphite);
  Box(grid, {7, 1, 8, 8, 4, 9}, Steel);
  Box(grid, {4, 5, 3, 11, 11, 14}, OffWhite);
  Box(grid, {4, 11, 2, 11, 12, 14}, Graphite);
  Bar(grid, Axis::Z, 7.5f, 8.0f, 2.6f, 0, 2, Graphite);
  Bar(grid, Axis::Z, 7.5f, 8.0f, 1.8f, 0, 0, {52, 92, 120, 255});
  At(grid, 7, 9, 0) = ColdGlow;
  At(grid, 10, 10, 2) = RedGlow;
  Box(grid, {3, 7, 6, 3, 9, 11}, Oxide);
  Weather(grid, 2162, 0.8f);
}

// A ball with a lens that looks out.
void DrawEye(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.6f, 0, 1, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.8f, 2, 3, OffWhite);
  Ball(grid, 7.5f, 6.0f, 7.5f, 5.2f, Charcoal);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.2f, 10, 11, Brass);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.4f, 11, 11, {60, 120, 140, 255});
  Box(grid, {7, 11, 7, 8, 11, 8}, TealGlow);
  Box(grid, {1, 0, 1, 2, 1, 2}, Brass);
  Box(grid, {13, 0, 13, 14, 1, 14}, Brass);
  Weather(grid, 2163, 0.8f);
}

// A flat aerial of many small elements.
void DrawArray(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 2, 15}, OffWhite);
  Box(grid, {1, 2, 1, 14, 2, 14}, Charcoal);
  for (int x = 2; x < 15; x += 3) {
    for (int z = 2; z < 15; z += 3) {
      Box(grid, {x - 1, 3, z - 1, x, 3, z}, Brass);
      At(grid, x, 4, z) = Oxide;
    }
  }
  BoxEdges(grid, {0, 2, 0, 15, 3, 15}, 1, OffWhite);
  Weather(grid, 2164, 0.7f);
}

void DrawSolarPanel(Grid &grid, int) {
  Box(grid, {0, 1, 0, 15, 1, 15}, Steel);
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) {
      const bool seam = x % 4 == 3 || z % 8 == 7;
      At(grid, x, 2, z) = seam ? Steel : (x / 4 + z / 8) % 2 == 0 ? Paint{58, 92, 160, 255} : Paint{72, 110, 182, 255};
    }
  }
  for (const int x : {3, 11}) Box(grid, {x, 0, 0, x + 1, 0, 15}, Graphite);
  Weather(grid, 2165, 0.6f);
}

// A turning scanner; `form` is the frame of its turn, an eighth each.
void DrawRadar(Grid &grid, int form) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 5.0f, 0, 1, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.2f, 2, 6, OffWhite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.8f, 5, 5, Brass);
  const float angle = static_cast<float>(form) * 0.7853982f;
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) {
      const float a = static_cast<float>(x) - 7.5f;
      const float b = static_cast<float>(z) - 7.5f;
      const float along = a * std::cos(angle) + b * std::sin(angle);
      const float across = b * std::cos(angle) - a * std::sin(angle) - 2.0f + along * along * 0.045f;
      if (std::fabs(along) < 6.8f && std::fabs(across) < 0.9f) Box(grid, {x, 8, z, x, 13, z}, OffWhite);
      if (std::fabs(along) < 0.8f && std::fabs(across + 1.8f) < 2.8f) Box(grid, {x, 7, z, x, 8, z}, Steel);
      if (std::fabs(along) < 6.8f && std::fabs(across) < 0.9f) At(grid, x, 10, z) = Oxide;
    }
  }
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.6f, 7, 8, Steel);
  Weather(grid, 2074, 0.7f);
}

static void Bell(Grid &grid, float u, float v, int low, float narrow, float wide, Paint skin, Paint glow) {
  for (int y = low; y < GridEdge; y++) {
    const float t = static_cast<float>(y - low) / static_cast<float>(15 - low);
    const float radius = narrow + (wide - narrow) * std::sqrt(t);
    Bar(grid, Axis::Y, u, v, radius, y, y, skin);
    Bar(grid, Axis::Y, u, v, radius - 1.1f, y, y, t < 0.6f ? glow : Nothing);
  }
}

// A wide bell with cooling pipes.
void DrawNozzle(Grid &grid, int) {
  Box(grid, {1, 0, 1, 14, 1, 14}, Stuff(222));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.2f, 2, 5, Graphite);
  Bell(grid, 7.5f, 7.5f, 5, 2.6f, 7.6f, Stuff(210), AmberGlow);
  for (const int y : {9, 12, 15}) {
    const float radius = 2.6f + 5.0f * std::sqrt(static_cast<float>(y - 5) / 10.0f);
    Bar(grid, Axis::Y, 7.5f, 7.5f, radius, y, y, Brass, radius - 1.1f);
  }
  for (const int x : {2, 12}) Box(grid, {x, 2, 6, x + 1, 6, 9}, Oxide);
  Weather(grid, 2170);
}

void DrawIonEngine(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 8, 15}, OffWhite);
  BoxEdges(grid, {0, 0, 0, 15, 8, 15}, 2, Graphite);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.2f, 8, 13, Steel);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.2f, 9, 13, {120, 190, 255, 255});
  for (int i = 2; i < 14; i += 2) {
    for (int z = 0; z < GridEdge; z++) {
      if (Filled(grid, i, 13, z)) At(grid, i, 13, z) = Charcoal;
    }
  }
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.4f, 14, 14, Brass, 6.0f);
  for (const int z : {0, 15}) Box(grid, {5, 3, z, 10, 5, z}, {120, 190, 255, 255});
  Weather(grid, 2171);
}

// Four small nozzles for turning.
void DrawVerniers(Grid &grid, int) {
  Box(grid, {1, 0, 1, 14, 4, 14}, OffWhite);
  BoxEdges(grid, {1, 0, 1, 14, 4, 14}, 1, Graphite);
  Box(grid, {6, 5, 6, 9, 6, 9}, Oxide);
  for (const float x : {4.0f, 11.0f}) {
    for (const float z : {4.0f, 11.0f}) Bell(grid, x, z, 8, 1.3f, 3.2f, Steel, AmberGlow);
  }
  for (const int x : {3, 10}) {
    for (const int z : {3, 10}) Box(grid, {x, 5, z, x + 2, 8, z + 2}, Steel);
  }
  Weather(grid, 2172);
}

// A row of flames along a wedge.
void DrawAerospike(Grid &grid, int) {
  Box(grid, {0, 0, 1, 15, 4, 14}, Stuff(222));
  for (int y = 5; y < GridEdge; y++) {
    const int inset = 3 + (y - 5) / 3;
    Box(grid, {0, y, inset, 15, y, 15 - inset}, Stuff(y % 3 == 0 ? 196 : 226));
  }
  for (int x = 1; x < 15; x += 3) {
    for (const int z : {1, 13}) {
      Box(grid, {x, 5, z, x + 1, 6, z + 1}, Graphite);
      Box(grid, {x, 7, z, x + 1, 7, z + 1}, AmberGlow);
    }
  }
  Box(grid, {0, 2, 0, 15, 3, 15}, Oxide);
  Weather(grid, 2173);
}

// A solid rocket with a round cap.
void DrawBooster(Grid &grid, int) {
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.2f, 3, 12, OffWhite);
  Ball(grid, 7.5f, 7.5f, 10.0f, 5.9f, OffWhite);
  for (const int z : {4, 11}) Bar(grid, Axis::Z, 7.5f, 7.5f, 6.6f, z, z, Graphite, 5.0f);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 6.3f, 7, 8, Oxide, 5.0f);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 3.0f, 2, 2, Graphite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 4.4f, 0, 1, Graphite);
  Bar(grid, Axis::Z, 7.5f, 7.5f, 3.4f, 0, 1, AmberGlow);
  for (const int x : {3, 11}) Box(grid, {x, 0, 5, x + 1, 3, 10}, Steel);
  Weather(grid, 2174);
}

void DrawGyroscope(Grid &grid, int) {
  Box(grid, {2, 0, 2, 13, 1, 13}, Graphite);
  for (const int x : {1, 14}) Box(grid, {x, 1, 6, x, 9, 9}, OffWhite);
  Ball(grid, 7.5f, 8.5f, 7.5f, 4.2f, Stuff(230));
  Bar(grid, Axis::Y, 7.5f, 7.5f, 6.4f, 8, 9, Oxide, 5.2f);
  Bar(grid, Axis::X, 8.5f, 7.5f, 6.6f, 7, 8, Brass, 5.5f);
  Bar(grid, Axis::X, 8.5f, 7.5f, 0.9f, 1, 14, Steel);
  Weather(grid, 2175);
}
