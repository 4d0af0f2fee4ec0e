// The input that is polled: what a key or a button does for as long as it is down.
#include "content/options.h"
#include "gameplay/chat.h"
#include "gameplay/input.h"
#include "gameplay/motion.h"
#include "gameplay/tools.h"

std::atomic<double> nextToolTime{0};

void HeldInputStep(Player *p) {
  if (uiMode == 2) {
    ChatHeldStep();
    return;
  }
  for (float &a : accel) a = 0;
  HeldTool();
  const Ship *ship = CurrentShip();
  if (ship != nullptr) JetStep(p, *ship);
}
