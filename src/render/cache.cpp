// Building the lists of a block.
//
// A build gathers the exposed voxels, colours them in batches, sums the colours up over cells of 2 x 2 x 2 and 4 x 4 x 4
// voxels on the way, and copies what came of it into one allocation.
#include "render/cache.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "content/options.h"
#include "core/utils.h"
#include "render/animation.h"
#include "render/colour.h"
#include "render/exposure.h"

constexpr unsigned EightCells = 512, QuadCells = 64;
constexpr unsigned Padding = 4;              // batches go on to a multiple of four
constexpr u8 FaintAlpha = 150;               // see-through voxels up to this one are left out of the coarser lists

namespace {

// Voxels that one rule colours, in ascending order of their index.
struct VoxelRun {
  unsigned count;
  u16 indices[VoxelsPerBlock + Padding];
  u32 sources[VoxelsPerBlock + Padding];     // the component's own colours
};

// The workplace of a build, one for the program: only one build runs at a time, under the world mutex. Entries of the four
// lists stand one behind the other in places and colours, as they will in the finished cache.
struct BuildScratch {
  Exposure exposure;
  VoxelRun opaque, transparent;
  BlockCache counts;
  CacheVoxel places[VoxelsPerBlock + EightCells + QuadCells + Padding];
  u32 colours[VoxelsPerBlock + EightCells + QuadCells + Padding];
  u32 cells[VoxelsPerBlock + Padding];
  u64 eightSums[EightCells], quadSums[QuadCells];  // red, green, blue and a count, 16 bits each from the lowest
};

}  // namespace
static BuildScratch Work;

namespace {

// What a build knows of its block.
struct BuildInputs {
  u64 head = 0;
  const VoxelFacts *facts = nullptr;
  bool glass = false;      // the material is see-through
  bool solid = false;      // every voxel goes to the opaque list
  PlaceFrame frame;
  ColourInputs colour;
  u8 ghostAlpha = 0;       // above 0: a ghost
};

}  // namespace

static BuildInputs InputsOf(u64 head, const Ship &ship, u16 x, u16 y, u16 z, const Player &player, const GraphicBlock &g) {
  BuildInputs in;
  in.head = head;
  in.facts = Components[HeadComponent(head)].facts.get();
  in.colour.material = &Materials[HeadMaterial(head)];
  in.glass = in.colour.material->alpha != 255;
  FillLightTable(&in.colour.lights, g, x, y, z);
  in.colour.flashlight = Options.flashlightLit;
  std::copy_n(player.relativeLoc, 3, in.colour.camera);
  in.colour.blockX = x;
  in.colour.blockY = y;
  in.colour.blockZ = z;
  in.colour.seed = u32{y} * 125 * x * z + x;
  in.colour.comScruff = SoundScruff(ship.ComScruffiness);
  in.colour.matScruff = SoundScruff(ship.MatScruffiness);
  in.ghostAlpha = g.cacheDirty ? 0 : g.ghostAlpha;
  in.solid = !in.glass && in.ghostAlpha == 0 && Components[HeadComponent(head)].drawnTranslucent == 0;
  return in;
}

static bool SeeThrough(u32 source, bool glass) {
  const u32 alpha = source >> 24;
  return alpha < SolidAlpha || (glass && alpha == MaterialColoured);
}

// Sorts the exposed voxels into the two runs. Every voxel is written to both and counted in one at most, so that no
// branch has to be guessed.
static void GatherExposed(const BuildInputs &in) {
  const Exposure &e = Work.exposure;
  const bool ghost = in.ghostAlpha > 0, anyGone = e.anyGone, glass = in.glass;
  const u16 *const drawn = in.facts->drawn.data();
  const u32 *const colours = in.facts->drawnColours.data();
  const size_t count = in.facts->drawn.size();
  unsigned opaque = 0, transparent = 0;
  for (size_t i = 0; i < count; ++i) {
    const u16 v = drawn[i];
    const u32 source = colours[i];
    const unsigned shown = static_cast<unsigned>(BitOf(e.shown, v));
    const unsigned solid = !ghost && (!SeeThrough(source, glass) || (anyGone && BitOf(e.gone, v) != 0));
    Work.opaque.indices[opaque] = Work.transparent.indices[transparent] = v;
    Work.opaque.sources[opaque] = Work.transparent.sources[transparent] = source;
    opaque += shown & solid;
    transparent += shown & (solid ^ 1);
  }
  Work.opaque.count = opaque;
  Work.transparent.count = transparent;
}

// The same for the many blocks where nothing is see-through.
static void GatherSolid(const BuildInputs &in) {
  const Exposure &e = Work.exposure;
  const u16 *const drawn = in.facts->drawn.data();
  const u32 *const colours = in.facts->drawnColours.data();
  const size_t count = in.facts->drawn.size();
  unsigned opaque = 0;
  for (size_t i = 0; i < count; ++i) {
    Work.opaque.indices[opaque] = drawn[i];
    Work.opaque.sources[opaque] = colours[i];
    opaque += static_cast<unsigned>(BitOf(e.shown, drawn[i]));
  }
  Work.opaque.count = opaque;
  Work.transparent.count = 0;
}

