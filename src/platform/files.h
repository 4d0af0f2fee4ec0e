// Files: whole reads with a limit, and the one way in which the game replaces a file without ever losing the old one.
#pragma once

#include <string>
#include <vector>

#include "core/types.h"

// A replacement in the making: bytes go to a temporary name in the same folder.
struct FileReplacement {
  int descriptor = -1;
  std::string path;       // the name that the file will get
  std::string temporary;  // the name that it has until then
  bool failed = false;    // a write failed; the commit will refuse
};

bool BeginReplacement(FileReplacement *r, const char *path);  // False when the temporary can't be created.
bool WriteReplacement(FileReplacement *r, const void *bytes, size_t count);
// The first half of a commit, for files that change together: the bytes are safe, only the name is missing. False: the
// replacement is off, and the old file stays.
bool SettleReplacement(FileReplacement *r);
bool CommitReplacement(FileReplacement *r);  // Sync, rename, sync the folder. False: the old file stays as it was.
void AbandonReplacement(FileReplacement *r);  // Removes the temporary.
bool ReplaceFile(const char *path, const void *bytes, size_t count);  // The four calls in one.
bool RemoveFile(const char *path);  // And makes sure of it. False: it is still there. A missing file is no fault.

bool ReadWholeFile(const char *path, size_t limit, std::vector<u8> *out);  // False: missing, unreadable or over limit.
bool ReadFileFront(const char *path, size_t most, std::vector<u8> *out);   // All, or the first bytes of a longer file.
enum class SecondName { Made, Taken, Failed };
// Gives a file a second name under which it outlives a replacement, or a copy on a disk that has no second names.
SecondName GiveSecondName(const char *path, const char *name);
// The same with the name path + ending, or with 2 to 9 behind that. The name, also when the file has it already; empty when that can't be done. A missing file is no fault.
std::string KeepBeside(const char *path, const char *ending);
bool MakeDirectory(const char *path);  // True when the directory was made.
bool RemoveTree(const char *path);     // Deletes a file or a folder; entries that begin with "." stay, and their folder.
