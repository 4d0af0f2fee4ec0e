// Locks that end with the process, so that nothing has to be cleared away after a crash.
#include "platform/installation.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace {

constexpr int ClaimTries = 10;
constexpr useconds_t ClaimPause = 10000;  // microseconds between two of them

struct HeldFolder {
  int saves = -1, cache = -1;
};

bool IsBusy(int descriptor, int how) { return flock(descriptor, how | LOCK_NB) != 0 && errno == EWOULDBLOCK; }

void Release(const HeldFolder &held) {
  for (const int descriptor : {held.saves, held.cache})
    if (descriptor >= 0) close(descriptor);
}

// how: LOCK_EX for a game of this folder, LOCK_SH for one that only looks and is in no other looker's way. False, with nothing held,
// when another one has it.
bool Take(HeldFolder *held, int how) {
  held->saves = open("saves", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (held->saves < 0) return true;
  held->cache = open("cache", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const bool alone = held->cache < 0;  // then the one folder has to do for both
  const bool busy = IsBusy(held->saves, alone ? how : LOCK_SH) || (!alone && IsBusy(held->cache, how));
  if (busy) Release(*held);
  return !busy;
}

}  // namespace

Hold HoldInstallation() {
  HeldFolder held;  // the descriptors stay open
  for (int i = 0; i < ClaimTries; ++i) {  // one that only looks is gone in a moment
    if (Take(&held, LOCK_EX)) return Hold::Ours;
    usleep(ClaimPause);
  }
  return Hold::Taken;
}

bool OthersHoldInstallation() {
  HeldFolder held;
  if (!Take(&held, LOCK_SH)) return true;
  Release(held);
  return false;
}
