// Reading and writing cells.
#include "world/access.h"

#include <cstdlib>
#include <vector>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "core/log.h"
#include "platform/threads.h"
#include "world/cells.h"
#include "world/light.h"
#include "world/lists.h"

constexpr size_t DamageBytes = 512;

// Damage bits that a cell no longer has. Rays read them without a lock, so they wait here for the end of the program.
static Mutex RetiredMutex{MutexRank::Leaf, "retired", {}};
static std::vector<u8 *> RetiredDamage;  // RetiredMutex: ships that are being loaded don't need the world's

static void RetireDamageBits(GraphicBlock *g) {
  u8 *bits = g->damageBits.exchange(nullptr);
  if (bits == nullptr) return;
  ScopedLock retired(&RetiredMutex);
  RetiredDamage.push_back(bits);
}

int ReportOutOfRange(u16 x, u16 y, u16 z) {
  return LogErrorAt(x, y, z, "Block get attempt outside bounds");
}

// Walks to a cell; code 5 gives its head.
static int ReadHead(u16 x, u16 y, u16 z, const Ship &ship, u64 *head) {
  if (!InRange(x, y, z)) return ReportOutOfRange(x, y, z);
  const CellAddress a = AddressOf(x, y, z);
  const MegaChunk *megas = ship.megaChunks.load(std::memory_order_acquire);
  const SuperChunk *supers = megas == nullptr ? nullptr : megas[a.mega].children.load(std::memory_order_acquire);
  if (supers == nullptr) return ReadNoMega;
  const Chunk *chunks = supers[a.super].children.load(std::memory_order_acquire);
  if (chunks == nullptr) return ReadNoSuper;
  const ChunkCells *cells = chunks[a.chunk].cells.load(std::memory_order_acquire);
  if (cells == nullptr) return ReadNoChunk;
  *head = HeadOfCell(*cells, a.block);
  return HeadState(*head) == StateEmpty ? ReadEmpty : ReadFound;
}

int GetBlock(Block *out, u16 x, u16 y, u16 z, const Ship &ship) {
  u64 head;
  const int code = ReadHead(x, y, z, ship, &head);
  if (code == ReadFound) SetHead(out, (head & ~HeadUnstableBit) | (HeadOf(*out) & HeadUnstableBit));
  return code;
}

bool BlockExists(u16 x, u16 y, u16 z, const Ship &ship) {
  u64 head;
  return ReadHead(x, y, z, ship, &head) == ReadFound;
}

// The head of a cell, unless its family is not for players.
static int ReadHeadForPick(u16 x, u16 y, u16 z, const Ship &ship, u64 *head) {
  const int code = ReadHead(x, y, z, ship, head);
  if (code == ReadFound && Components[FamilyBase(HeadComponent(*head))].className == "debug") return ReadEmpty;
  return code;
}

int GetBlockForPick(Block *out, u16 x, u16 y, u16 z, const Ship &ship) {
  u64 head;
  const int code = ReadHeadForPick(x, y, z, ship, &head);
  if (code != ReadFound) return code;
  out->material = HeadMaterial(head);
  out->component = FamilyBase(HeadComponent(head));
  out->temp = PlacedTemperature;
  out->state = StateWhole;
  return code;
}

int GetBlockRotation(Block *out, u16 x, u16 y, u16 z, const Ship &ship) {
  u64 head;
  const int code = ReadHeadForPick(x, y, z, ship, &head);
  if (code != ReadFound) return code;
  const Block found = BlockFromHead(head);
  out->rotation = found.rotation;
  out->rotation2 = found.rotation2;
  return code;
}

bool GetCellPointers(u16 x, u16 y, u16 z, const Ship &ship, u64 *head, GraphicBlock **graphic) {
  *head = 0;
  *graphic = nullptr;
  const CellAddress a = AddressOf(x, y, z);
  Chunk *chunk = FindChunk(a, ship);
  ChunkCells *cells = chunk == nullptr ? nullptr : chunk->cells.load(std::memory_order_acquire);
  if (cells == nullptr || !CellOccupied(*cells, a.block)) return false;
  GraphicBlock *graphics = EnsureGraphics(cells, *chunk);
  if (graphics == nullptr) return false;
  *head = HeadOfCell(*cells, a.block);
  *graphic = graphics + a.block;
  return true;
}

