// Things of several cells. Each is drawn standing, x to the right, y up, z to the back, in one picture of all its
// cells; a cell takes its part of it and is laid down the way such things are placed.
#include "palette.h"
#include "shapes_families.h"

namespace {

// One cell's part of a large picture: everything is drawn as if all of it were there.
struct Part {
  Grid grid;
  int x, y, z;  // the cell's first voxel in the picture
};

constexpr Paint CoolantBlue{120, 206, 230, 90};
constexpr Paint Glazing{150, 206, 200, 70};

}  // namespace

static void Box(Part &p, Region r, Paint paint) {
  Box(p.grid, {r.x0 - p.x, r.y0 - p.y, r.z0 - p.z, r.x1 - p.x, r.y1 - p.y, r.z1 - p.z}, paint);
}

// Upright, about the centre (x, z).
static void Column(Part &p, float x, float z, float radius, int low, int high, Paint paint, float inner = 0.0f) {
  Bar(p.grid, Axis::Y, x - static_cast<float>(p.x), z - static_cast<float>(p.z), radius, low - p.y, high - p.y, paint,
      inner);
}

static void Ball(Part &p, float x, float y, float z, float radius, Paint paint, float inner = 0.0f) {
  Ball(p.grid, x - static_cast<float>(p.x), y - static_cast<float>(p.y), z - static_cast<float>(p.z), radius, paint,
       inner);
}

// Such things are placed with their x mirrored, and y and z exchanged.
static void LayDown(Grid &grid, const Grid &standing) {
  for (int x = 0; x < GridEdge; x++) {
    for (int y = 0; y < GridEdge; y++) {
      for (int z = 0; z < GridEdge; z++) At(grid, 15 - x, z, y) = At(standing, x, y, z);
    }
  }
}

static void Finish(Grid &grid, Part *part, uint32_t seed) {
  Weather(part->grid, seed, 0.7f);
  LayDown(grid, part->grid);
}

// A bed along z.
void DrawBerth(Grid &grid, int form) {
  Part p{{}, 0, 0, form * 16};
  Box(p, {0, 0, 0, 15, 4, 31}, Stuff(222));
  for (const int z : {3, 17}) {
    Box(p, {0, 1, z, 0, 3, z + 11}, Stuff(196));
    Box(p, {0, 2, z + 4, 0, 2, z + 7}, Brass);
    Box(p, {15, 1, z, 15, 3, z + 11}, Stuff(196));
  }
  Box(p, {1, 5, 1, 14, 7, 30}, OffWhite);
  Box(p, {0, 6, 11, 15, 8, 30}, Teal);
  Box(p, {0, 7, 11, 15, 8, 13}, Bone);
  Box(p, {3, 8, 2, 12, 9, 7}, OffWhite);
  Box(p, {0, 0, 0, 15, 13, 0}, Stuff(236));
  Box(p, {0, 0, 31, 15, 9, 31}, Stuff(236));
  Finish(grid, &p, 30);
}

void DrawWardrobe(Grid &grid, int form) {
  Part p{{}, 0, form == 0 ? 16 : 0, 0};
  Box(p, {0, 2, 1, 15, 31, 15}, Stuff(226));
  Box(p, {1, 0, 3, 14, 1, 14}, Charcoal);
  Box(p, {0, 30, 0, 15, 31, 15}, Stuff(206));
  for (const int x : {1, 8}) {
    Box(p, {x, 3, 0, x + 6, 29, 0}, Stuff(240));
    for (int y = 23; y < 28; y += 2) Box(p, {x + 1, y, 0, x + 5, y, 0}, Charcoal);
    Box(p, {x + 1, 5, 0, x + 5, 5, 0}, Oxide);
  }
  for (const int x : {6, 9}) Box(p, {x, 12, 0, x, 18, 0}, Brass);
  Finish(grid, &p, 120);
}

