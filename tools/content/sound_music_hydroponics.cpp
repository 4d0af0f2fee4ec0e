// "Nightshift, Hydroponics": one harp turns in five, a second one in four against it, and water drips between them. E flat with
// a raised fourth; each chord stays for two bars. A reed sings over the middle.
#include "sound_music.h"

#include "noise.h"

constexpr float Beat = 0.75f;
constexpr float ChordBeats = 10;

namespace {

struct Chord {
  const char *bass, *tones;  // six tones from the lowest
};

// Four parts of 4, 6, 6 and 6 chords.
const Chord chords[22] = {
    {"Eb2", "G3+Bb3+D4+F4+G4+Bb4"},  {"C2", "G3+Bb3+D4+Eb4+G4+Bb4"}, {"Ab1", "G3+C4+D4+Eb4+G4+C5"},   {"F2", "Ab3+C4+Eb4+G4+Ab4+C5"},
    {"Eb2", "G3+Bb3+D4+F4+G4+Bb4"},  {"G1", "F3+Bb3+D4+F4+G4+Bb4"},  {"Ab1", "G3+Bb3+C4+Eb4+G4+Bb4"}, {"C2", "Eb3+G3+Bb3+D4+F4+G4"},
    {"F2", "Ab3+C4+Eb4+G4+Ab4+C5"},  {"Bb1", "F3+Ab3+C4+Eb4+F4+C5"}, {"Db2", "F3+Ab3+C4+Eb4+F4+Ab4"}, {"Ab1", "G3+Bb3+C4+Eb4+G4+Bb4"},
    {"G1", "G3+Bb3+Eb4+F4+G4+Bb4"},  {"C2", "G3+Bb3+D4+Eb4+G4+Bb4"}, {"F2", "Ab3+Bb3+C4+Eb4+G4+Bb4"}, {"Bb1", "F3+Ab3+C4+Eb4+G4+C5"},
    {"Ab1", "G3+C4+D4+Eb4+G4+C5"},   {"Eb2", "G3+Bb3+D4+F4+G4+Bb4"}, {"F2", "Ab3+C4+Eb4+G4+Ab4+C5"},  {"C2", "G3+Bb3+D4+Eb4+G4+Bb4"},
    {"Ab1", "G3+Bb3+C4+Eb4+G4+Bb4"}, {"Eb2", "G3+Bb3+C4+F4+G4+C5"}};

const char *const reedSong =
    "r:2 Bb4:3 G4:2 F4:3 | D5:4 Bb4:6 | r:2 C5:3 Bb4:2 G4:3 | F4:4 Eb4:6 | r:2 Ab4:3 C5:2 Eb5:3 | C5:3 Bb4:7 | "
    "r:1 F5:4 Eb5:2 C5:3 | Eb5:4 C5:6 | r:1 G5:4 F5:2 D5:3 | Eb5:3 D5:2 Bb4:5 | r:1 C5:3 Ab4 G4 | F4:4 G4:6";

// A bar of ten half beats; -1 rests.
constexpr int sparseBar[10] = {0, -1, 2, -1, 4, -1, 3, -1, 1, -1};
constexpr int fiveBar[10] = {0, 2, 4, 3, 1, 2, 4, 5, 4, 2};
constexpr int threesBar[10] = {0, 3, 5, 1, 3, 5, 2, 4, 5, 3};
constexpr int lateBar[10] = {0, -1, -1, 4, -1, 2, -1, -1, 5, -1};

}  // namespace

static int PartOf(int chord) {
  return chord < 4 ? 0 : chord < 10 ? 1 : chord < 16 ? 2 : 3;
}

