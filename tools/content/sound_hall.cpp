// Where the music is put together.
#include "sound_hall.h"

#include "noise.h"

#include <algorithm>
#include <array>
#include <cmath>

constexpr float MusicLoudness = -21;  // dB, mean over the piece
constexpr float PeakKnee = 0.6f, PeakRoom = 0.24f;  // peaks above the knee are bent into the room above it
constexpr size_t LineCount = 8;
constexpr std::array<size_t, LineCount> lineLengths{1427, 1783, 1949, 2311, 2731, 3163, 3539, 4093};
constexpr std::array<size_t, 3> diffuserLengths{241, 389, 601};
constexpr float PreDelay = 0.028f;

void Place(Stage *stage, const Samples &sound, float seconds, float gain, float pan, float hall) {
  const float angle = (pan + 1) * Pi / 4, left = gain * std::cos(angle), right = gain * std::sin(angle);
  Mix(&stage->near.left, sound, seconds, left);
  Mix(&stage->near.right, sound, seconds, right);
  // The hall hears everyone from nearer to its middle.
  Mix(&stage->far.left, sound, seconds + PreDelay, hall * (0.7f * left + 0.3f * right));
  Mix(&stage->far.right, sound, seconds + PreDelay, hall * (0.3f * left + 0.7f * right));
}

void Play(Stage *stage, const Part &part, const Player &player, float from, uint32_t seed) {
  Dice dice{seed * 40503U + 3U};
  for (const Note &note : part) {
    const float late = RollBetween(&dice, -player.loose, player.loose), touch = RollBetween(&dice, 0.92f, 1.05f);
    const float seconds = std::max(0.0f, (from + note.at) * stage->beat + late), loud = std::min(1.0f, note.loud * touch);
    const uint32_t own = seed * 131U + static_cast<uint32_t>(&note - part.data()) * 2U;
    const float length = note.length * stage->beat;
    if (player.width <= 0) {
      Place(stage, player.voice(note.hz, length, loud, own), seconds, player.gain, player.pan, player.hall);
      continue;
    }
    Place(stage, player.voice(note.hz, length, loud, own), seconds, player.gain * 0.7f, player.pan - player.width, player.hall);
    Place(stage, player.voice(note.hz, length, loud, own + 1), seconds, player.gain * 0.7f, player.pan + player.width, player.hall);
  }
}

void Join(Stage *stage, const Stage &other) {
  Mix(&stage->near.left, other.near.left);
  Mix(&stage->near.right, other.near.right);
  Mix(&stage->far.left, other.far.left);
  Mix(&stage->far.right, other.far.right);
}

void Echo(Stereo *sound, float seconds, float again) {
  const size_t late = static_cast<size_t>(SamplesIn(seconds)), count = std::max(sound->left.size(), sound->right.size()) + late * 4;
  sound->left.resize(count, 0.0f);
  sound->right.resize(count, 0.0f);
  float dullLeft = 0, dullRight = 0;
  for (size_t i = late; i < count; i++) {
    dullLeft += 0.25f * (sound->right[i - late] - dullLeft);
    dullRight += 0.25f * (sound->left[i - late] - dullRight);
    sound->left[i] += again * dullLeft;
    sound->right[i] += again * dullRight;
  }
}

// Smears a sound over a few milliseconds without colouring it.
static void Diffuse(Samples *sound, size_t length) {
  Samples line(length, 0.0f);
  for (size_t i = 0; i < sound->size(); i++) {
    float &back = line[i % length];
    const float in = (*sound)[i], out = back - 0.6f * in;
    back = in + 0.6f * out;
    (*sound)[i] = out;
  }
}

// Eight lines of different length feed one another; what comes out of them has lost its beginning.
Stereo Hall(const Stereo &sound, float seconds, float dullHz) {
  Stereo in = sound, out{Samples(sound.left.size(), 0.0f), Samples(sound.left.size(), 0.0f)};
  for (Samples *side : {&in.left, &in.right}) {
    HighPass(side, 130);
    for (const size_t length : diffuserLengths) Diffuse(side, length);
  }
  std::array<Samples, LineCount> lines;
  std::array<float, LineCount> kept{}, dulled{}, ends{};
  for (size_t n = 0; n < LineCount; n++) {
    lines[n].assign(lineLengths[n], 0.0f);
    kept[n] = std::pow(0.001f, static_cast<float>(lineLengths[n]) / (seconds * SampleRate));
  }
  const float follow = 1 - std::exp(-2 * Pi * dullHz / SampleRate);
  for (size_t i = 0; i < in.left.size(); i++) {
    float sum = 0;
    for (size_t n = 0; n < LineCount; n++) {
      dulled[n] += follow * (lines[n][i % lineLengths[n]] - dulled[n]);
      ends[n] = kept[n] * dulled[n];
      sum += ends[n];
    }
    for (size_t n = 0; n < LineCount; n++) {
      lines[n][i % lineLengths[n]] = ends[n] - sum * (2.0f / LineCount) + (n % 2 == 0 ? in.left[i] : in.right[i]);
      (n % 2 == 0 ? out.left[i] : out.right[i]) += (n % 4 < 2 ? 0.35f : -0.35f) * ends[n];
    }
  }
  return out;
}

static float MeanPower(const Samples &sound) {
  Samples heard = sound;
  HighPass(&heard, 60, 0.5f);
  double sum = 0;
  for (const float s : heard) sum += static_cast<double>(s * s);
  return static_cast<float>(sum / static_cast<double>(std::max<size_t>(heard.size(), 1)));
}

// Up to the knee as it is, above it bent.
static float Bent(float s) {
  const float size = std::fabs(s);
  if (size <= PeakKnee) return s;
  return std::copysign(PeakKnee + PeakRoom * std::tanh((size - PeakKnee) / PeakRoom), s);
}

Stereo Record(Stage *stage, float hallSeconds, float hallGain, float length) {
  const size_t count = static_cast<size_t>(SamplesIn(length));
  for (Samples *side : {&stage->near.left, &stage->near.right, &stage->far.left, &stage->far.right}) side->resize(count, 0.0f);
  const Stereo hall = Hall(stage->far, hallSeconds, 4200);
  Stereo record = stage->near;
  Mix(&record.left, hall.left, 0, hallGain);
  Mix(&record.right, hall.right, 0, hallGain);
  for (Samples *side : {&record.left, &record.right}) HighPass(side, 28);
  const float power = 0.5f * (MeanPower(record.left) + MeanPower(record.right));
  const float gain = std::pow(10.0f, MusicLoudness / 20) / std::sqrt(std::max(power, 1e-9f));
  for (Samples *side : {&record.left, &record.right}) {
    Scale(side, gain);
    for (float &s : *side) s = Bent(s);
    Fade(side, 1.5f, 7);
  }
  return record;
}