static void ColourRun(const BuildInputs &in, bool seeThrough, const VoxelRun &run, unsigned first) {
  ColourVoxels(in.colour, seeThrough, in.frame,
               {static_cast<int>(run.count), run.indices, run.sources, Work.places + first, Work.colours + first, Work.cells + first});
}

// Voxels next to those that are gone have a rule of their own; there are few, so they are simply coloured again.
static void ColourBesideGone(const BuildInputs &in) {
  const ColourInputs &c = in.colour;
  for (unsigned e = 0; e < Work.opaque.count; ++e) {
    const u16 v = Work.opaque.indices[e];
    if (BitOf(Work.exposure.gone, v) == 0) continue;
    const CacheVoxel &at = Work.places[e];
    const Light3 light = LightAt(c, c.blockX + static_cast<float>(at.x) * 0.0625f, c.blockY + static_cast<float>(at.y) * 0.0625f,
                                 c.blockZ + static_cast<float>(at.z) * 0.0625f);
    Work.colours[e] = VoxelColour(c, ColourRule::DamagedNeighbour, Work.opaque.sources[e], v, light);
  }
}

static void ColourGhost(const BuildInputs &in) {
  for (unsigned e = 0; e < Work.transparent.count; ++e) {
    Work.places[e] = PlaceOf(in.frame, Work.transparent.indices[e]);
    Work.colours[e] = GhostColour(in.colour, Work.transparent.sources[e], Work.transparent.indices[e], in.ghostAlpha);
  }
}

// A colour as a sum of one: its channels and a count, spread out so that thousands can be added before one runs over.
static u64 Spread(u32 colour) {
  u64 sum = (colour & 0xffffffu) | 1u << 24;
  sum = (sum | sum << 16) & 0x0000ffff0000ffffu;
  return (sum | sum << 8) & 0x00ff00ff00ff00ffu;
}
static unsigned Channel(u64 sum, unsigned i) { return static_cast<unsigned>(sum >> (16 * i) & 0xffffu); }

static u32 AverageOf(u64 sum) {
  const float share = 1.0f / static_cast<float>(Channel(sum, 3));
  u32 colour = 0xff000000u;
  for (unsigned c = 0; c < 3; ++c)
    colour |= static_cast<u32>(static_cast<i32>(static_cast<float>(Channel(sum, c)) * share)) << (8 * c);
  return colour;
}

// The first entry of a list is never part of a coarser one: position 0 means "no voxel" to the cells.
static void SumOpaque() {
  for (unsigned e = 1; e < Work.opaque.count; ++e) Work.eightSums[Work.cells[e]] += Spread(Work.colours[e]);
}
static void SumTransparent() {
  const unsigned first = Work.opaque.count;
  for (unsigned e = first + 1; e < first + Work.transparent.count; ++e)
    if (Work.colours[e] >> 24 > FaintAlpha) Work.eightSums[Work.cells[e]] += Spread(Work.colours[e]);
}

// The 2 x 2 x 2 cells, in the order of x, y, z; each adds to its 4 x 4 x 4 cell.
static unsigned ListEights(unsigned first) {
  unsigned count = 0;
  for (unsigned c = 0; c < EightCells; ++c) {
    if (Work.eightSums[c] == 0) continue;
    const u32 colour = AverageOf(Work.eightSums[c]);
    Work.places[first + count] = {static_cast<u8>(c >> 6 << 1), static_cast<u8>((c >> 3 & 7) << 1), static_cast<u8>((c & 7) << 1), 0};
    Work.colours[first + count] = colour;
    if (count > 0) Work.quadSums[c >> 7 << 4 | (c >> 4 & 3) << 2 | (c >> 1 & 3)] += Spread(colour);
    ++count;
  }
  return count;
}

static unsigned ListQuads(unsigned first) {
  unsigned count = 0;
  for (unsigned c = 0; c < QuadCells; ++c) {
    if (Work.quadSums[c] == 0) continue;
    Work.places[first + count] = {static_cast<u8>(c >> 4 << 2), static_cast<u8>((c >> 2 & 3) << 2), static_cast<u8>((c & 3) << 2), 0};
    Work.colours[first + count] = AverageOf(Work.quadSums[c]);
    ++count;
  }
  return count;
}

// The block as a single cube, from the average of its coarsest cells.
static void StoreCubeColour(const u32 *quads, unsigned count, float comScruff, u16 x, u16 y, u16 z, GraphicBlock *g) {
  u64 total = 0;
  for (unsigned i = 0; i < count; ++i) total += Spread(quads[i]);
  const float f = std::max(0.0f, 1.0f - 2.0f * comScruff * HashToUnit(u32{x} * y * z));
  for (unsigned c = 0; c < 3; ++c)
    g->cacheState[c] = static_cast<u8>(static_cast<float>(Channel(total, c) / count) * f);
  if (g->cacheState[0] == 0) g->cacheState[0] = 1;
}

