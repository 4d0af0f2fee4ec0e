// The upload of a finished list. Drawing thread, link mutex held.
#pragma once

#include "render/voxel_list.h"

void GpuLink(VoxelList *list);
