// The tutorial's state as the input looks at it.
#pragma once

#include <atomic>

#include "core/types.h"

extern std::atomic<u8> tutorialStep;  // what the step waits for; 0 is nothing

enum TutorialWait : u8 {
  WaitNothing = 0, WaitSpace = 1, WaitEsc = 2, WaitQ = 3, WaitBlockPlace = 4, WaitEscOrQ = 5, WaitKey1 = 6, WaitKey2 = 7,
  WaitKey3 = 8, WaitKey4 = 9, WaitKey5 = 10, WaitKey2or5 = 11, WaitMoveKeys = 12, WaitHeatTool = 13, WaitUse = 14
};

void StartTutorial();
void TutorialNext();
void EndTutorial();
bool TutorialAdvances(u8 wait);  // Whether the tutorial runs and waits for this; then it has advanced.
