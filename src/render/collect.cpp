// The view: its planes, boxes against them, and the list of the blocks in it.
#include "render/collect.h"

#include <array>
#include <cmath>
#include <cstdlib>

#include "core/log.h"
#include "core/utils.h"
#include "render/lanes.h"

constexpr u32 VisibleStep = 4096;     // entries by which the visible list grows
constexpr float PointMargin = -2.0f;  // a block's corner may lie this far behind a plane

FrustumPlanes BuildFrustumPlanes(const float (&m)[16]) {
  // Row 3 of the matrix less or plus one of the others; the sides are widened, the near and far planes are not.
  static constexpr struct {
    int row, sign;
    float widen;
  } plans[6] = {{0, -1, 7}, {0, 1, 7}, {1, 1, 10}, {1, -1, 9}, {2, -1, 0}, {2, 1, 0}};
  FrustumPlanes f;
  for (int p = 0; p < 6; ++p) {
    const auto element = [&](int c) {
      const float other = m[4 * c + plans[p].row];
      return plans[p].sign > 0 ? m[4 * c + 3] + other : m[4 * c + 3] - other;
    };
    f.a[p] = element(0);
    f.b[p] = element(1);
    f.c[p] = element(2);
    f.d[p] = element(3) + plans[p].widen;
  }
  return f;
}

int BoxInViewCounted(const FrustumPlanes &f, const float (&low)[3], const float (&high)[3], const float (&camera)[3]) {
  const float lx = low[0] - camera[0], ly = low[1] - camera[1], lz = low[2] - camera[2];
  const float hx = high[0] - camera[0], hy = high[1] - camera[1], hz = high[2] - camera[2];
  bool inside = true;
  for (int p = 0; p < 6; ++p) {
    // Of the eight corners only the farthest in front of the plane and the farthest behind it count: rounding keeps the
    // order of sums, so these two are the largest and the smallest of all eight to the bit.
    const float a = f.a[p], b = f.b[p], c = f.c[p];
    const float front = a * (a > 0 ? hx : lx) + b * (b > 0 ? hy : ly) + c * (c > 0 ? hz : lz) + f.d[p];
    if (front <= 0) return 0;
    const float back = a * (a > 0 ? lx : hx) + b * (b > 0 ? ly : hy) + c * (c > 0 ? lz : hz) + f.d[p];
    inside &= back > 0;
  }
  return inside ? 2 : 1;
}

bool BoxInView(const FrustumPlanes &f, const float (&low)[3], const float (&high)[3], const float (&camera)[3]) {
  return BoxInViewCounted(f, low, high, camera) != 0;
}

bool RoomForVisible(VoxelList *list, u32 more) {
  u32 capacity = list->visibleCapacity;
  while (capacity < list->visibleCount + more + 1) capacity += VisibleStep;
  if (capacity == list->visibleCapacity) return true;
  void *grown = std::realloc(list->visibleBlocks, size_t{capacity} * sizeof(VisibleBlock));
  if (grown == nullptr) {
    LogError("Could not allocate the list of visible blocks");
    return false;
  }
  list->visibleBlocks = static_cast<VisibleBlock *>(grown);
  list->visibleCapacity = capacity;
  return true;
}

namespace {

// Decimal digits of a cell's index in its chunk.
struct CellDigits {
  u8 x, y, z;
};

}  // namespace
static constexpr auto DigitsOfCell = [] {
  std::array<CellDigits, CellsPerChunk> digits{};
  for (unsigned i = 0; i < CellsPerChunk; ++i)
    digits[i] = {static_cast<u8>(i % 10), static_cast<u8>(i / 10 % 10), static_cast<u8>(i / 100)};
  return digits;
}();

namespace {

// All that a chunk's 1000 cells share: the terms of the distance and of the six plane values for each digit on each axis.
struct ChunkTerms {
  float squares[3][10];
  Float4 planes[3][10][2];  // a x, b y, c z; six planes and two that everything passes
  Float4 d[2];
};

}  // namespace

static void FillSquares(const float (&low)[3], const float (&camera)[3], ChunkTerms *terms) {
  for (int axis = 0; axis < 3; ++axis)
    for (int digit = 0; digit < 10; ++digit) {
      const float away = camera[axis] - (low[axis] + static_cast<float>(digit));
      terms->squares[axis][digit] = away * away;
    }
}

// The point that is tested lies one block on in x and y, but not in z.
static void FillPlanes(const float (&low)[3], const float (&camera)[3], const FrustumPlanes &f, ChunkTerms *terms) {
  const float origin[3] = {1.0f - camera[0], 1.0f - camera[1], -camera[2]};
  const float *const factors[3] = {f.a, f.b, f.c};
  for (int half = 0; half < 2; ++half) {
    const int p = 4 * half;
    const auto fourOf = [&](const float *v, float rest) { return half == 0 ? Load<Float4>(v) : Float4{v[p], v[p + 1], rest, rest}; };
    terms->d[half] = fourOf(f.d, 0);
    for (int axis = 0; axis < 3; ++axis)
      for (int digit = 0; digit < 10; ++digit)
        terms->planes[axis][digit][half] =
            fourOf(factors[axis], 0) * Splat(low[axis] + static_cast<float>(digit) + origin[axis]);
  }
}

static bool PointInView(const ChunkTerms &t, CellDigits at) {
  Int4 passed[2];
  for (int half = 0; half < 2; ++half)
    passed[half] = t.planes[0][at.x][half] + t.planes[1][at.y][half] + t.planes[2][at.z][half] + t.d[half] > Splat(PointMargin);
  const auto both = std::bit_cast<std::array<u64, 2>>(passed[0] & passed[1]);
  return (both[0] & both[1]) == ~u64{0};
}

static bool AnyShown(const ChunkCells &cells) {
  u64 shown = 0;
  for (int w = 0; w < 16; ++w) shown |= cells.occupied[w] & ~cells.hidden[w];
  return shown != 0;
}

void CollectVisibleBlocks(VoxelList *list, const Ship &ship, const FrustumPlanes &f, const float (&camera)[3]) {
  list->visibleCount = 0;
  ForEachChunkInView(ship, f, camera, [&](Chunk &chunk, ChunkCells &cells, const float (&low)[3], int how) {
    if (!AnyShown(cells) || !RoomForVisible(list, CellsPerChunk)) return;
    GraphicBlock *const graphics = EnsureGraphics(&cells, chunk);
    if (graphics == nullptr) return;
    ChunkTerms terms;
    FillSquares(low, camera, &terms);
    if (how == 1) FillPlanes(low, camera, f, &terms);  // in a box wholly in view every point is
    VisibleBlock *out = list->visibleBlocks + list->visibleCount;
    for (unsigned w = 0; w < 16; ++w)
      for (u64 word = cells.occupied[w] & ~cells.hidden[w]; word != 0; word &= word - 1) {
        const unsigned i = w * 64 + static_cast<unsigned>(std::countr_zero(word));
        const CellDigits at = DigitsOfCell[i];
        if (how == 1 && !PointInView(terms, at)) continue;
        const float square = terms.squares[0][at.x] + terms.squares[1][at.y] + terms.squares[2][at.z];
        *out++ = {FastSqrt(square), graphics + i, cells.heads[i].load(std::memory_order_relaxed), cells.visibility[i]};
      }
    list->visibleCount = static_cast<u32>(out - list->visibleBlocks);
  });
}
