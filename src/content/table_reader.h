// The rows of a table file: one row a line, columns separated by white space, comments in lines that begin with "#".
// Numbers and words are checked against what their column can hold, and a fault is told with file and line.
#pragma once

#include <string_view>
#include <vector>

#include "content/text_scan.h"

constexpr size_t LongestTableLine = 4095;
constexpr size_t NumberColumn = 0;  // in a list of column widths: a number, not a word

struct TableField {
  i64 number = 0;         // of a number column
  std::string_view word;  // of a word column; lives as long as the reader
};

struct TableReader {
  const char *path = "";
  const char *lineMessage = "";  // what a fault in a line is announced with
  std::vector<u8> bytes;
  TextCursor cursor;
  int line = 0;                  // of the row read last, from 1
  bool failed = false;           // a line had a fault, which is logged
};

bool OpenTable(TableReader *reader, const char *path, const char *lineMessage);  // False when the file can't be read.
// The next row's fields, as many as there are widths; a width is a word's greatest length, or NumberColumn. What stands
// behind them in the line is skipped. False at the end of the file, and with failed set after a fault.
bool NextTableRow(TableReader *reader, const std::vector<size_t> &widths, TableField *fields);
inline bool IsTableId(i64 number) { return number >= 1 && number <= 65535; }  // All of it, before it is cut.
bool FailTableLine(TableReader *reader, const char *what);  // Logs a fault of this line and sets failed; always false.
void LogTableLine(const char *path, int line, const char *what);  // The error "path:line: what".
// Splits words joined by "|" into at most count parts. The last part ends at the next bar if cut is set, or takes the
// rest. False when a part is longer than longest.
bool SplitTags(std::string_view joined, size_t longest, bool cut, std::string_view *parts, int count);
