// Lines of text. Each glyph is rendered once for a face, a size and a colour and kept in one texture, the sheet; a line is
// one draw of quads cut from it. When the sheet is full, or has served too many looks, all of it is given up and
// filled anew by what is drawn from then on.
//
// Light text vanishes over lit rock. So each glyph of it has a dark rim with a shadow to its lower right, as a picture of its
// own beside it on the sheet: the rims of a line are drawn in the same call, before its glyphs.
#include <GL/glew.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "core/log.h"
#include "core/utils.h"
#include "gui/paint.h"
#include "gui/paint_parts.h"

constexpr int SheetSize = 2048;           // edge of the sheet, pixels
constexpr int Border = 1;                 // clear pixels round each glyph
constexpr size_t MaxLooks = 64;
constexpr int OpenSize = 30;              // pixels at which the faces are opened
constexpr int FloatsPerGlyph = 6 * 4;     // two triangles, clockwise
constexpr int PixelsPerRim = 24;          // of the face's size, for each pixel of the rim but the first
constexpr int WidestRim = 4;              // pixels
constexpr float RimDepth = 0.85f, ShadowDepth = 0.6f;  // opacity
constexpr int DimmestWithRim = 64;        // brightness of a colour that has a rim, of 255

namespace {

struct Glyph {
  bool tried = false;
  bool drawn = false;                     // has pixels on the sheet
  int advance = 0, left = 0, top = 0;     // pixels
  int width = 0, height = 0;
  int sheetX = 0, sheetY = 0;
  int rim = 0;                            // pixels by which the rim's picture is larger to the left and above; 0: there is none
};

// One way that text can look, with the glyphs of all bytes.
struct TextLook {
  FT_Face face = nullptr;
  int pixels = 0;
  u8 colour[3] = {};
  Glyph glyphs[256];
};

}  // namespace

u32 GuiUploads;

static FT_Library Library;
static FT_Face FaceRound, FaceTerminal;   // null: could not be opened
static GLuint Sheet;
static int RowX, RowY, RowHeight;         // where the next glyph goes on the sheet
static std::vector<std::unique_ptr<TextLook>> Looks;
static std::vector<float> Corners;        // of the line that is being drawn

static void DropGlyphs() {
  Looks.clear();
  RowX = RowY = RowHeight = 0;
}

static FT_Face OpenFace(const char *path) {
  FT_Face face = nullptr;
  if (FT_New_Face(Library, path, 0, &face) != 0) {
    LogError("Unable to open font. I'll try to keep going, but things won't look right.");
    return nullptr;
  }
  FT_Set_Pixel_Sizes(face, 0, OpenSize);
  return face;
}

static void OpenFaces() {
  FaceRound = FaceTerminal = nullptr;
  if (Library != nullptr) FT_Done_FreeType(Library);
  Library = nullptr;
  if (FT_Init_FreeType(&Library) != 0) {
    Library = nullptr;
    LogError("Unable to Initalize font library. I'll try to keep going, but things won't look right");
    return;
  }
  FaceRound = OpenFace("config/fonts/Short_Stack/ShortStack-Regular.ttf");
  FaceTerminal = OpenFace("config/fonts/VT323/VT323.ttf");
}

static void MakeSheet() {
  glGenTextures(1, &Sheet);
  glBindTexture(GL_TEXTURE_2D, Sheet);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, SheetSize, SheetSize, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
}

void StartText() {
  OpenFaces();
  DropGlyphs();
  MakeSheet();
}

static FT_Face ChooseFace(const u8 (&colour)[3]) {
  const bool pureGreen = colour[0] == 0 && colour[1] >= 200 && colour[2] == 0;
  return pureGreen ? FaceTerminal : FaceRound;
}

static TextLook *FindLook(FT_Face face, int pixels, const u8 (&colour)[3]) {
  for (const auto &look : Looks)
    if (look->face == face && look->pixels == pixels && memcmp(look->colour, colour, sizeof colour) == 0) return look.get();
  if (Looks.size() == MaxLooks) DropGlyphs();
  Looks.push_back(std::make_unique<TextLook>());
  TextLook *look = Looks.back().get();
  look->face = face;
  look->pixels = pixels;
  memcpy(look->colour, colour, sizeof colour);
  return look;
}

// A free place on the sheet, row after row; false when there is none.
static bool TakePlace(int width, int height, int *x, int *y) {
  if (RowX + width > SheetSize) {
    RowX = 0;
    RowY += RowHeight;
    RowHeight = 0;
  }
  if (width > SheetSize || RowY + height > SheetSize) return false;
  *x = RowX;
  *y = RowY;
  RowX += width;
  RowHeight = std::max(RowHeight, height);
  return true;
}

static int RimOf(int pixels) { return std::min(1 + pixels / PixelsPerRim, WidestRim); }
static int ShadowOf(int rim) { return (rim + 1) / 2; }  // pixels to the right and down, by which it is larger there besides
static int GrowthOf(int rim) { return 2 * rim + ShadowOf(rim); }

