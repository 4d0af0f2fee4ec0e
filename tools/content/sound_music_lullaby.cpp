// "Quietrock Lullaby": a song in three for a piano with felt on its hammers. G major; its middle part is in E minor. Strings
// come in under the second verse, and small bells double the last one.
#include "sound_music.h"

constexpr float Beat = 60.0f / 66;
constexpr float BarBeats = 3;

namespace {

struct Bar {
  const char *bass, *chord;  // three tones from the lowest
};

const Bar intro[4] = {{"G2", "D3+B3+D4"}, {"G2", "E3+B3+E4"}, {"G2", "D3+B3+D4"}, {"G2", "E3+C4+E4"}};

const Bar verse[16] = {{"G2", "D3+B3+D4"},   {"E2", "B2+G3+D4"}, {"C3", "G3+B3+E4"}, {"F#2", "D3+A3+D4"},
                       {"B2", "G3+B3+D4"},   {"C3", "G3+B3+E4"}, {"A2", "E3+G3+C4"}, {"D3", "G3+A3+D4"},
                       {"G2", "D3+B3+D4"},   {"B2", "F#3+A3+D4"}, {"E2", "B2+G3+D4"}, {"C3", "G3+D4+E4"},
                       {"A2", "E3+G3+C4"},   {"D3", "G3+A3+C4"}, {"G2", "D3+B3+D4"}, {"G2", "D3+G3+B3"}};

const Bar middle[12] = {{"E2", "B2+G3+B3"}, {"F#2", "D3+A3+D4"}, {"G2", "D3+G3+B3"},  {"A2", "E3+G3+B3"},
                        {"C3", "G3+B3+E4"}, {"B2", "D3+G3+D4"},  {"A2", "E3+G3+C4"},  {"B2", "F#3+A3+E4"},
                        {"E2", "B2+G3+F#4"}, {"C3", "G3+B3+D4"}, {"A2", "E3+G3+C4"},  {"D3", "G3+C4+E4"}};

const Bar outro[6] = {{"G2", "D3+B3+D4"}, {"G2", "E3+B3+E4"}, {"E2", "B2+G3+D4"}, {"C3", "G3+B3+E4"}, {"G2", "D3+B3+D4"}, {"G2", "D3+B3+D4"}};

const char *const firstVerse =
    "B4:2 D5:1 | E5:2 D5:1 | B4:2 G4:1 | A4:3 | B4:1.5 C5:0.5 D5:1 | E5:2 G5:1 | E5:2 C5:1 | D5:3 | "
    "B4:2 D5:1 | F#5:2 D5:1 | G5:2 E5:1 | D5:2 G4:1 | C5:1.5 B4:0.5 A4:1 | A4:1 G4 F#4 | G4:3 | r:3";
const char *const secondVerse =
    "r:1 B4 D5 | E5:1.5 F#5:0.5 D5:1 | B4:1 A4 G4 | A4:2 D4:1 | B4:1 C5 D5 | E5:1 G5:2 | G5:1 E5 C5 | D5:3 | "
    "D5:1 B5:2 | A5:1.5 F#5:0.5 D5:1 | G5:2 F#5:1 | E5:1 D5 G4 | C5:1 B4 A4 | G4:1 A4 F#4 | G4:3 | r:3";
const char *const middleSong =
    "r:1 G5 F#5 | E5:2 D5:1 | B4:3 | r:1 E5 D5 | E5:1.5 F#5:0.5 G5:1 | D5:2 B4:1 | C5:1 B4 E5 | F#5:2 D#5:1 | "
    "E5:3 | r:1 D5 E5 | G5:2 E5:1 | C5:1 A4 E5";
const char *const lastWords = "B4:2 D5:1 | E5:3 | r:1 D5:1 B4:1 | G4:3 | r:3 | G5:3*0.6";

}  // namespace

