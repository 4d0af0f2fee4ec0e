// Between the stream form and the directory store, and ships from the store into the table.
#include <sys/stat.h>
#include <unistd.h>

#include <string_view>

#include "core/log.h"
#include "persistence/directory_slots.h"
#include "persistence/directory_store.h"
#include "persistence/placing.h"
#include "persistence/stream.h"
#include "platform/files.h"
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

// A source that was not read whole must not cost a target that may be. Nor may the source be lost: from now on its name is the
// folder's, and a server writes the folder's ship there.
static bool KeepBoth(const std::string &source, Ship *ship) {
  ship->keepFolderAs = ".replaced";
  const std::string kept = KeepBeside(source.c_str(), ".damaged");
  if (kept.empty()) return LogError((source + " is damaged, and can't be kept beside a new one. It was not converted.").c_str()) != 0;
  LogWarn(("The file as it was is kept as " + kept).c_str());
  return true;
}

// *found: there is a ship in the stream file.
static int ConvertStream(const char *name, bool *found) {
  Ship ship;
  bool whole = true;
  *found = false;
  if (!IsShipStem(name) || !BeginConversion(&ship)) return 0;
  *found = ReadShipStream(&ship, StreamPath(name).c_str(), &whole) != 0;
  ship.fileStem = name;
  const bool good = *found && (whole || KeepBoth(StreamPath(name), &ship));
  const int result = good ? SaveShipDirectory(&ship) : 0;
  FreeShip(&ship);
  return result;
}

int ConvertStreamToDirectory(const char *name) {
  bool found;
  return ConvertStream(name, &found);
}

int ConvertDirectoryToStream(const char *name) {
  const std::string stem = name;
  if (stem == "NULL" || !IsShipStem(stem)) return 0;
  SettleFolder(ShipFolder(stem).c_str(), InfoName);
  if (!IsFolder(ShipFolder(stem))) return 0;
  Print("Convert to sts: %s \n", name);
  Ship ship;
  if (!BeginConversion(&ship)) return 0;
  int result = LoadShipDirectory(&ship, name, true, true);
  ship.fileStem = name;
  if (ship.keepFolderAs != nullptr) ship.keepStreamAs = ".replaced";
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
static bool LoadRow(ShipTable *table, const char *stem, bool blocksToo) {
  ScopedLock world(&WorldMutex);
  Ship *ship = PrepareShip(table);
  if (ship == nullptr) return LogError("Could not allocate block") != 0;
  const bool loaded = LoadShipDirectory(ship, stem, blocksToo, true) != 0;
  if (loaded) PublishShip(table);
  else FreeShip(ship);
  return loaded;
}

static bool IsFileName(const std::string &name) { return name.size() >= 4 && name[name.size() - 4] == '.'; }

static bool IsThere(const std::string &path) {
  struct stat info;
  return lstat(path.c_str(), &info) == 0;
}

static bool HasStream(const std::string &stem) { return IsThere(StreamPath(stem)) && !IsFolder(StreamPath(stem)); }

// Whether a folder is one that a save kept, as "ship.damaged" and "ship.replaced2". A ship may be called so, too: then there
// is no "ship" that it was kept for, or it has a stream file of its own.
static bool IsKept(const std::string &folder) {
  std::string name = folder;
  if (!name.empty() && name.back() >= '2' && name.back() <= '9') name.pop_back();
  if (!name.ends_with(".damaged") && !name.ends_with(".replaced")) return false;
  const std::string stem = name.substr(0, name.rfind('.'));
  return (IsThere(ShipFolder(stem)) || HasStream(stem)) && !HasStream(folder);
}

// Whether a stream file is one that a server kept beside its ship, as "ship (file)" and "ship (file 2)". The ship may have no folder
// yet: its stream file comes behind in the order of names. A builder may have called a ship so, too.
static bool IsKeptFile(const std::string &stem) {
  constexpr std::string_view mark = " (file";
  const size_t at = stem.rfind(mark);
  if (at == std::string::npos || stem.back() != ')') return false;
  const std::string ship = stem.substr(0, at), number = stem.substr(at + mark.size(), stem.size() - 1 - at - mark.size());
  const bool marked = number.empty() || (number[0] == ' ' && number.find_first_not_of("0123456789", 1) == std::string::npos);
  const bool isThere = IsFolder(ShipFolder(ship)) || HasStream(ship);
  if (marked && isThere)
    LogWarn(("saves/" + stem + ".sts is taken for a file that was kept beside the ship " + ship +
             ", and not loaded. If it is a ship of its own, give it a name without \"(file\"").c_str());
  return marked && isThere;
}

// A stream file becomes a folder first, unless it has one. False: it can't be loaded, whatever is wrong with it. Who has put it
// there wants its ship, and would learn of its absence from players.
static bool LoadStreamEntry(ShipTable *table, const std::string &name) {
  const std::string stem = name.substr(0, name.size() - 4);
  if (name != stem + ".sts" || IsFolder(ShipFolder(stem)) || IsKeptFile(stem)) return true;
  Print("Loading Ship: %s \n", name.c_str());
  bool found;
  if (ConvertStream(stem.c_str(), &found) != 0) return LoadRow(table, stem.c_str(), true);
  return found ? false : LogError(("saves/" + name + " is no ship: mend it or take it away").c_str()) != 0;
}

// A folder that somebody called like a stream file. A ship that was played under such a name has a stream file of its own.
static bool IsMisnamed(const std::string &folder) {
  if (!folder.ends_with(".sts") || HasStream(folder)) return false;
  LogWarn((ShipFolder(folder) + " is a folder with the name of a file, and not loaded: take \".sts\" off its name").c_str());
  return true;
}

static bool LoadFolderEntry(ShipTable *table, const std::string &name) {
  if (IsKept(name)) return true;
  if (IsMisnamed(name)) return true;
  Print("Loading Ship: %s \n", name.c_str());
  return LoadRow(table, name.c_str(), false);
}

int LoadAllShips(ShipTable *table) {
  EmptyTable(table);
  SettleFoldersIn("saves", InfoName);
  std::vector<std::string> names;
  const int saves = OpenFolderHere("saves");
  const bool listed = saves >= 0 && FolderEntries(saves, &names);  // before a conversion adds any
  if (saves >= 0) close(saves);
  if (!listed) return LogError("Could not open save dir");
  bool all = true;
  for (const std::string &name : names) {
    if (IsFolder(ShipFolder(name))) all = LoadFolderEntry(table, name) && all;
    else if (IsFileName(name)) all = LoadStreamEntry(table, name) && all;
  }
  Print("NumberOfShipsAfterLoading: %i \n", static_cast<int>(table->count.load()));
  return all ? 1 : 0;
}
