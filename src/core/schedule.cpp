// The loops of the two thread systems. A pass reads the clock once, runs each piece that is due in the order of its table,
// and then sleeps until the next one is due, at most 10 ms at a time; the option StealCpu 1 makes it poll instead.
#include "core/schedule.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <thread>

#include "audio/sound.h"
#include "content/options.h"
#include "core/log.h"
#include "core/pieces.h"
#include "gameplay/input.h"
#include "platform/threads.h"
#include "platform/window.h"
#include "world/retire.h"

constexpr double LongestNap = 0.01, ShortestNap = 0.0005;

namespace {

struct Timed {
  void (*piece)(double *timer);
  double due;         // next run, in the clock of ClockNow
  bool needsOpenGate;  // skipped while StartupGate is set
};

// When the next song starts.
struct MusicTimer {
  double due;
};

}  // namespace

static MusicTimer StartMusic() { return {ClockNow() + PlaySong(FirstSong) + 180}; }

static void MusicTick(MusicTimer *music, double now) {
  if (now < music->due) return;
  const u16 length = PlaySong(-1);
  music->due = ClockNow() + length + std::rand() % 240 + 120;
}

static void RunDue(Timed *first, Timed *last, double now) {
  for (Timed *t = first; t != last; ++t)
    if (now >= t->due && !(t->needsOpenGate && StartupGate)) t->piece(&t->due);
}

// Sleeps until the earliest of the timers. A piece whose mutex was busy is overdue and gets the shortest nap.
static void Nap(double earliest) {
  if (Options.StealCpu) return;
  const double left = std::clamp(earliest - ClockNow(), ShortestNap, LongestNap);
  std::this_thread::sleep_for(std::chrono::duration<double>(left));
}

static double Earliest(const Timed *first, const Timed *last) {
  return std::min_element(first, last, [](const Timed &a, const Timed &b) { return a.due < b.due; })->due;
}

// The loops by number, as the retirement of ships counts their passes.
constexpr int MainLoop = 0, ParseLoop = 1, SoundLoop = 2, MovementLoop = 3;

template <size_t N>
static void Loop(int number, Timed (&pieces)[N]) {
  while (!QuitRequested) {
    BeginPass(number);
    RunDue(std::begin(pieces), std::end(pieces), ClockNow());
    Nap(Earliest(std::begin(pieces), std::end(pieces)));
  }
  EndLoop(number);
}

static void ParseThread() {
  Timed pieces[] = {{ParsePiece, ClockNow() + 0.1, true}};
  Loop(ParseLoop, pieces);
  LogWarn("Exiting Thread 2/4");
}

static void SoundThread() {
  MusicTimer music = StartMusic();
  const double start = ClockNow();
  Timed pieces[] = {{SoundUpdatesPiece, start + 0.1, false}, {MiscPiece, start + 0.05, false}, {OpsPiece, start + 0.5, false}};
  while (!QuitRequested) {
    BeginPass(SoundLoop);
    const double now = ClockNow();
    MusicTick(&music, now);
    RunDue(std::begin(pieces), std::end(pieces), now);
    Nap(Earliest(std::begin(pieces), std::end(pieces)));
  }
  EndLoop(SoundLoop);
  LogWarn("Exiting Thread 3/4");
}

static void MovementThread() {
  const double start = ClockNow();
  Timed pieces[] = {{NetworkPiece, start + 0.1, false}, {MovementPiece, start + 0.15, false},
                    {MoveBackendPiece, start + 0.3, false}, {SavePiece, start + 300, false}};
  Loop(MovementLoop, pieces);
  LogWarn("Exiting Thread 4/4");
}

int RunQuadCoreSystem() {
  LogInfo("Starting quad core threading system");
  std::thread threads[] = {StartThread(ParseThread, "parse"), StartThread(SoundThread, "sound"),
                           StartThread(MovementThread, "movement")};
  const double start = ClockNow();
  Timed pieces[] = {{GpuLinkPiece, start, true}, {RenderPiece, start + 0.01, true}};
  Loop(MainLoop, pieces);
  LogWarn("Exiting Main Thread");
  for (std::thread &t : threads) JoinThread(&t);
  return 1;
}

static void ParseAndSaveThread() {
  const double start = ClockNow();
  Timed pieces[] = {{ParsePiece, start + 0.1, true}, {SavePiece, start + 300, false}};
  Loop(ParseLoop, pieces);
  LogWarn("Exiting Thread 2/2");
}

int RunDualCoreSystem() {
  LogInfo("Starting dual core threading system");
  std::thread other = StartThread(ParseAndSaveThread, "parse");
  MusicTimer music = StartMusic();
  const double start = ClockNow();
  // The music timer stands between these two groups.
  Timed motion[] = {{NetworkPiece, start + 0.1, false}, {MovementPiece, start + 0.15, false}};
  Timed others[] = {{SoundUpdatesPiece, start + 0.1, false}, {MiscPiece, start + 0.05, false}, {OpsPiece, start + 0.4, false},
                    {MoveBackendPiece, start + 0.3, false},  {GpuLinkPiece, start, true},      {RenderPiece, start + 0.01, true}};
  while (!QuitRequested) {
    BeginPass(MainLoop);
    const double now = ClockNow();
    RunDue(std::begin(motion), std::end(motion), now);
    MusicTick(&music, now);
    RunDue(std::begin(others), std::end(others), now);
    if (QuitRequested) break;
    Nap(std::min(Earliest(std::begin(motion), std::end(motion)), Earliest(std::begin(others), std::end(others))));
  }
  EndLoop(MainLoop);
  LogWarn("Exiting Main Thread");
  JoinThread(&other);
  return 1;
}
