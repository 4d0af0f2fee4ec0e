// All words that a player reads: one text file a language gives the numbered texts of the screens and the names of
// materials and components.
#pragma once

#include <string>
#include <vector>

#include "content/text_scan.h"

constexpr int GuiStringRows = 128;
extern std::vector<std::string> GuiStrings;  // row 0 empty; rows the file doesn't give are empty. Main thread.

// The whole file of the current language, the cursor at its begin and reading from bytes. False when it can't be read, with
// the error logged.
bool OpenLanguage(std::vector<u8> *bytes, TextCursor *cursor);
// From config/language/<Language>. Faults are logged and what was read stays. False, and nothing changed, for what is no
// language file.
bool LoadLanguage();
