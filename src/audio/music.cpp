// The songs: which files there are, and the one that is streamed on the music slot.
#include <AL/al.h>
#include <AL/alure.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <system_error>

#include "audio/slots.h"
#include "content/options.h"
#include "core/log.h"

constexpr const char *MusicFolder = "config/audio/music", *OpeningSong = "Ashenfold-Tidewheel.ogg";
constexpr u16 MaxSongs = 32;
constexpr float QuietestMusic = 0.2f;  // below it no song is started
constexpr float MusicGain = 0.5f;
constexpr int ChunkMicroseconds = 2500000, ChunksInFlight = 3;

std::atomic<i8> FirstSong{-1};
std::atomic<bool> SongPlaying{false};

static std::string SongPaths[MaxSongs];  // set by ListSongs, constant while the threads run
static u16 SongCount = 0;                // likewise
static int LastSong = 0;                 // index of the song played last; the music timer's thread
static alureStream *SongStream = nullptr;  // the music timer's thread, and the main thread once the others have ended

static void AddSong(const std::string &name) {
  if (name == OpeningSong) FirstSong = static_cast<i8>(SongCount);
  SongPaths[SongCount++] = std::string(MusicFolder) + "/" + name;
}

bool ListSongs() {
  SongCount = 0;
  FirstSong = -1;
  LastSong = 0;
  std::error_code fault;
  std::filesystem::directory_iterator entry(MusicFolder, fault);
  if (fault) return LogError("Cannot open music directory") != 0;
  alureStreamSizeIsMicroSec(AL_TRUE);
  for (; !fault && entry != std::filesystem::directory_iterator(); entry.increment(fault)) {
    if (SongCount == MaxSongs) {
      LogWarn("There are more than 32 songs, I'll leave the others out");
      break;
    }
    const std::string name = entry->path().filename().string();
    if (name[0] != '.' && entry->is_regular_file(fault)) AddSong(name);  // a pipe would never answer
  }
  return SongCount > 0;
}

void ReleaseSong() {
  if (SongStream != nullptr) alureDestroyStream(SongStream, 0, nullptr);
  SongStream = nullptr;
}

static int AnyOtherSong() {
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  int index = std::rand() % SongCount;
  while (SongCount > 1 && index == LastSong) index = std::rand() % SongCount;
  return index;
}

static u16 SongSeconds() {
  const int frequency = std::max(alureGetStreamFrequency(SongStream), 1);
  return static_cast<u16>(std::clamp<i64>(alureGetStreamLength(SongStream) / frequency, 0, 65535));
}

// Streams the file on the music slot. False with the reason logged. To open the file and to decode its first seconds takes up
// to 20 ms, so SoundMutex is held for the gain alone: the stream is this thread's, and the other slots' calls wait for nothing.
static bool StartSong(const char *path) {
  ReleaseSong();
  SongStream = alureCreateStreamFromFile(path, ChunkMicroseconds, 0, nullptr);
  if (SongStream == nullptr) {
    Print("%s: %s\n", path, alureGetErrorString());
    return LogError("Cannot stream song") != 0;
  }
  SetMusicGain();
  SongPlaying = true;
  HoldSlots(true);
  const bool plays = alurePlaySourceStream(SoundSlots[SlotMusic], SongStream, ChunksInFlight, 0, SoundEnded, nullptr);
  HoldSlots(false);
  if (plays) return true;
  SongPlaying = false;
  return LogError("Cannot stream song for unknown reason") != 0;
}

u16 PlaySong(int index) {
  if (SoundOff || MusicOff || Options.MusicVolume < QuietestMusic || index >= SongCount) return 0;
  LastSong = index < 0 ? AnyOtherSong() : index;
  LogInt("Playing song", LastSong);
  return StartSong(SongPaths[LastSong].c_str()) ? SongSeconds() : u16{0};
}

bool SetMusicGain() {
  if (SoundOff) return false;
  const ScopedLock guard(&SoundMutex);
  SetSource(SlotMusic, AL_GAIN, Options.MusicVolume * MusicGain);
  return true;
}
