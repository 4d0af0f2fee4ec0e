// Things that grow.
#include "noise.h"
#include "palette.h"
#include "shapes_more.h"

#include <algorithm>
#include <cmath>

constexpr Paint Earth{104, 82, 64, 255};
constexpr Paint Bark{128, 96, 70, 255};

static void Pot(Grid &grid, Paint paint) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.8f, 0, 3, paint);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 4.6f, 3, 4, paint);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.6f, 4, 4, Earth);
}

// A ball of leaves with holes in it.
static void Foliage(Grid &grid, float x, float y, float z, float radius, uint32_t seed, Paint paint) {
  Dice dice{seed};
  for (int i = 0; i < GridEdge; i++) {
    for (int j = 0; j < GridEdge; j++) {
      for (int k = 0; k < GridEdge; k++) {
        const float d = std::hypot(static_cast<float>(i) - x, static_cast<float>(j) - y, static_cast<float>(k) - z);
        const float keep = Roll(&dice);
        const float shade = RollBetween(&dice, 0.72f, 1.15f);
        if (d <= radius && keep < 0.78f) At(grid, i, j, k) = Scaled(paint, shade);
      }
    }
  }
}

void DrawFern(Grid &grid, int) {
  Pot(grid, {196, 124, 92, 255});
  for (int i = 0; i < 10; i++) {
    const float angle = static_cast<float>(i) * 0.628f;
    const Paint green = Scaled(Leaf, i % 2 == 0 ? 0.85f : 1.1f);
    for (float t = 0.0f; t < 7.2f; t += 0.4f) {
      const int x = static_cast<int>(std::lround(7.5f + t * std::cos(angle)));
      const int z = static_cast<int>(std::lround(7.5f + t * std::sin(angle)));
      const float lift = i % 2 == 0 ? 2.0f : 2.8f;
      const int y = static_cast<int>(5.0f + lift * t * 0.62f - 0.22f * t * t * (i % 2 == 0 ? 1.0f : 0.7f));
      Box(grid, {x, y, z, x, y + 1, z}, green);
    }
  }
  Weather(grid, 2200, 0.8f);
}

void DrawBush(Grid &grid, int) {
  Box(grid, {6, 0, 6, 9, 4, 9}, Bark);
  Foliage(grid, 7.5f, 7.5f, 7.5f, 7.4f, 2201, Leaf);
  Weather(grid, 2201);
}

void DrawGrass(Grid &grid, int) {
  Box(grid, {0, 0, 0, 15, 1, 15}, Earth);
  Dice dice{2202};
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) {
      const Paint green = Scaled(Leaf, RollBetween(&dice, 0.75f, 1.15f));
      At(grid, x, 2, z) = green;
      if (Roll(&dice) < 0.32f) Box(grid, {x, 3, z, x, RollInt(&dice, 3, 6), z}, Scaled(green, 1.1f));
    }
  }
  Weather(grid, 2202, 0.6f);
}

// Creepers on a wall.
void DrawVine(Grid &grid, int) {
  Dice dice{2203};
  for (int strand = 0; strand < 5; strand++) {
    int x = 1 + strand * 3;
    for (int z = 15; z >= 0; z--) {
      At(grid, x, 0, z) = Scaled(Leaf, 0.7f);
      if (Roll(&dice) < 0.62f) {
        const int side = RollInt(&dice, -1, 1);
        Box(grid, {x + side, 1, z - 1, x + side + 1, 1, z}, Scaled(Leaf, RollBetween(&dice, 0.8f, 1.2f)));
      }
      if (Roll(&dice) < 0.3f) x = std::clamp(x + RollInt(&dice, -1, 1), 1, 14);
    }
  }
  for (int i = 0; i < 5; i++) {
    const int x = RollInt(&dice, 2, 13);
    const int z = RollInt(&dice, 2, 13);
    At(grid, x, 2, z) = {232, 208, 226, 255};
  }
  Weather(grid, 2203, 0.7f);
}

void DrawCactus(Grid &grid, int) {
  Pot(grid, {92, 142, 150, 255});
  Bar(grid, Axis::Y, 7.5f, 7.5f, 2.4f, 5, 14, {104, 150, 96, 255});
  Bar(grid, Axis::Y, 7.5f, 7.5f, 1.4f, 15, 15, {104, 150, 96, 255});
  Box(grid, {2, 8, 7, 5, 9, 8}, {104, 150, 96, 255});
  Box(grid, {2, 8, 7, 3, 12, 8}, {112, 160, 102, 255});
  Box(grid, {10, 10, 7, 13, 11, 8}, {104, 150, 96, 255});
  Box(grid, {12, 10, 7, 13, 14, 8}, {112, 160, 102, 255});
  for (int y = 6; y < 15; y += 2) {
    for (const int i : {5, 10}) {
      At(grid, i, y, 7) = Bone;
      At(grid, 8, y, i) = Bone;
    }
  }
  Box(grid, {7, 15, 7, 8, 15, 8}, {244, 150, 150, 255});
  Weather(grid, 2204, 0.8f);
}

