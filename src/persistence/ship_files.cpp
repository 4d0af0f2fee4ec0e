// Ships by file name: saving and loading the stream form, and ships that join the table.
#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>
#include <memory>

#include "core/log.h"
#include "core/utils.h"
#include "persistence/backup.h"
#include "persistence/gzip_file.h"
#include "persistence/placing.h"
#include "persistence/stream.h"
#include "persistence/unpack.h"
#include "platform/files.h"
#include "platform/threads.h"

namespace {

// One save at a time, so that an older copy of the blocks never replaces a newer one.
Mutex SaveMutex{MutexRank::Save, "save", {}};

constexpr i64 PlacingDistance = 50030000;  // the middle cell's distance from a ship's corner, and three blocks

// A path of a ship without its folder.
std::string FileNameOf(const std::string &path) { return path.substr(std::min<size_t>(path.size(), 6)); }

enum class Written { Whole, NotOpened, Failed };  // anything but Whole leaves the old file as it was

// What a save needs of a ship.
struct StreamCopy {
  std::vector<u8> bytes;
  std::string stem;
  const char *keepAs = nullptr;  // the ship's keepStreamAs
  bool readInPart = false;
  bool watched = false;          // what stands under the name must be known
  FileStamp known;               // what is known to stand there
  const char *old = nullptr;     // the name that what stands there gets; null: it goes
};

// What a save has to tell beside whether it worked.
struct SaveResult {
  Written written = Written::Failed;
  std::string otherKept;  // the name of what another program had put in the file's place; or empty
  FileSum sum;            // of the file that was written
};

// What a reader of a file has met.
struct StreamRead {
  bool opened = false, whole = false;
  FileStamp stamp;
  const char *fault = "";  // in words, when it was not whole
};

// The only step of a save for which the world stands still.
bool CopyShip(const Ship &ship, StreamCopy *copy) {
  ScopedLock world(&WorldMutex);
  copy->stem = ship.fileStem;
  copy->keepAs = ship.keepStreamAs;
  copy->readInPart = ship.readInPart;
  copy->watched = !ship.knownStem.empty();
  if (ship.knownStem == ship.fileStem) copy->known = ship.knownFile;
  return PackShip(ship, &copy->bytes);
}

// What could not be read of a file, or another ship of the same name, would be lost with the save, were it not for this.
bool KeepOldFile(const char *path, const char *ending) {
  if (ending == nullptr || !NameIsTaken(path)) return true;
  const auto numbered = [&](int copy) { return WithEnding(path, std::string(ending) + (copy == 1 ? "" : std::to_string(copy))); };
  std::string name = KeepBeside(path, ending);
  if (name.empty() && !StampAt(path).read) name = MoveUnder(path, numbered);
  if (name.empty()) return LogError((std::string(path) + " can't be kept beside the new one. The ship was not saved.").c_str()) != 0;
  LogWarn(("The file as it was is kept as " + name).c_str());
  return true;
}

// "saves/NAME (other).sts", then "saves/NAME (other 2).sts" and on.
std::string OtherName(const std::string &stem, int copy) {
  char ending[32] = " (other).sts";
  if (copy > 1) std::snprintf(ending, sizeof ending, " (other %d).sts", copy);
  return "saves/" + WithEnding(stem, ending);
}

// What another program, or another computer through a synced folder, has put under the name since known was taken of it is
// somebody's ship too. What may not be read may have a second name refused as well: such a file makes way itself.
bool KeepOtherFile(const char *path, const StreamCopy &copy, const FileStamp &known, std::string *kept) {
  const FileStamp now = StampAt(path);
  if (!now.there || SameContent(now, known)) return true;
  const auto name = [&](int number) { return OtherName(copy.stem, number); };
  *kept = KeepUnder(path, name);
  if (kept->empty() && !now.read) *kept = MoveUnder(path, name);
  if (kept->empty()) return LogError((std::string(path) + " was changed by another program, and can't be kept. The ship was not saved.").c_str()) != 0;
  LogWarn((std::string(path) + " was changed by another program. It is kept as " + *kept).c_str());
  return true;
}

// A ship that was read in part is no backup of the whole one, and must not push those out that are.
std::string KeepGoodBackup(const char *path, const StreamCopy &copy) {
  const FileStamp now = StampAt(path);
  if (now.there && !now.read) LogWarn((std::string(path) + " can't be read. The ship is saved without a backup.").c_str());
  return copy.readInPart || !now.read ? std::string() : KeepBackup(path, LocalDate());
}

// What the old file is kept as is made only when the new one is safe but for its name: saves that fail, day after day, must
// not cost older backups. The making takes a while: what came under the name in it is looked for again at the last moment.
bool ReplaceShip(FileReplacement *file, const char *path, const StreamCopy &copy, std::string *other) {
  const bool settled = WriteGzip(file, copy.bytes) && SettleReplacement(file);
  const FileStamp seen = StampAt(path);
  const bool byOthers = copy.watched && copy.keepAs == nullptr;
  if (!settled || !KeepOldFile(path, copy.keepAs) || (byOthers && !KeepOtherFile(path, copy, copy.known, other))) {
    AbandonReplacement(file);
    return false;
  }
  const std::string backup = KeepGoodBackup(path, copy);
  if (copy.watched && !KeepOtherFile(path, copy, seen, other)) AbandonReplacement(file);
  const bool good = copy.old == nullptr ? CommitReplacement(file) : CommitKeepingOld(file, copy.old);
  if (good && !backup.empty()) EndBackup(backup);
  if (!good && !backup.empty()) RemoveFile(backup.c_str());
  return good;
}

// Now the file is this ship, and no other.
void NoteSaved(Ship *ship, const StreamCopy &copy, const FileStamp &stamp, bool byName) {
  ScopedLock world(&WorldMutex);
  if (copy.keepAs != nullptr) ship->keepStreamAs = nullptr;
  if (!byName) return;
  ship->knownStem = copy.stem;
  ship->knownFile = stamp;
}

// A link stays one: the file behind it is replaced, in its own folder.
SaveResult WriteShip(Ship *ship, const char *path, const StreamCopy &copy, bool byName) {
  FileReplacement file;
  SaveResult result;
  const std::string behind = FileBehind(path);
  if (behind.empty() || !BeginReplacement(&file, behind.c_str())) {
    result.written = Written::NotOpened;
  } else if (!ReplaceShip(&file, path, copy, &result.otherKept)) {
    LogError((std::string("Could not write ") + path + ". The old file stays.").c_str());
  } else {
    result.written = Written::Whole;
    result.sum = file.sum;
    NoteSaved(ship, copy, file.stamp, byName);
  }
  return result;
}

}  // namespace

