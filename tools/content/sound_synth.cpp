// What sounds are shaped with.
#include "sound_synth.h"

#include "noise.h"

#include <algorithm>
#include <cmath>

constexpr float HighestPeak = 0.84f;

namespace {

// Coefficients of a filter of second order, in the usual transposed form.
struct Biquad {
  double b0, b1, b2, a1, a2;
};

}  // namespace

float ValueAt(const Curve &curve, float seconds) {
  if (seconds <= curve.front().at) return curve.front().value;
  for (size_t i = 1; i < curve.size(); i++) {
    if (seconds > curve[i].at) continue;
    const Knot &a = curve[i - 1], &b = curve[i];
    return a.value + (b.value - a.value) * (seconds - a.at) / std::max(b.at - a.at, 1e-6f);
  }
  return curve.back().value;
}

int SamplesIn(float seconds) {
  return static_cast<int>(seconds * SampleRate + 0.5f);
}

float SecondsOf(const Samples &sound) {
  return static_cast<float>(sound.size()) / SampleRate;
}

Samples Silence(float seconds) {
  return Samples(static_cast<size_t>(SamplesIn(seconds)), 0.0f);
}

Samples WhiteNoise(float seconds, uint32_t seed) {
  Samples sound = Silence(seconds);
  Dice dice{seed * 7919U + 1U};
  for (float &s : sound) s = RollBetween(&dice, -1, 1);
  return sound;
}

// Three slow followers of white noise and a rest of it, weighted so that the sum falls evenly.
Samples PinkNoise(float seconds, uint32_t seed) {
  Samples sound = WhiteNoise(seconds, seed);
  float slow = 0, middle = 0, fast = 0;
  for (float &s : sound) {
    slow = 0.99765f * slow + s * 0.0990460f;
    middle = 0.96300f * middle + s * 0.2965164f;
    fast = 0.57000f * fast + s * 1.0526913f;
    s = 0.25f * (slow + middle + fast + s * 0.1848f);
  }
  return sound;
}

Samples Glide(float seconds, const Curve &hz) {
  Samples sound = Silence(seconds);
  double turn = 0;
  for (size_t i = 0; i < sound.size(); i++) {
    sound[i] = static_cast<float>(std::sin(turn * 2.0 * 3.141592653589793));
    turn += static_cast<double>(ValueAt(hz, static_cast<float>(i) / SampleRate)) / SampleRate;
    turn -= std::floor(turn);
  }
  return sound;
}

static Biquad Divided(double b0, double b1, double b2, double a0, double a1, double a2) {
  return {b0 / a0, b1 / a0, b2 / a0, a1 / a0, a2 / a0};
}

static void Run(Samples *sound, const Biquad &f) {
  double z1 = 0, z2 = 0;
  for (float &s : *sound) {
    const double in = static_cast<double>(s), out = f.b0 * in + z1;
    z1 = f.b1 * in - f.a1 * out + z2;
    z2 = f.b2 * in - f.a2 * out;
    s = static_cast<float>(out);
  }
}

// The turn in a sample and the width that all of the filters are made from.
static double Turn(float hz) {
  return 2.0 * 3.141592653589793 * static_cast<double>(std::clamp(hz, 1.0f, 0.45f * SampleRate)) / SampleRate;
}

void LowPass(Samples *sound, float hz, float q) {
  const double w = Turn(hz), c = std::cos(w), a = std::sin(w) / (2.0 * static_cast<double>(q));
  Run(sound, Divided((1 - c) / 2, 1 - c, (1 - c) / 2, 1 + a, -2 * c, 1 - a));
}

void HighPass(Samples *sound, float hz, float q) {
  const double w = Turn(hz), c = std::cos(w), a = std::sin(w) / (2.0 * static_cast<double>(q));
  Run(sound, Divided((1 + c) / 2, -(1 + c), (1 + c) / 2, 1 + a, -2 * c, 1 - a));
}

void BandPass(Samples *sound, float hz, float q) {
  const double w = Turn(hz), c = std::cos(w), a = std::sin(w) / (2.0 * static_cast<double>(q));
  Run(sound, Divided(a, 0, -a, 1 + a, -2 * c, 1 - a));
}

// A filter of two integrators that stays stable while its frequency moves; gives the low and the band output.
static void RunSwept(Samples *sound, const Curve &hz, float q, bool band) {
  float ic1 = 0, ic2 = 0, g = 0;
  const float k = 1.0f / q;
  for (size_t i = 0; i < sound->size(); i++) {
    if (i % 16 == 0) {
      const float now = ValueAt(hz, static_cast<float>(i) / SampleRate);
      g = std::tan(Pi * std::clamp(now, 1.0f, 0.45f * SampleRate) / SampleRate);
    }
    const float a1 = 1.0f / (1.0f + g * (g + k)), v3 = (*sound)[i] - ic2;
    const float v1 = a1 * ic1 + g * a1 * v3, v2 = ic2 + g * v1;
    ic1 = 2 * v1 - ic1;
    ic2 = 2 * v2 - ic2;
    (*sound)[i] = band ? k * v1 : v2;
  }
}

