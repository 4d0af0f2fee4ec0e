// Makes the game's content, or checks it. Run from the root of an installation.
#include "check.h"
#include "components.h"
#include "gui_pictures.h"
#include "language.h"
#include "materials.h"
#include "sound_effects.h"
#include "sound_music.h"
#include "stars.h"

#include <cstdio>
#include <cstring>

static bool MakeContent() {
  return WriteMaterials() && WriteComponents() && WriteLanguages() && WriteStars() && WriteGuiPictures();
}

int main(int argc, char **argv) {
  if (argc == 1) return MakeContent() ? 0 : 1;
  if (argc == 2 && std::strcmp(argv[1], "--check") == 0) return CheckContent() == 0 ? 0 : 1;
  if (argc == 2 && std::strcmp(argv[1], "sounds") == 0) return WriteSounds() ? 0 : 1;
  if (argc >= 2 && argc <= 3 && std::strcmp(argv[1], "music") == 0) return WriteMusic(argc == 3 ? argv[2] : nullptr) ? 0 : 1;
  std::fprintf(stderr,
               "usage: %s          make the tables, shapes, stars and texts of the game\n"
               "       %s sounds   make its sounds\n"
               "       %s music    make its music; with a name behind it, the piece of that name\n"
               "       %s --check  look for faults in all of it\n",
               argv[0], argv[0], argv[0], argv[0]);
  return 2;
}
