// A run of Parse: collect, preview, sort, spend the budget, add everything else, publish.
#include "render/parse.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "content/materials.h"
#include "content/options.h"
#include "core/log.h"
#include "core/utils.h"
#include "net/session.h"
#include "render/box_frame.h"
#include "render/cache.h"
#include "render/collect.h"
#include "render/debris.h"
#include "render/sort.h"
#include "render/view.h"

constexpr u8 PlacingGhost = 120, MarkerGhost = 200;  // alpha of the block about to be placed, and of the aim marker
constexpr int PlaceTool = 0, PlaneTool = 2;          // tools that show the held block
constexpr i64 SortedVoxelCost = 5;                   // what a see-through voxel costs when it has to be sorted
constexpr u32 FetchAhead = 8;                        // entries between asking for memory and using it
constexpr int CacheLines = 4;                        // of a cache are asked for; a longer list then runs in order

static GraphicBlock PreviewGraphics[MostParts];  // one for each cell of a piece; Parse only; set up once by InitPreview
static LightEntry PreviewLight{0, 0, 0, 255, 255, 255, 0};

void InitPreview() {
  for (GraphicBlock &g : PreviewGraphics) {
    g.lightList = &PreviewLight;
    g.lightCount = 1;
  }
}

static bool EyeInCell(const float (&eye)[3], Cell3 cell) {
  return FloatToInt(eye[0]) == cell.x && FloatToInt(eye[1]) == cell.y && FloatToInt(eye[2]) == cell.z;
}

bool ShowsPreview(const Player &player) {
  return !player.target.markerHidden && !EyeInCell(player.relativeLoc, player.target.hitCell);
}

bool Builds(const Player &player) { return player.activeTool == PlaceTool || player.activeTool == PlaneTool; }

// There is none on the zero faces of a ship, where no block has lists: a place cell of (0, 0, 0) means that there is no place.
static void AddGhost(VoxelList *list, const Ship &ship, const Player &player, GraphicBlock *g, Cell3 cell, u64 head) {
  if (cell.x == 0 || cell.y == 0 || cell.z == 0 || !RoomForVisible(list, 1)) return;
  g->x = cell.x;
  g->y = cell.y;
  g->z = cell.z;
  BuildBlockCache(head, ship, cell.x, cell.y, cell.z, player, g, nullptr);
  list->visibleBlocks[list->visibleCount++] = {0.0f, g, head, VisibilityUndecided};
}

// The ghost of the held block alone would show a part of the piece, turned as none of it will stand: each cell shows its own.
static void AddPieceGhosts(VoxelList *list, const Ship &ship, const Player &player) {
  const PieceBox &box = player.target.box;
  if (!box.room) return;
  Block part = player.heldBlock;
  part.rotation = 3;
  EachPart(box.low, box.size, [&](Cell3 cell, int step) {
    part.component = static_cast<u16>(player.heldBlock.component + static_cast<unsigned>(step));
    PreviewGraphics[step].ghostAlpha = PlacingGhost;
    AddGhost(list, ship, player, &PreviewGraphics[step], cell, HeadOf(part));
    return true;
  });
}

// The ghost of the held block, or the aim marker, in front of all other blocks.
static void AddPreviewBlock(VoxelList *list, const Ship &ship, const Player &player) {
  const Target &target = player.target;
  if (!ShowsPreview(player)) return;
  const bool placing = player.heldBlock.rotation != 0 && Builds(player);
  if (placing && ShowsBoxFrame(player)) return AddPieceGhosts(list, ship, player);
  PreviewGraphics[0].ghostAlpha = placing ? PlacingGhost : MarkerGhost;
  AddGhost(list, ship, player, &PreviewGraphics[0], placing ? target.placeCell : target.hitCell,
           HeadOf(placing ? player.heldBlock : target.marker));
}

// Where the visible list goes when it is put in order; the two change places each time. World mutex.
static struct {
  VisibleBlock *blocks = nullptr;
  u32 capacity = 0;
} SortedBlocks;
static std::vector<u64> BlockOrder, BlockOrderSpare;

