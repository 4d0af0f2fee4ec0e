// An order that could block two threads on each other is caught where it is made.
#include "platform/threads.h"

#include <gtest/gtest.h>

#ifndef NDEBUG
TEST(ThreadsDeathTest, DebugBuildsAssertTheOrder) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static Mutex leaf{MutexRank::Leaf, "leaf", {}}, save{MutexRank::Save, "save", {}};
  const struct { Mutex *held, *wanted; bool good; } cases[] = {
      {&MoveMutex, &WorldMutex, true},  {&WorldMutex, &HeatMutex, true},   {&save, &WorldMutex, true},
      {&HeatMutex, &leaf, true},        {&WorldMutex, &WorldMutex, false}, {&HeatMutex, &WorldMutex, false},
      {&WorldMutex, &MoveMutex, false}, {&HeatMutex, &LinkMutex, false},   {&WorldMutex, &save, false},
  };
  for (const auto &c : cases) {
    const auto both = [&c] {
      LockMutex(c.held);
      LockMutex(c.wanted);
      std::exit(0);
    };
    if (c.good) EXPECT_EXIT(both(), testing::ExitedWithCode(0), "") << c.held->name << " then " << c.wanted->name;
    else EXPECT_DEATH(both(), "locks a mutex|out of order") << c.held->name << " then " << c.wanted->name;
  }
  ScopedLock world(&WorldMutex);
  EXPECT_TRUE(TryLockMutex(&MoveMutex)) << "inside world, move may be tried";
  UnlockMutex(&MoveMutex);
}
#endif
