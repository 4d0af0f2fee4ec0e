// The real window, the real driver and the pixels that come out.
#include "gl/pixels.h"

#include <cstdlib>
#include <cstring>

#include "gl/link.h"
#include "gl/shaders.h"
#include "gl/window_ladder.h"

namespace {

struct Gl : testing::Test {
  void SetUp() override {
    ResetOptions();
    Options.ScreenWidth = 800;
    Options.ScreenHeight = 600;
    UseTemporaryInstallation();
    LogInit();
  }
};

struct GlWindow : Gl {
  void SetUp() override {
    if (getenv("DISPLAY") == nullptr) GTEST_SKIP() << "no display";
    Gl::SetUp();
  }
  void TearDown() override { CloseWindow(); }
};

}  // namespace

// A folder of stars without a picture, to be filled.
static void OwnStars() {
  fs::remove("config/graphics");
  fs::create_directories("config/graphics/stars");
}

static void PaintStars(int n, Rgb colour) {
  std::vector<u8> picture;
  for (int i = 0; i < 1024 * 1024; i++)
    for (const int part : {colour.red, colour.green, colour.blue}) picture.push_back(static_cast<u8>(part));
  ASSERT_TRUE(WritePng(("config/graphics/stars/stars" + std::to_string(n) + ".png").c_str(), picture.data(), 1024, 1024));
}

TEST_F(Gl, VersionsBelow31AreRefused) {
  const char *old = "*ERR: Tarnvale requires at least opengl 3.1 to run. If this is NOT an integrated card, you may be able to update your opengl version by updating your drivers from ATI/AMD or Nvidia.";
  const char *unknown = "*ERR: I have no idea what version of Opengl we're on. This is probably bad new. I'm going to try to run anyway, though. Good luck!";
  const struct { const char *version; int result; const char *words; } rows[] = {
      {"1.4 Mesa", 0, old}, {"2.1.0", 0, old}, {"3.0.1", 0, old}, {"3", 0, old}, {"3.1", 1, nullptr}, {"3.10", 1, nullptr},
      {"4.0 NVIDIA 1.2", 1, nullptr}, {nullptr, 1, unknown}, {"", 1, unknown}, {"Direct", 1, unknown}};
  for (const auto &row : rows) {
    const std::string name = row.version != nullptr ? row.version : "null";
    LogInit();
    EXPECT_EQ(JudgeOpenGlVersion(row.version, nullptr), row.result) << name;
    EXPECT_TRUE(Logged("info: OpenGL Version: " + (row.version != nullptr ? name : "0.0.0"))) << name;
    EXPECT_TRUE(Logged("info: Graphics Card : Unknown Renderer - This may be a bad sign."));
    if (row.words != nullptr) EXPECT_TRUE(Logged(row.words)) << name;
    else EXPECT_EQ(Log().find("*ERR"), std::string::npos) << name;
  }
}

TEST_F(Gl, InstanceBufferFitsTheBudgetAndTheDriver) {
  const u32 rows[][4] = {  // MaxVoxels, the driver's limit, the buffer, MaxVoxels afterwards
      {1000000, 134217728, 33000000, 1000000}, {2000000, 134217728, 33000000, 2000000},
      {2050000, 134217728, 39360000, 2050000}, {1000000, 16000000, 16000000, 1000000},
      {2000000, 65536, 65536, 4096},           {4294967295u, 4294967295u, 4294967295u, 268435455},
  };
  for (const auto &row : rows) {
    Options.MaxVoxels = row[0];
    LogInit();
    EXPECT_EQ(InstanceBufferBytes(row[1]), row[2]) << row[0] << ", " << row[1];
    EXPECT_EQ(Options.MaxVoxels, row[3]);
    EXPECT_TRUE(Logged("info: MaxMaxVoxels: " + std::to_string(row[1] / 16)));
  }
}

