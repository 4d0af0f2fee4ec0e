// What the game's loaders print while they read a ship, taken in so that the tool can say it in its own way, and all that the
// tool prints itself. Ships and their names are others' work: no control character of theirs reaches a terminal.
#pragma once

#include <string>
#include <vector>

struct Message {
  std::string text;
  bool fault = false;  // the ship isn't whole, or isn't what was written
};

std::string Shown(std::string text);    // Each control character, line ends too, and what is no UTF-8 as "?".
bool SetUpMessages();                   // Once, first of all: results keep standard output to themselves from here on.
void PrintResult(const char *format, ...) __attribute__((format(printf, 1, 2)));  // To standard output.
std::vector<Message> TakeMessages();    // All warnings and errors since the last call.
