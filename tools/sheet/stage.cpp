// The game's tables and rules, used without a window.
#include "stage.h"

#include <cstdio>

#include "content/components.h"
#include "content/materials.h"
#include "gui/language.h"

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
  if (row == 0) std::fprintf(stderr, "There is no material with the id %i.\n", id);
  return static_cast<u16>(row == 0 ? 1 : row);
}

bool HasComponent(u16 id) { return FindComponent(id) != 0; }

int Put(const Hand &hand, u16 id, Cell3 at, Cell3 target) {
  const int row = FindComponent(id);
  if (row == 0) {
    std::fprintf(stderr, "There is no component with the id %i.\n", id);
    return 0;
  }
  Placement p;
  p.block.state = StateWhole;
  p.block.rotation = hand.rotation & 7u;
  p.block.rotation2 = hand.rotation2 & 3u;
  p.block.material = hand.material;
  p.block.component = static_cast<u16>(row);
  p.at = at;
  p.target = target;
  p.eye[0] = at.x + 2;
  p.eye[1] = at.y + 3;
  p.eye[2] = at.z + 6;
  p.ship = hand.ship;
  return PlaceShaped(p);
}

int PutOnFloor(const Hand &hand, u16 id, Cell3 at) { return Put(hand, id, at, {at.x, static_cast<u16>(at.y - 1), at.z}); }
