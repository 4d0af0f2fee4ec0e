// Reading a ship's folder. Nothing in it is believed: names are numbers in range or passed over, links aren't followed,
// and a file's length only says how many slots are tried.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <new>

#include "core/log.h"
#include "persistence/cursor.h"
#include "persistence/directory_slots.h"
#include "persistence/directory_store.h"
#include "persistence/stream.h"
#include "platform/folders.h"

constexpr size_t StrangeNames = 5;  // reported of one ship
constexpr size_t SlotsAtOnce = 64;  // of one read

namespace {

// An entry of a folder that stands for an index.
struct NumberedEntry {
  u16 index = 0;
  std::string name;
};

}  // namespace

static void NoteStrange(SlotReader *r, const std::string &name) {
  if (r->strange.size() < StrangeNames) r->strange.push_back(name);
}

// The entries that stand for indices, each index once: of several names with one number the plain one counts.
static std::vector<NumberedEntry> NumberedEntries(SlotReader *r, int folder, const char *ending, size_t longest) {
  std::vector<NumberedEntry> found;
  std::vector<int> place(1000, -1);  // of an index in found
  std::vector<std::string> names;
  r->unlisted = !FolderEntries(folder, &names) || r->unlisted;
  for (const std::string &name : names) {
    if (name.size() > longest) continue;
    const int number = LeadingNumber(name);
    const bool plain = number >= 0 && name == std::to_string(number) + ending;
    int *at = number < 0 ? nullptr : &place[static_cast<size_t>(number)];
    if (at == nullptr || (*at >= 0 && !plain)) {
      NoteStrange(r, name);
    } else if (*at >= 0) {
      NoteStrange(r, found[static_cast<size_t>(*at)].name);
      found[static_cast<size_t>(*at)].name = name;
    } else {
      *at = static_cast<int>(found.size());
      found.push_back({static_cast<u16>(number), name});
    }
  }
  return found;
}

// Reads slots by the buffer-full, or only their first two bytes.
static void ReadSlots(SlotReader *r, u16 mega, u16 super, int file, u8 *buffer) {
  const i64 length = FileLength(file);
  const int slots = static_cast<int>(std::clamp<i64>(length / static_cast<i64>(SlotBytes), 0, MaxSlots));
  const int step = r->blocksToo ? static_cast<int>(SlotsAtOnce) : 1;
  for (int slot = 0; slot < slots && !r->tooLarge; slot += step) {
    const size_t wanted = r->blocksToo ? static_cast<size_t>(std::min(step, slots - slot)) * SlotBytes : 2;
    const size_t got = ReadAt(file, SlotOffset(slot), buffer, wanted);
    const size_t whole = r->blocksToo ? got / SlotBytes : got / 2;
    for (size_t i = 0; i < whole && !r->tooLarge; ++i)
      ReadSlot(r, mega, super, slot + static_cast<int>(i), buffer + i * SlotBytes);
    if (got == wanted) continue;
    r->cut = true;
    return;
  }
  r->cut = r->cut || length % static_cast<i64>(SlotBytes) != 0;
  r->tooLarge = r->tooLarge || length >= SlotOffset(MaxSlots + 1);
}

static void ReadSuper(SlotReader *r, u16 mega, const NumberedEntry &entry, int folder, u8 *buffer) {
  const int file = OpenFile(folder, entry.name.c_str(), FileUse::Read);
  if (file < 0) {
    NoteStrange(r, std::to_string(mega) + "/" + entry.name);
    return;
  }
  if (MakeSuper(r, mega, entry.index) != nullptr) ReadSlots(r, mega, entry.index, file, buffer);
  close(file);
}

static void ReadMega(SlotReader *r, const NumberedEntry &entry, int ship, u8 *buffer) {
  const int folder = OpenFolder(ship, entry.name.c_str());
  if (folder < 0) {
    NoteStrange(r, entry.name);
    return;
  }
  if (EnsureSupers(entry.index, r->ship) == nullptr) r->tooLarge = true;
  else
    for (const NumberedEntry &super : NumberedEntries(r, folder, ".sss", std::string::npos))
      if (!r->tooLarge) ReadSuper(r, entry.index, super, folder, buffer);
  close(folder);
}

static void ReadMegas(SlotReader *r, int ship) {
  const std::unique_ptr<u8[]> buffer(new (std::nothrow) u8[SlotsAtOnce * SlotBytes]);  // a small ship touches little of it
  if (buffer == nullptr) {
    r->tooLarge = true;
    return;
  }
  for (const NumberedEntry &mega : NumberedEntries(r, ship, "", LongestMegaName)) ReadMega(r, mega, ship, buffer.get());
}

// A file that is too short says nothing: the ship keeps the place and speed that it has. Whether it was what saves write.
static bool ReadInfo(Ship *ship, int folder) {
  u8 bytes[InfoBytes];
  const int file = folder < 0 ? -1 : OpenFile(folder, InfoName, FileUse::Read);
  const size_t have = file < 0 ? 0 : ReadAt(file, 0, bytes, InfoBytes);
  if (file >= 0) close(file);
  if (have < InfoBytes) {
    LogWarn("Ship lost its info file. I'll try to load anyway.");
    return false;
  }
  Reader reader{bytes, InfoBytes};
  const bool good = TakeU16(&reader) == InfoVersion;
  if (!good) LogWarn("Old save");
  for (auto &axis : ship->position) axis = static_cast<i64>(TakeU64(&reader));
  for (auto &axis : ship->velocity) axis = static_cast<i32>(TakeU32(&reader));
  return good;
}

bool ShipFolderIsThere(const char *name) {
  const std::string path = ShipFolder(name);
  SettleFolder(path.c_str(), InfoName);
  struct stat info;
  return lstat(path.c_str(), &info) == 0;
}

void LoadShipPlace(Ship *ship, const char *name) {
  const int folder = OpenFolder(AT_FDCWD, ShipFolder(name).c_str());
  if (folder < 0) return;
  ReadInfo(ship, folder);
  close(folder);
}

int LoadShipDirectory(Ship *ship, const char *name, bool blocksToo, bool leaveUnfinished) {
  if (!IsShipStem(name)) return LogError((std::string(name) + " can't be a ship directory").c_str());
  const std::string path = ShipFolder(name);
  if (!ShipFolderIsThere(name)) return LogError("Missing ship directory!");
  const int folder = OpenFolder(AT_FDCWD, path.c_str());
  const bool goodInfo = ReadInfo(ship, folder);
  ship->fileStem = name;
  ship->keepFolderAs = ".damaged";  // until all of it was read
  if (folder < 0) return LogError("Could not open ship dir");
  if (ship->megaChunks.load() == nullptr && !AllocShipTable(ship)) {
    close(folder);
    return LogError("Could not allocate block");
  }
  SettleUpdate(folder);
  SlotReader r = BeginSlots(ship, path, blocksToo);
  r.badInfo = !goodInfo;
  ReadMegas(&r, folder);
  close(folder);
  ReportSlots(r);
  ship->slotsOnly = !blocksToo;
  if (r.unlisted) return LogError("Could not open ship dir");
  if (AllWasRead(r)) ship->keepFolderAs = nullptr;
  if (blocksToo && !leaveUnfinished) FinishShip(ship);
  return 1;
}
