// What play asks of the world: edits, light, reads of cells, steps of rays, and the frame's own arithmetic. Inputs are
// rotated, 64 of each, so that no answer comes from one warm line.
#include <benchmark/benchmark.h>

#include <time.h>

#include <cmath>
#include <cstdlib>
#include <random>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "gameplay/ray.h"
#include "gameplay/target.h"
#include "render/view.h"
#include "world/access.h"
#include "world/edit.h"
#include "world/light.h"
#include "world/lists.h"

constexpr unsigned Inputs = 64;
constexpr u16 Corner = 5000;

static void LoadContent() {
  static const bool loaded = LoadMaterials() != 0 && LoadComponents() != 0;
  if (!loaded) std::exit(1);
}

// Rows that a component must, or must not, give light for.
static std::vector<u16> Rows(bool lit) {
  std::vector<u16> rows;
  for (u16 row = 1; row < ComponentCount; ++row)
    if (((ComponentTraits[row] & TraitGivesLight) != 0) == lit && (ComponentTraits[row] & TraitAnimated) == 0) rows.push_back(row);
  return rows;
}

static Block RandomBlock(const std::vector<u16> &rows, std::mt19937 *random) {
  Block b;
  b.state = StateWhole;
  b.rotation = (1 + (*random)() % 6) & 7;
  b.rotation2 = (*random)() & 3;
  b.material = (1 + (*random)() % (MaterialCount - 1u)) & 0xffff;
  b.component = rows[(*random)() % rows.size()];
  return b;
}

// A dense box of plain blocks, x by y by z, from the corner on, finished for play.
static Ship *Box(unsigned sx, unsigned sy, unsigned sz) {
  LoadContent();
  Ship *ship = new Ship;
  InitShip(ship, 0);
  AllocShipTable(ship);
  std::mt19937 random(1);
  const std::vector<u16> plain = Rows(false);
  for (unsigned i = 0; i < sx * sy * sz; ++i)
    PlaceBlockRaw(RandomBlock(plain, &random), AddressOf(Corner + i % sx, Corner + i / sx % sy, Corner + i / sx / sy), ship);
  AssignCoordinates(ship);
  StatePass(*ship);
  return ship;
}

namespace {

struct Edit {
  Block block;
  u16 x, y, z;
};

}  // namespace

static std::vector<Edit> EditsWithin(unsigned low, unsigned high) {
  std::mt19937 random(2);
  const std::vector<u16> plain = Rows(false);
  const auto axis = [&] { return static_cast<u16>(Corner + low + random() % (high - low)); };
  std::vector<Edit> edits;
  for (unsigned i = 0; i < Inputs; ++i) edits.push_back({RandomBlock(plain, &random), axis(), axis(), axis()});
  return edits;
}

// Takes a block away and puts another into its place, in the middle of a ship of 60 x 60 x 60. Arg: lamps near by.
// Targets: under 60 us without lamps, under 300 us beside 10.
static void BM_RemoveAndPlace(benchmark::State &state) {
  Ship *ship = Box(60, 60, 60);
  std::mt19937 random(3);
  const std::vector<u16> lamps = Rows(true);
  for (int i = 0; i < state.range(0); ++i)
    PlaceBlock(RandomBlock(lamps, &random), static_cast<u16>(Corner + 24 + i), Corner + 30, static_cast<u16>(Corner + 36 - i), ship);
  const std::vector<Edit> edits = EditsWithin(31, 37);
  unsigned i = 0;
  for (auto _ : state) {
    const Edit &e = edits[i++ % Inputs];
    RemoveBlock(e.x, e.y, e.z, ship);
    PlaceBlock(e.block, e.x, e.y, e.z, ship);
  }
  FreeShip(ship);
  delete ship;
}
BENCHMARK(BM_RemoveAndPlace)->Arg(0)->Arg(10)->Unit(benchmark::kMicrosecond);

static void AddLampsAround(unsigned count, Ship *ship) {
  std::mt19937 random(3);
  const std::vector<u16> lamps = Rows(true);
  const auto axis = [&random] { return static_cast<u16>(Corner + 22 + random() % 16); };
  for (unsigned i = 0; i < count; ++i) PlaceBlock(RandomBlock(lamps, &random), axis(), axis(), axis(), ship);
}

