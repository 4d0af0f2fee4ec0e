// Brings up the window and OpenGL, once, on the main thread, which keeps the context for the life of the program.
#pragma once

#include "core/types.h"

// Main thread only, all of these.
extern bool LegacyGlAllowed;               // the context takes old-style calls: the star box may be drawn
extern float GuiScale;                     // the smaller of the two GUI scales
extern u16 ViewWidth, ViewHeight;          // the size last accepted, at least 640 x 480

// 1, or 0 with the reason logged. A close callback that is set by then is asked before the window may close.
int InitGraphics();
int CheckOpenGlVersion();                  // Non-zero if the game may go on.
int JudgeOpenGlVersion(const char *version, const char *renderer);  // The same on given texts; null allowed.
void ResizeViewport(int width, int height);  // Viewport, both projections, GUI scales; stores the size in the options.
int CloseGraphics();                       // The clean-up hook at the end: nothing to do; 1.

// For whoever opens a window.
void UseDesktopSize();                     // ScreenWidth and ScreenHeight become the desktop's.
void DressWindow();                        // Title, size callback, no wait for the retrace, viewport.
