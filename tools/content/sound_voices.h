// The instruments of the music. Each gives one note at full strength about 1, its dying away included.
#pragma once

#include "sound_synth.h"

// `loud` from 0 to 1 makes a note softer in tone, too. The seed decides what no two notes share.
using Voice = Samples (*)(float hz, float seconds, float loud, uint32_t seed);

Samples WarmPad(float hz, float seconds, float loud, uint32_t seed);   // many soft strings that never quite agree
Samples ReedPad(float hz, float seconds, float loud, uint32_t seed);   // a harmonium behind a wall
Samples Choir(float hz, float seconds, float loud, uint32_t seed);     // voices on an open vowel
Samples FeltKeys(float hz, float seconds, float loud, uint32_t seed);  // a piano with felt on its hammers
Samples TineKeys(float hz, float seconds, float loud, uint32_t seed);  // struck tines, round and electric
Samples Glass(float hz, float seconds, float loud, uint32_t seed);     // small bells
Samples Harp(float hz, float seconds, float loud, uint32_t seed);      // a plucked string
Samples Bow(float hz, float seconds, float loud, uint32_t seed);       // one bowed string, far away
Samples Sub(float hz, float seconds, float loud, uint32_t seed);       // the ground below
Samples Drop(float hz, float seconds, float loud, uint32_t seed);      // a drop of water that falls into a pitch

// Noise between two frequencies that follow curves; for wind, tides and pumps.
Samples Air(float seconds, const Curve &hz, float q, const Curve &gain, uint32_t seed);
