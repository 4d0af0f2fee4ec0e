// Folders held open, with the files in them, so that no link inside leads out of them; and the one way in which the game
// replaces a whole folder without ever losing the old one. Descriptors belong to the caller, who closes them.
#pragma once

#include <string>
#include <vector>

#include "core/types.h"

int OpenFolderHere(const char *path);          // By its path, links followed; -1 when that is no folder.
int OpenFolder(int parent, const char *name);  // One level down; -1 when it is missing, no folder or a link.
enum class FileUse { Read, Change, ChangeOrMake, MakeNew };
int OpenFile(int folder, const char *name, FileUse use);  // -1 when it is missing, no plain file or a link.
// Sorted names, without those that begin with "."; those that were read before a fault. False: there was one.
bool FolderEntries(int folder, std::vector<std::string> *names);
// Holds an open folder against other programs until it is closed; with wait, tries for a second. A disk without locks counts
// as free.
bool LockFolder(int folder, bool wait);
i64 FileLength(int file);                                 // -1 when it can't be told.
size_t ReadAt(int file, i64 offset, void *out, size_t count);  // The bytes that are there, at most count.
bool WriteAt(int file, i64 offset, const void *bytes, size_t count);

// A folder in the making, beside the one that it replaces, locked against other programs. What is written into it has to be synced before the commit.
struct FolderReplacement {
  int descriptor = -1;
  std::string path;   // the name that the folder will get
  std::string fresh;  // the name that it has until then; behind that, the name of the old one
  std::string kept;   // the free name that the old folder gets; empty: it is removed
};

// Empty; what a killed game left there is gone. False when it can't be made, or another program has been at it for a second.
bool BeginFolder(FolderReplacement *r, const char *path);
// False: the old folder stays as it was. Else it has the name kept, or is gone with all that is in it.
bool CommitFolder(FolderReplacement *r);
void AbandonFolder(FolderReplacement *r);
// On a disk that can't exchange two names a kill may leave no folder under the name: this gives it the one beside it, or removes
// that where the name is taken. Only a folder that holds the file mark, and that no other program has, is taken for one.
void SettleFolder(const char *path, const char *mark);
void SettleFoldersIn(const char *path, const char *mark);  // The same for all that were ever replaced in a folder.
