// Builds the ship that comes with the game to show what can be built: a small freighter, placed block by block by the rules
// that a player's hand follows. Run from the root of an installation; writes saves/Showpiece.sts.
//
// Places are told from the middle of the world, x to the bow, y up, z to starboard. The player starts at (0, 0, 6) and looks
// to z-, at the starboard side with its airlock.
#include <cstdio>
#include <cstdlib>
#include <initializer_list>

#include "persistence/stream.h"
#include "stage.h"
#include "world/access.h"

constexpr int Middle = 5000;
constexpr int Keel = -8;                        // z of the ship's middle plane
constexpr int Floor = -1, Ceiling = 3;          // y of the deck and of the roof
constexpr int EngineWall = -17, BridgeWall = 11;  // x of the two bulkheads
constexpr int CorridorHalf = 2;                 // z from the keel to the corridor's walls

struct Spot {
  int x, y, z;
};

// A stretch of the hull: a box.
struct Section {
  int x0, x1, half, low, high;
};

constexpr Section Sections[] = {
    {-23, -18, 4, -3, 3}, {-17, 10, 5, -3, 3}, {11, 14, 4, -3, 3}, {15, 17, 3, -2, 2}, {18, 19, 2, -2, 1}};
constexpr Section Nacelle = {-22, -9, 1, -2, 0};
constexpr int NacelleDistance = 8;
constexpr Spot Sides[6] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};

// What the ship is made of: rows of Materials.
struct Stuffs {
  u16 hull, trim, dark, steel, glass, copper, brass, deck, cloth, wood, teal, tech;
};
static Stuffs Of;

static Hand TheHand;