int VoxelClass(u64 head, const u8 *damageBits, int vx, int vy, int vz) {
  const int v = VoxelIndex(vx, vy, vz, HeadRotation(head), HeadRotation2(head));
  if (v < 0) return 1;
  const u8 alpha = Components[HeadComponent(head)].facts->alpha[v];
  if (alpha < 251 || (alpha == 254 && Materials[HeadMaterial(head)].alpha != 255)) return 1;
  const bool gone = HeadState(head) == StateDamaged && damageBits != nullptr && VoxelGone(damageBits, v);
  return gone ? 2 : 0;
}

bool HeadVoxelSolid(u64 head, const u8 *damageBits, int vx, int vy, int vz) {
  const int v = VoxelIndex(vx, vy, vz, HeadRotation(head), HeadRotation2(head));
  if (v < 0 || Components[HeadComponent(head)].facts->alpha[v] == 0) return false;
  return HeadState(head) != StateDamaged || damageBits == nullptr || !VoxelGone(damageBits, v);
}

bool VoxelSolid(float fx, float fy, float fz, const Ship &ship) {
  constexpr float limit = CellsPerAxis;
  if (!(fx >= 0 && fx < limit && fy >= 0 && fy < limit && fz >= 0 && fz < limit)) {
    LogWarn("Block get attempt outside bounds");
    return false;
  }
  const int x = static_cast<int>(fx), y = static_cast<int>(fy), z = static_cast<int>(fz);
  const CellAddress a = AddressOf(static_cast<unsigned>(x), static_cast<unsigned>(y), static_cast<unsigned>(z));
  const ChunkCells *cells = FindCells(a, ship);
  if (cells == nullptr) return false;
  const u64 head = HeadOfCell(*cells, a.block);
  if (HeadState(head) == StateEmpty) return false;
  const GraphicBlock *g = GraphicOf(*cells, a.block);
  const u8 *damage = g == nullptr ? nullptr : g->damageBits.load(std::memory_order_acquire);
  return HeadVoxelSolid(head, damage, static_cast<int>((fx - static_cast<float>(x)) * 16.0f),
                        static_cast<int>((fy - static_cast<float>(y)) * 16.0f), static_cast<int>((fz - static_cast<float>(z)) * 16.0f));
}

void WriteTail(const Block &b, unsigned i, ChunkCells *cells) {
  static constexpr u8 none[6] = {};
  if (cells->tails == nullptr) {
    if (std::memcmp(b.tail, none, sizeof none) == 0) return;
    cells->tails = static_cast<u8(*)[6]>(std::calloc(CellsPerChunk, sizeof none));
    if (cells->tails == nullptr) return;
  }
  std::memcpy(cells->tails[i], b.tail, sizeof none);
}

void WriteBlockInCells(const Block &b, const CellAddress &a, ChunkCells *cells, Ship *ship) {
  Block placed = b;
  placed.tempUnstable = 0;
  placed.temp = PlacedTemperature;
  StoreHead(cells, a.block, HeadOf(placed));
  WriteTail(b, a.block, cells);
  ListBlock(static_cast<u16>(b.component), a, ship);
}

void PlaceBlockInCells(const Block &b, const CellAddress &a, ChunkCells *cells, Ship *ship) {
  if (CellOccupied(*cells, a.block)) UnlistBlock(a, ship);
  WriteBlockInCells(b, a, cells, ship);
}

void PlaceBlockRaw(const Block &b, const CellAddress &a, Ship *ship) {
  if (b.state == StateEmpty) return;
  ChunkCells *cells = EnsureChunk(a.mega, a.super, a.chunk, ship);
  if (cells != nullptr) PlaceBlockInCells(b, a, cells, ship);
  else LogError("Unable to allocate block");
}

