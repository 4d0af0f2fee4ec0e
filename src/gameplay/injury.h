// Impacts: a report and the chance of a punctured suit.
#pragma once

#include "gameplay/player.h"

constexpr float GravitiesPerUnit = 0.00030612244f;  // of a speed that ends within a second: 3 metres a second for 10000 units, over 9.8

void ImpactDamage(Player *p, float speedChange);  // Speed change on one axis, ten-thousandths of a block a tick.
void WorsenWound(Player *p);                      // One level up to the last, 15; beyond it death is logged. Nothing wounds yet.