void SweepLow(Samples *sound, const Curve &hz, float q) {
  RunSwept(sound, hz, q, false);
}

void SweepBand(Samples *sound, const Curve &hz, float q) {
  RunSwept(sound, hz, q, true);
}

void Scale(Samples *sound, float gain) {
  for (float &s : *sound) s *= gain;
}

void Shape(Samples *sound, const Curve &gain) {
  for (size_t i = 0; i < sound->size(); i++) (*sound)[i] *= ValueAt(gain, static_cast<float>(i) / SampleRate);
}

void Fade(Samples *sound, float in, float out) {
  const size_t count = sound->size();
  const size_t head = std::min(count, static_cast<size_t>(SamplesIn(in)));
  const size_t tail = std::min(count, static_cast<size_t>(SamplesIn(out)));
  for (size_t i = 0; i < head; i++) {
    (*sound)[i] *= 0.5f - 0.5f * std::cos(Pi * static_cast<float>(i) / static_cast<float>(head));
  }
  for (size_t i = 0; i < tail; i++) {
    (*sound)[count - 1 - i] *= 0.5f - 0.5f * std::cos(Pi * static_cast<float>(i) / static_cast<float>(tail));
  }
}

void Saturate(Samples *sound, float drive) {
  for (float &s : *sound) s = std::tanh(s * drive) / drive;
}

void Mix(Samples *into, const Samples &sound, float at, float gain) {
  const size_t start = static_cast<size_t>(SamplesIn(at));
  if (into->size() < start + sound.size()) into->resize(start + sound.size(), 0.0f);
  for (size_t i = 0; i < sound.size(); i++) (*into)[start + i] += gain * sound[i];
}

static void AddMode(Samples *into, size_t start, const Mode &mode, float gain) {
  const double turn = Turn(mode.hz);
  const double fall = std::pow(0.001, 1.0 / (static_cast<double>(mode.seconds) * SampleRate));
  const size_t end = std::min(into->size(), start + static_cast<size_t>(SamplesIn(mode.seconds * 1.2f)));
  // A turning pointer: its height is the sine that dies away.
  double x = static_cast<double>(gain * mode.gain), y = 0;
  const double c = std::cos(turn) * fall, s = std::sin(turn) * fall;
  for (size_t i = start; i < end; i++) {
    (*into)[i] += static_cast<float>(y);
    const double next = x * c - y * s;
    y = x * s + y * c;
    x = next;
  }
}

void Strike(Samples *into, float at, const std::vector<Mode> &modes, float gain) {
  for (const Mode &mode : modes) AddMode(into, static_cast<size_t>(SamplesIn(at)), mode, gain);
}

void CloseLoop(Samples *sound, float overlap) {
  const size_t shared = static_cast<size_t>(SamplesIn(overlap));
  const size_t kept = sound->size() - shared;
  for (size_t i = 0; i < shared; i++) {
    const float t = static_cast<float>(i) / static_cast<float>(shared) * Pi / 2;
    (*sound)[i] = (*sound)[i] * std::sin(t) + (*sound)[kept + i] * std::cos(t);
  }
  sound->resize(kept);
}

float PeakOf(const Samples &sound) {
  float peak = 0;
  for (const float s : sound) peak = std::max(peak, std::fabs(s));
  return peak;
}

// What the ear makes of it: little of the lowest tones, somewhat more of the high ones.
static Samples Weighted(const Samples &sound) {
  Samples heard = sound;
  HighPass(&heard, 60, 0.5f);
  Samples high = heard;
  HighPass(&high, 1500, 0.7f);
  for (size_t i = 0; i < heard.size(); i++) heard[i] += 0.58f * high[i];
  return heard;
}

float Loudness(const Samples &sound) {
  const Samples heard = Weighted(sound);
  const size_t window = static_cast<size_t>(SampleRate) / 10;
  double sum = 0, most = 1e-12;
  for (size_t i = 0; i < heard.size(); i++) {
    sum += static_cast<double>(heard[i] * heard[i]);
    if (i >= window) sum -= static_cast<double>(heard[i - window] * heard[i - window]);
    most = std::max(most, sum);
  }
  return static_cast<float>(10.0 * std::log10(most / static_cast<double>(window)));
}

void SetLoudness(Samples *sound, float decibels) {
  const float wanted = std::pow(10.0f, (decibels - Loudness(*sound)) / 20.0f);
  Scale(sound, std::min(wanted, HighestPeak / std::max(PeakOf(*sound), 1e-6f)));
}
