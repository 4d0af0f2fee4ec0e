// The rules of placing: the id of a component decides which of them shapes and turns a new block. Reads of the neighbours
// take no lock; every block is written through the networked edits.
#include "gameplay/connect.h"

#include "content/components.h"
#include "net/edits.h"
#include "world/access.h"

// Shapes a block and places it: 1 when its cell was filled.
using Rule = int (*)(const Placement &p);

struct RuleOfId {
  u16 id;
  Rule rule;
};

static int PlacePlain(const Placement &p) { return PlaceBlockNetworked(p.block, p.at.x, p.at.y, p.at.z, p.ship); }

// The face of the block aimed at on which the new one stands.
static unsigned FaceOfTarget(const Placement &p) {
  if (p.at.y != p.target.y) return p.at.y < p.target.y ? 2 : 5;
  if (p.at.x != p.target.x) return p.at.x < p.target.x ? 4 : 6;
  if (p.at.z != p.target.z) return p.at.z < p.target.z ? 1 : 3;
  return static_cast<unsigned>(p.block.rotation);
}

static int StandOnTarget(const Placement &p) {
  Placement turned = p;
  if (p.automatic) turned.block.rotation = FaceOfTarget(p) & 7u;
  return PlacePlain(turned);
}

// Ids with a rule of their own; every other id stands on its target.
constexpr RuleOfId Rules[] = {{2, PlacePlain}};

static Rule FindRule(u16 row) {
  if (row < Components.size())
    for (const RuleOfId &r : Rules)
      if (r.id == Components[row].id) return r.rule;
  return StandOnTarget;
}

int PlaceShaped(Placement p) {
  if (BlockExists(p.at.x, p.at.y, p.at.z, *p.ship)) return 0;
  p.automatic = p.block.rotation == 0;
  if (p.automatic) p.block.rotation = 1;
  return FindRule(static_cast<u16>(p.block.component))(p);
}
