// Backups: what a stream file was like before the first save of a day stays beside it, as <stem><date>.bak. The backup list
// loads it like any other ship. A backup's file time is when it was made. Local to this folder.
#pragma once

#include <string>

constexpr size_t MostBackups = 10;  // of one ship; older ones go

std::string LocalDate();  // "%Y-%m-%d", today.
// To be called when all is ready for "<folder>/<stem>.sts" to be replaced; other names and missing files are left alone, and so
// is a file that no backup may be: one that is no whole gzip stream. A backup of the day stays as it is; one under its name that
// is over a day old, or from the future, leaves it to the next number behind the date. The path of the one that was made, or
// empty: the save goes on without one (logged).
std::string KeepBackup(const std::string &path, const std::string &date);
void EndBackup(const std::string &made);  // Behind the replacement: gives it its time, and removes what is too many of that ship's.
