// Ships by file name: saving and loading the stream form, and ships that join the table.
#include <unistd.h>

#include <cstring>
#include <memory>

#include "core/log.h"
#include "persistence/backup.h"
#include "persistence/gzip_file.h"
#include "persistence/placing.h"
#include "persistence/stream.h"
#include "persistence/unpack.h"
#include "platform/files.h"
#include "platform/threads.h"

// One save at a time, so that an older copy of the blocks never replaces a newer one.
static Mutex SaveMutex{MutexRank::Save, "save", {}};

constexpr i64 PlacingDistance = 50030000;  // the middle cell's distance from a ship's corner, and three blocks

namespace {

enum class Written { Whole, NotOpened, Failed };  // anything but Whole leaves the old file as it was

// What a save needs of a ship.
struct ShipCopy {
  std::vector<u8> bytes;
  std::string stem;
  const char *keepAs = nullptr;  // the ship's keepStreamAs
};

}  // namespace

// The only step of a save for which the world stands still.
static bool CopyShip(const Ship &ship, ShipCopy *copy) {
  ScopedLock world(&WorldMutex);
  copy->stem = ship.fileStem;
  copy->keepAs = ship.keepStreamAs;
  return PackShip(ship, &copy->bytes);
}

static bool IsThere(const std::string &path) { return access(path.c_str(), F_OK) == 0; }

// What could not be read of a file, or another ship of the same name, would be lost with the save, were it not for this.
static bool KeepOldFile(const char *path, const char *ending) {
  if (ending == nullptr || !IsThere(path)) return true;
  const std::string name = KeepBeside(path, ending);
  if (name.empty()) return LogError((std::string(path) + " can't be kept beside the new one. The ship was not saved.").c_str()) != 0;
  LogWarn(("The file as it was is kept as " + name).c_str());
  return true;
}

// What the old file is kept as is made only when the new one is safe but for its name: saves that fail, day after day, must
// not cost older backups.
static bool ReplaceShip(FileReplacement *file, const char *path, const ShipCopy &copy) {
  if (!WriteGzip(file, copy.bytes) || !SettleReplacement(file) || !KeepOldFile(path, copy.keepAs)) {
    AbandonReplacement(file);
    return false;
  }
  const std::string backup = KeepBackup(path, LocalDate());
  const bool good = CommitReplacement(file);
  if (good && !backup.empty()) RemoveOldBackups(backup);
  if (!good && !backup.empty()) RemoveFile(backup.c_str());
  return good;
}

static Written WriteShip(Ship *ship, const char *path, const ShipCopy &copy) {
  FileReplacement file;
  if (!BeginReplacement(&file, path)) return Written::NotOpened;
  if (!ReplaceShip(&file, path, copy)) {
    LogError((std::string("Could not write ") + path + ". The old file stays.").c_str());
    return Written::Failed;
  }
  if (copy.keepAs == nullptr) return Written::Whole;
  ScopedLock world(&WorldMutex);
  ship->keepStreamAs = nullptr;
  return Written::Whole;
}

int SaveShipStream(Ship *ship, const char *path) {
  ScopedLock save(&SaveMutex);
  ShipCopy copy;
  return CopyShip(*ship, &copy) && WriteShip(ship, path, copy) == Written::Whole;
}

int SaveShipByName(Ship *ship) {
  ScopedLock save(&SaveMutex);
  ShipCopy copy;
  if (!CopyShip(*ship, &copy)) return 0;
  const std::string path = "saves/" + copy.stem + ".sts";
  const Written result = WriteShip(ship, path.c_str(), copy);
  if (result == Written::NotOpened) LogError(("Could not create " + path).c_str());
  return result == Written::Whole;
}

int SaveShipRawStream(Ship *ship, const char *name) {
  ScopedLock save(&SaveMutex);
  ShipCopy copy;
  if (!CopyShip(*ship, &copy)) return 0;
  return ReplaceFile((std::string("saves/") + name + ".sls").c_str(), copy.bytes.data(), copy.bytes.size());
}

// "saves/stem.sts" and "cache/stem.sss" alike: what stands between the first six and the last four letters.
static std::string StemOf(const std::string &path) {
  return path.size() < 10 ? std::string() : path.substr(6, path.size() - 10);
}

