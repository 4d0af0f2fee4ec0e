#include "persistence/ships.h"

#include <zlib.h>

#include "persistence/directory_store.h"
#include "persistence/stream.h"

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

void Fill(Ship *ship, const Cells &cells) {
  for (const auto &[at, head] : cells) PlaceBlockRaw(BlockFromHead(head), AddressOf(at[0], at[1], at[2]), ship);
}

Ship *NewShip(const Cells &cells, const std::string &stem) {
  Ship *made = NewTestShip();
  made->fileStem = stem;
  Fill(made, cells);
  return made;
}

Cells LoadedBy(const std::function<int(Ship *)> &load, int *result) {
  Ship *ship = NewTestShip();
  const int answer = load(ship);
  if (result != nullptr) *result = answer;
  EXPECT_EQ(ShipFault(*ship), "");
  const Cells cells = CellsOf(*ship);
  Drop(ship);
  return cells;
}

Cells StreamCells(const std::string &path, int *result) {
  return LoadedBy([&](Ship *ship) { return LoadShipStream(ship, path.c_str(), false); }, result);
}

Cells FolderCells(const std::string &name, int *result) {
  return LoadedBy([&](Ship *ship) { return LoadShipDirectory(ship, name.c_str(), true, true); }, result);
}

std::string Words(const std::vector<u16> &words) {
  std::string bytes;
  for (const u16 word : words) bytes += {static_cast<char>(word), static_cast<char>(word >> 8)};
  return bytes;
}

// One index of a cell, by its decimal digits: 1000 for mega, 100 for super, 10 for chunk, 1 for block.
static unsigned Digits(const Cell &at, unsigned scale) {
  return at[0] / scale % 10u + 10u * (at[1] / scale % 10u) + 100u * (at[2] / scale % 10u);
}

std::string PackByHand(const std::string &name, const Cells &cells) {
  std::map<std::array<unsigned, 3>, std::map<unsigned, u64>> groups;
  for (const auto &[at, head] : cells)
    groups[{Digits(at, 1000), Digits(at, 100), Digits(at, 10)}][Digits(at, 1)] = head;
  std::vector<u16> words;
  const auto put = [&words](unsigned v) { words.push_back(static_cast<u16>(v)); };
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
  return '\1' + std::string(1, static_cast<char>(name.size())) + name + '\0' + Words(words);
}

std::string Gunzip(const std::string &path) {
  std::string out(1 << 16, '\0');
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
