// One block into a ship's files. A kill at any moment leaves the old block or the new one: bytes within one page reach the
// file at once; a record across two pages is noted in a file of its own first, which the next opening of the ship carries
// out; and a slot begins to count with its last byte, behind a sync of all others.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "core/log.h"
#include "persistence/cursor.h"
#include "persistence/directory_slots.h"
#include "persistence/directory_store.h"
#include "platform/folders.h"
#include "world/cells.h"

constexpr u16 LowestUpdate = 2, HighestUpdate = 9998;
constexpr i64 PageBytes = 4096;  // what every system writes at once
// The note of an update across two pages: u16 mega, super, slot, block, and the record. Gone once the record is written.
constexpr const char *NoteName = ".update";
constexpr size_t NoteBytes = 8 + RecordBytes;

namespace {

// One update on its way. Descriptors are -1 while they aren't open.
struct BlockUpdate {
  CellAddress at{};
  u8 record[RecordBytes] = {};
  Ship *ship = nullptr;
  std::string path, name;  // of the ship's folder, and of the file in its mega's folder
  int slot = -1;
  bool inMemory = false;   // the chunk has blocks in memory
  int shipFolder = -1, megaFolder = -1, file = -1;
};

// What an update leaves in the files, whatever the calls that made it said.
enum class Stored { New, Old, Unknown };

}  // namespace

static i64 RecordOffset(int slot, unsigned block) { return SlotOffset(slot) + 2 + static_cast<i64>(block * RecordBytes); }

// Behind an opening that failed: whether that is for good, because there is no such file. 0 stands for one of a wrong kind.
static bool IsMissing() { return errno == 0 || errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == EISDIR; }

// Carries out a note. False when it has to be tried again; one that names a record that isn't there is done.
static bool CarryOut(int shipFolder, const u8 *note) {
  Reader r{note, NoteBytes};
  const unsigned mega = TakeU16(&r), super = TakeU16(&r), slot = TakeU16(&r), block = TakeU16(&r);
  errno = 0;
  const int folder = OpenFolder(shipFolder, std::to_string(mega).c_str());
  const int file = folder < 0 ? -1 : OpenFile(folder, SuperName(super).c_str(), FileUse::Change);
  bool done = file >= 0 || IsMissing();
  if (file >= 0 && block < CellsPerChunk && FileLength(file) >= SlotOffset(static_cast<int>(slot) + 1))
    done = WriteAt(file, RecordOffset(static_cast<int>(slot), block), r.bytes, RecordBytes);
  if (file >= 0) close(file);
  if (folder >= 0) close(folder);
  return done;
}

// The folder is held.
static void SettleHeldUpdate(int shipFolder) {
  const int file = OpenFile(shipFolder, NoteName, FileUse::Read);
  if (file < 0) return;
  u8 note[NoteBytes];
  const bool done = ReadAt(file, 0, note, NoteBytes) == NoteBytes ? CarryOut(shipFolder, note) : FileLength(file) < i64{NoteBytes};
  close(file);
  if (done) unlinkat(shipFolder, NoteName, 0);
  else LogWarn("A block that was stored halfway can't be written yet. It stays noted.");
}

void SettleUpdate(int shipFolder) {
  const int folder = OpenFolder(shipFolder, ".");  // to hold; the caller goes on without
  if (folder < 0) return;
  if (LockFolder(folder, false)) SettleHeldUpdate(folder);
  close(folder);
}

// Finds the chunk's entry, with the levels above it, and where the ship's files are.
static bool FindEntry(BlockUpdate *u) {
  ScopedLock world(&WorldMutex);
  if (u->ship->megaChunks.load() == nullptr && !AllocShipTable(u->ship)) return LogError("Could not allocate block") != 0;
  const Chunk *chunks = EnsureChunks(u->at.mega, u->at.super, u->ship);
  if (chunks == nullptr) return LogError("Could not allocate block") != 0;
  u->slot = chunks[u->at.chunk].slot;
  u->inMemory = chunks[u->at.chunk].cells.load() != nullptr;
  u->path = ShipFolder(u->ship->fileStem);
  u->name = SuperName(u->at.super);
  if (IsShipStem(u->ship->fileStem) && u->ship->fileStem != "NULL") return true;
  return LogError("Can't find ship directory to save block update to") != 0;
}

