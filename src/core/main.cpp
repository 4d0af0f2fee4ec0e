// Tarnvale: free flight and building in a world of blocks.
#include "core/startup.h"

int main(int argc, char **argv) { return StartGame(argc, argv); }