static bool HasRim(const u8 (&colour)[3]) { return (2 * colour[0] + 5 * colour[1] + colour[2]) / 8 >= DimmestWithRim; }

namespace {

// A picture in the making, for a place on the sheet.
struct Image {
  int width = 0, height = 0;
  std::vector<u8> pixels;                 // red, green, blue, alpha
};

}  // namespace

static Image ClearImage(int width, int height, const u8 (&colour)[3]) {
  Image image{width, height, std::vector<u8>(static_cast<size_t>(width) * static_cast<size_t>(height) * 4)};
  for (size_t i = 0; i < image.pixels.size(); i += 4) memcpy(&image.pixels[i], colour, sizeof colour);
  return image;
}

static u8 *AlphaAt(Image *image, int x, int y) { return &image->pixels[static_cast<size_t>(y * image->width + x) * 4 + 3]; }

static void Upload(const Image &image, int x, int y) {
  glTexSubImage2D(GL_TEXTURE_2D, 0, x, y, image.width, image.height, GL_RGBA, GL_UNSIGNED_BYTE, image.pixels.data());
}

// How dark a pixel at this distance from a full one is: the rim all round, or the shadow, which is the rim moved.
static float RimWeight(int dx, int dy, int rim) {
  const int shadow = ShadowOf(rim);
  const auto within = [rim](int x, int y) {
    return std::clamp(static_cast<float>(rim) + 1 - std::hypot(static_cast<float>(x), static_cast<float>(y)), 0.0f, 1.0f);
  };
  return std::max(RimDepth * within(dx, dy), ShadowDepth * within(dx - shadow, dy - shadow));
}

// Lets one pixel of the glyph darken what is round it.
static void SpreadPixel(Image *image, int x, int y, u8 gray, const std::vector<float> &weights, int rim) {
  size_t at = 0;
  const int end = rim + ShadowOf(rim);
  for (int dy = -rim; dy <= end; dy++)
    for (int dx = -rim; dx <= end; dx++, at++) {
      u8 *alpha = AlphaAt(image, x + dx, y + dy);
      *alpha = std::max(*alpha, static_cast<u8>(static_cast<float>(gray) * weights[at]));
    }
}

static void UploadRim(const FT_Bitmap &bitmap, const Glyph &glyph) {
  const u8 black[3] = {};
  const int rim = glyph.rim, end = rim + ShadowOf(rim), edge = rim + Border, growth = GrowthOf(rim) + 2 * Border;
  std::vector<float> weights;
  for (int dy = -rim; dy <= end; dy++)
    for (int dx = -rim; dx <= end; dx++) weights.push_back(RimWeight(dx, dy, rim));
  Image image = ClearImage(glyph.width + growth, glyph.height + growth, black);
  for (int y = 0; y < glyph.height; y++)
    for (int x = 0; x < glyph.width; x++)
      if (const u8 gray = bitmap.buffer[y * bitmap.pitch + x]) SpreadPixel(&image, x + edge, y + edge, gray, weights, rim);
  Upload(image, glyph.sheetX + glyph.width + Border, glyph.sheetY - Border);
}

// The colour in each pixel, with the bitmap's gray as alpha, and the clear border round it.
static void UploadGlyph(const FT_Bitmap &bitmap, const u8 (&colour)[3], const Glyph &glyph) {
  Image image = ClearImage(glyph.width + 2 * Border, glyph.height + 2 * Border, colour);
  for (int y = 0; y < glyph.height; y++)
    for (int x = 0; x < glyph.width; x++) *AlphaAt(&image, x + Border, y + Border) = bitmap.buffer[y * bitmap.pitch + x];
  Upload(image, glyph.sheetX - Border, glyph.sheetY - Border);
  GuiUploads++;
}

// A place for the glyph, and to the right of it one for its rim.
static bool PlaceGlyph(Glyph *glyph) {
  const int growth = GrowthOf(glyph->rim) + 2 * Border, rimWidth = glyph->rim == 0 ? 0 : glyph->width + growth;
  int x = 0, y = 0;
  if (!TakePlace(glyph->width + 2 * Border + rimWidth, glyph->height + growth, &x, &y)) return false;
  glyph->sheetX = x + Border;
  glyph->sheetY = y + Border;
  return true;
}

