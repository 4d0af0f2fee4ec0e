// Which blocks can be seen at all: a decision for each cell from the kinds of its six neighbours.
#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "world/access.h"
#include "world/cells.h"

static int KindOfCell(const ChunkCells &cells, unsigned i) {
  if (!CellOccupied(cells, i)) return 0;
  const u64 head = HeadOfCell(cells, i);
  const u8 traits = ComponentTraits[HeadComponent(head)];
  if ((traits & TraitHidesNothing) != 0) return 0;
  if (HeadState(head) == StateDamaged || Materials[HeadMaterial(head)].alpha != 255) return CinematicCamera ? 0 : 1;
  return cells.visibility[i] == NotVisible || (traits & TraitFullBlock) != 0 ? 2 : 1;
}

// The same for any cell of the ship; one that isn't there hides nothing.
static int KindAt(u16 x, u16 y, u16 z, const Ship &ship) {
  if (!InRange(x, y, z)) return 0;
  const CellAddress a = AddressOf(x, y, z);
  const ChunkCells *cells = FindCells(a, ship);
  return cells == nullptr ? 0 : KindOfCell(*cells, a.block);
}

int NeighbourKind(u16 x, u16 y, u16 z, const Ship &ship) {
  return InRange(x, y, z) ? KindAt(x, y, z, ship) : ReportOutOfRange(x, y, z);
}

using KindReader = int (*)(u16 x, u16 y, u16 z, const Ship &ship);

// What the kinds of the six face neighbours make of a cell; kindOf reads those in other chunks.
template <KindReader kindOf>
static u8 Decision(u16 x, u16 y, u16 z, const CellAddress &a, const ChunkCells &cells, const Ship &ship) {
  static constexpr unsigned scales[3] = {1, 10, 100};
  const unsigned digits[3] = {a.block % 10u, a.block / 10u % 10u, a.block / 100u};
  int least = 2;
  for (int axis = 0; axis < 3; ++axis)
    for (int sign = 1; sign >= -1; sign -= 2) {
      const bool sameChunk = sign > 0 ? digits[axis] < 9 : digits[axis] > 0;
      u16 c[3] = {x, y, z};
      c[axis] = static_cast<u16>(c[axis] + sign);
      const int kind = sameChunk ? KindOfCell(cells, sign > 0 ? a.block + scales[axis] : a.block - scales[axis])
                                 : kindOf(c[0], c[1], c[2], ship);
      if (kind < least) least = kind;
    }
  return least == 2 ? NotVisible : least == 1 ? MaybeVisible : Visible;
}

void RefreshVisibility(u16 x, u16 y, u16 z, const Ship &ship) {
  if (!InRange(x, y, z)) {
    ReportOutOfRange(x, y, z);
    return;
  }
  const CellAddress a = AddressOf(x, y, z);
  ChunkCells *cells = FindCells(a, ship);
  if (cells == nullptr || !CellOccupied(*cells, a.block)) return;
  StoreVisibility(cells, a.block, Decision<NeighbourKind>(x, y, z, a, *cells, ship));
  MarkCacheDirtyAround(x, y, z, ship);
}

bool HidesWhileBuried(u16 x, u16 y, u16 z, const Ship &ship) {
  const u64 head = InRange(x, y, z) ? HeadAt(x, y, z, ship) : 0;
  return HeadState(head) == StateWhole && (ComponentTraits[HeadComponent(head)] & (TraitHidesNothing | TraitFullBlock)) == 0 &&
         Materials[HeadMaterial(head)].alpha == 255;
}

bool DecideVisibility(u16 x, u16 y, u16 z, const Ship &ship) {
  if (!InRange(x, y, z)) return false;
  const CellAddress a = AddressOf(x, y, z);
  ChunkCells *cells = FindCells(a, ship);
  if (cells == nullptr || !CellOccupied(*cells, a.block)) return false;
  const int before = KindOfCell(*cells, a.block);
  StoreVisibility(cells, a.block, Decision<KindAt>(x, y, z, a, *cells, ship));
  return KindOfCell(*cells, a.block) != before;
}
