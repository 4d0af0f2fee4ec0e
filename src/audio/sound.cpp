// The device and the slots: what each is filled with at start-up, and how one is played.
#include "audio/sound.h"

#include <AL/al.h>
#include <AL/alure.h>

#include <bitset>
#include <cstdlib>
#include <string>

#include "audio/slots.h"
#include "content/materials.h"
#include "content/options.h"
#include "core/log.h"

constexpr float StreamInterval = 0.1f;   // seconds between two looks of the library's thread at songs and ended sounds

namespace {

// One file and the slots that play it.
struct SlotLine {
  int first, last;
  const char *file;
  bool looping = false;
};

}  // namespace

constexpr SlotLine SlotLines[] = {
    {2, 2, "impact.ogg"},
    {SlotSwitch, SlotSwitch, "switch.ogg"},
    {SlotBreathing, SlotBreathing, "slowbreathing.ogg", true},
    {5, 5, "fastbreathing.ogg", true},
    {6, 6, "heart1.ogg", true},
    {7, 7, "heart2.ogg", true},
    {8, 8, "heart3.ogg", true},
    {9, 9, "heart4.ogg", true},
    {10, 10, "heart5.ogg", true},
    {11, 11, "laser1.ogg"},
    {12, 12, "laser2.ogg"},
    {13, 16, "laser3.ogg"},
    {17, 22, "placesoft.ogg"},
    {23, 28, "placemedium.ogg"},
    {29, 34, "placehard.ogg"},
    {35, 44, "placemetal.ogg"},
    {45, 45, "suitjet1.ogg"},
    {46, 46, "suitjet2.ogg", true},
    {47, 47, "suitjet3.ogg"},
    {48, 49, "airlock1.ogg"},
    {50, 51, "airlock2.ogg"},
    {SlotNo, SlotLastNo, "no.ogg"},
    {58, 59, "organicairlock.ogg"},
};

namespace {

// The slots that sound when a block of these classes is placed.
struct PlaceGroup {
  const char *classes[4];  // soundClass words
  int first, last;
  float gain;
  const char *exhausted;
};

}  // namespace

constexpr PlaceGroup PlaceGroups[] = {
    {{"soft", "organic"}, 17, 22, 0.4f, "Ran out of SoftPlace sounds"},
    {{"medium", "plastic"}, 23, 28, 0.5f, "Ran out of MediumPlace sounds"},
    {{"hard", "ceramic", "stone", "crystal"}, 29, 34, 0.6f, "Ran out of HardPlace sounds"},
    {{"metal", "magnetic", "tech"}, 35, 44, 0.6f, "Ran out of MetalPlace sounds"},
};

std::atomic<bool> SoundOff{true};
std::atomic<bool> MusicOff{true};
Mutex SoundMutex{MutexRank::Leaf, "sound", {}};
u32 *SoundSlots = nullptr;

void SoundEnded(void *, u32 source) {
  if (SongPlaying && source == SoundSlots[SlotMusic]) SongPlaying = false;
}

void SetSource(int slot, int property, float value) {
  alSourcef(SoundSlots[slot], property, value);
  alGetError();  // a fault left standing would make the next play fail
}

static bool IsSlot(int slot) { return slot >= 0 && slot < SlotCount; }

// All that a machine without a sound device can say about it.
static void TellDevices() {
  int count = 0;
  const char **names = alureGetDeviceNames(AL_TRUE, &count);
  LogInt("Sound Devices", count);
  for (int i = 0; names != nullptr && i < count; ++i) Print("Audio dev %i: %s \n", i, names[i]);
  if (names != nullptr) alureFreeDeviceNames(names);
}

static bool AllocateSlots() {
  if (SoundSlots == nullptr) SoundSlots = static_cast<u32 *>(std::calloc(SlotCount, sizeof *SoundSlots));
  return SoundSlots != nullptr;
}

static void GenerateSources() {
  alGetError();
  alGenSources(SlotCount, SoundSlots);
  const int fault = alGetError();
  if (fault == AL_NO_ERROR) return;
  SoundOff = true;
  LogWarn("Unable to generate sources");
  LogInt("ALErr:", fault);
}

static bool LoadLine(const SlotLine &line) {
  const std::string path = std::string("config/audio/sounds/") + line.file;
  const u32 buffer = alureCreateBufferFromFile(path.c_str());
  if (buffer == AL_NONE) return LogWarn("Could not make audio buffer from file") != 0;
  for (int slot = line.first; slot <= line.last; ++slot) {
    alSourcei(SoundSlots[slot], AL_BUFFER, static_cast<int>(buffer));
    alSourcei(SoundSlots[slot], AL_LOOPING, line.looping ? AL_TRUE : AL_FALSE);
  }
  alGetError();
  return true;
}

static bool LoadSounds() {
  for (const SlotLine &line : SlotLines)
    if (!LoadLine(line)) return false;
  return true;
}

