// Families that join up: pipes, cables, girders and corridors. A new piece takes its form from its kin around it, and they
// take theirs anew, a few pieces deep.
#include <cstdlib>
#include <ctime>

#include "content/components.h"
#include "gameplay/connect_rules.h"
#include "net/edits.h"
#include "world/cells.h"

constexpr int DeepestCall = 3;
constexpr u16 IdsOfFamily = 10;   // ids from the base on whose pieces are kin
constexpr int WallsToClose = 4;   // so many walls make a closed form

namespace {

// A piece in its cell, and what the walk around it found.
struct Piece {
  Block block{};
  Cell3 at{};
  int depth = 0;
  int kin = 0, walls = 0;
  bool kinOn[SideCount] = {};
};

struct JoiningFamily {
  u16 base;
  u8 turn[SideCount];      // the rotation that kin on each side gives; the last one counts
  u16 fixed;               // the id of a form that never changes; 0 for none
  void (*choose)(Piece *);  // the form by what was found
};

}  // namespace

// The same place gives the same form within a second.
static int DrawAt(Cell3 at, int forms) {
  std::srand(static_cast<unsigned>(std::time(nullptr)) + at.x + at.y + at.z);
  return std::rand() % forms;
}

static bool KinOnAxis(const Piece &p, int axis) { return p.kinOn[2 * axis] || p.kinOn[2 * axis + 1]; }

static bool IsStraight(const Piece &p) { return KinOnAxis(p, 0) + KinOnAxis(p, 1) + KinOnAxis(p, 2) < 2; }

static void StepRow(Piece *p, int step) { TakeRow(&p->block, static_cast<u16>(p->block.component), step); }

static void GoToId(Piece *p, u16 id) { StepRow(p, id - IdOf(p->block)); }

namespace {

// Families with a straight form, several ends and one junction: which ids those are.
struct PipeForms {
  u16 straight;
  u16 firstKept, lastKept;  // ends that stay as they are
  int ends;                 // ends to draw from, behind the straight form
  u16 junction;
};

}  // namespace

static void ChoosePipe(Piece *p, const PipeForms &forms) {
  const u16 id = IdOf(p->block);
  if (p->kin < 2 && (id < forms.firstKept || id > forms.lastKept)) {
    const int start = id == forms.junction ? forms.straight - id : 0;
    StepRow(p, start + 1 + DrawAt(p->at, forms.ends));
  } else if (p->kin == 2) {
    GoToId(p, forms.straight);
  }
  if (!IsStraight(*p)) {
    p->block.rotation = 1;
    if (IdOf(p->block) < forms.junction) GoToId(p, forms.junction);
  } else if (IdOf(p->block) == forms.junction) {
    GoToId(p, forms.straight);
  }
}

static void Choose340(Piece *p) {
  ChoosePipe(p, {.straight = 340, .firstKept = 342, .lastKept = 344, .ends = 3, .junction = 344});
}

static void Choose310(Piece *p) {
  ChoosePipe(p, {.straight = 310, .firstKept = 311, .lastKept = 312, .ends = 2, .junction = 313});
}

static void Choose20(Piece *p) {
  constexpr u16 node = 23, closed = 24;
  constexpr int straights = 3;
  const u16 id = IdOf(p->block);
  if (p->walls >= WallsToClose) {
    p->block.rotation = 1;
    GoToId(p, closed);
  } else if (p->kin == 1 || !IsStraight(*p)) {
    p->block.rotation = 1;
    if (id < node) GoToId(p, node);
  } else if (p->depth == 0 || id == node) {
    StepRow(p, (id == node ? 20 - node : 0) + DrawAt(p->at, straights));
  }
}

// Bends by the two sides on which the kin lie: x+, x-, y+, y- down, and y+, y-, z+, z- across.
constexpr Turn Bends[4][4] = {
    {{6, 3}, {6, 1}, {6, 0}, {6, 2}},
    {{4, 1}, {4, 3}, {4, 2}, {4, 0}},
    {{}, {}, {3, 3}, {1, 1}},
    {{}, {}, {2, 1}, {2, 3}},
};

