// Looks for faults in the sounds and the music.
#include "check_parts.h"
#include "sound_effects.h"
#include "sound_ogg.h"

#include <algorithm>
#include <filesystem>

constexpr size_t MostSongs = 32;

static void CheckOgg(const std::string &path) {
  OggHead head{};
  if (!std::filesystem::exists(path)) return Fault(path, 0, "is missing");
  if (!ReadOggHead(path, &head)) return Fault(path, 0, "isn't an Ogg Vorbis file");
  if (head.channels > 2) Fault(path, 0, "has more than two channels");
  if (head.rate != SampleRate) Fault(path, 0, "has " + std::to_string(head.rate) + " samples a second, not 44100");
}

static void CheckMusic(const std::string &folder) {
  std::vector<std::string> songs;
  std::error_code fault;
  for (const auto &entry : std::filesystem::directory_iterator(folder, fault)) songs.push_back(entry.path().string());
  std::sort(songs.begin(), songs.end());
  for (const std::string &song : songs) CheckOgg(song);
  if (songs.empty()) Fault(folder, 0, "holds no song");
  if (songs.size() > MostSongs) Fault(folder, 0, "holds more than 32 songs");
}

void CheckSounds() {
  for (const std::string &path : SoundPaths()) CheckOgg(path);
  CheckMusic("config/audio/music");
}
