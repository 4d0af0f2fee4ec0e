// The music of the game: pieces for someone who drifts alone and has time.
#pragma once

#include "sound_hall.h"

// Writes all pieces, or the one with this name, into "config/audio/music". False when one can't be written or isn't there.
bool WriteMusic(const char *only);

Stereo AshenfoldTidewheel();    // a wheel of six that turns over slow tides
Stereo QuietrockLullaby();      // a song in three for felted keys
Stereo LongWayRound();          // voices and a drone, without a beat
Stereo NightshiftHydroponics(); // harps in five, and water
Stereo LastFerryOut();          // bells call, a bow answers
