// Impacts: a report and the chance of a punctured suit.
#pragma once

#include "gameplay/player.h"

void ImpactDamage(Player *p, float speedChange);  // Speed change on one axis, ten-thousandths of a block a tick.
