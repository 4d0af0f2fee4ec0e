// Locks that end with the process, so that nothing has to be cleared away after a crash.
#include "platform/installation.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace {

struct HeldFolder {
  int saves = -1, cache = -1;
};

bool IsBusy(int descriptor, int how) { return flock(descriptor, how | LOCK_NB) != 0 && errno == EWOULDBLOCK; }

void Release(const HeldFolder &held) {
  for (const int descriptor : {held.saves, held.cache})
    if (descriptor >= 0) close(descriptor);
}

// False, with nothing held, when another one has it.
bool Take(HeldFolder *held) {
  held->saves = open("saves", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (held->saves < 0) return true;
  held->cache = open("cache", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const bool alone = held->cache < 0;  // then the one folder has to do for both
  const bool busy = IsBusy(held->saves, alone ? LOCK_EX : LOCK_SH) || (!alone && IsBusy(held->cache, LOCK_EX));
  if (busy) Release(*held);
  return !busy;
}

}  // namespace

Hold HoldInstallation() {
  HeldFolder held;  // the descriptors stay open
  return Take(&held) ? Hold::Ours : Hold::Taken;
}

bool OthersHoldInstallation() {
  HeldFolder held;
  if (!Take(&held)) return true;
  Release(held);
  return false;
}
