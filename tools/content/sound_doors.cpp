// Doors, the clamp of the suit, and the beams of tools.
#include "sound_effects.h"

#include <cmath>

constexpr int ClampSpeed = 16;        // how much faster than recorded the game plays the clamp
constexpr float ClampHighest = 1000;  // hertz: sixteen times that is still heard
constexpr float ClampLoudness = -18;  // when it is played that fast

// Every nth sample: how a sound without high tones is heard at n times its speed.
static Samples Quickened(const Samples &sound, int times) {
  Samples quick;
  for (size_t i = 0; i < sound.size(); i += static_cast<size_t>(times)) quick.push_back(sound[i]);
  return quick;
}

// One jaw of the clamp, told at its slow speed: a push far below hearing, the ring of its metal, and the scrape.
static void Jaw(Samples *into, float at, float pitch, float gain, uint32_t seed) {
  Samples push = Glide(1.1f, {{0, 13 * pitch}, {0.5f, 8.5f * pitch}});
  Shape(&push, {{0, 0}, {0.03f, 1}, {0.3f, 0.45f}, {1.1f, 0}});
  Mix(into, push, at, gain * 0.55f);
  Strike(into, at,
         {{39 * pitch, 1.9f, 0.5f}, {66.5f * pitch, 2.2f, 0.5f}, {109 * pitch, 1.8f, 0.36f}, {158 * pitch, 1.3f, 0.3f},
          {231 * pitch, 0.9f, 0.22f}, {347 * pitch, 0.6f, 0.12f}},
         gain * 0.45f);
  Samples scrape = WhiteNoise(0.32f, seed);
  BandPass(&scrape, 240 * pitch, 0.7f);
  Shape(&scrape, {{0, 0}, {0.006f, 1}, {0.08f, 0.35f}, {0.32f, 0}});
  Mix(into, scrape, at, gain * 1.5f);
}

// Two jaws that close one behind the other. At its own speed this is a heavy door, far away.
Samples Clamp() {
  Samples sound = Silence(4.4f);
  Jaw(&sound, 0.02f, 1, 1, 101);
  Jaw(&sound, 1.15f, 1.31f, 0.62f, 102);
  Samples air = PinkNoise(2.6f, 103);
  SweepBand(&air, {{0, 520}, {2.6f, 260}}, 1.2f);
  Shape(&air, {{0, 0}, {0.3f, 0.6f}, {1.4f, 0.2f}, {2.6f, 0}});
  Mix(&sound, air, 0.1f, 0.5f);
  LowPass(&sound, ClampHighest);
  LowPass(&sound, ClampHighest);
  Fade(&sound, 0.006f, 0.6f);
  Samples quick = Quickened(sound, ClampSpeed);
  const float before = PeakOf(quick);
  SetLoudness(&quick, ClampLoudness);
  Scale(&sound, PeakOf(quick) / before);
  return sound;
}

// Air rushes in, slower and slower, and a bolt falls into place.
Samples Airlock() {
  Samples sound = Silence(3.4f);
  Samples air = PinkNoise(2.7f, 111), hiss = WhiteNoise(2.7f, 112);
  SweepBand(&air, {{0, 1900}, {0.5f, 1300}, {2.7f, 360}}, 0.9f);
  BandPass(&hiss, 5200, 0.6f);
  Mix(&air, hiss, 0, 0.12f);
  Shape(&air, {{0, 0}, {0.06f, 1}, {0.5f, 0.8f}, {1.7f, 0.35f}, {2.7f, 0}});
  Mix(&sound, air, 0, 1.4f);
  Samples motor = Glide(2.2f, {{0, 41}, {0.4f, 58}, {1.9f, 58}, {2.2f, 34}});
  Saturate(&motor, 3);
  LowPass(&motor, 240);
  Fade(&motor, 0.3f, 0.25f);
  Mix(&sound, motor, 0.35f, 0.35f);
  Samples bolt = Silence(0.7f);
  Strike(&bolt, 0, {{74, 0.35f, 1.3f}, {181, 0.3f, 0.6f}, {402, 0.4f, 0.4f}, {655, 0.35f, 0.3f}, {1310, 0.2f, 0.15f}}, 0.6f);
  Mix(&sound, bolt, 2.62f, 1);
  Fade(&sound, 0.004f, 0.3f);
  return sound;
}

// A wet muscle lets go, breathes, and closes: bands that wander over one another.
Samples OrganicAirlock() {
  Samples sound = Silence(1.9f);
  for (int i = 0; i < 4; i++) {
    const float f = 1.0f + 0.55f * static_cast<float>(i), late = 0.07f * static_cast<float>(i);
    Samples band = PinkNoise(1.7f, 121 + static_cast<uint32_t>(i));
    SweepBand(&band, {{0, 150 * f}, {0.16f + late, 620 * f}, {0.34f, 240 * f}, {0.55f + late, 820 * f}, {1.0f, 300 * f}, {1.7f, 110 * f}},
              7);
    Fade(&band, 0.02f, 0.3f);
    Mix(&sound, band, late * 0.4f, 1.0f / f);
  }
  Shape(&sound, {{0, 0}, {0.05f, 1}, {0.2f, 0.3f}, {0.5f, 0.9f}, {0.9f, 0.4f}, {1.3f, 0.5f}, {1.9f, 0}});
  for (int i = 0; i < 6; i++) {
    const float at = 0.06f + 0.19f * static_cast<float>(i) + 0.03f * static_cast<float>(i % 2);
    Samples bubble = Glide(0.07f, {{0, 230.0f + 60.0f * static_cast<float>(i % 3)}, {0.07f, 560.0f + 90.0f * static_cast<float>(i % 3)}});
    Fade(&bubble, 0.01f, 0.05f);
    Mix(&sound, bubble, at, 0.12f);
  }
  Fade(&sound, 0.01f, 0.25f);
  return sound;
}

// A tone that falls and a buzz on it.
static Samples Beam(float seconds, const Curve &hz, float buzz, uint32_t seed) {
  Samples beam = Glide(seconds, hz);
  for (size_t i = 0; i < beam.size(); i++) {
    beam[i] *= 1 + buzz * std::sin(2 * Pi * 96 * static_cast<float>(i) / SampleRate);
  }
  Saturate(&beam, 1.8f);
  Samples air = WhiteNoise(seconds, seed);
  SweepBand(&air, hz, 1.4f);
  Mix(&beam, air, 0, 0.5f);
  LowPass(&beam, 6500);
  return beam;
}

Samples Laser(int kind) {
  Samples sound;
  if (kind == 1) {
    sound = Beam(0.7f, {{0, 1500}, {0.08f, 880}, {0.5f, 760}, {0.7f, 420}}, 0.5f, 131);
    Shape(&sound, {{0, 0}, {0.01f, 1}, {0.12f, 0.6f}, {0.5f, 0.45f}, {0.7f, 0}});
  } else if (kind == 2) {
    sound = Beam(0.95f, {{0, 720}, {0.1f, 330}, {0.7f, 240}, {0.95f, 110}}, 0.8f, 132);
    Shape(&sound, {{0, 0}, {0.02f, 1}, {0.2f, 0.7f}, {0.7f, 0.5f}, {0.95f, 0}});
  } else {
    sound = Beam(0.24f, {{0, 2300}, {0.05f, 1100}, {0.24f, 520}}, 0.2f, 133);
    Shape(&sound, {{0, 0}, {0.004f, 1}, {0.07f, 0.4f}, {0.24f, 0}});
  }
  Fade(&sound, 0.003f, 0.06f);
  return sound;
}
