// Pictures and text in the real window: which pixels they light.
#include "gl/pixels.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdlib>

#include "gui/paint.h"
#include "gui/screens.h"

constexpr int Width = 960, Height = 540;  // half of the design's size: one unit is half a pixel
constexpr u8 White[3] = {255, 255, 255}, Green[3] = {0, 230, 0}, DullGreen[3] = {0, 199, 0};

namespace {

struct Paint : testing::Test {
  void SetUp() override {
    if (getenv("DISPLAY") == nullptr) GTEST_SKIP() << "no display";
    ResetOptions();
    Options.Tutorial = false;
    Options.MesaGPU = true;  // no stars behind the pictures
    Options.ScreenWidth = Width;
    Options.ScreenHeight = Height;
    UseTemporaryInstallation();
    LogInit();
    LoadTables();
    ASSERT_EQ(InitGraphics(), 1) << Log();
  }
  void TearDown() override {
    ClearElements();
    CloseWindow();
  }
};

}  // namespace

// A black picture, ready for the GUI.
static void BeginFrame() { DrawFrame({}, {}); }

static std::vector<u8> Pixels() {
  std::vector<u8> pixels(Width * Height * 4);
  glReadPixels(0, 0, Width, Height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
  return pixels;
}

// x, y in pixels from the middle of the window, y upwards.
static Rgb PixelAt(const std::vector<u8> &pixels, int x, int y) {
  const u8 *p = &pixels[static_cast<size_t>(((y + Height / 2) * Width + x + Width / 2) * 4)];
  return {p[0], p[1], p[2]};
}

// The test's own pictures: a crosshair with four plain quarters, red and green above blue and white; nothing else.
static void OwnPictures() {
  fs::remove("config/graphics");
  fs::create_directories("config/graphics/hud");
  std::vector<u8> picture;
  for (int y = 0; y < 50; y++)
    for (int x = 0; x < 50; x++) {
      const bool right = x >= 25, low = y >= 25;
      for (const bool part : {right == low, right, low}) picture.push_back(part ? 255 : 0);
    }
  ASSERT_TRUE(WritePng("config/graphics/hud/crosshairorange.png", picture.data(), 50, 50));
  ASSERT_TRUE(WritePng("config/graphics/hud/crosshairred.png", picture.data(), 25, 100)) << "a size that is not the type's";
}

constexpr Rgb UpLeft{255, 0, 0}, UpRight{0, 255, 0}, DownLeft{0, 0, 255}, DownRight{255, 255, 255}, Black{};

TEST_F(Paint, PicturesLandAtTheirAnchors) {
  OwnPictures();
  testing::internal::CaptureStdout();
  InitGui();
  EXPECT_EQ(Count(testing::internal::GetCapturedStdout(), "config/graphics/hud/crosshairred.png :"), 1);
  EXPECT_GT(Count(Log(), "*ERR: Could not load button"), 0) << "wrong size";
  BeginFrame();
  const struct { int anchor, x, y; } places[] = {  // the centre in pixels of a quad of 200 x 100 units at (20, 40)
      {0, 10, 20}, {2, 480 + 10 - 50, 20 - 270 + 25}, {3, 10 - 480 + 50, 20 - 270 + 25}, {4, 480 + 10 - 50, 270 + 20 - 25},
      {5, 10 - 480 + 50, 270 + 20 - 25}};
  for (const auto &p : places) DrawGuiQuad(NoElement, 20, 40, 200, 100, 29, nullptr, 0, p.anchor, 0);
  DrawGuiQuad(NoElement, -400, 0, 100, 100, 29, nullptr, 0, 0, 90);
  DrawGuiQuad(NoElement, 0, 300, 100, 100, 30, nullptr, 0, 0, 0);   // its picture has another size
  DrawGuiQuad(NoElement, 0, 300, 100, 100, 99, nullptr, 0, 0, 0);   // no such type
  DrawGuiQuad(NoElement, 0, 300, 100, 100, 256, nullptr, 0, 0, 0);
  const std::vector<u8> pixels = Pixels();
  for (const auto &p : places) {
    const std::string name = "anchor " + std::to_string(p.anchor);
    const bool rightEdge = p.anchor == 2 || p.anchor == 4, topEdge = p.anchor >= 4;
    ExpectColour(PixelAt(pixels, p.x - 48, p.y + (topEdge ? 1 : 23)), UpLeft, name + " up left");
    ExpectColour(PixelAt(pixels, p.x - 48, p.y - 24), DownLeft, name + " down left");
    if (!rightEdge) ExpectColour(PixelAt(pixels, p.x + 47, p.y - 24), DownRight, name + " down right");
    if (!rightEdge && !topEdge) ExpectColour(PixelAt(pixels, p.x + 47, p.y + 23), UpRight, name + " up right");
    ExpectColour(PixelAt(pixels, p.x - 52, p.y), Black, name + " beside it");
  }
  ExpectColour(PixelAt(pixels, -220, 20), UpRight, "clockwise by a quarter or against it");
  ExpectColour(PixelAt(pixels, 0, 150), Black, "types without a picture");
}

TEST_F(Paint, MenuIsABackdropWithItsElements) {
  OwnPictures();
  InitGui();
  AddElement(67, 300, 200, 0, "", nullptr, 0);
  AddElement(29, -300, 0, 0, "", nullptr, 0);
  AddElement(TypeButton, 0, -200, 0, "a button without a picture", nullptr, 0);
  uiMode = 1;
  BeginFrame();
  DrawOverlay({});
  const std::vector<u8> pixels = Pixels();
  const Rgb backdrop{74 * 100 / 255, 38 * 100 / 255, 28 * 100 / 255};
  for (const int x : {-480, 479})
    for (const int y : {-270, 269}) ExpectColour(PixelAt(pixels, x, y), backdrop, "a corner of the window");
  ExpectColour(PixelAt(pixels, 150, 100), {85, 85, 85}, "a plain colour");
  ExpectColour(PixelAt(pixels, -145, 5), UpRight, "a picture");
  const GuiElement &button = GuiElements[2];
  EXPECT_GT(button.textWidth, 150) << "the label is drawn without the picture";
  EXPECT_NEAR(button.hitTop, -100 + 35.5, 1);
  EXPECT_NEAR(button.hitRight, button.textWidth / 2, 1) << "a label that is wider than its button";
  EXPECT_EQ(Count(Log(), "Post2DRender"), 0);
}

// One glyph after the other over black, the way that a reader without a cache would do it.
static std::vector<u8> NaiveLine(const char *font, const char *text, int x, int y, const u8 (&colour)[3], int pixels) {
  std::vector<u8> picture(Width * Height * 4);
  FT_Library library;
  FT_Face face;
  EXPECT_EQ(FT_Init_FreeType(&library), 0);
  EXPECT_EQ(FT_New_Face(library, font, 0, &face), 0);
  FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(pixels));
  int pen = x + Width / 2;
  for (const char *c = text; *c != '\0'; c++) {
    EXPECT_EQ(FT_Load_Char(face, static_cast<u8>(*c), FT_LOAD_RENDER), 0);
    const FT_Bitmap &b = face->glyph->bitmap;
    for (int row = 0; row < static_cast<int>(b.rows); row++)
      for (int column = 0; column < static_cast<int>(b.width); column++) {
        const int gray = b.buffer[row * b.pitch + column];
        const int px = pen + face->glyph->bitmap_left + column, py = y + Height / 2 + face->glyph->bitmap_top - 1 - row;
        u8 *p = &picture[static_cast<size_t>((py * Width + px) * 4)];
        for (int part = 0; part < 3; part++) p[part] = static_cast<u8>((colour[part] * gray + p[part] * (255 - gray)) / 255);
      }
    pen += static_cast<int>(face->glyph->advance.x >> 6);
  }
  FT_Done_FreeType(library);
  return picture;
}

