// The ships of the server: the table that replaces the game's own, and the ships that come later. They are loaded while nobody
// else sees them; the world mutex is held only while they take their rows.
#include <enet/enet.h>

#include <memory>

#include "core/log.h"
#include "gameplay/player.h"
#include "net/chat_log.h"
#include "net/connection.h"
#include "net/dispatch.h"
#include "persistence/stream.h"
#include "platform/threads.h"
#include "world/retire.h"

constexpr size_t SmallestShipRow = 2 + 36;   // bytes of a list row: a name of one letter and a motion
constexpr int MostShips = 4096;              // a row costs memory even without a block
// For all ships of a list and those that are added to it; the rest stay empty, or dark. The light is that of 1500 lamps deep
// within blocks: some seconds.
constexpr LoadBudget ServersBudget{.bytes = LargestWorld, .light = 25'000'000};

static LoadBudget BudgetLeft = ServersBudget;  // the thread that polls

namespace {

struct ShipRow {
  std::string name;
  Motion motion;
};

}  // namespace

static void SetMotion(Ship *ship, const Motion &m) {
  for (int axis = 0; axis < 3; ++axis) {
    ship->position[axis] = m.place[axis];
    ship->velocity[axis] = m.velocity[axis];
  }
}

// A ship that nobody else sees yet. "NULL" is one without a file. So is a name that can't be a file's, and the ship keeps
// none of it: the name of a ship is a way to write files.
static void LoadBlocks(Ship *ship, const std::string &name) {
  ship->fileStem = "NULL";
  if (name == "NULL") return;
  if (!SafeFileName(name)) {
    LogError("The server named a ship that can't have a file");
    return;
  }
  if (DownloadFailed(name) || BudgetLeft.bytes == 0) return;
  const std::string path = DownloadPath(name);
  LogText("Loading Ship:", path.c_str());
  LoadShipWithin(ship, path.c_str(), &BudgetLeft);
  ship->fileStem = name;
}

static std::unique_ptr<Ship> MakeShip(u32 row, const ShipRow &from) {
  auto ship = std::make_unique<Ship>();
  InitShip(ship.get(), row);
  if (!AllocShipTable(ship.get())) return nullptr;
  LoadBlocks(ship.get(), from.name);
  SetMotion(ship.get(), from.motion);
  return ship;
}

static bool ReadShipRows(Reader *r, std::vector<ShipRow> *rows) {
  const i32 count = static_cast<i32>(TakeU32(r));
  if (r->failed || count < 0 || count > MostShips || static_cast<size_t>(count) > r->left / SmallestShipRow)
    return LogError("A list of ships that can't be right was dropped") != 0;
  Print("Recieving list of %i ships. \n", count);
  rows->resize(static_cast<size_t>(count));
  for (ShipRow &row : *rows) row.name = ReadString(r);
  for (ShipRow &row : *rows) row.motion = ReadMotion(r);
  return !r->failed || LogError("A list of ships that can't be right was dropped") != 0;
}

// The old ships leave the table and the new ones take their rows. The player stays where they are in the world: in their row's
// new ship, or in the first when the table became shorter. This is Movement's thread, which may take world inside move.
static void ReplaceTable(std::vector<std::unique_ptr<Ship>> *ships) {
  const ScopedLock move(&MoveMutex), world(&WorldMutex);
  const u16 before = TheShipTable.count.load(), after = static_cast<u16>(ships->size());
  if (TheShipTable.current.load() >= after) TheShipTable.current = 0;
  TheShipTable.count = 0;
  for (u16 row = 0; row < before || row < after; ++row) {
    Ship *old = TheShipTable.ships[row].exchange(row < after ? (*ships)[row].release() : nullptr, std::memory_order_acq_rel);
    if (old != nullptr) RetireShip(old);
  }
  TheShipTable.count = after;
  HasServersShips = true;
  Player p = ReadPlayer();
  p.shipIndex = TheShipTable.current.load();
  if (const Ship *ship = CurrentShip(); ship != nullptr) RelativeTo(*ship, p.solarLoc, p.relativeLoc);
  StoreMotion(p);
}

// The server must not take a long load for silence. What comes meanwhile waits in the host.
static void AnswerServer() {
  const ScopedLock net(&NetMutex);
  if (Online) enet_host_service(NetHost, nullptr, 0);
}

// False without memory: then the table stays as it was.
static bool LoadAll(const std::vector<ShipRow> &rows, std::vector<std::unique_ptr<Ship>> *ships) {
  BudgetLeft = ServersBudget;
  for (const ShipRow &row : rows) {
    ships->push_back(MakeShip(static_cast<u32>(ships->size()), row));
    if (ships->back() == nullptr) return LogError("Could not allocate block") != 0;
    AnswerServer();
  }
  return BudgetLeft.bytes != 0 || LogWarn("The server's ships are too large. Some of them stay empty.") == 0;
}

void TakeShipList(Reader r) {
  std::vector<ShipRow> rows;
  if (!ReadShipRows(&r, &rows)) return;
  AddChatLine("Loading Ships");
  std::vector<std::unique_ptr<Ship>> ships;
  const bool loaded = LoadAll(rows, &ships);
  if (loaded) ReplaceTable(&ships);
  for (const auto &unused : ships)
    if (unused != nullptr) FreeShip(unused.get());
  if (loaded) AddChatLine("Server Sync Complete!");
}

static bool AppendMade(std::unique_ptr<Ship> *ship) {
  const ScopedLock world(&WorldMutex);
  const u16 row = TheShipTable.count.load();
  if ((*ship)->id != row) return false;
  TheShipTable.ships[row].store(ship->release(), std::memory_order_release);
  TheShipTable.count = static_cast<u16>(row + 1);
  return true;
}

void TakeShipAdded(Reader r) {
  const i32 count = static_cast<i32>(TakeU32(&r));
  ShipRow row;
  row.name = ReadString(&r);
  row.motion = ReadMotion(&r);
  const i32 before = TheShipTable.count.load();
  if (r.failed || count != before + 1 || count > MostShips) {
    Print("NNOS: %i %i \n", count, before);
    LogError("We've lost a ship somewhere. Networking is unlikely to go well.");
    return;
  }
  std::unique_ptr<Ship> ship = MakeShip(static_cast<u32>(before), row);
  if (ship == nullptr) LogError("Could not allocate block");
  else if (!AppendMade(&ship)) FreeShip(ship.get());
}

void TakeShipLocation(Reader r) {
  const i32 row = static_cast<i32>(TakeU32(&r));
  const Motion m = ReadMotion(&r);
  if (r.failed || row < 0 || row >= TheShipTable.count.load()) {
    LogError("Non-existant ship specified.");
    return;
  }
  const ScopedLock move(&MoveMutex);
  SetMotion(ShipAt(TheShipTable, static_cast<u16>(row)), m);
}
