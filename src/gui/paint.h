// Draws the menus and what lies over the picture in play, quad by quad. Drawing thread (the main thread).
#pragma once

#include "gameplay/player.h"
#include "gui/elements.h"
#include "gui/layout.h"

constexpr int NoElement = 255;           // DrawGuiQuad sets nobody's hit box
constexpr float TiltAngle = 42.42f;      // asks for the fixed tilt of a place

// Mode 0, the tables, the language file, FreeType with its two faces, the pictures of all types. Faults are logged and the
// game goes on. Needs the GL context.
void InitGui();

// One image with its label, at a place that anchor (0, 2 to 5) relates to the window; angle in degrees. text may be null.
void DrawGuiQuad(int element, int x, int y, int width, int height, int type, const char *text, float textOffset, int anchor,
                 float angle);
// A line from its pen position in pixels from the middle; the pen's travel in pixels. colour: red, green, blue; size in
// design units. Bytes are Latin-1 characters.
int DrawText(const char *text, int x, int y, const u8 (&colour)[3], TextAlign align, int size);

extern u32 GuiUploads;                   // glyphs sent to the graphics card so far; a still screen sends none

void DrawMenu();                         // uiMode 1
void DrawHud(const Player &player);      // uiMode 0 and 2
void DrawRefusal();                      // Why the last press was refused, for as long as that is shown.
void DrawTutorial(int side);             // The window with the step's lines; side: an anchor, 4 or 5.
void DrawOverlay(const Player &player);  // Menu or HUD by uiMode, then the driver's errors are read.
