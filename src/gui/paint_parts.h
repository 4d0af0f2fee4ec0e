// What the painters of the GUI share among themselves. Drawing thread.
#pragma once

#include "gui/layout.h"

GuiWindow CurrentWindow();                         // The window's size and scale as they are now.
void StartQuads();                                 // Looks up what quads need of the 2D program.
void StartText();                                  // FreeType, the two faces, an empty glyph cache. Faults are logged.
void PlaceQuads(float x, float y, float degrees);  // The 2D program's matrix: a turn about the place, in pixels.
void FillSquares(const float *floats, int count);  // Corners for the next draw: x, y from the place, s, t.
