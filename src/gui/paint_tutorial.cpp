// The window in which the tutorial speaks.
#include "gui/paint.h"
#include "gui/tutorial.h"

void DrawTutorial(int side) {
  const GuiType &window = GuiTypes[TypeInfoWindow];
  DrawGuiQuad(NoElement, 0, 0, window.width, window.height, TypeInfoWindow, nullptr, 0, side, 0);
  const int x = side == 5 ? 95 : 525;  // the middle of the window, as either corner counts it
  for (int line = 0; line < TutorialLineCount; ++line)
    DrawGuiQuad(NoElement, x, 30 - 34 * line, 1, 1, TypeClear, TutorialLines[line].c_str(), 0, side, 0);
}
