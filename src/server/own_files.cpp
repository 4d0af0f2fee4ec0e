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
#include "platform/files.h"
#include "platform/folders.h"
#include "platform/threads.h"
#include "server/streams.h"

namespace {

constexpr int MostKept = 99;           // of one name, beside each other
constexpr size_t LongestNote = 64;
constexpr u32 NoTableRow = 0xffffffff;

std::string NotePath(const std::string &stem) { return "saves/." + stem + ".written"; }

// What had the stream file's name until the server's file got it; of a kill, too.
std::string OldPath(const std::string &stem) { return "saves/." + stem + ".sts.old"; }

std::string LineOf(const FileSum &sum) { return std::to_string(sum.size) + " " + std::to_string(sum.hash) + "\n"; }

bool SumOf(const std::string &path, FileSum *sum) {
  std::ifstream file(path, std::ios::binary);
  std::vector<char> piece(1 << 16);
  *sum = {};
  while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())) || file.gcount() > 0)
    AddToSum(piece.data(), static_cast<size_t>(file.gcount()), sum);
  return file.eof();
}

bool IsNoted(const std::string &stem, const std::string &path) {
  FileSum sum;
  std::vector<u8> note;
  if (!SumOf(path, &sum) || !ReadWholeFile(NotePath(stem).c_str(), LongestNote, &note)) return false;
  return std::string(note.begin(), note.end()) == LineOf(sum);
}

void NoteOwnFile(const std::string &stem, const FileSum &sum) {
  const std::string line = LineOf(sum);
  ReplaceFile(NotePath(stem).c_str(), line.data(), line.size());
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

// Stems of the files that the start is going to make folders of.
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

// Somebody's file gets a name that is free.
bool KeepOwnersFile(const std::string &stem, const std::string &old) {
  const std::string path = StreamPath(stem);
  for (int copy = 1; copy <= MostKept; ++copy) {
    const std::string name = "saves/" + stem + (copy == 1 ? " (file)" : " (file " + std::to_string(copy) + ")") + ".sts";
    const SecondName result = GiveSecondName(old.c_str(), name.c_str());
    if (result == SecondName::Taken) continue;
    if (result == SecondName::Failed) break;
    LogWarn((path + " was not written by this server: it is kept as " + name + ". The ship is the folder saves/" + stem +
             "/; to play with the file, stop the server, take the folder away and give the file its name back").c_str());
    return true;
  }
  return LogError((path + " was not written by this server and can't be kept beside a new one: it is " + old + ", take it away").c_str()) != 0;
}

// False: what stood in the file's place stays under that name, and nothing may take it.
bool SettleOld(const Ship &ship) {
  const std::string &stem = ship.fileStem, old = OldPath(stem);
  if (!NameIsTaken(old.c_str())) return true;
  if (!IsNoted(stem, old) && !HoldsBlocksOf(ship, old) && !KeepOwnersFile(stem, old)) return false;
  return RemoveFile(old.c_str());
}

}  // namespace

// A file may come at any moment, so only what has lost its name to the new file is looked at.
bool WriteStreamFile(Ship *ship) {
  FileSum sum;
  const std::string &stem = ship->fileStem;
  if (!SettleOld(*ship)) return false;
  if (SaveShipStreamKeepingOld(ship, StreamPath(stem).c_str(), OldPath(stem).c_str(), &sum) == 0) return false;
  SettleOld(*ship);  // with the note of the file before
  NoteOwnFile(stem, sum);
  return true;
}

std::vector<TakenStream> StreamsToTake() {
  std::vector<TakenStream> streams;
  for (const std::string &stem : StreamsWithoutFolder()) {
    TakenStream taken{stem, {}};
    if (SumOf(StreamPath(stem), &taken.sum)) streams.push_back(taken);
  }
  return streams;
}

void NoteTaken(const std::vector<TakenStream> &streams) {
  std::error_code error;
  for (const TakenStream &taken : streams)
    if (std::filesystem::is_directory("saves/" + taken.stem, error)) NoteOwnFile(taken.stem, taken.sum);
}
