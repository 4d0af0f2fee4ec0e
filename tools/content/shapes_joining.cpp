// Pieces that join up into runs: pipes, cables, crawlways, ducts.
//
// All pieces of a family show the same round or square section at an open face, alike under quarter turns and
// mirrors, so that any two of them meet.
#include "palette.h"
#include "shapes_families.h"

constexpr float Middle = 7.5f;
constexpr Paint Glazing{150, 206, 200, 70};

// A disc or a tube about the y axis.
static void Round(Grid &grid, float radius, int low, int high, Paint paint, float inner = 0.0f) {
  Bar(grid, Axis::Y, Middle, Middle, radius, low, high, paint, inner);
}

// A square about the y axis, `margin` voxels from the sides.
static void Square(Grid &grid, int margin, int low, int high, Paint paint) {
  Box(grid, {margin, low, margin, 15 - margin, high, 15 - margin}, paint);
}

static void PipeFlange(Grid &grid, int low, int high) {
  Round(grid, 5.3f, low, high, Brass);
  for (const int at : {4, 11}) {
    Box(grid, {at, low, 4, at, high, 4}, Graphite);
    Box(grid, {at, low, 11, at, high, 11}, Graphite);
  }
}

static void PipeStub(Grid &grid, int length) {
  Round(grid, 3.8f, 0, length, Stuff(230));
  PipeFlange(grid, 0, 1);
}

static void PipeStraight(Grid &grid) {
  PipeStub(grid, 15);
  PipeFlange(grid, 14, 15);
  Round(grid, 4.3f, 7, 8, Stuff(190));
  Round(grid, 2.5f, 0, 15, Nothing);
}

static void PipeCap(Grid &grid) {
  PipeStub(grid, 9);
  Ball(grid, Middle, 9.0f, Middle, 4.4f, Stuff(236));
  Round(grid, 4.8f, 7, 8, Brass);
  Round(grid, 2.5f, 0, 6, Nothing);
}

static void PipeWheel(Grid &grid) {
  PipeStub(grid, 8);
  Round(grid, 4.8f, 6, 9, Stuff(206));
  Round(grid, 1.3f, 10, 14, Steel);
  Round(grid, 5.8f, 13, 13, Oxide, 4.3f);
  Box(grid, {3, 13, 7, 12, 13, 8}, Oxide);
  Box(grid, {7, 13, 3, 8, 13, 12}, Oxide);
  Round(grid, 2.5f, 0, 5, Nothing);
}

static void PipeGauge(Grid &grid) {
  PipeStub(grid, 8);
  Round(grid, 6.0f, 9, 12, Brass);
  Round(grid, 4.9f, 12, 12, OffWhite);
  Box(grid, {7, 12, 7, 7, 12, 11}, Oxide);
  for (const int at : {4, 11}) Box(grid, {at, 12, 7, at, 12, 8}, Charcoal);
  Box(grid, {7, 12, 3, 8, 12, 3}, Charcoal);
  Round(grid, 2.5f, 0, 6, Nothing);
}

static void PipeHub(Grid &grid) {
  Grid arm;
  Round(arm, 3.8f, 8, 15, Stuff(230));
  PipeFlange(arm, 14, 15);
  SixSides(grid, arm);
  Ball(grid, Middle, Middle, Middle, 5.5f, Stuff(206));
  for (const Axis axis : {Axis::X, Axis::Y, Axis::Z}) Bar(grid, axis, Middle, Middle, 2.5f, 0, 15, Nothing);
}

void DrawPipeRun(Grid &grid, int form) {
  void (*const forms[])(Grid &) = {PipeStraight, PipeCap, PipeWheel, PipeGauge, PipeHub};
  forms[form](grid);
  Weather(grid, 340U + static_cast<uint32_t>(form));
}

// Four cables round a bright core.
static void Strands(Grid &grid, int low, int high) {
  Square(grid, 7, low, high, Mustard);
  for (const float u : {5.5f, 9.5f}) {
    for (const float v : {5.5f, 9.5f}) Bar(grid, Axis::Y, u, v, 1.7f, low, high, Charcoal);
  }
}

