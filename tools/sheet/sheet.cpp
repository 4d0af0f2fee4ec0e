// Pictures of the game's blocks, painted with the game's own caches and colours. Run from the root of an installation.
#include <cstdio>
#include <cstring>

#include "sheets.h"
#include "stage.h"

static int Usage(const char *tool) {
  std::fprintf(stderr,
               "usage: %s FILE.png              paint all components\n"
               "       %s --joins FILE.png      paint what the rules of placing build of the joining families\n"
               "       %s --ship NAME FILE.png  paint saves/NAME.sts\n",
               tool, tool, tool);
  return 2;
}

int main(int argc, char **argv) {
  const bool joins = argc == 3 && std::strcmp(argv[1], "--joins") == 0;
  const bool ship = argc == 4 && std::strcmp(argv[1], "--ship") == 0;
  if (argc != 2 && !joins && !ship) return Usage(argv[0]);
  if (!LoadStage()) return 1;
  const bool painted = ship ? SheetOfShip(argv[2], argv[3]) : joins ? SheetOfJoins(argv[2]) : SheetOfComponents(argv[1]);
  return painted && NothingMissing() ? 0 : 1;
}
