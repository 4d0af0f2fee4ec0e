// Files by the system's own calls. A replacement goes: temporary beside the file, bytes, sync, rename, sync of the folder;
// whenever the machine stops in between, the name holds the whole old content or the whole new one.
#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>

#include "core/utils.h"

std::atomic<bool> SavingOn{true};

constexpr size_t LongestFileName = 255;  // bytes
constexpr int MostLinks = 40;            // one behind the other
constexpr int MostKept = 999;            // copies of one file
constexpr int LockTries = 50;
constexpr useconds_t LockPause = 20000;  // microseconds between two of them

static FileStamp StampFrom(const struct stat &info) {
  FileStamp s;
  s.there = true;
  s.device = static_cast<u64>(info.st_dev);
  s.inode = static_cast<u64>(info.st_ino);
  s.size = static_cast<u64>(info.st_size);
  s.time = i64{info.st_mtim.tv_sec} * 1000000000 + info.st_mtim.tv_nsec;
  return s;
}

FileStamp StampOf(int descriptor) {
  struct stat info;
  FileStamp s;
  if (fstat(descriptor, &info) != 0) return s;
  s = StampFrom(info);
  constexpr off_t tail = sizeof s.tail;
  s.read = info.st_size < tail || pread(descriptor, &s.tail, sizeof s.tail, info.st_size - tail) == tail;
  if (!s.read) s.tail = 0;
  return s;
}

FileStamp StampAt(const char *path) {
  const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  struct stat info;
  if (descriptor < 0) return stat(path, &info) == 0 ? StampFrom(info) : FileStamp();
  const FileStamp s = StampOf(descriptor);
  close(descriptor);
  return s;
}

bool SameContent(const FileStamp &a, const FileStamp &b) {
  if (!a.there || !b.there || a.size != b.size) return a.there == b.there && !a.there;
  return (a.read && b.read && a.tail == b.tail) || (a.device == b.device && a.inode == b.inode && a.time == b.time);
}

bool NameIsTaken(const char *path) {
  struct stat info;
  return lstat(path, &info) == 0;
}

std::string FileBehind(const char *path) {
  std::string name = path;
  struct stat info;
  for (int link = 0; link <= MostLinks; ++link) {
    if (lstat(name.c_str(), &info) != 0) return errno == ENOENT ? name : std::string();
    if (!S_ISLNK(info.st_mode)) return S_ISREG(info.st_mode) ? name : std::string();
    char to[PATH_MAX];
    const ssize_t length = readlink(name.c_str(), to, sizeof to);
    if (length <= 0 || length == sizeof to) return {};
    const std::string target(to, static_cast<size_t>(length));
    name = target[0] == '/' ? target : name.substr(0, name.rfind('/') + 1) + target;
  }
  return {};
}

std::string WithEnding(const std::string &path, const std::string &ending) {
  const size_t leaf = path.rfind('/') + 1;  // 0 without a folder
  const size_t room = LongestFileName - std::min(ending.size(), LongestFileName);
  return path.substr(0, leaf) + std::string(FrontOf(std::string_view(path).substr(leaf), room)) + ending;
}

// Whether a name still means the open file: another program may have renamed it meanwhile.
static bool IsNameOf(const char *name, int descriptor) {
  struct stat named, opened;
  return fstat(descriptor, &opened) == 0 && lstat(name, &named) == 0 && named.st_dev == opened.st_dev &&
         named.st_ino == opened.st_ino;
}

// -1 when it can't be opened; *busy tells that another program has it. A disk without locks counts as free.
static int OpenLocked(const char *name, bool *busy) {
  const int descriptor = open(name, O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0666);
  if (descriptor < 0) return -1;
  *busy = flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
  if (!*busy) *busy = !IsNameOf(name, descriptor);
  if (!*busy && ftruncate(descriptor, 0) == 0) return descriptor;
  close(descriptor);
  return -1;
}

// Where the disk has no locks, only a name of its own keeps two programs apart.
static void TakeOwnName(FileReplacement *r) {
  bool busy = false;
  close(r->descriptor);
  unlink(r->temporary.c_str());
  char ending[32];
  std::snprintf(ending, sizeof ending, ".%ld.tmp", static_cast<long>(getpid()));
  r->temporary = WithEnding(r->path, ending);
  r->descriptor = OpenLocked(r->temporary.c_str(), &busy);
}

bool BeginReplacement(FileReplacement *r, const char *path) {
  *r = {};
  r->path = path;
  r->failed = r->path.empty();
  if (r->failed) return false;
  // A fixed name: what a killed game left is overwritten by the next save instead of piling up.
  r->temporary = WithEnding(r->path, ".tmp");
  for (int i = 0; i < LockTries; ++i) {
    bool busy = false;
    r->descriptor = OpenLocked(r->temporary.c_str(), &busy);
    if (!busy) break;
    usleep(LockPause);
  }
  if (r->descriptor >= 0 && flock(r->descriptor, LOCK_EX | LOCK_NB) != 0) TakeOwnName(r);
  r->failed = r->descriptor < 0;
  return !r->failed;
}

void AddToSum(const void *bytes, size_t count, FileSum *sum) {
  const u8 *at = static_cast<const u8 *>(bytes);
  for (const u8 *end = at + count; at != end; ++at) sum->hash = (sum->hash ^ *at) * 0x100000001b3;
  sum->size += count;
}