// Everything that needs the open device. A fault silences the game, and the next steps are looked at all the same.
static void FillDevice() {
  GenerateSources();
  if (!alureUpdateInterval(StreamInterval)) {
    SoundOff = true;
    LogWarn("Unable to set up sound update thread");
  }
  if (!LoadSounds()) {
    SoundOff = true;
    LogWarn("Could not load audio files");
  }
  MusicOff = !ListSongs();
  if (MusicOff) LogWarn("Could not load music files");
}

bool InitSound() {
  SongPlaying = false;
  SoundOff = Options.DisableSound.load();
  if (SoundOff) return true;
  if (!alureInitDevice(nullptr, nullptr)) {
    TellDevices();
    SoundOff = true;
    return LogWarn("Could not initialize sound device") != 0;
  }
  if (!AllocateSlots()) {
    SoundOff = true;
    return LogError("Unable to allocate memory for SoundArray") != 0;
  }
  FillDevice();
  PlaySlotAt(SlotBreathing, 1.0f, BreathingGain);
  return true;
}

// Sources that still play would be looked at by the library's thread while they go.
static void EndSources() {
  alureUpdateInterval(0);
  ReleaseSong();
  for (int slot = 0; slot < SlotCount; ++slot) alureStopSource(SoundSlots[slot], AL_FALSE);
  alGetError();
  alDeleteSources(SlotCount, SoundSlots);
  if (alGetError() != AL_NO_ERROR) LogWarn("Cannot selete sources");
}

void ShutdownSound() {
  const ScopedLock guard(&SoundMutex);
  if (!SoundOff.exchange(true)) EndSources();
  if (!alureShutdownDevice()) LogWarn("Cannot stop sound device");
}

// What waits for the end of a song's start; SoundMutex. A stop goes before a play of the same slot.
static bool SlotsHeld = false;
static std::bitset<SlotCount> HeldPlays, HeldStops;

// SoundMutex held.
static bool Plays(int slot) {
  ALint state = AL_STOPPED;
  alGetSourcei(SoundSlots[slot], AL_SOURCE_STATE, &state);
  return state == AL_PLAYING;
}

// SoundMutex held. False when the slot is busy.
static bool StartSlot(int slot) {
  if (!SlotsHeld) return alurePlaySource(SoundSlots[slot], SoundEnded, nullptr);
  const size_t s = static_cast<size_t>(slot);
  if (HeldPlays[s] || (Plays(slot) && !HeldStops[s])) return false;
  HeldPlays.set(s);
  return true;
}

// SoundMutex held.
static bool EndSlot(int slot) {
  if (!SlotsHeld) return alureStopSource(SoundSlots[slot], AL_TRUE);
  HeldStops.set(static_cast<size_t>(slot));
  HeldPlays.reset(static_cast<size_t>(slot));
  return true;
}

void HoldSlots(bool hold) {
  const ScopedLock guard(&SoundMutex);
  SlotsHeld = hold;
  for (int slot = 0; slot < SlotCount && !hold; ++slot) {
    if (HeldStops[static_cast<size_t>(slot)]) EndSlot(slot);
    if (HeldPlays[static_cast<size_t>(slot)]) StartSlot(slot);
  }
  HeldPlays.reset();
  HeldStops.reset();
}

bool PlaySlot(int slot) {
  if (SoundOff || !IsSlot(slot)) return false;
  const ScopedLock guard(&SoundMutex);
  return StartSlot(slot);
}

bool PlaySlotAt(int slot, float pitch, float gain) {
  if (SoundOff || !IsSlot(slot)) return false;
  const ScopedLock guard(&SoundMutex);
  SetSource(slot, AL_GAIN, gain * Options.SoundVolume);
  SetSource(slot, AL_PITCH, pitch);
  return StartSlot(slot);
}

bool StopSlot(int slot) {
  if (SoundOff || !IsSlot(slot)) return false;
  const ScopedLock guard(&SoundMutex);
  if (EndSlot(slot)) return true;
  return LogWarn("Cannot stop sound") != 0;
}

bool SetSlotGain(int slot, float gain) {
  if (SoundOff || !IsSlot(slot)) return false;
  const ScopedLock guard(&SoundMutex);
  SetSource(slot, AL_GAIN, gain * Options.SoundVolume);
  return true;
}

static const PlaceGroup *GroupOf(const std::string &soundClass) {
  for (const PlaceGroup &group : PlaceGroups)
    for (const char *word : group.classes)
      if (word != nullptr && soundClass == word) return &group;
  return nullptr;
}

bool PlaceSound(u16 material) {
  if (SoundOff || material >= Materials.size()) return false;
  const PlaceGroup *group = GroupOf(Materials[material].soundClass);
  if (group == nullptr) return true;
  for (int slot = group->first; slot <= group->last; ++slot)
    if (PlaySlotAt(slot, 1.0f, group->gain)) return true;
  LogWarn(group->exhausted);
  return true;
}
