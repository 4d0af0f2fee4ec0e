// Random numbers of the world.
#include "core/random.h"

#include <ctime>

void SeedGenerator(RandomState *g) { SeedGeneratorWith(g, static_cast<u32>(std::time(nullptr))); }

void SeedGeneratorWith(RandomState *g, u32 seed) { dsfmt_init_gen_rand(&g->state, seed); }

double NextRandom(RandomState *g) { return dsfmt_genrand_open_open(&g->state); }
