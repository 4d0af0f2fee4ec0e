// The upload of a finished list. Drawing thread, link mutex held.
#pragma once

#include "render/voxel_list.h"

void GpuLink(VoxelList *list);  // Nothing to do when linked is 1. A list over the buffers is cut to them, with one warning.
