// Ships of a million blocks to and from disk, each figure beside what zlib alone takes for the same bytes.
// Run from the checkout's root; files go to a folder of their own under the system's temporary folder.
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "content/components.h"
#include "content/materials.h"
#include "net/ship_shell.h"
#include "persistence/stream.h"
#include "platform/threads.h"
#include "world/access.h"

constexpr unsigned Side = 100;  // blocks along an edge of the dense ship
constexpr unsigned Lamps = 100;

static double ZlibSave = 1e9, ZlibLoad = 1e9;  // the best time of each limit, in seconds

static double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

static void LoadContent() {
  static const bool loaded = LoadMaterials() != 0 && LoadComponents() != 0;
  if (!loaded) std::exit(1);
}

static u16 RowWithLight(bool lit, std::mt19937 *random) {
  for (;;) {
    const u16 row = static_cast<u16>(1 + (*random)() % (ComponentCount - 1u));
    if (((ComponentTraits[row] & TraitGivesLight) != 0) == lit) return row;
  }
}

static Ship *NewShip() {
  Ship *ship = new Ship;
  InitShip(ship, 0);
  AllocShipTable(ship);
  return ship;
}

static void DropShip(Ship *ship) {
  FreeShip(ship);
  delete ship;
}

// A million blocks of mixed materials, shapes and rotations, with a hundred lamps, in a cube: every apart-th cell of a row.
static Ship *MixedShip(unsigned apart) {
  LoadContent();
  Ship *ship = NewShip();
  std::mt19937 random(1);
  for (unsigned i = 0; i < Side * Side * Side; ++i) {
    const unsigned y = i / Side % Side, z = i / Side / Side;
    Block b;
    b.state = StateWhole;
    b.rotation = (1 + random() % 6) & 7;
    b.rotation2 = random() & 3;
    b.material = (1 + random() % (MaterialCount - 1u)) & 0xffff;
    b.component = RowWithLight(i % (Side * Side * Side / Lamps) == 7, &random);
    PlaceBlockRaw(b, AddressOf(5000 + i % Side * apart, 5000 + y, 5000 + z), ship);
  }
  return ship;
}

static Ship *TheShip() {
  static Ship *ship = MixedShip(1);
  return ship;
}

static const std::vector<u8> &TheBytes() {
  static const std::vector<u8> bytes = [] {
    std::vector<u8> packed;
    ScopedLock world(&WorldMutex);
    PackShip(*TheShip(), &packed);
    return packed;
  }();
  return bytes;
}

// A saved copy of the ship, made once; the folder goes when the program ends.
static const std::string &TheFile() {
  static const std::string path = [] {
    std::string folder = (std::filesystem::temp_directory_path() / "tarnvale-bench-XXXXXX").string();
    if (mkdtemp(folder.data()) == nullptr || SaveShipStream(TheShip(), (folder + "/ship.sts").c_str()) == 0) std::exit(1);
    static const std::string kept = folder;
    std::atexit([] { std::filesystem::remove_all(kept); });
    return folder + "/ship.sts";
  }();
  return path;
}

