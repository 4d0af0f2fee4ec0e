// The instruments of the music.
#include "sound_voices.h"

#include "noise.h"

#include <algorithm>
#include <array>
#include <cmath>

constexpr size_t TableLength = 2048;
constexpr float HighestPartial = 8000;  // hertz
constexpr size_t ControlStep = 32;      // samples between two looks at what changes slowly

namespace {

using Table = std::array<float, TableLength + 1>;  // one period, and its first sample once more

// How a held note of several strings or voices is made.
struct Ensemble {
  float darkTilt, brightTilt;  // fall of the partials: 1/n to this power
  float even;                  // strength of the even partials
  float attack, release;       // seconds
  float cents;                 // how far the voices lie from one another
  float vibratoHz, vibrato;    // share of the pitch
  const float (*formants)[3];  // hertz, width, gain; three of them, or null
};

constexpr float vowel[3][3] = {{480, 160, 1.0f}, {900, 220, 0.6f}, {2500, 500, 0.12f}};

constexpr Ensemble warmStrings{2.3f, 1.45f, 1.0f, 1.7f, 2.6f, 9, 0.2f, 0.0012f, nullptr};
constexpr Ensemble reeds{1.9f, 1.25f, 0.35f, 0.9f, 1.6f, 5, 0.35f, 0.0008f, nullptr};
constexpr Ensemble singers{1.3f, 0.9f, 1.0f, 1.3f, 2.2f, 12, 4.7f, 0.0028f, vowel};
constexpr Ensemble oneBow{2.0f, 1.4f, 0.9f, 0.35f, 0.9f, 2.5f, 4.9f, 0.0042f, nullptr};

}  // namespace

static float FormantGain(const float (*formants)[3], float hz) {
  if (formants == nullptr) return 1;
  float gain = 0.03f;
  for (int i = 0; i < 3; i++) {
    const float off = (hz - formants[i][0]) / formants[i][1];
    gain += formants[i][2] / (1 + off * off);
  }
  return gain;
}

// One period with the partials of an ensemble; its mean power is that of a sine of 1.
static Table MakeTable(const Ensemble &e, float tilt, float hz) {
  Table table{};
  float power = 0;
  for (int n = 1; n <= 40 && static_cast<float>(n) * hz < HighestPartial; n++) {
    const float order = static_cast<float>(n);
    const float gain = std::pow(order, -tilt) * (n % 2 == 0 ? e.even : 1) * FormantGain(e.formants, order * hz);
    power += gain * gain;
    const float phase = order * order * 0.37f;  // spread, so that the partials don't peak together
    for (size_t i = 0; i <= TableLength; i++) {
      table[i] += gain * std::sin(2 * Pi * order * static_cast<float>(i) / TableLength + phase);
    }
  }
  for (float &s : table) s /= std::sqrt(power);
  return table;
}

static float Read(const Table &table, double turn) {
  const double place = turn * TableLength;
  const size_t at = static_cast<size_t>(place);
  const float part = static_cast<float>(place - static_cast<double>(at));
  return table[at] + (table[at + 1] - table[at]) * part;
}

// Cosine ramps up and down.
static float Held(const Ensemble &e, float t, float seconds) {
  const float attack = std::min(e.attack, seconds * 0.6f);
  float level = t < attack ? 0.5f - 0.5f * std::cos(Pi * t / attack) : 1;
  if (t > seconds) level *= 0.5f + 0.5f * std::cos(Pi * std::min(1.0f, (t - seconds) / e.release));
  return level;
}

// Adds one string of an ensemble.
static void AddString(Samples *note, const Ensemble &e, const Table &dark, const Table &bright, float hz, float seconds, float loud,
                      Dice *dice, float cents) {
  double turn = static_cast<double>(Roll(dice));
  const float drift = RollBetween(dice, 0, 6.28f), pace = e.vibratoHz * RollBetween(dice, 0.85f, 1.15f);
  const float swell = RollBetween(dice, 0, 6.28f), own = hz * std::pow(2.0f, cents / 1200);
  float level = 0, light = 0;
  double step = 0;
  for (size_t i = 0; i < note->size(); i++) {
    if (i % ControlStep == 0) {
      const float t = static_cast<float>(i) / SampleRate;
      level = Held(e, t, seconds);
      light = std::clamp(loud * level * (0.55f + 0.25f * std::sin(2 * Pi * 0.09f * t + swell)), 0.0f, 1.0f);
      const float grown = std::min(1.0f, t / 1.2f);  // a vibrato comes late
      step = static_cast<double>(own * (1 + e.vibrato * grown * std::sin(2 * Pi * pace * t + drift)) / SampleRate);
    }
    const float low = Read(dark, turn);
    (*note)[i] += level * (low + light * (Read(bright, turn) - low));
    turn += step;
    if (turn >= 1) turn -= 1;
  }
}

