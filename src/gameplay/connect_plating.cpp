// Plating closes the hull: an edge where two plates meet, a corner where three do. Only the new block is shaped.
#include <algorithm>

#include "gameplay/connect_rules.h"

constexpr int VariantsAlone = 8;

namespace {

// Bits, so that a set of kinds is a mask.
enum PlatingKind : unsigned { NoPlating = 0, Plate = 1, Edge = 2, Corner = 4 };

// What stands beside the cell on one axis.
struct PlatingSide {
  int sign = 0;  // 0: both cells are free
  PlatingKind kind = NoPlating;
};

// Signs of the axes that have plating, and what goes between them.
struct PlatingForm {
  int sign[3];
  Turn turn;
};

}  // namespace

// Edges are the row of the held block, corners the next one.
constexpr PlatingForm Edges[] = {
    {{0, -1, -1}, {1, 3}}, {{0, -1, 1}, {2, 1}}, {{0, 1, -1}, {1, 1}}, {{0, 1, 1}, {3, 3}},
    {{-1, 0, -1}, {1, 2}}, {{-1, 0, 1}, {3, 0}}, {{-1, -1, 0}, {2, 2}}, {{-1, 1, 0}, {4, 1}},
    {{1, 0, -1}, {1, 0}},  {{1, 0, 1}, {3, 2}},  {{1, -1, 0}, {2, 0}},  {{1, 1, 0}, {5, 0}},
};
constexpr PlatingForm Corners[] = {
    {{-1, -1, -1}, {3, 0}}, {{-1, -1, 1}, {6, 0}}, {{-1, 1, -1}, {2, 2}}, {{-1, 1, 1}, {1, 2}},
    {{1, -1, -1}, {3, 1}},  {{1, -1, 1}, {1, 0}},  {{1, 1, -1}, {2, 3}},  {{1, 1, 1}, {1, 1}},
};

static PlatingKind KindOf(const Block &b) {
  const std::string &word = ClassOf(b);
  if (word == "plating") return Plate;
  if (word == "platingedg") return Edge;
  return word == "platingcor" ? Corner : NoPlating;
}

// The positive side hides the negative one, whatever stands there.
static PlatingSide FindSide(const Placement &p, int axis) {
  Block beside;
  for (const int sign : {1, -1})
    if (ReadSide(p.at, {axis, sign}, *p.ship, &beside)) return {sign, KindOf(beside)};
  return {};
}

// The kinds that shape the block, as a mask; 0 when there are too few for an edge.
static unsigned KindsInUse(const PlatingSide (&sides)[3]) {
  const auto count = [&](PlatingKind kind) {
    return std::count_if(std::begin(sides), std::end(sides), [&](const PlatingSide &s) { return s.kind == kind; });
  };
  if (count(Plate) >= 2) return Plate;
  if (count(Plate) + count(Corner) >= 2) return Plate | Corner;
  return count(Edge) >= 2 ? Plate | Edge : 0u;
}

static bool FindTurn(const PlatingForm *first, const PlatingForm *end, const int (&sign)[3], Turn *turn) {
  const PlatingForm *form =
      std::find_if(first, end, [&](const PlatingForm &f) { return std::equal(f.sign, f.sign + 3, sign); });
  if (form != end) *turn = form->turn;
  return form != end;
}

static void FitBetween(Block *b, const PlatingSide (&sides)[3], unsigned kinds) {
  int sign[3] = {};
  for (int axis = 0; axis < 3; ++axis)
    if ((sides[axis].kind & kinds) != 0) sign[axis] = sides[axis].sign;
  Turn turn;
  if (FindTurn(std::begin(Edges), std::end(Edges), sign, &turn))
    TakeTurn(b, turn);
  else if (FindTurn(std::begin(Corners), std::end(Corners), sign, &turn) && TakeRow(b, static_cast<u16>(b->component), 1))
    TakeTurn(b, turn);
}

// Goes on with an edge that ends near the cell, if there is one.
static bool FollowEdge(const Placement &p, Block *b) {
  Block near;
  for (int dx = 1; dx >= -1; --dx)
    for (int dy = 1; dy >= -1; --dy)
      for (int dz = 1; dz >= -1; --dz)
        if (ReadBeside(p.at, dx, dy, dz, *p.ship, &near) && KindOf(near) == Edge) {
          b->rotation = near.rotation;
          b->rotation2 = near.rotation2;
          return true;
        }
  return false;
}

int ShapePlating(const Placement &p) {
  if (!p.automatic) return PlacePlain(p);
  const PlatingSide sides[3] = {FindSide(p, 0), FindSide(p, 1), FindSide(p, 2)};
  Placement shaped = p;
  if (const unsigned kinds = KindsInUse(sides); kinds != 0)
    FitBetween(&shaped.block, sides, kinds);
  else if (!FollowEdge(p, &shaped.block))
    return PlaceRandomised(p, VariantsAlone);
  return PlacePlain(shaped);
}
