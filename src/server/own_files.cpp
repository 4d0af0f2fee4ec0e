// Notes on the stream files that the server wrote. Between a file's writing and its note a kill may come: then the file is kept
// once more than needed, unless its blocks are the folder's.
#include "server/own_files.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "core/log.h"
#include "persistence/stream.h"
#include "net/wire.h"
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/threads.h"
#include "server/streams.h"

namespace {

constexpr int MostKept = 99;           // of one name, beside each other
constexpr size_t LongestNote = 64;
constexpr u32 NoTableRow = 0xffffffff;

std::string NotePath(const std::string &stem) { return "saves/." + stem + ".written"; }

// Size and hash of a file's bytes, as a line. Empty: it can't be read.
std::string PrintOf(const std::string &path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<char> piece(1 << 16);
  u64 size = 0, hash = 0xcbf29ce484222325;  // FNV-1a
  while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())) || file.gcount() > 0) {
    for (std::streamsize i = 0; i < file.gcount(); ++i) hash = (hash ^ static_cast<u8>(piece[static_cast<size_t>(i)])) * 0x100000001b3;
    size += static_cast<u64>(file.gcount());
  }
  return file.eof() ? std::to_string(size) + " " + std::to_string(hash) + "\n" : std::string();
}

bool IsNoted(const std::string &stem, const std::string &print) {
  std::vector<u8> note;
  return !print.empty() && ReadWholeFile(NotePath(stem).c_str(), LongestNote, &note) && std::string(note.begin(), note.end()) == print;
}

// Whether nothing of the file would be lost: as where a world comes from a copy without its notes.
bool HoldsBlocksOf(const Ship &ship, const std::string &path) {
  Ship there;
  bool whole = true;
  std::vector<u8> a, b;
  InitShip(&there, NoTableRow);
  if (!AllocShipTable(&there)) return false;
  bool same = ReadShipStream(&there, path.c_str(), &whole) != 0 && whole;
  there.displayName = ship.displayName;
  {
    const ScopedLock world(&WorldMutex);
    same = same && PackShip(there, &a) && PackShip(ship, &b) && a == b;
  }
  FreeShip(&there);
  return same;
}

// A link's second name would be one of the link, and the file behind it would still be replaced.
SecondName Keep(const std::string &path, const std::string &name) {
  std::error_code error;
  if (!std::filesystem::is_symlink(path, error)) return GiveSecondName(path.c_str(), name.c_str());
  if (std::filesystem::symlink_status(name, error).type() != std::filesystem::file_type::not_found) return SecondName::Taken;
  std::vector<u8> bytes;
  const bool copied = ReadWholeFile(path.c_str(), LargestFile, &bytes) && ReplaceFile(name.c_str(), bytes.data(), bytes.size());
  return copied ? SecondName::Made : SecondName::Failed;
}

}  // namespace

bool KeepOwnersFile(const Ship &ship) {
  const std::string &stem = ship.fileStem, path = StreamPath(stem);
  std::error_code error;
  if (!std::filesystem::exists(path, error) || IsNoted(stem, PrintOf(path)) || HoldsBlocksOf(ship, path)) return true;
  for (int copy = 1; copy <= MostKept; ++copy) {
    const std::string name = "saves/" + stem + (copy == 1 ? " (file)" : " (file " + std::to_string(copy) + ")") + ".sts";
    const SecondName result = Keep(path, name);
    if (result == SecondName::Taken) continue;
    if (result == SecondName::Failed) break;
    LogWarn((path + " was not written by this server: it is kept as " + name + ". The ship is the folder saves/" + stem +
             "/; to play with the file, stop the server, take the folder away and give the file its name back").c_str());
    return true;
  }
  return LogError((path + " was not written by this server and can't be kept beside a new one: take it away").c_str()) != 0;
}

void NoteOwnFile(const std::string &stem) {
  const std::string print = PrintOf(StreamPath(stem));
  if (!print.empty()) ReplaceFile(NotePath(stem).c_str(), print.data(), print.size());
}

std::vector<std::string> StreamsWithoutFolder() {
  constexpr std::string_view ending = ".sts";
  std::vector<std::string> names, stems;
  std::error_code error;
  const int saves = OpenFolderHere("saves");
  if (saves >= 0) FolderEntries(saves, &names);
  if (saves >= 0) close(saves);
  for (const std::string &name : names) {
    const std::string stem = name.substr(0, name.size() - std::min(name.size(), ending.size()));
    if (name.ends_with(ending) && !std::filesystem::is_directory("saves/" + stem, error)) stems.push_back(stem);
  }
  return stems;
}
