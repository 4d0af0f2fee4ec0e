// What a ship amounts to: count, mass, extent and centre of mass.
#include <algorithm>
#include <cmath>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "world/access.h"
#include "world/cells.h"
#include "world/edit.h"

namespace {

// Running totals of a walk; extents on the three axes.
struct Totals {
  double mass = 0, moment[3] = {};
  u16 low[3] = {65535, 65535, 65535}, high[3] = {};
};

}  // namespace

static double MassOf(u64 head) {
  return Materials[HeadMaterial(head)].density * static_cast<double>(Components[HeadComponent(head)].fillPercent) * 0.01;
}

static void AddCell(Totals *t, ShipSummary *s, u64 head, const u16 (&cell)[3]) {
  if (++s->blockCount > 1000000000) {
    ++s->billions;
    s->blockCount = 0;
  }
  const double mass = MassOf(head);
  t->mass += mass;
  for (int axis = 0; axis < 3; ++axis) {
    t->moment[axis] += mass * cell[axis];
    t->low[axis] = std::min(t->low[axis], cell[axis]);
    t->high[axis] = std::max(t->high[axis], cell[axis]);
  }
}

std::unique_ptr<ShipSummary> BuildShipSummary(Ship *ship) {
  if (EditRemove(0, 0, 0, ship)) LogWarn("The block in cell (0, 0, 0) was left out: ships keep that cell free.");
  auto s = std::make_unique<ShipSummary>();
  Totals t;
  ForEachChunk(*ship, [&](Chunk &chunk, ChunkCells &cells, CellAddress) {
    ForEachBit(cells.occupied, [&](u16 i) {
      AddCell(&t, s.get(), HeadOfCell(cells, i), {CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i)});
    });
  });
  if (s->blockCount == 0 && s->billions == 0) return s;
  s->mass = t.mass;
  u16 *const minima[3] = {&s->minX, &s->minY, &s->minZ}, *const maxima[3] = {&s->maxX, &s->maxY, &s->maxZ};
  u16 *const sizes[3] = {&s->sizeX, &s->sizeY, &s->sizeZ}, *const centres[3] = {&s->comX, &s->comY, &s->comZ};
  for (int axis = 0; axis < 3; ++axis) {
    *minima[axis] = t.low[axis];
    *maxima[axis] = t.high[axis];
    *sizes[axis] = static_cast<u16>(t.high[axis] + 1 - t.low[axis]);
    const double middle = (t.low[axis] + t.high[axis]) * 0.5;  // for a ship of weightless stuff
    *centres[axis] = static_cast<u16>(std::lround(t.mass > 0 ? t.moment[axis] / t.mass : middle));
  }
  return s;
}
