// One cell of a ship and the arithmetic of its place: the block record, its 8-byte head, cell addresses, voxel indices.
#pragma once

#include <array>
#include <bit>
#include <cstring>

#include "core/types.h"

constexpr int CellsPerAxis = 10000;
constexpr int CellsPerChunk = 1000;
constexpr i64 UnitsPerBlock = 10000;  // world coordinates to the block
// a - b of two world coordinates. They come from files and servers, so it wraps at the ends of the range.
inline i64 WorldDifference(i64 a, i64 b) { return static_cast<i64>(static_cast<u64>(a) - static_cast<u64>(b)); }
constexpr u16 PlacedTemperature = 800;  // quarter degrees of a block that has just been placed

// States of a cell.
constexpr unsigned StateEmpty = 0, StateDamaged = 1, StateWhole = 2;

// A block as a value. The first 8 bytes, its head, are what the tree keeps as one atomic word; their order is that of the
// 14-byte form on disk and wire. Zero is an empty cell.
struct Block {
  u64 state : 2 = 0;         // 0 empty, 1 damaged, 2 whole
  u64 rotation : 3 = 0;      // 1 to 6 are orientations; 0 and 7 have no voxels
  u64 rotation2 : 2 = 0;     // further quarter turns
  u64 tempUnstable : 1 = 0;  // on the temperature work list
  u64 second : 8 = 0;        // carried, read by nothing
  u64 material : 16 = 0;     // row of Materials
  u64 component : 16 = 0;    // row of Components
  u64 temp : 16 = 0;         // quarter degrees
  u8 tail[6] = {};           // carried, never interpreted
};

inline u64 HeadOf(const Block &b) {
  u64 head;
  std::memcpy(&head, &b, sizeof head);
  return head;
}
inline void SetHead(Block *b, u64 head) { std::memcpy(static_cast<void *>(b), &head, sizeof head); }
inline Block BlockFromHead(u64 head) {
  Block b;
  SetHead(&b, head);
  return b;
}

// The fields of a head, for paths that never need the record.
inline unsigned HeadState(u64 h) { return static_cast<unsigned>(h & 3); }
inline unsigned HeadRotation(u64 h) { return static_cast<unsigned>(h >> 2 & 7); }
inline unsigned HeadRotation2(u64 h) { return static_cast<unsigned>(h >> 5 & 3); }
inline bool HeadUnstable(u64 h) { return (h >> 7 & 1) != 0; }
inline u16 HeadMaterial(u64 h) { return static_cast<u16>(h >> 16); }
inline u16 HeadComponent(u64 h) { return static_cast<u16>(h >> 32); }
constexpr u64 HeadUnstableBit = 1u << 7;

// The four indices of a cell, each 0 to 999: x + 10 y + 100 z of the decimal digits, thousands first.
struct CellAddress {
  u16 block, chunk, super, mega;
};

// DigitTable[c] holds the four digits of c in four 16-bit lanes, units lowest. Lanes of x + 10 y + 100 z stay under 1000,
// so one sum of three loads is the whole address.
extern const std::array<u64, CellsPerAxis> DigitTable;

// Coordinates 0 to 9999.
inline CellAddress AddressOf(unsigned x, unsigned y, unsigned z) {
  return std::bit_cast<CellAddress>(DigitTable[x] + 10 * DigitTable[y] + 100 * DigitTable[z]);
}

// A voxel's index is affine in its position within the placed block: origin + vx sx + vy sy + vz sz.
struct VoxelFrame {
  i16 origin, sx, sy, sz;
};
extern const std::array<VoxelFrame, 32> VoxelFrames;  // [rotation * 4 + rotation2]; rows of rotation 0 and 7 are zero

inline const VoxelFrame &FrameOf(unsigned rotation, unsigned rotation2) { return VoxelFrames[rotation * 4 + rotation2]; }

// The index in the component's voxel table of a voxel of the placed block, each position 0 to 15; -1 for rotation 0 and 7.
inline int VoxelIndex(int vx, int vy, int vz, unsigned rotation, unsigned rotation2) {
  if (rotation == 0 || rotation == 7) return -1;
  const VoxelFrame &f = FrameOf(rotation, rotation2);
  return f.origin + vx * f.sx + vy * f.sy + vz * f.sz;
}
