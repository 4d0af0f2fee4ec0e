// The sounds of the game, each made by a function of its own.
#pragma once

#include "sound_synth.h"

#include <string>

// Writes all of them into "config/audio/sounds". False when one can't be written.
bool WriteSounds();

// The paths of all that the game needs.
std::vector<std::string> SoundPaths();

// Blocks that are put down, by what they are made of, and the knocks of the suit.
Samples PlaceSoft();
Samples PlaceMedium();
Samples PlaceHard();
Samples PlaceMetal();
Samples Impact();
Samples Switch();
Samples Refusal();

// The suit: its jets in three stages that join, and the one inside.
Samples JetStart();
Samples JetLoop();
Samples JetStop();
Samples SlowBreathing();
Samples FastBreathing();
Samples HeartBeat(int stage);  // 1 calm to 5 at its limit

// Doors and tools.
Samples Clamp();
Samples Airlock();
Samples OrganicAirlock();
Samples Laser(int kind);  // 1 long, 2 heavy, 3 a short pulse
