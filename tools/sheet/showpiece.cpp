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
constexpr int Floor = -1, Roof = 4;             // y of the deck and of the roof
constexpr int EngineWall = -17, BridgeWall = 11;  // x of the two bulkheads
constexpr int CorridorHalf = 2;                 // z from the keel to the corridor's walls
constexpr int NacelleDistance = 9;              // z from the keel to a nacelle's middle

namespace {

struct Spot {
  int x, y, z;
};

// A stretch of a body: a box about a middle plane, narrower by a cell a layer towards its top, and at its bottom.
struct Section {
  int x0, x1, half, low, high, slopes;  // slopes: layers at the top that are narrower
};

}  // namespace

constexpr Section Sections[] = {{-24, -23, 4, -2, 4, 1}, {-22, -18, 5, -3, 5, 2}, {-17, 10, 5, -3, 4, 2},
                                {11, 13, 5, -3, 3, 1},   {14, 16, 4, -3, 2, 1},   {17, 19, 3, -3, 1, 1}};
constexpr Section NacelleSection = {-23, -6, 2, -4, 0, 1};
constexpr Spot Sides[6] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};
constexpr Spot Up{0, 1, 0}, Down{0, -1, 0}, Fore{1, 0, 0}, Aft{-1, 0, 0}, Starboard{0, 0, 1}, Port{0, 0, -1};

namespace {

// What the ship is made of: rows of Materials.
struct Stuffs {
  u16 hull, trim, dark, steel, glass, copper, brass, deck, cloth, wood, teal, tech;
};

}  // namespace
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

// The rotation with which a block stands on what lies against the side.
static unsigned RotationOn(Spot side) {
  if (side.y != 0) return side.y < 0 ? 2 : 5;
  if (side.x != 0) return side.x < 0 ? 4 : 6;
  return side.z < 0 ? 1 : 3;
}

// Quarter turns that bring the back of a thing on a floor, or under a ceiling, towards a side.
static unsigned BackTowards(Spot side, bool ceiling) {
  if (side.x != 0) return (side.x > 0) != ceiling ? 3 : 1;
  return (side.z > 0) != ceiling ? 0 : 2;
}

static void FloorFacing(u16 id, u16 material, Spot at, Spot front) {
  Turned(id, material, at, RotationOn(Up), BackTowards({-front.x, 0, -front.z}, false));
}

static bool InSection(const Section &s, int keel, Spot p) {
  if (p.x < s.x0 || p.x > s.x1 || p.y < s.low || p.y > s.high) return false;
  int half = s.half;
  if (p.y > s.high - s.slopes) half -= p.y - (s.high - s.slopes);
  if (p.y == s.low && s.slopes > 0) --half;
  return abs(p.z - keel) <= half;
}

static bool InHull(Spot p) {
  for (const Section &s : Sections)
    if (InSection(s, Keel, p)) return true;
  return false;
}

static bool InNacelles(Spot p) {
  return InSection(NacelleSection, Keel - NacelleDistance, p) || InSection(NacelleSection, Keel + NacelleDistance, p);
}

// On how many axes a cell of a body lies open, and one of its open sides. -1 for a cell inside, that is none of the shell.
static int OpenAxes(bool (*inside)(Spot), Spot p, Spot *side) {
  int axes = 0;
  for (int axis = 2; axis >= 0; --axis)
    for (const Spot &s : {Sides[2 * axis], Sides[2 * axis + 1]})
      if (!inside(p + s)) {
        ++axes;
        *side = s;
        break;
      }
  if (axes > 0) return axes;
  for (int around = 0; around < 27; ++around)
    if (!inside(p + Spot{around / 9 - 1, around / 3 % 3 - 1, around % 3 - 1})) return 0;
  return -1;
}

static bool IsCanopy(Spot p) { return p.x >= 14 && p.y >= 1; }

static u16 HullStuff(Spot p) {
  if (IsCanopy(p)) return Of.glass;
  if (p.y <= -2) return Of.dark;
  if (p.y == 0 && abs(p.z - Keel) >= 5) return Of.trim;
  if (p.x <= -23 || p.x == -18 || p.x == EngineWall) return Of.dark;
  return Of.hull;
}

static u16 HullEdge(Spot p) { return IsCanopy(p) ? 530 : p.x <= EngineWall ? 560 : 251; }
static u16 NacelleEdge(Spot) { return 261; }

static u16 NacelleStuff(Spot p) {
  if (p.x <= -22 || p.x >= -7) return Of.dark;
  return p.x == -12 || p.x == -13 ? Of.hull : Of.trim;
}

