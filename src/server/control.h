// The control socket FOLDER/server.control: one line in, its answers out, and whether it was done. For the owner of the folder
// only. Who asks on it, or on the terminal, gets the answers.
#pragma once

#include <string>

#include "core/types.h"

using Asker = u32;
constexpr Asker Terminal = 0;

void OpenControl();                        // The folder must be this server's: a socket that lies there is a dead one's.
void PollControl(double now);              // Takes lines, gives answers; waits for nothing.
void TakeLastLines(double now);            // Those that came while the loop no longer ran. Waits for a moment at most.
void CloseControl();                       // With the last answers.

void Answer(Asker asker, const std::string &line);
void EndAnswer(Asker asker, bool done);    // Nothing more comes. Done, or it could not be.

// The other end: sends a line to the server of a folder and prints the answers as they come. The exit status of a program.
int SendToServer(const char *folder, const std::string &line);
