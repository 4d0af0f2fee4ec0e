// Ships without their insides.
#include "net/ship_shell.h"

#include <utility>

#include "core/log.h"
#include "persistence/directory_store.h"
#include "persistence/stream.h"
#include "platform/threads.h"
#include "world/access.h"
#include "world/cells.h"
#include "world/light.h"

constexpr u32 NoShipId = 0xffffffff;  // of ships that are in no table

static bool BeginTemporary(Ship *ship) {
  InitShip(ship, NoShipId);
  return AllocShipTable(ship);
}

// What lies outside the cube is free.
static bool IsFree(int x, int y, int z, const Ship &ship) {
  const auto inside = [](int c) { return c >= 0 && c < CellsPerAxis; };
  if (!inside(x) || !inside(y) || !inside(z)) return true;
  return HeadState(HeadAt(static_cast<unsigned>(x), static_cast<unsigned>(y), static_cast<unsigned>(z), ship)) == StateEmpty;
}

// Whether the answer is yes for one of the six cells around a cell.
template <typename Answer>
static bool AnyAround(int x, int y, int z, Answer answer) {
  return answer(x + 1, y, z) || answer(x - 1, y, z) || answer(x, y + 1, z) || answer(x, y - 1, z) || answer(x, y, z + 1) ||
         answer(x, y, z - 1);
}

// A single free cell that blocks enclose on all sides shows nobody anything.
static bool IsOnShell(int x, int y, int z, const Ship &ship) {
  const auto isFree = [&ship](int nx, int ny, int nz) { return IsFree(nx, ny, nz, ship); };
  return AnyAround(x, y, z, [&isFree](int nx, int ny, int nz) { return isFree(nx, ny, nz) && AnyAround(nx, ny, nz, isFree); });
}

static Block ShellBlock(u64 head) {
  const Block source = BlockFromHead(head);
  Block b;
  b.state = StateWhole;
  b.temp = PlacedTemperature;
  b.rotation = source.rotation;
  b.rotation2 = source.rotation2;
  b.material = source.material;
  b.component = source.component;
  return b;
}

static bool CopyShellOfChunk(const Ship &ship, const Chunk &chunk, const ChunkCells &cells, CellAddress a, Ship *shell) {
  ChunkCells *copy = nullptr;
  bool good = true;
  ForEachBit(cells.occupied, [&](u16 i) {
    if (!good || !IsOnShell(CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i), ship)) return;
    if (copy == nullptr) copy = EnsureChunk(a.mega, a.super, a.chunk, shell);
    good = copy != nullptr;
    a.block = i;
    if (good) PlaceBlockInCells(ShellBlock(HeadOfCell(cells, i)), a, copy, shell);
  });
  return good;
}

// False when there is no memory for the whole of it, the ship's blocks are only on disk, or its name is none for a file.
static bool CopyShell(const Ship &ship, Ship *shell) {
  ScopedLock world(&WorldMutex);
  shell->displayName = ship.displayName;
  shell->fileStem = ship.fileStem;
  if (ship.slotsOnly) return LogError(("The blocks of " + ship.fileStem + " are not in memory").c_str()) != 0;
  if (!IsShipStem(shell->fileStem)) return LogError(("A ship can't be saved under the name " + shell->fileStem).c_str()) != 0;
  bool good = true;
  ForEachChunk(ship, [&](const Chunk &chunk, const ChunkCells &cells, const CellAddress &a) {
    good = good && CopyShellOfChunk(ship, chunk, cells, a, shell);
  });
  return good;
}

// The path of the file; empty when it could not be written.
static std::string WriteShell(const Ship &ship) {
  Ship shell;
  std::string path;
  if (BeginTemporary(&shell) && CopyShell(ship, &shell)) {
    AssignCoordinates(&shell);
    LightPass(&shell);
    shell.summary = BuildShipSummary(&shell);
    path = "cache/" + shell.fileStem + ".sss";
    if (SaveShipStream(&shell, path.c_str()) == 0) path.clear();
  }
  FreeShip(&shell);
  return path;
}

int BuildShipShell(const Ship &ship) { return WriteShell(ship).empty() ? 0 : 1; }

// Gives the ship the blocks of another one, which becomes the owner of the old ones. Place, speed and id stay.
static void ExchangeBlocks(Ship *ship, Ship *other) {
  ScopedLock world(&WorldMutex);
  other->megaChunks = ship->megaChunks.exchange(other->megaChunks.load());
  for (int kind = 0; kind < ListKinds; ++kind) std::swap(ship->checks[kind], other->checks[kind]);
  std::swap(ship->megaCount, other->megaCount);
  std::swap(ship->superCount, other->superCount);
  std::swap(ship->chunkCount, other->chunkCount);
  std::swap(ship->displayName, other->displayName);
  std::swap(ship->fileStem, other->fileStem);
  std::swap(ship->summary, other->summary);
  std::swap(ship->remains, other->remains);
  ship->lightCounter = ship->cacheCounter = 0;
  ship->keepStreamAs = ship->keepFolderAs = ".replaced";  // a save must not cost the inside
}

int LoadShipShell(Ship *ship) {
  const std::string path = WriteShell(*ship);
  Ship shell;
  bool whole = false;  // half a shell is none
  const bool read = !path.empty() && BeginTemporary(&shell) && ReadShipStream(&shell, path.c_str(), &whole) != 0;
  if (read && whole) {
    FinishShip(&shell);
    ExchangeBlocks(ship, &shell);
  }
  FreeShip(&shell);
  return read && whole ? 1 : LogError("Cannot generate Ship Shell");
}
