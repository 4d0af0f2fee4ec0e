// Mutexes exclude, and an order that could block two threads on each other is caught where it is made.
#include "platform/threads.h"

#include <gtest/gtest.h>

#include <vector>

TEST(Threads, AScopedLockExcludesAndATryLockGivesUp) {
  int counter = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&counter] {
      for (int i = 0; i < 10000; ++i) {
        ScopedLock world(&WorldMutex);
        ++counter;
      }
    });
  for (std::thread &t : threads) t.join();
  EXPECT_EQ(counter, 40000);
  ScopedLock world(&WorldMutex);
  bool taken = true;
  std::thread([&taken] { taken = TryLockMutex(&WorldMutex); }).join();
  EXPECT_FALSE(taken);
  EXPECT_TRUE(HoldsMutex(&WorldMutex));
}

#ifndef NDEBUG
TEST(ThreadsDeathTest, DebugBuildsAssertTheOrder) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  static Mutex leaf{MutexRank::Leaf, "leaf", {}}, save{MutexRank::Save, "save", {}};
  const struct {
    Mutex *held, *wanted;
    bool good;
  } cases[] = {
      {&WorldMutex, &HeatMutex, true},   {&WorldMutex, &LinkMutex, true},  {&MoveMutex, &WorldMutex, true},
      {&MoveMutex, &HeatMutex, true},    {&save, &WorldMutex, true},       {&WorldMutex, &leaf, true},
      {&HeatMutex, &leaf, true},         {&WorldMutex, &WorldMutex, false}, {&HeatMutex, &WorldMutex, false},
      {&LinkMutex, &WorldMutex, false},  {&WorldMutex, &MoveMutex, false}, {&HeatMutex, &LinkMutex, false},
      {&WorldMutex, &save, false},       {&leaf, &WorldMutex, false},
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
  LockMutex(&WorldMutex);
  EXPECT_TRUE(TryLockMutex(&MoveMutex)) << "inside world, move may be tried";
  UnlockMutex(&MoveMutex);
  EXPECT_FALSE(HoldsMutex(&MoveMutex));
  UnlockMutex(&WorldMutex);
}
#endif
