// "Ashenfold Tidewheel": a wheel of six beats turns over pads that come and go like tides. D minor; the middle looks out
// to F major, and the wheel turns at half its speed there.
#include "sound_music.h"

constexpr float Beat = 60.0f / 56;
constexpr float BarBeats = 6;
constexpr int Bars = 32;

namespace {

struct Bar {
  const char *ground, *pad, *wheel;  // the wheel: five pitches from the lowest
};

const Bar opening[4] = {{"D2", "A3+D4+E4:6", "D4+A4+D5+E5+A5"},
                        {"D2", "A3+C4+E4+F4:6", "D4+A4+C5+E5+F5"},
                        {"Bb1", "F3+A3+D4:6", "Bb3+F4+A4+C5+D5"},
                        {"D2", "A3+C4+E4+F4:6", "D4+A4+C5+E5+F5"}};

const Bar verse[8] = {{"D2", "A3+C4+E4+F4:6", "D4+A4+C5+E5+F5"},  {"Bb1", "F3+A3+C4+D4:6", "Bb3+F4+A4+C5+D5"},
                      {"A1", "F3+A3+C4+G4:6", "A3+F4+A4+C5+G5"},  {"C2", "G3+A3+D4+E4:6", "C4+G4+A4+D5+E5"},
                      {"D2", "A3+C4+E4+F4:6", "D4+A4+C5+E5+F5"},  {"G1", "F3+A3+Bb3+D4:6", "G3+D4+F4+A4+Bb4"},
                      {"Bb1", "F3+A3+C4+D4:6", "Bb3+F4+A4+C5+D5"}, {"C2", "G3+C4+D4+G4:3 G3+C4+E4+G4:3", "C4+G4+C5+D5+G5"}};

const Bar outlook[8] = {{"Bb1", "F3+A3+C4+F4:6", "Bb3+F4+A4+C5+F5"}, {"Bb1", "G3+C4+E4+G4:6", "Bb3+E4+G4+C5+E5"},
                        {"A1", "E3+G3+C4+E4:6", "A3+E4+G4+C5+E5"},   {"D2", "F3+A3+C4+E4:6", "D4+F4+A4+C5+E5"},
                        {"G1", "F3+Bb3+D4+A4:6", "G3+D4+F4+Bb4+A5"}, {"A1", "E3+G3+C4+G4:6", "A3+E4+G4+C5+G5"},
                        {"Bb1", "F3+A3+D4+F4:6", "Bb3+F4+A4+D5+F5"}, {"A1", "E3+G3+A3+D4:3 E3+G3+A3+C#4:3", "A3+D4+E4+G4+D5"}};

const Bar ebb[4] = {{"D2", "A3+D4+E4:6", "D4+A4+C5+E5+F5"},
                    {"Bb1", "F3+A3+D4:6", "Bb3+F4+A4+C5+D5"},
                    {"G1", "D3+Bb3+D4:6", "G3+D4+F4+A4+Bb4"},
                    {"D2", "D3+A3+D4+A4:6", "D4+A4+D5+E5+A5"}};

const char *const verseMelody =
    "r:2 A4:4 | D5:3 C5:3 | A4:6 | r:1 G4:2 E4:3 | F4:4 E4:2 | D4:3 Bb4:3 | A4:4 C5:2 | D5:2 C5:4";
const char *const outlookMelody =
    "r:1 C6:2 A5:1 F5:2 | E5:4 r:2 | r:1 G5:2 E5:1 C5:2 | A5:5 r:1 | r:1 Bb5:2 A5:1 F5:2 | G5:4 E5:2 | F5:2 D5 F5 | G5:2 E5:4";

// How the wheel turns: places among its five pitches.
constexpr int quickTurn[12] = {0, 1, 3, 4, 3, 1, 2, 1, 3, 4, 3, 1};
constexpr int slowTurn[6] = {0, 2, 4, 3, 2, 1};

}  // namespace