static void Clamp(Grid &grid, int low, int high) {
  Square(grid, 3, low, high, Stuff(222));
  for (const int x : {3, 12}) {
    for (const int z : {3, 12}) Box(grid, {x, low, z, x, high, z}, Nothing);
  }
}

static void CableStraight(Grid &grid) {
  Strands(grid, 0, 15);
  Clamp(grid, 7, 8);
  for (const int y : {2, 13}) Tint(grid, {0, y, 0, 15, y, 15}, Oxide);
}

static void CablePlug(Grid &grid) {
  Strands(grid, 9, 15);
  Tint(grid, {0, 13, 0, 15, 13, 15}, Oxide);
  Clamp(grid, 2, 8);
  Square(grid, 2, 0, 1, Graphite);
  Square(grid, 2, 5, 6, Stuff(246));
  for (const int z : {2, 13}) Box(grid, {7, 5, z, 8, 6, z}, TealGlow);
  for (const int x : {2, 13}) Box(grid, {x, 5, 7, x, 6, 8}, TealGlow);
}

// Cut through: the strands spread and show their copper.
static void CableFrayed(Grid &grid) {
  const float ends[4][3] = {{2.0f, 3.0f, 3.5f}, {12.5f, 5.0f, 2.0f}, {3.5f, 1.0f, 12.0f}, {13.0f, 3.0f, 12.5f}};
  Strands(grid, 10, 15);
  Tint(grid, {0, 13, 0, 15, 13, 15}, Oxide);
  for (int i = 0; i < 4; i++) {
    const float from[3] = {i % 2 == 0 ? 5.5f : 9.5f, 10.0f, i < 2 ? 5.5f : 9.5f};
    Beam(grid, from, ends[i], 1.0f, Charcoal);
    const float *end = ends[i];
    Box(grid, {static_cast<int>(end[0]), static_cast<int>(end[1]) - 1, static_cast<int>(end[2]),
               static_cast<int>(end[0]) + 1, static_cast<int>(end[1]), static_cast<int>(end[2]) + 1}, Brass);
  }
  Clamp(grid, 9, 10);
}

static void CableHub(Grid &grid) {
  Grid arm;
  Strands(arm, 11, 15);
  Tint(arm, {0, 13, 0, 15, 13, 15}, Oxide);
  SixSides(grid, arm);
  Grid face;
  Square(face, 3, 12, 12, Stuff(222));
  Square(face, 4, 12, 12, Graphite);
  for (const int x : {4, 11}) {
    for (const int z : {4, 11}) Box(face, {x, 12, z, x, 12, z}, TealGlow);
  }
  Strands(face, 12, 12);
  Box(grid, {3, 3, 3, 12, 12, 12}, Stuff(222));
  SixSides(grid, face);
}

void DrawCableRun(Grid &grid, int form) {
  void (*const forms[])(Grid &) = {CableStraight, CablePlug, CableFrayed, CableHub};
  forms[form](grid);
  Weather(grid, 310U + static_cast<uint32_t>(form), 0.8f);
}

// The frame of a crawlway at each end.
static void CrawlRims(Grid &grid) {
  for (const int y : {0, 14}) {
    Square(grid, 0, y, y + 1, Stuff(242));
    Square(grid, 2, y, y + 1, Nothing);
  }
}

static void CrawlPosts(Grid &grid, int width) {
  for (const int x : {0, 16 - width}) {
    for (const int z : {0, 16 - width}) Box(grid, {x, 0, z, x + width - 1, 15, z + width - 1}, Stuff(214));
  }
}

// Walls of panels, with rungs along the inside.
static void CrawlWalls(Grid &grid) {
  Grid side;
  Box(side, {0, 2, 0, 15, 13, 1}, Stuff(228));
  Box(side, {3, 4, 0, 12, 11, 0}, Nothing);
  Box(side, {3, 4, 1, 12, 11, 1}, Stuff(200));
  Box(side, {6, 6, 0, 9, 6, 1}, Oxide);
  Box(side, {5, 3, 2, 10, 3, 2}, Brass);
  Box(side, {5, 11, 2, 10, 11, 2}, Brass);
  Add(grid, side);
  FourSides(grid);
  CrawlPosts(grid, 3);
  Square(grid, 3, 0, 15, Nothing);
  CrawlRims(grid);
}

