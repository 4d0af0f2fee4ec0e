// Texts that come again and again, as from a loop that finds the same fault 30 times a second for hours. The first 20 within a
// second are said; further ones are counted, and once a second the text is told with the count: "... (180 times more)". A text
// is one line with all its numbers, so that nothing new is ever held back.
//
// A row holds one text. While held is 0 the text may be said, unless the twentieth before it is less than a second old. From
// the first one that is held until the count is told a second later, all of them are held, so that the lines stay in order.
// Times are seconds of any clock that doesn't go back.
#pragma once

#include "core/types.h"

constexpr size_t LineRoom = 2048;   // bytes of a line with its end and the 0 behind it
constexpr int MostInASecond = 20;

struct RepeatedLine {
  u64 hash = 0;
  double times[MostInASecond] = {};  // when it came last, a ring
  int oldest = 0;                    // of times
  u32 held = 0;                      // came and was not said, since heldFrom
  double heldFrom = 0;
  char text[LineRoom] = "";          // with its line end; empty in a row without a text
};

struct LineRepeats {
  RepeatedLine rows[64];
  int holding = 0;  // rows with a count that is not told
};

using TellLine = void (*)(const char *line);

// Whether this line is to be said now; if not, it is counted. Counts of other lines that have to go from the table are told.
bool TakeLine(LineRepeats *r, const char *line, double now, TellLine tell);
void TellCounts(LineRepeats *r, double now, TellLine tell);  // Those that are a second old.
void ForgetLines(LineRepeats *r, TellLine tell);             // Tells all counts; every line is new from here on. Null: tells nothing.
