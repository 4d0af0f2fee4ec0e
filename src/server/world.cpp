// The ships of the server.
#include "server/world.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "core/utils.h"
#include "persistence/directory_store.h"
#include "persistence/stream.h"
#include "platform/files.h"
#include "server/clients.h"
#include "server/own_files.h"
#include "server/streams.h"
#include "world/access.h"
#include "world/cells.h"
#include "worldgen/asteroid.h"

constexpr int FirstStored = 2, LastStored = 9997;  // coordinates that the directory store takes, but for the last: the work on it looks past the end
constexpr i64 Nowhere = -50500000;                 // a ship's corner before it is given a place
constexpr i64 Gap = 20 * UnitsPerBlock;            // between two ships that the server places
constexpr i64 StartDistance = 8 * UnitsPerBlock;   // from a new player to the first ship
constexpr i64 StartSpacing = 3 * UnitsPerBlock;
constexpr int MostSteps = 500;                     // of that size, aside from where blocks are
constexpr i64 Reach = 64 * UnitsPerBlock;          // of players, on each axis
constexpr const char *GrownName = "Asteroid";

static int SavesFolder = -1;  // open and locked while the world is

// Two servers in one folder would write over each other's blocks.
bool ClaimFolder(std::string *why) {
  if (SavesFolder >= 0) return true;
  MakeDirectory("saves");
  SavesFolder = open("saves", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (SavesFolder >= 0 && flock(SavesFolder, LOCK_EX | LOCK_NB) == 0) return true;
  *why = SavesFolder < 0 ? "There is no folder saves/, and none can be made" : "Another server, or a game, runs in this folder";
  if (SavesFolder >= 0) close(SavesFolder);
  SavesFolder = -1;
  return false;
}

// LoadAllShips leaves folders on disk; the server wants their blocks too.
static bool LoadBlocks(Ship *ship) {
  const std::string stem = ship->fileStem;
  const u32 id = ship->id;
  FreeShip(ship);
  InitShip(ship, id);
  if (!AllocShipTable(ship) || LoadShipDirectory(ship, stem.c_str(), true, false) == 0) return false;
  ship->displayName = FrontOf(stem, MaxShipName);
  return true;
}

// Ships that came from stream files have no place of their own yet: they are lined up along x, the first one in the middle.
static void PlaceShips() {
  i64 right = 0;
  for (u16 row = 0; row < TheShipTable.count.load(); ++row) {
    Ship *ship = ShipAt(TheShipTable, row);
    bool placed = false;
    for (const auto &axis : ship->position) placed = placed || axis.load() != Nowhere;
    const ShipSummary &s = *ship->summary;
    if (!placed && s.blockCount != 0) {
      const i64 middle[3] = {(s.minX + s.maxX) / 2, (s.minY + s.maxY) / 2, s.maxZ};
      const i64 half = (s.maxX - s.minX) / 2 * UnitsPerBlock;
      const i64 place[3] = {row == 0 ? 0 : right + Gap + half, 0, -StartDistance};
      for (int axis = 0; axis < 3; ++axis) ship->position[axis] = place[axis] - middle[axis] * UnitsPerBlock;
      SaveShipDirectory(ship);
    }
    if (s.blockCount != 0) right = std::max(right, ship->position[0].load() + s.maxX * UnitsPerBlock);
  }
}

static bool GrowFirstShip(u16 largest) {
  Say("No ships in saves: growing an asteroid");
  const u16 size = std::clamp<u16>(largest, 1, 6);
  if (!AddAsteroid(size, 0, 0, -StartDistance - 2 * size * UnitsPerBlock, &TheShipTable)) return false;
  Ship *ship = ShipAt(TheShipTable, 0);
  LightAsteroid(ship);  // or new players would see nothing
  ship->displayName = ship->fileStem = GrownName;
  ship->keepStreamAs = ship->keepFolderAs = ".replaced";  // should something that is no ship have the name
  return SaveShipDirectory(ship) != 0;
}

// A game moves ships that have a velocity on by itself; here they stand.
static void StopShips() {
  for (u16 row = 0; row < TheShipTable.count.load(); ++row)
    for (auto &axis : ShipAt(TheShipTable, row)->velocity) axis = 0;
}

bool OpenWorld(u16 largestAsteroid) {
  std::string why;
  if (!ClaimFolder(&why)) return LogError(why.c_str()) != 0;
  const std::vector<TakenStream> taken = StreamsToTake();
  if (LoadAllShips(&TheShipTable) == 0) return LogError("Not all ships of saves/ could be loaded: the server does not start without them") != 0;
  NoteTaken(taken);
  if (TheShipTable.count.load() == 0 && !GrowFirstShip(largestAsteroid)) return LogError("There is no world to serve") != 0;
  for (u16 row = 0; row < TheShipTable.count.load(); ++row) {
    Ship *ship = ShipAt(TheShipTable, row);
    if (ship->summary == nullptr && !LoadBlocks(ship)) return LogError(("Can't read ship " + ship->fileStem).c_str()) != 0;
    if (!SafeFileName(ship->fileStem))
      LogWarn(("Games can't take a file named " + ship->fileStem + ": they will see that ship without blocks").c_str());
  }
  PlaceShips();
  StopShips();
  NewStreamFiles();
  RefreshStreamFiles();  // a ship whose file can't be written is seen without blocks, until it can
  return true;
}

void CloseWorld() {
  if (SavesFolder >= 0) close(SavesFolder);
  SavesFolder = -1;
}

static bool Storable(u16 c) { return c >= FirstStored && c <= LastStored; }

static Ship *ShipOfRow(i32 row) {
  return row >= 0 && row < TheShipTable.count.load() ? ShipAt(TheShipTable, static_cast<u16>(row)) : nullptr;
}

static bool IsFree(i32 x, i32 y, i32 z, const Ship &ship) {
  return HeadState(HeadAt(static_cast<unsigned>(x), static_cast<unsigned>(y), static_cast<unsigned>(z), ship)) == StateEmpty;
}

static bool BesideABlock(const BlockEdit &e, const Ship &ship) {
  return !IsFree(e.x - 1, e.y, e.z, ship) || !IsFree(e.x + 1, e.y, e.z, ship) || !IsFree(e.x, e.y - 1, e.z, ship) ||
         !IsFree(e.x, e.y + 1, e.z, ship) || !IsFree(e.x, e.y, e.z - 1, ship) || !IsFree(e.x, e.y, e.z + 1, ship);
}

// Places come from the games and may be anything: the differences wrap.
static bool InReach(const BlockEdit &e, const Ship &ship, const Motion &by) {
  const u16 cell[3] = {e.x, e.y, e.z};
  for (int axis = 0; axis < 3; ++axis) {
    const i64 away = WorldDifference(WorldDifference(by.place[axis], ship.position[axis]), cell[axis] * UnitsPerBlock);
    if (away < -Reach || away > Reach) return false;
  }
  return true;
}

// What a player can see and take away again. A block of the rows for debugging is solid, and no aim finds it.
static bool IsPlayable(unsigned component) {
  return component - 1u < ComponentCount - 1u && Components[FamilyBase(static_cast<u16>(component))].className != "debug";
}

// Rotations 0 and 7 have no voxels: they too would be unseen and solid.
static bool IsBlock(const Block &b) {
  const bool sound = b.state == StateWhole && b.rotation - 1u < 6u && b.material - 1u < MaterialCount - 1u;
  return sound && IsPlayable(static_cast<unsigned>(b.component));
}

static const char *WhyNotPlace(const BlockEdit &e, const Ship &ship, const Motion &by) {
  if (!IsBlock(e.block)) return "no such block";
  if (!HasRoomFor(e, ship)) return "the ship is full";
  return BesideABlock(e, ship) || InReach(e, ship, by) ? nullptr : "out of reach";
}

static const char *WhyNot(const BlockEdit &e, const Motion &by) {
  const Ship *ship = ShipOfRow(e.shipRow);
  if (ship == nullptr) return "no such ship";
  if (!Storable(e.x) || !Storable(e.y) || !Storable(e.z)) return "out of range";
  if (e.type == PacketBlockPlace) return WhyNotPlace(e, *ship, by);
  if (e.type == PacketBlockComponent && !IsPlayable(e.component)) return "no such block";
  return IsFree(e.x, e.y, e.z, *ship) ? "nothing there" : nullptr;
}

bool ChangesNothing(const BlockEdit &e) {
  constexpr u64 notTold = HeadUnstableBit | u64{0xffff} << 48;  // a game gives each block its temperature
  const Ship *ship = ShipOfRow(e.shipRow);
  const u64 head = ship == nullptr ? 0 : HeadAt(e.x, e.y, e.z, *ship);
  if (HeadState(head) != StateWhole) return false;
  if (e.type == PacketBlockComponent) return HeadComponent(head) == e.component;
  const bool tail = std::any_of(std::begin(e.block.tail), std::end(e.block.tail), [](u8 byte) { return byte != 0; });
  return e.type == PacketBlockPlace && !tail && ((head ^ HeadOf(e.block)) & ~notTold) == 0;
}

bool TouchesLamp(const BlockEdit &e) {
  const Ship *ship = ShipOfRow(e.shipRow);
  const u64 head = ship == nullptr ? 0 : HeadAt(e.x, e.y, e.z, *ship);
  const auto lamp = [](unsigned row) { return row < ComponentCount && GivesLight(static_cast<u16>(row)); };
  return (e.type == PacketBlockPlace && lamp(static_cast<unsigned>(e.block.component))) || (HeadState(head) != StateEmpty && lamp(HeadComponent(head)));
}

bool NeedsSlot(const BlockEdit &e) {
  const Ship *ship = ShipOfRow(e.shipRow);
  const Chunk *chunk = ship == nullptr || !Storable(e.x) || !Storable(e.y) || !Storable(e.z) ? nullptr : FindChunk(AddressOf(e.x, e.y, e.z), *ship);
  return chunk == nullptr || chunk->slot < 0;
}

const char *DoEdit(const BlockEdit &edit, const Motion &by) {
  const char *why = WhyNot(edit, by);
  if (why != nullptr) return why;
  Ship *ship = ShipOfRow(edit.shipRow);
  Block stored;
  if (edit.type == PacketBlockPlace) stored = edit.block;
  if (edit.type == PacketBlockComponent) {
    stored = BlockFromHead(HeadAt(edit.x, edit.y, edit.z, *ship));
    stored.component = edit.component;
  }
  if (SaveBlockUpdate(stored, edit.x, edit.y, edit.z, ship) == 0) return "it could not be stored";
  NoteFreshEdit(edit);
  ApplyBlockEdit(edit);
  return nullptr;
}

bool EditOfCell(const BlockEdit &at, BlockEdit *found) {
  const Ship *ship = ShipOfRow(at.shipRow);
  if (ship == nullptr || at.x >= CellsPerAxis || at.y >= CellsPerAxis || at.z >= CellsPerAxis) return false;
  *found = at;
  const u64 head = HeadAt(at.x, at.y, at.z, *ship);
  found->type = HeadState(head) == StateEmpty ? PacketBlockRemove : PacketBlockPlace;
  found->block = BlockFromHead(head);
  return true;
}

std::vector<std::string> ShipStems() {
  std::vector<std::string> stems;
  for (u16 row = 0; row < TheShipTable.count.load(); ++row) stems.push_back(ShipAt(TheShipTable, row)->fileStem);
  return stems;
}

std::vector<u8> ShipListPayload(const std::vector<bool> &sent) {
  std::vector<u8> payload;
  const u16 count = TheShipTable.count.load();
  PutU32(&payload, count);
  for (u16 row = 0; row < count; ++row) WriteString(&payload, sent[row] ? ShipAt(TheShipTable, row)->fileStem : "NULL");
  for (u16 row = 0; row < count; ++row) {
    const Ship *ship = ShipAt(TheShipTable, row);
    Motion m;
    for (int axis = 0; axis < 3; ++axis) {
      m.place[axis] = ship->position[axis].load();
      m.velocity[axis] = ship->velocity[axis].load();
    }
    WriteMotion(&payload, m);
  }
  return payload;
}

bool HasRoom(const Motion &m) {
  for (u16 row = 0; row < TheShipTable.count.load(); ++row) {
    const Ship &ship = *ShipAt(TheShipTable, row);
    i64 cell[3];
    for (int axis = 0; axis < 3; ++axis) cell[axis] = WorldDifference(m.place[axis], ship.position[axis]) / UnitsPerBlock;
    for (int i = 0; i < 27; ++i) {
      const i64 x = cell[0] + i % 3 - 1, y = cell[1] + i / 3 % 3 - 1, z = cell[2] + i / 9 - 1;
      const bool inside = std::min({x, y, z}) >= 0 && std::max({x, y, z}) < CellsPerAxis;
      if (inside && !IsFree(static_cast<i32>(x), static_cast<i32>(y), static_cast<i32>(z), ship)) return false;
    }
  }
  return true;
}

Motion StartingPlace(size_t player) {
  Motion m;
  const i64 step = static_cast<i64>(player / 2 + player % 2) * StartSpacing;
  m.place[0] = player % 2 == 0 ? step : -step;
  for (int tries = 0; tries < MostSteps && !HasRoom(m); ++tries) m.place[1] += StartSpacing;
  return m;
}
