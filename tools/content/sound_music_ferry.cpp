// "Last Ferry Out": bells call and a bow answers, over low keys that walk from B minor to D and back. Phrases of five bars.
#include "sound_music.h"

constexpr float Beat = 60.0f / 56;
constexpr float BarBeats = 4;

namespace {

struct Bar {
  const char *bass, *chord;
};

const Bar intro[4] = {{"B1", "F#3+B3+C#4"}, {"B1", "F#3+A3+D4"}, {"G1", "F#3+B3+D4"}, {"B1", "F#3+A3+C#4"}};

const Bar phrase[10] = {{"B1", "F#3+A3+C#4+D4"}, {"G1", "F#3+B3+D4"},     {"F#1", "A3+D4+E4"}, {"E2", "G3+B3+D4+F#4"},    {"F#1", "A3+C#4+E4"},
                        {"B1", "F#3+A3+C#4+D4"}, {"G1", "F#3+B3+D4"},     {"A1", "E3+A3+C#4+F#4"}, {"D2", "F#3+A3+C#4+E4"}, {"F#1", "E3+B3+C#4+F#4"}};

const Bar crossing[8] = {{"G1", "F#3+A3+B3+D4"}, {"G1", "E3+A3+C#4"},    {"F#1", "E3+A3+C#4"},   {"B1", "F#3+B3+D4"},
                         {"E2", "G3+B3+D4+F#4"}, {"A1", "G3+B3+D4+E4"}, {"D2", "F#3+A3+C#4+E4"}, {"F#1", "E3+A#3+C#4+F#4"}};

const Bar away[6] = {{"B1", "F#3+A3+C#4+D4"}, {"G1", "F#3+B3+D4"}, {"D2", "F#3+A3+C#4+E4"}, {"G1", "F#3+B3+D4"}, {"B1", "F#3+B3+C#4+D4"}, {"B1", "F#3+B3+C#4"}};

const char *const call =
    "r:1 F#5:1 B5:2 | A5:3 F#5:1 | E5:4 | r:4 | r:4 | r:1 F#5:1 C#6:2 | B5:3 A5:1 | F#5:2 E5:2 | r:4 | r:4";
const char *const answer =
    "r:4 | r:4 | r:2 F#4:2 | G4:2 B4:2 | A4:4 | r:4 | r:4 | r:3 C#4:1 | D4:2 F#4:2 | E4:2 C#4:2";
const char *const crossingSong = "D5:3 B4:1 | C#5:4 | A4:3 C#5:1 | B4:4 | G4:2 B4:2 | D5:2 E5:2 | F#5:4 | E5:2 C#5:2";
const char *const voices = "D4+F#4:4 | C#4+E4:4 | C#4+E4:4 | D4+F#4:4 | B3+D4:4 | B3+E4:4 | C#4+F#4:4 | C#4+E4:4";
const char *const farewell = "r:1 F#5:1 B5:2 | A5:3 r:1 | r:1 E5:1 F#5:2 | r:4 | r:2 B5:2*0.6 | r:4";

}  // namespace

// Low keys: the bass alone on one, then the chord, later in every second bar.
template <size_t N>
static float AddBars(Part *keys, Part *pad, Part *ground, const Bar (&bars)[N], float at, float loud) {
  for (size_t bar = 0; bar < N; bar++) {
    const float bass = ReadChord(bars[bar].bass)[0];
    const std::vector<float> chord = ReadChord(bars[bar].chord);
    ground->push_back({at, 3.8f, bass, loud});
    keys->push_back({at, 3.6f, bass * 2, 0.6f * loud});
    const float late = bar % 2 == 0 ? 1 : 1.5f;
    for (size_t i = 0; i < chord.size(); i++) {
      keys->push_back({at + late + 0.04f * static_cast<float>(i), 2.4f, chord[i], 0.42f * loud});
      pad->push_back({at, BarBeats, chord[i], 0.7f * loud});
    }
    if (bar % 3 == 2) keys->push_back({at + 3.5f, 0.8f, chord.back() * 2, 0.3f * loud});
    at += BarBeats;
  }
  return at;
}

Stereo LastFerryOut() {
  Stage stage{Beat, {}, {}};
  Part keys, pad, ground, bells, bow, choir;
  float at = AddBars(&keys, &pad, &ground, intro, 0, 0.7f);
  Append(&bells, ReadPart(call), at, 0.75f);
  Append(&bow, ReadPart(answer), at, 0.7f);
  at = AddBars(&keys, &pad, &ground, phrase, at, 0.85f);
  Append(&bow, ReadPart(crossingSong), at, 0.85f, -12);
  Append(&choir, ReadPart(voices), at, 0.7f);
  at = AddBars(&keys, &pad, &ground, crossing, at, 1);
  Append(&bells, ReadPart(call), at, 0.6f);
  Append(&bells, ReadPart(call), at + 1.5f, 0.25f, 12);
  Append(&bow, ReadPart(answer), at, 0.75f);
  at = AddBars(&keys, &pad, &ground, phrase, at, 0.85f);
  Append(&bells, ReadPart(farewell), at, 0.55f);
  at = AddBars(&keys, &pad, &ground, away, at, 0.6f);
  Play(&stage, keys, {FeltKeys, 0.3f, -0.1f, 0.3f, 0.4f, 0.02f}, 0, 41);
  Play(&stage, pad, {ReedPad, 0.05f, 0, 0.8f, 0.6f, 0.12f}, 0, 42);
  Play(&stage, ground, {Sub, 0.14f, 0, 0, 0.05f, 0.02f}, 0, 43);
  Stage far{Beat, {}, {}};
  Play(&far, bells, {Glass, 0.3f, 0.3f, 0, 0.9f, 0.02f}, 0, 44);
  Echo(&far.near, Beat * 0.75f, 0.42f);
  Join(&stage, far);
  Play(&stage, bow, {Bow, 0.13f, -0.3f, 0, 0.8f, 0.05f}, 0, 45);
  Play(&stage, choir, {Choir, 0.075f, 0.1f, 0.6f, 0.9f, 0.1f}, 0, 46);
  const float length = at * Beat + 9;
  Place(&stage, Air(length, {{0, 95}, {length / 3, 130}, {length, 90}}, 0.8f, {{0, 0}, {8, 1}, {length, 0.4f}}, 741), 0, 0.14f, -0.4f, 0.1f);
  Place(&stage, Air(length, {{0, 110}, {length / 2, 85}, {length, 120}}, 0.8f, {{0, 0}, {12, 1}, {length, 0.4f}}, 742), 0, 0.14f, 0.4f, 0.1f);
  return Record(&stage, 6, 1.0f, length);
}
