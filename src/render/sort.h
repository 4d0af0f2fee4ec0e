// Sorting by distance, for thousands of blocks and of voxels a run.
#pragma once

#include <bit>
#include <vector>

#include "core/types.h"

// A sort key: the bits of a float that is not negative grow with it. The index is what is sorted.
inline u64 SortKey(float distance, u32 index) { return u64{std::bit_cast<u32>(distance)} << 32 | index; }

// Sorts keys by their distance, smallest first; equal ones keep their order. spare: working room, grown at need.
void SortKeys(std::vector<u64> *keys, std::vector<u64> *spare);
