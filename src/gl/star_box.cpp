// The stars.
#include "gl/star_box.h"

#include <GL/glew.h>

#include <cstdlib>
#include <string>

#include "core/log.h"
#include "core/types.h"
#include "gl/gl_check.h"
#include "render/image.h"

constexpr int StarFaces = 6;
constexpr u32 StarSize = 1024;  // edge of a picture in pixels

namespace {

struct StarCorner {
  float x, y, z;  // half-edge 5
  float s, t;
};

}  // namespace
static constexpr StarCorner Faces[StarFaces][4] = {
    {{5, -5, -5, 0, 0}, {-5, -5, -5, 1, 0}, {-5, 5, -5, 1, 1}, {5, 5, -5, 0, 1}},
    {{5, -5, 5, 0, 0}, {5, -5, -5, 1, 0}, {5, 5, -5, 1, 1}, {5, 5, 5, 0, 1}},
    {{-5, -5, 5, 0, 0}, {5, -5, 5, 1, 0}, {5, 5, 5, 1, 1}, {-5, 5, 5, 0, 1}},
    {{-5, -5, -5, 0, 0}, {-5, -5, 5, 1, 0}, {-5, 5, 5, 1, 1}, {-5, 5, -5, 0, 1}},
    {{-5, 5, -5, 0, 1}, {-5, 5, 5, 0, 0}, {5, 5, 5, 1, 0}, {5, 5, -5, 1, 1}},
    {{5, -5, -5, 1, 0}, {5, -5, 5, 1, 1}, {-5, -5, 5, 0, 1}, {-5, -5, -5, 0, 0}},
};

static GLuint Textures[StarFaces];  // stars1 to stars6

static void UploadFace(GLuint texture, const u8 *pixels) {
  glBindTexture(GL_TEXTURE_2D, texture);
  glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, StarSize, StarSize, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
  gluBuild2DMipmaps(GL_TEXTURE_2D, GL_RGB, StarSize, StarSize, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_NEAREST);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
  glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
}

int LoadStarBox() {
  glActiveTexture(GL_TEXTURE2);
  u8 *pixels = static_cast<u8 *>(calloc(StarSize * StarSize, 4));
  if (pixels == nullptr) return LogError("Could not allocate memory for skybox texture.");
  glGenTextures(StarFaces, Textures);
  GlCheck("Skybox pre-init");
  for (int n = 0; n < StarFaces; n++) {
    const std::string path = "config/graphics/stars/stars" + std::to_string(n + 1) + ".png";
    LoadPng(pixels, path.c_str(), StarSize, StarSize);
    UploadFace(Textures[n], pixels);
  }
  GlCheck("Skybox init");
  free(pixels);
  return 1;
}

void DrawStarBox() {
  glActiveTexture(GL_TEXTURE2);
  glColor3f(1, 1, 1);
  glPushAttrib(GL_ENABLE_BIT);
  glEnable(GL_TEXTURE_2D);
  glDisable(GL_DEPTH_TEST);
  glDisable(GL_LIGHTING);
  glDisable(GL_BLEND);
  for (int n = 0; n < StarFaces; n++) {
    glBindTexture(GL_TEXTURE_2D, Textures[n]);
    glBegin(GL_QUADS);
    for (const StarCorner &c : Faces[n]) {
      glMultiTexCoord2f(GL_TEXTURE2, c.s, c.t);
      glVertex3f(c.x, c.y, c.z);
    }
    glEnd();
  }
  glPopAttrib();
  glEnable(GL_DEPTH_TEST);
  glEnable(GL_BLEND);
  glActiveTexture(GL_TEXTURE0);
}
