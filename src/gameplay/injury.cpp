// Impacts. They are told on standard output and may puncture the suit; the player's health stays as it is.
#include "gameplay/injury.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <ctime>

#include "core/log.h"

constexpr float ImpactThreshold = 4.1f;
constexpr int MostDamage = 200, LeastPuncture = 4;
constexpr u8 LastWound = 15;

// The same impact in the same second gives the same result.
static void SeedByImpact(float speedChange) {
  const double sum = static_cast<double>(std::time(nullptr)) + static_cast<double>(speedChange);
  std::srand(static_cast<unsigned>(static_cast<i64>(sum)));
}

void ImpactDamage(Player *p, float speedChange) {
  SeedByImpact(speedChange);
  const float g = std::fabs(speedChange) * GravitiesPerUnit;
  if (!(g > ImpactThreshold)) return;
  const double luck = 2.0 / (std::rand() % 4 + 1.0);
  const int damage = static_cast<int>(std::min(luck * (static_cast<double>(g) - 3.0) * 4.0, double{MostDamage}));
  Print("Ouch! %f G Impact for %i damage! \n", static_cast<double>(g), damage);
  if (damage >= LeastPuncture && p->suitOn && std::rand() % (MostDamage + 1 - damage) < 30) {
    p->suitPunctured = true;
    Print("Oh no! Suit Puncture! \n");
  }
}

void WorsenWound(Player *p) {
  if (p->woundLevel < LastWound) ++p->woundLevel;
  else LogError("DEATH!");
}
