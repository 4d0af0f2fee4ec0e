// Where the quads of the GUI and their labels come to stand in the window. Pixels are counted from the window's middle,
// x to the right, y upwards. Plain arithmetic: no GL, no state.
#pragma once

#include "gui/elements.h"

enum TextAlign : u8 { AlignLeft = 0, AlignCentre = 1, AlignRight = 2 };
constexpr float PlainTypes = -4200.0f;       // a type whose text offset lies below has no picture, only its colour
constexpr float FullHeightType = -4243.0f;   // the text offset of a plain type that is as high as the window

struct GuiWindow {
  float width = 0, height = 0;  // pixels
  float scale = 0;              // pixels to a design unit
};

struct QuadPlace {
  float x = 0, y = 0;           // centre, pixels
  float width = 0, height = 0;  // pixels
};

struct LabelPlace {
  int x = 0, y = 0;             // where the line begins, is centred or ends; y is the middle of its capitals
  TextAlign align = AlignCentre;
};

// Position and size in design units; anchor: 0 the window's middle, 2 to 5 its corners.
QuadPlace PlaceQuad(int x, int y, int width, int height, int anchor, const GuiWindow &window);
float TiltOf(int element, const QuadPlace &quad);  // Degrees, -12 to 12; the same for the same place.
// x, y: the quad's position in design units, as PlaceQuad had it.
LabelPlace PlaceLabel(const QuadPlace &quad, int x, int y, float textOffset, int anchor, const GuiWindow &window);
int LabelSize(float textSize, float scale);        // What DrawText is asked for, design units; may be 0 or less.
int TextPixelSize(int size, float scale);          // Pixels of the face; at least 1.
// The hit box of an element of this type whose textWidth is known.
void SetHitBox(GuiElement *element, const GuiType &type, float textOffset, float scale);
