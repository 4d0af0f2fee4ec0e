// What a press says that can't do what it asks for: a sound and a short line under the crosshair. Main thread.
#pragma once

#include "core/types.h"

// In the order of their texts in the language file.
enum class Refusal : u8 { None, OutOfReach, NoTarget, OwnCell, FullCell, TooFast, NoRoom, InsideBlock, NotHere, OtherShip };

struct ToldRefusal {
  Refusal why = Refusal::None;
  double at = -1e9;  // seconds of the clock
};
extern ToldRefusal LastRefusal;        // the last one that was told

// Tells why, unless another press was refused less than a second before; whether it was told. now: seconds of the clock.
bool TellRefusal(Refusal why, double now);
void ForgetRefusal();                  // A press has worked: the line goes.
const char *RefusalLine(double now);   // In the player's language; null when there is nothing to show.