static Spot operator+(Spot a, Spot b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
static Spot Back(Spot a, Spot side) { return {a.x - side.x, a.y - side.y, a.z - side.z}; }

static Cell3 CellOf(Spot s) {
  return {static_cast<u16>(Middle + s.x), static_cast<u16>(Middle + s.y), static_cast<u16>(Middle + s.z)};
}

static bool Taken(Spot s) {
  const Cell3 c = CellOf(s);
  return BlockExists(c.x, c.y, c.z, *TheHand.ship);
}

static void Clear(Spot s) {
  const Cell3 c = CellOf(s);
  RemoveBlock(c.x, c.y, c.z, TheHand.ship);
}

// Puts a component on the neighbour that lies against `side`; the rules turn and shape it.
static void Stand(u16 id, u16 material, Spot at, Spot side) {
  TheHand.material = material;
  TheHand.rotation = 0;
  Put(TheHand, id, CellOf(at), CellOf(Back(at, side)));
}

// The same with the turn chosen by hand.
static void Turned(u16 id, u16 material, Spot at, unsigned rotation, unsigned rotation2 = 0) {
  TheHand.material = material;
  TheHand.rotation = rotation;
  TheHand.rotation2 = rotation2;
  Put(TheHand, id, CellOf(at), CellOf(at));
  TheHand.rotation2 = 0;
}

constexpr Spot Up{0, 1, 0}, Down{0, -1, 0}, Fore{1, 0, 0}, Aft{-1, 0, 0}, Starboard{0, 0, 1}, Port{0, 0, -1};

// The rotation with which a block stands on what lies against the side.
static unsigned RotationOn(Spot side) {
  if (side.y != 0) return side.y < 0 ? 2 : 5;
  if (side.x != 0) return side.x < 0 ? 4 : 6;
  return side.z < 0 ? 1 : 3;
}

static bool InSection(const Section &s, int keel, Spot p) {
  return p.x >= s.x0 && p.x <= s.x1 && p.y >= s.low && p.y <= s.high && abs(p.z - keel) <= s.half;
}

static bool InHull(Spot p) {
  for (const Section &s : Sections)
    if (InSection(s, Keel, p)) return true;
  return false;
}

static bool InNacelles(Spot p) {
  return InSection(Nacelle, Keel - NacelleDistance, p) || InSection(Nacelle, Keel + NacelleDistance, p);
}

// On how many axes a cell of a body lies open, and one of its open sides.
static int OpenAxes(bool (*inside)(Spot), Spot p, Spot *side) {
  int axes = 0;
  for (int axis = 2; axis >= 0; --axis)
    for (const Spot &s : {Sides[2 * axis], Sides[2 * axis + 1]})
      if (!inside(p + s)) {
        ++axes;
        *side = s;
        break;
      }
  return axes;
}

static u16 HullStuff(Spot p) {
  if (p.y == 0 && p.x < 9) return Of.trim;
  if (p.y == -3) return Of.dark;
  return Of.hull;
}

// Flat plates first; edges and corners find their form by the plates that stand.
static void PlateBody(bool (*inside)(Spot), Spot low, Spot high) {
  for (int axes = 1; axes <= 3; ++axes)
    for (int x = low.x; x <= high.x; ++x)
      for (int y = low.y; y <= high.y; ++y)
        for (int z = low.z; z <= high.z; ++z) {
          const Spot p{x, y, z};
          Spot side = Up;
          if (!inside(p) || OpenAxes(inside, p, &side) != axes) continue;
          if (axes == 1) Turned(250, HullStuff(p), p, RotationOn(side));
          else Stand(251, HullStuff(p), p, side);
        }
}

static void Replace(u16 id, u16 material, Spot at, Spot side) {
  Clear(at);
  Stand(id, material, at, side);
}

static void CutWindows() {
  for (const int z : {Keel - 5, Keel + 5})
    for (int x = -14; x <= 8; ++x)
      if (abs(x % 6) >= 3 && abs(x) > 2) Replace(1010, Of.glass, {x, 1, z}, z < Keel ? Port : Starboard);
  for (int x = 12; x <= 14; ++x)
    for (const int z : {Keel - 4, Keel + 4}) Replace(1010, Of.glass, {x, 1, z}, z < Keel ? Port : Starboard);
  for (int x = 15; x <= 17; ++x) {
    for (int y = 0; y <= 1; ++y)
      for (const int z : {Keel - 3, Keel + 3}) Replace(1010, Of.glass, {x, y, z}, z < Keel ? Port : Starboard);
    for (int z = Keel - 2; z <= Keel + 2; ++z) Replace(1010, Of.glass, {x, 2, z}, Up);
  }
  for (int z = Keel - 1; z <= Keel + 1; ++z) Replace(1010, Of.glass, {19, 0, z}, Fore);
  for (int z = Keel - 2; z <= Keel + 2; z += 4) Replace(1010, Of.glass, {18, 0, z}, z < Keel ? Port : Starboard);
  for (int z = Keel - 1; z <= Keel + 1; ++z) Replace(1010, Of.glass, {18, 1, z}, Up);
}

static bool Walkable(Spot p) { return InHull(p) && !Taken(p); }

static void LayDeck() {
  for (int x = -22; x <= 17; ++x)
    for (int z = Keel - 4; z <= Keel + 4; ++z) {
      const Spot p{x, Floor, z};
      if (!Walkable(p)) continue;
      if (abs(z - Keel) <= 1 && x > EngineWall) Stand(1054, Of.steel, p, Up);
      else Stand(2, Of.deck, p, Up);
    }
}

static bool DoorAt(Spot p, int x) { return p.x == x && p.y <= 1; }

// The two walls of the corridor, with a door to each cabin, and the bulkheads at its ends.
static void RaiseWalls() {
  for (int y = 0; y < Ceiling; ++y) {
    for (int x = EngineWall + 1; x < BridgeWall; ++x)
      for (const int z : {Keel - CorridorHalf, Keel + CorridorHalf}) {
        const Spot p{x, y, z};
        const bool door = DoorAt(p, -12) || DoorAt(p, -6) || DoorAt(p, 0) || DoorAt(p, 6);
        if (!door && Walkable(p)) Stand(2, y == 1 ? Of.teal : Of.hull, p, Up);
      }
    for (const int x : {EngineWall, BridgeWall})
      for (int z = Keel - 4; z <= Keel + 4; ++z)
        if ((z != Keel || y == 2) && Walkable({x, y, z})) Stand(2, Of.dark, {x, y, z}, Up);
    for (const int x : {-15, -9, -3, 3, 9})
      for (const int sign : {-1, 1})
        for (int z = 3; z <= 4; ++z)
          if (Walkable({x, y, Keel + sign * z})) Stand(2, Of.hull, {x, y, Keel + sign * z}, Up);
  }
}

static void HangLamps() {
  for (int x = -15; x <= 9; x += 6) Stand(1001, Of.steel, {x, 2, Keel}, Down);
  for (int x = -12; x <= 6; x += 6)
    for (const int z : {Keel - 4, Keel + 4})
      if (Walkable({x, 2, z})) Stand(1000, Of.steel, {x, 2, z}, Down);
  for (const int x : {-21, -19})
    Stand(1002, Of.steel, {x, 2, Keel + 2}, Down);
  Stand(1000, Of.steel, {13, 2, Keel}, Down);
}

// Runs of pipe under the corridor's ceiling, which the rules join up as they grow.
static void RunPipes() {
  for (int x = EngineWall + 1; x < BridgeWall; ++x) Stand(310, Of.copper, {x, 2, Keel - 1}, Down);
  for (int x = EngineWall + 1; x < BridgeWall; ++x) Stand(340, Of.dark, {x, 2, Keel + 1}, Down);
  for (int x = -22; x <= 10; ++x)
    if (Walkable({x, -2, Keel})) Stand(310, Of.brass, {x, -2, Keel}, Up);
}

static void FurnishEngineRoom() {
  Stand(1095, Of.steel, {-20, 0, Keel}, Up);
  Stand(1095, Of.steel, {-20, 1, Keel}, Up);
  for (const int z : {Keel - 3, Keel + 3}) {
    Stand(1096, Of.dark, {-19, 0, z}, Up);
    Stand(1102, Of.dark, {-20, 0, z}, Up);
    Stand(1094, Of.steel, {-21, 0, z}, Up);
    Stand(1094, Of.steel, {-21, 1, z}, Up);
    Stand(1097, Of.dark, {-18, 0, z}, Up);
  }
  Stand(1091, Of.steel, {-22, 0, Keel - 1}, Up);
  Stand(1080, Of.steel, {-22, 2, Keel}, Fore);
}

static void FurnishCabins() {
  for (const int x : {-14, -8}) {
    Stand(1125, Of.cloth, {x, 0, Keel - 4}, Up);
    Stand(1123, Of.steel, {x + 4, 0, Keel - 3}, Up);
    Stand(1127, Of.wood, {x + 4, 0, Keel - 4}, Up);
    Stand(1126, Of.hull, {x + 2, 0, Keel - 4}, Up);
  }
  Stand(1124, Of.wood, {-1, 0, Keel - 4}, Up);
  Stand(1124, Of.wood, {0, 0, Keel - 4}, Up);
  for (const int x : {-2, 1}) Stand(1120, Of.cloth, {x, 0, Keel - 4}, Up);
  for (int x = -14; x <= -10; ++x)
    for (int y = 0; y <= x % 2 + 1; ++y) Stand(x % 3 == 0 ? 1122 : 1121, Of.wood, {x, y, Keel + 4}, Up);
  for (int x = 4; x <= 8; x += 2) {
    Stand(1098, Of.dark, {x, 0, Keel + 4}, Up);
    Stand(1098, Of.dark, {x, 1, Keel + 4}, Up);
    Stand(1126, Of.hull, {x, 0, Keel - 4}, Up);
  }
}

static void FurnishBridge() {
  for (int z = Keel - 1; z <= Keel + 1; ++z) Stand(1091, Of.steel, {17, 0, z}, Up);
  for (const int z : {Keel - 1, Keel + 1}) Stand(1120, Of.cloth, {15, 0, z}, Up);
  for (const int z : {Keel - 3, Keel + 3}) {
    Stand(1098, Of.dark, {12, 0, z}, Up);
    Stand(1092, Of.dark, {12, 1, z}, Fore);
    Stand(1093, Of.steel, {14, 0, z}, Up);
  }
}

// A door in the side, a chamber, and a door to the corridor.
static void BuildAirlock() {
  for (int y = 0; y <= 1; ++y) Clear({0, y, Keel + 5});
  for (int y = 0; y < Ceiling; ++y)
    for (const int x : {-1, 1})
      for (int z = Keel + 3; z <= Keel + 4; ++z)
        if (Walkable({x, y, z})) Stand(1038, Of.brass, {x, y, z}, Up);
  for (const int x : {-1, 1})
    for (int y = 0; y <= 1; ++y) Replace(1038, Of.brass, {x, y, Keel + 5}, Starboard);
  for (int x = -2; x <= 2; ++x) Stand(1036, Of.steel, {x, Floor, Keel + 6}, Starboard);
  Stand(1004, Of.steel, {-2, 2, Keel + 6}, Starboard);
  Stand(1004, Of.steel, {2, 2, Keel + 6}, Starboard);
}

static void BuildNacelles() {
  PlateBody(InNacelles, {-22, -2, Keel - 9}, {-9, 0, Keel + 9});
  for (const int sign : {-1, 1}) {
    const int middle = Keel + sign * NacelleDistance;
    for (const int x : {-19, -18, -13, -12})
      Stand(1051, Of.steel, {x, -1, Keel + sign * 6}, sign > 0 ? Starboard : Port);
    for (int y = -2; y <= 0; ++y)
      for (int z = middle - 1; z <= middle + 1; ++z) Stand(1099, Of.steel, {-23, y, z}, Aft);
    Stand(1002, Of.steel, {-8, -1, middle}, Fore);
    for (int x = -20; x <= -11; x += 3) Stand(1103, Of.dark, {x, 1, middle}, Up);
    Stand(1000, Of.steel, {-15, 1, middle}, Up);
  }
}

static void FitOutside() {
  for (int y = -2; y <= 2; y += 2)
    for (int z = Keel - 2; z <= Keel + 2; z += 2) Stand(1099, Of.steel, {-24, y, z}, Aft);
  for (int x = -14; x <= 8; x += 7)
    for (const int z : {Keel - 3, Keel + 3}) Stand(1000, Of.steel, {x, 4, z}, Up);
  for (int x = -14; x <= 14; x += 7) {
    Stand(1001, Of.steel, {x, 2, Keel + (x > 10 ? 5 : 6)}, Starboard);
    Stand(1001, Of.steel, {x, 2, Keel - (x > 10 ? 5 : 6)}, Port);
    if (x < 10) Stand(1000, Of.steel, {x, -4, Keel}, Down);
  }
  Stand(1101, Of.steel, {-6, 4, Keel}, Up);
  Stand(1100, Of.steel, {-2, 4, Keel - 1}, Up);
  Stand(1100, Of.steel, {-2, 5, Keel - 1}, Up);
  Stand(1039, Of.steel, {4, 4, Keel}, Up);
  for (int x = -22; x <= -18; ++x)
    for (const int z : {Keel - 2, Keel, Keel + 2}) Stand(1103, Of.dark, {x, 4, z}, Up);
  for (int x = -15; x <= -8; ++x) Stand(310, Of.copper, {x, 4, Keel - 1}, Up);
  for (int z = Keel - 2; z >= Keel - 4; --z) Stand(310, Of.copper, {-8, 4, z}, Up);
  Stand(1000, Of.steel, {20, -1, Keel}, Fore);
}

static void ChooseStuffs() {
  Of = {MaterialRow(40), MaterialRow(52), MaterialRow(57), MaterialRow(12), MaterialRow(6),  MaterialRow(14),
        MaterialRow(4),  MaterialRow(62), MaterialRow(60), MaterialRow(63), MaterialRow(51), MaterialRow(80)};
}

static void BuildShip() {
  PlateBody(InHull, {-23, -3, Keel - 5}, {19, 3, Keel + 5});
  CutWindows();
  LayDeck();
  RaiseWalls();
  BuildAirlock();
  HangLamps();
  RunPipes();
  FurnishEngineRoom();
  FurnishCabins();
  FurnishBridge();
  BuildNacelles();
  FitOutside();
}

int main() {
  if (!LoadStage()) return 1;
  const std::unique_ptr<Ship> ship = NewShip();
  if (ship == nullptr) return 1;
  ship->displayName = ship->fileStem = "Showpiece";
  TheHand.ship = ship.get();
  ChooseStuffs();
  BuildShip();
  std::printf("%i blocks\n", BuildShipSummary(ship.get())->blockCount);
  return SaveShipByName(ship.get()) != 0 && NothingMissing() ? 0 : 1;
}
