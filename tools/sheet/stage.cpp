// The game's tables and rules, used without a window.
#include "stage.h"

#include <cstdio>
#include <set>

#include "content/components.h"
#include "content/materials.h"
#include "gui/language.h"

constexpr u16 PlainCube = 2;
static std::set<u16> MissingIds;  // asked for, yet not in the tables

bool LoadStage() {
  if (LoadMaterials() == 0 || LoadComponents() == 0) return false;
  LoadLanguage();
  return true;
}

std::unique_ptr<Ship> NewShip() {
  auto ship = std::make_unique<Ship>();
  InitShip(ship.get(), 0);
  return AllocShipTable(ship.get()) ? std::move(ship) : nullptr;
}

u16 MaterialRow(u16 id) {
  const int row = FindMaterial(id);
  if (row == 0 && MissingIds.insert(id).second) std::fprintf(stderr, "There is no material with the id %i.\n", id);
  return static_cast<u16>(row == 0 ? 1 : row);
}

// A component's row; a plain cube, with one line on the error output, stands in for one that isn't there.
static u16 ComponentRow(u16 id) {
  const int row = FindComponent(id);
  if (row != 0) return static_cast<u16>(row);
  if (MissingIds.insert(id).second) std::fprintf(stderr, "There is no component with the id %i.\n", id);
  return static_cast<u16>(FindComponent(PlainCube));
}

bool NothingMissing() { return MissingIds.empty(); }

int Put(const Hand &hand, u16 id, Cell3 at, Cell3 target) {
  Placement p;
  p.block.state = StateWhole;
  p.block.rotation = hand.rotation & 7u;
  p.block.rotation2 = hand.rotation2 & 3u;
  p.block.material = hand.material;
  p.block.component = ComponentRow(id);
  p.at = at;
  p.target = target;
  p.eye[0] = at.x - 2;
  p.eye[1] = at.y + 3;
  p.eye[2] = at.z + 6;
  p.ship = hand.ship;
  return PlaceShaped(p);
}

int PutOnFloor(const Hand &hand, u16 id, Cell3 at) { return Put(hand, id, at, {at.x, static_cast<u16>(at.y - 1), at.z}); }