static void ExpectSamePicture(const std::vector<u8> &got, const std::vector<u8> &wanted, const std::string &what) {
  int lit = 0, wrong = 0;
  for (size_t i = 0; i < got.size(); i++) {
    if (i % 4 == 3) continue;
    lit += wanted[i] > 0;
    wrong += std::abs(got[i] - wanted[i]) > 2;
  }
  EXPECT_GT(lit, 50) << what;
  EXPECT_EQ(wrong, 0) << what;
}

TEST_F(Paint, TextIsWhatItsFaceDrawsGlyphByGlyph) {
  InitGui();
  const std::string round = "config/fonts/Short_Stack/ShortStack-Regular.ttf", terminal = "config/fonts/VT323/VT323.ttf";
  const u8 bluish[3] = {0, 230, 1};
  const struct { const char *text; const u8 (&colour)[3]; std::string font; int size; } lines[] = {
      {"Tarnvale 0.23, gjpq |", White, round, 60}, {"Tarnvale 0.23, gjpq |", Green, terminal, 60},
      {"199 is not green enough", DullGreen, round, 42}, {"nor this", bluish, round, 100}, {"\xe9t\xe9 \xdf", White, round, 50}};
  for (int frame = 0; frame < 2; frame++)
    for (const auto &line : lines) {
      const int pixels = line.size / 2 - 1;
      BeginFrame();
      const int left = DrawText(line.text, -200, 31, line.colour, AlignLeft, line.size);
      ExpectSamePicture(Pixels(), NaiveLine(line.font.c_str(), line.text, -200, 31, line.colour, pixels), line.text);
      for (const TextAlign align : {AlignCentre, AlignRight}) {
        BeginFrame();
        EXPECT_EQ(DrawText(line.text, 100, -77, line.colour, align, line.size), left);
        const int start = 100 - (align == AlignCentre ? left / 2 : left);
        ExpectSamePicture(Pixels(), NaiveLine(line.font.c_str(), line.text, start, -77, line.colour, pixels), line.text);
      }
    }
  // Continuation bytes aren't counted: so many characters, so many bytes.
  EXPECT_EQ(DrawText("a\xc3\xa9", 0, 0, White, AlignLeft, 60), DrawText("a\xc3", 0, 0, White, AlignLeft, 60));
  EXPECT_EQ(DrawText("", 0, 0, White, AlignLeft, 60), 0);
  EXPECT_EQ(DrawText(std::string(1500, 'x').c_str(), 0, 0, White, AlignLeft, 60), 0) << "longer than a line can be";
  EXPECT_EQ(Count(Log(), "*ERR: Unable to open font"), 0);
}

