// Folders by the system's own calls. A replacement goes: new folder beside the old one, files, syncs, exchange of the two
// names, sync of the folder above. Whenever the machine stops in between, the name holds one of the two, whole.
#include "platform/folders.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>

constexpr int LockTries = 50;
constexpr useconds_t LockPause = 20000;  // microseconds between two of them

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

static bool Entries(int folder, bool hidden, std::vector<std::string> *names) {
  names->clear();
  const int again = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);  // reading moves a descriptor's place
  DIR *entries = again < 0 ? nullptr : fdopendir(again);
  if (entries == nullptr) {
    if (again >= 0) close(again);
    return false;
  }
  errno = 0;
  while (const dirent *entry = readdir(entries)) {
    if ((entry->d_name[0] == '.') == hidden) names->emplace_back(entry->d_name);
    errno = 0;
  }
  const bool whole = errno == 0;
  closedir(entries);
  std::sort(names->begin(), names->end());
  return whole;
}

bool FolderEntries(int folder, std::vector<std::string> *names) { return Entries(folder, false, names); }

static bool LockNow(int folder) { return flock(folder, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK; }

bool LockFolder(int folder, bool wait) {
  bool locked = LockNow(folder);
  for (int i = 1; i < LockTries && wait && !locked; ++i) {
    usleep(LockPause);
    locked = LockNow(folder);
  }
  return locked;
}

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

// A folder held open against other programs; -1 when it isn't there or one of them has it.
static int OpenLocked(const std::string &path) {
  const int folder = OpenFolder(AT_FDCWD, path.c_str());
  if (folder < 0) return -1;
  struct stat opened, named;
  if (LockNow(folder) && fstat(folder, &opened) == 0 && lstat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino) return folder;
  close(folder);
  return -1;
}

static void RemoveContent(const std::string &path) {
  std::error_code ignored;
  for (std::filesystem::directory_iterator entry(path, ignored), end; !ignored && entry != end; entry.increment(ignored))
    RemoveAll(entry->path());
}

// Where the disk has no locks, only a name of its own keeps two programs apart.
static void TakeOwnName(FolderReplacement *r) {
  close(r->descriptor);
  rmdir(r->fresh.c_str());
  r->fresh = HiddenBeside(r->path + "." + std::to_string(getpid()), ".new");
  mkdir(r->fresh.c_str(), 0777);
  r->descriptor = OpenLocked(r->fresh);
}

bool BeginFolder(FolderReplacement *r, const char *path) {
  *r = {};
  r->path = path;
  r->fresh = HiddenBeside(r->path, ".new");
  unlink(r->fresh.c_str());  // a file or a link can't become it; of a folder this does nothing
  for (int i = 0; i < LockTries && r->descriptor < 0; ++i) {
    if (i > 0) usleep(LockPause);
    mkdir(r->fresh.c_str(), 0777);
    r->descriptor = OpenLocked(r->fresh);
  }
  if (r->descriptor >= 0 && flock(r->descriptor, LOCK_EX | LOCK_NB) != 0) TakeOwnName(r);
  if (r->descriptor >= 0) RemoveContent(r->fresh);
  return r->descriptor >= 0;
}

static bool Rename(const std::string &from, const std::string &to) { return rename(from.c_str(), to.c_str()) == 0; }

static bool Exchange(const std::string &a, const std::string &b) {
  return renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
}

// The same in two steps, for a disk that can't exchange names.
static bool ExchangeInSteps(const FolderReplacement &r, const std::string &old) {
  if (!Rename(r.path, old)) return false;
  if (Rename(r.fresh, r.path)) return true;
  Rename(old, r.path);
  return false;
}

// The name that a folder has between two steps, free now. Another program may still be removing what has it.
static std::string FreeBetween(const FolderReplacement &r) {
  const std::string name = HiddenBeside(r.path, ".old");
  for (int i = 0; i < LockTries && IsThere(name); ++i) {
    if (i > 0) usleep(LockPause);
    const int left = OpenLocked(name);
    if (left < 0) continue;
    RemoveAll(name);
    close(left);
  }
  return name;
}

// The new folder has the old one's later name before the exchange, so that there is no moment in which a kill makes the old
// one look like what a killed game left. In steps, it is the new one that a kill leaves beside the name.
static bool TakePlaceAndKeep(FolderReplacement *r) {
  if (!Rename(r->fresh, r->kept)) return false;
  r->fresh = r->kept;
  if (Exchange(r->fresh, r->path)) return true;
  const std::string between = FreeBetween(*r);
  if (!Rename(r->fresh, between)) return false;
  r->fresh = between;
  return ExchangeInSteps(*r, r->kept);
}

// The new folder gets the name; the old one, if there is one, the name to keep it under, or a hidden one, *left.
static bool TakePlace(FolderReplacement *r, std::string *left) {
  if (!IsThere(r->path)) return Rename(r->fresh, r->path);
  if (!r->kept.empty()) return TakePlaceAndKeep(r);
  *left = r->fresh;
  if (Exchange(r->fresh, r->path)) return true;
  *left = FreeBetween(*r);
  return ExchangeInSteps(*r, *left);
}

static void SyncFolderAbove(const std::string &path) {
  const size_t slash = path.rfind('/');
  const int folder = OpenFolderHere(slash == std::string::npos ? "." : path.substr(0, slash + 1).c_str());
  if (folder < 0) return;
  fsync(folder);
  close(folder);
}

bool CommitFolder(FolderReplacement *r) {
  // Locked, the old folder isn't taken for a left one that may be written anew while it is being removed.
  const int old = OpenLocked(r->path);
  std::string left;
  const bool good = fsync(r->descriptor) == 0 && TakePlace(r, &left);
  if (good) {
    SyncFolderAbove(r->path);
    if (old >= 0 && !left.empty()) RemoveAll(left);  // the other names are free for other programs
    close(r->descriptor);
    r->descriptor = -1;
  } else {
    AbandonFolder(r);
  }
  if (old >= 0) close(old);
  return good;
}

void AbandonFolder(FolderReplacement *r) {
  if (r->descriptor < 0) return;
  RemoveAll(r->fresh);
  close(r->descriptor);
  r->descriptor = -1;
}

void SettleFolder(const char *path, const char *mark) {
  const std::string old = HiddenBeside(path, ".old");
  if (!IsThere(old + "/" + mark)) return;
  const int held = OpenLocked(old);
  if (held < 0) return;
  if (IsThere(path)) RemoveAll(old);
  else Rename(old, path);
  close(held);
}

void SettleFoldersIn(const char *path, const char *mark) {
  const int folder = OpenFolderHere(path);
  if (folder < 0) return;
  std::vector<std::string> names;
  Entries(folder, true, &names);  // of the others, another time
  for (const std::string &name : names)
    if (name.size() > 5 && name.ends_with(".old"))
      SettleFolder((std::string(path) + "/" + name.substr(1, name.size() - 5)).c_str(), mark);
  close(folder);
}
