// The language files, made of the words and tutorials in tools/content/texts/.
#pragma once

// Writes "config/language/X" for every "words_X.txt" and its "tutorial_X.txt". False, with a line on the error output for
// each fault, when a text or a name is missing, too much, or has letters that the game can't draw.
bool WriteLanguages();