static Part FirstHarp() {
  Part part;
  constexpr const int *bars[4] = {sparseBar, fiveBar, threesBar, lateBar};
  for (int c = 0; c < 22; c++) {
    const std::vector<float> tones = ReadChord(chords[c].tones);
    for (int i = 0; i < 20; i++) {
      const int tone = bars[PartOf(c)][i % 10];
      // The second bar of a chord turns round: high where the first was low.
      const int turned = i < 10 || tone < 0 ? tone : 5 - tone;
      if (turned < 0 || (c == 21 && i > 10)) continue;
      part.push_back({ChordBeats * static_cast<float>(c) + 0.5f * static_cast<float>(i), 1.5f, tones[static_cast<size_t>(turned)],
                      i % 10 == 0 ? 0.8f : 0.5f + 0.05f * static_cast<float>(i % 3)});
    }
  }
  return part;
}

// A tone at every fourth half beat, whatever the bar does, an octave up.
static Part SecondHarp() {
  Part part;
  for (int i = 0; i < 12 * 20; i += 4) {
    const std::vector<float> tones = ReadChord(chords[4 + i / 20].tones);
    part.push_back({ChordBeats * 4 + 0.5f * static_cast<float>(i), 2, 2 * tones[static_cast<size_t>(i / 4 % 3 + 1)], i % 3 == 0 ? 0.55f : 0.4f});
  }
  return part;
}

static Part Drops() {
  Part part;
  Dice dice{4711};
  for (float at = 3; at < 216; at += RollBetween(&dice, 2.2f, 7.5f)) {
    const std::vector<float> tones = ReadChord(chords[static_cast<int>(at / ChordBeats)].tones);
    const float hz = tones[static_cast<size_t>(RollInt(&dice, 1, 5))] * 4;
    part.push_back({at, 0.5f, hz, RollBetween(&dice, 0.25f, 0.7f)});
    if (Roll(&dice) < 0.4f) part.push_back({at + 0.32f, 0.5f, hz * 1.122f, RollBetween(&dice, 0.15f, 0.35f)});
  }
  return part;
}

// A pump works behind the wall, once a bar.
static void AddPump(Stage *stage, float length) {
  Curve gain;
  for (float t = 0; t < length; t += 5 * Beat) gain.insert(gain.end(), {{t, 0.25f}, {t + 1.1f, 1}, {t + 2.3f, 0.4f}});
  Place(stage, Air(length, {{0, 150}, {length / 2, 175}, {length, 145}}, 1.6f, gain, 731), 0, 0.2f, -0.3f, 0.15f);
  Place(stage, Air(length, {{0, 2300}, {length, 2600}}, 0.5f, {{0, 0.2f}, {20, 1}, {length - 20, 1}, {length, 0}}, 732), 0, 0.018f, 0.4f, 0.2f);
}

Stereo NightshiftHydroponics() {
  Stage stage{Beat, {}, {}};
  Part bass, pad;
  for (int c = 0; c < 22; c++) {
    const float at = ChordBeats * static_cast<float>(c);
    bass.push_back({at, 9, ReadChord(chords[c].bass)[0], 0.75f});
    const std::vector<float> tones = ReadChord(chords[c].tones);
    for (size_t i = 0; i < 4; i++) pad.push_back({at, ChordBeats, tones[i], PartOf(c) == 0 ? 0.4f : 0.65f});
  }
  Play(&stage, bass, {Sub, 0.13f, 0, 0, 0.05f, 0.02f}, 0, 31);
  Play(&stage, pad, {WarmPad, 0.055f, 0, 0.8f, 0.6f, 0.1f}, 0, 32);
  Play(&stage, FirstHarp(), {Harp, 0.5f, -0.3f, 0, 0.35f, 0.012f}, 0, 33);
  Play(&stage, SecondHarp(), {Harp, 0.5f, 0.5f, 0, 0.5f, 0.012f}, 0, 34);
  Play(&stage, ReadPart(reedSong), {ReedPad, 0.08f, 0.1f, 0.12f, 0.7f, 0.04f}, 4 * ChordBeats, 35);
  Play(&stage, Drops(), {Drop, 0.2f, 0.2f, 0, 1.0f, 0.03f}, 0, 36);
  const float length = 22 * ChordBeats * Beat + 6;
  AddPump(&stage, length);
  return Record(&stage, 4.2f, 0.9f, length);
}
