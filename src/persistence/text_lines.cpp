// Lines from a gzip stream, or from a plain text of one who writes ships by hand.
#include "persistence/text_lines.h"

#include <algorithm>
#include <cstring>

bool OpenLines(LineReader *r, const char *path) {
  if (!OpenGzipOrPlain(&r->gzip, path)) return false;
  r->text = std::make_unique_for_overwrite<char[]>(GzipBufferBytes);
  return true;
}

// Reads on until there is room for the longest line, or the end.
static void FillText(LineReader *r) {
  char *text = r->text.get();
  r->have -= r->at;
  std::memmove(text, text + r->at, r->have);
  r->at = 0;
  while (r->have < LongestShipLine && !r->gzip.ended) {
    const size_t room = std::min<u64>(GzipBufferBytes - r->have, r->budget);
    const size_t got = ReadGzip(&r->gzip, reinterpret_cast<u8 *>(text + r->have), room);
    r->have += got;
    r->budget -= got;
    if (r->budget == 0) r->gzip.ended = r->gzip.damaged = true;
  }
}

bool AtLastLine(LineReader *r) {
  if (r->have - r->at < LongestShipLine && !r->gzip.ended) FillText(r);
  return r->at == r->have;
}

bool NextLine(LineReader *r, std::string_view *line) {
  if (AtLastLine(r)) return false;
  const std::string_view rest(r->text.get() + r->at, std::min(r->have - r->at, LongestShipLine));
  const size_t end = rest.find('\n');
  *line = rest.substr(0, end == std::string_view::npos ? end : end + 1);
  r->at += line->size();
  if (!r->midLine) ++r->number;
  r->midLine = end == std::string_view::npos;
  return true;
}

void ReturnLine(LineReader *r, std::string_view line) {
  r->at -= line.size();
  --r->number;
  r->midLine = false;
}

static bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
static bool IsDigit(char c) { return c >= '0' && c <= '9'; }

int ScanNumbers(std::string_view line, int *numbers, int count) {
  const char *at = line.data(), *const end = at + line.size();
  for (int found = 0; found < count; ++found) {
    while (at != end && IsBlank(*at)) ++at;
    const bool minus = at != end && *at == '-';
    if (at != end && (minus || *at == '+')) ++at;
    if (at == end || !IsDigit(*at)) return found;
    i64 number = 0;
    for (; at != end && IsDigit(*at); ++at) number = std::min<i64>(number * 10 + (*at - '0'), i64{1} << 31);
    numbers[found] = static_cast<int>(minus ? -number : std::min<i64>(number, INT32_MAX));
  }
  return count;
}

std::string_view FirstWord(std::string_view *text) {
  const auto begin = std::find_if_not(text->begin(), text->end(), IsBlank);
  const auto end = std::find_if(begin, text->end(), IsBlank);
  const std::string_view word(begin, end);
  text->remove_prefix(static_cast<size_t>(end - text->begin()));
  return word;
}