static Turn BendOf(const Piece &p) {
  int first = 0, second = SideCount - 1;
  while (first < 3 && !p.kinOn[first]) ++first;
  while (second > 2 && !p.kinOn[second]) --second;
  return Bends[first][second - 2];
}

// Rows are counted from the family's base.
static void Choose40(Piece *p) {
  constexpr int end = 2, junction = 3, closed = 5, bend = 6, straights = 2;
  constexpr u16 endId = 42;
  const u16 base = FamilyBase(static_cast<u16>(p->block.component));
  if (p->kin > 2) {
    p->block.rotation = 1;
    TakeRow(&p->block, base, junction);
  } else if (p->walls >= WallsToClose) {
    TakeRow(&p->block, base, closed);
  } else if (p->kin < 2) {
    if (IdOf(p->block) != endId) TakeRow(&p->block, base, end);
  } else if (IsStraight(*p)) {
    TakeRow(&p->block, base, DrawAt(p->at, straights));
  } else if (TakeRow(&p->block, base, bend)) {
    TakeTurn(&p->block, BendOf(*p));
  }
}

// Turns by the side of the kin: x+1, x-1, y+1, y-1, z+1, z-1.
constexpr JoiningFamily Families[] = {
    {340, {4, 6, 2, 5, 1, 3}, 0, Choose340},
    {310, {6, 4, 5, 2, 3, 1}, 0, Choose310},
    {40, {6, 4, 5, 2, 3, 1}, 44, Choose40},
    {20, {4, 4, 2, 2, 1, 1}, 0, Choose20},
};

static bool IsKin(const JoiningFamily &f, const Block &b) {
  const u16 id = IdOf(b);
  return id >= f.base && id < f.base + IdsOfFamily;
}

static bool IsWall(const Block &b) {
  const std::string &word = ClassOf(b);
  return word == "airlock" || word == "door" || word == "plating";
}

static int Join(const JoiningFamily &f, Piece piece, Ship *ship);

// Turns the piece by its kin, counts what stands around, and shapes the kin first.
static void WalkAround(const JoiningFamily &f, Piece *piece, Ship *ship) {
  for (int side = 0; side < SideCount; ++side) {
    const Side &s = Sides[side];
    Piece beside{.at = piece->at, .depth = piece->depth + 1};
    if (!ReadSide(piece->at, s, *ship, &beside.block)) continue;
    if (!IsKin(f, beside.block)) {
      piece->walls += IsWall(beside.block) ? 1 : 0;
      continue;
    }
    piece->block.rotation = f.turn[side] & 7u;
    piece->kinOn[side] = true;
    ++piece->kin;
    u16 *const axes[3] = {&beside.at.x, &beside.at.y, &beside.at.z};
    *axes[s.axis] = static_cast<u16>(*axes[s.axis] + s.sign);
    Join(f, beside, ship);
  }
}

// Most kin keep their form, and a walk comes by the same ones again and again: what stands already is not sent.
static int Write(const Piece &p, Ship *ship) {
  Block placed = p.block;
  placed.temp = PlacedTemperature;
  placed.tempUnstable = 0;
  const bool stands = InRange(p.at.x, p.at.y, p.at.z) && placed.state == StateWhole &&
                      (HeadAt(p.at.x, p.at.y, p.at.z, *ship) & ~HeadUnstableBit) == HeadOf(placed);
  return stands ? 1 : PlaceBlockNetworked(p.block, p.at.x, p.at.y, p.at.z, ship);
}

// A new piece is written before the walk too, so that its kin see it.
static int Join(const JoiningFamily &f, Piece piece, Ship *ship) {
  if (piece.depth > DeepestCall) return 0;
  if (piece.depth == 0 && Write(piece, ship) == 0) return 0;
  WalkAround(f, &piece, ship);
  if (f.fixed != 0 && IdOf(piece.block) == f.fixed) return 1;
  f.choose(&piece);
  return Write(piece, ship);
}

int ConnectFamily(const Placement &p, u16 base) {
  for (const JoiningFamily &f : Families)
    if (f.base == base) return Join(f, {.block = p.block, .at = p.at}, p.ship);
  return PlacePlain(p);
}