static void SortVisible(VoxelList *list) {
  const u32 count = list->visibleCount;
  BlockOrder.resize(count);
  for (u32 i = 0; i < count; ++i) BlockOrder[i] = SortKey(list->visibleBlocks[i].distance, i);
  SortKeys(&BlockOrder, &BlockOrderSpare);
  VoxelList sorted;
  sorted.visibleBlocks = SortedBlocks.blocks;
  sorted.visibleCapacity = SortedBlocks.capacity;
  if (!RoomForVisible(&sorted, count)) return;
  for (u32 i = 0; i < count; ++i) sorted.visibleBlocks[i] = list->visibleBlocks[static_cast<u32>(BlockOrder[i])];
  SortedBlocks = {std::exchange(list->visibleBlocks, sorted.visibleBlocks),
                  std::exchange(list->visibleCapacity, sorted.visibleCapacity)};
}

namespace {

// A walk over the sorted list.
struct Walk {
  VoxelList *list;
  const Ship &ship;
  const Player &player;
  i64 voxelCost;         // of a see-through voxel
  u32 mayBuild;          // caches that this run may still build
};

}  // namespace

// The nearest blocks whose lists are missing or out of date get new ones, as many a run as the settings allow.
static void TouchCache(const VisibleBlock &b, Walk *walk) {
  GraphicBlock *g = b.graphic;
  if (walk->mayBuild == 0 || (g->cache != nullptr && !g->cacheDirty)) return;
  BuildBlockCache(b.head, walk->ship, g->x, g->y, g->z, walk->player, g, nullptr);
  --walk->mayBuild;
}

static i64 EmitCube(const VisibleBlock &b, const Walk &walk) {
  AppendCube(b.graphic, walk.list, b.head, walk.ship);
  return 1;
}

// One entry at each level of detail; the result is its cost.
static i64 EmitVoxels(VisibleBlock *b, const Walk &walk) {
  if (AppendOpaque(b->graphic, walk.list) == 0) return EmitCube(*b, walk);
  const BlockCache &c = *b->graphic->cache;
  b->lateList = c.counts[TransparentList] > 0 || b->graphic->lodNext != nullptr;
  return c.counts[OpaqueList] + walk.voxelCost * c.counts[TransparentList];
}

static i64 EmitQuads(const VisibleBlock &b, const Walk &walk) {
  return AppendQuad(b.graphic, walk.list) != 0 ? b.graphic->cache->counts[QuadList] : EmitCube(b, walk);
}

static i64 EmitEights(VisibleBlock *b, const Walk &walk) {
  if (b->visibility == MaybeVisible) return EmitQuads(*b, walk);
  return AppendEight(b->graphic, walk.list) != 0 ? b->graphic->cache->counts[EightList] : EmitCube(*b, walk);
}

static i64 EmitLowest(VisibleBlock *b, const Walk &walk) {
  return b->visibility == MaybeVisible ? EmitCube(*b, walk) : EmitQuads(*b, walk);
}

// Records and caches lie all over memory: each is asked for some entries before its turn. Always inline, as compilers may
// drop a call that does nothing but ask.
[[gnu::always_inline]] static inline void FetchLater(const VoxelList &list, u32 i) {
  if (i + 2 * FetchAhead < list.visibleCount) {
    const GraphicBlock *g = list.visibleBlocks[i + 2 * FetchAhead].graphic;
    __builtin_prefetch(g, 1);
    __builtin_prefetch(reinterpret_cast<const char *>(g + 1) - 1, 1);
  }
  if (i + FetchAhead >= list.visibleCount) return;
  const char *cache = reinterpret_cast<const char *>(list.visibleBlocks[i + FetchAhead].graphic->cache);
  for (int line = 0; line < CacheLines; ++line) __builtin_prefetch(cache + 64 * line);
}

DetailLimits LimitsOf(const VoxelList &list) {
  const float instances = static_cast<float>(Options.MaxVoxels) - 0.5f * static_cast<float>(list.visibleCount) -
                          static_cast<float>(list.otherInstances);
  const i64 budget = instances > 0 ? static_cast<i64>(instances) : 0;
  if (!Options.LevelOfDetail) return {{budget, 0, budget}};
  const float whole = static_cast<float>(budget);
  return {{static_cast<i64>(0.6f * whole), static_cast<i64>(0.9f * whole), budget}};
}

