// Reading text files that people edit.
#include "content/text_scan.h"

#include <charconv>
#include <cmath>
#include <limits>

#include "platform/files.h"

static bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The text from the cursor on; a plus sign in front of a digit or a point is skipped, since from_chars knows none.
static std::string_view NumberText(TextCursor *cursor) {
  std::string_view rest = cursor->text.substr(cursor->at, LongestWord);
  if (rest.size() > 1 && rest[0] == '+' && rest[1] != '-') rest.remove_prefix(1);
  return rest;
}

static void MoveTo(TextCursor *cursor, const char *place) { cursor->at = static_cast<size_t>(place - cursor->text.data()); }

bool AtEnd(TextCursor *cursor) {
  while (cursor->at < cursor->text.size() && IsSpace(cursor->text[cursor->at])) ++cursor->at;
  return cursor->at == cursor->text.size();
}

bool ScanWord(TextCursor *cursor, std::string_view *word) {
  if (AtEnd(cursor)) return false;
  const size_t begin = cursor->at;
  while (cursor->at < cursor->text.size() && cursor->at - begin < LongestWord && !IsSpace(cursor->text[cursor->at]))
    ++cursor->at;
  *word = cursor->text.substr(begin, cursor->at - begin);
  return true;
}

bool ScanInt(TextCursor *cursor, i64 *value) {
  if (AtEnd(cursor)) return false;
  const std::string_view digits = NumberText(cursor);
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), *value);
  if (fault == std::errc::invalid_argument) return false;
  if (fault == std::errc::result_out_of_range)
    *value = digits[0] == '-' ? std::numeric_limits<i64>::min() : std::numeric_limits<i64>::max();
  MoveTo(cursor, end);
  return true;
}

// Whether a number has an exponent below zero.
static bool IsSmall(std::string_view digits) {
  const size_t e = digits.find_first_of("eE");
  return e != std::string_view::npos && digits.substr(e, 2).back() == '-';
}

bool ScanFloat(TextCursor *cursor, float *value) {
  if (AtEnd(cursor)) return false;
  const std::string_view digits = NumberText(cursor);
  double read = 0;
  const auto [end, fault] = std::from_chars(digits.data(), digits.data() + digits.size(), read);
  if (fault == std::errc::invalid_argument) return false;
  MoveTo(cursor, end);
  // Only an exponent takes so few digits out of a double's range, and its sign tells at which end.
  if (fault == std::errc::result_out_of_range)
    read = IsSmall({digits.data(), end}) ? 0 : std::numeric_limits<double>::infinity();
  if (!(std::abs(read) <= std::numeric_limits<float>::max())) return false;
  *value = static_cast<float>(read);
  return true;
}

bool ScanLine(TextCursor *cursor, size_t longest, std::string_view *line) {
  if (cursor->at >= cursor->text.size()) return false;
  const std::string_view rest = cursor->text.substr(cursor->at, longest + 2);  // with room for CR LF
  const size_t end = rest.find('\n');
  const size_t length = end != 0 && end != std::string_view::npos && rest[end - 1] == '\r' ? end - 1 : end;
  const bool whole = length <= longest;
  *line = rest.substr(0, whole ? length : longest);
  cursor->at += whole ? end + 1 : line->size();
  return true;
}

bool LoadText(const char *path, size_t limit, std::vector<u8> *bytes, TextCursor *cursor) {
  if (!ReadWholeFile(path, limit, bytes)) return false;
  *cursor = {{reinterpret_cast<const char *>(bytes->data()), bytes->size()}, 0};
  return true;
}
