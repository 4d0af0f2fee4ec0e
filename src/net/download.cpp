// Ship files from the server, in saves/ where the player's own ships lie too. What the last download of a name was is noted in
// cache/: a file that is not it is the player's, and gets a name of its own before it is replaced.
//
// A game that saves nothing leaves the folder to whoever has it: to another game, or to the very server that sends the ships. Its
// downloads lie in a folder of its own under the system's one for temporary files, which goes when the game ends. A killed game
// can't do that; what it left goes when the next one needs such a folder. A lock on the folder tells those in use.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <set>
#include <string>

#include "core/log.h"
#include "net/chat_log.h"
#include "net/dispatch.h"
#include "platform/files.h"

constexpr u64 SessionLimit = u64{2} << 30;  // bytes that a server may make this game write, until it is started again
constexpr size_t MostFailed = 10000;        // names remembered
constexpr int MostOwnFiles = 99;            // of one name, kept beside each other
constexpr size_t NoteBytes = 16;            // u64 size, u64 hash of the bytes

constexpr const char *PrivateFront = "tarnvale-downloads-";
constexpr time_t LeftBehind = 3600;     // seconds; a younger one may not have its lock yet
constexpr u64 SmallestCost = 8192;          // bytes that a file, its note and its entries cost at least

// The thread that polls; the private folder at the end the main thread, then the only one.
static u64 Downloaded = 0;            // bytes so far
static std::string PrivateFolder;     // with its slash; empty before there is one
static int PrivateLock = -1;          // held as long as it is there
static std::set<std::string> Failed;  // names of which the last download was refused or could not be written

static std::string NotePath(const std::string &name) { return "cache/" + name + ".net"; }

static std::vector<u8> NoteOf(const u8 *bytes, size_t count) {
  u64 hash = 0xcbf29ce484222325;  // FNV-1a
  for (size_t i = 0; i < count; ++i) hash = (hash ^ bytes[i]) * 0x100000001b3;
  std::vector<u8> note;
  PutU64(&note, count);
  PutU64(&note, hash);
  return note;
}

static bool IsDownload(const std::string &name, const std::vector<u8> &file) {
  std::vector<u8> note;
  return ReadWholeFile(NotePath(name).c_str(), NoteBytes, &note) && note == NoteOf(file.data(), file.size());
}

static std::string OwnName(const std::string &name, int copy) {
  return name + (copy == 1 ? " (own)" : " (own " + std::to_string(copy) + ")");
}

// A ship that was kept once is kept under the next number, not as the own one of an own one.
static std::string WithoutOwn(const std::string &name) {
  for (int copy = 1; copy <= MostOwnFiles; ++copy) {
    const std::string ending = OwnName("", copy);
    if (name.size() > ending.size() && name.ends_with(ending)) return name.substr(0, name.size() - ending.size());
  }
  return name;
}

static bool IsFileOf(const std::string &path, const std::vector<u8> &bytes) {
  std::vector<u8> file;
  return ReadWholeFile(path.c_str(), LargestFile, &file) && file == bytes;
}

// A second name under which the ship list finds the file again, unless one of the kept ones is the same. False: it has none now.
static bool KeepOwnFile(const std::string &path, const std::string &name, const std::vector<u8> &file) {
  const std::string base = WithoutOwn(name);
  for (int copy = 1; copy <= MostOwnFiles; ++copy) {
    const std::string own = OwnName(base, copy), ownPath = "saves/" + own + ".sts";
    const SecondName result = GiveSecondName(path.c_str(), ownPath.c_str());
    if (result == SecondName::Made) AddChatLine(("Your own ship " + name + " is kept as " + own).c_str());
    if (result != SecondName::Taken) return result == SecondName::Made;
    if (own != name && !file.empty() && IsFileOf(ownPath, file)) return true;
  }
  return false;
}

