// Blocks that are put down, and knocks: short, each with a body of its own so that the ear tells them apart at once.
#include "sound_effects.h"

// Noise in a band that dies away, the touch of every knock.
static Samples Puff(float seconds, float hz, float q, float rise, uint32_t seed) {
  Samples puff = WhiteNoise(seconds, seed);
  BandPass(&puff, hz, q);
  Shape(&puff, {{0, 0}, {rise, 1}, {rise + (seconds - rise) * 0.25f, 0.3f}, {seconds * 0.6f, 0.08f}, {seconds, 0}});
  return puff;
}

// A low push, falling in pitch.
static Samples Thump(float seconds, float from, float to) {
  Samples thump = Glide(seconds, {{0, from}, {seconds * 0.4f, to}});
  Shape(&thump, {{0, 0}, {0.004f, 1}, {seconds * 0.3f, 0.45f}, {seconds * 0.65f, 0.1f}, {seconds, 0}});
  return thump;
}

// Moss and cloth: a dull pat, and fibres that settle.
Samples PlaceSoft() {
  Samples sound = Silence(0.32f);
  Mix(&sound, Thump(0.24f, 118, 62), 0.004f, 0.75f);
  Samples pat = PinkNoise(0.26f, 11);
  SweepLow(&pat, {{0, 1100}, {0.08f, 420}, {0.26f, 180}});
  Shape(&pat, {{0, 0}, {0.012f, 1}, {0.07f, 0.5f}, {0.16f, 0.12f}, {0.26f, 0}});
  Mix(&sound, pat, 0, 2.2f);
  Mix(&sound, Puff(0.22f, 1500, 0.6f, 0.03f, 12), 0.04f, 0.16f);
  LowPass(&sound, 2600);
  HighPass(&sound, 42);
  Fade(&sound, 0.002f, 0.05f);
  return sound;
}

// Plastic: a hollow tock in the middle of the range.
Samples PlaceMedium() {
  Samples sound = Silence(0.4f);
  Mix(&sound, Thump(0.12f, 210, 135), 0, 0.5f);
  Strike(&sound, 0.001f, {{318, 0.22f, 1}, {547, 0.16f, 0.62f}, {874, 0.11f, 0.4f}, {1312, 0.06f, 0.2f}}, 0.6f);
  Mix(&sound, Puff(0.05f, 1700, 0.8f, 0.001f, 21), 0, 0.7f);
  Strike(&sound, 0.062f, {{402, 0.12f, 1}, {691, 0.08f, 0.5f}}, 0.16f);
  LowPass(&sound, 4200);
  Fade(&sound, 0.0008f, 0.08f);
  return sound;
}

// Stone, ceramic and crystal: a bright, dry clack, and grit.
Samples PlaceHard() {
  Samples sound = Silence(0.4f);
  Mix(&sound, Thump(0.09f, 260, 170), 0, 0.4f);
  Strike(&sound, 0.0005f, {{1460, 0.09f, 1}, {2287, 0.07f, 0.75f}, {3190, 0.055f, 0.6f}, {4715, 0.04f, 0.4f}, {6380, 0.03f, 0.2f}}, 0.5f);
  Mix(&sound, Puff(0.035f, 3800, 0.7f, 0.0006f, 31), 0, 1.0f);
  Strike(&sound, 0.043f, {{1712, 0.06f, 1}, {2604, 0.05f, 0.6f}}, 0.14f);
  Mix(&sound, Puff(0.2f, 5200, 0.9f, 0.02f, 32), 0.03f, 0.1f);
  Fade(&sound, 0.0004f, 0.08f);
  return sound;
}

// Metal: a clank whose tones lie beside each other and beat, and ring on.
Samples PlaceMetal() {
  Samples sound = Silence(1.55f);
  Mix(&sound, Thump(0.14f, 150, 92), 0, 0.45f);
  Strike(&sound, 0.0005f,
         {{411, 1.1f, 0.5f}, {415.5f, 1.0f, 0.36f}, {667, 1.5f, 0.6f}, {1093, 1.7f, 0.6f}, {1099, 1.4f, 0.45f},
          {1797, 1.3f, 0.46f}, {2633, 0.9f, 0.36f}, {2648, 0.75f, 0.26f}, {3871, 0.5f, 0.2f}, {5423, 0.25f, 0.12f}},
         0.3f);
  Mix(&sound, Puff(0.03f, 2900, 0.6f, 0.0006f, 41), 0, 0.55f);
  Strike(&sound, 0.058f, {{667, 0.3f, 1}, {1797, 0.2f, 0.5f}}, 0.06f);
  Fade(&sound, 0.0006f, 0.25f);
  return sound;
}

// The whole suit is hit: a blow that is felt more than heard, then everything loose rattles.
Samples Impact() {
  Samples sound = Silence(0.8f);
  Mix(&sound, Thump(0.45f, 96, 41), 0, 1.0f);
  Samples blow = PinkNoise(0.3f, 51);
  SweepLow(&blow, {{0, 2400}, {0.06f, 500}, {0.3f, 160}});
  Shape(&blow, {{0, 0}, {0.002f, 1}, {0.06f, 0.35f}, {0.3f, 0}});
  Mix(&sound, blow, 0, 1.6f);
  for (int i = 0; i < 5; i++) {
    const float at = 0.07f + 0.055f * static_cast<float>(i) + 0.012f * static_cast<float>(i * i % 3);
    Strike(&sound, at, {{730, 0.09f, 1}, {1190, 0.07f, 0.7f}, {2070, 0.04f, 0.4f}}, 0.09f / (1.0f + 0.6f * static_cast<float>(i)));
  }
  HighPass(&sound, 30);
  Fade(&sound, 0.001f, 0.2f);
  return sound;
}

// A small switch: down, and the spring behind it.
Samples Switch() {
  Samples sound = Silence(0.16f);
  Mix(&sound, Puff(0.012f, 2600, 0.9f, 0.0005f, 61), 0, 0.8f);
  Strike(&sound, 0.0005f, {{1180, 0.035f, 0.5f}, {2390, 0.02f, 0.3f}}, 0.6f);
  Mix(&sound, Puff(0.01f, 3600, 1.0f, 0.0005f, 62), 0.034f, 0.35f);
  Strike(&sound, 0.035f, {{1590, 0.07f, 0.4f}, {795, 0.05f, 0.3f}}, 0.35f);
  Fade(&sound, 0.0004f, 0.04f);
  return sound;
}

// No: two muffled tones, the second a minor third lower.
Samples Refusal() {
  Samples sound = Silence(0.5f);
  const float pitches[] = {233.1f, 196.0f};
  for (int i = 0; i < 2; i++) {
    const float hz = pitches[i];
    Samples tone = Glide(0.24f, {{0, hz}});
    Mix(&tone, Glide(0.24f, {{0, hz * 2}}), 0, 0.35f);
    Mix(&tone, Glide(0.24f, {{0, hz * 3}}), 0, 0.16f);
    Shape(&tone, {{0, 0}, {0.012f, 1}, {0.1f, 0.6f}, {0.24f, 0}});
    Fade(&tone, 0.004f, 0.08f);
    Mix(&sound, tone, 0.15f * static_cast<float>(i), 0.7f);
  }
  LowPass(&sound, 1300);
  Fade(&sound, 0.002f, 0.05f);
  return sound;
}
