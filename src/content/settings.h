// What the game keeps from one run to the next beside the options: "config/text/settings", a line "name value" for each
// setting. The file is the players' too: lines that the game doesn't know stay as they are whenever it writes one.
#pragma once

#include <string>
#include <string_view>

#include "core/types.h"

enum class Setting : u8 { Ship };           // rows of the table in settings.cpp

// Start-up. Takes all values from the file; each fault is logged with file and line, and what it says doesn't count.
void LoadSettings();
std::string SettingText(Setting which);     // Empty when there is none. Any thread.
// Holds from now on, and is written at once unless the file has it already, or nothing is saved. False: refused, or not written (both logged; a
// file that can't be read, or is too large, stays as it is). Any thread; not with another leaf mutex held.
bool StoreSetting(Setting which, std::string_view value);
