#include "persistence/ships.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <random>

#include "content/components.h"
#include "content/materials.h"
#include "persistence/cursor.h"
#include "support/installation.h"
#include "world/access.h"

u64 PlacedHead(unsigned material, unsigned component, unsigned rotation, unsigned rotation2) {
  Block b = CubeOf(static_cast<u16>(material), static_cast<u16>(component), rotation, rotation2);
  b.temp = 800;
  return HeadOf(b);
}

Cells MixedCells(unsigned count, unsigned seed) {
  std::mt19937 generator(seed);
  const auto random = [&generator](unsigned below) { return static_cast<unsigned>(generator() % below); };
  Cells cells;
  for (unsigned i = 0; i < count; ++i) {
    const Cell at = {static_cast<u16>(5000 + i % 100), static_cast<u16>(5000 + i / 100 % 100), static_cast<u16>(5000 + i / 10000)};
    cells[at] = PlacedHead(1 + random(MaterialCount - 1u), 1 + random(ComponentCount - 1u), random(8), random(4));
  }
  return cells;
}

void Drop(Ship *ship) {
  FreeShip(ship);
  delete ship;
}

void Fill(Ship *ship, const Cells &cells) {
  for (const auto &[at, head] : cells) PlaceBlockRaw(BlockFromHead(head), AddressOf(at[0], at[1], at[2]), ship);
}

Cells CellsOf(const Ship &ship) {
  Cells cells;
  ForEachChunk(ship, [&cells](Chunk &chunk, ChunkCells &found, CellAddress) {
    for (unsigned i = 0; i < CellsPerChunk; ++i) {
      const u64 head = found.heads[i].load();
      if (HeadState(head) != StateEmpty) cells[{CellX(chunk, i), CellY(chunk, i), CellZ(chunk, i)}] = head;
    }
  });
  return cells;
}

// One index of a cell, by its decimal digits: 1000 for mega, 100 for super, 10 for chunk, 1 for block.
static unsigned Digits(const Cell &at, unsigned scale) {
  return at[0] / scale % 10u + 10u * (at[1] / scale % 10u) + 100u * (at[2] / scale % 10u);
}

std::vector<u8> PackByHand(const std::string &name, const Cells &cells) {
  std::map<std::array<unsigned, 3>, std::map<unsigned, u64>> groups;
  for (const auto &[at, head] : cells)
    groups[{Digits(at, 1000), Digits(at, 100), Digits(at, 10)}][Digits(at, 1)] = head;
  std::vector<u8> out;
  PutU16(&out, static_cast<u16>(1 + 256 * name.size()));
  for (const char c : name) PutU8(&out, static_cast<u8>(c));
  PutU8(&out, 0);
  const auto put = [&out](unsigned v) { PutU16(&out, static_cast<u16>(v)); };
  for (const auto &[indices, blocks] : groups) {
    for (const unsigned index : indices) put(index);
    put(static_cast<unsigned>(blocks.size()));
    for (const auto &[index, head] : blocks) {
      const Block b = BlockFromHead(head);
      put(static_cast<unsigned>(b.rotation + b.rotation2 * 8u + b.material * 32u));
      put(static_cast<unsigned>(b.component));
      put(index);
    }
  }
  return out;
}

std::vector<u8> Gunzip(const std::string &path) {
  std::vector<u8> out(1 << 16);
  gzFile file = gzopen(path.c_str(), "rb");
  const int size = gzread(file, out.data(), 1 << 16);
  EXPECT_EQ(gzdirect(file), 0) << path;
  gzclose(file);
  out.resize(static_cast<size_t>(std::max(size, 0)));
  return out;
}

std::string GzipMember(const std::string &content, int level) {
  gzFile file = gzopen("member", level == 0 ? "wb0" : "wb1");
  gzbuffer(file, 1 << 23);
  EXPECT_TRUE(content.empty() || gzwrite(file, content.data(), static_cast<unsigned>(content.size())) > 0);
  gzclose(file);
  return ReadText("member");
}