static Samples Hold(const Ensemble &e, int strings, float hz, float seconds, float loud, uint32_t seed) {
  Samples note = Silence(seconds + e.release);
  const Table dark = MakeTable(e, e.darkTilt, hz), bright = MakeTable(e, e.brightTilt, hz);
  Dice dice{seed * 2654435761U + 17U};
  for (int s = 0; s < strings; s++) {
    const float place = strings == 1 ? 0 : 2 * static_cast<float>(s) / static_cast<float>(strings - 1) - 1;
    AddString(&note, e, dark, bright, hz, seconds, loud, &dice, e.cents * place + RollBetween(&dice, -1, 1));
  }
  Scale(&note, loud / std::sqrt(static_cast<float>(strings)));
  return note;
}

Samples WarmPad(float hz, float seconds, float loud, uint32_t seed) {
  return Hold(warmStrings, 5, hz, seconds, loud, seed);
}

Samples ReedPad(float hz, float seconds, float loud, uint32_t seed) {
  return Hold(reeds, 3, hz, seconds, loud, seed);
}

Samples Choir(float hz, float seconds, float loud, uint32_t seed) {
  Samples note = Hold(singers, 6, hz, seconds, loud, seed);
  Samples breath = PinkNoise(SecondsOf(note), seed + 5);
  BandPass(&breath, 1900, 0.8f);
  for (size_t i = 0; i < breath.size(); i++) breath[i] *= Held(singers, static_cast<float>(i) / SampleRate, seconds);
  Mix(&note, breath, 0, 0.09f * loud);
  return note;
}

Samples Bow(float hz, float seconds, float loud, uint32_t seed) {
  Samples note = Hold(oneBow, 2, hz, seconds, loud, seed);
  Samples hair = PinkNoise(SecondsOf(note), seed + 5);
  BandPass(&hair, std::min(hz * 3, 3000.0f), 1.2f);
  for (size_t i = 0; i < hair.size(); i++) hair[i] *= Held(oneBow, static_cast<float>(i) / SampleRate, seconds);
  Mix(&note, hair, 0, 0.07f * loud);
  LowPass(&note, 3400);
  return note;
}

// Two strings for a key, each partial a little sharp and shorter than the one below; let go, they are damped.
Samples FeltKeys(float hz, float seconds, float loud, uint32_t seed) {
  const float ring = std::clamp(7 * std::sqrt(220 / hz), 1.2f, 9.0f);
  Samples note = Silence(std::min(seconds + 0.9f, ring * 1.1f));
  Dice dice{seed * 31U + 7U};
  std::vector<Mode> modes;
  for (int n = 1; n <= 16; n++) {
    const float order = static_cast<float>(n), sharp = hz * order * std::sqrt(1 + 0.0004f * order * order);
    if (sharp > HighestPartial) break;
    const float gain = std::pow(order, -1.15f) * std::exp(-order * (0.75f - 0.42f * loud)), length = ring / (1 + 0.4f * (order - 1));
    modes.push_back({sharp, length, gain});
    modes.push_back({sharp * (1 + RollBetween(&dice, 0.0003f, 0.0009f)), length * 0.7f, gain * 0.6f});
  }
  Strike(&note, 0, modes, 1.1f);
  Samples felt = PinkNoise(0.09f, seed);
  LowPass(&felt, 500 + 500 * loud);
  Shape(&felt, {{0, 0}, {0.006f, 1}, {0.03f, 0.25f}, {0.09f, 0}});
  Mix(&note, felt, 0, 0.22f);
  Shape(&note, {{0, 0}, {0.006f, 1}, {seconds, 1}, {seconds + 0.5f, 0.15f}, {seconds + 0.9f, 0}});
  Fade(&note, 0.002f, 0.08f);
  Scale(&note, loud);
  return note;
}

