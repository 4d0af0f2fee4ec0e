// The lines and numbers of a text ship. Local to this folder.
#pragma once

#include <string>
#include <string_view>

#include "persistence/gzip_file.h"

constexpr size_t LongestShipLine = 2047;  // a longer one comes in pieces

struct LineReader {
  GzipReader gzip;
  std::unique_ptr<char[]> text;   // GzipBufferBytes
  size_t at = 0, have = 0;
  u64 budget = u64{4} << 30;      // bytes of text that may still come
  int number = 0;                 // of the line given last, from 1
  bool midLine = false;           // the piece given last was not the end of its line
};

bool OpenLines(LineReader *r, const char *path);  // False: it can't be opened, and there is nothing to close.
// The next line, with its end, or a piece of it. Lives until the next call. False at the end of the text.
bool NextLine(LineReader *r, std::string_view *line);
bool AtLastLine(LineReader *r);                   // Whether nothing is left.
void ReturnLine(LineReader *r, std::string_view line);  // The line given last will come again.

// The decimal numbers at the front of a line, at most count of them; how many there were. Too large ones stop at the ends
// of int.
int ScanNumbers(std::string_view line, int *numbers, int count);
std::string_view FirstWord(std::string_view *text);  // Takes a word off the front, without the blanks before it.

// One name in a folder, and none of those that a listing hides.
inline bool IsFileName(const std::string &name) {
  return !name.empty() && name[0] != '.' && name.find('/') == std::string::npos;
}
