// Blocks of random voxels for the tests of the render side: components are added to the real table, never taken out.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "render/cache.h"
#include "render/debris.h"
#include "support/installation.h"
#include "world/access.h"

inline u16 AddComponent(const std::function<Voxel(int)> &voxelAt, i8 frameStep = 0) {
  Component c;
  c.id = 9999;
  c.frameStep = frameStep;
  c.frameDelay = frameStep == 0 ? 255 : 17;
  c.voxels = std::make_unique<Voxel[]>(VoxelsPerBlock);
  c.voxelRuns = std::make_unique<Voxel[]>(VoxelsPerBlock);
  c.facts = std::make_unique<VoxelFacts>();
  for (int i = 0; i < VoxelsPerBlock; ++i) c.voxels[static_cast<size_t>(i)] = voxelAt(i);
  BuildVoxelRuns(c.voxels.get(), c.voxelRuns.get(), &c.drawnOpaque, &c.drawnTranslucent);
  BuildVoxelFacts(c.voxels.get(), c.voxelRuns.get(), c.facts.get());
  Components.insert(Components.begin() + ComponentCount, std::move(c));
  DeriveComponentTraits();
  return ComponentCount++;
}

// A fresh ship with the real tables and the default settings, and a list to append to.
struct Render : testing::Test {
  std::mt19937 random{7};
  Ship *ship = nullptr;
  VoxelList list;
  Player player;

  void SetUp() override {
    LoadTables();
    ResetOptions();
    AsteroidGenerated = false;
    InitDebris();
    Options.flashlightLit = false;
    ship = NewTestShip();
    ASSERT_TRUE(AllocVoxelList(&list));
  }
  void TearDown() override {
    FreeShip(ship);
    delete ship;
    FreeArrays(&list);
  }
  static void FreeArrays(VoxelList *l) {
    for (float *p : {l->locations, l->publishedLocations}) free(p);
    for (u8 *p : {l->colours, l->publishedColours}) free(p);
    free(l->visibleBlocks);
  }
  int Draw(int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); }
  Voxel DrawVoxel(const std::vector<u8> &alphas) {
    return {static_cast<u8>(Draw(256)), static_cast<u8>(Draw(256)), static_cast<u8>(Draw(4) == 0 ? 0 : Draw(256)),
            alphas[static_cast<size_t>(Draw(static_cast<int>(alphas.size())))], 0};
  }
  u16 RandomComponent(const std::vector<u8> &alphas) {
    return AddComponent([&](int) { return DrawVoxel(alphas); });
  }
  u16 SolidComponent(i8 frameStep = 0) {
    return AddComponent([](int i) { return Voxel{static_cast<u8>(i), 120, 200, 255, 0}; }, frameStep);
  }
  // Places a block without light or visibility; its record.
  GraphicBlock *Put(int x, int y, int z, const Block &b) {
    PlaceBlockFast(b, static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), ship);
    return RecordAt(x, y, z);
  }
  GraphicBlock *RecordAt(int x, int y, int z) {
    u64 head;
    GraphicBlock *g = nullptr;
    GetCellPointers(static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), *ship, &head, &g);
    if (g != nullptr) g->x = static_cast<u16>(x), g->y = static_cast<u16>(y), g->z = static_cast<u16>(z);
    return g;
  }
  int Build(GraphicBlock *g, const Block &b) { return BuildBlockCache(HeadOf(b), *ship, g->x, g->y, g->z, player, g, nullptr); }
  void GiveLights(GraphicBlock *g, int count) {
    free(g->lightList);
    g->lightList = static_cast<LightEntry *>(calloc(static_cast<size_t>(count) + 1, sizeof(LightEntry)));
    g->lightCount = static_cast<u8>(count);
    for (int i = 0; i < count; ++i) {
      const int reach = Draw(3) == 0 ? 1 : 16;
      const auto offset = [&] { return static_cast<i8>(Draw(2 * reach + 1) - reach); };
      const auto part = [&] { return static_cast<u8>(Draw(256)); };
      g->lightList[i] = {offset(), offset(), offset(), part(), part(), part(), 0};
    }
  }
  u32 ColourAt(u32 instance) const {
    u32 colour;
    memcpy(&colour, list.colours + 4 * instance, 4);
    return colour;
  }
};
