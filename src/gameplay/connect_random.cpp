// Blocks that never look the same twice: a row and a turn by chance.
#include "core/random.h"
#include "gameplay/connect_rules.h"

int PlaceRandomised(const Placement &p, int variants) {
  RandomState g;
  SeedGenerator(&g);
  const double form = NextRandom(&g), turn = NextRandom(&g), turn2 = NextRandom(&g);
  Placement varied = p;
  TakeRow(&varied.block, static_cast<u16>(p.block.component), static_cast<int>(variants * form));
  TakeTurn(&varied.block, {static_cast<u8>(6 * turn + 1), static_cast<u8>(4 * turn2)});
  return PlacePlain(varied);
}
