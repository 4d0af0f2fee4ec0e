// Voxel exposure by faces. Rotations carry faces to faces, so a face of the placed block is one of the component's grid: the
// voxels with one of the three 4-bit parts of their index at 0 or 15. The other two parts name a row and a bit in it.
#include "render/exposure.h"

#include <array>

#include "content/materials.h"
#include "render/colour.h"
#include "world/cells.h"

namespace {

// A face of the grid, as rows of 16 bits. Of the two free parts of the index the higher one is the row.
struct FaceRows {
  u16 open[16], gone[16];
  bool anyGone;
};

// How a face of the placed block and the far side of the cell next to it lie in the two voxel tables.
struct FacePlan {
  unsigned axis;       // of the placed block
  unsigned shift;      // of the index part that is fixed on this face: 0, 4 or 8
  unsigned side;       // what that part is: 0 or 15
  bool upward;         // the face at 15 of the axis
};

}  // namespace

// Whether a neighbour's voxel lets the one behind it be seen, by its alpha, in a block of solid [0] or glass [1] material.
static constexpr auto SeenThrough = [] {
  std::array<std::array<u8, 256>, 2> table{};
  for (unsigned glass = 0; glass < 2; ++glass)
    for (unsigned a = 0; a < 256; ++a) table[glass][a] = a < 251 || (glass == 1 && a == MaterialColoured);
  return table;
}();

static void AllOpen(FaceRows *rows) {
  for (u16 &row : rows->open) row = 0xffff;
}

namespace {

// Index strides of the neighbour's table along the rows and the bits of our face, and where they start.
struct FarSide {
  int start, row, bit;
};

}  // namespace

static FarSide FarSideOf(const FacePlan &plan, const PlaceFrame &own, const VoxelFrame &far) {
  const int strides[3] = {far.sx, far.sy, far.sz};
  FarSide side{far.origin + (plan.upward ? 0 : 15) * strides[plan.axis], 0, 0};
  const unsigned bitShift = plan.shift == 0 ? 4 : 0;
  for (unsigned axis = 0; axis < 3; ++axis) {
    if (axis == plan.axis) continue;
    const bool turned = own.flip[axis] != 0;  // our index part runs against the placed position
    if (turned) side.start += 15 * strides[axis];
    (own.shift[axis] == bitShift ? side.bit : side.row) = turned ? -strides[axis] : strides[axis];
  }
  return side;
}

static void ReadOpen(const u8 *alpha, const std::array<u8, 256> &seen, const FarSide &side, FaceRows *rows) {
  for (int r = 0; r < 16; ++r) {
    const u8 *from = alpha + side.start + r * side.row;
    unsigned open = 0;
    for (int b = 0; b < 16; ++b) open |= static_cast<unsigned>(seen[from[b * side.bit]]) << b;
    rows->open[r] = static_cast<u16>(open);
  }
}

static void ReadGone(const u8 *damageBits, const FarSide &side, FaceRows *rows) {
  for (int r = 0; r < 16; ++r) {
    unsigned gone = 0;
    for (int b = 0; b < 16; ++b) {
      const int v = side.start + r * side.row + b * side.bit;
      gone |= (damageBits[v >> 3] >> (v & 7) & 1u) << b;
    }
    rows->gone[r] = static_cast<u16>(gone & ~rows->open[r]);
    rows->anyGone |= rows->gone[r] != 0;
  }
}

namespace {

// The cell next to a face; its head is 0 beyond the edge of the ship.
struct Neighbour {
  u64 head = 0;
  const u8 *damageBits = nullptr;
};

}  // namespace

static Neighbour NeighbourAt(const FacePlan &plan, const Ship &ship, u16 x, u16 y, u16 z) {
  unsigned at[3] = {x, y, z};
  at[plan.axis] += plan.upward ? 1u : ~0u;
  if (at[plan.axis] >= CellsPerAxis) return {};
  const CellAddress a = AddressOf(at[0], at[1], at[2]);
  const ChunkCells *cells = FindCells(a, ship);
  if (cells == nullptr) return {};
  Neighbour n{HeadOfCell(*cells, a.block)};
  const GraphicBlock *g = HeadState(n.head) == StateDamaged ? GraphicOf(*cells, a.block) : nullptr;
  if (g != nullptr) n.damageBits = g->damageBits.load(std::memory_order_acquire);
  return n;
}

static void ReadFace(const FacePlan &plan, const PlaceFrame &own, const Neighbour &n, FaceRows *rows) {
  rows->anyGone = false;
  const VoxelFacts *facts = HeadState(n.head) == StateEmpty ? nullptr : Components[HeadComponent(n.head)].facts.get();
  const VoxelFrame &far = FrameOf(HeadRotation(n.head), HeadRotation2(n.head));
  if (facts == nullptr || far.sx == 0) return AllOpen(rows);
  const FarSide side = FarSideOf(plan, own, far);
  const bool glass = Materials[HeadMaterial(n.head)].alpha != 255;
  ReadOpen(facts->alpha, SeenThrough[glass], side, rows);
  if (n.damageBits != nullptr) ReadGone(n.damageBits, side, rows);
}

// Sets a face's rows in a bit set over the indices. With the lowest part fixed a row's bits stand 16 apart, four to a word.
static void AddRows(const FacePlan &plan, const u16 (&rows)[16], u64 (&bits)[64]) {
  for (unsigned r = 0; r < 16; ++r) {
    const u64 row = rows[r];
    if (plan.shift == 8) bits[plan.side * 4 + r / 4] |= row << (r % 4 * 16);
    if (plan.shift == 4) bits[r * 4 + plan.side / 4] |= row << (plan.side % 4 * 16);
    if (plan.shift != 0) continue;
    for (unsigned quarter = 0; quarter < 4; ++quarter)
      bits[r * 4 + quarter] |= ((row >> (4 * quarter) & 15) * 0x0000200040008001u & 0x0001000100010001u) << plan.side;
  }
}

void FindExposure(u64 head, const Ship &ship, u16 x, u16 y, u16 z, Exposure *out) {
  const VoxelFacts &facts = *Components[HeadComponent(head)].facts;
  const bool glass = Materials[HeadMaterial(head)].alpha != 255;
  const PlaceFrame own = PlaceFrameOf(FrameOf(HeadRotation(head), HeadRotation2(head)));
  out->anyGone = false;
  for (int w = 0; w < 64; ++w) out->shown[w] = facts.openInside[glass][w] & ~facts.sunkInGlass[glass][w];
  for (unsigned face = 0; face < 6; ++face) {
    FacePlan plan{face / 2, own.shift[face / 2], 0, face % 2 == 0};
    plan.side = (plan.upward ? 15u : 0u) ^ own.flip[plan.axis];
    FaceRows rows;
    ReadFace(plan, own, NeighbourAt(plan, ship, x, y, z), &rows);
    AddRows(plan, rows.open, out->shown);
    if (!rows.anyGone) continue;
    if (!out->anyGone) std::memset(out->gone, 0, sizeof out->gone);
    out->anyGone = true;
    AddRows(plan, rows.gone, out->gone);
    AddRows(plan, rows.gone, out->shown);
  }
}
