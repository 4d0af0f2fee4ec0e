// What sound costs: loading everything at the start, putting on a song, and playing while nothing else happens. The device
// is one that nobody hears. Run from the checkout's root.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <chrono>
#include <ctime>
#include <thread>

#include "audio/sound.h"
#include "content/options.h"

constexpr double StartLimit = 1.5;     // seconds
constexpr double PlayingLimit = 0.03;  // of one core

static bool StartSound() {
  setenv("ALSOFT_DRIVERS", "null", 1);
  ResetOptions();
  return InitSound() && !SoundOff && !MusicOff;
}

static void SoundStart(benchmark::State &state) {
  for (auto _ : state) {
    if (!StartSound()) state.SkipWithError("no sound");
    state.PauseTiming();
    ShutdownSound();
    state.ResumeTiming();
  }
  state.counters["limit_s"] = StartLimit;
}
BENCHMARK(SoundStart)->Unit(benchmark::kMillisecond)->UseRealTime();

static void SoundSong(benchmark::State &state) {
  if (!StartSound()) state.SkipWithError("no sound");
  for (auto _ : state)
    if (PlaySong(-1) == 0) state.SkipWithError("no song");
  ShutdownSound();
}
BENCHMARK(SoundSong)->Unit(benchmark::kMillisecond)->UseRealTime();

// The processor time of all threads while music and breathing play.
static void SoundPlaying(benchmark::State &state) {
  if (!StartSound() || PlaySong(FirstSong) == 0) state.SkipWithError("no song");
  constexpr int seconds = 5;
  for (auto _ : state) {
    const std::clock_t before = std::clock();
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
    const double spent = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    state.SetIterationTime(spent);
    state.counters["cores"] = spent / seconds;
  }
  state.counters["limit_cores"] = PlayingLimit;
  ShutdownSound();
}
BENCHMARK(SoundPlaying)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(2);
