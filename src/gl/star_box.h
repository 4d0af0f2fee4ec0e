// The stars: a cube of six pictures around the eye, drawn with old-style calls behind everything. Drawing thread.
#pragma once

int LoadStarBox();   // The six textures. 1, or 0 without memory (logged); a missing picture repeats the one before.
void DrawStarBox();  // Contexts with LegacyGlAllowed only; the modelview stack holds the view's rotation.
