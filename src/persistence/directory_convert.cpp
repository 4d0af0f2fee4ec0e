// Between the stream form and the directory store, and ships from the store into the table.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

#include "core/log.h"
#include "persistence/directory_slots.h"
#include "persistence/directory_store.h"
#include "persistence/placing.h"
#include "persistence/stream.h"
#include "platform/folders.h"

constexpr i64 PlacingDistance = 25030000;
constexpr u32 NoTableRow = 0xffffffff;  // the id of a ship that is in no table

static std::string StreamPath(const std::string &stem) { return "saves/" + stem + ".sts"; }

static bool IsFolder(const std::string &path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

static bool BeginConversion(Ship *ship) {
  InitShip(ship, NoTableRow);
  return AllocShipTable(ship) || LogError("Could not allocate block") != 0;
}

int ConvertStreamToDirectory(const char *name) {
  Ship ship;
  if (!BeginConversion(&ship)) return 0;
  int result = IsShipStem(name) ? LoadShipStream(&ship, StreamPath(name).c_str(), false) : 0;
  ship.fileStem = name;
  if (result != 0) result = SaveShipDirectory(&ship);
  FreeShip(&ship);
  return result;
}

int ConvertDirectoryToStream(const char *name) {
  const std::string stem = name;
  if (stem == "NULL" || !IsShipStem(stem)) return 0;
  SettleFolder(ShipFolder(stem).c_str());
  if (!IsFolder(ShipFolder(stem))) return 0;
  std::printf("Convert to sts: %s \n", name);
  Ship ship;
  if (!BeginConversion(&ship)) return 0;
  int result = LoadShipDirectory(&ship, name, true, true);
  ship.fileStem = name;
  if (result != 0) result = SaveShipStream(&ship, StreamPath(stem).c_str());
  FreeShip(&ship);
  return result;
}

int AddShipFromDirectory(ShipTable *table, const char *name, i64 x, i64 y, i64 z) {
  Ship *ship = PrepareShip(table);
  if (ship == nullptr) return 0;
  const int loaded = LoadShipDirectory(ship, name, true, false);
  if (loaded != 0) {
    ship->position[0] = PlaceOnAxis(x, ship->summary->sizeX, PlacingDistance);
    ship->position[1] = PlaceOnAxis(y, ship->summary->sizeY, PlacingDistance);
    ship->position[2] = PlaceOnAxis(z, ship->summary->sizeZ, PlacingDistance);
  }
  PublishShip(table);  // an empty one too
  return loaded;
}

static void EmptyTable(ShipTable *table) {
  ScopedLock world(&WorldMutex);
  const u16 count = table->count.exchange(0);
  table->current = 0;
  for (u16 row = 0; row < count; ++row) FreeShip(ShipAt(*table, row));
}

// A row of the table for a folder; it is given back when nothing can be loaded.
static void LoadRow(ShipTable *table, const char *stem, bool blocksToo) {
  ScopedLock world(&WorldMutex);
  Ship *ship = PrepareShip(table);
  if (ship == nullptr) return;
  if (LoadShipDirectory(ship, stem, blocksToo, true) != 0) PublishShip(table);
  else FreeShip(ship);
}

static bool IsFileName(const std::string &name) { return name.size() >= 4 && name[name.size() - 4] == '.'; }

// One entry of the folder. Of the files only streams can become folders; backups and other forms stay what they are.
static void LoadEntry(ShipTable *table, const std::string &name) {
  const bool file = IsFileName(name);
  const std::string stem = file ? name.substr(0, name.size() - 4) : name;
  if (file && (name != stem + ".sts" || IsFolder(ShipFolder(stem)))) return;
  std::printf("Loading Ship: %s \n", name.c_str());
  if (file) ConvertStreamToDirectory(stem.c_str());
  LoadRow(table, stem.c_str(), file);
}

void LoadAllShips(ShipTable *table) {
  EmptyTable(table);
  SettleFoldersIn("saves");
  const int saves = OpenFolderHere("saves");
  if (saves < 0) {
    LogError("Could not open save dir");
    return;
  }
  const std::vector<std::string> names = FolderEntries(saves);  // before a conversion adds any
  close(saves);
  for (const std::string &name : names) LoadEntry(table, name);
  std::printf("NumberOfShipsAfterLoading: %i \n", static_cast<int>(table->count.load()));
}
