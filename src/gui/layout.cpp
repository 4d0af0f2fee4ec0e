// Where the quads of the GUI and their labels come to stand in the window.
#include "gui/layout.h"

#include <algorithm>
#include <cmath>

#include "core/utils.h"

constexpr float FarOffset = 1000.0f;     // a text offset beyond it, either way, lifts the label instead
constexpr float OffsetPixels = 0.2f;     // gap between art and label beside it, pixels to a unit of the text offset
constexpr float InsideMargin = 0.5f;     // gap between a label and the right edge of the panel around it, units to a unit
constexpr float LabelFromRight = 850, LabelFromLeft = 200, LabelFromTop = 90;  // lines in the corner windows, design units

QuadPlace PlaceQuad(int x, int y, int width, int height, int anchor, const GuiWindow &window) {
  QuadPlace q;
  q.x = static_cast<float>(x) * window.scale;
  q.y = static_cast<float>(y) * window.scale;
  q.width = static_cast<float>(width) * window.scale;
  q.height = static_cast<float>(height) * window.scale;
  const float sideways = (window.width - q.width) / 2, upwards = (window.height - q.height) / 2;
  if (anchor == 2 || anchor == 4) q.x += sideways;
  if (anchor == 3 || anchor == 5) q.x -= sideways;
  if (anchor == 2 || anchor == 3) q.y -= upwards;
  if (anchor == 4 || anchor == 5) q.y += upwards;
  return q;
}

float TiltOf(int element, const QuadPlace &quad) {
  const u32 place = static_cast<u32>(FloatToInt(static_cast<float>(element) + quad.x + quad.y));
  return HashToUnit(place) * 24.0f - 12.0f;
}

// The label beside, over or on its art.
static LabelPlace LabelAt(float x, float y, float width, float textOffset, float scale) {
  TextAlign align = AlignCentre;
  if (textOffset > FarOffset) {
    y += (textOffset - FarOffset) * scale;
  } else if (textOffset < -FarOffset) {
    y += (textOffset + FarOffset) * scale;
  } else if (textOffset < 0) {
    align = AlignLeft;
    x += width / 2 - textOffset * OffsetPixels;
  } else if (textOffset > 0) {
    align = AlignRight;
    x -= width / 2 + textOffset * OffsetPixels;
  }
  return {FloatToInt(std::round(x)), FloatToInt(std::round(y)), align};
}

LabelPlace PlaceLabel(const QuadPlace &quad, int x, int y, float textOffset, int anchor, const GuiWindow &window) {
  const float right = window.width / 2, top = window.height / 2, s = window.scale;
  const float fx = static_cast<float>(x), fy = static_cast<float>(y);
  if (anchor == 3) {
    LabelPlace inside = LabelAt(quad.x + quad.width / 2 - textOffset * s * InsideMargin, quad.y, 0, 0, s);
    inside.align = AlignRight;
    return inside;
  }
  if (anchor == 4) return LabelAt(right + (fx - LabelFromRight) * s, top + (fy - LabelFromTop) * s, 0, 0, s);
  if (anchor == 5) return LabelAt(-right + (fx + LabelFromLeft) * s, top + (fy - LabelFromTop) * s, 0, 0, s);
  return LabelAt(fx * s, fy * s, quad.width, textOffset, s);
}

int LabelSize(float textSize, float scale) { return FloatToInt(FastSqrt(FastSqrt(scale)) * textSize - 1.0f); }

int TextPixelSize(int size, float scale) { return std::max(FloatToInt(static_cast<float>(size) * scale - 1.0f), 1); }

static i16 ToPixel(float f) { return static_cast<i16>(std::clamp(FloatToInt(f), -32768, 32767)); }

void SetHitBox(GuiElement *element, const GuiType &type, float textOffset, float scale) {
  const float x = static_cast<float>(element->x) * scale, y = static_cast<float>(element->y) * scale;
  const float halfWidth = static_cast<float>(type.width) * scale / 2, halfHeight = static_cast<float>(type.height) * scale / 2;
  const float text = element->textWidth;
  float left = -(x + halfWidth), right = halfWidth - x;
  if (text > 2 * halfWidth) {
    const bool centred = textOffset == 0 || std::fabs(textOffset) > FarOffset;
    const float half = (text - 2 * halfWidth) / 2;
    if (centred) {
      left -= half;
      right += half;
    } else if (textOffset < 0) {
      left -= text - textOffset * OffsetPixels;  // x is mirrored: the screen's right is the smaller end
    }
  }
  element->hitLeft = ToPixel(left);
  element->hitRight = ToPixel(right);
  element->hitBottom = ToPixel(y - halfHeight);
  element->hitTop = ToPixel(y + halfHeight);
}