int PlaceBlockFast(const Block &b, u16 x, u16 y, u16 z, Ship *ship) {
  if (!InRange(x, y, z)) return LogError("Block place attempt outside bounds");
  if (b.state == StateEmpty) return 0;
  const CellAddress a = AddressOf(x, y, z);
  ChunkCells *cells = EnsureChunk(a.mega, a.super, a.chunk, ship);
  if (cells == nullptr) return LogError("Unable to allocate block");
  PlaceBlockInCells(b, a, cells, ship);
  return 1;
}

// The twelve cells whose visibility an edit can change: the face neighbours, then those at distance two. Coordinates wrap
// below zero and are reported as out of range, as any read of them is.
static void RefreshAround(u16 x, u16 y, u16 z, const Ship &ship) {
  for (int distance = 1; distance <= 2; ++distance)
    for (int axis = 0; axis < 3; ++axis)
      for (int sign = 1; sign >= -1; sign -= 2) {
        u16 c[3] = {x, y, z};
        c[axis] = static_cast<u16>(c[axis] + sign * distance);
        RefreshVisibility(c[0], c[1], c[2], ship);
      }
}

int PlaceBlockHeld(const Block &b, u16 x, u16 y, u16 z, Ship *ship) {
  if (!InRange(x, y, z)) return LogError("Block place attempt outside bounds");
  if (b.state == StateEmpty) return 0;
  const CellAddress a = AddressOf(x, y, z);
  ChunkCells *cells = EnsureChunk(a.mega, a.super, a.chunk, ship);
  if (cells == nullptr) return LogError("Unable to allocate block");
  if (CellOccupied(*cells, a.block)) {
    const u16 old = HeadComponent(HeadOfCell(*cells, a.block));
    UnlistBlock(a, ship);
    if (GivesLight(old)) TakeLightAway(x, y, z, *ship);
  }
  SetCellOrigins(a, ship);
  WriteBlockInCells(b, a, cells, ship);
  MarkCacheDirtyAround(x, y, z, *ship);
  {
    ScopedLock heat(&HeatMutex);
    MarkTempUnstable(a, ship);
  }
  ++ship->lightCounter;
  if (GraphicBlock *g = GraphicOf(*cells, a.block)) g->lightCount = 0;
  const Component &component = Components[static_cast<size_t>(b.component)];
  if (GivesLight(static_cast<u16>(b.component)))
    CastLight(x, y, z, component.lightRed, component.lightGreen, component.lightBlue, *ship);
  TakeInLights(x, y, z, *ship);
  if (GraphicBlock *g = GraphicOf(*cells, a.block)) g->lightId = ship->lightCounter;
  RefreshAround(x, y, z, *ship);
  return 1;
}

int PlaceBlock(const Block &b, u16 x, u16 y, u16 z, Ship *ship) {
  ScopedLock world(&WorldMutex);
  return PlaceBlockHeld(b, x, y, z, ship);
}

int ChangeBlockComponent(u16 component, u16 x, u16 y, u16 z, Ship *ship) {
  if (!InRange(x, y, z)) return LogError("Block place attempt outside bounds");
  const CellAddress a = AddressOf(x, y, z);
  ChunkCells *cells = FindCells(a, *ship);
  if (cells == nullptr || !CellOccupied(*cells, a.block)) return 0;
  UnlistBlockNoHeat(a, ship);
  Block changed = BlockFromHead(HeadOfCell(*cells, a.block));
  changed.component = component;
  StoreHead(cells, a.block, HeadOf(changed));
  ListBlock(component, a, ship);
  MarkCacheDirtyAround(x, y, z, *ship);
  return 1;
}

// With shadows, light passes where a block is gone: every source that reached it is cast again.
static void RecastThrough(u16 x, u16 y, u16 z, const CellAddress &a, const ChunkCells &cells, const Ship &ship) {
  const GraphicBlock *g = GraphicOf(cells, a.block);
  if (g == nullptr || g->lightCount == 0) return;
  const std::vector<LightEntry> lights(g->lightList, g->lightList + g->lightCount);
  for (const LightEntry &e : lights) {
    const u16 sx = static_cast<u16>(x + e.dx), sy = static_cast<u16>(y + e.dy), sz = static_cast<u16>(z + e.dz);
    TakeLightAway(sx, sy, sz, ship);
    CastLight(sx, sy, sz, e.red, e.green, e.blue, ship);
  }
}