void DrawFlowers(Grid &grid, int) {
  Box(grid, {1, 0, 3, 14, 3, 12}, Stuff(220));
  Box(grid, {2, 3, 4, 13, 3, 11}, Earth);
  const Paint petals[4] = {{240, 160, 170, 255}, {244, 206, 96, 255}, {206, 170, 232, 255}, {244, 238, 226, 255}};
  Dice dice{2205};
  for (int i = 0; i < 9; i++) {
    const int x = 3 + i % 5 * 2 + i / 5;
    const int z = i < 5 ? 5 : 9;
    const int y = RollInt(&dice, 7, 12);
    Box(grid, {x, 4, z, x, y, z}, Scaled(Leaf, 0.85f));
    At(grid, x - 1, 5, z) = Leaf;
    const Paint petal = petals[RollInt(&dice, 0, 3)];
    Box(grid, {x - 1, y, z, x + 1, y, z}, petal);
    Box(grid, {x, y, z - 1, x, y, z + 1}, petal);
    At(grid, x, y + 1, z) = Mustard;
  }
  Weather(grid, 2205, 0.7f);
}

void DrawTree(Grid &grid, int) {
  Box(grid, {2, 0, 2, 13, 2, 13}, Stuff(216));
  Box(grid, {3, 2, 3, 12, 2, 12}, Earth);
  Box(grid, {7, 3, 7, 8, 9, 8}, Bark);
  Box(grid, {5, 7, 7, 7, 7, 8}, Bark);
  Foliage(grid, 7.5f, 11.5f, 7.5f, 4.4f, 2206, Leaf);
  Foliage(grid, 4.0f, 9.0f, 7.0f, 3.0f, 2207, Scaled(Leaf, 1.1f));
  Foliage(grid, 11.0f, 9.6f, 8.5f, 3.0f, 2208, Scaled(Leaf, 0.9f));
  Weather(grid, 2206, 0.9f);
}

void DrawMushrooms(Grid &grid, int) {
  Dice dice{2209};
  const int place[5][3] = {{4, 4, 7}, {11, 5, 5}, {8, 10, 10}, {3, 12, 4}, {12, 12, 6}};
  for (const auto &p : place) {
    const float x = static_cast<float>(p[0]);
    const float z = static_cast<float>(p[1]);
    const float cap = 1.6f + static_cast<float>(p[2]) * 0.2f;
    Bar(grid, Axis::Y, x, z, 1.0f, 0, p[2], {232, 222, 204, 255});
    Bar(grid, Axis::Y, x, z, cap, p[2], p[2], {214, 120, 84, 255});
    Bar(grid, Axis::Y, x, z, cap - 0.8f, p[2] + 1, p[2] + 1, {226, 140, 98, 255});
    At(grid, p[0] + RollInt(&dice, 0, 1), p[2] + 1, p[1]) = TealGlow;
  }
  Weather(grid, 2207, 0.8f);
}

// Two trays of seedlings under grow lights.
void DrawHydroponics(Grid &grid, int) {
  for (const int x : {0, 15}) {
    for (const int z : {1, 14}) Box(grid, {x, 0, z, x, 15, z}, Steel);
  }
  Dice dice{2210};
  for (const int y : {0, 8}) {
    Box(grid, {0, y, 1, 15, y + 1, 14}, OffWhite);
    Box(grid, {1, y + 1, 2, 14, y + 1, 13}, Earth);
    for (int x = 2; x < 14; x += 2) {
      for (int z = 3; z < 13; z += 2) {
        const int top = y + RollInt(&dice, 2, 4);
        Box(grid, {x, y + 2, z, x, top, z}, Scaled(Leaf, RollBetween(&dice, 0.8f, 1.2f)));
      }
    }
    Box(grid, {0, y + 7, 2, 15, y + 7, 13}, OffWhite);
    for (const int z : {4, 8, 11}) Box(grid, {1, y + 6, z, 14, y + 6, z}, {255, 170, 236, 255});
  }
  Weather(grid, 2208, 0.8f);
}
