// The flat table of drawn elements and the table of element types. A screen is a list of elements that is built from
// scratch whenever the screen changes. Main thread only, all of it: no lock.
#pragma once

#include <string>

#include "core/types.h"

// How an element looks. Design units: the window is 1920 x 1080 of them around its middle, times GuiScale.
struct GuiType {
  u32 texture = 0;             // GL name
  u16 width = 0, height = 0;   // design units
  u8 textColour[3] = {};       // red, green, blue of labels
  u8 hoverClass = 0;           // 0: the pointer isn't tested; 1, 2: can be hovered and clicked
  float textSize = 0;
  float textOffset = 0;        // where the label goes; below -4200 the type is a plain colour and textSize its alpha
};

using GuiCallback = void (*)(int arg);

struct GuiElement {
  u8 type = 0;                 // row of GuiTypes, 7 bits; the row after it is the look under the pointer
  bool hovered = false;
  GuiCallback callback = nullptr;
  i16 x = 0, y = 0;            // centre, design units from the middle of the window; y upwards
  i16 hitLeft = 0, hitRight = 0, hitBottom = 0, hitTop = 0;  // pixels, set when drawn; x in the mirrored sense
  std::string text;            // the label
  i32 arg = 0;                 // for the callback; -1 is the element's own index; -2 without a callback leaves the game
  i16 textWidth = 0;           // pixels, from the last draw
};

// The rows of GuiTypes that the code names. Row n + 1 is the look of row n under the pointer.
enum GuiTypeRow : u8 {
  TypeButton = 1, TypeOn = 3, TypeOff = 5, TypeArrowLeft = 7, TypeArrowRight = 9, TypeTrack = 11, TypeKnob = 13,
  TypeArrowUp = 15, TypeArrowDown = 17, TypeListKnob = 19, TypeListTrack = 21, TypeHeading = 22, TypeRow = 23,
  TypeChosenRow = 25, TypeLine = 27, TypeLogo = 28, TypeBlockFrame = 39, TypeComponentPanel = 40, TypeMaterialPanel = 41,
  TypeRotation = 42, TypeLampOff = 52, TypeLampRed = 53, TypeLampGreen = 54, TypeLampBlue = 55, TypeLampYellow = 56,
  TypeTabBackground = 57, TypeTabDivider = 58, TypeTab = 59, TypePanelWide = 65, TypePanelTall = 66, TypePanelSmall = 67,
  TypeInfoWindow = 68, TypeClear = 70, TypeBackdrop = 71, TypeExpandPlus = 72, TypeExpandMinus = 74, TypeTabShade = 76, TypeListBackdrop = 77,
  TypeWordsBackdrop = 78
};

constexpr int GuiTypeRows = 256, GuiElementRows = 256;
extern GuiType GuiTypes[GuiTypeRows];           // row 0 unused; written once by InitGui
extern GuiElement GuiElements[GuiElementRows];
extern u8 GuiElementCount;                      // rows in use
extern u8 GuiScreen;                            // number of the current screen, see screens.h
extern i16 GuiPointerX, GuiPointerY;            // the pointer in pixels from the middle; x grows to the left
extern bool GuiPendingClose;                    // close the menu after this click

// Appends a row; a full table logs a warning and drops it. The label is row languageRow of GuiStrings unless that is 0,
// else text; a text of fewer than two characters gives the empty label.
void AddElement(int type, int x, int y, int languageRow, const char *text, GuiCallback callback, int arg);
void ClearElements();                           // Also sets ListVisibleRows to 0.
void PointAt(int x, int y);                     // The pointer moved, in window coordinates: stores it, tests all elements.
void RestPointer(int x, int y);                 // The pointer stands there, but nothing is hovered until it moves or clicks.
void WakePointer();                             // What it stands over is hovered again. Before a click.
void UpdateHover();                             // Tests the pointer against all hit boxes, strictly inside.
int HandleClick();                              // A press in the menu: -1 means leave the game, else 0.

// What InitGui loads: a file below config/graphics/, or "NULL;" for a plain colour.
struct GuiTypeSource {
  u8 row;
  const char *path;
  u16 width, height;
  float textOffset, textSize;
  u8 red, green, blue, hoverClass;
};
constexpr int GuiTypesInUse = 78;
extern const GuiTypeSource GuiTypeSources[GuiTypesInUse];
void SetGuiType(const GuiTypeSource &source);   // All of the row but its texture.