bool RemoveBlockHeld(u16 x, u16 y, u16 z, Ship *ship) {
  const CellAddress a = AddressOf(x, y, z);
  ChunkCells *cells = FindCells(a, *ship);
  if (cells == nullptr || !CellOccupied(*cells, a.block)) return false;
  const bool lamp = GivesLight(HeadComponent(HeadOfCell(*cells, a.block)));
  if (lamp) TakeLightAway(x, y, z, *ship);
  UnlistBlock(a, ship);
  Block gone = BlockFromHead(HeadOfCell(*cells, a.block));
  gone.state = 0;
  gone.rotation = 0;
  gone.material = 0;
  gone.component = 0;
  StoreHead(cells, a.block, HeadOf(gone));
  if (!lamp && Options.ExperimentalLight && !ShadowsLater) RecastThrough(x, y, z, a, *cells, *ship);
  if (GraphicBlock *g = GraphicOf(*cells, a.block)) {
    RetireDamageBits(g);
    std::free(g->lightList);
    g->lightList = nullptr;
    g->lightCount = 0;
  }
  RefreshAround(x, y, z, *ship);
  MarkCacheDirtyAround(x, y, z, *ship);
  DropCache(x, y, z, *ship);
  return true;
}

bool RemoveBlock(u16 x, u16 y, u16 z, Ship *ship) {
  if (!InRange(x, y, z)) return LogError("Block place attempt outside bounds") != 0;
  if (!BlockExists(x, y, z, *ship)) return false;
  ScopedLock world(&WorldMutex);
  return RemoveBlockHeld(x, y, z, ship);
}

void MarkCacheDirty(u16 x, u16 y, u16 z, const Ship &ship) {
  const CellAddress a = AddressOf(x, y, z);
  const ChunkCells *cells = FindCells(a, ship);
  if (cells == nullptr || !CellOccupied(*cells, a.block)) return;
  GraphicBlock *g = GraphicOf(*cells, a.block);
  if (g != nullptr && g->cache != nullptr) g->cacheDirty = true;
}

void MarkCacheDirtyAround(u16 x, u16 y, u16 z, const Ship &ship) {
  MarkCacheDirty(x, y, z, ship);
  for (int axis = 0; axis < 3; ++axis) {
    u16 c[3] = {x, y, z};
    const u16 at = c[axis];
    c[axis] = static_cast<u16>(at + 1);
    if (at < CellsPerAxis - 1) MarkCacheDirty(c[0], c[1], c[2], ship);
    c[axis] = static_cast<u16>(at - 1);
    if (at > 1) MarkCacheDirty(c[0], c[1], c[2], ship);
  }
}

void DropCache(u16 x, u16 y, u16 z, const Ship &ship) {
  const CellAddress a = AddressOf(x, y, z);
  const ChunkCells *cells = FindCells(a, ship);
  GraphicBlock *g = cells == nullptr ? nullptr : GraphicOf(*cells, a.block);
  if (g != nullptr) FreeCacheRecord(g);
}

bool AllocDamageBits(const CellAddress &a, const Ship &ship) {
  Chunk *chunk = FindChunk(a, ship);
  ChunkCells *cells = chunk == nullptr ? nullptr : chunk->cells.load(std::memory_order_acquire);
  GraphicBlock *graphics = cells == nullptr ? nullptr : EnsureGraphics(cells, *chunk);
  if (graphics == nullptr) return false;
  RetireDamageBits(graphics + a.block);
  u8 *bits = static_cast<u8 *>(std::calloc(1, DamageBytes));
  graphics[a.block].damageBits.store(bits, std::memory_order_release);
  return bits != nullptr;
}