static void BM_LimitDeflate(benchmark::State &state) {
  const std::vector<u8> &bytes = TheBytes();
  std::vector<u8> out(bytes.size() + bytes.size() / 8 + 1000);
  for (auto _ : state) {
    const double start = Seconds();
    z_stream z{};
    deflateInit2(&z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    z.next_in = const_cast<Bytef *>(bytes.data());
    z.avail_in = static_cast<uInt>(bytes.size());
    z.next_out = out.data();
    z.avail_out = static_cast<uInt>(out.size());
    deflate(&z, Z_FINISH);
    state.counters["bytes"] = static_cast<double>(z.total_out);
    deflateEnd(&z);
    ZlibSave = std::min(ZlibSave, Seconds() - start);
  }
}
BENCHMARK(BM_LimitDeflate)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

static void BM_ShipPack(benchmark::State &state) {
  std::vector<u8> bytes;
  for (auto _ : state) {
    ScopedLock world(&WorldMutex);
    PackShip(*TheShip(), &bytes);
    benchmark::DoNotOptimize(bytes.data());
  }
  state.counters["bytes"] = static_cast<double>(bytes.size());
}
BENCHMARK(BM_ShipPack)->Unit(benchmark::kMillisecond)->UseRealTime();

// The whole save, with its sync to the disk. Target: at most 1.3 times the limit.
static void BM_ShipSave(benchmark::State &state) {
  const std::string path = TheFile() + ".again";
  double best = 1e9;
  for (auto _ : state) {
    const double start = Seconds();
    if (SaveShipStream(TheShip(), path.c_str()) == 0) state.SkipWithError("not saved");
    best = std::min(best, Seconds() - start);
  }
  if (ZlibSave < 1e9) state.counters["times_zlib"] = best / ZlibSave;
}
BENCHMARK(BM_ShipSave)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

static void BM_LimitInflate(benchmark::State &state) {
  std::vector<u8> out(TheBytes().size());
  std::vector<u8> packed(std::filesystem::file_size(TheFile()));
  std::FILE *file = std::fopen(TheFile().c_str(), "rb");
  const size_t got = std::fread(packed.data(), 1, packed.size(), file);
  std::fclose(file);
  for (auto _ : state) {
    const double start = Seconds();
    z_stream z{};
    inflateInit2(&z, 15 + 16);
    z.next_in = packed.data();
    z.avail_in = static_cast<uInt>(got);
    z.next_out = out.data();
    z.avail_out = static_cast<uInt>(out.size());
    if (inflate(&z, Z_FINISH) != Z_STREAM_END) state.SkipWithError("not the ship's bytes");
    inflateEnd(&z);
    ZlibLoad = std::min(ZlibLoad, Seconds() - start);
  }
}
BENCHMARK(BM_LimitInflate)->Unit(benchmark::kMillisecond)->UseRealTime();

// Loads into a new ship by work(ship); making and freeing the ship is left out of the time.
template <typename Work>
static void MeasureLoad(benchmark::State &state, Work work) {
  TheFile();
  double best = 1e9;
  for (auto _ : state) {
    Ship *ship = NewShip();
    const double start = Seconds();
    work(ship);
    const double seconds = Seconds() - start;
    state.SetIterationTime(seconds);
    best = std::min(best, seconds);
    DropShip(ship);
  }
  if (ZlibLoad < 1e9) state.counters["times_zlib"] = best / ZlibLoad;
}

static void BM_ShipTree(benchmark::State &state) {
  MeasureLoad(state, [](Ship *ship) { UnpackShip(ship, TheBytes().data(), TheBytes().size(), "bench"); });
}
BENCHMARK(BM_ShipTree)->Unit(benchmark::kMillisecond)->UseManualTime();

// File to tree, without the finishing passes. Target: at most 1.3 times the limit.
static void BM_ShipLoad(benchmark::State &state) {
  MeasureLoad(state, [](Ship *ship) { LoadShipStream(ship, TheFile().c_str(), false); });
}
BENCHMARK(BM_ShipLoad)->Unit(benchmark::kMillisecond)->UseManualTime();

static void BM_ShipLoadAndFinish(benchmark::State &state) {
  MeasureLoad(state, [](Ship *ship) { LoadShipStream(ship, TheFile().c_str(), true); });
}
BENCHMARK(BM_ShipLoadAndFinish)->Unit(benchmark::kMillisecond)->UseManualTime();

static void BM_ShipFinish(benchmark::State &state) {
  for (auto _ : state) {
    Ship *ship = NewShip();
    LoadShipStream(ship, TheFile().c_str(), false);
    const double start = Seconds();
    FinishShip(ship);
    state.SetIterationTime(Seconds() - start);
    DropShip(ship);
  }
}
BENCHMARK(BM_ShipFinish)->Unit(benchmark::kMillisecond)->UseManualTime();

// The shell's file of the dense ship, where nearly all blocks are inside, and of one of thin walls, where none is. Target: under
// 1500 ms each.
static void BM_ShipShell(benchmark::State &state) {
  Ship *ship = state.range(0) == 1 ? TheShip() : MixedShip(2);
  const auto root = std::filesystem::current_path();
  std::filesystem::current_path(std::filesystem::path(TheFile()).parent_path());
  std::filesystem::create_directory("cache");
  for (auto _ : state)
    if (BuildShipShell(*ship) == 0) state.SkipWithError("no shell");
  state.counters["bytes"] = static_cast<double>(std::filesystem::file_size("cache/Default.sss"));
  std::filesystem::current_path(root);
  if (ship != TheShip()) DropShip(ship);
}
BENCHMARK(BM_ShipShell)->ArgName("apart")->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime();

static double ResidentMegabytes() {
  malloc_trim(0);
  unsigned long pages = 0, resident = 0;
  std::FILE *file = std::fopen("/proc/self/statm", "r");
  if (file == nullptr || std::fscanf(file, "%lu %lu", &pages, &resident) != 2) resident = 0;
  if (file != nullptr) std::fclose(file);
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

// Resident memory of the loaded and finished ship. Target: under 250 MB.
static void BM_ShipMemory(benchmark::State &state) {
  TheFile();
  for (auto _ : state) {
    const double before = ResidentMegabytes();
    Ship *ship = NewShip();
    LoadShipStream(ship, TheFile().c_str(), false);
    const double loaded = ResidentMegabytes();
    FinishShip(ship);
    state.counters["loaded_MB"] = loaded - before;
    state.counters["finished_MB"] = ResidentMegabytes() - before;
    DropShip(ship);
  }
}
BENCHMARK(BM_ShipMemory)->Iterations(1)->Unit(benchmark::kMillisecond);
