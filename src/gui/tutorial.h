// The tutorial: a script of short texts in the language file, each of which names one action of the player. It runs while the
// option Tutorial is on. Main thread, but tutorialStep.
#pragma once

#include <atomic>
#include <string>

#include "core/types.h"

constexpr int TutorialMaxLines = 8;
constexpr size_t TutorialLineLimit = 39;                 // bytes
extern std::string TutorialLines[TutorialMaxLines];      // the wrapped lines of the step; each begins with a blank
extern u8 TutorialLineCount;
extern u8 TutorialSide;                                  // anchor of the window: 4 right, 5 left
extern std::atomic<u8> tutorialStep;                     // what the step waits for; 0 is nothing

enum TutorialWait : u8 {
  WaitNothing = 0, WaitSpace = 1, WaitEsc = 2, WaitQ = 3, WaitBlockPlace = 4, WaitEscOrQ = 5, WaitKey1 = 6, WaitKey2 = 7,
  WaitKey3 = 8, WaitKey4 = 9, WaitKey5 = 10, WaitKey2or5 = 11, WaitMoveKeys = 12, WaitHeatTool = 13, WaitUse = 14
};

void StartTutorial();            // Opens the script of the current language; without one the option goes off.
void TutorialNext();             // Shows the next step; may put a component in the player's hand, or end the tutorial.
void EndTutorial();
bool TutorialAdvances(u8 wait);  // Whether the tutorial runs and waits for this; then it has advanced, and at its end the
                                 // options are saved.
