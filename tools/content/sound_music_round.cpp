// "Long Way Round": four voices move one at a time over a drone on A, and bells stand far behind them. No beat: each unit of
// the score lasts three seconds.
#include "sound_music.h"

constexpr float Beat = 3;
constexpr float Beats = 64;

namespace {

const char *const soprano =
    "r:3 E5:3 C#5:2 | D5:4 F#5:2 | E5:5 C#5:3 | B4:4 F#5:2 | F#5:3 E5:5 | D5:4 C#5:4 | B4:3 D5:2 F#5:3 | F#5:4 | E5:8*0.7";
const char *const alto =
    "B3:5*0.8 C#4:3 | A3:6 | A3:4 B3:4 | B3:3 A3:3 | A3:5 E4:3 | D4:6 A3:2 | B3:5 A3:3 | A3:4 | B3:3 A3:5*0.7";
const char *const tenor = "E3:8*0.8 | F#3:6 | E3:8 | E3:6 | F#3:8 | F#3:5 E3:3 | D3:8 | D3:4 | E3:8*0.7";
const char *const ground = "A1:8 A1:6 F#1:8 E1:6 D2:8 B1:8 G1:8 A1:4 A1:7";
const char *const drone = "A2+E3:8 A2+E3:6 A2+E3:8 A2+E3:6 A2+E3:8 A2+E3:8 A2+E3:8 A2+E3:4 A2+E3:7";
const char *const soloBow = "r:28 F#3:4 A3:4 | B3:5 F#3:3 | G3:4 D4:3*0.8 B3:1 | A3:4";
const char *const bells =
    "r:6 E6:1*0.7 B5:1*0.5 | r:4 A5:1*0.6 D6:1*0.4 | r:2 C#6:3*0.6 A5:3*0.4 | r:3 F#6:0.5*0.5 E6:2.5*0.6 | "
    "r:5 A5:1.5*0.6 F#6:1.5*0.7 | r:2 D6:2*0.5 C#6:4*0.6 | r:4 B5:1*0.5 D6:1*0.6 F#6:2*0.7 | r:4 | r:3 E6:2*0.5 A6:3*0.35";

}  // namespace

// Long gusts, different on each side.
static void AddWind(Stage *stage, float length) {
  const Curve leftGain{{0, 0}, {14, 0.8f}, {31, 0.25f}, {58, 1}, {77, 0.3f}, {104, 0.9f}, {128, 0.35f}, {151, 1}, {length, 0}};
  const Curve rightGain{{0, 0}, {22, 0.5f}, {45, 0.9f}, {66, 0.25f}, {92, 1}, {117, 0.3f}, {139, 0.8f}, {170, 0.5f}, {length, 0}};
  const Curve leftHz{{0, 300}, {14, 700}, {31, 380}, {58, 950}, {77, 420}, {104, 800}, {128, 400}, {151, 900}, {length, 250}};
  const Curve rightHz{{0, 260}, {22, 520}, {45, 820}, {66, 360}, {92, 900}, {117, 400}, {139, 700}, {170, 480}, {length, 250}};
  Place(stage, Air(length, leftHz, 1.1f, leftGain, 721), 0, 0.17f, -0.8f, 0.5f);
  Place(stage, Air(length, rightHz, 1.1f, rightGain, 722), 0, 0.17f, 0.8f, 0.5f);
}

Stereo LongWayRound() {
  Stage stage{Beat, {}, {}};
  Play(&stage, ReadPart(soprano), {Choir, 0.11f, 0.2f, 0.45f, 0.9f, 0.15f}, 0.3f, 21);
  Play(&stage, ReadPart(alto), {Choir, 0.085f, -0.3f, 0.4f, 0.8f, 0.15f}, 0.3f, 22);
  Play(&stage, ReadPart(tenor), {Choir, 0.09f, 0.35f, 0.4f, 0.8f, 0.15f}, 0.3f, 23);
  Play(&stage, ReadPart(ground), {Sub, 0.1f, 0, 0, 0.05f, 0}, 0.3f, 24);
  Play(&stage, ReadPart(drone), {ReedPad, 0.04f, 0, 0.6f, 0.5f, 0.2f}, 0, 25);
  Play(&stage, ReadPart(soloBow), {Bow, 0.085f, -0.1f, 0, 0.9f, 0.1f}, 0.3f, 26);
  Play(&stage, ReadPart(bells), {Glass, 0.28f, 0.3f, 0, 1.2f, 0.1f}, 0.3f, 27);
  const float length = Beats * Beat + 8;
  AddWind(&stage, length);
  return Record(&stage, 9, 0.9f, length);
}
