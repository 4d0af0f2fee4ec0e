// Brings up the window and OpenGL, once, on the main thread, which keeps the context for the life of the program.
#pragma once

#include <atomic>

#include "core/types.h"

extern bool LegacyGlAllowed;               // the context takes old-style calls: the star box may be drawn. Main thread.
extern float ProjectionMatrix[16];         // perspective; main thread
extern float Projection2D[16];             // pixels, origin in the middle; main thread
extern float GuiScale;                     // the smaller of the two GUI scales; main thread
extern u16 ViewWidth, ViewHeight;          // the size last accepted; main thread

int InitGraphics();                        // 1, or 0 with the reason logged.
int CheckOpenGlVersion();                  // Non-zero if the game may go on.
int JudgeOpenGlVersion(const char *version, const char *renderer);  // The same on given texts; null allowed.
void ResizeViewport(int width, int height);
int CloseGraphics();                       // The clean-up hook at the end: nothing to do; 1.
