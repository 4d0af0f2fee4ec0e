// Light and the colour rules by worked examples; whole lists are compared in the tests of the cache.
#include "render/colour.h"

#include "render/blocks.h"

struct Colour : Render {
  ColourInputs in;
  void SetUp() override {
    Render::SetUp();
    in.comScruff = in.matScruff = 0;
    in.material = &Materials[1];
  }
  void AddLight(float x, u8 brightness) {
    LightTable &t = in.lights;
    t.x[t.count] = x;
    t.red[t.count] = t.green[t.count] = t.blue[t.count] = brightness;
    ++t.count;
  }
};

TEST_F(Colour, LightFadesOverSixteenBlocksAndAddsUpToOne) {
  const struct {
    std::vector<float> at;
    u8 brightness;
    float light;
  } cases[] = {{{}, 255, 0}, {{8}, 255, 127.5f * 0.003921569f}, {{16}, 255, 0}, {{17}, 255, 0}, {{0, 1}, 200, 1.0f}, {{0.5f}, 100, 100 * 0.003921569f}};
  for (const auto &c : cases) {
    in.lights.count = 0;
    for (const float x : c.at) AddLight(x, c.brightness);
    EXPECT_EQ(LightAt(in, 0, 0, 0).green, c.light);
  }
  in.lights.count = 0;
  in.flashlight = true;
  in.camera[1] = 8;
  EXPECT_EQ(LightAt(in, 0, 0, 0).green, 125 * 0.003921569f);
}

TEST_F(Colour, AlphaAndShadeFollowTheRule) {
  Material glass;
  glass.red = glass.green = glass.blue = 100;
  glass.alpha = 200;
  in.material = &glass;
  const Light3 full{1, 1, 1};
  const u32 darkest = u32{MaterialColoured} << 24, own = 40u << 24 | 0x0a141e;
  EXPECT_EQ(VoxelColour(in, ColourRule::Lit, darkest, 9, full), 0xff282828u);          // shade 0 stands for 0.4
  EXPECT_EQ(VoxelColour(in, ColourRule::SeeThrough, darkest, 9, full), 0xff080808u);   // 200 + 55 x 1
  EXPECT_EQ(VoxelColour(in, ColourRule::SeeThrough, own, 9, full), 0x28060c12u);
  EXPECT_EQ(VoxelColour(in, ColourRule::DamagedNeighbour, own, 9, full), 0xff060d13u);
  EXPECT_EQ(GhostColour(in, own, 9, 200), 0x280a141eu);
  EXPECT_EQ(GhostColour(in, darkest, 9, 120), 0x78080808u);
  EXPECT_EQ(GhostColour(in, darkest, 9, 200), 0xc8646464u);
  in.comScruff = 1e9f;
  EXPECT_EQ(VoxelColour(in, ColourRule::Lit, own, 9, full), 0xff000000u);  // noise never goes below black
}

TEST_F(Colour, CubesInTheDarkAreNeverWhollyBlack) {
  const Block b = CubeOf(1, SolidComponent());
  GraphicBlock *g = Put(5, 6, 7, b);
  ship->ComScruffiness = 0;
  CubeColour(g, HeadOf(b), *ship);
  EXPECT_EQ(g->cacheState[0], 1);
  GiveLights(g, 1);
  g->lightList[0] = {8, 0, 0, 255, 255, 255, 0};
  CubeColour(g, HeadOf(b), *ship);
  EXPECT_EQ(g->cacheState[0], 1);  // kept until it is cleared
  g->cacheState[0] = 0;
  CubeColour(g, HeadOf(b), *ship);
  EXPECT_EQ(g->cacheState[1], static_cast<u8>(static_cast<float>(Materials[1].green) * (128.5f * 0.003921569f)));
}
