// The way from blocks to instances: building a block's lists, and one run of Parse. Inputs rotate over 64 different blocks
// and the camera moves, so that no figure lives on one warm line of memory.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <random>
#include <vector>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "render/cache.h"
#include "render/matrix.h"
#include "render/parse.h"
#include "render/view.h"
#include "world/access.h"

constexpr int Kinds = 64;           // different blocks that a figure rotates over
constexpr int StandingBlocks = 20000, InstancesOfRun = 600000;

namespace {

enum Shape : int { SolidCube, HalfRandom, Sphere, Shapes };

}  // namespace

static void LoadContent() {
  static const bool loaded = LoadMaterials() != 0 && LoadComponents() != 0;
  if (!loaded) std::exit(1);
}

static u16 AddComponent(const std::function<bool(int x, int y, int z)> &filled, std::mt19937 *random) {
  Component c;
  c.id = 9999;
  c.voxels = std::make_unique<Voxel[]>(VoxelsPerBlock);
  c.voxelRuns = std::make_unique<Voxel[]>(VoxelsPerBlock);
  c.facts = std::make_unique<VoxelFacts>();
  for (int v = 0; v < VoxelsPerBlock; ++v) {
    const u32 drawn = static_cast<u32>((*random)());
    if (filled(v >> 8, v >> 4 & 15, v & 15))
      c.voxels[static_cast<size_t>(v)] = {static_cast<u8>(drawn), static_cast<u8>(drawn >> 8), static_cast<u8>(drawn >> 16),
                                          static_cast<u8>(drawn >> 30 == 0 ? 254 : 255), 0};
  }
  BuildVoxelRuns(c.voxels.get(), c.voxelRuns.get(), &c.drawnOpaque, &c.drawnTranslucent);
  BuildVoxelFacts(c.voxels.get(), c.voxelRuns.get(), c.facts.get());
  Components.insert(Components.begin() + ComponentCount, std::move(c));
  return ComponentCount++;
}

static u16 ShapeComponent(Shape shape, std::mt19937 *random) {
  return AddComponent(
      [=](int x, int y, int z) {
        const int dx = 2 * x - 15, dy = 2 * y - 15, dz = 2 * z - 15;
        return shape == SolidCube || (shape == HalfRandom ? (*random)() % 2 == 0 : dx * dx + dy * dy + dz * dz <= 225);
      },
      random);
}

static void GiveLights(GraphicBlock *g, int count, std::mt19937 *random) {
  g->lightList = static_cast<LightEntry *>(std::calloc(static_cast<size_t>(count), sizeof(LightEntry)));
  g->lightCount = static_cast<u8>(count);
  const auto offset = [&] { return static_cast<i8>((*random)() % 25 - 12); };
  for (int i = 0; i < count; ++i) g->lightList[i] = {offset(), offset(), offset(), 250, 200, 150, 0};
}

namespace {

// 64 blocks of one shape, each with a grid, a turn, a cell and lights of its own; turned to be built one after the other.
struct BuildScene {
  Ship ship;
  Player player;
  u64 heads[Kinds];
  GraphicBlock *graphics[Kinds];
};

}  // namespace

static BuildScene *MakeBuildScene(Shape shape, int lights) {
  LoadContent();
  std::mt19937 random(5);
  BuildScene *scene = new BuildScene;
  InitShip(&scene->ship, 0);
  AllocShipTable(&scene->ship);
  for (int i = 0; i < Kinds; ++i) {
    Block b;
    b.state = StateWhole;
    b.rotation = (1 + i % 6) & 7;
    b.rotation2 = i & 3;
    b.material = 1;
    b.component = ShapeComponent(shape, &random);
    DeriveComponentTraits();
    const u16 x = static_cast<u16>(20 + 3 * i), y = static_cast<u16>(500 + i), z = 700;
    PlaceBlockFast(b, x, y, z, &scene->ship);
    GetCellPointers(x, y, z, scene->ship, &scene->heads[i], &scene->graphics[i]);
    scene->graphics[i]->x = x, scene->graphics[i]->y = y, scene->graphics[i]->z = z;
    GiveLights(scene->graphics[i], lights, &random);
  }
  return scene;
}

static void DropBuildScene(BuildScene *scene) {
  FreeShip(&scene->ship);
  delete scene;
}

static void BuildCaches(benchmark::State &state) {
  BuildScene *scene = MakeBuildScene(static_cast<Shape>(state.range(0)), static_cast<int>(state.range(1)));
  int i = 0;
  for (auto _ : state) {
    GraphicBlock *g = scene->graphics[i];
    BuildBlockCache(scene->heads[i], scene->ship, g->x, g->y, g->z, scene->player, g, nullptr);
    benchmark::DoNotOptimize(g->cache);
    i = (i + 1) % Kinds;
  }
  double entries = 0;
  for (const GraphicBlock *g : scene->graphics) entries += g->cache == nullptr ? 0 : CacheTotal(*g->cache);
  state.counters["entries"] = entries / Kinds;
  DropBuildScene(scene);
}

// The limit: a pass over the run table that lists the exposed voxels and does nothing else.
static bool Exposed(const Voxel *voxels, int v) {
  for (int shift = 0; shift <= 8; shift += 4) {
    const int at = v >> shift & 15;
    if (at == 0 || at == 15 || voxels[v - (1 << shift)].alpha < 250 || voxels[v + (1 << shift)].alpha < 250) return true;
  }
  return false;
}

