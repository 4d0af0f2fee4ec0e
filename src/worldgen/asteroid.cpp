// A body of rock is a core and, around it, lumps that rays from the centre find their places for, ever smaller ones.
#include "worldgen/asteroid.h"

#include <algorithm>
#include <cmath>
#include <ctime>

#include "content/components.h"
#include "content/materials.h"
#include "gameplay/ray.h"
#include "platform/threads.h"
#include "world/access.h"
#include "world/lists.h"

constexpr u16 Centre = CellsPerAxis / 2;
constexpr i64 CentreUnits = i64{Centre} * UnitsPerBlock;
constexpr u16 RockMaterialRow = 5;
constexpr u16 RockId = 215, HeartId = 10;
constexpr int RockShapes = 5;
constexpr int FirstDivisor = 3, LastDivisor = 10;
constexpr i16 DeepestLump = 1000;  // each level is a call inside a call
constexpr double FullTurn = 6.2831855;

// A whole number from 0 to below the limit.
static int Draw(RandomState *g, int limit) { return static_cast<int>(NextRandom(g) * limit); }

static u16 RockMaterial() { return RockMaterialRow < MaterialCount ? RockMaterialRow : u16{1}; }

// A row of the rock shapes; tables without them have one placeholder instead of five.
static u16 RockComponent(int shape) {
  if (Components[AsteroidRockBase].id != RockId) return AsteroidRockBase;
  return static_cast<u16>(std::min(AsteroidRockBase + shape, ComponentCount - 1));
}

void GrowLump(i16 depth, i16 x, i16 y, i16 z, RandomState *g, Block *b, Ship *ship) {
  static constexpr u8 AxisOrders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
  b->material = RockMaterial();
  b->component = RockComponent(Draw(g, RockShapes));
  b->rotation = static_cast<unsigned>(1 + Draw(g, 6)) & 7;
  b->rotation2 = static_cast<unsigned>(Draw(g, 4)) & 3;
  if (PlaceBlockFast(*b, static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), ship) == 0) return;
  const u8 *order = AxisOrders[Draw(g, 6)];
  if (depth <= 1) return;
  for (int i = 0; i < 3; ++i)
    for (const int side : {1, -1}) {
      i16 at[3] = {x, y, z};
      at[order[i]] = static_cast<i16>(at[order[i]] + side);
      // Asked at each visit: the calls before may have filled this neighbour.
      if (BlockExists(static_cast<u16>(at[0]), static_cast<u16>(at[1]), static_cast<u16>(at[2]), *ship)) continue;
      GrowLump(static_cast<i16>(depth - 1), at[0], at[1], at[2], g, b, ship);
    }
}

static u16 CellOnAxis(double v) { return static_cast<u16>(std::clamp(v, 0.0, CellsPerAxis - 1.0)); }

// The cell that a ray from the centre in a random direction ends in: the first block, the target, or the end of its steps.
static Cell3 LumpPlace(RandomState *g, float reach, const Ship &ship) {
  const double turn = NextRandom(g) * FullTurn;
  const double u = 2 * NextRandom(g) - 1;
  const double s = std::sqrt(1 - u * u);
  const Cell3 from{Centre, Centre, Centre};
  const Cell3 to{CellOnAxis(std::cos(turn) * s * reach + Centre), CellOnAxis(std::sin(turn) * s * reach + Centre),
                 CellOnAxis(u * reach + Centre)};
  if (to.x == from.x && to.y == from.y && to.z == from.z) return from;
  Ray ray = NewCellRay(from, to);
  while (StepCellRay(&ray, ship) == RayOpen) {
  }
  return {CellOnAxis(ray.pos[0]), CellOnAxis(ray.pos[1]), CellOnAxis(ray.pos[2])};
}