u32 EmitCurrentShip(VoxelList *list, const Ship &ship, const Player &player) {
  if (list->visibleCount == 0) return 0;
  SortVisible(list);
  static constexpr i64 (*emit[3])(VisibleBlock *, const Walk &) = {EmitVoxels, EmitEights, EmitLowest};
  const DetailLimits limits = LimitsOf(*list);
  Walk walk{list, ship, player, Options.HighQualityTransparency ? SortedVoxelCost : 1, Options.CachePerFrame};
  i64 spent = 0;
  u32 i = 0, fullDetail = 0;
  for (int stage = 0; stage < 3; ++stage) {
    for (; i < list->visibleCount && spent < limits.stage[stage]; ++i) {
      FetchLater(*list, i);
      TouchCache(list->visibleBlocks[i], &walk);
      spent += emit[stage](&list->visibleBlocks[i], walk);
    }
    if (stage == 0) fullDetail = i;
  }
  for (; i < list->visibleCount; ++i) {
    FetchLater(*list, i);
    TouchCache(list->visibleBlocks[i], &walk);
    EmitCube(list->visibleBlocks[i], walk);
  }
  return fullDetail;
}

// Another ship shows as plain cubes, wherever it is.
static void EmitOtherShip(VoxelList *list, const Ship &ship, const Ship &current, const FrustumPlanes &f, const float (&eye)[3]) {
  float offset[3], camera[3];
  for (int axis = 0; axis < 3; ++axis) {
    offset[axis] = static_cast<float>(WorldDifference(current.position[axis], ship.position[axis])) * 0.0001f;
    camera[axis] = offset[axis] + eye[axis];
  }
  ForEachChunkInView(ship, f, camera, [&](Chunk &chunk, ChunkCells &cells, const float (&low)[3], int) {
    GraphicBlock *graphics = AsteroidGenerated ? nullptr : EnsureGraphics(&cells, chunk);
    ForEachBit(cells.occupied, [&](u16 i) {
      if (cells.visibility[i] != Visible) return;
      const float x = low[0] + static_cast<float>(i % 10) - offset[0], y = low[1] + static_cast<float>(i / 10 % 10) - offset[1],
                  z = low[2] + static_cast<float>(i / 100) - offset[2];
      AppendOtherShipCube(x, y, z, ship, cells.heads[i].load(std::memory_order_relaxed),
                          graphics == nullptr ? nullptr : graphics + i, list);
    });
  });
}

static void EmitOtherShips(VoxelList *list, const Ship &current, const FrustumPlanes &f, const float (&eye)[3]) {
  const u16 count = TheShipTable.count;
  for (u16 row = 0; row < count; ++row) {
    const Ship *ship = ShipAt(TheShipTable, row);
    if (ship != nullptr && ship != &current) EmitOtherShip(list, *ship, current, f, eye);
  }
}

static void EmitSeeThrough(VoxelList *list, GraphicBlock *g, u64 head, const float (&eye)[3], u32 seed) {
  if (!Options.HighQualityTransparency) {
    AppendTransparent(g, list);
    return;
  }
  const u8 alpha = Materials[HeadMaterial(head)].alpha;
  if (alpha == 255 || alpha < 100) AppendTransparentSorted(g, list, eye);
  else AppendTransparentSparkle(g, list, eye, seed);
}

// The see-through voxels of the first n sorted blocks, behind everything else. The glints move as the eye does.
static void EmitTransparent(VoxelList *list, u32 n, const float (&eye)[3]) {
  const auto whole = [&](int axis) { return static_cast<u32>(FloatToInt(eye[axis])); };
  const u32 step = whole(1) * 125 * whole(2) + whole(0);
  for (u32 i = 0; i < n; ++i) {
    const VisibleBlock &b = list->visibleBlocks[i];
    if (b.lateList) EmitSeeThrough(list, b.graphic, b.head, eye, i * step);
  }
}

static void EmitWorld(VoxelList *list, const Ship &ship, const Player &player) {
  const FrustumPlanes planes = BuildFrustumPlanes(ReadViewMatrix().matrix);
  CollectVisibleBlocks(list, ship, planes, player.relativeLoc);
  AddPreviewBlock(list, ship, player);
  const u32 fullDetail = EmitCurrentShip(list, ship, player);
  const u32 mark = list->count;
  EmitOtherShips(list, ship, planes, player.relativeLoc);
  if (DebrisCount() != 0) EmitDebris(list);
  if (Online) EmitRemotePlayers(list);
  list->otherInstances = (list->count - mark) / 4;
  EmitTransparent(list, fullDetail, player.relativeLoc);
  EmitBoxFrame(list, player);
}

int Parse(VoxelList *list, const Player &player) {
  if (!RenewParseSide(list)) return 1;  // the last picture stays
  list->visibleCount = 0;
  const Ship *ship = ShipAt(TheShipTable, player.shipIndex);
  if (ship != nullptr) EmitWorld(list, *ship, player);
  PublishVoxelList(list);
  return 1;
}
