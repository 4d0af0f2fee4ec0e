// The lines that the person who runs the server types.
#pragma once

#include <string>

void ReadConsole();                        // What has been typed by now; waits for nothing.
void ConsoleLine(const std::string &line); // Does one line.