namespace {

// A body to be plated, with a box round it.
struct Body {
  bool (*inside)(Spot);
  u16 (*stuff)(Spot);
  u16 (*edge)(Spot);
  Spot low, high;
};

}  // namespace

template <typename Visit>
static void ForEachSpot(const Body &b, Visit visit) {
  for (int x = b.low.x; x <= b.high.x; ++x)
    for (int y = b.low.y; y <= b.high.y; ++y)
      for (int z = b.low.z; z <= b.high.z; ++z) visit(Spot{x, y, z});
}

// Flat plates first, those behind the steps of the shell too; edges and corners find their form by the plates that stand.
static void PlateBody(const Body &b) {
  for (int axes = 0; axes <= 3; ++axes)
    ForEachSpot(b, [&](Spot p) {
      Spot side = Up;
      if (!b.inside(p) || OpenAxes(b.inside, p, &side) != axes) return;
      if (axes <= 1) Turned(250, b.stuff(p), p, RotationOn(side));
      else Stand(b.edge(p), b.stuff(p), p, side);
    });
}

static void Replace(u16 id, u16 material, Spot at, Spot side) {
  Clear(at);
  Stand(id, material, at, side);
}

// Edges and corners stay.
static void Window(Spot at, Spot side) {
  Spot open{};
  if (OpenAxes(InHull, at, &open) == 1) Replace(1010, Of.glass, at, side);
}

static void CutWindows() {
  for (const int sign : {-1, 1}) {
    const Spot side = sign > 0 ? Starboard : Port;
    for (const int x : {-15, -14, -11, -10, -6, -5, 4, 5, 8, 9}) Window({x, 1, Keel + sign * 5}, side);
    for (int x = 14; x <= 18; ++x) Window({x, 0, Keel + sign * (x > 16 ? 3 : 4)}, side);
  }
  for (int x = 14; x <= 19; ++x)
    for (int y = 0; y <= 2; ++y)
      for (int z = Keel - 4; z <= Keel + 4; ++z) {
        Spot side = Up;
        if ((IsCanopy({x, y, z}) || x == 19) && OpenAxes(InHull, {x, y, z}, &side) == 1) Window({x, y, z}, side);
      }
}

static bool Walkable(Spot p) { return InHull(p) && !Taken(p); }

static void LayDeck() {
  for (int x = -22; x <= 18; ++x)
    for (int z = Keel - 4; z <= Keel + 4; ++z) {
      const Spot p{x, Floor, z};
      if (!Walkable(p)) continue;
      if (abs(z - Keel) <= 1 && x > EngineWall && x < BridgeWall) Stand(1054, Of.steel, p, Up);
      else Stand(2, Of.deck, p, Up);
    }
}

static bool IsDoorway(int x, int y) { return y <= 1 && (x == -12 || x == -6 || x == 0 || x == 6); }

// The two walls of the corridor, with a doorway to each cabin, the bulkheads at its ends and the walls between cabins.
static void RaiseWalls() {
  for (int y = 0; y < Roof; ++y) {
    for (int x = EngineWall + 1; x < BridgeWall; ++x)
      for (const int z : {Keel - CorridorHalf, Keel + CorridorHalf})
        if (!IsDoorway(x, y) && Walkable({x, y, z})) Stand(y == 1 ? 1031 : 1030, y == 0 ? Of.teal : Of.hull, {x, y, z}, Up);
    for (const int x : {EngineWall, BridgeWall})
      for (int z = Keel - 4; z <= Keel + 4; ++z)
        if ((z != Keel || y >= 2) && Walkable({x, y, z})) Stand(1032, Of.dark, {x, y, z}, Up);
    for (const int x : {-15, -9, -3, 3, 9})
      for (const int sign : {-1, 1})
        for (int z = 3; z <= 4; ++z)
          if (Walkable({x, y, Keel + sign * z})) Stand(2, Of.hull, {x, y, Keel + sign * z}, Up);
  }
}

static void HangLamps() {
  for (int x = -12; x <= 8; x += 10) Stand(1001, Of.steel, {x, 3, Keel}, Down);
  for (const int x : {-12, 6})
    for (const int z : {Keel - 3, Keel + 3}) Stand(1002, Of.steel, {x, 2, z}, Down);
  Stand(1000, Of.steel, {12, 2, Keel}, Down);
  for (const int z : {Keel - 3, Keel + 3}) Stand(2022, Of.steel, {-20, 2, z}, Down);
}

