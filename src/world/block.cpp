// The constant tables of cell and voxel arithmetic.
#include "world/block.h"

static constexpr std::array<u64, CellsPerAxis> MakeDigitTable() {
  std::array<u64, CellsPerAxis> table{};
  for (u64 c = 0; c < CellsPerAxis; ++c)
    table[c] = c % 10 | c / 10 % 10 << 16 | c / 100 % 10 << 32 | c / 1000 << 48;
  return table;
}

constinit const std::array<u64, CellsPerAxis> DigitTable = MakeDigitTable();

// The index of one voxel, told axis by axis: (p, q) are the two axes that rotation2 turns, (i, j, k) the component's own.
static constexpr int IndexOf(int vx, int vy, int vz, int rotation, int rotation2) {
  const bool aboutZ = rotation == 1 || rotation == 3, aboutY = rotation == 2 || rotation == 5;
  const int p0 = aboutZ || aboutY ? vx : vy, q0 = aboutZ ? vy : vz;
  int p = p0, q = q0;
  switch (rotation2) {
    case 1: p = q0; q = 15 - p0; break;
    case 2: p = 15 - p0; q = 15 - q0; break;
    case 3: p = 15 - q0; q = p0; break;
    default: break;
  }
  int i = 0, j = 0, k = 0;
  switch (rotation) {
    case 1: i = p; j = vz; k = q; break;
    case 2: i = p; j = vy; k = 15 - q; break;
    case 3: i = 15 - p; j = 15 - vz; k = q; break;
    case 4: i = 15 - q; j = vx; k = p; break;
    case 5: i = p; j = 15 - vy; k = q; break;
    default: i = q; j = 15 - vx; k = p; break;
  }
  return i * 256 + j * 16 + k;
}

static constexpr std::array<VoxelFrame, 32> MakeVoxelFrames() {
  std::array<VoxelFrame, 32> frames{};
  for (int r = 1; r <= 6; ++r)
    for (int r2 = 0; r2 < 4; ++r2) {
      const int origin = IndexOf(0, 0, 0, r, r2);
      frames[static_cast<size_t>(r * 4 + r2)] = {static_cast<i16>(origin), static_cast<i16>(IndexOf(1, 0, 0, r, r2) - origin),
                                                 static_cast<i16>(IndexOf(0, 1, 0, r, r2) - origin),
                                                 static_cast<i16>(IndexOf(0, 0, 1, r, r2) - origin)};
    }
  return frames;
}

constinit const std::array<VoxelFrame, 32> VoxelFrames = MakeVoxelFrames();