// A tine that a second one bends at first: round, with a short bright front.
Samples TineKeys(float hz, float seconds, float loud, uint32_t seed) {
  Samples note = Silence(seconds + 1.4f);
  const float phase = static_cast<float>(seed % 97) / 97;
  for (size_t i = 0; i < note.size(); i++) {
    const float t = static_cast<float>(i) / SampleRate, turn = 2 * Pi * hz * t;
    const float body = std::sin(turn + loud * 1.1f * std::exp(-1.6f * t) * std::sin(turn));
    const float front = 0.12f * loud * std::exp(-9 * t) * std::sin(turn * 7.02f);
    const float sway = 1 + 0.1f * std::sin(2 * Pi * (0.9f * t + phase));
    note[i] = (body + front) * sway * std::exp(-t * 0.55f);
  }
  Shape(&note, {{0, 0}, {0.01f, 1}, {seconds, 0.9f}, {seconds + 0.5f, 0.22f}, {seconds + 1.4f, 0}});
  Scale(&note, 0.8f * loud);
  return note;
}

Samples Glass(float hz, float, float loud, uint32_t seed) {
  const float ring = std::clamp(3.2f * std::sqrt(880 / hz), 1.2f, 5.0f);
  Samples note = Silence(ring * 1.1f);
  const float shimmer = 1.0005f + 0.0006f * static_cast<float>(seed % 5);
  Strike(&note, 0,
         {{hz, ring, 0.8f}, {hz * shimmer, ring * 0.9f, 0.4f}, {hz * 2.004f, ring * 0.5f, 0.18f}, {hz * 2.76f, ring * 0.3f, 0.16f * loud},
          {std::min(hz * 5.4f, 12000.0f), ring * 0.12f, 0.1f * loud}});
  Fade(&note, 0.004f, 0.3f);
  Scale(&note, loud);
  return note;
}

// A burst of noise that runs round a loop as long as one period, and is dulled a little on each way.
Samples Harp(float hz, float seconds, float loud, uint32_t seed) {
  Samples note = Silence(std::min(seconds + 2.5f, 4.5f));
  const float period = SampleRate / hz - 0.5f;
  const size_t length = static_cast<size_t>(period);
  const float late = period - static_cast<float>(length);
  Samples string = WhiteNoise(static_cast<float>(length + 2) / SampleRate, seed);
  string.resize(length + 2);
  LowPass(&string, 700 + 2600 * loud);
  const float kept = std::pow(0.001f, 1 / (hz * std::clamp(5.5f * std::sqrt(150 / hz), 0.9f, 6.0f)));
  float last = 0;
  for (size_t i = 0; i < note.size(); i++) {
    const size_t at = i % (length + 2), next = (at + 1) % (length + 2), after = (at + 2) % (length + 2);
    // The oldest samples: between two of them lies the place one period back.
    const float back = string[after] + late * (string[next] - string[after]);
    note[i] = string[at];
    string[at] = kept * 0.5f * (back + last);
    last = back;
  }
  HighPass(&note, hz * 0.6f);
  const float peak = std::max(PeakOf(note), 1e-4f);
  Shape(&note, {{0, 1}, {seconds + 1.5f, 0.8f}, {seconds + 2.5f, 0}});
  Fade(&note, 0.003f, 0.5f);
  Scale(&note, loud * 0.9f / peak);
  return note;
}

Samples Sub(float hz, float seconds, float loud, uint32_t) {
  Samples note = Glide(seconds + 1.2f, {{0, hz}});
  Mix(&note, Glide(seconds + 1.2f, {{0, hz * 2}}), 0, 0.22f);
  Mix(&note, Glide(seconds + 1.2f, {{0, hz * 3}}), 0, 0.07f);
  Fade(&note, std::min(0.7f, seconds / 2), 1.5f);
  Scale(&note, loud);
  return note;
}

Samples Drop(float hz, float, float loud, uint32_t) {
  Samples note = Glide(0.5f, {{0, hz * 0.62f}, {0.035f, hz}, {0.5f, hz * 1.01f}});
  Shape(&note, {{0, 0}, {0.008f, 0.5f}, {0.03f, 1}, {0.12f, 0.3f}, {0.5f, 0}});
  Scale(&note, loud);
  return note;
}

Samples Air(float seconds, const Curve &hz, float q, const Curve &gain, uint32_t seed) {
  Samples air = PinkNoise(seconds, seed);
  SweepBand(&air, hz, q);
  Shape(&air, gain);
  return air;
}
