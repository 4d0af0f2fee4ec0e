// Twelve edges of voxels, inside the box that they go round.
#include "render/box_frame.h"

#include <cstring>

#include "render/parse.h"

constexpr int VoxelsPerCell = 16;
constexpr u8 RoomColour[4] = {255, 214, 120, 200}, NoRoomColour[4] = {255, 64, 48, 200};  // the marker's, and a warning

bool ShowsBoxFrame(const Player &player) {
  const Target &t = player.target;
  return CellsOf(t.box.size) > 1 && t.placeCell.x != 0 && ShowsPreview(player) && Builds(player);
}

static void EmitVoxel(VoxelList *list, const float (&low)[3], const int (&voxel)[3], const u8 (&colour)[4]) {
  float location[4] = {0, 0, 0, 1.0f};
  for (int axis = 0; axis < 3; ++axis) location[axis] = low[axis] + static_cast<float>(voxel[axis]) / VoxelsPerCell;
  std::memcpy(list->locations + list->count, location, sizeof location);
  std::memcpy(list->colours + list->count, colour, sizeof colour);
  list->count += 4;
}

// The four edges along one axis. The corners belong to the first axis.
static void EmitEdges(VoxelList *list, int axis, const float (&low)[3], const int (&size)[3], const u8 (&colour)[4]) {
  const int b = (axis + 1) % 3, c = (axis + 2) % 3, skip = axis == 0 ? 0 : 1;
  for (int edge = 0; edge < 4; ++edge) {
    int voxel[3] = {};
    voxel[b] = (edge & 1) != 0 ? size[b] - 1 : 0;
    voxel[c] = (edge & 2) != 0 ? size[c] - 1 : 0;
    for (voxel[axis] = skip; voxel[axis] < size[axis] - skip; ++voxel[axis]) EmitVoxel(list, low, voxel, colour);
  }
}

void EmitBoxFrame(VoxelList *list, const Player &player) {
  if (!ShowsBoxFrame(player)) return;
  const PieceBox &box = player.target.box;
  const float low[3] = {static_cast<float>(box.low.x), static_cast<float>(box.low.y), static_cast<float>(box.low.z)};
  const int size[3] = {box.size.x * VoxelsPerCell, box.size.y * VoxelsPerCell, box.size.z * VoxelsPerCell};
  if (!MakeRoom(list, static_cast<u32>(4 * (size[0] + size[1] + size[2])))) return;
  const bool free = box.room && !BodyInBox(EyeOf(player), box);
  for (int axis = 0; axis < 3; ++axis) EmitEdges(list, axis, low, size, free ? RoomColour : NoRoomColour);
}
