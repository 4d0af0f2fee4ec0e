// Random numbers of the world.
#include "core/random.h"

#include <chrono>

// Two seeds of one second have to differ: a held button draws the looks of several blocks in it.
void SeedGenerator(RandomState *g) {
  const auto now = std::chrono::system_clock::now().time_since_epoch();
  SeedGeneratorWith(g, static_cast<u32>(std::chrono::duration_cast<std::chrono::microseconds>(now).count()));
}

void SeedGeneratorWith(RandomState *g, u32 seed) { dsfmt_init_gen_rand(&g->state, seed); }

double NextRandom(RandomState *g) { return dsfmt_genrand_open_open(&g->state); }
