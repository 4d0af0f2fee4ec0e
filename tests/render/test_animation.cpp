// The ring of an animated block and its clock.
#include "render/animation.h"

#include "render/blocks.h"

namespace {

struct Animation : Render {
  u16 first = 0;
  void SetUp() override {
    Render::SetUp();
    first = SolidComponent(1);
    SolidComponent(1);
    SolidComponent(-2);
  }
};

}  // namespace

TEST_F(Animation, RingClosesAndEachFrameLastsSeventeenAppends) {
  const Block b = CubeOf(5, first);
  GraphicBlock *g = Put(5, 6, 7, b);
  GiveLights(g, 2);
  for (int round = 0; round < 2; ++round) {  // the second build replaces the ring
    ASSERT_EQ(Build(g, b), 1);
    GraphicBlock *frames[3] = {g, g->lodNext, g->lodNext->lodNext};
    EXPECT_EQ(frames[2]->lodNext, g);
    EXPECT_EQ(frames[2]->frameLength, 0x80 | 17);
    for (const GraphicBlock *frame : frames) {
      EXPECT_EQ(frame->lightList, g->lightList);
      EXPECT_EQ(frame->cache->counts[OpaqueList], 1352);
    }
    for (int append = 0; append < 17 * 7; ++append) ASSERT_EQ(CurrentFrame(g), frames[append / 17 % 3]) << append;
  }
  FreeCacheRecord(g);
  EXPECT_EQ(g->lodNext, nullptr);
  EXPECT_EQ(CurrentFrame(g), nullptr);
}

TEST_F(Animation, WithoutAWholeRingTheLastFrameStands) {
  const Block b = CubeOf(5, first);
  GraphicBlock *g = Put(5, 6, 7, b);
  ASSERT_EQ(Build(g, b), 1);
  GraphicBlock *second = g->lodNext;
  FreeFrames(second);
  for (int append = 0; append < 100; ++append) ASSERT_EQ(CurrentFrame(g), append < 17 ? g : second);
  const u16 open = SolidComponent(2);  // its next frame would lie behind the table
  Build(g, CubeOf(5, open));
  EXPECT_EQ(g->lodNext, nullptr);
  for (int append = 0; append < 40; ++append) ASSERT_EQ(CurrentFrame(g), g);
  Build(g, CubeOf(5, static_cast<u16>(first + 2)));  // the last frame on its own
  EXPECT_TRUE(g->frameLength == 0 && g->frameTimer == 127);
  g->ghostAlpha = 120;
  Build(g, b);
  EXPECT_EQ(g->lodNext, nullptr) << "a ghost stands still";
  EXPECT_EQ(CurrentFrame(g), g);
}