// Renders a glyph and puts it on the sheet. False when the sheet has no room for it.
static bool MakeGlyph(const TextLook &look, u8 byte, Glyph *glyph) {
  FT_Set_Pixel_Sizes(look.face, 0, static_cast<FT_UInt>(look.pixels));
  glyph->tried = true;
  if (FT_Load_Char(look.face, byte, FT_LOAD_RENDER) != 0) return true;
  const FT_GlyphSlot slot = look.face->glyph;
  const FT_Bitmap &bitmap = slot->bitmap;
  glyph->advance = static_cast<int>(slot->advance.x >> 6);
  if (bitmap.pixel_mode != FT_PIXEL_MODE_GRAY || bitmap.width == 0 || bitmap.rows == 0) return true;
  glyph->left = slot->bitmap_left;
  glyph->top = slot->bitmap_top;
  glyph->width = static_cast<int>(bitmap.width);
  glyph->height = static_cast<int>(bitmap.rows);
  glyph->rim = HasRim(look.colour) ? RimOf(look.pixels) : 0;
  if (!PlaceGlyph(glyph)) return false;
  glyph->drawn = true;
  UploadGlyph(bitmap, look.colour, *glyph);
  if (glyph->rim != 0) UploadRim(bitmap, *glyph);
  return true;
}

// All glyphs of the line stand ready in the look afterwards, if the sheet can hold them at all.
static TextLook *PrepareLine(FT_Face face, int pixels, const u8 (&colour)[3], const u8 *bytes, int count) {
  TextLook *look = FindLook(face, pixels, colour);
  bool dropped = false;
  for (int i = 0; i < count; i++) {
    Glyph *glyph = &look->glyphs[bytes[i]];
    if (glyph->tried || MakeGlyph(*look, bytes[i], glyph) || dropped) continue;
    DropGlyphs();
    dropped = true;
    look = FindLook(face, pixels, colour);
    i = -1;  // from the start of the line, on the empty sheet
  }
  return look;
}

namespace {

// A place on the sheet and one in the line, of the same size.
struct Patch {
  int sheetX, sheetY, left, top, width, height;
};

}  // namespace

static void AddCorners(const Patch &p) {
  const float left = static_cast<float>(p.left), top = static_cast<float>(p.top);
  const float right = left + static_cast<float>(p.width), bottom = top - static_cast<float>(p.height);
  const float s = static_cast<float>(p.sheetX) / SheetSize, t = static_cast<float>(p.sheetY) / SheetSize;
  const float sEnd = s + static_cast<float>(p.width) / SheetSize, tEnd = t + static_cast<float>(p.height) / SheetSize;
  const float corners[FloatsPerGlyph] = {left, bottom, s,    tEnd, left,  top, s,    t, right, bottom, sEnd, tEnd,
                                         right, bottom, sEnd, tEnd, left, top, s,    t, right, top,    sEnd, t};
  Corners.insert(Corners.end(), corners, corners + FloatsPerGlyph);
}

static Patch GlyphPatch(const Glyph &g, int pen) { return {g.sheetX, g.sheetY, pen + g.left, g.top, g.width, g.height}; }

static Patch RimPatch(const Glyph &g, int pen) {
  return {g.sheetX + g.width + 2 * Border, g.sheetY,         pen + g.left - g.rim, g.top + g.rim,
          g.width + GrowthOf(g.rim),       g.height + GrowthOf(g.rim)};
}

// Corners of all rims, and behind them of all glyphs: no rim lies over a neighbour. The pen's travel.
static int AddLine(const TextLook &look, const u8 *bytes, int count) {
  int pen = 0;
  for (int i = 0; i < count; i++) {
    const Glyph &glyph = look.glyphs[bytes[i]];
    if (glyph.drawn && glyph.rim != 0) AddCorners(RimPatch(glyph, pen));
    pen += glyph.advance;
  }
  pen = 0;
  for (int i = 0; i < count; i++) {
    const Glyph &glyph = look.glyphs[bytes[i]];
    if (glyph.drawn) AddCorners(GlyphPatch(glyph, pen));
    pen += glyph.advance;
  }
  return pen;
}

// A window of odd size has its middle between two pixels; glyphs keep to the pixels.
static float PixelStep(float size) { return static_cast<int>(size) % 2 == 0 ? 0.0f : 0.5f; }

static void DrawCorners(int x, int y) {
  const GuiWindow window = CurrentWindow();
  PlaceQuads(static_cast<float>(x) + PixelStep(window.width), static_cast<float>(y) + PixelStep(window.height), 0);
  FillSquares(Corners.data(), static_cast<int>(Corners.size()));
  glDrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(Corners.size() / 4));
}

int DrawText(const char *text, int x, int y, const u8 (&colour)[3], TextAlign align, int size) {
  const FT_Face face = ChooseFace(colour);
  const u8 *bytes = reinterpret_cast<const u8 *>(text);
  const int count = Utf8Length(text);
  if (face == nullptr || count <= 0) return 0;
  glBindTexture(GL_TEXTURE_2D, Sheet);
  const TextLook &look = *PrepareLine(face, TextPixelSize(size, CurrentWindow().scale), colour, bytes, count);
  Corners.clear();
  const int pen = AddLine(look, bytes, count);
  const int back = align == AlignLeft ? 0 : align == AlignCentre ? pen / 2 : pen;
  if (!Corners.empty()) DrawCorners(x - back, y);
  return pen;
}
