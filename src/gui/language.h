// All words that a player reads: one text file a language gives the numbered texts of the screens and the names of
// materials and components.
#pragma once

#include <string>
#include <vector>

constexpr int GuiStringRows = 128;
extern std::vector<std::string> GuiStrings;  // row 0 empty; rows the file doesn't give are empty. Main thread.

void LoadLanguage();   // From config/language/<Language>; faults are logged and what was read stays.
