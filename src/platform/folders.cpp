// Folders by the system's own calls. A replacement goes: new folder beside the old one, files, syncs, exchange of the two
// names, sync of the folder above. Whenever the machine stops in between, the name holds one of the two, whole.
#include "platform/folders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

int OpenFolderHere(const char *path) { return open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC); }

int OpenFolder(int parent, const char *name) {
  return openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
}

int OpenFile(int folder, const char *name, FileUse use) {
  int flags = use == FileUse::Read ? O_RDONLY : O_RDWR;
  if (use == FileUse::ChangeOrMake) flags |= O_CREAT;
  if (use == FileUse::MakeNew) flags |= O_CREAT | O_EXCL;
  const int file = openat(folder, name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
  struct stat info;
  if (file < 0 || (fstat(file, &info) == 0 && S_ISREG(info.st_mode))) return file;
  close(file);
  return -1;
}

static std::vector<std::string> Entries(int folder, bool hidden) {
  std::vector<std::string> names;
  const int again = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);  // reading moves a descriptor's place
  DIR *entries = again < 0 ? nullptr : fdopendir(again);
  if (entries == nullptr) {
    if (again >= 0) close(again);
    return names;
  }
  while (const dirent *entry = readdir(entries))
    if ((entry->d_name[0] == '.') == hidden) names.emplace_back(entry->d_name);
  closedir(entries);
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::string> FolderEntries(int folder) { return Entries(folder, false); }

i64 FileLength(int file) {
  struct stat info;
  return fstat(file, &info) == 0 ? i64{info.st_size} : i64{-1};
}

size_t ReadAt(int file, i64 offset, void *out, size_t count) {
  u8 *at = static_cast<u8 *>(out);
  size_t have = 0;
  while (have < count) {
    const ssize_t got = pread(file, at + have, count - have, offset + static_cast<i64>(have));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    have += static_cast<size_t>(got);
  }
  return have;
}

bool WriteAt(int file, i64 offset, const void *bytes, size_t count) {
  const u8 *at = static_cast<const u8 *>(bytes);
  size_t done = 0;
  while (done < count) {
    const ssize_t written = pwrite(file, at + done, count - done, offset + static_cast<i64>(done));
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    done += static_cast<size_t>(written);
  }
  return true;
}

// A second name beside a folder: ".name" with an ending, which every list of the game passes over.
static std::string HiddenBeside(const std::string &path, const char *ending) {
  const size_t slash = path.rfind('/') + 1;  // 0 without one
  return path.substr(0, slash) + "." + path.substr(slash) + ending;
}

static void RemoveAll(const std::string &path) {
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
}

static bool IsThere(const std::string &path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0;
}

bool BeginFolder(FolderReplacement *r, const char *path) {
  *r = {};
  r->path = path;
  r->fresh = HiddenBeside(r->path, ".new");
  RemoveAll(r->fresh);
  if (mkdir(r->fresh.c_str(), 0777) == 0) r->descriptor = OpenFolder(AT_FDCWD, r->fresh.c_str());
  return r->descriptor >= 0;
}

static bool Rename(const std::string &from, const std::string &to) { return rename(from.c_str(), to.c_str()) == 0; }

// The new folder gets the name; the old one, if there is one, is left under a hidden name.
static bool TakePlace(const FolderReplacement &r) {
  if (!IsThere(r.path)) return Rename(r.fresh, r.path);
  if (renameat2(AT_FDCWD, r.fresh.c_str(), AT_FDCWD, r.path.c_str(), RENAME_EXCHANGE) == 0) return true;
  const std::string old = HiddenBeside(r.path, ".old");
  RemoveAll(old);
  if (!Rename(r.path, old)) return false;
  if (Rename(r.fresh, r.path)) return true;
  Rename(old, r.path);
  return false;
}

static void SyncFolderAbove(const std::string &path) {
  const size_t slash = path.rfind('/');
  const int folder = OpenFolderHere(slash == std::string::npos ? "." : path.substr(0, slash + 1).c_str());
  if (folder < 0) return;
  fsync(folder);
  close(folder);
}

bool CommitFolder(FolderReplacement *r) {
  if (fsync(r->descriptor) != 0 || !TakePlace(*r)) {
    AbandonFolder(r);
    return false;
  }
  close(r->descriptor);
  r->descriptor = -1;
  SyncFolderAbove(r->path);
  RemoveAll(r->fresh);
  RemoveAll(HiddenBeside(r->path, ".old"));
  return true;
}

void AbandonFolder(FolderReplacement *r) {
  if (r->descriptor >= 0) close(r->descriptor);
  r->descriptor = -1;
  RemoveAll(r->fresh);
}

void SettleFolder(const char *path) {
  const std::string old = HiddenBeside(path, ".old");
  if (!IsThere(path) && IsThere(old)) Rename(old, path);
}

void SettleFoldersIn(const char *path) {
  const int folder = OpenFolderHere(path);
  if (folder < 0) return;
  for (const std::string &name : Entries(folder, true))
    if (name.size() > 5 && name.ends_with(".old"))
      SettleFolder((std::string(path) + "/" + name.substr(1, name.size() - 5)).c_str());
  close(folder);
}
