// Reading text files that people edit: words, numbers and lines taken one after the other from a text in memory. Nothing
// here fails on rubbish or at the end of the text; each scan says whether it found what it was asked for.
#pragma once

#include <string_view>
#include <vector>

#include "core/types.h"

constexpr size_t LongestWord = 255;  // a longer run of letters comes as several words

struct TextCursor {
  std::string_view text;
  size_t at = 0;
};

bool AtEnd(TextCursor *cursor);                               // Skips white space; whether nothing else is left.
bool ScanWord(TextCursor *cursor, std::string_view *word);    // The next word. False only at the end of the text.
bool ScanInt(TextCursor *cursor, i64 *value);                 // Takes as much as is a number; too large: the end of i64.
bool ScanFloat(TextCursor *cursor, float *value);  // Too small: 0. Too large: none, but the cursor has moved past it.
// The rest of the line without its end, or its first longest characters: the next call then goes on in it. False at the
// end of the text.
bool ScanLine(TextCursor *cursor, size_t longest, std::string_view *line);

// A text file in memory. False when it is missing or over the limit.
bool LoadText(const char *path, size_t limit, std::vector<u8> *bytes, TextCursor *cursor);
