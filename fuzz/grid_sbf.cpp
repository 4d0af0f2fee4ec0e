// A voxel grid in the .sbf form, with all that is worked out of it. The first byte of the input says whether the rest is the
// file or what it unpacks to.
#include "content/components.h"
#include "fuzz/fuzz.h"

void PrepareTarget() {}

void FuzzOne(Bytes input) {
  static Voxel grid[VoxelsPerBlock], runs[VoxelsPerBlock];
  static VoxelFacts facts;
  u16 opaque, translucent, drawnOpaque, drawnTranslucent;
  if (input.empty()) return;
  (input[0] % 2 == 0 ? WriteGzipInput : WriteInput)("config/graphics/components/input.sbf", input.subspan(1));
  if (LoadSbfGraphic(grid, "input", &opaque, &translucent) == 0) return;
  const int drawn = BuildVoxelRuns(grid, runs, &drawnOpaque, &drawnTranslucent);
  BuildVoxelFacts(grid, runs, &facts);
  Demand(drawn == drawnOpaque + drawnTranslucent && facts.drawn.size() == static_cast<size_t>(drawn), "all drawn voxels are listed");
}
