// Which file holds which sound, and how loud it is.
#include "sound_effects.h"

#include "sound_ogg.h"

constexpr float Quality = 0.5f;
constexpr float AsMade = 0;    // the maker has set the level itself
constexpr float Lead = 0.002f;  // of silence, so that the coder's echo of an attack has room before it

namespace {

// Levels are chosen with the gain in mind that the game plays the file at: what is heard all day is quiet, and the four
// ways to put down a block are equally loud.
struct Effect {
  const char *file;
  const char *title;
  Samples (*make)();
  float loudness;  // dB, as Loudness has it
};

const Effect effects[] = {
    {"impact", "A knock against the suit", Impact, -17},
    {"switch", "A switch", Switch, -27},
    {"slowbreathing", "Breathing at ease", SlowBreathing, -13},
    {"fastbreathing", "Breathing hard", FastBreathing, -13},
    {"heart1", "A heart at rest", [] { return HeartBeat(1); }, -21},
    {"heart2", "A heart awake", [] { return HeartBeat(2); }, -20},
    {"heart3", "A heart at work", [] { return HeartBeat(3); }, -19},
    {"heart4", "A heart in fear", [] { return HeartBeat(4); }, -18},
    {"heart5", "A heart at its limit", [] { return HeartBeat(5); }, -17},
    {"laser1", "A long beam", [] { return Laser(1); }, -21},
    {"laser2", "A heavy beam", [] { return Laser(2); }, -20},
    {"laser3", "A short pulse", [] { return Laser(3); }, -21},
    {"placesoft", "Something soft is put down", PlaceSoft, -19},
    {"placemedium", "Something light is put down", PlaceMedium, -20},
    {"placehard", "Something hard is put down", PlaceHard, -20.5f},
    {"placemetal", "Metal is put down", PlaceMetal, -20.5f},
    {"suitjet1", "The jets open", JetStart, AsMade},
    {"suitjet2", "The jets", JetLoop, AsMade},
    {"suitjet3", "The jets close", JetStop, AsMade},
    {"airlock1", "A clamp, sixteen times slowed", Clamp, AsMade},
    {"airlock2", "An airlock", Airlock, -19},
    {"no", "No", Refusal, -24},
    {"organicairlock", "An airlock that grew", OrganicAirlock, -19},
};

}  // namespace

static Samples Made(const Effect &effect) {
  Samples sound = effect.make();
  if (effect.loudness == AsMade) return sound;
  SetLoudness(&sound, effect.loudness);
  Samples led = Silence(Lead);
  Mix(&led, sound, Lead);
  return led;
}

static std::string PathOf(const Effect &effect) {
  return std::string("config/audio/sounds/") + effect.file + ".ogg";
}

bool WriteSounds() {
  for (const Effect &effect : effects) {
    const Samples sound = Made(effect);
    if (!WriteOgg(PathOf(effect), {&sound}, Quality, effect.title)) return false;
  }
  return true;
}

std::vector<std::string> SoundPaths() {
  std::vector<std::string> paths;
  for (const Effect &effect : effects) paths.push_back(PathOf(effect));
  return paths;
}
