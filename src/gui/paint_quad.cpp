// One picture with its label.
#include <GL/glew.h>

#include <algorithm>

#include "content/options.h"
#include "gl/init.h"
#include "gl/shaders.h"
#include "gui/paint.h"
#include "gui/paint_parts.h"
#include "render/matrix.h"
#include "render/view.h"

constexpr float MiddleOfCapitals = 0.35f;  // above the baseline, in parts of the face's size

static GLint MatrixLocation = -1;          // uniform Projection2DModel

GuiWindow CurrentWindow() {
  return {static_cast<float>(Options.ScreenWidth), static_cast<float>(Options.ScreenHeight), GuiScale};
}

void StartQuads() { MatrixLocation = glGetUniformLocation(Program2D, "Projection2DModel"); }

void PlaceQuads(float x, float y, float degrees) {
  float place[16], placed[16];
  Translation(place, x, y, 0);
  MultiplyMatrices(Projection2D, place, placed);
  if (degrees != 0) {
    float turn[16];
    RotationZ(turn, degrees);
    MultiplyMatrices(placed, turn, place);
  }
  glUniformMatrix4fv(MatrixLocation, 1, GL_FALSE, degrees != 0 ? place : placed);
}

void FillSquares(const float *floats, int count) {
  glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(sizeof(float)) * count, floats, GL_DYNAMIC_DRAW);
}

static void DrawPicture(const QuadPlace &quad, u32 texture, float degrees) {
  const float w = quad.width / 2, h = quad.height / 2;
  // A picture's first row is its top. Clockwise: the faces that aren't culled.
  const float corners[16] = {-w, -h, 0, 1, -w, h, 0, 0, w, -h, 1, 1, w, h, 1, 0};
  glBindTexture(GL_TEXTURE_2D, texture);
  PlaceQuads(quad.x, quad.y, degrees);
  FillSquares(corners, 16);
  glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
}

static int DrawLabel(const LabelPlace &place, const GuiType &type, const char *text, float scale) {
  const int size = LabelSize(type.textSize, scale);
  const int down = static_cast<int>(static_cast<float>(TextPixelSize(size, scale)) * MiddleOfCapitals);
  return DrawText(text, place.x, place.y - down, type.textColour, place.align, size);
}

void DrawGuiQuad(int element, int x, int y, int width, int height, int type, const char *text, float textOffset, int anchor,
                 float angle) {
  if (type < 0 || type >= GuiTypeRows) return;
  const GuiType &look = GuiTypes[type];
  const GuiWindow window = CurrentWindow();
  QuadPlace quad = PlaceQuad(x, y, width, height, anchor, window);
  if (look.textOffset == FullHeightType) quad.height = window.height;
  if (type == TypeButton || type == TypeButton + 1 || angle == TiltAngle) angle = TiltOf(element, quad);
  if (look.texture != 0) DrawPicture(quad, look.texture, angle);
  int travel = 0;
  if (text != nullptr) travel = DrawLabel(PlaceLabel(quad, x, y, textOffset, anchor, window), look, text, window.scale);
  if (element < 0 || element >= NoElement) return;
  GuiElements[element].textWidth = static_cast<i16>(std::clamp(travel, 0, 32767));
  SetHitBox(&GuiElements[element], look, textOffset, window.scale);
}
