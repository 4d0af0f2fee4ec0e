// Threads and non-recursive mutexes with a fixed order. Outermost first: world, then heat or link. Move may be held
// while world is taken; inside world, move is only ever try-locked. A save in progress is outside world, a leaf inside
// everything. Debug builds assert this at every blocking lock.
#pragma once

#include <mutex>
#include <thread>

#include "core/types.h"

enum class MutexRank : u8 { Save, World, Heat, Move, Link, Leaf };

struct Mutex {
  MutexRank rank = MutexRank::Leaf;
  const char *name = "";
  std::mutex mutex;
};

void LockMutex(Mutex *m);
bool TryLockMutex(Mutex *m);
void UnlockMutex(Mutex *m);
bool HoldsMutex(const Mutex *m);  // Whether the calling thread holds it; always true in release builds (for asserts only).

// Holds a mutex for a scope. The only type with a destructor of its own: a forgotten unlock stops the game.
struct ScopedLock {
  explicit ScopedLock(Mutex *m) : held(m) { LockMutex(m); }
  ~ScopedLock() { UnlockMutex(held); }
  ScopedLock(const ScopedLock &) = delete;
  ScopedLock &operator=(const ScopedLock &) = delete;
  Mutex *held;
};

// The four mutexes of the game. Created at start-up (they are static: creating names them and gives the rank).
extern Mutex WorldMutex;  // the block tree, the ship table, debris, light lists and caches
extern Mutex HeatMutex;   // work-list counters and tempUnstable bits
extern Mutex MoveMutex;   // the player's place and speed, the current ship while it changes
extern Mutex LinkMutex;   // the published half of the voxel list

void JoinThread(std::thread *t);  // Waits for its end; nothing for one that never started.
std::thread StartThread(void (*body)(), const char *name);  // name: at most 15 letters, shown by the system's tools.
