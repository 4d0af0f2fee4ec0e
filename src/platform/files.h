// Files: whole reads with a limit, and the one way in which the game replaces a file without ever losing the old one.
#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "core/types.h"

// Whether this run may write what is the player's: ships, backups, options, settings. Written at the start, before there is a second
// thread; whoever saves for the player asks it.
extern std::atomic<bool> SavingOn;

// What tells a file from what stood under its name before, or comes to stand there.
struct FileStamp {
  bool there = false;
  bool read = false;   // its bytes may be read; of one that may not, tail is 0
  u64 device = 0, inode = 0, size = 0, tail = 0;  // tail: the last 8 bytes, which in a gzip file are a sum of all
  i64 time = 0;                                   // of the last change, nanoseconds
};
FileStamp StampOf(int descriptor);       // Of an open file; one that can't be looked at isn't there.
FileStamp StampAt(const char *path);     // Links are followed. A file that can't be opened is there all the same.
bool SameContent(const FileStamp &a, const FileStamp &b);  // The same file, unchanged, or one that was written with the same bytes.

bool NameIsTaken(const char *path);      // Whatever has it: a link to nowhere too.
// The file that a name stands for, through all links; it need not be there yet. Empty: the links go round in a circle, or lead
// to something that is no plain file.
std::string FileBehind(const char *path);
// path + ending; the last name of the path is shortened at a letter where the two would be too long for a disk.
std::string WithEnding(const std::string &path, const std::string &ending);

// What tells bytes from others: their number and their FNV-1a hash.
struct FileSum {
  u64 size = 0, hash = 0xcbf29ce484222325;
};
void AddToSum(const void *bytes, size_t count, FileSum *sum);

// A replacement in the making: bytes go to a temporary name in the same folder, which is locked against other programs.
struct FileReplacement {
  int descriptor = -1;    // of the temporary, until the commit; -1: there is none that is ours
  std::string path;       // the name that the file will get
  std::string temporary;  // the name that it has until then
  bool failed = false;    // a write failed; the commit will refuse
  bool settled = false;   // the bytes are safe
  FileStamp stamp;        // of the file that it becomes, once they are
  FileSum sum;            // of the bytes so far
};

// False when the temporary can't be created, or another program has been writing it for a second. A link is replaced itself: give
// FileBehind where the file that it leads to is meant.
bool BeginReplacement(FileReplacement *r, const char *path);
bool WriteReplacement(FileReplacement *r, const void *bytes, size_t count);
// The first half of a commit, for files that change together: the bytes are safe, only the name is missing. False: the
// replacement is off, and the old file stays.
bool SettleReplacement(FileReplacement *r);
bool CommitReplacement(FileReplacement *r);  // Sync, rename, sync the folder. False: the old file stays as it was.
// The same, and what had the name in that very moment has the name old from then on, which must be free; nothing has it where there
// was no file. On a disk that can't exchange two names it is what had the name a moment earlier.
bool CommitKeepingOld(FileReplacement *r, const char *old);
void AbandonReplacement(FileReplacement *r);  // Removes the temporary.
bool ReplaceFile(const char *path, const void *bytes, size_t count);  // The four calls in one.
bool RemoveFile(const char *path);  // And makes sure of it. False: it is still there. A missing file is no fault.

bool ReadWholeFile(const char *path, size_t limit, std::vector<u8> *out);  // False: missing, unreadable or over limit.
bool ReadFileFront(const char *path, size_t most, std::vector<u8> *out);   // All, or the first bytes of a longer file.
enum class SecondName { Made, Taken, Failed };
// Gives a file a second name under which it outlives a replacement, or a copy on a disk that has no second names.
SecondName GiveSecondName(const char *path, const char *name);
// The same for the file behind path, with the name path + ending, or with 2 to 9 behind that. The name, also when an equal file
// has it already; empty when that can't be done or the file is missing.
std::string KeepBeside(const char *path, const char *ending);
// The same with a name for each number from 1; there may be as many as 999.
std::string KeepUnder(const char *path, const std::function<std::string(int)> &name);
// The same for a file that may not be read, of which there is no copy: it loses its own name to the new one, which needs no right but
// that to the folder. Empty: it stays where it is.
std::string MoveUnder(const char *path, const std::function<std::string(int)> &name);
bool MakeDirectory(const char *path);  // True when the directory was made.
bool RemoveTree(const char *path);     // Deletes a file or a folder; entries that begin with "." stay, and their folder.