// Whether an entry stands for a number under another name than the plain one, which would hide it.
static bool IsTaken(int folder, int number, size_t longest) {
  std::vector<std::string> names;
  const bool listed = FolderEntries(folder, &names);
  return !listed || std::any_of(names.begin(), names.end(), [=](const std::string &name) {
    return name.size() <= longest && LeadingNumber(name) == number;
  });
}

static bool OpenMegaFolder(BlockUpdate *u) {
  SettleFolder(u->path.c_str(), InfoName);
  u->shipFolder = OpenFolder(AT_FDCWD, u->path.c_str());
  if (u->shipFolder < 0) return LogError("Can't find ship directory to save block update to") != 0;
  if (!LockFolder(u->shipFolder, true)) return LogError((u->path + " is in use. The old block stays.").c_str()) != 0;
  SettleHeldUpdate(u->shipFolder);
  const std::string mega = std::to_string(u->at.mega);
  u->megaFolder = OpenFolder(u->shipFolder, mega.c_str());
  if (u->megaFolder >= 0 || IsTaken(u->shipFolder, u->at.mega, LongestMegaName)) return true;
  if (mkdirat(u->shipFolder, mega.c_str(), 0777) == 0) fsync(u->shipFolder);
  u->megaFolder = OpenFolder(u->shipFolder, mega.c_str());
  return true;
}

static bool OpenSuper(BlockUpdate *u) {
  u->file = u->megaFolder < 0 ? -1 : OpenFile(u->megaFolder, u->name.c_str(), FileUse::Change);
  if (u->file < 0 && u->megaFolder >= 0 && u->slot < 0 && !IsTaken(u->megaFolder, u->at.super, std::string::npos))
    u->file = OpenFile(u->megaFolder, u->name.c_str(), FileUse::ChangeOrMake);
  return u->file >= 0 || LogError("Coult not open superchunk file to save block update") != 0;
}

static bool SlotIsTheChunks(const BlockUpdate &u, int slot) {
  u8 index[2];
  return FileLength(u.file) >= SlotOffset(slot + 1) && ReadAt(u.file, SlotOffset(slot), index, 2) == 2 &&
         (index[0] | index[1] << 8) == u.at.chunk;
}

// The slot that a load would take for the chunk's, or -1.
static int FindSlot(const BlockUpdate &u) {
  int slot = static_cast<int>(std::min<i64>(FileLength(u.file) / static_cast<i64>(SlotBytes), MaxSlots)) - 1;
  while (slot >= 0 && !SlotIsTheChunks(u, slot)) --slot;
  return slot;
}

static void PackChunkNow(const BlockUpdate &u, u8 *slot) {
  ScopedLock world(&WorldMutex);
  PackSlot(FindCells(u.at, *u.ship), u.at.chunk, slot);
}

static void KeepSlot(const BlockUpdate &u) {
  ScopedLock world(&WorldMutex);
  FindChunk(u.at, *u.ship)->slot = static_cast<i16>(u.slot);
}

// Appends the chunk as it is in memory, with the new block in it. What an append that was cut off left is overwritten.
static bool AppendSlot(BlockUpdate *u) {
  u8 slot[SlotBytes];
  PackChunkNow(*u, slot);
  std::copy(std::begin(u->record), std::end(u->record), slot + 2 + u->at.block * RecordBytes);
  const i64 length = FileLength(u->file);
  if (length < 0 || length >= SlotOffset(MaxSlots)) return false;
  u->slot = static_cast<int>(length / static_cast<i64>(SlotBytes));
  const i64 offset = SlotOffset(u->slot);
  if (length != offset) LogWarn((u->path + "/" + std::to_string(u->at.mega) + "/" + u->name + " ended within a chunk").c_str());
  bool good = ftruncate(u->file, offset) == 0 && WriteAt(u->file, offset, slot, SlotBytes - 1) && fdatasync(u->file) == 0;
  good = good && WriteAt(u->file, offset + static_cast<i64>(SlotBytes) - 1, slot + SlotBytes - 1, 1);
  if (!good) {
    if (ftruncate(u->file, offset) != 0) LogWarn("A chunk that could not be stored whole stays at the end of its file");
    return false;
  }
  if (offset == 0) fsync(u->megaFolder);  // the file may be new
  KeepSlot(*u);
  return true;
}