bool WriteReplacement(FileReplacement *r, const void *bytes, size_t count) {
  const u8 *at = static_cast<const u8 *>(bytes);
  if (!r->failed) AddToSum(bytes, count, &r->sum);
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
  r->settled = !r->failed && fsync(r->descriptor) == 0;
  if (r->settled) r->stamp = StampOf(r->descriptor);
  else AbandonReplacement(r);
  return r->settled;
}

// Behind the settling; renamed: whether the file has its name.
static bool EndCommit(FileReplacement *r, bool renamed) {
  if (!renamed) {
    AbandonReplacement(r);
    return false;
  }
  close(r->descriptor);  // and with it the lock, now that the temporary is gone
  r->descriptor = -1;
  SyncFolderOf(r->path);
  return true;
}

static bool IsSettled(FileReplacement *r) { return !r->failed && (r->settled || SettleReplacement(r)); }

bool CommitReplacement(FileReplacement *r) {
  return EndCommit(r, IsSettled(r) && rename(r->temporary.c_str(), r->path.c_str()) == 0);
}

// Where there is nothing to exchange with, the name is taken only while it is free: a file may come between the two calls.
static bool Exchange(const char *fresh, const char *path) {
  for (int i = 0; i < LockTries; ++i) {
    if (renameat2(AT_FDCWD, fresh, AT_FDCWD, path, RENAME_EXCHANGE) == 0) return true;
    if (errno != ENOENT) return false;
    if (renameat2(AT_FDCWD, fresh, AT_FDCWD, path, RENAME_NOREPLACE) == 0) return true;
    if (errno != EEXIST) return false;
  }
  return false;
}

// The new file is called old for a moment, so that a kill leaves the old one there, and not where the next save writes.
bool CommitKeepingOld(FileReplacement *r, const char *old) {
  if (!IsSettled(r)) return EndCommit(r, false);
  if (renameat2(AT_FDCWD, r->temporary.c_str(), AT_FDCWD, old, RENAME_NOREPLACE) == 0) {
    if (Exchange(old, r->path.c_str())) return EndCommit(r, true);
    if (rename(old, r->temporary.c_str()) != 0) return EndCommit(r, false);
  }
  const bool kept = !NameIsTaken(r->path.c_str()) || GiveSecondName(r->path.c_str(), old) == SecondName::Made;
  return EndCommit(r, kept && rename(r->temporary.c_str(), r->path.c_str()) == 0);
}

void AbandonReplacement(FileReplacement *r) {
  r->failed = true;
  if (r->descriptor < 0) return;
  unlink(r->temporary.c_str());
  close(r->descriptor);
  r->descriptor = -1;
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

static bool SameBytes(int a, int b) {
  std::vector<u8> first(1 << 16), second(1 << 16);
  for (off_t at = 0;;) {
    const ssize_t got = pread(a, first.data(), first.size(), at);
    if (got < 0 || pread(b, second.data(), second.size(), at) != got) return false;
    if (!std::equal(first.begin(), first.begin() + got, second.begin())) return false;
    if (got == 0) return true;
    at += got;
  }
}

// One file under two names, or two plain files of the same bytes, as on a disk that has no second names.
static bool IsSameFile(const char *a, const char *b) {
  struct stat first, second;
  if (lstat(a, &first) != 0 || lstat(b, &second) != 0) return false;
  if (first.st_dev == second.st_dev && first.st_ino == second.st_ino) return true;
  if (!S_ISREG(first.st_mode) || !S_ISREG(second.st_mode) || first.st_size != second.st_size) return false;
  const int one = open(a, O_RDONLY | O_NONBLOCK | O_CLOEXEC), other = open(b, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  const bool same = one >= 0 && other >= 0 && SameBytes(one, other);
  if (one >= 0) close(one);
  if (other >= 0) close(other);
  return same;
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
  const bool linkless = errno == EPERM || errno == EOPNOTSUPP || errno == ENOSYS || errno == EMLINK || errno == EXDEV;
  return linkless && CopyFile(path, name) ? SecondName::Made : SecondName::Failed;
}

static std::string KeepAs(const char *path, int most, const std::function<std::string(int)> &name) {
  const std::string file = FileBehind(path);
  for (int copy = 1; copy <= most && !file.empty(); ++copy) {
    const std::string next = name(copy);
    const SecondName result = GiveSecondName(file.c_str(), next.c_str());
    if (result == SecondName::Made || (result == SecondName::Taken && IsSameFile(file.c_str(), next.c_str()))) return next;
    if (result == SecondName::Failed) break;
  }
  return {};
}

std::string KeepBeside(const char *path, const char *ending) {
  return KeepAs(path, 9, [&](int copy) { return WithEnding(path, std::string(ending) + (copy == 1 ? "" : std::to_string(copy))); });
}

std::string KeepUnder(const char *path, const std::function<std::string(int)> &name) { return KeepAs(path, MostKept, name); }

// 0, or errno. A disk that can't refuse a name that is taken is asked whether it is.
static int MoveToFree(const char *from, const char *to) {
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  if (NameIsTaken(to)) return EEXIST;
  return rename(from, to) == 0 ? 0 : errno;
}

std::string MoveUnder(const char *path, const std::function<std::string(int)> &name) {
  const std::string file = FileBehind(path);
  for (int copy = 1; copy <= MostKept && !file.empty(); ++copy) {
    const std::string next = name(copy);
    const int fault = MoveToFree(file.c_str(), next.c_str());
    if (fault == EEXIST) continue;
    if (fault != 0) break;
    SyncFolderOf(next);
    return next;
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
