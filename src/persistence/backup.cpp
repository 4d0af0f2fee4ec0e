// The daily backups of stream files.
#include "persistence/backup.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>
#include <vector>

#include "core/log.h"
#include "core/utils.h"
#include "persistence/gzip_file.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace {

constexpr std::string_view StreamEnding = ".sts", BackupEnding = ".bak", DateForm = "dddd-dd-dd";
constexpr const char *DamagedEnding = ".damaged", *RestEnding = " (rest)";
constexpr int MostOfADay = 99;
constexpr size_t NumberRoom = 3;         // bytes: a blank and a number
constexpr i64 Day = i64{24} * 3600 * 1000000000;  // nanoseconds

struct DatedBackup {
  std::string name;
  i64 time = 0;
  bool ofTheFuture = false;
};

// Where the ship of a run's first save is kept.
struct KeptShip {
  std::string path;
  bool byThisRun = false;  // else it was the newest backup already
};
std::map<std::string, KeptShip> KeptShips;  // by the path of a backup up to the date; under the lock of saves

bool IsDate(std::string_view text) {
  return std::equal(text.begin(), text.end(), DateForm.begin(), DateForm.end(),
                    [](char c, char form) { return form == 'd' ? c >= '0' && c <= '9' : c == form; });
}

// What stands behind the date: nothing, or " 2" to " 99".
bool IsNumber(std::string_view text) {
  const auto digit = [](char c) { return c >= '0' && c <= '9'; };
  return text.empty() || ((text.size() == 2 || text.size() == 3) && text[0] == ' ' && text[1] != '0' && text != " 1" &&
                          std::all_of(text.begin() + 1, text.end(), digit));
}

// Whether a name is a backup of this stem, and not of one that only begins like it.
bool IsBackupOf(std::string_view name, std::string_view stem) {
  if (name.size() < stem.size() + DateForm.size() + BackupEnding.size() || !name.starts_with(stem) || !name.ends_with(BackupEnding))
    return false;
  const std::string_view middle = name.substr(stem.size(), name.size() - stem.size() - BackupEnding.size());
  return IsDate(middle.substr(0, DateForm.size())) && IsNumber(middle.substr(DateForm.size()));
}

// A stem as it stands in the names of its backups: one that nearly fills a name makes room for what comes behind it.
std::string StemOf(const std::string &path, const std::string &addition) {
  const size_t leaf = path.rfind('/') + 1;  // 0 without a folder
  const std::string ending = addition + std::string(DateForm) + std::string(NumberRoom, ' ') + std::string(BackupEnding);
  const std::string named = WithEnding(path.substr(leaf, path.size() - leaf - StreamEnding.size()), ending);
  return named.substr(0, named.size() - ending.size()) + addition;
}

// A gzip file carries a sum of its content: a file that a disk or a kill has hurt doesn't fit it.
bool IsWhole(const char *path) {
  GzipReader g;
  bool opened;
  if (!OpenGzip(&g, path, &opened)) return false;
  const std::unique_ptr<u8[]> piece(new (std::nothrow) u8[GzipBufferBytes]);
  while (piece != nullptr && !g.ended) ReadGzip(&g, piece.get(), GzipBufferBytes);
  const bool whole = g.ended && !g.damaged;
  CloseGzip(&g);
  return whole;
}

i64 Nanoseconds(const timespec &t) { return i64{t.tv_sec} * 1000000000 + t.tv_nsec; }

i64 Now() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return Nanoseconds(now);
}

i64 TimeOf(const std::string &path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0 ? Nanoseconds(info.st_mtim) : 0;
}

bool IsFresh(const std::string &path) {
  const i64 age = Now() - TimeOf(path);
  return age >= 0 && age <= Day;
}

// The oldest first. Those from the future were made before the clock was set: they are older than all that it has dated since.
std::vector<DatedBackup> BackupsByAge(const std::string &folder, const std::string &stem, const std::string &but) {
  std::vector<DatedBackup> found;
  std::vector<std::string> names;
  const int descriptor = OpenFolderHere(folder.c_str());
  if (descriptor < 0) return found;
  FolderEntries(descriptor, &names);
  close(descriptor);
  const i64 now = Now();
  for (const std::string &name : names) {
    if (name == but || !IsBackupOf(name, stem)) continue;
    const i64 time = TimeOf(folder + name);
    found.push_back({name, time, time > now});
  }
  std::stable_sort(found.begin(), found.end(), [](const DatedBackup &a, const DatedBackup &b) {
    return a.ofTheFuture != b.ofTheFuture ? a.ofTheFuture : a.time < b.time;
  });
  return found;
}

// What there is of a ship's backups, for a name that is to be made.
struct Naming {
  std::string folder, stem;                                // with its slash, or "./"; as in the names of the backups
};