// Runs of pipe under the corridor's roof, which the rules join up as they grow, and one below the grating.
static void RunPipes() {
  for (int x = EngineWall + 1; x < BridgeWall; ++x) Stand(340, Of.copper, {x, 3, Keel - 1}, Down);
  for (int x = EngineWall + 1; x < BridgeWall; ++x) Stand(310, Of.dark, {x, 3, Keel + 1}, Down);
  for (int x = EngineWall + 1; x < BridgeWall; ++x)
    if (Walkable({x, -2, Keel + 3})) Stand(x == -3 ? 44 : 40, Of.steel, {x, -2, Keel + 3}, Up);
  for (const int x : {-10, 2})
    for (int y = 2; y >= 0; --y) Stand(340, Of.copper, {x, y, Keel - 1}, Down);
  for (int x = -22; x <= 10; ++x)
    if (Walkable({x, -2, Keel})) Stand(340, Of.brass, {x, -2, Keel}, Up);
}

static void FurnishEngineRoom() {
  Stand(350, Of.steel, {-21, 0, Keel}, Up);
  for (const int sign : {-1, 1}) {
    const int z = Keel + sign * 4;
    for (int x = -22; x <= -18; ++x)
      for (int y = 0; y <= 1; ++y) Stand(200, Of.dark, {x, y, z}, Up);
    Stand(2175, Of.steel, {-19, 0, Keel + sign * 3}, Up);
    Stand(1096, Of.dark, {-22, 0, Keel + sign * 3}, Up);
  }
  for (const int z : {Keel - 2, Keel + 3}) Stand(122, Of.steel, {-18, 0, z}, Up);
}

static void FurnishCabins() {
  for (const int x : {-14, -8}) {
    FloorFacing(2137, Of.cloth, {x, 0, Keel - 4}, Starboard);
    FloorFacing(2134, Of.wood, {x + 4, 0, Keel - 4}, Aft);
    FloorFacing(2140, Of.wood, {x + 4, 0, Keel - 3}, Aft);
    FloorFacing(2132, Of.cloth, {x + 3, 0, Keel - 4}, Fore);
    Stand(2142, Of.teal, {x + 2, 0, Keel - 3}, Up);
  }
  for (const int x : {-1, 0}) Stand(1124, Of.wood, {x, 0, Keel - 4}, Up);
  FloorFacing(2133, Of.cloth, {-2, 0, Keel - 4}, Fore);
  FloorFacing(2132, Of.cloth, {1, 0, Keel - 4}, Aft);
  FloorFacing(2139, Of.steel, {2, 0, Keel - 4}, Starboard);
  FloorFacing(2141, Of.hull, {2, 0, Keel - 3}, Aft);
  for (int x = 4; x <= 8; ++x) Stand(x % 2 == 0 ? 2208 : 2200, Of.hull, {x, 0, Keel - 4}, Up);
  for (int x = -14; x <= -10; ++x)
    for (int y = 0; y <= abs(x) % 2; ++y) Stand(x % 3 == 0 ? 1122 : 1121, Of.wood, {x, y, Keel + 4}, Up);
  for (int x = -8; x <= -4; x += 2) FloorFacing(2123, Of.brass, {x, 0, Keel + 4}, Port);
  for (int x = 4; x <= 8; x += 2)
    for (int y = 0; y <= 1; ++y) FloorFacing(1098, Of.dark, {x, y, Keel + 4}, Port);
  for (const int x : {5, 7}) FloorFacing(2152, Of.steel, {x, 0, Keel + 4}, Port);
}

static void FurnishBridge() {
  for (int z = Keel - 2; z <= Keel + 2; ++z) FloorFacing(z == Keel ? 2150 : 1091, Of.steel, {18, 0, z}, Aft);
  for (const int z : {Keel - 1, Keel + 1}) FloorFacing(2130, Of.cloth, {16, 0, z}, Fore);
  Stand(2151, Of.steel, {14, 0, Keel}, Up);
  for (const int sign : {-1, 1}) {
    const int z = Keel + sign * 4;
    const Spot inward = sign > 0 ? Port : Starboard, outward = sign > 0 ? Starboard : Port;
    for (int y = 0; y <= 1; ++y) FloorFacing(1098, Of.dark, {12, y, z}, inward);
    FloorFacing(1091, Of.steel, {13, 0, z}, inward);
    FloorFacing(2130, Of.cloth, {13, 0, Keel + sign * 3}, outward);
    Turned(2082, Of.dark, {12, 1, Keel + sign * 2}, RotationOn(Fore));
    Turned(2111, Of.steel, {12, 0, Keel + sign * 2}, RotationOn(Fore));
  }
}

