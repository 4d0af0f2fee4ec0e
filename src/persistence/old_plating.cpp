// The translation of old plating, by the piece's place in its family.
#include "persistence/old_plating.h"

#include "content/components.h"

namespace {

// What became of a piece: for each old rotation the new rotation and turn (rotation 0: both stay), and how many rows
// further up the piece stands today.
struct PlatingRule {
  int familyOffset;
  struct {
    u8 rotation, rotation2;
  } turns[7];
  int rowsUp;
};

}  // namespace

constexpr PlatingRule Rules[] = {
    {-7, {{}, {}, {}, {3, 0}, {}, {}, {}}, 6},
    {-6, {{}, {}, {1, 2}, {2, 2}, {}, {}, {}}, 5},
    {-5, {{}, {1, 1}, {}, {}, {}, {}, {}}, 4},
    {-4, {{}, {}, {2, 3}, {3, 1}, {1, 0}, {}, {6, 0}}, 3},
    {-3, {{}, {1, 0}, {1, 0}, {1, 2}, {1, 0}, {1, 0}, {1, 0}}, 3},
    {-2, {{}, {1, 1}, {3, 1}, {3, 3}, {4, 1}, {3, 3}, {1, 0}}, 2},
};
// The piece in front of the one at -2; how far it moves depends on the row above it.
constexpr PlatingRule BeforeSecond = {0, {{}, {2, 1}, {1, 1}, {1, 3}, {2, 0}, {1, 3}, {2, 2}}, 0};
constexpr PlatingRule FamilyBaseRule = {0, {{}, {1, 0}, {2, 0}, {3, 2}, {3, 0}, {5, 0}, {3, 2}}, 0};

static int OffsetOf(int row) { return Components[static_cast<size_t>(row)].familyOffset; }

static int RowByOffset(int row, int offset) { return offset < -3 ? row + offset + 1 : row + offset; }

// The new row; *rule gets the turns, or null for none.
static int FindPlatingRule(int row, const PlatingRule **rule) {
  const int offset = OffsetOf(row);
  for (const PlatingRule &r : Rules) {
    if (r.familyOffset != offset) continue;
    *rule = &r;
    return row - r.rowsUp;
  }
  if (OffsetOf(row + 1) == -2) {
    *rule = &BeforeSecond;
    const int above = OffsetOf(row - 1);
    return above < -3 ? row + above : row - 1 + above;
  }
  *rule = offset == 0 ? &FamilyBaseRule : nullptr;
  return offset == 0 ? row : RowByOffset(row, offset);
}

bool IsOldPlating(u16 component) {
  const std::string &name = Components[component].className;
  return name == "platingedg" || name == "platingcor";
}

void TranslateOldPlating(Block *b) {
  const PlatingRule *rule = nullptr;
  const int row = FindPlatingRule(static_cast<int>(b->component), &rule);
  if (row > 0 && row < ComponentCount) b->component = static_cast<u16>(row);
  if (rule == nullptr || b->rotation == 7 || rule->turns[b->rotation].rotation == 0) return;
  const auto turn = rule->turns[b->rotation];
  b->rotation = turn.rotation & 7u;
  b->rotation2 = turn.rotation2 & 3u;
}
