// A voxel grid in the .3mp form, with all that is worked out of it.
#include "content/components.h"
#include "fuzz/fuzz.h"

void PrepareTarget() {}

void FuzzOne(Bytes input) {
  static Voxel grid[VoxelsPerBlock], runs[VoxelsPerBlock];
  static VoxelFacts facts;
  u16 opaque, translucent, drawnOpaque, drawnTranslucent;
  WriteInput("config/graphics/components/input.3mp", input);
  if (Load3mpGraphic(grid, "input", &opaque, &translucent) == 0) return;
  const int drawn = BuildVoxelRuns(grid, runs, &drawnOpaque, &drawnTranslucent);
  BuildVoxelFacts(grid, runs, &facts);
  Demand(drawn == drawnOpaque + drawnTranslucent && facts.drawn.size() == static_cast<size_t>(drawn), "all drawn voxels are listed");
}
