// Makes the game's content, or checks it. Run from the root of an installation.
#include "check.h"
#include "components.h"
#include "gui_pictures.h"
#include "language.h"
#include "materials.h"
#include "stars.h"

#include <cstdio>
#include <cstring>

static bool MakeContent() {
  return WriteMaterials() && WriteComponents() && WriteLanguages() && WriteStars() && WriteGuiPictures();
}

int main(int argc, char **argv) {
  if (argc == 1) return MakeContent() ? 0 : 1;
  if (argc == 2 && std::strcmp(argv[1], "--check") == 0) return CheckContent() == 0 ? 0 : 1;
  std::fprintf(stderr,
               "usage: %s          make the tables, shapes, stars and texts of the game\n"
               "       %s --check  look for faults in them\n",
               argv[0], argv[0]);
  return 2;
}
