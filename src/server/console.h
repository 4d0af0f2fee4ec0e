// The lines that the person who runs the server types, or sends (server/control.h).
#pragma once

#include <string>

#include "server/control.h"

void ReadConsole();                        // What has been typed by now; waits for nothing.
// Does one line. Its answers, and their end, go to the asker; the end of some comes later, when what was asked is done.
void ConsoleLine(const std::string &line, Asker asker = Terminal);