// A doorway in the side and a chamber, open to the corridor.
static void BuildAirlock() {
  for (int y = 0; y <= 1; ++y) Clear({0, y, Keel + 5});
  for (const int x : {-1, 1}) {
    for (int y = 0; y < 3; ++y)
      for (int z = Keel + 3; z <= Keel + 4; ++z)
        if (Walkable({x, y, z})) Stand(1038, Of.brass, {x, y, z}, Up);
    for (int y = 0; y <= 1; ++y) Replace(1038, Of.brass, {x, y, Keel + 5}, Starboard);
    Stand(1004, Of.steel, {2 * x, 1, Keel + 6}, Starboard);
  }
  for (const int x : {-1, 1}) Stand(124, Of.steel, {2 * x, 0, Keel + 4}, Up);
  Turned(2192, Of.steel, {0, 2, Keel + 6}, RotationOn(Starboard));
  for (int x = -2; x <= 2; ++x) Stand(1054, Of.steel, {x, Floor, Keel + 6}, Up);
}

constexpr Body Hull = {InHull, HullStuff, HullEdge, {-25, -4, Keel - 6}, {20, 6, Keel + 6}};
constexpr Body Nacelles = {InNacelles, NacelleStuff, NacelleEdge, {-24, -5, Keel - 12}, {-4, 2, Keel + 12}};

static void BuildNacelles() {
  PlateBody(Nacelles);
  for (const int sign : {-1, 1}) {
    const int middle = Keel + sign * NacelleDistance;
    for (const int x : {-20, -19, -11, -10})
      for (int y = -1; y <= 0; ++y)
        if (!Taken({x, y, Keel + sign * 6})) Stand(1032, Of.dark, {x, y, Keel + sign * 6}, sign > 0 ? Starboard : Port);
    for (int y = -3; y <= -1; ++y)
      for (int z = middle - 1; z <= middle + 1; ++z) Turned(y == -2 && z == middle ? 2171 : 2170, Of.steel, {-24, y, z}, RotationOn(Aft));
    Stand(1000, Of.steel, {-5, -2, middle}, Fore);
    for (int x = -19; x <= -9; x += 2) Stand(1103, Of.dark, {x, 1, middle}, Up);
  }
}

// The name of the ship is a number, on both sides.
static void PaintNumber() {
  constexpr u16 Zero = 2180;
  constexpr int number[] = {4, 0, 7};
  for (int i = 0; i < 3; ++i) {
    Turned(static_cast<u16>(Zero + number[i]), Of.trim, {-16 + i, 2, Keel + 6}, RotationOn(Starboard));
    Turned(static_cast<u16>(Zero + number[i]), Of.trim, {-14 - i, 2, Keel - 6}, RotationOn(Port));
  }
}

static void FitOutside() {
  PaintNumber();
  for (int y = -1; y <= 3; y += 2)
    for (int z = Keel - 2; z <= Keel + 2; z += 2) Turned(y == 1 ? 2171 : 1099, Of.steel, {-25, y, z}, RotationOn(Aft));
  for (int x = -22; x <= -18; ++x)
    for (int y = 6; y <= 8; ++y)
      if (x <= -17 - (y - 5)) Stand(y == 8 ? 1030 : 1032, y == 8 ? Of.trim : Of.dark, {x, y, Keel}, Up);
  Stand(1004, Of.steel, {-22, 9, Keel}, Up);
  Stand(2074, Of.steel, {-6, 5, Keel}, Up);
  Stand(1101, Of.steel, {-4, 5, Keel + 2}, Up);
  for (int x = 0; x <= 3; ++x) Stand(2165, Of.tech, {x, 5, Keel + 2}, Up);
  for (int y = 5; y <= 6; ++y) Stand(1100, Of.steel, {-2, y, Keel - 2}, Up);
  Stand(1100, Of.steel, {0, 5, Keel - 2}, Up);
  Stand(1039, Of.steel, {5, 5, Keel}, Up);
  for (const int z : {Keel - 2, Keel + 2})
    for (int x = -21; x <= -18; ++x) Stand(1103, Of.dark, {x, 6, z}, Up);
  for (int x = -16; x <= -9; ++x) Stand(340, Of.copper, {x, 5, Keel + 2}, Up);
  for (int z = Keel + 1; z >= Keel - 2; --z) Stand(340, Of.copper, {-9, 5, z}, Up);
  for (int x = -16; x <= -10; ++x) Stand(310, Of.dark, {x, 5, Keel - 2}, Up);
  Stand(2060, Of.steel, {20, -1, Keel}, Fore);
  Stand(1000, Of.steel, {4, -4, Keel}, Down);
}

static void ChooseStuffs() {
  Of = {MaterialRow(40), MaterialRow(52), MaterialRow(57), MaterialRow(12), MaterialRow(6),  MaterialRow(14),
        MaterialRow(4),  MaterialRow(62), MaterialRow(60), MaterialRow(63), MaterialRow(51), MaterialRow(80)};
}

static void BuildShip() {
  PlateBody(Hull);
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