// The file may be replaced: there is none, it is an earlier download or the very one that came, or the player's ship has another
// name now.
static bool MayReplace(const std::string &path, const std::string &name, const Reader &r) {
  std::vector<u8> file;
  std::error_code error;
  if (std::filesystem::symlink_status(path, error).type() == std::filesystem::file_type::not_found) return true;
  const bool read = ReadWholeFile(path.c_str(), LargestFile, &file);
  if (read && (IsDownload(name, file) || std::equal(file.begin(), file.end(), r.bytes, r.bytes + r.left))) return true;
  return KeepOwnFile(path, name, file);
}

static bool BeginsAsShip(Reader r) { return TakeU16(&r) == 0x8b1f && TakeU8(&r) == 8; }  // a gzip stream

// A note without its file costs the player nothing: an own file never fits it.
static bool StoreInSaves(const std::string &path, const std::string &name, Reader r) {
  for (const char *folder : {"saves", "cache"}) MakeDirectory(folder);  // where they are missing
  const std::vector<u8> note = NoteOf(r.bytes, r.left);
  return MayReplace(path, name, r) && ReplaceFile(NotePath(name).c_str(), note.data(), note.size()) &&
         ReplaceFile(path.c_str(), r.bytes, r.left);
}

static bool LockFolder(const std::string &folder, int *descriptor) {
  *descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (*descriptor < 0) return false;
  if (flock(*descriptor, LOCK_EX | LOCK_NB) == 0) return true;
  close(*descriptor);
  *descriptor = -1;
  return false;
}

// What a game that was killed has left there.
static void ClearLeftFolders(const std::filesystem::path &place) {
  std::error_code error;
  std::filesystem::directory_iterator entry(place, error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    std::error_code gone;
    struct stat info;
    int lock = -1;
    const std::string folder = entry->path().string();
    if (!entry->path().filename().string().starts_with(PrivateFront) || lstat(folder.c_str(), &info) != 0 || info.st_uid != geteuid() ||
        std::time(nullptr) - info.st_mtime < LeftBehind || !LockFolder(folder, &lock))
      continue;
    std::filesystem::remove_all(folder, gone);
    close(lock);
  }
}

static void RemovePrivateFolder() {
  std::error_code error;
  std::filesystem::remove_all(PrivateFolder, error);
}

static bool MakePrivateFolder() {
  std::error_code error;
  const std::filesystem::path place = std::filesystem::temp_directory_path(error);
  if (error) return false;
  ClearLeftFolders(place);
  std::string folder = (place / PrivateFront).string() + "XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return false;
  LockFolder(folder, &PrivateLock);
  PrivateFolder = folder + "/";
  std::atexit(RemovePrivateFolder);
  return true;
}

std::string DownloadPath(const std::string &name) {
  if (SavingOn) return "saves/" + name + ".sts";
  return PrivateFolder.empty() && !MakePrivateFolder() ? std::string() : PrivateFolder + name + ".sts";
}

static bool Store(const std::string &name, Reader r) {
  const std::string path = DownloadPath(name);
  return SavingOn ? StoreInSaves(path, name, r) : ReplaceFile(path.c_str(), r.bytes, r.left);
}

void TakeFile(Reader r) {
  const std::string name = ReadString(&r);
  if (r.failed || !SafeFileName(name)) {
    LogError("The server sent a ship file with a name that can't be one");
    return;
  }
  AddChatLine(("Downloading ship " + name + " ").c_str());
  Downloaded += std::max<u64>(r.left, SmallestCost);
  const bool good = BeginsAsShip(r) && r.left <= LargestFile && Downloaded <= SessionLimit;
  const bool stored = good && Store(name, r);
  if (!good) LogError("The server sent a file that is no ship, or too much of it");
  else if (!stored) LogError("Error writing ship file");
  if (stored) Failed.erase(name);
  else if (Failed.size() < MostFailed) Failed.insert(name);
}

bool DownloadFailed(const std::string &name) { return Failed.count(name) != 0; }