static Stored RecordAt(int file, i64 offset, const u8 *fresh, const u8 *old) {
  u8 record[RecordBytes];
  if (ReadAt(file, offset, record, RecordBytes) != RecordBytes) return Stored::Unknown;
  if (std::equal(record, record + RecordBytes, fresh)) return Stored::New;
  return std::equal(record, record + RecordBytes, old) ? Stored::Old : Stored::Unknown;
}

// What the next opening of the ship will make of a note that can't be taken back, over the record that is there.
static Stored StoredBy(int note, const BlockUpdate &u, i64 offset, const u8 *old) {
  u8 front[NoteBytes];
  const bool carriedOut = ReadAt(note, 0, front, NoteBytes) == NoteBytes;
  if (!carriedOut) return RecordAt(u.file, offset, u.record, old);
  LogWarn("A block that was stored halfway can't be written yet. It stays noted.");
  return RecordAt(note, i64{NoteBytes - RecordBytes}, u.record, old);
}

// A record that could not be written may be half there: then the note stays for a better day, of the old record if it can be had.
static Stored WriteAcrossPages(const BlockUpdate &u, i64 offset, const u8 *old) {
  std::vector<u8> note;
  for (const int v : {int{u.at.mega}, int{u.at.super}, u.slot, int{u.at.block}}) PutU16(&note, static_cast<u16>(v));
  PutBytes(&note, u.record, RecordBytes);
  const int file = OpenFile(u.shipFolder, NoteName, FileUse::MakeNew);
  if (file < 0) return Stored::Old;
  const bool noted = WriteAt(file, 0, note.data(), NoteBytes);
  const bool written = noted && WriteAt(u.file, offset, u.record, RecordBytes);
  const bool torn = noted && !written;
  if (torn) WriteAt(file, NoteBytes - RecordBytes, old, RecordBytes);
  const bool gone = !torn && unlinkat(u.shipFolder, NoteName, 0) == 0;
  Stored stored = written ? Stored::New : Stored::Old;
  if (!written && !gone) stored = StoredBy(file, u, offset, old);
  close(file);
  return stored;
}

static Stored WriteRecord(const BlockUpdate &u) {
  const i64 offset = RecordOffset(u.slot, u.at.block);
  u8 old[RecordBytes];
  if (ReadAt(u.file, offset, old, RecordBytes) != RecordBytes) return Stored::Old;
  if (offset % PageBytes > PageBytes - static_cast<i64>(RecordBytes)) return WriteAcrossPages(u, offset, old);
  return WriteAt(u.file, offset, u.record, RecordBytes) ? Stored::New : RecordAt(u.file, offset, u.record, old);
}

// A chunk whose slot is not where it was, because another save replaced the files, or that is known from its file only, may
// have one all the same: a new one without its blocks would hide them.
static void CheckSlot(BlockUpdate *u) {
  if (u->slot >= 0 ? SlotIsTheChunks(*u, u->slot) : u->inMemory) return;
  u->slot = FindSlot(*u);
  if (u->slot >= 0) KeepSlot(*u);
}

static bool StoreRecord(BlockUpdate *u) {
  if (!OpenSuper(u)) return false;
  CheckSlot(u);
  Stored stored = Stored::Old;
  if (u->slot >= 0) stored = WriteRecord(*u);
  else if (AppendSlot(u)) stored = Stored::New;
  if (stored == Stored::New) return true;
  const char *left = stored == Stored::Old ? ". The old block stays." : ". Neither the old block nor the new one is there whole.";
  return LogError(("Could not write " + u->path + "/" + std::to_string(u->at.mega) + "/" + u->name + left).c_str()) != 0;
}

int SaveBlockUpdate(const Block &b, u16 x, u16 y, u16 z, Ship *ship) {
  for (const u16 c : {x, y, z})
    if (c < LowestUpdate || c > HighestUpdate) return LogError("Massively out of bounds block update sent. Ignoring.");
  ScopedLock store(&StoreMutex);
  BlockUpdate u;
  u.at = AddressOf(x, y, z);
  u.ship = ship;
  PackRecord(HeadOf(b), b.tail, u.record);
  const bool stored = FindEntry(&u) && OpenMegaFolder(&u) && StoreRecord(&u);
  if (u.file >= 0) close(u.file);
  if (u.megaFolder >= 0) close(u.megaFolder);
  if (u.shipFolder >= 0) close(u.shipFolder);
  return stored;
}
