// Full cubes with one picture on all sides.
#include "noise.h"
#include "palette.h"
#include "shapes_families.h"

#include <algorithm>

static int BorderDepth(int a, int b) {
  return std::min({a, 15 - a, b, 15 - b});
}

static float Grain(int a, int b, uint32_t seed) {
  return LatticeValue(a, b, 0, seed);
}

static Paint DeckFace(int a, int b) {
  if (BorderDepth(a, b) == 0) return Stuff(180);
  const bool stud = (a / 2 + b / 2) % 2 == 0 && a % 2 == 1 && b % 2 == 1;
  return Stuff(stud ? 252 : 216);
}

static Paint TileFace(int a, int b) {
  if (a % 8 == 7 || b % 8 == 7) return Stuff(164);
  return Stuff((a / 8 + b / 8) % 2 == 0 ? 244 : 226);
}

static Paint BrickFace(int a, int b) {
  const int course = b / 4;
  const int along = (a + course % 2 * 4) & 15;
  if (b % 4 == 3 || along % 8 == 7) return Scaled(Bone, 0.7f);
  return Stuff(196 + static_cast<int>(Grain(along / 8, course, 13) * 50.0f));
}

static Paint SlatFace(int, int b) {
  return Stuff(b % 4 == 0 ? 150 : b % 4 == 1 ? 246 : 222);
}

static Paint PanelFace(int a, int b) {
  const int depth = BorderDepth(a, b);
  if (depth == 0) return Stuff(190);
  if (depth == 3) return Stuff(170);
  return Stuff(depth < 3 ? 240 : 216);
}

static Paint GrilleFace(int a, int b) {
  if (BorderDepth(a, b) < 2) return Stuff(236);
  return b % 3 == 1 ? Charcoal : Stuff(206);
}

static Paint CheckerFace(int a, int b) {
  return (a / 4 + b / 4) % 2 == 0 ? OffWhite : Charcoal;
}

static Paint BandFace(int a, int b) {
  if (b > 5 && b < 10) return a % 8 == 0 ? Scaled(Oxide, 0.8f) : Oxide;
  return Stuff(BorderDepth(a, b) == 0 ? 200 : 234);
}

static Paint BulkheadFace(int a, int b) {
  const int depth = BorderDepth(a, b);
  if (depth == 1 && (a + b) % 4 == 1) return Brass;
  return Stuff(depth < 3 ? 206 : depth == 3 ? 160 : 230);
}

static Paint BracedFace(int a, int b) {
  if (BorderDepth(a, b) < 2) return Stuff(240);
  const bool brace = std::abs(a - b) < 2 || std::abs(a + b - 15) < 2;
  return Stuff(brace ? 226 : 168);
}

static Paint MarbleFace(int a, int b) {
  const float vein = SmoothNoise(static_cast<float>(a) * 0.2f, static_cast<float>(b) * 0.2f, 0.0f, 400);
  return Stuff(vein > 0.46f && vein < 0.53f ? 176 : 236 + static_cast<int>(vein * 18.0f));
}

static Paint MosaicFace(int a, int b) {
  const Paint stones[4] = {Teal, OffWhite, Scaled(Teal, 0.7f), Brass};
  if (a % 3 == 2 || b % 3 == 2) return Scaled(Bone, 0.7f);
  return stones[static_cast<int>(Grain(a / 3, b / 3, 401) * 3.99f)];
}

static Paint ParquetFace(int a, int b) {
  const bool across = (a / 8 + b / 8) % 2 == 0;
  const int lath = across ? a : b;
  if (lath % 4 == 3) return Scaled(Cloth, 0.6f);
  return Scaled(Cloth, 0.9f + Grain(lath / 4, across ? b / 8 : a / 8, 402) * 0.35f);
}

static Paint CobbleFace(int a, int b) {
  const int row = b / 5;
  const int along = (a + row * 3) % 16;
  if (b % 5 == 4 || along % 5 == 4) return Stuff(140);
  return Stuff(190 + static_cast<int>(Grain(along / 5, row, 403) * 55.0f));
}

static Paint SandstoneFace(int a, int b) {
  const float layer = SmoothNoise(static_cast<float>(a) * 0.08f, static_cast<float>(b) * 0.5f, 0.0f, 760);
  return Scaled(Bone, 0.8f + layer * 0.35f);
}

static Paint BasaltFace(int a, int b) {
  const int column = (a + (b > 7 ? 2 : 0)) % 4;
  return Scaled(Charcoal, column == 0 ? 0.7f : 1.0f + Grain(a / 4, b, 761) * 0.3f);
}

static Paint IceFace(int a, int b) {
  const float crack = SmoothNoise(static_cast<float>(a) * 0.3f, static_cast<float>(b) * 0.3f, 0.0f, 762);
  const Paint ice{198, 226, 238, 255};
  return Scaled(ice, crack > 0.47f && crack < 0.52f ? 1.05f : 0.84f + crack * 0.2f);
}

static Paint SoilFace(int a, int b) {
  const float grain = Grain(a, b, 763);
  return grain > 0.95f ? Stuff(230) : Scaled(Cloth, 0.55f + grain * 0.3f);
}

void DrawFacedCube(Grid &grid, int form) {
  Paint (*const faces[])(int, int) = {DeckFace, TileFace, BrickFace, SlatFace, PanelFace, GrilleFace, CheckerFace, BandFace,
                                      BulkheadFace, BracedFace, MarbleFace, MosaicFace, ParquetFace, CobbleFace,
                                      SandstoneFace, BasaltFace, IceFace, SoilFace};
  Grid top;
  for (int x = 0; x < GridEdge; x++) {
    for (int z = 0; z < GridEdge; z++) At(top, x, 15, z) = faces[form](x, z);
  }
  Box(grid, WholeGrid, Stuff(214));
  SixSides(grid, top);
  Weather(grid, 60U + static_cast<uint32_t>(form), 0.3f);
}