int SaveShipStream(Ship *ship, const char *path) {
  ScopedLock save(&SaveMutex);
  StreamCopy copy;
  if (!CopyShip(*ship, &copy)) return 0;
  copy.watched = false;
  return WriteShip(ship, path, copy, false).written == Written::Whole;
}

int SaveShipStreamKeepingOld(Ship *ship, const char *path, const char *old, FileSum *sum) {
  ScopedLock save(&SaveMutex);
  StreamCopy copy;
  if (!CopyShip(*ship, &copy)) return 0;
  copy.watched = false;
  copy.old = old;
  const SaveResult result = WriteShip(ship, path, copy, false);
  *sum = result.sum;
  return result.written == Written::Whole;
}

// news: null for a save that takes whatever stands under the name for the ship's own.
static int SaveByName(Ship *ship, std::string *news) {
  ScopedLock save(&SaveMutex);
  StreamCopy copy;
  if (!CopyShip(*ship, &copy)) return 0;
  copy.watched = copy.watched && news != nullptr;
  const std::string path = "saves/" + copy.stem + ".sts";
  const SaveResult result = WriteShip(ship, path.c_str(), copy, true);
  if (result.written == Written::NotOpened) LogError(("Could not create " + path).c_str());
  if (!result.otherKept.empty())
    *news = copy.stem + ".sts was changed by another program. That ship is kept as " + FileNameOf(result.otherKept);
  return result.written == Written::Whole;
}

int SaveShipByName(Ship *ship) { return SaveByName(ship, nullptr); }

int SaveShipTelling(Ship *ship, std::string *news) {
  news->clear();
  return SaveByName(ship, news);
}

int SaveShipRawStream(Ship *ship, const char *name) {
  ScopedLock save(&SaveMutex);
  StreamCopy copy;
  if (!CopyShip(*ship, &copy)) return 0;
  return ReplaceFile((std::string("saves/") + name + ".sls").c_str(), copy.bytes.data(), copy.bytes.size());
}

// "saves/stem.sts" and "cache/stem.sss" alike: what stands between the first six and the last four letters.
static std::string StemOf(const std::string &path) {
  return path.size() < 10 ? std::string() : path.substr(6, path.size() - 10);
}

// The next free name for a ship whose own is taken. What is cut off makes room for all that the game puts behind a name.
static std::string FreeStem(const std::string &stem) {
  for (int copy = 2;; ++copy) {
    const std::string name = std::string(FrontOf(stem, LongestStem)) + " " + std::to_string(copy);
    if (!NameIsTaken(("saves/" + name + ".sts").c_str())) return name;
  }
}

