// Pictures of the game's blocks, painted with the game's own caches and colours. Run from the root of an installation.
#include <cstdio>
#include <cstring>

#include "sheets.h"
#include "stage.h"

int main(int argc, char **argv) {
  const bool joins = argc == 3 && std::strcmp(argv[1], "--joins") == 0;
  if (argc != 2 && !joins) {
    std::fprintf(stderr,
                 "usage: %s FILE.png          paint all components\n"
                 "       %s --joins FILE.png  paint what the rules of placing build of the joining families\n",
                 argv[0], argv[0]);
    return 2;
  }
  if (!LoadStage()) return 1;
  return (joins ? SheetOfJoins(argv[2]) : SheetOfComponents(argv[1])) ? 0 : 1;
}
