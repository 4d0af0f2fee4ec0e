// The tutorial's state: it runs while the option Tutorial is on. A step shows nothing and waits for nothing until the
// script has a window to be read in.
#include "gui/tutorial.h"

#include "content/options.h"
#include "core/log.h"

std::atomic<u8> tutorialStep{WaitNothing};

void StartTutorial() {
  Options.Tutorial = true;
  tutorialStep = WaitNothing;
}

void TutorialNext() { tutorialStep = WaitNothing; }

void EndTutorial() {
  LogInfo("Ending Tutorial");
  Options.Tutorial = false;
  tutorialStep = WaitNothing;
}

bool TutorialAdvances(u8 wait) {
  if (wait == WaitNothing || !Options.Tutorial || tutorialStep != wait) return false;
  TutorialNext();
  return true;
}