TEST_F(Gl, ShaderTextsLoseWhatFollowsTheSign) {
  const std::string text = "one@ two\nthree\n@@ four @\nfive\n" + std::string(3000, 'x') + "@end";
  WriteText("shader.txt", text);
  int length = 0;
  char *loaded = LoadShaderFile("shader.txt", &length);
  ASSERT_NE(loaded, nullptr);
  EXPECT_EQ(std::string(loaded), "onethree\nfive\n" + std::string(3000, 'x'));
  EXPECT_EQ(static_cast<size_t>(length), strlen(loaded));
  free(loaded);
  EXPECT_EQ(LoadShaderFile("none.txt", &length), nullptr);
  EXPECT_TRUE(Logged("*ERR: Cannot open shader file"));
}

TEST_F(GlWindow, SmallWindowsKeepTheSmallestView) {
  ASSERT_EQ(InitGraphics(), 1) << Log();
  const struct { int width, height, viewWidth, viewHeight; float scaleX, scaleY; } rows[] = {
      {320, 200, 640, 480, 1 / 3.0f, 4 / 9.0f}, {1920, 1080, 1920, 1080, 1, 1},
      {640, 480, 640, 480, 1 / 3.0f, 4 / 9.0f}, {1280, 100, 1280, 480, 2 / 3.0f, 4 / 9.0f}};
  for (const auto &row : rows) {
    ResizeViewport(row.width, row.height);
    EXPECT_EQ(ViewWidth, row.viewWidth);
    EXPECT_EQ(Options.ScreenHeight, row.viewHeight);
    EXPECT_NEAR(Options.GuiScaleX, row.scaleX, 1e-5);
    EXPECT_NEAR(Options.GuiScaleY, row.scaleY, 1e-5);
    EXPECT_NEAR(GuiScale, std::min(row.scaleX, row.scaleY), 1e-5);
    int viewport[4];
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], row.viewWidth);
    EXPECT_EQ(viewport[3], row.viewHeight);
    float stack[16];
    glGetFloatv(GL_PROJECTION_MATRIX, stack);
    for (int i = 0; i < 16; i++) EXPECT_NEAR(ProjectionMatrix[i], stack[i], 1e-4) << "the stars and the voxels part";
  }
}

namespace {

// The two halves of a list, to be filled and published.
struct Cubes {
  std::vector<float> locations;
  std::vector<u8> colours;
};

}  // namespace

// A cube at so many blocks from the eye of Eye().
static void AddCube(Cubes *cubes, float right, float up, float ahead, float scale, const u8 (&colour)[4]) {
  cubes->locations.insert(cubes->locations.end(), {5000.5f + right, 4000.25f + up, 3000.75f - ahead, scale});
  cubes->colours.insert(cubes->colours.end(), colour, colour + 4);
}

static VoxelList Publish(Cubes *cubes) {
  VoxelList list;
  list.publishedCount = static_cast<u32>(cubes->locations.size());
  list.publishedLocations = cubes->locations.data();
  list.publishedColours = cubes->colours.data();
  GpuLink(&list);
  EXPECT_EQ(list.linked, 1);
  return list;
}

static Rgb PixelAt(int x, int y) {
  u8 p[4] = {};
  glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
  return {p[0], p[1], p[2]};
}

static Player Eye(float pitch, float yaw) {
  Player player;
  player.relativeLoc[0] = 5000.5f;
  player.relativeLoc[1] = 4000.25f;
  player.relativeLoc[2] = 3000.75f;
  player.pitch = pitch;
  player.yaw = yaw;
  return player;
}

