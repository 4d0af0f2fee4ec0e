// Printing.
#include "show.h"

#include <algorithm>
#include <vector>

#include "content/components.h"
#include "content/materials.h"
#include "messages.h"
#include "world/access.h"
#include "world/cells.h"

namespace {

// How many blocks use a row of one of the tables.
struct RowUse {
  u64 blocks = 0;
  u16 row = 0;
};

}  // namespace

u64 CountBlocks(const Ship &ship) {
  u64 count = 0;
  ForEachChunk(ship, [&count](Chunk &, ChunkCells &cells, CellAddress) {
    for (const u64 word : cells.occupied) count += static_cast<u64>(std::popcount(word));
  });
  return count;
}

void ShowInfo(const ShipName &name, Ship *ship) {
  PrintResult("%s: %s\n", Shown(PathOf(name)).c_str(), FormWord(name.form));
  PrintResult("  name    %s\n", Shown(ship->displayName).c_str());
  PrintResult("  blocks  %llu\n", static_cast<unsigned long long>(CountBlocks(*ship)));
  const auto summary = BuildShipSummary(ship);
  if (summary->blockCount != 0) {
    PrintResult("  size    %i x %i x %i\n", summary->sizeX, summary->sizeY, summary->sizeZ);
    PrintResult("  cells   (%i, %i, %i) to (%i, %i, %i)\n", summary->minX, summary->minY, summary->minZ, summary->maxX,
                summary->maxY, summary->maxZ);
    PrintResult("  middle  (%i, %i, %i)\n", summary->comX, summary->comY, summary->comZ);
    PrintResult("  mass    %.0f\n", summary->mass);
  }
  if (name.form != ShipForm::Folder) return;
  PrintResult("  place   (%lld, %lld, %lld)\n", static_cast<long long>(ship->position[0]),
              static_cast<long long>(ship->position[1]), static_cast<long long>(ship->position[2]));
  PrintResult("  speed   (%i, %i, %i)\n", ship->velocity[0].load(), ship->velocity[1].load(), ship->velocity[2].load());
}

static void SortUses(std::vector<RowUse> *uses) {
  for (size_t row = 0; row < uses->size(); ++row) (*uses)[row].row = static_cast<u16>(row);
  std::erase_if(*uses, [](const RowUse &use) { return use.blocks == 0; });
  std::stable_sort(uses->begin(), uses->end(), [](const RowUse &a, const RowUse &b) { return a.blocks > b.blocks; });
}

// The language files have one byte for a letter.
static std::string Utf8Of(const std::string &latin1) {
  std::string utf8;
  for (const char c : latin1) {
    const u8 byte = static_cast<u8>(c);
    if (byte >= 0x80) utf8 += static_cast<char>(0xc0 | byte >> 6);
    utf8 += static_cast<char>(byte >= 0x80 ? 0x80 | (byte & 0x3f) : byte);
  }
  return utf8;
}

template <typename Table>
static void PrintUses(const char *heading, std::vector<RowUse> *uses, const Table &table) {
  SortUses(uses);
  PrintResult("  %s: %zu\n", heading, uses->size());
  PrintResult("    %10s %6s %6s  %s\n", "blocks", "row", "id", "name");
  for (const RowUse &use : *uses)
    PrintResult("    %10llu %6i %6i  %s\n", static_cast<unsigned long long>(use.blocks), use.row, table[use.row].id,
                Shown(Utf8Of(table[use.row].name)).c_str());
}

void ShowRows(const ShipName &name, const Ship &ship) {
  std::vector<RowUse> materials(Materials.size()), components(Components.size());
  ForEachChunk(ship, [&](Chunk &, ChunkCells &cells, CellAddress) {
    ForEachBit(cells.occupied, [&](u16 i) {
      const u64 head = HeadOfCell(cells, i);
      ++materials[HeadMaterial(head)].blocks;
      ++components[HeadComponent(head)].blocks;
    });
  });
  PrintResult("%s: %s\n", Shown(PathOf(name)).c_str(), FormWord(name.form));
  PrintUses("materials", &materials, Materials);
  PrintUses("components", &components, Components);
}
