// Pieces of explosions: their number, life, colour and memory.
#include "render/debris.h"

#include "net/session.h"
#include "render/blocks.h"

using DebrisTest = Render;

TEST_F(DebrisTest, PiecesSpreadFadeAndDie) {
  Options.ExplosionScale = 0.5f;
  SpawnDebris(10, 20, 30, 7, 9, 1);
  ASSERT_EQ(DebrisCount(), 3u);
  for (u32 i = 0; i < 3; ++i) {
    const Debris *d = DebrisAt(i);
    EXPECT_TRUE(d->x >= 10 && d->x < 12 && d->y >= 20 && d->y < 22 && d->z >= 30 && d->z < 32);
    EXPECT_TRUE(d->red <= Materials[1].red && d->red >= Materials[1].red * 40 / 255);
  }
  SpawnColouredMarker(1, 2, 3, 4, 5, 6);
  for (const int alpha : {255, 170, 148}) {  // life 9, 8, 7 of 12
    list.count = 0;
    EmitDebris(&list);
    ASSERT_EQ(list.count, 16u);
    EXPECT_EQ(list.locations[3], 0.7f);
    EXPECT_EQ(list.colours[3], alpha);
    EXPECT_EQ(ColourAt(3), 0xff060504u);  // markers live for 120
    AgeDebris();
  }
  for (int second = 0; second < 7; ++second) AgeDebris();
  ASSERT_EQ(DebrisCount(), 1u);  // the order of the others is kept
  EXPECT_EQ(DebrisAt(0)->blue, 6);
}

TEST_F(DebrisTest, MemoryMovesInSteps) {
  Options.ExplosionScale = 1;
  const struct { int more; u32 count, capacity; } steps[] = {{4092, 4092, 4096}, {1, 4093, 8192}, {8000, 12093, 12288}};
  for (const auto &step : steps) {
    SpawnDebris(0, 0, 0, step.more, 1, 1);
    EXPECT_EQ(DebrisCount(), step.count);
    EXPECT_EQ(DebrisCapacity(), step.capacity);
  }
  list.count = ArrayCapacity - 4;
  const u32 before = ArrayCapacity;
  EmitDebris(&list);
  EXPECT_EQ(ArrayCapacity, before + 12093 * 4);
  AgeDebris();
  AgeDebris();
  EXPECT_EQ(DebrisCount(), 0u);
  EXPECT_EQ(DebrisCapacity(), 4096u);
  for (const float wild : {-1.0f, 0.0f, std::numeric_limits<float>::quiet_NaN()}) {
    Options.ExplosionScale = wild;
    SpawnDebris(0, 0, 0, 300, 1, 1);
    EXPECT_EQ(DebrisCount(), 0u);
  }
}

TEST_F(DebrisTest, OtherPlayersStandAsFigures) {
  RemotePlayers.assign(3, {});
  RemotePlayers[2].relativeLoc[0] = 5.5f;
  OwnPlayerRow = 0;
  EmitRemotePlayers(&list);
  const VoxelFacts &figure = *Components[RemotePlayerComponent].facts;
  const u32 each = static_cast<u32>(figure.drawn.size());
  ASSERT_EQ(list.count, 8 * each);
  const unsigned v = figure.drawn[0];
  const float expected[4] = {5.5f + static_cast<float>(v >> 8) / 16, static_cast<float>(v & 15) / 16, 0.9375f - static_cast<float>(v >> 4 & 15) / 16, 1};
  EXPECT_EQ(memcmp(list.locations + 4 * each, expected, sizeof expected), 0);
  EXPECT_EQ(ColourAt(0), figure.drawnColours[0] | 0xff000000u);
  RemotePlayers.clear();
}
