// The only way into the tree: reads cells, writes them, and keeps up what depends on them: visibility, caches, work lists,
// light. Three grades of placing: raw for loaders, fast for generators, full for play.
#pragma once

#include "world/tree.h"

// How far a read came.
enum ReadResult : int { ReadOutOfRange = 0, ReadNoMega = 1, ReadNoSuper = 2, ReadNoChunk = 3, ReadEmpty = 4, ReadFound = 5 };

// Reads take no lock. Out of range: coordinates on standard output and an error in the log.
int GetBlock(Block *out, u16 x, u16 y, u16 z, const Ship &ship);      // Copies the head but for out's tempUnstable.
bool BlockExists(u16 x, u16 y, u16 z, const Ship &ship);
int GetBlockForPick(Block *out, u16 x, u16 y, u16 z, const Ship &ship);   // For building: the family's base, whole.
int GetBlockRotation(Block *out, u16 x, u16 y, u16 z, const Ship &ship);  // Only rotation and rotation2.
// An occupied cell's head and record; false and zero otherwise. No range test. World mutex; the record is made at need.
bool GetCellPointers(u16 x, u16 y, u16 z, const Ship &ship, u64 *head, GraphicBlock **graphic);
int NeighbourKind(u16 x, u16 y, u16 z, const Ship &ship);  // 0 hides nothing, 1 hides partly, 2 full opaque. World mutex.
bool VoxelSolid(float fx, float fy, float fz, const Ship &ship);  // Position in block space. Any thread.
// The voxel test of a position in the block whose head and damage bits are given.
bool HeadVoxelSolid(u64 head, const u8 *damageBits, int vx, int vy, int vz);
int VoxelClass(u64 head, const u8 *damageBits, int vx, int vy, int vz);  // 0 opaque, 1 seen through, 2 opaque but gone.

// Writing. A block with state 0 is none: nothing is written, and the result is 0. Raw and fast need the world mutex, or a world that no other thread sees yet.
void PlaceBlockRaw(const Block &b, const CellAddress &a, Ship *ship);
int PlaceBlockFast(const Block &b, u16 x, u16 y, u16 z, Ship *ship);           // 1 or 0.
int PlaceBlock(const Block &b, u16 x, u16 y, u16 z, Ship *ship);               // 1 or 0. Takes the world mutex.
int PlaceBlockHeld(const Block &b, u16 x, u16 y, u16 z, Ship *ship);           // The same with the world mutex held.
int ChangeBlockComponent(u16 component, u16 x, u16 y, u16 z, Ship *ship);      // 1 or 0. World mutex held.
bool RemoveBlock(u16 x, u16 y, u16 z, Ship *ship);                             // Takes the world mutex.
bool RemoveBlockHeld(u16 x, u16 y, u16 z, Ship *ship);                         // The same with the world mutex held.
void RefreshVisibility(u16 x, u16 y, u16 z, const Ship &ship);                 // World mutex held, all below.
// The same decision for who goes on from cell to cell: says nothing of cells out of range and leaves the caches, which hold no
// visibility. Whether the cell now hides more or less of its neighbours than before: a shaped block hides them while it is buried.
bool DecideVisibility(u16 x, u16 y, u16 z, const Ship &ship);
bool HidesWhileBuried(u16 x, u16 y, u16 z, const Ship &ship);  // Whether it is such a block.
void MarkCacheDirty(u16 x, u16 y, u16 z, const Ship &ship);
void MarkCacheDirtyAround(u16 x, u16 y, u16 z, const Ship &ship);
void DropCache(u16 x, u16 y, u16 z, const Ship &ship);
std::unique_ptr<ShipSummary> BuildShipSummary(Ship *ship);                     // Removes a block at (0, 0, 0) first.
bool AllocDamageBits(const CellAddress &a, const Ship &ship);                  // 512 zero bytes for a cell. World mutex.
