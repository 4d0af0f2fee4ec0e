// Where the music is put together: players on a stage, the hall around them, and the finished recording.
#pragma once

#include "sound_score.h"
#include "sound_voices.h"

struct Stereo {
  Samples left, right;
};

// A recording in the making.
struct Stage {
  float beat;   // seconds
  Stereo near;  // what is heard straight from the players
  Stereo far;   // what they give to the hall
};

// A player: where it sits, and how it plays.
struct Player {
  Voice voice;
  float gain;
  float pan;       // -1 left to 1 right
  float width;     // above 0 there are two players, so far to each side
  float hall;      // share that goes to the hall
  float loose;     // seconds by which notes may come early or late
};

// Plays a part from a beat on.
void Play(Stage *stage, const Part &part, const Player &player, float from, uint32_t seed);

// Puts a sound that isn't played from notes onto the stage.
void Place(Stage *stage, const Samples &sound, float seconds, float gain, float pan, float hall);

// Adds another stage's sound to this one.
void Join(Stage *stage, const Stage &other);

// Repeats what has been played so far, from side to side, each time weaker and duller.
void Echo(Stereo *sound, float seconds, float again);

// The sound of a hall with the given time until it is silent.
Stereo Hall(const Stereo &sound, float seconds, float dullHz);

// The recording: stage and hall, at the same loudness as all others, faded in and out.
Stereo Record(Stage *stage, float hallSeconds, float hallGain, float length);
