// A component's 16 x 16 x 16 voxels while it is drawn.
#include "grid.h"

#include "noise.h"
#include "output.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

static int Index(int x, int y, int z) {
  return x * 256 + y * 16 + z;
}

static bool Inside(int x, int y, int z) {
  return x >= 0 && x < GridEdge && y >= 0 && y < GridEdge && z >= 0 && z < GridEdge;
}

// Calls a function with each place of the grid.
template <typename Visit>
static void EachPlace(Visit visit) {
  for (int x = 0; x < GridEdge; x++) {
    for (int y = 0; y < GridEdge; y++) {
      for (int z = 0; z < GridEdge; z++) visit(x, y, z);
    }
  }
}

static bool Within(const Region &r, int x, int y, int z) {
  return x >= r.x0 && x <= r.x1 && y >= r.y0 && y <= r.y1 && z >= r.z0 && z <= r.z1;
}

// On how many axes a place lies in the outer `width` layers of a region.
static int OuterAxes(const Region &r, int width, int x, int y, int z) {
  return (x < r.x0 + width || x > r.x1 - width) + (y < r.y0 + width || y > r.y1 - width) +
         (z < r.z0 + width || z > r.z1 - width);
}

Paint &At(Grid &grid, int x, int y, int z) {
  return grid.voxels[static_cast<size_t>(Index(x, y, z))];
}

const Paint &At(const Grid &grid, int x, int y, int z) {
  return grid.voxels[static_cast<size_t>(Index(x, y, z))];
}

bool Filled(const Grid &grid, int x, int y, int z) {
  return Inside(x, y, z) && At(grid, x, y, z).alpha != 0;
}

static uint8_t ToByte(float value, float low) {
  return static_cast<uint8_t>(std::clamp(value + 0.5f, low, 255.0f));
}

Paint Stuff(int shade) {
  const uint8_t s = static_cast<uint8_t>(std::clamp(shade, 1, 255));
  return {s, s, s, 254};
}

Paint Scaled(Paint paint, float factor) {
  paint.red = ToByte(static_cast<float>(paint.red) * factor, 1.0f);
  paint.green = ToByte(static_cast<float>(paint.green) * factor, 1.0f);
  paint.blue = ToByte(static_cast<float>(paint.blue) * factor, 1.0f);
  return paint;
}

void Box(Grid &grid, Region region, Paint paint) {
  EachPlace([&](int x, int y, int z) {
    if (Within(region, x, y, z)) At(grid, x, y, z) = paint;
  });
}

void BoxEdges(Grid &grid, Region region, int width, Paint paint) {
  EachPlace([&](int x, int y, int z) {
    if (Within(region, x, y, z) && OuterAxes(region, width, x, y, z) >= 2) At(grid, x, y, z) = paint;
  });
}

void BoxShell(Grid &grid, Region region, int width, Paint paint) {
  EachPlace([&](int x, int y, int z) {
    if (Within(region, x, y, z) && OuterAxes(region, width, x, y, z) >= 1) At(grid, x, y, z) = paint;
  });
}

void Bar(Grid &grid, Axis axis, float u, float v, float radius, int low, int high, Paint paint, float inner) {
  EachPlace([&](int x, int y, int z) {
    const int along = axis == Axis::X ? x : axis == Axis::Y ? y : z;
    const float a = static_cast<float>(axis == Axis::X ? y : x) - u;
    const float b = static_cast<float>(axis == Axis::Z ? y : z) - v;
    const float d = a * a + b * b;
    if (along >= low && along <= high && d <= radius * radius && (inner <= 0.0f || d > inner * inner)) {
      At(grid, x, y, z) = paint;
    }
  });
}

void Ball(Grid &grid, float cx, float cy, float cz, float radius, Paint paint, float inner) {
  EachPlace([&](int x, int y, int z) {
    const float a = static_cast<float>(x) - cx;
    const float b = static_cast<float>(y) - cy;
    const float c = static_cast<float>(z) - cz;
    const float d = a * a + b * b + c * c;
    if (d <= radius * radius && (inner <= 0.0f || d > inner * inner)) At(grid, x, y, z) = paint;
  });
}

void Beam(Grid &grid, const float from[3], const float to[3], float halfWidth, Paint paint) {
  constexpr int steps = 64;
  for (int i = 0; i <= steps; i++) {
    const float t = static_cast<float>(i) / steps;
    int low[3];
    int high[3];
    for (int a = 0; a < 3; a++) {
      const float centre = from[a] + (to[a] - from[a]) * t;
      low[a] = static_cast<int>(std::ceil(centre - halfWidth));
      high[a] = static_cast<int>(std::floor(centre + halfWidth));
    }
    Box(grid, {low[0], low[1], low[2], high[0], high[1], high[2]}, paint);
  }
}

void BevelCube(Grid &grid, int width) {
  EachPlace([&](int x, int y, int z) {
    int depth[3] = {std::min(x, 15 - x), std::min(y, 15 - y), std::min(z, 15 - z)};
    std::sort(depth, depth + 3);
    if (depth[0] + depth[1] < width) At(grid, x, y, z) = {};
  });
}

void Mirror(Grid &grid, Axis axis) {
  const Grid before = grid;
  EachPlace([&](int x, int y, int z) {
    const Paint &paint = At(before, axis == Axis::X ? 15 - x : x, axis == Axis::Y ? 15 - y : y,
                            axis == Axis::Z ? 15 - z : z);
    if (paint.alpha != 0 && At(grid, x, y, z).alpha == 0) At(grid, x, y, z) = paint;
  });
}

