// Growth of damaged blocks, one layer of voxels a pass. The damage bits lie in the component's own order of voxels, so how
// the block stands makes no difference.
#include "world/damage.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "content/components.h"
#include "world/block.h"

constexpr int DamageBytes = VoxelsPerBlock / 8;

// The voxels beside this one that stand.
static int CountFeeding(const u8 *gone, const u8 *alpha, int voxel) {
  int count = 0;
  for (const int stride : {1, 16, 256}) {
    const int position = voxel / stride % 16;
    const auto feeds = [&](int v) { return !VoxelGone(gone, v) && alpha[v] != 0; };
    if (position < 15 && feeds(voxel + stride)) ++count;
    if (position > 0 && feeds(voxel - stride)) ++count;
  }
  return count;
}

static bool GrowsBack(int feeding, int threshold) {
  if (feeding == 0) return false;
  if (feeding > 4) feeding *= 10;  // a hole in a wall closes sooner than an edge grows
  return threshold < std::rand() % 1000 + feeding * 3;
}

static bool AnyGone(const u8 *gone) {
  return gone != nullptr && std::any_of(gone, gone + DamageBytes, [](u8 byte) { return byte != 0; });
}

int RegrowVoxels(const Block &b, GraphicBlock *g, int threshold) {
  u8 *gone = g->damageBits.load(std::memory_order_relaxed);
  if (b.rotation == 0 || b.rotation == 7 || !AnyGone(gone)) return 2;
  std::srand(static_cast<unsigned>(std::time(nullptr)));
  const u8 *alpha = Components[static_cast<size_t>(b.component)].facts->alpha;
  u8 grown[DamageBytes] = {};
  for (int v = 0; v < VoxelsPerBlock; ++v)
    if (VoxelGone(gone, v) && GrowsBack(CountFeeding(gone, alpha, v), threshold)) grown[v / 8] |= static_cast<u8>(1 << v % 8);
  for (int i = 0; i < DamageBytes; ++i) __atomic_store_n(gone + i, static_cast<u8>(gone[i] & ~grown[i]), __ATOMIC_RELAXED);
  if (g->cache != nullptr) g->cacheDirty = true;
  return 1;
}
