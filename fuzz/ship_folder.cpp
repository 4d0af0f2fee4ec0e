// A ship's folder. The input makes its files: a byte of what to do, 22 bytes of an unfinished update, 38 bytes of the info
// file, then slots as a list of their blocks, and what is left as a slot that was cut off.
#include <algorithm>
#include <filesystem>

#include "fuzz/fuzz.h"
#include "persistence/cursor.h"
#include "persistence/directory_slots.h"
#include "persistence/directory_store.h"
#include "world/verify.h"

namespace fs = std::filesystem;

constexpr int MostSlots = 2;  // all in the file of 100 x 100 x 100 cells that the update goes to as well

void PrepareTarget() {
  LoadGameTables();
  fs::create_directories("saves/a/555");
}

static void Begin(Ship *ship) {
  InitShip(ship, 0);
  Demand(AllocShipTable(ship), "memory for a ship");
}

static Bytes TakePart(Reader *r, size_t most) {
  const size_t count = std::min(most, r->left);
  return {TakeBytes(r, count), count};
}

// u16 chunk, u8 count, and so many blocks: u16 index and the record.
static void PutSlot(Reader *r, std::vector<u8> *file) {
  std::vector<u8> slot;
  PutU16(&slot, TakeU16(r));
  slot.resize(SlotBytes);
  for (int left = TakeU8(r); left > 0 && r->left > RecordBytes + 2; --left) {
    const size_t at = 2 + TakeU16(r) % CellsPerChunk * RecordBytes;
    std::memcpy(slot.data() + at, TakeBytes(r, RecordBytes), RecordBytes);
  }
  PutBytes(file, slot.data(), slot.size());
}

static void MakeFolder(Reader *r) {
  fs::remove_all("saves/a.damaged");
  WriteInput("saves/a/.update", TakePart(r, 22));
  WriteInput("saves/a/info.sis", TakePart(r, InfoBytes));
  std::vector<u8> file;
  for (int i = 0; i < MostSlots && r->left > 3; ++i) PutSlot(r, &file);
  const Bytes rest = TakePart(r, SlotBytes - 1);
  if (!rest.empty()) PutBytes(&file, rest.data(), rest.size());
  WriteInput("saves/a/555/0.sss", file);
}

// The heads of all occupied cells, but for their place on the heat list, with the index of the cell.
static std::vector<std::pair<u64, u64>> CellsOf(const Ship &ship) {
  std::vector<std::pair<u64, u64>> cells;
  ForEachChunk(ship, [&cells](Chunk &chunk, ChunkCells &found, CellAddress) {
    ForEachBit(found.occupied, [&](u16 i) {
      cells.emplace_back(u64{CellX(chunk, i)} << 32 | u64{CellY(chunk, i)} << 16 | CellZ(chunk, i), found.heads[i].load());
    });
  });
  return cells;
}

static void Load(Ship *ship, bool blocksToo) {
  Begin(ship);
  Demand(LoadShipDirectory(ship, "a", blocksToo, true) == 1, "a folder loads");
  Demand(ShipFault(*ship).empty(), "the ship is sound");
}

void FuzzOne(Bytes input) {
  Reader r{input.data(), input.size()};
  const unsigned what = TakeU8(&r);
  MakeFolder(&r);
  Ship ship, again;
  Load(&ship, what % 2 == 0);
  // With y = 5009, 5019 and so on, the record lies across two pages of the file.
  if (what % 4 > 1) SaveBlockUpdate(BlockFromHead(u64{what} << 16 | StateWhole), 5002, static_cast<u16>(5000 + what % 100), 5002, &ship);
  if (what % 8 > 3) Demand(SaveShipDirectory(&ship) == 1, "a ship that was read can be written");
  Load(&again, true);
  if (what % 2 == 0 && what % 4 <= 1) Demand(CellsOf(ship) == CellsOf(again), "a ship survives");
  FreeShip(&ship);
  FreeShip(&again);
}
