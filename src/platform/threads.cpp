// Mutexes that know their order, and the start of a named thread. Debug builds keep a list for each thread of what it
// holds, so that an order that could block two threads on each other stops the game where it is made, not where it hurts.
#include "platform/threads.h"

#include <pthread.h>

#include <cassert>
#include <system_error>

#include "core/log.h"

Mutex WorldMutex{MutexRank::World, "world", {}};
Mutex HeatMutex{MutexRank::Heat, "heat", {}};
Mutex MoveMutex{MutexRank::Move, "move", {}};
Mutex LinkMutex{MutexRank::Link, "link", {}};

#ifdef NDEBUG

static void NoteBlockingLock(const Mutex *) {}
static void NoteHeld(const Mutex *) {}
static void NoteReleased(const Mutex *) {}
bool HoldsMutex(const Mutex *) { return true; }

#else

constexpr int MaxHeld = 8;
static thread_local const Mutex *Held[MaxHeld];
static thread_local int HeldCount = 0;

constexpr unsigned Bit(MutexRank r) { return 1u << static_cast<unsigned>(r); }

// The ranks of which a thread must hold none when it waits for a mutex of the given rank.
static unsigned ForbiddenOutside(MutexRank rank) {
  constexpr unsigned inner = Bit(MutexRank::Heat) | Bit(MutexRank::Link) | Bit(MutexRank::Leaf);
  switch (rank) {
    case MutexRank::Save:
    case MutexRank::Move: return inner | Bit(MutexRank::World) | Bit(rank);
    case MutexRank::World: return inner | Bit(rank);
    case MutexRank::Heat:
    case MutexRank::Link: return inner;
    case MutexRank::Leaf: return Bit(rank);
  }
  return 0;
}

static void NoteBlockingLock(const Mutex *m) {
  for (int i = 0; i < HeldCount; ++i) {
    assert(Held[i] != m && "a thread locks a mutex that it holds");
    assert((ForbiddenOutside(m->rank) & Bit(Held[i]->rank)) == 0 && "mutexes locked out of order");
  }
}

static void NoteHeld(const Mutex *m) {
  assert(HeldCount < MaxHeld);
  Held[HeldCount++] = m;
}

static void NoteReleased(const Mutex *m) {
  for (int i = HeldCount - 1; i >= 0; --i) {
    if (Held[i] != m) continue;
    Held[i] = Held[--HeldCount];
    return;
  }
  assert(false && "a thread unlocks a mutex that it doesn't hold");
}

bool HoldsMutex(const Mutex *m) {
  for (int i = 0; i < HeldCount; ++i)
    if (Held[i] == m) return true;
  return false;
}

#endif

void LockMutex(Mutex *m) {
  NoteBlockingLock(m);
  m->mutex.lock();
  NoteHeld(m);
}

bool TryLockMutex(Mutex *m) {
  if (!m->mutex.try_lock()) return false;
  NoteHeld(m);
  return true;
}

void UnlockMutex(Mutex *m) {
  NoteReleased(m);
  m->mutex.unlock();
}

std::thread StartThread(void (*body)(), const char *name) {
  try {
    std::thread thread(body);
    pthread_setname_np(thread.native_handle(), name);
    return thread;
  } catch (const std::system_error &) {
    LogError("Could not start a thread");
    return {};
  }
}

void JoinThread(std::thread *t) {
  if (t->joinable()) t->join();
}
