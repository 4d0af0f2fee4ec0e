// Files by the system's own calls. A replacement goes: temporary beside the file, bytes, sync, rename, sync of the folder;
// whenever the machine stops in between, the name holds the whole old content or the whole new one.
#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

bool BeginReplacement(FileReplacement *r, const char *path) {
  *r = {};
  r->path = path;
  // A fixed name: what a killed game left is overwritten by the next save instead of piling up.
  r->temporary = r->path + ".tmp";
  r->descriptor = open(r->temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0666);
  r->failed = r->descriptor < 0;
  return !r->failed;
}

bool WriteReplacement(FileReplacement *r, const void *bytes, size_t count) {
  const u8 *at = static_cast<const u8 *>(bytes);
  while (count > 0 && !r->failed) {
    const ssize_t written = write(r->descriptor, at, count);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) {
      r->failed = true;
      break;
    }
    at += written;
    count -= static_cast<size_t>(written);
  }
  return !r->failed;
}

static void SyncFolderOf(const std::string &path) {
  const size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  fsync(descriptor);
  close(descriptor);
}

bool SettleReplacement(FileReplacement *r) {
  const bool good = !r->failed && fsync(r->descriptor) == 0;
  const bool closed = r->descriptor >= 0 && close(r->descriptor) == 0;
  r->descriptor = -1;
  if (!good || !closed) AbandonReplacement(r);
  return good && closed;
}

bool CommitReplacement(FileReplacement *r) {
  const bool settled = !r->failed && (r->descriptor < 0 || SettleReplacement(r));
  if (!settled || rename(r->temporary.c_str(), r->path.c_str()) != 0) {
    AbandonReplacement(r);
    return false;
  }
  SyncFolderOf(r->path);
  return true;
}

void AbandonReplacement(FileReplacement *r) {
  if (r->descriptor >= 0) close(r->descriptor);
  r->descriptor = -1;
  r->failed = true;
  unlink(r->temporary.c_str());
}

bool ReplaceFile(const char *path, const void *bytes, size_t count) {
  FileReplacement r;
  if (!BeginReplacement(&r, path)) return false;
  WriteReplacement(&r, bytes, count);
  return CommitReplacement(&r);
}

bool RemoveFile(const char *path) {
  if (unlink(path) == 0) SyncFolderOf(path);
  else if (errno != ENOENT) return false;
  return true;
}

// Reads a plain file to its end or to most bytes, whichever comes first.
static bool ReadUpTo(int descriptor, size_t most, std::vector<u8> *out) {
  struct stat info;
  if (fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) return false;
  out->resize(std::min(static_cast<size_t>(info.st_size) + 1, most));
  for (size_t have = 0;;) {
    if (have == out->size()) out->resize(std::min(have * 2, most));
    const ssize_t got = read(descriptor, out->data() + have, out->size() - have);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return false;
    have += static_cast<size_t>(got);
    if (got > 0 && have < most) continue;
    out->resize(have);
    return true;
  }
}

bool ReadWholeFile(const char *path, size_t limit, std::vector<u8> *out) {
  const bool good = ReadFileFront(path, limit + 1, out) && out->size() <= limit;
  if (!good) out->clear();
  return good;
}

bool ReadFileFront(const char *path, size_t most, std::vector<u8> *out) {
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  const bool good = descriptor >= 0 && ReadUpTo(descriptor, most, out);
  if (descriptor >= 0) close(descriptor);
  if (!good) out->clear();
  return good;
}

static bool IsSameFile(const char *a, const char *b) {
  struct stat first, second;
  return lstat(a, &first) == 0 && lstat(b, &second) == 0 && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

static bool CopyBytes(int from, FileReplacement *to) {
  std::vector<u8> piece(1 << 16);
  for (;;) {
    const ssize_t got = read(from, piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return got == 0;
    if (!WriteReplacement(to, piece.data(), static_cast<size_t>(got))) return false;
  }
}

static bool CopyFile(const char *path, const char *name) {
  const int from = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  FileReplacement to;
  bool good = from >= 0 && BeginReplacement(&to, name);
  if (good && !CopyBytes(from, &to)) to.failed = true;
  good = good && CommitReplacement(&to);
  if (from >= 0) close(from);
  return good;
}

SecondName GiveSecondName(const char *path, const char *name) {
  if (link(path, name) == 0) {
    SyncFolderOf(name);
    return SecondName::Made;
  }
  if (errno == EEXIST) return SecondName::Taken;
  const bool linkless = errno == EPERM || errno == EOPNOTSUPP || errno == EMLINK;
  return linkless && CopyFile(path, name) ? SecondName::Made : SecondName::Failed;
}

std::string KeepBeside(const char *path, const char *ending) {
  for (int copy = 1; copy <= 9; ++copy) {
    const std::string name = std::string(path) + ending + (copy == 1 ? "" : std::to_string(copy));
    const SecondName result = GiveSecondName(path, name.c_str());
    if (result == SecondName::Made || (result == SecondName::Taken && IsSameFile(path, name.c_str()))) return name;
    if (result == SecondName::Failed) break;
  }
  return {};
}

bool MakeDirectory(const char *path) { return mkdir(path, 0777) == 0; }

// Removes one entry of an open folder. A link is removed itself; what it points to stays.
static bool RemoveEntry(int folder, const char *name) {
  const int inside = openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (inside < 0) return unlinkat(folder, name, 0) == 0;
  DIR *entries = fdopendir(inside);
  if (entries == nullptr) {
    close(inside);
    return false;
  }
  bool good = true;
  while (const dirent *entry = readdir(entries))
    if (entry->d_name[0] != '.') good = RemoveEntry(inside, entry->d_name) && good;
  closedir(entries);
  return unlinkat(folder, name, AT_REMOVEDIR) == 0 && good;
}

bool RemoveTree(const char *path) {
  std::string name = path;
  while (name.size() > 1 && name.back() == '/') name.pop_back();  // "link/" would be followed
  return RemoveEntry(AT_FDCWD, name.c_str());
}
