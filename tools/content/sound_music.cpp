// Which pieces there are.
#include "sound_music.h"

#include "sound_ogg.h"

#include <cstring>
#include <string>

constexpr float Quality = 0.2f;  // about 96 kbit/s

namespace {

struct Piece {
  const char *file;
  const char *title;
  Stereo (*make)();
};

const Piece pieces[] = {
    {"Ashenfold-Tidewheel", "Ashenfold Tidewheel", AshenfoldTidewheel},
    {"Quietrock-Lullaby", "Quietrock Lullaby", QuietrockLullaby},
    {"Long-Way-Round", "Long Way Round", LongWayRound},
    {"Nightshift-Hydroponics", "Nightshift, Hydroponics", NightshiftHydroponics},
    {"Last-Ferry-Out", "Last Ferry Out", LastFerryOut},
};

}  // namespace

bool WriteMusic(const char *only) {
  bool found = false;
  for (const Piece &piece : pieces) {
    if (only != nullptr && std::strcmp(only, piece.file) != 0) continue;
    found = true;
    const Stereo record = piece.make();
    const std::string path = std::string("config/audio/music/") + piece.file + ".ogg";
    if (!WriteOgg(path, {&record.left, &record.right}, Quality, piece.title)) return false;
  }
  return found;
}
