// Sounds while they are made: rows of samples, and what they are shaped with. Everything is worked out from its
// arguments, so that every run makes the same sounds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

constexpr int SampleRate = 44100;
constexpr float Pi = 3.14159265f;

using Samples = std::vector<float>;  // 1 is the loudest that a file can hold

// A line through points in time; before the first and behind the last it keeps their values.
struct Knot {
  float at;  // seconds
  float value;
};
using Curve = std::vector<Knot>;

// A tone of a struck thing: it dies away to a thousandth in `seconds`.
struct Mode {
  float hz;
  float seconds;
  float gain;
};

float ValueAt(const Curve &curve, float seconds);
int SamplesIn(float seconds);
float SecondsOf(const Samples &sound);
Samples Silence(float seconds);

// Noise with the same strength at all frequencies, and noise that falls by 3 dB an octave as wind and water do.
Samples WhiteNoise(float seconds, uint32_t seed);
Samples PinkNoise(float seconds, uint32_t seed);

// A sine that glides along a curve of hertz.
Samples Glide(float seconds, const Curve &hz);

// Filters of 12 dB an octave; `q` of 0.7 is smooth, more rings. The swept ones follow a curve of hertz.
void LowPass(Samples *sound, float hz, float q = 0.7f);
void HighPass(Samples *sound, float hz, float q = 0.7f);
void BandPass(Samples *sound, float hz, float q);
void SweepLow(Samples *sound, const Curve &hz, float q = 0.7f);
void SweepBand(Samples *sound, const Curve &hz, float q);

void Scale(Samples *sound, float gain);
void Shape(Samples *sound, const Curve &gain);
// Rises from and falls to silence along half a cosine.
void Fade(Samples *sound, float in, float out);
// Bends the peaks over, so that a quiet sound gets fuller; 1 is gentle.
void Saturate(Samples *sound, float drive);

// Adds a sound from a time on; the row grows as it must.
void Mix(Samples *into, const Samples &sound, float at = 0, float gain = 1);
// Adds a struck thing: all its tones begin at once.
void Strike(Samples *into, float at, const std::vector<Mode> &modes, float gain = 1);
// Shortens steady noise by `overlap` seconds: its end runs into its own beginning, so that it can be repeated.
void CloseLoop(Samples *sound, float overlap);

float PeakOf(const Samples &sound);
// The loudest 0.1 s as the ear has it, in dB below a full square wave.
float Loudness(const Samples &sound);
// Brings a sound to a loudness, or as near to it as its peaks allow (they stay 1.5 dB below full).
void SetLoudness(Samples *sound, float decibels);
