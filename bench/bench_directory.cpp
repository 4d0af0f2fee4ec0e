// Ships as folders, each figure beside the same bytes written and read plainly. Run from the checkout's root; files go to a
// folder of their own under the system's temporary folder.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "content/components.h"
#include "content/materials.h"
#include "persistence/directory_store.h"
#include "persistence/stream.h"
#include "world/access.h"

constexpr unsigned Side = 100;              // blocks along an edge of the ship: 1000 chunks in one file
constexpr size_t FileBytes = 1000 * 14002;  // of that file
constexpr int Updates = 10000;

static double PlainSave = 1e9, PlainLoad = 1e9, PlainUpdates = 1e9;  // the best time of each limit, in seconds

static double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// A folder with a saves/ of its own, made once; it goes when the program ends.
static const std::string &TheFolder() {
  static std::string folder = (std::filesystem::temp_directory_path() / "tarnvale-bench-XXXXXX").string();
  static const bool made = LoadMaterials() != 0 && LoadComponents() != 0 && mkdtemp(folder.data()) != nullptr &&
                           mkdir((folder + "/saves").c_str(), 0777) == 0 &&
                           std::atexit([] { std::filesystem::remove_all(folder); }) == 0;
  if (!made) std::exit(1);
  return folder;
}

static Ship *NewShip() {
  Ship *ship = new Ship;
  InitShip(ship, 0);
  ship->fileStem = "bench";
  AllocShipTable(ship);
  return ship;
}

static Block CubeOf(u16 material) {
  Block b;
  b.state = StateWhole;
  b.rotation = 1;
  b.material = material;
  b.component = 2;
  return b;
}

// A cube of a million blocks, saved once.
static Ship *TheShip() {
  static Ship *ship = [] {
    Ship *filled = NewShip();
    for (unsigned i = 0; i < Side * Side * Side; ++i)
      PlaceBlockRaw(CubeOf(static_cast<u16>(1 + i % (MaterialCount - 1u))),
                    AddressOf(5000 + i % Side, 5000 + i / Side % Side, 5000 + i / Side / Side), filled);
    if (SaveShipDirectory(filled) == 0) std::exit(1);
    return filled;
  }();
  return ship;
}

// The best time of work() in the folder, in seconds.
template <typename Work>
static double Measure(benchmark::State &state, Work work) {
  double best = 1e9;
  const std::filesystem::path here = std::filesystem::current_path();
  std::filesystem::current_path(TheFolder());
  TheShip();
  for (auto _ : state) {
    const double start = Seconds();
    work();
    best = std::min(best, Seconds() - start);
  }
  std::filesystem::current_path(here);
  return best;
}

static void BM_LimitPlainSave(benchmark::State &state) {
  const std::vector<u8> bytes(FileBytes, 1);
  PlainSave = Measure(state, [&] {
    const int file = open("plain", O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (write(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size()) || fsync(file) != 0) std::exit(1);
    close(file);
  });
}
BENCHMARK(BM_LimitPlainSave)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

static void BM_DirectorySave(benchmark::State &state) {
  const double best = Measure(state, [&] { SaveShipDirectory(TheShip()); });
  if (PlainSave < 1e9) state.counters["times_plain"] = best / PlainSave;
}
BENCHMARK(BM_DirectorySave)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

static void BM_LimitPlainLoad(benchmark::State &state) {
  PlainLoad = Measure(state, [&] {
    std::vector<u8> bytes(FileBytes);
    const int file = open("saves/bench/555/0.sss", O_RDONLY);
    if (read(file, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) std::exit(1);
    close(file);
  });
}
BENCHMARK(BM_LimitPlainLoad)->Unit(benchmark::kMillisecond)->UseRealTime();

// Folder to tree, without the finishing passes.
static void BM_DirectoryLoad(benchmark::State &state) {
  const double best = Measure(state, [&] {
    Ship *ship = NewShip();
    LoadShipDirectory(ship, "bench", true, true);
    FreeShip(ship);
    delete ship;
  });
  if (PlainLoad < 1e9) state.counters["times_plain"] = best / PlainLoad;
}
BENCHMARK(BM_DirectoryLoad)->Unit(benchmark::kMillisecond)->UseRealTime();

static void BM_DirectorySlots(benchmark::State &state) {
  Measure(state, [&] {
    Ship *ship = NewShip();
    LoadShipDirectory(ship, "bench", false, true);
    FreeShip(ship);
    delete ship;
  });
}
BENCHMARK(BM_DirectorySlots)->Unit(benchmark::kMillisecond)->UseRealTime();

// Records at random places, each with an opening and a closing of the file.
static void BM_LimitPlainUpdates(benchmark::State &state) {
  std::mt19937 random(1);
  PlainUpdates = Measure(state, [&] {
    const u8 record[14] = {};
    std::filesystem::copy_file("saves/bench/555/0.sss", "plain", std::filesystem::copy_options::skip_existing);
    for (int i = 0; i < Updates; ++i) {
      const int file = open("plain", O_RDWR);
      if (pwrite(file, record, sizeof record, static_cast<off_t>(random() % (FileBytes - sizeof record))) < 0) std::exit(1);
      close(file);
    }
  });
}
BENCHMARK(BM_LimitPlainUpdates)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

static void UpdateAt(u32 n) {
  SaveBlockUpdate(CubeOf(2), static_cast<u16>(5000 + n % Side), static_cast<u16>(5000 + n / Side % Side),
                  static_cast<u16>(5000 + n / Side / Side % Side), TheShip());
}

// Blocks anywhere in the ship: one in 300 lies across two pages and costs a note.
static void BM_DirectoryUpdates(benchmark::State &state) {
  std::mt19937 random(1);
  const double best = Measure(state, [&] {
    for (int i = 0; i < Updates; ++i) UpdateAt(static_cast<u32>(random()));
  });
  if (PlainUpdates < 1e9) state.counters["times_plain"] = best / PlainUpdates;
}
BENCHMARK(BM_DirectoryUpdates)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
