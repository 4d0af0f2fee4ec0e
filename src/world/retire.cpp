// Ships that wait for their last readers.
#include "world/retire.h"

#include <algorithm>
#include <array>
#include <vector>

#include "platform/threads.h"

using PassCounts = std::array<u64, MaxLoops>;

namespace {

struct RetiredShip {
  Ship *ship;
  PassCounts passes;  // of all loops when it left the table; 0 for one that didn't run
};

}  // namespace

static std::atomic<u64> Passes[MaxLoops];    // passes begun; 0 while a loop doesn't run. Written by the loops' threads.
static std::vector<RetiredShip> Retired;     // world mutex
static std::atomic<size_t> Waiting{0};       // its length, for who only asks; written under the world mutex

void BeginPass(int loop) { Passes[loop].fetch_add(1, std::memory_order_acq_rel); }

void EndLoop(int loop) { Passes[loop].store(0, std::memory_order_release); }

void RetireShip(Ship *ship) {
  RetiredShip r{ship, {}};
  // Read by adding nothing: the loop's next pass begins behind this in the order of the counter, and so sees the table
  // without the ship.
  for (size_t loop = 0; loop < MaxLoops; ++loop) r.passes[loop] = Passes[loop].fetch_add(0, std::memory_order_acq_rel);
  Retired.push_back(r);
  Waiting = Retired.size();
}

static bool Unseen(const RetiredShip &r) {
  for (size_t loop = 0; loop < MaxLoops; ++loop) {
    const u64 now = Passes[loop].load(std::memory_order_acquire);
    if (now != 0 && now == r.passes[loop]) return false;
  }
  return true;
}

size_t RetiredCount() { return Waiting; }

static std::vector<RetiredShip> TakeUnseen() {
  const ScopedLock world(&WorldMutex);
  const auto unseen = std::stable_partition(Retired.begin(), Retired.end(), [](const RetiredShip &r) { return !Unseen(r); });
  const std::vector<RetiredShip> taken(unseen, Retired.end());
  Retired.erase(unseen, Retired.end());
  Waiting = Retired.size();
  return taken;
}

void SweepRetired() {
  if (Waiting == 0) return;
  for (const RetiredShip &r : TakeUnseen()) {
    FreeShip(r.ship);
    delete r.ship;
  }
}
