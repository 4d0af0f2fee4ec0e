// The one hand-over record between Parse and the thread that draws.
//
// Parse owns locations, colours, count, otherInstances and the visible list during its run. It publishes by swapping its
// two arrays with the published pair under the link mutex. The drawing thread uploads the published pair under that mutex
// (try-locked, so that a frame never waits) and then sets linked. A list published twice before an upload is dropped
// unseen; a frame drawn twice draws the same buffers. Parse never writes into a published array: that is what keeps a
// frame from tearing.
#pragma once

#include <atomic>

#include "world/tree.h"

constexpr u32 ArrayStep = 16384;  // floats by which the arrays grow
constexpr u32 ArraySlack = 64;    // items behind each array's capacity: appends write four instances at once and may pass
                                  // the end of their list, into what the next one overwrites

struct VisibleBlock {
  float distance = 0;  // camera to the block's corner
  GraphicBlock *graphic = nullptr;
  u64 head = 0;        // the block's head, copied: it outlives a change of the cell
  u8 visibility = 0;
  bool lateList = false;  // shown in full and has something for the see-through pass at the end
};

struct VoxelList {
  u32 count = 0;                 // floats written so far, four an instance; index of the next free slot in both arrays
  float *locations = nullptr;    // ArrayCapacity floats: x, y, z, scale
  u8 *colours = nullptr;         // ArrayCapacity bytes: red, green, blue, alpha
  u32 publishedCount = 0;        // link mutex, these four
  float *publishedLocations = nullptr;
  u8 *publishedColours = nullptr;
  u8 linked = 0;                 // 1: the published pair has been uploaded
  u32 drawnCount = 0;            // drawing thread only
  u32 otherInstances = 0;        // instances of the last run that did not belong to the current ship
  VisibleBlock *visibleBlocks = nullptr;
  u32 visibleCount = 0, visibleCapacity = 0;
};

extern VoxelList TheVoxelList;
extern u32 ArrayCapacity;  // floats a parse-side array; starts at 16384, only grows. Parse only.

bool AllocVoxelList(VoxelList *list);          // The four arrays, zeroed. Start-up. False without memory.
// Room for writing behind count. All of them but the hand-over belong to Parse; false without memory (logged).
bool MakeRoom(VoxelList *list, u32 instances); // For so many more instances, in as few steps as will do.
bool MakeRoomStep(VoxelList *list);            // For a single cube or figure: one step when under 16384 floats are left.
bool GrowArrays(VoxelList *list, u32 floats);  // So many floats more.
bool RenewParseSide(VoxelList *list);          // ArrayCapacity for the pair that came back; count 0.
void PublishVoxelList(VoxelList *list);        // Takes the link mutex.
