// Ship files from the server, in saves/ where the player's own ships lie too. What the last download of a name was is noted in
// cache/: a file that is not it is the player's, and gets a name of its own before it is replaced.
#include <algorithm>
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

constexpr u64 SmallestCost = 8192;          // bytes that a file, its note and its entries cost at least

// The thread that polls.
static u64 Downloaded = 0;            // bytes so far
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

// A second name under which the ship list finds the file again. False: it has none now.
static bool KeepOwnFile(const std::string &path, const std::string &name) {
  for (int copy = 1; copy <= MostOwnFiles; ++copy) {
    const std::string own = name + (copy == 1 ? " (own)" : " (own " + std::to_string(copy) + ")");
    const SecondName result = GiveSecondName(path.c_str(), ("saves/" + own + ".sts").c_str());
    if (result == SecondName::Made) AddChatLine(("Your own ship " + name + " is kept as " + own).c_str());
    if (result != SecondName::Taken) return result == SecondName::Made;
  }
  return false;
}

// The file may be replaced: there is none, it is an earlier download, or the player's ship has another name now.
static bool MayReplace(const std::string &path, const std::string &name) {
  std::vector<u8> file;
  std::error_code error;
  if (std::filesystem::symlink_status(path, error).type() == std::filesystem::file_type::not_found) return true;
  if (ReadWholeFile(path.c_str(), LargestFile, &file) && IsDownload(name, file)) return true;
  return KeepOwnFile(path, name);
}

static bool BeginsAsShip(Reader r) { return TakeU16(&r) == 0x8b1f && TakeU8(&r) == 8; }  // a gzip stream

// A note without its file costs the player nothing: an own file never fits it.
static bool Store(const std::string &path, const std::string &name, Reader r) {
  for (const char *folder : {"saves", "cache"}) MakeDirectory(folder);  // where they are missing
  const std::vector<u8> note = NoteOf(r.bytes, r.left);
  return MayReplace(path, name) && ReplaceFile(NotePath(name).c_str(), note.data(), note.size()) &&
         ReplaceFile(path.c_str(), r.bytes, r.left);
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
  const bool stored = good && Store("saves/" + name + ".sts", name, r);
  if (!good) LogError("The server sent a file that is no ship, or too much of it");
  else if (!stored) LogError("Error writing ship file");
  if (stored) Failed.erase(name);
  else if (Failed.size() < MostFailed) Failed.insert(name);
}

bool DownloadFailed(const std::string &name) { return Failed.count(name) != 0; }
