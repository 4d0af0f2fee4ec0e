// Texts that come again and again.
#include "core/repeats.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

constexpr double Second = 1, LongAgo = -1e9;

u64 HashOf(const char *s) {
  u64 h = 0xcbf29ce484222325u;
  for (; *s != '\0'; ++s) h = (h ^ static_cast<u8>(*s)) * 0x100000001b3u;
  return h;
}

double LastTime(const RepeatedLine &row) { return row.times[(row.oldest + MostInASecond - 1) % MostInASecond]; }

// "text (N times more)" with the line end of the text.
void TellCount(LineRepeats *r, RepeatedLine *row, TellLine tell) {
  const size_t length = std::strlen(row->text);
  const char *end = length > 1 && row->text[length - 2] == ' ' ? " \n" : "\n";
  char line[LineRoom + 32];
  std::snprintf(line, sizeof line, "%.*s (%u times more)%s", static_cast<int>(length - std::strlen(end)), row->text, row->held, end);
  row->held = 0;
  --r->holding;
  if (tell != nullptr) tell(line);
}

void Clear(RepeatedLine *row) {
  std::fill(std::begin(row->times), std::end(row->times), LongAgo);
  row->oldest = 0;
  row->text[0] = '\0';
}

// Lines without a count go first, the one that came least of late before others; a count that has to go is told.
RepeatedLine *RowToUse(LineRepeats *r, TellLine tell) {
  RepeatedLine *row = std::min_element(std::begin(r->rows), std::end(r->rows), [](const RepeatedLine &a, const RepeatedLine &b) {
    if ((a.held == 0) != (b.held == 0)) return a.held == 0;
    if ((a.text[0] == '\0') != (b.text[0] == '\0')) return a.text[0] == '\0';
    return LastTime(a) < LastTime(b);
  });
  if (row->held != 0) TellCount(r, row, tell);
  Clear(row);
  return row;
}

RepeatedLine *RowOf(LineRepeats *r, const char *line, TellLine tell) {
  const u64 hash = HashOf(line);
  for (RepeatedLine &row : r->rows)
    if (row.hash == hash && std::strcmp(row.text, line) == 0) return &row;
  RepeatedLine *row = RowToUse(r, tell);
  row->hash = hash;
  std::snprintf(row->text, sizeof row->text, "%s", line);
  return row;
}

}  // namespace

bool TakeLine(LineRepeats *r, const char *line, double now, TellLine tell) {
  TellCounts(r, now, tell);
  RepeatedLine *row = RowOf(r, line, tell);
  const bool tooOften = now - row->times[row->oldest] < Second;
  row->times[row->oldest] = now;
  row->oldest = (row->oldest + 1) % MostInASecond;
  if (row->held == 0 && !tooOften) return true;
  if (row->held++ == 0) {
    row->heldFrom = now;
    ++r->holding;
  }
  return false;
}

void TellCounts(LineRepeats *r, double now, TellLine tell) {
  if (r->holding == 0) return;
  for (RepeatedLine &row : r->rows)
    if (row.held != 0 && now - row.heldFrom >= Second) TellCount(r, &row, tell);
}

void ForgetLines(LineRepeats *r, TellLine tell) {
  for (RepeatedLine &row : r->rows) {
    if (row.held != 0) TellCount(r, &row, tell);
    Clear(&row);
  }
}
