#include "support/ship_test.h"

#include <signal.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

void Drop(Ship *ship) {
  FreeShip(ship);
  delete ship;
}

Cells CellsOf(const Ship &ship) {
  Cells cells;
  ForEachChunk(ship, [&cells](Chunk &chunk, ChunkCells &found, CellAddress) {
    for (unsigned i = 0; i < CellsPerChunk; ++i) {
      const u64 head = found.heads[i].load();
      if (HeadState(head) != StateEmpty) cells[{CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i)}] = head;
    }
  });
  return cells;
}

u16 ComponentRow(u16 id) { return static_cast<u16>(FindComponent(id)); }
u16 MaterialRow(u16 id) { return static_cast<u16>(FindMaterial(id)); }

void ShipTest::SetUp() {
  LoadTables();
  UseTemporaryInstallation();
  LogInit();
  ship = NewTestShip();
  ship->fileStem = std::string("a");
}

int OnFullDisk(size_t room, const std::function<int()> &work) {
  const pid_t child = fork();
  if (child == 0) {
    const rlimit limit{room, room};
    signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
    _exit(work());
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status));
  return WEXITSTATUS(status);
}

int Kills() {
  const char *wanted = std::getenv("TARNVALE_KILLS");
  return wanted == nullptr ? 20 : std::atoi(wanted);
}

unsigned Killed(std::mt19937 *random, unsigned most, const std::function<void(unsigned turn)> &work) {
  static auto *count = static_cast<std::atomic<unsigned> *>(
      mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  *count = 0;
  const pid_t child = fork();
  if (child == 0)
    for (unsigned i = 0;; *count = ++i) work(i);
  usleep(static_cast<useconds_t>((*random)() % most));
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  return *count;
}
