// Why the last press was refused, under the crosshair.
#include "gui/paint.h"
#include "gui/refusal.h"
#include "platform/window.h"

constexpr int LineBelowMiddle = -90;  // design units

void DrawRefusal() {
  if (const char *line = RefusalLine(ClockNow()); line != nullptr)
    DrawGuiQuad(NoElement, 0, LineBelowMiddle, 1, 1, TypeClear, line, 0, 0, 0);
}