// Of a ship that could not be read whole there is only a rest, in later runs too, as long as the file as it was lies beside it. What
// is kept of the rest has a name of its own: among the ship's own backups it would pass for the newest, and push out the whole ones.
Naming NamingOf(const std::string &path) {
  const size_t leaf = path.rfind('/') + 1;
  const bool rest = NameIsTaken(WithEnding(path, DamagedEnding).c_str());
  return {leaf == 0 ? "./" : path.substr(0, leaf), StemOf(path, rest ? RestEnding : "")};
}

// The ship of this run's first save of the date is kept. A run of over a day may have the same date for ever.
bool KeptInThisRun(const std::string &front) {
  const auto found = KeptShips.find(front);
  if (found == KeptShips.end() || !NameIsTaken(found->second.path.c_str())) return false;
  return !found->second.byThisRun || IsFresh(found->second.path);
}

// The first free one of the date; empty when all are taken.
std::string FreeName(const std::string &front) {
  for (int number = 1; number <= MostOfADay; ++number) {
    char behind[16] = "";
    if (number > 1) std::snprintf(behind, sizeof behind, " %d", number);
    const std::string name = front + behind + std::string(BackupEnding);
    if (!NameIsTaken(name.c_str())) return name;
  }
  return {};
}

// What an earlier run kept last, if it is this very file; else empty.
std::string NewestLike(const std::string &file, const Naming &naming) {
  const std::vector<DatedBackup> old = BackupsByAge(naming.folder, naming.stem, "");
  const std::string newest = old.empty() ? std::string() : naming.folder + old.back().name;
  return !old.empty() && SameContent(StampAt(newest.c_str()), StampAt(file.c_str())) ? newest : std::string();
}

std::string_view DateOf(const std::string &name, size_t stem) { return std::string_view(name).substr(stem, DateForm.size()); }

// Which of the old ones goes: many runs of one day must not push out the days before. So one of the new one's date that is not the
// first, or one of another date that is not its last; the oldest of them, or of all where there is none.
size_t LeastMissed(const std::vector<DatedBackup> &old, const std::string &made, size_t stem) {
  for (size_t i = 0; i < old.size(); ++i) {
    const std::string_view date = DateOf(old[i].name, stem);
    const auto sameDate = [&](const DatedBackup &other) { return DateOf(other.name, stem) == date; };
    const auto at = old.begin() + static_cast<std::ptrdiff_t>(i);
    if (date == DateOf(made, stem) ? std::any_of(old.begin(), at, sameDate) : std::any_of(at + 1, old.end(), sameDate)) return i;
  }
  return 0;
}

}  // namespace

std::string LocalDate() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  char text[32];
  localtime_r(&now, &local);
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d", &local)};
}

std::string KeepBackup(const std::string &path, const std::string &date) {
  const std::string file = path.ends_with(StreamEnding) ? FileBehind(path.c_str()) : std::string();
  if (file.empty() || !NameIsTaken(file.c_str())) return {};
  const Naming naming = NamingOf(path);
  const std::string front = path.substr(0, path.rfind('/') + 1) + naming.stem + date;
  const std::string name = KeptInThisRun(front) ? std::string() : FreeName(front);
  if (name.empty()) return {};
  if (!IsWhole(file.c_str())) {
    LogWarn((path + " was damaged, and is no backup. The ship is saved without one.").c_str());
    return {};
  }
  if (const std::string newest = NewestLike(file, naming); !newest.empty()) {
    KeptShips[front] = {newest, false};
    return {};
  }
  const SecondName made = GiveSecondName(file.c_str(), name.c_str());
  if (made == SecondName::Failed) LogWarn((name + " can't be written. The ship is saved without a backup.").c_str());
  if (made != SecondName::Made) return {};
  KeptShips[front] = {name, true};
  return name;
}

// The one that was just made stays whatever the clock says.
void EndBackup(const std::string &made) {
  utimensat(AT_FDCWD, made.c_str(), nullptr, AT_SYMLINK_NOFOLLOW);  // it has had the time of the save that made the ship
  const size_t slash = made.rfind('/') + 1;  // 0 without a folder
  const std::string folder = slash == 0 ? "./" : made.substr(0, slash), own = made.substr(slash);
  size_t date = own.size() - BackupEnding.size() - DateForm.size();
  while (date > 0 && !IsBackupOf(own, own.substr(0, date))) --date;
  std::vector<DatedBackup> old = BackupsByAge(folder, own.substr(0, date), own);
  while (old.size() >= MostBackups) {
    const size_t gone = LeastMissed(old, own, date);
    RemoveFile((folder + old[gone].name).c_str());
    old.erase(old.begin() + static_cast<std::ptrdiff_t>(gone));
  }
}