// The next free name for a ship whose own is taken.
static std::string FreeStem(const std::string &stem) {
  for (int copy = 2;; ++copy) {
    const std::string name = stem + " " + std::to_string(copy);
    if (!IsThere("saves/" + name + ".sts")) return name;
  }
}

// The file as it was gets a second name at once. Where that can't be done, the ship gets one, so that both stay.
static void KeepDamagedFile(const char *path, Ship *ship) {
  ship->keepStreamAs = ".damaged";
  if (!IsThere(path)) return;
  const std::string name = KeepBeside(path, ".damaged");
  if (!name.empty()) {
    LogWarn(("The file as it was is kept as " + name).c_str());
  } else if (ship->fileStem == StemOf(path)) {
    ship->fileStem = FreeStem(ship->fileStem);
    LogError((std::string(path) + " can't be kept beside a new one. The ship will be saved as " + ship->fileStem).c_str());
  }
}

// Decompresses into a buffer that always has room for the longest piece and unpacks what is whole in it. Whether that was
// all of it.
static bool UnpackGzip(GzipReader *g, ShipUnpacker *u) {
  constexpr size_t size = GzipBufferBytes + LongestPiece;
  const auto content = std::make_unique_for_overwrite<u8[]>(size);
  size_t have = 0;
  while (!g->ended && !u->stopped) {
    have += ReadGzip(g, content.get() + have, size - have);
    const size_t used = UnpackPiece(u, content.get(), have);
    have -= used;
    std::memmove(content.get(), content.get() + used, have);
  }
  return EndUnpack(u, content.get(), have);
}

// budget: null for the player's own files, which may be as large as they like. *whole: all of it was read.
static int ReadStream(Ship *ship, const char *path, LoadBudget *budget, bool *whole) {
  GzipReader g;
  bool opened;
  *whole = false;
  if (!OpenGzip(&g, path, &opened)) {
    if (opened) LogError((std::string(path) + " is not a ship file").c_str());
    return 0;
  }
  ship->fileStem = StemOf(path);
  ShipUnpacker u = BeginUnpack(ship, path);
  if (budget != nullptr) {
    u.budget = budget->bytes;
    u.chunkBytes += CellsPerChunk * sizeof(GraphicBlock);
  }
  *whole = UnpackGzip(&g, &u) && !g.damaged;
  if (budget != nullptr) budget->bytes = u.tooLarge ? 0 : u.budget;
  if (g.damaged) LogWarn((std::string("Ship file ") + path + " is damaged. All that could be read was loaded.").c_str());
  CloseGzip(&g);
  return 1;
}

int ReadShipStream(Ship *ship, const char *path, bool *whole) { return ReadStream(ship, path, nullptr, whole); }

int LoadShipWithin(Ship *ship, const char *path, LoadBudget *budget) {
  bool whole;
  if (ReadStream(ship, path, budget, &whole) == 0) return 0;
  if (!whole) ship->keepStreamAs = ".damaged";  // a server's file: no copy of it needs to lie among the player's ships
  if (!FinishShipWithin(ship, &budget->light))
    LogWarn((std::string("Ship file ") + path + " has too many lamps. Some of them are dark.").c_str());
  return 1;
}

int LoadShipStream(Ship *ship, const char *path, bool finish) {
  bool whole;
  const int read = ReadShipStream(ship, path, &whole);
  if (!whole) KeepDamagedFile(path, ship);
  if (read != 0 && finish) FinishShip(ship);
  return read;
}

int LoadShipByName(Ship *ship, const char *name) {
  const std::string path = std::string("saves/") + name + ".sts";
  Print("Loading ship: %s \n", path.c_str());
  return LoadShipStream(ship, path.c_str(), true);
}

int AddShipFromStream(ShipTable *table, const char *name, i64 x, i64 y, i64 z) {
  const std::string file = name;
  const std::string path = file.rfind("saves/", 0) == 0 ? file : "saves/" + file;
  Ship *ship = PrepareShip(table);
  if (ship == nullptr) return 0;
  const int loaded = LoadShipStream(ship, path.c_str(), true);
  if (loaded != 0) {
    ship->position[0] = PlaceOnAxis(x, ship->summary->sizeX, PlacingDistance);
    ship->position[1] = PlaceOnAxis(y, ship->summary->sizeY, PlacingDistance);
    ship->position[2] = PlaceOnAxis(z, ship->summary->sizeZ, PlacingDistance);
  }
  PublishShip(table);  // an empty one too
  return loaded;
}
