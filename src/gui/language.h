// All words that a player reads: one text file a language gives the numbered texts of the screens and the names of
// materials and components.
#pragma once

#include <string>
#include <vector>

#include "content/text_scan.h"

constexpr int GuiStringRows = 128;
extern std::vector<std::string> GuiStrings;  // row 0 empty; rows that neither the file nor the English one gives are empty. Main thread.

// Rows that came when there were language files already: lines of the chat, and the words of a game that saves nothing.
enum GuiText : u8 {
  TextAlone = 90, TextOnlyCommand = 91, TextTooLong = 92, TextLastShipGone = 93, TextLastShipUnread = 94,
  TextFolderTaken = 95, TextNotSaved = 96, TextPlayUnsaved = 97, TextSavesNothing = 98,
  TextShipNotKept = 108, TextSaveFailed = 109, TextSavedAgain = 110, TextReadInPart = 111, TextNoLoadOnServer = 112
};

std::string WordsOf(GuiText row);  // A copy of the row. Any thread.

// The whole file of the current language, the cursor at its begin and reading from bytes. False when it can't be read, with
// the error logged.
bool OpenLanguage(std::vector<u8> *bytes, TextCursor *cursor);
// From config/language/<Language>. Faults are logged and what was read stays. What it lacks, texts and names, is taken from the
// English file. False for what is no language file: then what is there stays, and only what is empty becomes English.
bool LoadLanguage();
