// Reading the stream form piece by piece, so that a file of any size needs one small buffer. Local to this folder.
#pragma once

#include "world/tree.h"

// Where a reader stands, and what it met. Each fault is reported once, at the end, however often it came.
struct ShipUnpacker {
  Ship *ship = nullptr;
  const char *path = "";    // for the messages
  bool headerRead = false;
  bool stopped = false;     // nothing behind this point can be trusted
  bool otherVersion = false, longName = false, badIndex = false, badCount = false, unknownRow = false, cut = false;
  bool tooLarge = false;
  u16 mega = 0xffff, super = 0xffff;  // of the group before
  u64 budget = u64{4} << 30;  // bytes of content and of memory for cells that this file may still cost
  u64 chunkBytes = sizeof(ChunkCells);  // what a chunk costs
  u16 placeholderComponent = 1, placeholderMaterial = 1;
};

ShipUnpacker BeginUnpack(Ship *ship, const char *path);
// Takes the header and all whole groups at the front of the bytes. The count of bytes taken; what is left, always less
// than LongestPiece, must be given again in front of what follows.
size_t UnpackPiece(ShipUnpacker *u, const u8 *bytes, size_t count);
constexpr size_t LongestPiece = 8 + 6 * CellsPerChunk;
// Takes the whole entries of what is left at the end of the content, and reports the faults. True when there were none.
bool EndUnpack(ShipUnpacker *u, const u8 *bytes, size_t count);