static const Bar &BarAt(int bar) {
  if (bar < 4) return opening[bar];
  if (bar < 12) return verse[bar - 4];
  if (bar < 20) return outlook[bar - 12];
  if (bar < 28) return verse[bar - 20];
  return ebb[bar - 28];
}

// The wheel fades in over the opening, and in the end it stands still step by step.
static Part Wheel() {
  Part part;
  for (int bar = 2; bar < Bars; bar++) {
    const std::vector<float> pitches = ReadChord(BarAt(bar).wheel);
    const bool slow = (bar >= 12 && bar < 20) || bar >= 28;
    const int turns = slow ? 6 : 12, most = bar == 30 ? 3 : bar == 31 ? 1 : turns;
    for (int i = 0; i < most; i++) {
      const int place = slow ? slowTurn[i] : quickTurn[i];
      const float loud = (i == 0 ? 0.75f : 0.45f + 0.06f * static_cast<float>(place)) * (bar < 4 ? 0.3f * static_cast<float>(bar - 1) : 1);
      part.push_back({BarBeats * static_cast<float>(bar) + static_cast<float>(i) * (slow ? 1 : 0.5f), slow ? 1.6f : 0.9f,
                      pitches[static_cast<size_t>(place)], loud});
    }
  }
  return part;
}

static void AddTides(Stage *stage, float length) {
  Curve gain, hz;
  for (float t = 0; t < length; t += 2 * BarBeats * Beat) {
    gain.insert(gain.end(), {{t, 0.12f}, {t + 5.2f, 1}, {t + 7.5f, 0.75f}});
    hz.insert(hz.end(), {{t, 260}, {t + 5.2f, 900}});
  }
  Place(stage, Air(length, hz, 0.6f, gain, 701), 0, 0.16f, -0.7f, 0.3f);
  Curve lateGain = gain, lateHz = hz;
  for (Curve *curve : {&lateGain, &lateHz})
    for (Knot &knot : *curve) knot.at += 3.1f;
  Place(stage, Air(length, lateHz, 0.6f, lateGain, 702), 0, 0.16f, 0.7f, 0.3f);
}

Stereo AshenfoldTidewheel() {
  Stage stage{Beat, {}, {}}, wheel{Beat, {}, {}};
  Part ground, pad;
  for (int bar = 0; bar < Bars; bar++) {
    const float at = BarBeats * static_cast<float>(bar);
    ground.push_back({at, 5.6f, ReadChord(BarAt(bar).ground)[0], 0.8f});
    Append(&pad, ReadPart(BarAt(bar).pad), at, bar < 4 ? 0.6f : 0.75f);
  }
  Play(&stage, ground, {Sub, 0.15f, 0, 0, 0.05f, 0.02f}, 0, 1);
  Play(&stage, pad, {WarmPad, 0.1f, 0, 0.7f, 0.6f, 0.12f}, 0, 2);
  Play(&wheel, Wheel(), {TineKeys, 0.22f, 0.1f, 0.25f, 0.5f, 0.012f}, 0, 3);
  Echo(&wheel.near, Beat * 1.5f, 0.38f);
  Join(&stage, wheel);
  const Part melody = ReadPart(verseMelody), bells = ReadPart(outlookMelody);
  Part bow;
  Append(&bow, melody, 4 * BarBeats, 0.7f);
  Append(&bow, melody, 20 * BarBeats, 0.85f, -12);
  Play(&stage, bow, {Bow, 0.12f, -0.25f, 0, 0.9f, 0.05f}, 0, 4);
  Part glass;
  Append(&glass, bells, 12 * BarBeats, 0.7f);
  Append(&glass, melody, 20 * BarBeats + 0.5f, 0.35f, 12);
  Play(&stage, glass, {Glass, 0.3f, 0.35f, 0, 0.9f, 0.02f}, 0, 5);
  const float length = Bars * BarBeats * Beat + 9;
  AddTides(&stage, length);
  return Record(&stage, 6.5f, 1.1f, length);
}