static void TakeFreeStem(const char *path, Ship *ship) {
  if (ship->fileStem == StemOf(path)) ship->fileStem = FreeStem(ship->fileStem);
}

// The file as it was gets a second name at once. Where that can't be done, the ship gets one, so that both stay. The second name
// of the file, or empty.
static std::string KeepDamagedFile(const char *path, Ship *ship) {
  ship->keepStreamAs = ".damaged";
  if (!SavingOn || !StampAt(path).there) return {};
  const std::string name = KeepBeside(path, ".damaged");
  if (!name.empty()) {
    LogWarn(("The file as it was is kept as " + name).c_str());
  } else if (ship->fileStem == StemOf(path)) {
    TakeFreeStem(path, ship);
    LogError((std::string(path) + " can't be kept beside a new one. The ship will be saved as " + ship->fileStem).c_str());
  }
  return name;
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

static const char *FaultIn(const ShipUnpacker &u, const GzipReader &g) {
  if (g.damaged || u.cut) return "is cut short or damaged";
  if (u.tooLarge) return "is too large";
  if (u.unknownRow) return "has blocks that the tables here don't know";
  return u.otherVersion ? "is of another version of the game" : "is damaged";
}

// budget: null for the player's own files, which may be as large as they like.
static int ReadStream(Ship *ship, const char *path, LoadBudget *budget, StreamRead *read) {
  GzipReader g;
  if (!OpenGzip(&g, path, &read->opened)) {
    if (read->opened) LogError((std::string(path) + " is not a ship file").c_str());
    read->stamp = StampAt(path);
    return 0;
  }
  read->stamp = StampOf(fileno(g.file));
  ship->fileStem = StemOf(path);
  ShipUnpacker u = BeginUnpack(ship, path);
  if (budget != nullptr) {
    u.budget = budget->bytes;
    u.chunkBytes += CellsPerChunk * sizeof(GraphicBlock);
  }
  read->whole = UnpackGzip(&g, &u) && !g.damaged;
  if (!read->whole) read->fault = FaultIn(u, g);
  if (budget != nullptr) budget->bytes = u.tooLarge ? 0 : u.budget;
  if (g.damaged) LogWarn((std::string("Ship file ") + path + " is damaged. All that could be read was loaded.").c_str());
  CloseGzip(&g);
  return 1;
}

int ReadShipStream(Ship *ship, const char *path, bool *whole) {
  StreamRead read;
  const int result = ReadStream(ship, path, nullptr, &read);
  *whole = read.whole;
  return result;
}

int LoadShipWithin(Ship *ship, const char *path, LoadBudget *budget) {
  StreamRead read;
  if (ReadStream(ship, path, budget, &read) == 0) return 0;
  if (!read.whole) ship->keepStreamAs = ".damaged";  // a server's file: no copy of it needs to lie among the player's ships
  if (!FinishShipWithin(ship, &budget->light))
    LogWarn((std::string("Ship file ") + path + " has too many lamps. Some of them are dark.").c_str());
  return 1;
}

static u64 BlocksOf(const Ship &ship) {
  u64 blocks = 0;
  ForEachChunk(ship, [&blocks](Chunk &, ChunkCells &cells, CellAddress) {
    for (const u64 word : cells.occupied) blocks += static_cast<u64>(std::popcount(word));
  });
  return blocks;
}

// Words for a player: what is wrong with a file that gave nothing.
static std::string TellUnreadable(const std::string &path, const StreamRead &read) {
  const std::string behind = FileBehind(path.c_str());
  std::string news = FileNameOf(path);
  if (read.stamp.there && read.stamp.size == 0) news += " is empty";
  else if (read.fault[0] != '\0') news += std::string(" ") + read.fault + ": no block of it could be read";
  else if (!NameIsTaken(path.c_str())) news += " is not there any more";
  else if (read.opened) news += " is no ship file";
  else if (!behind.empty() && behind != path && !NameIsTaken(behind.c_str())) news += " is a link to " + behind + ", which is not there";
  else news += " can't be opened";
  return news;
}

// The same of one that was read in part, and what was read.
static std::string TellDamaged(const std::string &path, const StreamRead &read, const Ship &ship, const std::string &kept) {
  return FileNameOf(path) + " " + read.fault + ": " + std::to_string(BlocksOf(ship)) + " blocks were read, others not. The file as it was " +
         (kept.empty() ? "stays; the ship will be saved as " + ship.fileStem : "is " + FileNameOf(kept)) +
         ". For an earlier ship: Esc, Load Ship, Backups";
}

// What follows a read: the file is known, and kept if it has more than the ship. The second name of such a file, or empty.
static std::string SettleLoad(Ship *ship, const char *path, const StreamRead &read, bool loaded) {
  const std::string kept = read.whole ? std::string() : KeepDamagedFile(path, ship);
  ship->knownStem = StemOf(path);
  ship->knownFile = read.stamp;
  ship->readInPart = loaded && !read.whole;
  return kept;
}

// Nothing was read, not even a part. Only a whole file is a ship without blocks.
static bool GaveNothing(const Ship &ship, const StreamRead &read, int result) {
  return result == 0 || (!read.whole && BlocksOf(ship) == 0);
}

// The ship is as before the read, for what comes in the file's place; that must not grow over the file.
static void GoWithout(Ship *ship, const char *path) {
  const std::string stem = ship->fileStem;
  FreeShip(ship);
  InitShip(ship, ship->id);
  AllocShipTable(ship);
  ship->fileStem = stem;
  TakeFreeStem(path, ship);
  ship->knownStem = ship->fileStem;
}

// news: null for a load that nobody watches. What gave no block though it should have some isn't loaded for one who watches: an
// empty ship would be saved over it.
static int LoadTelling(Ship *ship, const char *path, bool finish, std::string *news) {
  StreamRead read;
  const int result = ReadStream(ship, path, nullptr, &read);
  if (news != nullptr && GaveNothing(*ship, read, result) && NameIsTaken(path)) {
    GoWithout(ship, path);
    *news = TellUnreadable(path, read) + ". It stays as it is, and this ship will be saved as " + ship->fileStem +
            ". Put it back and load it, or load a backup: Esc, Load Ship";
    return 0;
  }
  const std::string kept = SettleLoad(ship, path, read, result != 0);
  if (news != nullptr && result != 0 && !read.whole) *news = TellDamaged(path, read, *ship, kept);
  if (result != 0 && finish) FinishShip(ship);
  return result;
}

static int LoadByName(Ship *ship, const char *name, std::string *news) {
  const std::string path = std::string("saves/") + name + ".sts";
  Print("Loading ship: %s \n", path.c_str());
  return LoadTelling(ship, path.c_str(), true, news);
}

// For a player who chose a file there is a ship already: one that gives nothing leaves them where they are.
static int AddWatched(Ship *ship, const std::string &path, std::string *news) {
  StreamRead read;
  const int result = ReadStream(ship, path.c_str(), nullptr, &read);
  if (GaveNothing(*ship, read, result)) {
    FreeShip(ship);
    *news = TellUnreadable(path, read) + ". You stay in the ship that you fly" + (NameIsTaken(path.c_str()) ? ", and the file stays as it is" : "");
    return 0;
  }
  const std::string kept = SettleLoad(ship, path.c_str(), read, true);
  if (!read.whole) *news = TellDamaged(path, read, *ship, kept);
  FinishShip(ship);
  return 1;
}

static int AddByName(ShipTable *table, const char *name, i64 x, i64 y, i64 z, std::string *news) {
  const std::string file = name;
  const std::string path = file.rfind("saves/", 0) == 0 ? file : "saves/" + file;
  Ship *ship = PrepareShip(table);
  if (ship == nullptr) return 0;
  const int loaded = news != nullptr ? AddWatched(ship, path, news) : LoadTelling(ship, path.c_str(), true, nullptr);
  if (loaded == 0 && news != nullptr) return 0;
  if (loaded != 0) {
    ship->position[0] = PlaceOnAxis(x, ship->summary->sizeX, PlacingDistance);
    ship->position[1] = PlaceOnAxis(y, ship->summary->sizeY, PlacingDistance);
    ship->position[2] = PlaceOnAxis(z, ship->summary->sizeZ, PlacingDistance);
  }
  PublishShip(table);  // an empty one too
  return loaded;
}

int LoadShipStream(Ship *ship, const char *path, bool finish) { return LoadTelling(ship, path, finish, nullptr); }

int LoadShipByName(Ship *ship, const char *name) { return LoadByName(ship, name, nullptr); }

int LoadShipTelling(Ship *ship, const char *name, std::string *news) {
  news->clear();
  return LoadByName(ship, name, news);
}

int AddShipFromStream(ShipTable *table, const char *name, i64 x, i64 y, i64 z) { return AddByName(table, name, x, y, z, nullptr); }

int AddShipTelling(ShipTable *table, const char *name, i64 x, i64 y, i64 z, std::string *news) {
  news->clear();
  return AddByName(table, name, x, y, z, news);
}
