// Tarnvale: free flight and building in a world of blocks.
#include "core/log.h"
#include "core/startup.h"

int main(int argc, char **argv) {
  GuardStreams();
  const int result = StartGame(argc, argv);
  TellRepeats(true);
  return result;
}
