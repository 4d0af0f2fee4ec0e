// Keys, mouse and wheel turned into action. Callbacks run on the main thread inside the buffer swap; HeldInputStep runs in
// the Movement piece with the move mutex held.
#pragma once

#include <atomic>
#include <string>

#include "gameplay/player.h"

extern std::atomic<bool> QuitRequested;   // the stop flag of every thread loop; written by the main thread
extern std::atomic<double> nextToolTime;  // earliest time of the next held-button action; both input roads write it
extern std::string BackupName;            // file name of the ship's backup, worked out when the menu is left for good; main thread

// Saves the ship under its name, and remembers it as the last one flown. The player is told in the chat of each failure, of the
// first save that works after one, and of what a save found in the file's place. Any thread, no mutex.
void SaveOrTell(Ship *ship);
int RequestQuit();                              // The window-close callback: sets QuitRequested; 0.
void InstallInputCallbacks();
void HeldInputStep(Player *p);                  // p: the piece's working copy; it is stored by the caller.

// The callbacks, so that tests can call them. Actions are 1 for a press, 0 for a release.
void OnKey(int key, int action);
void OnCharacter(int character, int action);    // Latin-1 and beyond; while typing chat or a ship's name.
void OnMouseButton(int button, int action);
void OnMousePosition(int x, int y);             // Window coordinates.
void OnMouseWheel(int position);                // Notches since the position was last put back to 0.