static void GrowBody(u16 size, RandomState *g, Ship *ship) {
  const float reach = 2.0f * size;
  const float least = std::max(0.1f * reach, 1.0f);
  Block rock;
  rock.state = StateWhole;
  rock.temp = PlacedTemperature;
  if (size > 0) GrowLump(static_cast<i16>(std::min<int>(size, DeepestLump)), Centre, Centre, Centre, g, &rock, ship);
  for (int divisor = FirstDivisor; divisor <= LastDivisor; ++divisor) {
    const int lumps = 1 + Draw(g, 10);
    for (int i = 0; i < lumps; ++i) {
      const double depth = NextRandom(g) * (reach / static_cast<float>(divisor)) + least;
      const Cell3 at = LumpPlace(g, reach, *ship);
      GrowLump(static_cast<i16>(std::min<double>(depth, DeepestLump)), static_cast<i16>(at.x), static_cast<i16>(at.y),
               static_cast<i16>(at.z), g, &rock, ship);
    }
  }
}

// A heart is placed as in play: it lights the body, and no pass over the ship has to. World mutex held.
static void PlaceHeart(const u16 (&at)[3], Ship *ship) {
  Block heart;
  heart.state = StateWhole;
  heart.rotation = 2;
  heart.rotation2 = 1;
  heart.material = RockMaterial();
  heart.component = static_cast<u16>(std::max(FindComponent(HeartId), 1));
  heart.temp = PlacedTemperature;
  PlaceBlockHeld(heart, at[0], at[1], at[2], ship);
}

// Puts the middle cell on the given point; at the far end of the world the place wraps like every other.
static void PutMiddle(i64 x, i64 y, i64 z, Ship *ship) {
  const i64 at[3] = {x, y, z};
  for (int axis = 0; axis < 3; ++axis)
    ship->position[axis] = static_cast<i64>(static_cast<u64>(at[axis]) - static_cast<u64>(CentreUnits));
}

// World mutex held.
static void Generate(u16 size, i64 x, i64 y, i64 z, Ship *ship, RandomState *g) {
  AsteroidGenerated = true;
  PutMiddle(x, y, z, ship);
  GrowBody(size, g, ship);
  if (size == 1) PlaceHeart({Centre, Centre, Centre}, ship);
  AssignCoordinates(ship);
  StatePass(*ship);
  ship->summary = BuildShipSummary(ship);
}

// Bodies of the same second are the same.
static u32 SeedOfNow() { return static_cast<u32>(std::time(nullptr)); }

void GenerateAsteroid(u16 size, i64 x, i64 y, i64 z, Ship *ship) { GenerateAsteroidSeeded(size, x, y, z, ship, SeedOfNow()); }

void GenerateAsteroidSeeded(u16 size, i64 x, i64 y, i64 z, Ship *ship, u32 seed) {
  RandomState g;
  SeedGeneratorWith(&g, seed);
  ScopedLock world(&WorldMutex);
  Generate(size, x, y, z, ship, &g);
}

bool AddAsteroid(u16 size, i64 x, i64 y, i64 z, ShipTable *table) {
  RandomState g;
  SeedGeneratorWith(&g, SeedOfNow());
  ScopedLock world(&WorldMutex);
  Ship *ship = PrepareShip(table);
  if (ship == nullptr) return false;
  Generate(size, x, y, z, ship, &g);
  PublishShip(table);
  return true;
}

void LightAsteroid(Ship *ship) {
  const ScopedLock world(&WorldMutex);
  const ShipSummary &s = *ship->summary;
  const u16 low[3] = {s.minX, s.minY, s.minZ}, high[3] = {s.maxX, s.maxY, s.maxZ};
  for (int axis = 0; axis < 3; ++axis)
    for (const int side : {-1, 1}) {
      u16 at[3] = {Centre, Centre, Centre};
      at[axis] = side < 0 ? low[axis] : high[axis];
      while (at[axis] != Centre && !BlockExists(at[0], at[1], at[2], *ship)) at[axis] = static_cast<u16>(at[axis] - side);
      at[axis] = static_cast<u16>(at[axis] + side);
      PlaceHeart(at, ship);
    }
  ship->summary = BuildShipSummary(ship);
}