// Six cubes round the eye and six plain pictures of stars behind them: whichever way the player looks, the cube of that
// direction is in the middle, and its star picture at the edge of the window.
TEST_F(GlWindow, EachDirectionShowsItsCubeAndItsStars) {
  struct Direction {
    float pitch, yaw, x, y, z;
    u8 cube[4];
    Rgb stars;
  };
  const Direction directions[] = {
      {0, 0, 0, 0, -1, {255, 0, 0, 255}, {10, 40, 90}}, {0, -90, 1, 0, 0, {0, 255, 0, 255}, {20, 50, 100}},
      {0, 180, 0, 0, 1, {0, 0, 255, 255}, {30, 60, 110}}, {0, 90, -1, 0, 0, {255, 255, 0, 255}, {40, 70, 120}},
      {90, 0, 0, 1, 0, {255, 0, 255, 255}, {50, 80, 130}}, {-90, 0, 0, -1, 0, {0, 255, 255, 255}, {60, 90, 140}}};
  Cubes cubes;
  OwnStars();
  for (const Direction &d : directions) {
    AddCube(&cubes, 4 * d.x, 4 * d.y, -4 * d.z, 16, d.cube);
    PaintStars(static_cast<int>(&d - directions) + 1, d.stars);
  }
  ASSERT_EQ(InitGraphics(), 1) << Log();
  ASSERT_TRUE(LegacyGlAllowed) << "the driver of the tests has a compatibility context";
  const VoxelList list = Publish(&cubes);
  for (int round = 0; round < 2; round++)
    for (const Direction &d : directions) {
      const std::string name = "looking at stars" + std::to_string(&d - directions + 1);
      DrawFrame(Eye(d.pitch, d.yaw), list);
      ExpectColour(PixelAt(400, 300), {d.cube[0], d.cube[1], d.cube[2]}, name);
      // The first frame is drawn with the winding of the bring-up, which leaves the box out.
      if (round == 1) ExpectColour(PixelAt(400, 40), d.stars, name);
      float stack[16];
      glGetFloatv(GL_MODELVIEW_MATRIX, stack);
      for (int i = 0; i < 16; i++) EXPECT_NEAR(CameraRotation[i], stack[i], 1e-4) << name;
      SwapBuffers();
    }
  EXPECT_EQ(Log().find("PostLink"), std::string::npos);
  EXPECT_EQ(Log().find("Render"), std::string::npos) << Log();
}

TEST_F(GlWindow, CubesHaveTheirPlaceSizeAndOrder) {
  OwnStars();  // no pictures: the box is black
  ASSERT_EQ(InitGraphics(), 1) << Log();
  EXPECT_TRUE(Logged("*ERR: Unable to open png file")) << "goes on without a picture";
  Cubes cubes;
  AddCube(&cubes, 0, 0, 4, 16, {200, 0, 0, 255});
  AddCube(&cubes, 2, 0, 4, 16, {0, 200, 0, 255});
  AddCube(&cubes, 0, 1.5f, 4, 16, {0, 0, 200, 255});
  AddCube(&cubes, -2, 0, 6, 8, {200, 200, 200, 255});
  AddCube(&cubes, -2, 0, 4, 16, {200, 200, 0, 255});  // nearer than the one before
  AddCube(&cubes, 0, 0, 3, 1, {0, 0, 0, 128});        // a see-through voxel before the first cube
  AddCube(&cubes, 0, 0, 8, 1, {255, 255, 255, 255});  // hidden
  const VoxelList list = Publish(&cubes);
  DrawFrame(Eye(0, 0), list);
  // A face at 3.5 blocks; one block is 300 / tan(37.5 degrees) / 3.5 = 111.7 pixels there.
  const struct { int x, y; Rgb wanted; const char *where; } spots[] = {
      {400, 300, {100, 0, 0}, "see-through over the first cube"}, {410, 300, {200, 0, 0}, "beside the voxel"},
      {400 + 54, 300 - 54, {200, 0, 0}, "inside its corner"},     {400 + 58, 300, {0, 0, 0}, "outside its edge"},
      {400 + 223, 300, {0, 200, 0}, "right"},                     {400, 300 + 167, {0, 0, 200}, "up"},
      {400 - 223, 300, {200, 200, 0}, "the nearer one of two"}};
  for (const auto &spot : spots) ExpectColour(PixelAt(spot.x, spot.y), spot.wanted, spot.where);
  EXPECT_EQ(glIsEnabled(GL_DEPTH_TEST), GL_FALSE) << "the 2D code begins without a depth test";
  VoxelList little = list;
  little.drawnCount = 3;
  DrawFrame(Eye(0, 0), little);
  ExpectColour(PixelAt(410, 300), {0, 0, 0}, "under one instance");
  little.drawnCount = 4;
  DrawFrame(Eye(0, 0), little);
  ExpectColour(PixelAt(410, 300), {200, 0, 0}, "one instance");
  ExpectColour(PixelAt(623, 300), {0, 0, 0}, "one instance only");
}