void FourSides(Grid &grid) {
  Grid turn = grid;
  for (int i = 0; i < 3; i++) {
    turn = Turned(turn, Axis::Y);
    EachPlace([&](int x, int y, int z) {
      if (!Filled(grid, x, y, z)) At(grid, x, y, z) = At(turn, x, y, z);
    });
  }
}

Grid Turned(const Grid &grid, Axis axis) {
  Grid out;
  EachPlace([&](int x, int y, int z) {
    switch (axis) {
      case Axis::X: At(out, x, z, 15 - y) = At(grid, x, y, z); break;
      case Axis::Y: At(out, z, y, 15 - x) = At(grid, x, y, z); break;
      case Axis::Z: At(out, y, 15 - x, z) = At(grid, x, y, z); break;
    }
  });
  return out;
}

void Add(Grid &grid, const Grid &other) {
  EachPlace([&](int x, int y, int z) {
    if (Filled(other, x, y, z)) At(grid, x, y, z) = At(other, x, y, z);
  });
}

void SixSides(Grid &grid, const Grid &top) {
  Grid turn = top;
  for (int i = 0; i < 4; i++) {
    Add(grid, turn);
    turn = Turned(turn, Axis::X);
  }
  turn = Turned(top, Axis::Z);
  Add(grid, turn);
  Add(grid, Turned(Turned(turn, Axis::Z), Axis::Z));
}

void Tint(Grid &grid, Region region, Paint paint) {
  EachPlace([&](int x, int y, int z) {
    if (Within(region, x, y, z) && Filled(grid, x, y, z)) At(grid, x, y, z) = paint;
  });
}

void Greeble(Grid &grid, Region region, int count, uint32_t seed, Paint paint) {
  Dice dice{seed};
  for (int i = 0; i < count; i++) {
    const int width = RollInt(&dice, 1, 3);
    const int depth = RollInt(&dice, 1, 3);
    const int x = RollInt(&dice, region.x0, std::max(region.x0, region.x1 - width));
    const int z = RollInt(&dice, region.z0, std::max(region.z0, region.z1 - depth));
    const int top = RollInt(&dice, region.y0, region.y1);
    const Paint shade = Scaled(paint, RollBetween(&dice, 0.8f, 1.1f));
    Box(grid, {x, region.y0, z, x + width, top, z + depth}, shade);
  }
}

// Whether a place counts as filled for its neighbours' look. Beyond a face there is open space; beyond an
// edge the next block is taken to go on, so that blocks side by side read as one surface.
static bool Encloses(const Grid &grid, int x, int y, int z) {
  const int axesOut = (x < 0 || x > 15) + (y < 0 || y > 15) + (z < 0 || z > 15);
  return axesOut == 0 ? At(grid, x, y, z).alpha != 0 : axesOut > 1;
}

// The share of filled places around one, 0 to 1: about two thirds on a flat surface.
static float Enclosure(const Grid &grid, int x, int y, int z, int reach) {
  int filled = 0;
  int all = 0;
  for (int dx = -reach; dx <= reach; dx++) {
    for (int dy = -reach; dy <= reach; dy++) {
      for (int dz = -reach; dz <= reach; dz++) {
        all++;
        filled += Encloses(grid, x + dx, y + dy, z + dz);
      }
    }
  }
  return static_cast<float>(filled) / static_cast<float>(all);
}

void Weather(Grid &grid, uint32_t seed, float strength) {
  const Grid before = grid;
  EachPlace([&](int x, int y, int z) {
    const Paint paint = At(before, x, y, z);
    const bool glows = paint.alpha == 255 && std::max({paint.red, paint.green, paint.blue}) >= 250;
    if (paint.alpha < 250 || glows) return;
    const float near = 0.667f - Enclosure(before, x, y, z, 1);
    const float wide = 0.6f - Enclosure(before, x, y, z, 2);
    const float patch = SmoothNoise(static_cast<float>(x) * 0.23f, static_cast<float>(y) * 0.23f,
                                    static_cast<float>(z) * 0.23f, seed) - 0.5f;
    const float factor = 1.0f + strength * (0.45f * near + 0.35f * wide + 0.09f * patch);
    At(grid, x, y, z) = Scaled(paint, std::clamp(factor, 0.5f, 1.16f));
  });
}

static void PutNumber(std::string *out, uint32_t value) {
  for (int i = 0; i < 4; i++) out->push_back(static_cast<char>((value >> (8 * i)) & 0xff));
}

bool WriteGrid(const Grid &grid, const std::string &path) {
  std::string bytes = "3MP";
  for (const uint32_t number : {2U, 16U, 16U, 16U, 0U, 0U, 0U}) PutNumber(&bytes, number);
  bytes.push_back(0);
  // The table's middle index counts towards the surface that the block is put against.
  for (int x = 0; x < GridEdge; x++) {
    for (int j = 0; j < GridEdge; j++) {
      for (int z = 0; z < GridEdge; z++) {
        const Paint &paint = At(grid, x, 15 - j, z);
        for (const uint8_t byte : {paint.blue, paint.green, paint.red, paint.alpha}) {
          bytes.push_back(static_cast<char>(byte));
        }
      }
    }
  }
  return WriteIfChanged(path, bytes);
}