// A lamp comes and goes by the road of edits in the middle of 60 x 60 x 60 blocks: what one edit costs, and what the slices of
// mending behind it do. Args: other lamps near by; shadows. Targets: an edit under 2 ms, the longest slice under 5 ms.
static void BM_EditLampAndMend(benchmark::State &state) {
  Ship *ship = Box(60, 60, 60);
  AddLampsAround(static_cast<unsigned>(state.range(0)), ship);
  Options.ExperimentalLight = state.range(1) != 0;
  std::mt19937 random(4);
  const Block lamp = RandomBlock(Rows(true), &random);
  double editing = 0, longest = 0;
  i64 edits = 0, slices = 0;
  const auto seconds = [](auto work) {  // of this thread: others may run beside it
    timespec start, end;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
    work();
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
    return static_cast<double>(end.tv_sec - start.tv_sec) + 1e-9 * static_cast<double>(end.tv_nsec - start.tv_nsec);
  };
  for (auto _ : state) {
    editing += seconds([&] {
      if (edits++ % 2 == 0) EditPlace(lamp, Corner + 30, Corner + 30, Corner + 30, ship);
      else EditRemove(Corner + 30, Corner + 30, Corner + 30, ship);
    });
    for (bool done = false; !done; ++slices)
      longest = std::max(longest, seconds([&] {
        u64 steps = MendingSlice;
        done = MendEdits(ship, &steps);
      }));
  }
  state.counters["edit_ms"] = 1000 * editing / static_cast<double>(edits);
  state.counters["slices"] = static_cast<double>(slices) / static_cast<double>(edits);
  state.counters["longest_slice_ms"] = 1000 * longest;
  Options.ExperimentalLight = false;
  FreeShip(ship);
  delete ship;
}
BENCHMARK(BM_EditLampAndMend)->ArgsProduct({{0, 10, 200}, {0, 1}})->Unit(benchmark::kMillisecond);

// A thousand lamps in a ship of 100,000 blocks. Target: under 1.5 s.
static void BM_LightPass(benchmark::State &state) {
  Ship *ship = Box(100, 50, 20);
  std::mt19937 random(4);
  const std::vector<u16> lamps = Rows(true);
  for (unsigned i = 0; i < 1000; ++i) {
    const unsigned cell = i * 100 + static_cast<unsigned>(random() % 100);
    PlaceBlockRaw(RandomBlock(lamps, &random), AddressOf(Corner + cell % 100, Corner + cell / 100 % 50, Corner + cell / 5000), ship);
  }
  for (auto _ : state) {
    LightPass(ship);
    state.PauseTiming();
    ClearLights(*ship);
    state.ResumeTiming();
  }
  FreeShip(ship);
  delete ship;
}
BENCHMARK(BM_LightPass)->Unit(benchmark::kMillisecond);

// The ship that reads and rays work in: a shell, so that both free and occupied cells are met.
static Ship *ReadShip() {
  static Ship *ship = [] {
    Ship *box = Box(100, 100, 20);
    for (u16 z = 4; z < 16; ++z)
      for (u16 y = 4; y < 96; ++y)
        for (u16 x = 4; x < 96; ++x)
          RemoveBlockHeld(static_cast<u16>(Corner + x), static_cast<u16>(Corner + y), static_cast<u16>(Corner + z), box);
    return box;
  }();
  return ship;
}

