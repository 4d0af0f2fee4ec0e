#include "render/image.h"

#include <gtest/gtest.h>
#include <png.h>

#include <cstdio>
#include <string>
#include <vector>

#include "core/log.h"
#include "support/installation.h"

using Bytes = std::vector<u8>;

static void WriteBytes(const char *path, const Bytes &bytes) { WriteText(path, {bytes.begin(), bytes.end()}); }

// A picture of 2 x 2 pixels in any of the kinds that the format has. seeThrough: the second palette entry's alpha.
static void WriteKind(const char *path, int type, int depth, Bytes rows, bool seeThrough, int interlace) {
  FILE *file = fopen(path, "wb");
  ASSERT_NE(file, nullptr);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  ASSERT_EQ(setjmp(png_jmpbuf(png)), 0);
  png_init_io(png, file);
  png_set_IHDR(png, info, 2, 2, depth, type, interlace, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  const png_color palette[2] = {{10, 20, 30}, {40, 50, 60}};
  const u8 alphas[2] = {255, 99};
  if (type == PNG_COLOR_TYPE_PALETTE) png_set_PLTE(png, info, palette, 2);
  if (seeThrough) png_set_tRNS(png, info, alphas, 2, nullptr);
  u8 *rowStarts[2] = {rows.data(), rows.data() + rows.size() / 2};
  png_set_rows(png, info, rowStarts);
  png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
  png_destroy_write_struct(&png, &info);
  fclose(file);
}

namespace {

struct Image : testing::Test {
  void SetUp() override {
    UseTemporaryInstallation();
    LogInit();
  }
};

}  // namespace

TEST_F(Image, EveryKindOfPngComesOutAsFourBytes) {
  const struct { const char *name; int type, depth; Bytes rows; bool seeThrough; Bytes wanted; } kinds[] = {
      {"one bit", PNG_COLOR_TYPE_GRAY, 1, {0x40, 0x80}, false,
       {0, 0, 0, 255, 255, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 255}},
      {"grey, alpha", PNG_COLOR_TYPE_GRAY_ALPHA, 8, {1, 2, 3, 4, 5, 6, 7, 8}, false,
       {1, 1, 1, 2, 3, 3, 3, 4, 5, 5, 5, 6, 7, 7, 7, 8}},
      {"RGB", PNG_COLOR_TYPE_RGB, 8, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, false,
       {1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255, 10, 11, 12, 255}},
      {"RGBA", PNG_COLOR_TYPE_RGB_ALPHA, 8, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}, false,
       {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}},
      {"palette, alpha", PNG_COLOR_TYPE_PALETTE, 4, {0x01, 0x10}, true,
       {10, 20, 30, 255, 40, 50, 60, 99, 40, 50, 60, 99, 10, 20, 30, 255}}};
  for (const auto &kind : kinds)
    for (const int interlace : {PNG_INTERLACE_NONE, PNG_INTERLACE_ADAM7}) {
      WriteKind("kind.png", kind.type, kind.depth, kind.rows, kind.seeThrough, interlace);
      Bytes buffer(16);
      EXPECT_EQ(LoadPng(buffer.data(), "kind.png", 2, 2), 1) << kind.name;
      EXPECT_EQ(buffer, kind.wanted) << kind.name << ", interlace " << interlace;
    }
}

TEST_F(Image, PngThatDoesNotFitTouchesNothing) {
  Bytes buffer(16, 7);
  WriteBytes("short.png", {0x89, 'P', 'N'});
  WriteBytes("text.png", Bytes(40, 'x'));
  EXPECT_EQ(LoadPng(buffer.data(), "short.png", 2, 2), 0);
  EXPECT_EQ(LoadPng(buffer.data(), "text.png", 2, 2), 0);
  EXPECT_EQ(ReadText("errors.txt"), "info: Error System Initialized \n") << "not a PNG is no error";
  EXPECT_EQ(LoadPng(buffer.data(), "none.png", 2, 2), 0);
  const u8 wide[3 * 3 * 2] = {};
  ASSERT_TRUE(WritePng("wide.png", wide, 3, 2));
  EXPECT_EQ(LoadPng(buffer.data(), "wide.png", 2, 2), 0);
  WriteKind("deep.png", PNG_COLOR_TYPE_RGB, 16, Bytes(24), false, PNG_INTERLACE_NONE);
  EXPECT_EQ(LoadPng(buffer.data(), "deep.png", 2, 2), 0);
  EXPECT_EQ(ReadText("errors.txt"),
            "info: Error System Initialized \n*ERR: Unable to open png file \n"
            "*ERR: wide.png is 3 x 2 pixels. I need 2 x 2. \n*ERR: PNG with 16 bits a sample. I need 8 or fewer. \n");
  ASSERT_TRUE(WritePng("whole.png", wide, 2, 2));
  const std::string whole = ReadText("whole.png");
  for (size_t length = 8; length < whole.size(); length++) {
    WriteText("cut.png", whole.substr(0, length));
    EXPECT_EQ(LoadPng(buffer.data(), "cut.png", 2, 2), 0) << length;
  }
  EXPECT_EQ(buffer, Bytes(16, 7));
  EXPECT_NE(ReadText("errors.txt").find("*ERR: PNG IO error \n"), std::string::npos);
}

TEST_F(Image, TgaSwapsRedAndBlueAndRefusesTheRest) {
  const Bytes size24{2, 0, 1, 0, 24, 0}, size32{1, 0, 1, 0, 32, 8}, size16{2, 0, 1, 0, 16, 0}, wide{3, 0, 1, 0, 24, 0};
  const Bytes head(12);
  const auto joined = [&head](const Bytes &size, const Bytes &pixels) {
    Bytes all = head;
    all.insert(all.end(), size.begin(), size.end());
    all.insert(all.end(), pixels.begin(), pixels.end());
    return all;
  };
  const Bytes whole = joined(size24, {1, 2, 3, 4, 5, 6});
  Bytes buffer(8);
  u8 bytesPerPixel = 0;
  WriteBytes("a.tga", whole);
  EXPECT_EQ(LoadTga(buffer.data(), "a.tga", 2, 1, &bytesPerPixel), 1);
  EXPECT_EQ(buffer, (Bytes{3, 2, 1, 6, 5, 4, 0, 0}));
  EXPECT_EQ(bytesPerPixel, 3);
  WriteBytes("a.tga", joined(size32, {1, 2, 3, 4}));
  EXPECT_EQ(LoadTga(buffer.data(), "a.tga", 1, 1, &bytesPerPixel), 1);
  EXPECT_EQ(Bytes(buffer.begin(), buffer.begin() + 4), (Bytes{3, 2, 1, 4}));
  EXPECT_EQ(bytesPerPixel, 4);
  const struct { Bytes file; const char *words; } faults[] = {
      {Bytes(11), "Unable to read tga header"}, {Bytes(17), "Unable to read more of tga header"},
      {joined(size16, Bytes(4)), "Wrong TGA bits per pixel. I need 24 or 32."},
      {joined(wide, Bytes(9)), "a.tga is 3 x 1 pixels. I need 2 x 1."},
      {Bytes(whole.begin(), whole.end() - 1), "Cannot read in image data"}};
  for (const auto &fault : faults) {
    LogInit();
    WriteBytes("a.tga", fault.file);
    EXPECT_EQ(LoadTga(buffer.data(), "a.tga", 2, 1, &bytesPerPixel), 0);
    EXPECT_EQ(ReadText("errors.txt"), std::string("info: Error System Initialized \n*ERR: ") + fault.words + " \n");
  }
}