namespace {

// The left hand: a bass and two quiet chords, or all tones one after the other, or only the chord.
enum class Hand { Waltz, Broken, Still };

}  // namespace

static void AddBar(Part *part, const Bar &bar, float at, Hand hand) {
  const std::vector<float> chord = ReadChord(bar.chord);
  part->push_back({at, 2.9f, ReadChord(bar.bass)[0], 0.6f});
  if (hand == Hand::Broken) {
    constexpr size_t order[5] = {0, 1, 2, 1, 0};
    for (size_t i = 0; i < 5; i++) part->push_back({at + 0.5f + 0.5f * static_cast<float>(i), 1.4f, chord[order[i]], 0.34f});
    return;
  }
  for (size_t i = 0; i < chord.size(); i++) {
    const float spread = 0.03f * static_cast<float>(i);
    part->push_back({at + 1 + spread, hand == Hand::Still ? 2.0f : 0.95f, chord[i], 0.34f});
    if (hand == Hand::Waltz && i > 0) part->push_back({at + 2 + spread, 0.95f, chord[i], 0.27f});
  }
}

template <size_t N>
static float AddBars(Part *part, const Bar (&bars)[N], float at, Hand hand) {
  for (const Bar &bar : bars) {
    AddBar(part, bar, at, hand);
    at += BarBeats;
  }
  return at;
}

template <size_t N>
static void AddStrings(Part *part, const Bar (&bars)[N], float at, float loud) {
  for (const Bar &bar : bars) {
    for (const float hz : ReadChord(bar.chord)) part->push_back({at, BarBeats, hz, loud});
    at += BarBeats;
  }
}

Stereo QuietrockLullaby() {
  Stage stage{Beat, {}, {}};
  Part left, right, strings, bells;
  float at = AddBars(&left, intro, 0, Hand::Still);
  Append(&right, ReadPart(firstVerse), at, 0.68f);
  at = AddBars(&left, verse, at, Hand::Waltz);
  Append(&right, ReadPart(secondVerse), at, 0.72f);
  AddStrings(&strings, verse, at, 0.55f);
  at = AddBars(&left, verse, at, Hand::Broken);
  Append(&right, ReadPart(middleSong), at, 0.78f);
  AddStrings(&strings, middle, at, 0.75f);
  at = AddBars(&left, middle, at, Hand::Broken);
  Append(&right, ReadPart(firstVerse), at, 0.62f);
  Append(&bells, ReadPart(firstVerse), at, 0.4f, 12);
  AddStrings(&strings, verse, at, 0.6f);
  at = AddBars(&left, verse, at, Hand::Waltz);
  Append(&right, ReadPart(lastWords), at, 0.5f);
  AddStrings(&strings, outro, at, 0.45f);
  at = AddBars(&left, outro, at, Hand::Still);
  Play(&stage, left, {FeltKeys, 0.3f, -0.15f, 0.25f, 0.3f, 0.018f}, 0.5f, 11);
  Play(&stage, right, {FeltKeys, 0.48f, 0.12f, 0.2f, 0.4f, 0.022f}, 0.5f, 12);
  Play(&stage, strings, {WarmPad, 0.055f, 0, 0.8f, 0.8f, 0.1f}, 0.5f, 13);
  Play(&stage, bells, {Glass, 0.24f, 0.4f, 0, 0.9f, 0.02f}, 0.5f, 14);
  const float length = (at + 1) * Beat + 6;
  Place(&stage, Air(length, {{0, 420}, {length / 2, 640}, {length, 380}}, 0.5f, {{0, 0}, {6, 1}, {length, 0.6f}}, 711), 0, 0.02f, -0.5f, 0.2f);
  Place(&stage, Air(length, {{0, 560}, {length / 2, 380}, {length, 520}}, 0.5f, {{0, 0}, {9, 1}, {length, 0.6f}}, 712), 0, 0.02f, 0.5f, 0.2f);
  return Record(&stage, 3.6f, 0.65f, length);
}