TEST_F(GlWindow, ListOverTheBuffersIsCutWithOneWarning) {
  ASSERT_EQ(InitGraphics(), 1) << Log();
  Cubes cubes;
  for (int i = 0; i < 5; i++) AddCube(&cubes, 0, 0, 4, 1, {1, 2, 3, 255});
  LocBufferBytes = 70;  // four instances and a rest
  LogInit();
  for (int i = 0; i < 2; i++) EXPECT_EQ(Publish(&cubes).drawnCount, 16u);
  EXPECT_EQ(Log(), "info: Error System Initialized \nWARN: There are more voxels than the graphics buffers hold. "
                   "I'm leaving the rest out. \n");
}

TEST_F(GlWindow, StrictModeDrawsVoxelsWithoutStars) {
  Options.MesaGPU = true;
  OwnStars();
  for (int n = 1; n <= 6; n++) PaintStars(n, {250, 250, 250});
  ASSERT_EQ(InitGraphics(), 1) << Log();
  EXPECT_TRUE(Logged("WARN: We're in strict mode. Disabling old-style opengl calls"));
  EXPECT_FALSE(LegacyGlAllowed);
  Cubes cubes;
  AddCube(&cubes, 0, 0, 4, 16, {200, 0, 0, 255});
  AddCube(&cubes, 0, 0, 6, 16, {0, 200, 0, 255});
  const VoxelList list = Publish(&cubes);
  for (int frame = 0; frame < 2; frame++) DrawFrame(Eye(0, 0), list);
  ExpectColour(PixelAt(400, 300), {200, 0, 0}, "the depth test is on");
  ExpectColour(PixelAt(400, 40), {0, 0, 0}, "no stars");
}

TEST_F(GlWindow, AShaderWithoutAnEntryEndsTheBringUp) {
  fs::remove("config/shaders");  // the shaders become the test's own
  fs::copy(fs::path(TARNVALE_ROOT) / "config/shaders", "config/shaders");
  WriteText("config/shaders/MainFragShader.txt", "#version 140\nvoid other() {}");
  EXPECT_EQ(InitGraphics(), 0);
  EXPECT_TRUE(Logged("*ERR: Couldn't link program!") && Logged("*ERR: Unable to initialize 3D shaders")) << Log();
}

TEST_F(GlWindow, LadderGoesOnUntilAWindowOpens) {
  ASSERT_TRUE(InitPlatform());
  const struct { int method, modifier, opens, usedMethod, usedModifier, legacy; } rows[] = {
      {0, 0, 1, 0, 0, 1},     {-2, 0, 1, -2, 0, 0}, {3, 0, 1, 3, 0, 0}, {5, 2, 1, 5, 2, 1},
      {14, 1, 1, 15, 1, 0},  // 3.1 has no core profile
      {18, 0, 1, 0, 1, 1},   // past the table: starts over, plainer
      {18, 5, 0, 0, 6, 0},   // past the plainest
  };
  for (const auto &row : rows) {
    LogInit();
    ViewWidth = ViewHeight = 700;
    i8 method = static_cast<i8>(row.method), modifier = static_cast<i8>(row.modifier);
    LegacyGlAllowed = false;
    EXPECT_EQ(WindowLadder(&method, &modifier), row.opens != 0) << row.method;
    EXPECT_EQ(modifier, row.usedModifier);
    EXPECT_EQ(LegacyGlAllowed, row.legacy != 0) << row.method;
    EXPECT_EQ(Logged("info: I got a window using method " + std::to_string(row.usedMethod)), row.opens != 0) << Log();
    EXPECT_EQ(Logged("info: The window uses modifier " + std::to_string(row.usedModifier)), row.opens != 0);
    EXPECT_EQ(GetWindowParameters().opened, row.opens != 0);
    CloseWindow();
  }
  EXPECT_EQ(Options.ScreenWidth, 640);
  EXPECT_TRUE(Logged("*ERR: I tried dozens of ways to get an opengl 3.1+ window, and was unsuccessful. Is your graphics card old?"));
}
