// Lines of text. Each glyph is rendered once for a face, a size and a colour and kept in one texture, the sheet; a line is
// one draw of quads cut from it. When the sheet is full, or has served too many looks, all of it is given up and
// filled anew by what is drawn from then on.
#include <GL/glew.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
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

namespace {

struct Glyph {
  bool tried = false;
  bool drawn = false;                     // has pixels on the sheet
  int advance = 0, left = 0, top = 0;     // pixels
  int width = 0, height = 0;
  int sheetX = 0, sheetY = 0;
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

// The colour in each pixel, with the bitmap's gray as alpha, and the clear border round it.
static void UploadGlyph(const FT_Bitmap &bitmap, const u8 (&colour)[3], const Glyph &glyph) {
  const int width = glyph.width + 2 * Border, height = glyph.height + 2 * Border;
  std::vector<u8> image(static_cast<size_t>(width) * static_cast<size_t>(height) * 4);
  for (size_t i = 0; i < image.size(); i += 4) memcpy(&image[i], colour, sizeof colour);
  for (int y = 0; y < glyph.height; y++)
    for (int x = 0; x < glyph.width; x++)
      image[static_cast<size_t>((y + Border) * width + x + Border) * 4 + 3] = bitmap.buffer[y * bitmap.pitch + x];
  glTexSubImage2D(GL_TEXTURE_2D, 0, glyph.sheetX - Border, glyph.sheetY - Border, width, height, GL_RGBA, GL_UNSIGNED_BYTE,
                  image.data());
  GuiUploads++;
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
  int x = 0, y = 0;
  if (!TakePlace(glyph->width + 2 * Border, glyph->height + 2 * Border, &x, &y)) return false;
  glyph->sheetX = x + Border;
  glyph->sheetY = y + Border;
  glyph->drawn = true;
  UploadGlyph(bitmap, look.colour, *glyph);
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

static void AddCorners(const Glyph &glyph, int pen) {
  const float left = static_cast<float>(pen + glyph.left), top = static_cast<float>(glyph.top);
  const float right = left + static_cast<float>(glyph.width), bottom = top - static_cast<float>(glyph.height);
  const float s = static_cast<float>(glyph.sheetX) / SheetSize, t = static_cast<float>(glyph.sheetY) / SheetSize;
  const float sEnd = s + static_cast<float>(glyph.width) / SheetSize, tEnd = t + static_cast<float>(glyph.height) / SheetSize;
  const float corners[FloatsPerGlyph] = {left, bottom, s,    tEnd, left,  top, s,    t, right, bottom, sEnd, tEnd,
                                         right, bottom, sEnd, tEnd, left, top, s,    t, right, top,    sEnd, t};
  Corners.insert(Corners.end(), corners, corners + FloatsPerGlyph);
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
  int pen = 0;
  for (int i = 0; i < count; i++) {
    const Glyph &glyph = look.glyphs[bytes[i]];
    if (glyph.drawn) AddCorners(glyph, pen);
    pen += glyph.advance;
  }
  const int back = align == AlignLeft ? 0 : align == AlignCentre ? pen / 2 : pen;
  if (!Corners.empty()) DrawCorners(x - back, y);
  return pen;
}
