// The rules of placing: the id of a component decides which of them shapes and turns a new block. Reads of the neighbours
// take no lock; every block is written through the networked edits.
#include "gameplay/connect.h"

#include "content/components.h"
#include "gameplay/connect_rules.h"
#include "net/edits.h"
#include "world/access.h"

// Shapes a block and places it: 1 when its cell was filled.
using Rule = int (*)(const Placement &p);

namespace {

struct RuleOfId {
  u16 id;
  Rule rule;
};

}  // namespace

bool ReadBeside(Cell3 c, int dx, int dy, int dz, const Ship &ship, Block *out) {
  const int x = c.x + dx, y = c.y + dy, z = c.z + dz;
  for (const int v : {x, y, z})
    if (v < 0 || v >= CellsPerAxis) return false;
  return GetBlock(out, static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), ship) == ReadFound;
}

bool ReadSide(Cell3 c, Side side, const Ship &ship, Block *out) {
  int d[3] = {};
  d[side.axis] = side.sign;
  return ReadBeside(c, d[0], d[1], d[2], ship, out);
}

static const Component &ComponentOf(const Block &b) {
  static const Component none;
  const u16 row = static_cast<u16>(b.component);
  return row < Components.size() ? Components[row] : none;
}

u16 IdOf(const Block &b) { return ComponentOf(b).id; }

const std::string &ClassOf(const Block &b) { return ComponentOf(b).className; }

bool TakeRow(Block *b, u16 from, int step) {
  if (!RowBelongs(from, step)) return false;
  b->component = static_cast<u16>(from + step);
  return true;
}

void TakeTurn(Block *b, Turn turn) {
  b->rotation = turn.rotation & 7u;
  b->rotation2 = turn.rotation2 & 3u;
}

int PlacePlain(const Placement &p) { return PlaceBlockNetworked(p.block, p.at.x, p.at.y, p.at.z, p.ship); }

// The face of the block aimed at on which the new one stands.
static unsigned FaceOfTarget(const Placement &p) {
  if (p.at.y != p.target.y) return p.at.y < p.target.y ? 2 : 5;
  if (p.at.x != p.target.x) return p.at.x < p.target.x ? 4 : 6;
  if (p.at.z != p.target.z) return p.at.z < p.target.z ? 1 : 3;
  return static_cast<unsigned>(p.block.rotation);
}

int StandOnTarget(const Placement &p) {
  Placement turned = p;
  if (p.automatic) turned.block.rotation = FaceOfTarget(p) & 7u;
  return PlacePlain(turned);
}

template <u16 base>
static int Joined(const Placement &p) {
  return ConnectFamily(p, base);
}
template <int variants>
static int Varied(const Placement &p) {
  return PlaceRandomised(p, variants);
}

// Ids with a rule of their own; every other id stands on its target.
constexpr RuleOfId Rules[] = {
    {2, PlacePlain},          {20, Joined<20>},         {30, PlaceMultiCell},     {40, Joined<40>},
    {70, AlignToNeighbours},  {80, AlignToNeighbours},  {83, AlignToNeighbours},  {94, AlignToNeighbours},
    {120, PlaceMultiCell},    {122, PlaceMultiCell},    {124, PlaceMultiCell},    {200, Varied<12>},
    {240, AlignToNeighbours}, {250, AlignToNeighbours}, {251, ShapePlating},      {261, ShapePlating},
    {270, AlignToNeighbours}, {310, Joined<310>},       {320, Varied<3>},         {340, Joined<340>},
    {350, PlaceMultiCell},    {360, AlignToNeighbours}, {362, AlignToNeighbours}, {370, Varied<3>},
    {420, Varied<4>},         {450, AlignToNeighbours}, {510, ShapePlating},      {520, ShapePlating},
    {530, ShapePlating},      {550, AlignToNeighbours}, {551, AlignToNeighbours}, {560, ShapePlating},
    {570, ShapePlating},      {580, ShapePlating},      {600, AlignToNeighbours}, {601, AlignToNeighbours},
    {610, ShapePlating},      {620, ShapePlating},      {630, ShapePlating},      {3520, Varied<5>},
};

static Rule FindRule(u16 id) {
  for (const RuleOfId &r : Rules)
    if (r.id == id) return r.rule;
  return StandOnTarget;
}

int PlaceShaped(Placement p) {
  if (BlockExists(p.at.x, p.at.y, p.at.z, *p.ship)) return 0;
  p.automatic = p.block.rotation == 0;
  if (p.automatic) p.block.rotation = 1;
  return FindRule(IdOf(p.block))(p);
}
