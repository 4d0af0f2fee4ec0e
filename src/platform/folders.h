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
std::vector<std::string> FolderEntries(int folder);       // Sorted names, without those that begin with ".".
i64 FileLength(int file);                                 // -1 when it can't be told.
size_t ReadAt(int file, i64 offset, void *out, size_t count);  // The bytes that are there, at most count.
bool WriteAt(int file, i64 offset, const void *bytes, size_t count);

// A folder in the making, beside the one that it replaces. What is written into it has to be synced before the commit.
struct FolderReplacement {
  int descriptor = -1;
  std::string path;   // the name that the folder will get
  std::string fresh;  // the name that it has until then
};

bool BeginFolder(FolderReplacement *r, const char *path);  // Empty; what a killed game left there is gone.
bool CommitFolder(FolderReplacement *r);  // False: the old folder stays as it was. Else it is gone with all that is in it.
void AbandonFolder(FolderReplacement *r);
// On a disk that can't exchange two names a kill may leave neither folder under the name: this gives it back the old one.
void SettleFolder(const char *path);
void SettleFoldersIn(const char *path);  // The same for all that were ever replaced in a folder.