static void CrawlGlazed(Grid &grid) {
  BoxShell(grid, {1, -1, 1, 14, 16, 14}, 1, Glazing);
  CrawlPosts(grid, 2);
  for (const int x : {7, 8}) {
    for (const int at : {0, 15}) {
      Box(grid, {x, 0, at, x, 15, at}, Graphite);
      Box(grid, {at, 0, x, at, 15, x}, Graphite);
    }
  }
  CrawlRims(grid);
}

static void CrawlOpen(Grid &grid) {
  Grid side;
  for (int i = 1; i < 15; i++) {
    Box(side, {i, i, 0, i + 1, i, 1}, Stuff(200));
    Box(side, {14 - i, i, 0, 15 - i, i, 1}, Stuff(200));
  }
  Box(side, {6, 6, 0, 9, 9, 1}, Oxide);
  Add(grid, side);
  FourSides(grid);
  CrawlPosts(grid, 2);
  CrawlRims(grid);
}

// A cube of frames, open to all sides.
static void CrawlNode(Grid &grid) {
  BoxEdges(grid, WholeGrid, 2, Stuff(242));
  Grid side;
  for (const int x : {2, 13}) {
    for (const int z : {2, 13}) Box(side, {x, 14, z, x, 14, z}, Stuff(206));
  }
  for (const int x : {0, 14}) {
    for (const int z : {0, 14}) Box(side, {x, 14, z, x + 1, 15, z + 1}, Oxide);
  }
  SixSides(grid, side);
}

static void CrawlClosed(Grid &grid) {
  Grid face;
  Square(face, 0, 15, 15, Stuff(196));
  Square(face, 1, 15, 15, Stuff(238));
  Round(face, 6.2f, 15, 15, Graphite);
  Round(face, 5.4f, 15, 15, Stuff(214));
  Round(face, 2.6f, 15, 15, Oxide, 1.6f);
  for (const int at : {2, 13}) {
    Box(face, {at, 15, 2, at, 15, 2}, Brass);
    Box(face, {at, 15, 13, at, 15, 13}, Brass);
  }
  Box(grid, WholeGrid, Stuff(220));
  SixSides(grid, face);
}

void DrawCrawlway(Grid &grid, int form) {
  void (*const forms[])(Grid &) = {CrawlWalls, CrawlGlazed, CrawlOpen, CrawlNode, CrawlClosed};
  forms[form](grid);
  Weather(grid, 20U + static_cast<uint32_t>(form), 0.7f);
}

static void DuctFlange(Grid &grid, int y) {
  Square(grid, 2, y, y, Graphite);
}

static void DuctBody(Grid &grid, int low, int high) {
  Square(grid, 3, low, high, Stuff(230));
  if (low == 0) DuctFlange(grid, 0);
  if (high == 15) DuctFlange(grid, 15);
}

static void DuctPlain(Grid &grid) {
  DuctBody(grid, 0, 15);
  for (const int y : {4, 8, 11}) {
    Grid ring;
    Square(ring, 3, y, y, Stuff(186));
    Add(grid, ring);
  }
  Square(grid, 4, 0, 15, Nothing);
}

static void DuctHatched(Grid &grid) {
  DuctBody(grid, 0, 15);
  Grid side;
  Box(side, {5, 3, 2, 10, 12, 2}, Stuff(206));
  Box(side, {5, 3, 2, 10, 3, 2}, Graphite);
  Box(side, {5, 12, 2, 10, 12, 2}, Graphite);
  for (const int y : {6, 8}) Box(side, {6, y, 2, 9, y, 2}, Charcoal);
  Box(side, {9, 10, 2, 9, 10, 2}, Oxide);
  FourSides(side);
  Add(grid, side);
  Square(grid, 4, 0, 15, Nothing);
}

// Slats across an opening of the upper side.
static void DuctSlats(Grid &grid, int y) {
  for (int x = 4; x < 12; x += 2) Box(grid, {x, y, 4, x, y, 11}, Steel);
}

