// The daily backups of stream files.
#include "persistence/backup.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

#include "core/log.h"
#include "core/utils.h"
#include "persistence/gzip_file.h"
#include "platform/files.h"
#include "platform/folders.h"

namespace {

constexpr std::string_view StreamEnding = ".sts", BackupEnding = ".bak", DateForm = "dddd-dd-dd";
constexpr int MostOfADay = 99;
constexpr size_t NumberRoom = 3;         // bytes: a blank and a number
constexpr i64 Day = i64{24} * 3600 * 1000000000;  // nanoseconds

struct DatedBackup {
  std::string name;
  i64 time = 0;
  bool ofTheFuture = false;
};

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
std::string StemOf(const std::string &path) {
  const size_t leaf = path.rfind('/') + 1;  // 0 without a folder
  const std::string ending = std::string(DateForm) + std::string(NumberRoom, ' ') + std::string(BackupEnding);
  const std::string named = WithEnding(path.substr(leaf, path.size() - leaf - StreamEnding.size()), ending);
  return named.substr(0, named.size() - ending.size());
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

// The name that a backup of the date gets, or empty when there is one already.
std::string FreeName(const std::string &front) {
  for (int number = 1; number <= MostOfADay; ++number) {
    char behind[16] = "";
    if (number > 1) std::snprintf(behind, sizeof behind, " %d", number);
    const std::string name = front + behind + std::string(BackupEnding);
    if (!NameIsTaken(name.c_str())) return name;
    if (IsFresh(name)) break;
  }
  return {};
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
  const std::string name = FreeName(path.substr(0, path.rfind('/') + 1) + StemOf(path) + date);
  if (name.empty()) return {};
  if (!IsWhole(file.c_str())) {
    LogWarn((path + " was damaged, and is no backup. The ship is saved without one.").c_str());
    return {};
  }
  const SecondName made = GiveSecondName(file.c_str(), name.c_str());
  if (made == SecondName::Failed) LogWarn((name + " can't be written. The ship is saved without a backup.").c_str());
  return made == SecondName::Made ? name : std::string();
}

// The oldest first. Those from the future were made before the clock was set: they are older than all that it has dated since.
static std::vector<DatedBackup> BackupsByAge(const std::string &folder, const std::string &stem, const std::string &but) {
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

// The one that was just made stays whatever the clock says.
void EndBackup(const std::string &made) {
  utimensat(AT_FDCWD, made.c_str(), nullptr, AT_SYMLINK_NOFOLLOW);  // it has had the time of the save that made the ship
  const size_t slash = made.rfind('/') + 1;  // 0 without a folder
  const std::string folder = slash == 0 ? "./" : made.substr(0, slash), own = made.substr(slash);
  size_t date = own.size() - BackupEnding.size() - DateForm.size();
  while (date > 0 && !IsBackupOf(own, own.substr(0, date))) --date;
  const std::vector<DatedBackup> old = BackupsByAge(folder, own.substr(0, date), own);
  for (size_t i = 0; i + MostBackups <= old.size(); ++i) RemoveFile((folder + old[i].name).c_str());
}