// Target: 80 million a second.
static void BM_GetBlockRandom(benchmark::State &state) {
  const Ship &ship = *ReadShip();
  std::mt19937 random(5);
  std::vector<Cell3> cells;
  for (int i = 0; i < 4096; ++i)
    cells.push_back({static_cast<u16>(Corner + random() % 100), static_cast<u16>(Corner + random() % 100), static_cast<u16>(Corner + random() % 20)});
  unsigned i = 0;
  Block out;
  for (auto _ : state) {
    const Cell3 &c = cells[i++ % 4096];
    benchmark::DoNotOptimize(GetBlock(&out, c.x, c.y, c.z, ship));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_GetBlockRandom);

// The six neighbours of a cell, as most rules ask for them. Target: 80 million reads a second.
static void BM_GetBlockNeighbours(benchmark::State &state) {
  const Ship &ship = *ReadShip();
  const std::vector<Edit> cells = EditsWithin(1, 19);
  unsigned i = 0;
  Block out;
  for (auto _ : state) {
    const Edit &c = cells[i++ % Inputs];
    int found = 0;
    for (int d = -1; d <= 1; d += 2) {
      found += GetBlock(&out, static_cast<u16>(c.x + d), c.y, c.z, ship);
      found += GetBlock(&out, c.x, static_cast<u16>(c.y + d), c.z, ship);
      found += GetBlock(&out, c.x, c.y, static_cast<u16>(c.z + d), ship);
    }
    benchmark::DoNotOptimize(found);
  }
  state.SetItemsProcessed(state.iterations() * 6);
}
BENCHMARK(BM_GetBlockNeighbours);

static std::vector<Vec3f> Directions() {
  std::mt19937 random(6);
  std::uniform_real_distribution<float> axis(-1, 1);
  std::vector<Vec3f> directions;
  for (unsigned i = 0; i < Inputs; ++i) directions.push_back({axis(random), axis(random), axis(random)});
  return directions;
}

constexpr Vec3f Inside = {Corner + 50.3f, Corner + 50.6f, Corner + 10.2f};

// Targets: under 15 ns a step, both.
static void BM_StepVoxelRay(benchmark::State &state) {
  const Ship &ship = *ReadShip();
  const std::vector<Vec3f> directions = Directions();
  unsigned i = 0;
  i64 steps = 0;
  for (auto _ : state) {
    const Vec3f &d = directions[i++ % Inputs];
    Ray ray = NewRayToward(Inside, {Inside.x + d.x * 12, Inside.y + d.y * 12, Inside.z + d.z * 12});
    while (StepVoxelRay(&ray, ship) == RayOpen) ++steps;
  }
  state.SetItemsProcessed(steps);
  state.counters["per_step"] = benchmark::Counter(static_cast<double>(steps), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_StepVoxelRay);

static void BM_StepCellRay(benchmark::State &state) {
  const Ship &ship = *ReadShip();
  const std::vector<Vec3f> directions = Directions();
  const Cell3 from = {Corner + 50, Corner + 50, Corner + 10};
  unsigned i = 0;
  i64 steps = 0;
  for (auto _ : state) {
    const Vec3f &d = directions[i++ % Inputs];
    const Cell3 to = {static_cast<u16>(Inside.x + d.x * 45), static_cast<u16>(Inside.y + d.y * 45), static_cast<u16>(Inside.z + 3 + d.z * 2)};
    Ray ray = NewCellRay(from, to);
    while (StepCellRay(&ray, ship) == RayOpen) ++steps;
  }
  state.SetItemsProcessed(steps);
  state.counters["per_step"] = benchmark::Counter(static_cast<double>(steps), benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(BM_StepCellRay);

// What a frame costs the processor before anything is drawn: the aim and the camera.
static void BM_FrameArithmetic(benchmark::State &state) {
  const Ship &ship = *ReadShip();
  const std::vector<Vec3f> directions = Directions();
  Player player;
  ResetTarget(&player.target, Corner, Corner, Corner);
  const float eye[3] = {Inside.x, Inside.y, Inside.z};
  std::copy(eye, eye + 3, player.relativeLoc);
  unsigned i = 0;
  for (auto _ : state) {
    const Vec3f &d = directions[i++ % Inputs];
    player.pitch = d.x * 90;
    player.yaw = d.y * 180;
    player.sinPitch = std::sin(player.pitch * 0.017453292f);
    player.cosPitch = std::cos(player.pitch * 0.017453292f);
    player.sinYaw = std::sin(player.yaw * 0.017453292f);
    player.cosYaw = std::cos(player.yaw * 0.017453292f);
    benchmark::DoNotOptimize(UpdateTarget(&player.target, player, ship));
    FrameMatrices(player);
  }
}
BENCHMARK(BM_FrameArithmetic)->Unit(benchmark::kMicrosecond);
