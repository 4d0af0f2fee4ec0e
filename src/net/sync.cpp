// The ships of the server: their files, and the table that replaces the game's own.
#include <cstdio>
#include <memory>

#include "core/log.h"
#include "gameplay/player.h"
#include "net/chat_log.h"
#include "net/dispatch.h"
#include "persistence/stream.h"
#include "platform/files.h"
#include "platform/threads.h"
#include "world/retire.h"

constexpr size_t SmallestShipRow = 2 + 36;  // bytes of a list row: a name of one letter and a motion

struct ShipRow {
  std::string name;
  Motion motion;
};

static std::string PathOf(const std::string &name) { return "saves/" + name + ".sts"; }

void TakeFile(Reader r) {
  const std::string name = ReadString(&r);
  if (r.failed || name.size() > MaxFileName) {
    LogError("A ship file without a proper name was dropped");
    return;
  }
  if (!SafeFileName(name)) {
    LogError("The server sent a ship file with a name that can't be one");
    return;
  }
  AddChatLine(("Downloading ship " + name + " ").c_str());
  if (!ReplaceFile(PathOf(name).c_str(), r.bytes, r.left)) LogError("Error writing ship file");
}

static void SetMotion(Ship *ship, const Motion &m) {
  for (int axis = 0; axis < 3; ++axis) {
    ship->position[axis] = m.place[axis];
    ship->velocity[axis] = m.velocity[axis];
  }
}

// A ship that nobody else sees yet. "NULL" is one without a file, and so is a name that can't be a file's.
static void LoadRow(Ship *ship, const std::string &name) {
  ship->fileStem = name;
  if (name == "NULL") return;
  if (!SafeFileName(name)) {
    LogError("The server named a ship that can't have a file");
    return;
  }
  const std::string path = PathOf(name);
  LogText("Loading Ship:", path.c_str());
  if (LoadShipStream(ship, path.c_str(), true) == 0) ship->fileStem = name;
}

static std::unique_ptr<Ship> MakeShip(u32 row, const ShipRow &from) {
  auto ship = std::make_unique<Ship>();
  InitShip(ship.get(), row);
  if (!AllocShipTable(ship.get())) return nullptr;
  LoadRow(ship.get(), from.name);
  SetMotion(ship.get(), from.motion);
  return ship;
}

static bool ReadShipRows(Reader *r, std::vector<ShipRow> *rows) {
  const i32 count = static_cast<i32>(TakeU32(r));
  if (r->failed || count < 0 || count > MaxShips || static_cast<size_t>(count) > r->left / SmallestShipRow)
    return LogError("A list of ships that can't be right was dropped") != 0;
  std::printf("Recieving list of %i ships. \n", count);
  rows->resize(static_cast<size_t>(count));
  for (ShipRow &row : *rows) row.name = ReadString(r);
  for (ShipRow &row : *rows) row.motion = ReadMotion(r);
  return !r->failed || LogError("A list of ships that can't be right was dropped") != 0;
}

// The old ships leave the table and the new ones take their rows.
static void ReplaceTable(std::vector<std::unique_ptr<Ship>> *ships) {
  const ScopedLock world(&WorldMutex);
  const u16 before = TheShipTable.count.load();
  TheShipTable.count = 0;
  for (u16 row = 0; row < before; ++row) {
    Ship *old = TheShipTable.ships[row].exchange(nullptr);
    if (old != nullptr) RetireShip(old);
  }
  for (size_t row = 0; row < ships->size(); ++row)
    TheShipTable.ships[row].store((*ships)[row].release(), std::memory_order_release);
  TheShipTable.count = static_cast<u16>(ships->size());
}

// The player stays where they are in the world: in their row's new ship, or in the first when the table became shorter.
static void FindPlayerAgain() {
  const ScopedLock move(&MoveMutex);
  if (TheShipTable.current.load() >= TheShipTable.count.load()) TheShipTable.current = 0;
  const Ship *ship = CurrentShip();
  Player p = ReadPlayer();
  p.shipIndex = TheShipTable.current.load();
  if (ship != nullptr) RelativeTo(*ship, p.solarLoc, p.relativeLoc);
  StoreMotion(p);
}

void TakeShipList(Reader r) {
  std::vector<ShipRow> rows;
  if (!ReadShipRows(&r, &rows)) return;
  AddChatLine("Loading Ships");
  std::vector<std::unique_ptr<Ship>> ships;
  for (const ShipRow &row : rows) {
    ships.push_back(MakeShip(static_cast<u32>(ships.size()), row));
    if (ships.back() != nullptr) continue;
    LogError("Could not allocate block");
    return;
  }
  ReplaceTable(&ships);
  FindPlayerAgain();
  AddChatLine("Server Sync Complete!");
}

void TakeShipAdded(Reader r) {
  const i32 count = static_cast<i32>(TakeU32(&r));
  ShipRow row;
  row.name = ReadString(&r);
  row.motion = ReadMotion(&r);
  const i32 before = TheShipTable.count.load();
  if (r.failed || count != before + 1) {
    std::printf("NNOS: %i %i \n", count, before);
    LogError("We've lost a ship somewhere. Networking is unlikely to go well.");
    return;
  }
  const ScopedLock world(&WorldMutex);
  Ship *ship = PrepareShip(&TheShipTable);
  if (ship == nullptr) return;
  LoadRow(ship, row.name);
  SetMotion(ship, row.motion);
  PublishShip(&TheShipTable);
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