// Brown as lit rock: next to each bright stroke, and below and right of it even more, it is dark. Dark words stay plain.
TEST_F(Paint, LightTextHasADarkRimOverRock) {
  InitGui();
  const GuiTypeSource rock{90, "NULL;", 1, 1, -4243, 255, 150, 110, 75, 0};
  SetGuiType(rock);
  GuiTypes[90].texture = GuiTypes[TypePanelWide].texture;  // of a plain grey, 85
  const u8 black[3] = {}, rowGrey[3] = {150, 150, 150};
  const struct { const u8 (&colour)[3]; int size; bool rim; } lines[] = {
      {Green, 32, true}, {White, 32, true}, {rowGrey, 26, true}, {White, 100, true}, {black, 60, false}};
  for (const auto &line : lines) {
    BeginFrame();
    DrawGuiQuad(NoElement, 0, 0, 1920, 1, 90, nullptr, 0, 0, 0);
    const int width = DrawText("IlIHl", -50, 0, line.colour, AlignLeft, line.size);
    const std::vector<u8> pixels = Pixels();
    int dark = 0, bright = 0;
    for (int y = -20; y < 60; ++y)
      for (int x = -60; x < -40 + width; ++x) {
        const int green = PixelAt(pixels, x, y).green;
        dark += green < 50;
        bright += green > 140;
      }
    EXPECT_GT(dark, line.rim ? bright / 2 : 0) << line.size;
    EXPECT_EQ(bright > 0, line.rim) << line.size;
    ExpectColour(PixelAt(pixels, -75, 0), {85, 85, 85}, "not far from the words");
  }
}

