// Random numbers that depend on nothing but their arguments.
#include "noise.h"

#include <cmath>

static uint32_t Scramble(uint32_t h) {
  h ^= h >> 16;
  h *= 0x7feb352dU;
  h ^= h >> 15;
  h *= 0x846ca68bU;
  h ^= h >> 16;
  return h;
}

static float ToUnit(uint32_t h) {
  return static_cast<float>(h >> 8) * (1.0f / 16777216.0f);
}

float Roll(Dice *dice) {
  dice->state += 0x9e3779b9U;
  return ToUnit(Scramble(dice->state));
}

float RollBetween(Dice *dice, float low, float high) {
  return low + (high - low) * Roll(dice);
}

int RollInt(Dice *dice, int low, int high) {
  return low + static_cast<int>(Roll(dice) * static_cast<float>(high - low + 1));
}

float LatticeValue(int x, int y, int z, uint32_t seed) {
  uint32_t h = Scramble(static_cast<uint32_t>(x) + seed * 0x9e3779b9U);
  h = Scramble(h ^ static_cast<uint32_t>(y));
  return ToUnit(Scramble(h + 0x632be5abU * static_cast<uint32_t>(z)));
}

static float Ease(float t) {
  return t * t * (3.0f - 2.0f * t);
}

static float Mix(float a, float b, float t) {
  return a + (b - a) * t;
}

float SmoothNoise(float x, float y, float z, uint32_t seed) {
  const int ix = static_cast<int>(std::floor(x));
  const int iy = static_cast<int>(std::floor(y));
  const int iz = static_cast<int>(std::floor(z));
  const float tx = Ease(x - static_cast<float>(ix));
  const float ty = Ease(y - static_cast<float>(iy));
  const float tz = Ease(z - static_cast<float>(iz));
  float plane[2];
  for (int k = 0; k < 2; k++) {
    float line[2];
    for (int j = 0; j < 2; j++) {
      line[j] = Mix(LatticeValue(ix, iy + j, iz + k, seed), LatticeValue(ix + 1, iy + j, iz + k, seed), tx);
    }
    plane[k] = Mix(line[0], line[1], ty);
  }
  return Mix(plane[0], plane[1], tz);
}

float LayeredNoise(float x, float y, float z, int octaves, uint32_t seed) {
  float sum = 0.0f;
  float weight = 0.5f;
  float total = 0.0f;
  for (int i = 0; i < octaves; i++) {
    sum += weight * SmoothNoise(x, y, z, seed + static_cast<uint32_t>(i));
    total += weight;
    weight *= 0.5f;
    // Each octave is turned against the one before, so that their lattices don't line up.
    const float u = 1.30f * x + 1.54f * y + 0.12f;
    const float v = -1.01f * x + 0.85f * y + 1.52f * z + 3.7f;
    const float w = 1.16f * x - 0.98f * y + 1.32f * z + 7.3f;
    x = u;
    y = v;
    z = w;
  }
  return sum / total;
}
