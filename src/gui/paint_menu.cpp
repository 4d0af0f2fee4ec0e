// The menu, and which of menu and overlay is drawn.
#include <cmath>

#include "content/options.h"
#include "gl/gl_check.h"
#include "gui/paint.h"
#include "gui/paint_parts.h"
#include "gui/screens.h"
#include "gui/tutorial.h"

// Both types are as high as the window by themselves.
static void DrawFullHeight(int type, int width) { DrawGuiQuad(NoElement, 0, 0, width, 1, type, nullptr, 0, 0, 0); }

static bool IsList() { return GuiScreen == ScreenShips || GuiScreen == ScreenBackups || GuiScreen == ScreenLanguages; }
static bool HasWords() { return (GuiScreen >= ScreenGraphics && GuiScreen <= ScreenOther) || GuiScreen == ScreenNaming; }

// Over the whole window, however wide it is. Where there is more to read than a few buttons, a second one lies over it: behind
// a list as a column, behind options and words that may be long all over. There one quad has the colour of the two: without a
// graphics card each of this size takes milliseconds.
static void DrawBackdrop() {
  const GuiWindow window = CurrentWindow();
  const int width = static_cast<int>(std::ceil(window.width / window.scale));
  DrawFullHeight(HasWords() ? TypeWordsBackdrop : TypeBackdrop, width);
  if (IsList()) DrawFullHeight(TypeListBackdrop, GuiTypes[TypeListBackdrop].width);
}

static void DrawElement(int row) {
  const GuiElement &e = GuiElements[row];
  const int type = e.type + (e.hovered ? 1 : 0);
  const GuiType &look = GuiTypes[type];
  DrawGuiQuad(row, e.x, e.y, look.width, look.height, type, e.text.c_str(), look.textOffset, 0, 0);
}

void DrawMenu() {
  DrawBackdrop();
  for (int row = 0; row < GuiElementCount; row++) DrawElement(row);
  UpdateHover();  // a screen that was just built has its hit boxes only now
  const bool selector = GuiScreen == ScreenMaterials || GuiScreen == ScreenComponents;
  if (selector && Options.Tutorial) DrawTutorial(TutorialSide);
}

void DrawOverlay(const Player &player) {
  if (uiMode == 1) DrawMenu();
  else DrawHud(player);
  GlCheck("Post2DRender");
}
