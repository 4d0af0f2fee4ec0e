// Keys, mouse and wheel turned into action. Callbacks run on the main thread inside the buffer swap; HeldInputStep runs in
// the Movement piece with the move mutex held.
#pragma once

#include <atomic>

#include "gameplay/player.h"

extern std::atomic<bool> QuitRequested;   // the stop flag of every thread loop; written by the main thread
extern std::atomic<double> nextToolTime;  // earliest time of the next held-button action; both input roads write it

int RequestQuit();                              // The window-close callback: sets QuitRequested; 0.
void InstallInputCallbacks();
void HeldInputStep(Player *p);                  // p: the piece's working copy; it is stored by the caller.

// The callbacks, so that tests can call them. Actions are 1 for a press, 0 for a release.
void OnKey(int key, int action);
void OnMouseButton(int button, int action);
void OnMousePosition(int x, int y);             // Window coordinates.
void OnMouseWheel(int position);                // Notches since the position was last put back to 0.
