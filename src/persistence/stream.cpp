// Packing and unpacking of the stream form.
#include "persistence/stream.h"

#include <algorithm>
#include <cassert>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "core/utils.h"
#include "persistence/cursor.h"
#include "persistence/unpack.h"
#include "platform/threads.h"
#include "world/access.h"
#include "world/cells.h"
#include "world/light.h"
#include "world/lists.h"

constexpr u8 StreamVersion = 1;
constexpr size_t GroupHeaderBytes = 8, EntryBytes = 6;
constexpr u16 MissingComponentId = 6, MissingMaterialId = 110;

static unsigned CountBlocks(const ChunkCells &cells) {
  int count = 0;
  for (const u64 word : cells.occupied) count += std::popcount(word);
  return static_cast<unsigned>(count);
}

static size_t GroupBytes(const Ship &ship) {
  size_t bytes = 0;
  ForEachChunk(ship, [&bytes](Chunk &, ChunkCells &cells, CellAddress) {
    const unsigned count = CountBlocks(cells);
    if (count != 0) bytes += GroupHeaderBytes + EntryBytes * count;
  });
  return bytes;
}

static u8 *StoreU16(u8 *at, unsigned v) {
  at[0] = static_cast<u8>(v);
  at[1] = static_cast<u8>(v >> 8);
  return at + 2;
}

static u8 *PackChunk(u8 *at, const ChunkCells &cells, const CellAddress &a, unsigned count) {
  for (const unsigned v : {unsigned{a.mega}, unsigned{a.super}, unsigned{a.chunk}, count}) at = StoreU16(at, v);
  ForEachBit(cells.occupied, [&](u16 i) {
    const u64 head = HeadOfCell(cells, i);
    const unsigned rotations = HeadRotation(head) | HeadRotation2(head) << 3;
    at = StoreU16(at, rotations | (HeadMaterial(head) & 0x3ffu) << 5);
    at = StoreU16(at, HeadComponent(head) & 0x3fffu);
    at = StoreU16(at, i);
  });
  return at;
}

bool PackShip(const Ship &ship, std::vector<u8> *out) {
  assert(HoldsMutex(&WorldMutex));
  const std::string &name = ship.displayName;
  out->clear();
  if (name.size() > MaxShipName) {
    LogError("Ship name's too long to save. What did you do.");
    return false;
  }
  const size_t headerBytes = name.size() + 3;
  if (!TryReserve(out, headerBytes + GroupBytes(ship))) return LogError("Not enough memory to save the ship") != 0;
  PutU8(out, StreamVersion);
  PutU8(out, static_cast<u8>(name.size()));
  PutBytes(out, name.data(), name.size());
  PutU8(out, 0);
  out->resize(out->capacity());
  u8 *at = out->data() + headerBytes;
  ForEachChunk(ship, [&at](Chunk &, ChunkCells &cells, CellAddress a) {
    const unsigned count = CountBlocks(cells);
    if (count != 0) at = PackChunk(at, cells, a, count);
  });
  out->resize(static_cast<size_t>(at - out->data()));
  return true;
}

static u16 RowOr1(int row) { return row > 0 ? static_cast<u16>(row) : u16{1}; }

ShipUnpacker BeginUnpack(Ship *ship, const char *path) {
  ShipUnpacker u;
  u.ship = ship;
  u.path = path;
  u.placeholderComponent = RowOr1(FindComponent(MissingComponentId));
  u.placeholderMaterial = RowOr1(FindMaterial(MissingMaterialId));
  return u;
}

// The bytes of the header, or 0 while they aren't all here.
static size_t UnpackHeader(ShipUnpacker *u, Reader r) {
  const u8 version = TakeU8(&r);
  const u8 length = TakeU8(&r);
  const u8 *name = TakeBytes(&r, length + 1u);
  if (name == nullptr) return 0;
  u->otherVersion = version != StreamVersion;
  if (u->otherVersion) LogWarn("Old save file. Going to try to load anyway");
  u->longName = length > MaxShipName;
  const std::string_view text(reinterpret_cast<const char *>(name), length);
  u->ship->displayName = FrontOf(text.substr(0, text.find('\0')), MaxShipName);
  u->headerRead = true;
  return length + 3u;
}

namespace {

struct GroupHeader {
  u16 mega, super, chunk, count;
};

}  // namespace

// Whether the file may go on: what it has cost so far in content and cells stays within its budget.
static bool PayForGroup(ShipUnpacker *u, const GroupHeader &h) {
  u64 cost = GroupHeaderBytes + EntryBytes * h.count + u->chunkBytes;
  if (h.mega != u->mega) cost += 1000 * sizeof(SuperChunk);
  if (h.mega != u->mega || h.super != u->super) cost += 1000 * sizeof(Chunk);
  u->mega = h.mega;
  u->super = h.super;
  if (cost > u->budget) u->tooLarge = u->stopped = true;
  else u->budget -= cost;
  return !u->stopped;
}

// Cells of a group, or null when it has to be skipped.
static ChunkCells *CellsOfGroup(ShipUnpacker *u, const GroupHeader &h) {
  if (h.mega > 999 || h.super > 999 || h.chunk > 999) {
    u->badIndex = true;
    return nullptr;
  }
  ChunkCells *cells = EnsureChunk(h.mega, h.super, h.chunk, u->ship);
  if (cells == nullptr) u->stopped = true;
  return cells;
}

