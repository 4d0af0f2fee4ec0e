// What the GUI needs before its first frame: tables, words, fonts and the pictures of all element types.
#include <GL/glew.h>

#include <cstring>
#include <string>
#include <vector>

#include "core/log.h"
#include "gl/gl_check.h"
#include "gui/language.h"
#include "gui/mode.h"
#include "gui/paint.h"
#include "gui/paint_parts.h"
#include "gui/screens.h"
#include "render/image.h"

namespace {

struct Picture {
  std::vector<u8> pixels;  // rows without a gap, the top one first
  u16 width = 0, height = 0;
  u8 bytesPerPixel = 4;
};

}  // namespace

static bool LoadPicture(const GuiTypeSource &source, Picture *picture) {
  const std::string path = std::string("config/graphics/") + source.path;
  picture->width = source.width;
  picture->height = source.height;
  picture->pixels.assign(static_cast<size_t>(source.width) * source.height * 4, 0);
  u8 *pixels = picture->pixels.data();
  if (LoadPng(pixels, path.c_str(), source.width, source.height) != 0) return true;
  if (LoadTga(pixels, path.c_str(), source.width, source.height, &picture->bytesPerPixel) != 0) return true;
  Print("%s :", path.c_str());
  return LogError("Could not load button") != 0;
}

// The type's colour with its text size as alpha. One pixel looks the same as any number of them.
static Picture PlainPicture(const GuiTypeSource &s) {
  Picture picture;
  picture.width = picture.height = 1;
  picture.pixels = {s.red, s.green, s.blue, static_cast<u8>(s.textSize)};
  return picture;
}

static u32 UploadPicture(const Picture &picture) {
  const GLenum format = picture.bytesPerPixel == 3 ? GL_RGB : GL_RGBA;
  GLuint texture = 0;
  glGenTextures(1, &texture);
  glBindTexture(GL_TEXTURE_2D, texture);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, picture.width, picture.height, 0, format, GL_UNSIGNED_BYTE, picture.pixels.data());
  glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
  glGenerateMipmap(GL_TEXTURE_2D);
  return texture;
}

// The row of the same picture before this one; the looks of a pair often share it.
static const GuiTypeSource *EarlierUse(const GuiTypeSource &source) {
  for (const GuiTypeSource *earlier = GuiTypeSources; earlier != &source; earlier++)
    if (strcmp(earlier->path, source.path) == 0) return earlier;
  return nullptr;
}

static void LoadGuiType(const GuiTypeSource &source) {
  SetGuiType(source);
  u32 &texture = GuiTypes[source.row].texture;
  texture = 0;
  if (source.textOffset < PlainTypes) {
    texture = UploadPicture(PlainPicture(source));
    return;
  }
  const GuiTypeSource *earlier = EarlierUse(source);
  Picture picture;
  if (earlier != nullptr && GuiTypes[earlier->row].texture != 0) texture = GuiTypes[earlier->row].texture;
  else if (LoadPicture(source, &picture)) texture = UploadPicture(picture);
}

void InitGui() {
  uiMode = 0;
  ClearElements();
  GuiScreen = 0;
  ListFirstRow = 0;
  ListChosenRow = -1;
  MenuClosable = true;
  LoadLanguage();
  StartText();
  StartQuads();
  glActiveTexture(GL_TEXTURE2);
  for (const GuiTypeSource &source : GuiTypeSources) LoadGuiType(source);
  glActiveTexture(GL_TEXTURE0);
  GlCheck("InitGui");
}
