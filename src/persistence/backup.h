// Backups: what a stream file was like before the first save of a day stays beside it, as <stem><date>.bak. The backup list
// loads it like any other ship. Local to this folder.
#pragma once

#include <string>

constexpr size_t MostBackups = 10;  // of one ship; older ones go

std::string LocalDate();  // "%Y-%m-%d", today.
// To be called before "<folder>/<stem>.sts" is replaced; other names and missing files are left alone. A backup of the
// day stays as it is. The save goes on without one that can't be made (logged).
void KeepBackup(const std::string &path, const std::string &date);