static void ListExposed(benchmark::State &state) {
  BuildScene *scene = MakeBuildScene(static_cast<Shape>(state.range(0)), 1);
  static u16 listed[VoxelsPerBlock];
  int i = 0;
  for (auto _ : state) {
    const Component &c = Components[HeadComponent(scene->heads[i])];
    int count = 0;
    for (int v = 0; v < VoxelsPerBlock; v += c.voxelRuns[static_cast<size_t>(v)].alpha == 0 ? c.voxelRuns[static_cast<size_t>(v)].skip + 1 : 1)
      if (c.voxelRuns[static_cast<size_t>(v)].alpha != 0 && Exposed(c.voxels.get(), v)) listed[count++] = static_cast<u16>(v);
    benchmark::DoNotOptimize(count);
    benchmark::DoNotOptimize(listed);
    benchmark::ClobberMemory();
    i = (i + 1) % Kinds;
  }
  DropBuildScene(scene);
}

static void NameShapes(benchmark::internal::Benchmark *b) {
  b->ArgNames({"shape", "lights"});  // shapes: 0 solid, 1 half-random, 2 sphere
  for (int shape = 0; shape < Shapes; ++shape)
    for (const int lights : {1, 12}) b->Args({shape, lights});
}
BENCHMARK(BuildCaches)->Apply(NameShapes);
BENCHMARK(ListExposed)->ArgName("shape")->DenseRange(0, Shapes - 1);

namespace {

// A ball of small blocks round the camera's place, 30 voxels each, all with their lists: what a run shows is 600,000 voxels.
struct ParseScene {
  Ship *ship;
  Player player;
  VoxelList list;
  std::vector<u8> source, target;  // of the memcpy that a run is held against
};

}  // namespace

static u16 SmallComponent(std::mt19937 *random) {
  std::vector<bool> chosen(VoxelsPerBlock);
  for (int left = InstancesOfRun / StandingBlocks; left > 0;) {
    const size_t v = (*random)() % VoxelsPerBlock;
    left -= chosen[v] ? 0 : 1;
    chosen[v] = true;
  }
  return AddComponent([&](int x, int y, int z) { return chosen[static_cast<size_t>(x * 256 + y * 16 + z)]; }, random);
}

static ParseScene *MakeParseScene() {
  LoadContent();
  std::mt19937 random(9);
  ParseScene *scene = new ParseScene;
  scene->ship = AppendShip(&TheShipTable);
  scene->player.shipIndex = static_cast<u16>(TheShipTable.count - 1);
  scene->player.target.markerHidden = true;
  AllocVoxelList(&scene->list);
  std::vector<u64> heads;
  for (int i = 0; i < Kinds; ++i) {
    Block b;
    b.state = StateWhole;
    b.rotation = (1 + i % 6) & 7;
    b.material = 1;
    b.component = SmallComponent(&random);
    heads.push_back(HeadOf(b));
  }
  DeriveComponentTraits();
  // A slab across the view: 50 x 40 x 10 blocks that begin some way in front of the eye.
  for (unsigned i = 0; i < StandingBlocks; ++i)
    PlaceBlockFast(BlockFromHead(heads[random() % Kinds]), static_cast<u16>(5000 + i % 50), static_cast<u16>(5000 + i / 50 % 40),
                   static_cast<u16>(4940 + i / 2000), scene->ship);
  AssignCoordinates(scene->ship);
  RebuildShipCaches(*scene->ship, scene->player);
  scene->source.resize(InstancesOfRun * 20);
  scene->target.resize(InstancesOfRun * 20);
  std::memset(scene->source.data(), 1, scene->source.size());
  return scene;
}

static void MoveCamera(ParseScene *scene, int run) {
  float projection[16], rotation[16], view[16];
  const float swing = std::sin(static_cast<float>(run) * 0.05f);
  Perspective(projection, 75, 1.333f, 0.1f, 4000);
  CameraRotationMatrix(rotation, 2 * swing, 3 * swing);
  MultiplyMatrices(projection, rotation, view);
  StoreViewMatrix(view);
  scene->player.relativeLoc[0] = 5025 + 3 * swing;
  scene->player.relativeLoc[1] = 5020 - 2 * swing;
  scene->player.relativeLoc[2] = 5005 + swing;
}

static double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Runs and memcpys of the same bytes take turns; the ratio is that of their best times.
static void ParseRun(benchmark::State &state) {
  ParseScene *scene = MakeParseScene();
  Options.MaxVoxels = 2000000;
  int run = 0;
  double bestRun = 1e9, bestCopy = 1e9;
  for (auto _ : state) {
    MoveCamera(scene, ++run);
    const double start = Seconds();
    Parse(&scene->list, scene->player);
    const double parsed = Seconds();
    std::memcpy(scene->target.data(), scene->source.data(), scene->source.size());
    benchmark::ClobberMemory();
    const double copied = Seconds();
    bestRun = std::min(bestRun, parsed - start);
    bestCopy = std::min(bestCopy, copied - parsed);
    state.SetIterationTime(parsed - start);
    if (run > 2 && scene->list.publishedCount != InstancesOfRun * 4) state.SkipWithError("not all blocks are in view");
  }
  state.counters["memcpy_us"] = bestCopy * 1e6;
  state.counters["best_us"] = bestRun * 1e6;
  state.counters["ratio"] = bestRun / bestCopy;
  TheShipTable.count = static_cast<u16>(TheShipTable.count - 1);
  FreeShip(scene->ship);
  for (void *p : {static_cast<void *>(scene->list.locations), static_cast<void *>(scene->list.publishedLocations),
                  static_cast<void *>(scene->list.colours), static_cast<void *>(scene->list.publishedColours)})
    std::free(p);
  delete scene;
}
BENCHMARK(ParseRun)->UseManualTime()->Unit(benchmark::kMicrosecond);