static unsigned LoadU16(const u8 *at) { return at[0] | static_cast<unsigned>(at[1]) << 8; }

// The head of an entry's block: the five bits of both rotations lie together in the file as in the head.
static u64 HeadOfEntry(ShipUnpacker *u, const u8 *at) {
  const unsigned first = LoadU16(at);
  unsigned material = first >> 5 & 0x3ff, component = LoadU16(at + 2) & 0x3fff;
  if (material - 1 >= MaterialCount - 1u) {
    u->unknownRow = true;
    material = u->placeholderMaterial;
  }
  if (component - 1 >= ComponentCount - 1u) {
    u->unknownRow = true;
    component = u->placeholderComponent;
  }
  return StateWhole | u64{first & 31} << 2 | u64{material} << 16 | u64{component} << 32 | u64{PlacedTemperature} << 48;
}

// A cell that is free and a block that is on no list need nothing but the head and its bit.
static void PlaceEntry(u64 head, const CellAddress &a, ChunkCells *cells, Ship *ship) {
  const u8 traits = ComponentTraits[HeadComponent(head)];
  if ((traits & (TraitGivesLight | TraitAnimated | TraitRemoves)) != 0 || CellOccupied(*cells, a.block) ||
      cells->tails != nullptr) {
    PlaceBlockInCells(BlockFromHead(head), a, cells, ship);
    return;
  }
  cells->occupied[a.block >> 6] |= u64{1} << (a.block & 63);
  cells->heads[a.block].store(head, std::memory_order_relaxed);
}

static void UnpackEntries(ShipUnpacker *u, const GroupHeader &h, ChunkCells *cells, const u8 *at, size_t count) {
  CellAddress a{0, h.chunk, h.super, h.mega};
  for (const u8 *end = at + count * EntryBytes; at != end; at += EntryBytes) {
    a.block = static_cast<u16>(LoadU16(at + 4));
    if (a.block < CellsPerChunk) PlaceEntry(HeadOfEntry(u, at), a, cells, u->ship);
    else u->badIndex = true;
  }
}

// The bytes of the group at the front of the reader, or 0 while they aren't all here. At the end of the content a group
// may be cut: then its whole entries count.
static size_t UnpackGroup(ShipUnpacker *u, Reader r, bool atEnd) {
  GroupHeader h;
  for (u16 *field : {&h.mega, &h.super, &h.chunk, &h.count}) *field = TakeU16(&r);
  if (r.failed) return 0;
  if (h.count > CellsPerChunk) {  // where the next group begins is anybody's guess
    u->badCount = u->stopped = true;
    return 0;
  }
  if (h.count == 0) u->badCount = true;
  const size_t whole = std::min<size_t>(h.count, r.left / EntryBytes);
  if (whole < h.count && !atEnd) return 0;
  u->cut = whole < h.count;
  if (!PayForGroup(u, h)) return 0;
  ChunkCells *cells = whole == 0 ? nullptr : CellsOfGroup(u, h);
  if (cells != nullptr) UnpackEntries(u, h, cells, r.bytes, whole);
  return GroupHeaderBytes + EntryBytes * whole;
}

static size_t Unpack(ShipUnpacker *u, const u8 *bytes, size_t count, bool atEnd) {
  size_t used = u->headerRead ? 0 : UnpackHeader(u, {bytes, count});
  if (!u->headerRead) return 0;
  while (!u->stopped && used < count) {
    const size_t group = UnpackGroup(u, {bytes + used, count - used}, atEnd);
    if (group == 0) break;
    used += group;
  }
  return used;
}

size_t UnpackPiece(ShipUnpacker *u, const u8 *bytes, size_t count) { return Unpack(u, bytes, count, false); }

static void WarnIf(bool fault, const ShipUnpacker &u, const char *text) {
  if (fault) LogWarn((std::string("Ship file ") + u.path + text).c_str());
}

bool EndUnpack(ShipUnpacker *u, const u8 *bytes, size_t count) {
  const size_t used = Unpack(u, bytes, count, true);
  u->cut = u->cut || !u->headerRead || (used < count && !u->stopped);
  WarnIf(u->longName, *u, " has a name over 64 letters. The rest of it was left out.");
  WarnIf(u->badIndex, *u, " has blocks outside every ship. They were left out.");
  WarnIf(u->badCount, *u, " has a chunk with an impossible number of blocks.");
  WarnIf(u->unknownRow, *u, " has blocks that the tables don't know. Placeholders were put in their places.");
  WarnIf(u->tooLarge, *u, " is too large. The rest of it was left out.");
  WarnIf(u->cut, *u, " is cut short. All that is whole was loaded.");
  return !u->otherVersion && !u->longName && !u->badIndex && !u->unknownRow && !u->badCount && !u->cut && !u->stopped;
}

void UnpackShip(Ship *ship, const u8 *bytes, size_t count, const char *path) {
  ShipUnpacker u = BeginUnpack(ship, path);
  const size_t used = UnpackPiece(&u, bytes, count);
  EndUnpack(&u, bytes + used, count - used);
}

bool FinishShipWithin(Ship *ship, u64 *light) {
  AssignCoordinates(ship);
  const bool allLit = LightPassWithin(ship, light);
  StatePass(*ship);
  ship->summary = BuildShipSummary(ship);
  return allLit;
}

void FinishShip(Ship *ship) {
  u64 light = UINT64_MAX;
  FinishShipWithin(ship, &light);
}