static void BuildCoarser(const BuildInputs &in, u16 x, u16 y, u16 z, GraphicBlock *g) {
  std::memset(Work.eightSums, 0, sizeof Work.eightSums);
  std::memset(Work.quadSums, 0, sizeof Work.quadSums);
  SumOpaque();
  SumTransparent();
  const unsigned first = Work.opaque.count + Work.transparent.count;
  Work.counts.counts[EightList] = static_cast<u16>(ListEights(first));
  const unsigned firstQuad = first + Work.counts.counts[EightList];
  Work.counts.counts[QuadList] = static_cast<u16>(ListQuads(firstQuad));
  if (Work.counts.counts[QuadList] > 0)
    StoreCubeColour(Work.colours + firstQuad, Work.counts.counts[QuadList], in.colour.comScruff, x, y, z, g);
}

static void BuildLists(const BuildInputs &in, const Ship &ship, u16 x, u16 y, u16 z, GraphicBlock *g) {
  FindExposure(in.head, ship, x, y, z, &Work.exposure);
  if (in.solid) GatherSolid(in);
  else GatherExposed(in);
  Work.counts.counts[OpaqueList] = static_cast<u16>(Work.opaque.count);
  Work.counts.counts[TransparentList] = static_cast<u16>(Work.transparent.count);
  if (in.ghostAlpha > 0) return ColourGhost(in);
  ColourRun(in, false, Work.opaque, 0);
  if (Work.exposure.anyGone) ColourBesideGone(in);
  ColourRun(in, true, Work.transparent, Work.opaque.count);
  BuildCoarser(in, x, y, z, g);
}

// The finished cache in one allocation; without memory the block goes on without one.
static void StoreLists(GraphicBlock *g) {
  const size_t total = CacheTotal(Work.counts);
  std::free(g->cache);
  g->cache = static_cast<BlockCache *>(std::malloc(sizeof(BlockCache) + total * (sizeof(CacheVoxel) + sizeof(u32)) + CacheReadPastEnd));
  if (g->cache == nullptr) return;
  *g->cache = Work.counts;
  u8 *out = reinterpret_cast<u8 *>(g->cache + 1);
  unsigned first = 0;
  for (const u16 count : Work.counts.counts) {
    std::memcpy(out, Work.places + first, count * sizeof(CacheVoxel));
    std::memcpy(out + count * sizeof(CacheVoxel), Work.colours + first, count * sizeof(u32));
    out += count * (sizeof(CacheVoxel) + sizeof(u32));
    first += count;
  }
}

// One record's lists. *next: the record of the frame behind it, or null. 0 when that one can't be allocated.
static int BuildRecord(u64 head, const Ship &ship, u16 x, u16 y, u16 z, const Player &player, GraphicBlock *graphic,
                       GraphicBlock *ringHead, GraphicBlock **next) {
  BuildInputs in = InputsOf(head, ship, x, y, z, player, *graphic);
  *next = nullptr;
  graphic->cacheDirty = false;
  FreeFrames(graphic);
  Work.counts = {};
  const VoxelFrame &frame = FrameOf(HeadRotation(head), HeadRotation2(head));
  if (HeadState(head) == StateWhole && frame.sx != 0 && in.facts != nullptr) {
    in.frame = PlaceFrameOf(frame);
    BuildLists(in, ship, x, y, z, graphic);
  }
  StoreLists(graphic);
  if (in.ghostAlpha == 0) return PrepareNextFrame(graphic, HeadComponent(head), ringHead, next) ? 1 : 0;
  graphic->frameLength = 0;  // a ghost is built anew each run, so that it never comes to a second frame
  return 1;
}

int BuildBlockCache(u64 head, const Ship &ship, u16 x, u16 y, u16 z, const Player &player, GraphicBlock *graphic,
                    GraphicBlock *ringHead) {
  if (x == 0 || y == 0 || z == 0) return 1;
  // A loop, not a recursion: how many frames follow each other is up to the table.
  for (GraphicBlock *next;; graphic = next) {
    if (BuildRecord(head, ship, x, y, z, player, graphic, ringHead, &next) == 0) return 0;
    if (next == nullptr) return 1;
    if (ringHead == nullptr) ringHead = graphic;
    Block later = BlockFromHead(head);
    later.component = static_cast<u16>(later.component + Components[HeadComponent(head)].frameStep);
    head = HeadOf(later);
  }
}

void RebuildShipCaches(const Ship &ship, const Player &player) {
  ForEachChunk(ship, [&](Chunk &chunk, ChunkCells &cells, CellAddress) {
    ForEachBit(cells.occupied, [&](u16 i) {
      GraphicBlock *graphics = EnsureGraphics(&cells, chunk);
      if (graphics == nullptr) return;
      GraphicBlock *g = graphics + i;
      BuildBlockCache(cells.heads[i].load(std::memory_order_relaxed), ship, g->x, g->y, g->z, player, g, nullptr);
    });
  });
}
