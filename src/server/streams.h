// The ships' stream files, which games download, and the edits that they lack. All but the writing itself is the loop's thread.
#pragma once

#include <string>
#include <vector>

#include "net/wire.h"
#include "server/control.h"

std::string StreamPath(const std::string &stem);
void NewStreamFiles();             // For the ships that have just been loaded: none of them has a file yet.
bool RefreshStreamFiles();         // Writes those of all ships that have changed, and waits for it. False: one failed (logged).
void WantStreamFiles();            // The same in the background, soon: PollStreamFiles begins and ends it.
void TellWhenSaved(Asker asker);   // ... and tells the asker when all edits up to now are in the files, or why not.
void PollStreamFiles(double now);
void NoteFreshEdit(const BlockEdit &edit);     // It is about to be done.
const std::vector<BlockEdit> &FreshEdits();    // What is done behind a ship's file to have the ship, in order.
bool HasStreamFile(u16 row);       // The ship's file and FreshEdits are the ship.
bool StreamFilesComing();          // Too much was edited for FreshEdits, and a ship has no such file until it is written.