static void DuctOutlet(Grid &grid) {
  DuctBody(grid, 3, 15);
  Square(grid, 1, 1, 3, Stuff(212));
  Square(grid, 2, 1, 1, Stuff(240));
  Square(grid, 4, 0, 15, Nothing);
  Square(grid, 3, 1, 1, Nothing);
  for (int x = 3; x < 13; x += 2) Box(grid, {x, 2, 3, x, 3, 12}, Steel);
}

static void DuctJunction(Grid &grid) {
  Box(grid, {2, 2, 2, 13, 13, 13}, Stuff(222));
  BoxEdges(grid, {2, 2, 2, 13, 13, 13}, 1, Stuff(244));
  Grid port;
  Square(port, 3, 14, 14, Stuff(230));
  DuctFlange(port, 15);
  SixSides(grid, port);
  for (const Region &bore : {Region{0, 4, 4, 15, 11, 11}, Region{4, 0, 4, 11, 15, 11}, Region{4, 4, 0, 11, 11, 15}}) {
    Box(grid, bore, Nothing);
  }
  Grid slats;
  DuctSlats(slats, 13);
  SixSides(grid, slats);
}

static void DuctFan(Grid &grid) {
  DuctBody(grid, 0, 15);
  Round(grid, 7.3f, 3, 12, Stuff(214));
  for (const int y : {3, 12}) Round(grid, 7.3f, y, y, Graphite);
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) {
      for (const int y : {7, 8}) {
        if (Filled(grid, x, y, z)) At(grid, x, y, z) = (x + z) / 3 % 2 == 0 ? Mustard : Charcoal;
      }
    }
  }
  Round(grid, 5.6f, 1, 14, Nothing);
  Square(grid, 4, 0, 15, Nothing);
  for (int i = -5; i <= 5; i++) {
    const int lift = i > 0 ? 1 : 0;
    Box(grid, {7 + i, 6 + lift, 7, 8 + i, 8 + lift, 8}, Steel);
    Box(grid, {7, 6 + lift, 7 + i, 8, 8 + lift, 8 + i}, Steel);
  }
  Round(grid, 1.8f, 5, 10, Oxide);
}

// Through a wall: a plate as thick as the cell closes the gap around.
static void DuctWalled(Grid &grid) {
  Square(grid, 0, 1, 14, Stuff(224));
  for (const int y : {1, 14}) {
    Square(grid, 1, y, y, Stuff(240));
    Square(grid, 2, y, y, Stuff(190));
    for (const int at : {1, 14}) {
      Box(grid, {at, y, 1, at, y, 1}, Brass);
      Box(grid, {at, y, 14, at, y, 14}, Brass);
    }
  }
  DuctFlange(grid, 0);
  DuctFlange(grid, 15);
  Square(grid, 4, 0, 15, Nothing);
}

// From x = 15 to y = 15, with the outer corner cut.
static void DuctBend(Grid &grid) {
  Box(grid, {3, 3, 3, 12, 15, 12}, Stuff(230));
  Box(grid, {3, 3, 3, 15, 12, 12}, Stuff(230));
  DuctFlange(grid, 15);
  Box(grid, {15, 2, 2, 15, 13, 13}, Graphite);
  Box(grid, {4, 4, 4, 11, 15, 11}, Nothing);
  Box(grid, {4, 4, 4, 15, 11, 11}, Nothing);
  for (int x = 3; x < 9; x++) {
    for (int y = 3; y < 9; y++) {
      if (x + y < 11) Box(grid, {x, y, 0, x, y, 15}, Nothing);
      if (x + y == 11) Box(grid, {x, y, 3, x, y, 12}, Stuff(206));
      if (x + y == 12) Box(grid, {x, y, 3, x, y, 12}, Stuff(214));
    }
  }
}

void DrawDuct(Grid &grid, int form) {
  void (*const forms[])(Grid &) = {DuctPlain, DuctHatched, DuctOutlet, DuctJunction, DuctFan, DuctWalled, DuctBend};
  forms[form](grid);
  Weather(grid, 40U + static_cast<uint32_t>(form), 0.8f);
}
