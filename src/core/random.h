// Random numbers of the world: a dSFMT generator of Mersenne exponent 521 with a buffer that is refilled every 8 draws.
#pragma once

#include <dSFMT.h>

#include "core/types.h"

struct RandomState {
  alignas(16) dsfmt_t state{};  // the library works on it in 16-byte steps, which its header doesn't say
};

void SeedGenerator(RandomState *g);                // By the time of day to the microsecond.
void SeedGeneratorWith(RandomState *g, u32 seed);  // By a given number: the same seed gives the same draws.
double NextRandom(RandomState *g);                 // Strictly between 0 and 1.
