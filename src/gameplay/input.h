// Keys, mouse and wheel turned into action. Callbacks run on the main thread inside the buffer swap; HeldInputStep runs in
// the Movement piece with the move mutex held.
#pragma once

#include <atomic>

#include "gameplay/player.h"

extern std::atomic<bool> QuitRequested;         // the stop flag of every thread loop
extern std::atomic<double> nextToolTime;        // earliest time of the next held-button action

int RequestQuit();                              // The window-close callback: sets QuitRequested; 0.
void InstallInputCallbacks();
void HeldInputStep(Player *p);                  // p: the piece's working copy; it is stored by the caller.

// The callbacks, so that tests can call them.
void OnKey(int key, int action);
void OnChar(int character, int action);
void OnMouseButton(int button, int action);
void OnMousePosition(int x, int y);
void OnMouseWheel(int position);
