// Ships by file name: saving and loading the stream form, and ships that join the table.
#include <cstdio>
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

// The only step of a save for which the world stands still.
static bool CopyShip(Ship *ship, std::vector<u8> *bytes, std::string *stem) {
  ScopedLock world(&WorldMutex);
  *stem = ship->fileStem;
  return PackShip(*ship, bytes);
}

static GzipWritten WriteShip(const char *path, const std::vector<u8> &bytes) {
  KeepBackup(path, LocalDate());
  const GzipWritten result = ReplaceGzip(path, bytes);
  if (result == GzipWritten::Failed)
    LogError((std::string("Could not write ") + path + ". The old file stays.").c_str());
  return result;
}

int SaveShipStream(Ship *ship, const char *path) {
  ScopedLock save(&SaveMutex);
  std::vector<u8> bytes;
  std::string stem;
  return CopyShip(ship, &bytes, &stem) && WriteShip(path, bytes) == GzipWritten::Whole;
}

int SaveShipByName(Ship *ship) {
  ScopedLock save(&SaveMutex);
  std::vector<u8> bytes;
  std::string stem;
  if (!CopyShip(ship, &bytes, &stem)) return 0;
  const std::string path = "saves/" + stem + ".sts";
  const GzipWritten result = WriteShip(path.c_str(), bytes);
  if (result == GzipWritten::NotOpened) LogError(("Could not create " + path).c_str());
  return result == GzipWritten::Whole;
}

int SaveShipRawStream(Ship *ship, const char *name) {
  ScopedLock save(&SaveMutex);
  std::vector<u8> bytes;
  std::string stem;
  if (!CopyShip(ship, &bytes, &stem)) return 0;
  return ReplaceFile((std::string("saves/") + name + ".sls").c_str(), bytes.data(), bytes.size());
}

// "saves/stem.sts" and "cache/stem.sss" alike: what stands between the first six and the last four letters.
static std::string StemOf(const std::string &path) {
  return path.size() < 10 ? std::string() : path.substr(6, path.size() - 10);
}

// What could not be read of a file would be lost with the next save, were it not for this.
static void KeepDamagedFile(const char *path) {
  const std::string name = KeepBeside(path, ".damaged");
  if (!name.empty()) LogWarn(("The file as it was is kept as " + name).c_str());
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

// Without a budget: the player's own files.
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
  if (!whole) KeepDamagedFile(path);
  if (!FinishShipWithin(ship, &budget->light))
    LogWarn((std::string("Ship file ") + path + " has too many lamps. Some of them are dark.").c_str());
  return 1;
}

int LoadShipStream(Ship *ship, const char *path, bool finish) {
  bool whole;
  const int read = ReadShipStream(ship, path, &whole);
  if (!whole) KeepDamagedFile(path);
  if (read != 0 && finish) FinishShip(ship);
  return read;
}

int LoadShipByName(Ship *ship, const char *name) {
  const std::string path = std::string("saves/") + name + ".sts";
  std::printf("Loading ship: %s \n", path.c_str());
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
