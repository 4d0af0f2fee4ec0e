// Text ships of a hundred thousand blocks, each figure beside what zlib alone takes for the same text, and with ids that
// have moved beside ids that are where they were. Run from the checkout's root.
#include <benchmark/benchmark.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>

#include "content/components.h"
#include "content/materials.h"
#include "persistence/text_form.h"
#include "platform/threads.h"
#include "world/access.h"

namespace fs = std::filesystem;

constexpr unsigned Blocks = 100000;

static double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

namespace {

// An installation of its own, entered for the length of a measurement.
struct Folder {
  fs::path before = fs::current_path();
  Folder();
  ~Folder() { fs::current_path(before); }
};

}  // namespace

static Ship *TextShip() {
  Ship *ship = new Ship;
  InitShip(ship, 0);
  AllocShipTable(ship);
  std::mt19937 random(2);
  for (unsigned i = 0; i < Blocks; ++i) {
    Block b;
    b.state = StateWhole;
    b.rotation = (1 + random() % 6) & 7;
    b.rotation2 = random() & 3;
    b.material = (1 + random() % (MaterialCount - 1u)) & 0xffff;
    do b.component = (1 + random() % (ComponentCount - 1u)) & 0xffff;
    while ((ComponentTraits[b.component] & TraitGivesLight) != 0);
    PlaceBlockRaw(b, AddressOf(5000 + i % 50, 5000 + i / 50 % 50, 5000 + i / 2500), ship);
  }
  AssignCoordinates(ship);
  return ship;
}

static size_t ReadText(const char *path, std::string *text) {
  gzFile file = gzopen(path, "rb");
  const int size = gzread(file, text->data(), static_cast<unsigned>(text->size()));
  gzclose(file);
  return static_cast<size_t>(std::max(size, 0));
}

// The same ship as if every row had stood one row further down when it was written.
static void WriteMoved(const std::string &text) {
  gzFile file = gzopen("saves/moved.ssf", "wb");
  const size_t header = text.find("MainSection 1\n") + 14;
  gzwrite(file, text.data(), static_cast<unsigned>(header));
  for (size_t at = header, end; at < text.size(); at = end + 1) {
    end = text.find('\n', at);
    int n[13] = {};
    std::sscanf(text.c_str() + at, "%d %d %d %d %d %d %d %d %d %d %d %d %d", n, n + 1, n + 2, n + 3, n + 4, n + 5, n + 6, n + 7,
                n + 8, n + 9, n + 10, n + 11, n + 12);
    const int moved = n[6] == 0 ? 0 : 1;
    gzprintf(file, "%d %d %d %d %d %d %d %d %d %d %d %d %d\n", n[0], n[1], n[2], n[3], n[4] + moved, n[5] + moved, n[6], n[7], n[8],
             n[9], n[10], n[11], n[12]);
  }
  gzclose(file);
}

static Ship *TheTextShip = nullptr;
static std::string TheText;
static double ZlibRead = 1e9, ZlibWrite = 1e9;  // the best time of each limit, in seconds

Folder::Folder() {
  static std::string made;
  if (made.empty()) {
    if (Components.size() <= 2 && (LoadMaterials() == 0 || LoadComponents() == 0)) std::exit(1);
    made = (fs::temp_directory_path() / "tarnvale-bench-XXXXXX").string();
    if (mkdtemp(made.data()) == nullptr) std::exit(1);
    std::atexit([] { fs::remove_all(made); });
    fs::create_directories(fs::path(made) / "saves");
    fs::create_directories(fs::path(made) / "cache");
    fs::current_path(made);
    TheTextShip = TextShip();
    if (SaveShipText(*TheTextShip, "ship", false, false, false) == 0) std::exit(1);
    TheText.resize(16 << 20);
    TheText.resize(ReadText("saves/ship.ssf", &TheText));
    WriteMoved(TheText);
  }
  fs::current_path(made);
}

static void BM_LimitTextDeflate(benchmark::State &state) {
  const Folder folder;
  for (auto _ : state) {
    const double start = Seconds();
    gzFile file = gzopen("limit.gz", "wb");
    gzwrite(file, TheText.data(), static_cast<unsigned>(TheText.size()));
    gzclose(file);
    ZlibWrite = std::min(ZlibWrite, Seconds() - start);
  }
  state.counters["bytes"] = static_cast<double>(TheText.size());
}
BENCHMARK(BM_LimitTextDeflate)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

// The whole save, with its syncs to the disk. Target: at most 1.3 times the limit.
static void BM_TextSave(benchmark::State &state) {
  const Folder folder;
  double best = 1e9;
  for (auto _ : state) {
    const double start = Seconds();
    if (SaveShipText(*TheTextShip, "again", false, false, false) == 0) state.SkipWithError("not saved");
    best = std::min(best, Seconds() - start);
  }
  if (ZlibWrite < 1e9) state.counters["times_zlib"] = best / ZlibWrite;
}
BENCHMARK(BM_TextSave)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(5);

static void BM_LimitTextInflate(benchmark::State &state) {
  const Folder folder;
  std::string text = TheText;
  for (auto _ : state) {
    const double start = Seconds();
    if (ReadText("saves/ship.ssf", &text) != TheText.size()) state.SkipWithError("not the ship's text");
    ZlibRead = std::min(ZlibRead, Seconds() - start);
  }
}
BENCHMARK(BM_LimitTextInflate)->Unit(benchmark::kMillisecond)->UseRealTime();

// File to finished ship. Text has to be read number by number, and the finishing passes look at every block.
static void MeasureTextLoad(benchmark::State &state, const char *name) {
  const Folder folder;
  double best = 1e9;
  for (auto _ : state) {
    Ship *ship = new Ship;
    InitShip(ship, 0);
    AllocShipTable(ship);
    {
      ScopedLock world(&WorldMutex);
      const double start = Seconds();
      if (LoadShipText(ship, name, 0, 0, 0) == 0) state.SkipWithError("not loaded");
      state.SetIterationTime(Seconds() - start);
      best = std::min(best, Seconds() - start);
    }
    FreeShip(ship);
    delete ship;
  }
  if (ZlibRead < 1e9) state.counters["times_zlib"] = best / ZlibRead;
}

static void BM_TextLoad(benchmark::State &state) { MeasureTextLoad(state, "ship.ssf"); }
BENCHMARK(BM_TextLoad)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);

// Every id out of its place. Target: at most 1.2 times the load without.
static void BM_TextLoadOfMovedRows(benchmark::State &state) { MeasureTextLoad(state, "moved.ssf"); }
BENCHMARK(BM_TextLoadOfMovedRows)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(5);
