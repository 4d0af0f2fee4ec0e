// Backups: what a stream file was like before the first save of a run and day stays beside it, as <stem><date>.bak, or with a number
// behind the date. The backup list loads it like any other ship. A backup's file time is when it was made. Local to this folder.
#pragma once

#include <string>

constexpr size_t MostBackups = 10;  // of one ship; those that go first are of a day that has others

std::string LocalDate();  // "%Y-%m-%d", today.
// To be called when all is ready for "<folder>/<stem>.sts" to be replaced; other names and missing files are left alone, and so
// is a file that no backup may be: one that is no whole gzip stream. Nothing is kept twice: what this run has kept of the date, or is the newest backup. A name
// that is taken leaves it to the next number behind the date. As long as <stem>.sts.damaged is there, the name is
// <stem> (rest)<date>.bak. The path of the one that was made, or empty: the save goes on without one (a fault is logged). Under the
// lock of saves.
std::string KeepBackup(const std::string &path, const std::string &date);
void EndBackup(const std::string &made);  // Behind the replacement: gives it its time, and removes what is too many of that ship's.
