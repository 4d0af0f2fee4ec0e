// What is heard inside the suit: jets, breath and heart.
#include "sound_effects.h"

#include "noise.h"

#include <cmath>

constexpr float JetLoudness = -25;
constexpr float JetLoopLength = 5, JetOverlap = 0.6f;

// The steady rush of the jets: gas in a pipe, and the suit that carries it to the ear. All three stages are cut from it.
static Samples JetRush(float seconds, uint32_t seed) {
  Samples rush = PinkNoise(seconds, seed);
  Samples pipe = rush, hiss = WhiteNoise(seconds, seed + 1), suit = PinkNoise(seconds, seed + 2);
  BandPass(&pipe, 520, 0.9f);
  BandPass(&hiss, 4200, 0.5f);
  LowPass(&suit, 150);
  HighPass(&suit, 38);
  LowPass(&rush, 1900);
  Scale(&rush, 0.4f);
  Mix(&rush, pipe, 0, 1.1f);
  Mix(&rush, hiss, 0, 0.3f);
  Mix(&rush, suit, 0, 1.2f);
  HighPass(&rush, 38);
  SetLoudness(&rush, JetLoudness);
  return rush;
}

// The valve opens with a tick, and the rush is there in a third of a second. The game goes over to the loop after half a
// second, or later where its pictures are slow, so this goes on as the loop does until then.
Samples JetStart() {
  Samples sound = JetRush(2.8f, 71);
  SweepLow(&sound, {{0, 300}, {0.12f, 1500}, {0.32f, 9000}, {0.4f, 18000}});
  Shape(&sound, {{0, 0}, {0.05f, 0.5f}, {0.16f, 0.72f}, {0.34f, 1}, {2.8f, 1}});
  Samples tick = Silence(0.06f);
  Strike(&tick, 0, {{1320, 0.03f, 1}, {2210, 0.02f, 0.6f}, {310, 0.05f, 1}}, 0.05f);
  Mix(&sound, tick);
  Fade(&sound, 0.002f, 0.15f);
  return sound;
}

Samples JetLoop() {
  Samples sound = JetRush(JetLoopLength + JetOverlap, 72);
  CloseLoop(&sound, JetOverlap);
  return sound;
}

// Begins as loud as the loop, sinks away as the pipe empties, and the valve sits down.
Samples JetStop() {
  Samples sound = JetRush(0.95f, 73);
  SweepLow(&sound, {{0, 18000}, {0.06f, 5000}, {0.3f, 900}, {0.95f, 180}});
  Shape(&sound, {{0, 1}, {0.08f, 0.8f}, {0.22f, 0.36f}, {0.45f, 0.12f}, {0.95f, 0}});
  Samples tick = Silence(0.1f);
  Strike(&tick, 0, {{980, 0.04f, 1}, {1710, 0.03f, 0.5f}, {260, 0.08f, 1}}, 0.035f);
  Mix(&sound, tick, 0.2f);
  Fade(&sound, 0.006f, 0.1f);
  return sound;
}

// Air through a throat: noise in the hollows of mouth and helmet, which close and open on the way.
static Samples Breath(float seconds, float low, float high, uint32_t seed) {
  Samples breath = Silence(seconds);
  const float mouths[3][3] = {{1, 2.2f, 1}, {2.3f, 2.6f, 0.5f}, {4.6f, 3, 0.2f}};  // of the lowest hollow, sharpness, gain
  for (int i = 0; i < 3; i++) {
    const float *mouth = mouths[i];
    Samples band = PinkNoise(seconds, seed + static_cast<uint32_t>(i));
    SweepBand(&band, {{0, low * mouth[0]}, {seconds * 0.55f, high * mouth[0]}, {seconds, low * mouth[0]}}, mouth[1]);
    Mix(&breath, band, 0, mouth[2]);
  }
  Fade(&breath, seconds * 0.45f, seconds * 0.5f);
  return breath;
}

// Breaths of slightly different length and depth in one row. It begins and ends in the rest between two breaths.
static Samples Breathing(int breaths, float in, float hold, float out, float rest, uint32_t seed) {
  Samples sound = Silence(rest / 2);
  Dice dice{seed};
  for (int i = 0; i < breaths; i++) {
    const float inLength = in * RollBetween(&dice, 0.93f, 1.07f), outLength = out * RollBetween(&dice, 0.93f, 1.07f);
    const float depth = RollBetween(&dice, 0.88f, 1.0f), at = SecondsOf(sound);
    const uint32_t own = seed + static_cast<uint32_t>(i) * 16;
    Mix(&sound, Breath(inLength, 430, 690, own), at, depth);
    Mix(&sound, Breath(outLength, 330, 260, own + 8), at + inLength + hold, depth * 0.8f);
    Mix(&sound, Silence(rest * RollBetween(&dice, 0.9f, 1.1f)), SecondsOf(sound));
  }
  Saturate(&sound, 1.2f);
  LowPass(&sound, 4200);
  Fade(&sound, 0.05f, 0.05f);
  return sound;
}

Samples SlowBreathing() {
  return Breathing(4, 1.9f, 0.35f, 2.3f, 1.5f, 81);
}

Samples FastBreathing() {
  return Breathing(6, 0.62f, 0.06f, 0.72f, 0.16f, 91);
}

// One half of a beat: a low push that the chest dampens.
static void Beat(Samples *into, float at, float hz, float gain) {
  Samples push = Glide(0.2f, {{0, hz * 1.35f}, {0.05f, hz}, {0.2f, hz * 0.8f}});
  Mix(&push, Glide(0.2f, {{0, hz * 2.6f}, {0.06f, hz * 2}}), 0, 0.28f);
  Shape(&push, {{0, 0}, {0.012f, 1}, {0.06f, 0.5f}, {0.12f, 0.14f}, {0.2f, 0}});
  Fade(&push, 0.004f, 0.03f);
  Mix(into, push, at, gain);
}

// Four beats, quicker and harder from stage to stage.
Samples HeartBeat(int stage) {
  const float rates[] = {54, 70, 92, 118, 148};  // beats a minute
  const float length = 60.0f / rates[stage - 1];
  const float gap = 0.16f + 0.28f * (length - 0.4f), hardness = static_cast<float>(stage);
  Samples sound = Silence(4 * length);
  for (int i = 0; i < 4; i++) {
    const float at = length * (static_cast<float>(i) + 0.08f), depth = i % 2 == 0 ? 1.0f : 0.93f;
    Beat(&sound, at, 52 + 2.5f * hardness, depth);
    Beat(&sound, at + gap, 66 + 3.5f * hardness, depth * 0.66f);
  }
  Saturate(&sound, 0.8f + 0.25f * hardness);
  LowPass(&sound, 260 + 60 * hardness);
  sound.resize(static_cast<size_t>(SamplesIn(4 * length)));
  Fade(&sound, 0.004f, 0.004f);
  return sound;
}