// Coolant that rises through a glass column.
void DrawCoolant(Grid &grid, int form) {
  Part p{{}, 0, form == 0 ? 16 : 0, 0};
  Column(p, 7.5f, 7.5f, 5.6f, 4, 27, CoolantBlue);
  for (const int y : {6, 11, 15, 20, 24}) Ball(p, y % 2 == 0 ? 6.0f : 9.0f, static_cast<float>(y), 7.5f, 1.2f, ColdGlow);
  for (const int y : {0, 28}) {
    Column(p, 7.5f, 7.5f, 7.4f, y, y + 3, Stuff(228));
    Column(p, 7.5f, 7.5f, 6.6f, y == 0 ? 4 : 26, y == 0 ? 5 : 27, Graphite);
  }
  Column(p, 7.5f, 7.5f, 6.4f, 15, 16, Brass, 5.0f);
  for (const int x : {1, 14}) {
    for (const int z : {1, 14}) Box(p, {x, 0, z, x, 31, z}, Stuff(206));
  }
  for (const int y : {0, 31}) Box(p, {0, y, 0, 15, y, 15}, Stuff(214));
  Finish(grid, &p, 122);
}

static void Suit(Part &p) {
  for (const int x : {4, 8}) Box(p, {x, 4, 6, x + 2, 13, 9}, OffWhite);
  for (const int x : {4, 8}) Box(p, {x, 3, 5, x + 2, 5, 9}, Charcoal);
  Box(p, {4, 12, 5, 10, 21, 10}, OffWhite);
  for (const int x : {2, 11}) Box(p, {x, 11, 6, x + 1, 21, 9}, Bone);
  Box(p, {5, 16, 4, 9, 18, 4}, Oxide);
  Ball(p, 7.0f, 25.0f, 7.5f, 3.6f, OffWhite);
  Box(p, {5, 24, 3, 9, 27, 5}, Mustard);
}

void DrawSuitLocker(Grid &grid, int form) {
  Part p{{}, 0, form == 0 ? 16 : 0, 0};
  Box(p, {0, 0, 13, 15, 31, 15}, Stuff(214));
  for (const int x : {0, 14}) Box(p, {x, 0, 1, x + 1, 31, 15}, Stuff(230));
  Box(p, {0, 0, 0, 15, 2, 15}, Stuff(206));
  Box(p, {0, 30, 0, 15, 31, 15}, Stuff(206));
  Box(p, {2, 29, 4, 13, 29, 10}, ColdGlow);
  Suit(p);
  Box(p, {2, 3, 1, 13, 29, 1}, Glazing);
  Box(p, {13, 14, 0, 13, 18, 0}, Brass);
  Finish(grid, &p, 124);
}

static void CoreFrame(Part &p) {
  for (const int y : {0, 28}) {
    Box(p, {0, y, 0, 31, y + 3, 31}, Stuff(220));
    Box(p, {0, y + 1, 0, 31, y + 2, 31}, Graphite);
    Box(p, {2, y, 2, 29, y + 3, 29}, Stuff(220));
  }
  for (const int x : {1, 26}) {
    for (const int z : {1, 26}) {
      Box(p, {x, 4, z, x + 4, 27, z + 4}, Stuff(232));
      Box(p, {x - 1, 13, z - 1, x + 5, 18, z + 5}, Oxide);
    }
  }
}

// A bright ball between two poles, held by four pylons.
void DrawFusionCore(Grid &grid, int form) {
  Part p{{}, form / 4 * 16, form / 2 % 2 == 0 ? 16 : 0, form % 2 * 16};
  CoreFrame(p);
  for (int i = 0; i < 5; i++) {
    const float radius = 11.5f - static_cast<float>(i) * 1.5f;
    Column(p, 15.5f, 15.5f, radius, 4 + i, 4 + i, i % 2 == 0 ? Brass : Stuff(206));
    Column(p, 15.5f, 15.5f, radius, 27 - i, 27 - i, i % 2 == 0 ? Brass : Stuff(206));
  }
  Column(p, 15.5f, 15.5f, 10.4f, 31, 31, Brass, 8.8f);
  Column(p, 15.5f, 15.5f, 7.4f, 31, 31, Graphite);
  Column(p, 15.5f, 15.5f, 5.4f, 31, 31, TealGlow);
  Ball(p, 15.5f, 15.5f, 15.5f, 8.4f, TealGlow);
  Ball(p, 15.5f, 15.5f, 15.5f, 6.6f, ColdGlow);
  Column(p, 15.5f, 15.5f, 11.4f, 14, 17, Stuff(240), 9.6f);
  Column(p, 15.5f, 15.5f, 12.2f, 15, 16, Brass, 10.8f);
  Finish(grid, &p, 350);
}