// Behind lists and options the picture is dimmer than behind the buttons of the pause menu, and not beside a list.
TEST_F(Paint, ListsAndOptionsStandOnADenserBackdrop) {
  InitGui();
  uiMode = 1;
  const auto brightness = [](int x) {
    ClearElements();
    glClearColor(1, 1, 1, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glClearColor(0, 0, 0, 1);
    DrawMenu();
    return PixelAt(Pixels(), x, 200).red;
  };
  const struct { Screen screen; bool middle, side; } screens[] = {
      {ScreenPause, false, false}, {ScreenTitle, false, false}, {ScreenShips, true, false}, {ScreenBackups, true, false},
      {ScreenLanguages, true, false}, {ScreenGraphics, true, true}, {ScreenOther, true, true}, {ScreenNaming, true, true}};
  BeginFrame();
  for (const auto &s : screens) {
    GuiScreen = s.screen;
    EXPECT_EQ(brightness(0) < 100, s.middle) << s.screen;
    EXPECT_EQ(brightness(450) < 100, s.side) << s.screen;
  }
}

TEST_F(Paint, AStillScreenSendsNoGlyphAndAFullSheetStartsAnew) {
  InitGui();
  for (int i = 0; i < 18; i++) AddElement(i % 2 == 0 ? TypeRow : TypeChosenRow, 0, 400 - 42 * i, 0, "Alloy plating, edge", nullptr, 0);
  uiMode = 1;
  PointAt(0, 0);  // over none of them
  BeginFrame();
  DrawMenu();
  const std::vector<u8> first = Pixels();
  const u32 uploads = GuiUploads;
  EXPECT_GT(uploads, 20u);
  for (int frame = 0; frame < 3; frame++) {
    BeginFrame();
    DrawMenu();
  }
  EXPECT_EQ(GuiUploads, uploads);
  // More looks than are kept, and glyphs that don't fit together.
  for (int size = 20; size < 120; size++) DrawText("Quick brown foxes", -400, 0, White, AlignLeft, size);
  for (int size = 700; size < 706; size++) DrawText("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmn", -400, 0, White, AlignLeft, size);
  DrawText("MW", 0, 0, White, AlignLeft, 9000);  // larger than the sheet
  EXPECT_GT(GuiUploads, uploads + 500);
  BeginFrame();
  DrawMenu();
  EXPECT_EQ(Pixels(), first) << "after the sheet was dropped";
  BeginFrame();
  const int width = DrawText("Quick", -200, 0, White, AlignLeft, 300);
  EXPECT_GT(width, 150);
  ExpectSamePicture(Pixels(), NaiveLine("config/fonts/Short_Stack/ShortStack-Regular.ttf", "Quick", -200, 0, White, 149), "anew");
}

TEST_F(Paint, PlaysOnWithoutFontsAndPictures) {
  fs::remove("config/graphics");
  fs::remove("config/fonts");
  fs::create_directories("config/fonts/VT323");
  WriteText("config/fonts/VT323/VT323.ttf", "not a font");
  InitGui();
  EXPECT_EQ(Count(Log(), "*ERR: Unable to open font. I'll try to keep going, but things won't look right. \n"), 2);
  EXPECT_EQ(DrawText("text", 0, 0, White, AlignLeft, 60), 0);
  EXPECT_EQ(DrawText("text", 0, 0, Green, AlignLeft, 60), 0);
  for (int row = 1; row <= GuiTypesInUse; row++) AddElement(row, 0, 0, 0, "some label", nullptr, 0);
  uiMode = 1;
  BeginFrame();
  DrawOverlay({});
  EXPECT_EQ(GuiElements[0].textWidth, 0);
  EXPECT_EQ(GuiElements[0].hitTop, 35);
  EXPECT_EQ(Count(Log(), "Post2DRender"), 0);
}
