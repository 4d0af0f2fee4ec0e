// The rows of a table file.
#include "content/table_reader.h"

#include <cstdio>

#include "core/log.h"

static constexpr size_t TableFileLimit = 16 << 20;  // bytes

// A word's whole text as a number.
static bool NumberOf(std::string_view word, i64 *value) {
  TextCursor cursor{word, 0};
  return ScanInt(&cursor, value) && cursor.at == word.size();
}

static bool ReadField(TableReader *reader, TextCursor *line, size_t width, size_t column, TableField *field) {
  char what[96];
  if (!ScanWord(line, &field->word)) {
    std::snprintf(what, sizeof what, "column %zu is missing", column);
  } else if (width == NumberColumn) {
    if (NumberOf(field->word, &field->number)) return true;
    std::snprintf(what, sizeof what, "column %zu is not a whole number", column);
  } else {
    if (field->word.size() <= width) return true;
    std::snprintf(what, sizeof what, "column %zu is longer than %zu characters", column, width);
  }
  return FailTableLine(reader, what);
}

// The next line that is neither a comment nor blank.
static bool NextDataLine(TableReader *reader, TextCursor *line) {
  std::string_view text;
  while (ScanLine(&reader->cursor, reader->cursor.text.size(), &text)) {
    ++reader->line;
    *line = {text, 0};
    if (!text.empty() && text[0] != '#' && !AtEnd(line)) return true;
  }
  return false;
}

bool OpenTable(TableReader *reader, const char *path, const char *lineMessage) {
  reader->path = path;
  reader->lineMessage = lineMessage;
  return LoadText(path, TableFileLimit, &reader->bytes, &reader->cursor);
}

bool NextTableRow(TableReader *reader, const std::vector<size_t> &widths, TableField *fields) {
  TextCursor line;
  if (!NextDataLine(reader, &line)) return false;
  if (line.text.size() > LongestTableLine) return FailTableLine(reader, "the line is longer than 4095 characters");
  for (size_t i = 0; i < widths.size(); ++i)
    if (!ReadField(reader, &line, widths[i], i + 1, &fields[i])) return false;
  return true;
}

bool FailTableLine(TableReader *reader, const char *what) {
  LogInt(reader->lineMessage, reader->line);
  LogTableLine(reader->path, reader->line, what);
  reader->failed = true;
  return false;
}

void LogTableLine(const char *path, int line, const char *what) {
  char text[256];
  std::snprintf(text, sizeof text, "%s:%i: %s", path, line, what);
  LogError(text);
}

bool SplitTags(std::string_view joined, size_t longest, bool cut, std::string_view *parts, int count) {
  for (int i = 0; i < count && !joined.empty(); ++i) {
    const size_t bar = i + 1 < count || cut ? joined.find('|') : std::string_view::npos;
    parts[i] = joined.substr(0, bar);
    if (parts[i].size() > longest) return false;
    joined = bar == std::string_view::npos ? std::string_view() : joined.substr(bar + 1);
  }
  return true;
}
