// The arrays of instances and their hand-over.
#include "render/voxel_list.h"

#include <cstdlib>
#include <utility>

#include "core/log.h"
#include "platform/threads.h"

VoxelList TheVoxelList;
u32 ArrayCapacity = ArrayStep;

// Resizes one of the two parse-side arrays; the old one stays when there is no memory.
template <typename Item>
static bool Resize(Item **items, u32 capacity) {
  void *resized = std::realloc(*items, (size_t{capacity} + ArraySlack) * sizeof(Item));
  if (resized == nullptr) return false;
  *items = static_cast<Item *>(resized);
  return true;
}

static bool ResizeBoth(VoxelList *list, u32 capacity) {
  if (Resize(&list->locations, capacity) && Resize(&list->colours, capacity)) return true;
  LogError("Could not allocate voxel arrays");
  return false;
}

bool AllocVoxelList(VoxelList *list) {
  const size_t capacity = size_t{ArrayCapacity} + ArraySlack;
  list->locations = static_cast<float *>(std::calloc(capacity, sizeof(float)));
  list->publishedLocations = static_cast<float *>(std::calloc(capacity, sizeof(float)));
  list->colours = static_cast<u8 *>(std::calloc(capacity, 1));
  list->publishedColours = static_cast<u8 *>(std::calloc(capacity, 1));
  return list->locations != nullptr && list->publishedLocations != nullptr && list->colours != nullptr &&
         list->publishedColours != nullptr;
}

bool GrowArrays(VoxelList *list, u32 floats) {
  if (floats > UINT32_MAX - ArrayCapacity || !ResizeBoth(list, ArrayCapacity + floats)) return false;
  ArrayCapacity += floats;
  return true;
}

bool MakeRoom(VoxelList *list, u32 instances) {
  const u64 needed = u64{list->count} + u64{instances} * 4;
  if (needed <= ArrayCapacity) return true;
  const u64 steps = (needed - ArrayCapacity + ArrayStep - 1) / ArrayStep;
  return needed <= UINT32_MAX - ArrayStep && GrowArrays(list, static_cast<u32>(steps) * ArrayStep);
}

bool MakeRoomStep(VoxelList *list) {
  return ArrayCapacity >= u64{list->count} + ArrayStep || GrowArrays(list, ArrayStep);
}

bool RenewParseSide(VoxelList *list) {
  list->count = 0;
  return ResizeBoth(list, ArrayCapacity);
}

void PublishVoxelList(VoxelList *list) {
  float *const locations = std::exchange(list->locations, list->publishedLocations);
  u8 *const colours = std::exchange(list->colours, list->publishedColours);
  const ScopedLock held(&LinkMutex);
  list->publishedLocations = locations;
  list->publishedColours = colours;
  list->linked = 0;
  list->publishedCount = list->count;
}
