// The flat table of drawn elements: filling it, the pointer over it, clicks.
#include "gui/elements.h"

#include <algorithm>
#include <cstring>

#include "audio/sound.h"
#include "content/options.h"
#include "core/log.h"
#include "gameplay/player.h"
#include "gui/language.h"
#include "gui/mode.h"
#include "gui/screens.h"

constexpr float ClickGain = 0.9f;
constexpr int FullTable = GuiElementRows - 1;           // what the count can say
constexpr int OwnIndex = -1, LeaveGame = -2;            // meanings of arg

GuiElement GuiElements[GuiElementRows];
u8 GuiElementCount;
u8 GuiScreen;
i16 GuiPointerX, GuiPointerY;
bool GuiPendingClose;
static bool PointerRests = false;  // see RestPointer; main thread

static std::string LabelOf(int languageRow, const char *text) {
  if (languageRow > 0 && static_cast<size_t>(languageRow) < GuiStrings.size())
    return GuiStrings[static_cast<size_t>(languageRow)];
  return languageRow == 0 && text != nullptr && strlen(text) >= 2 ? text : "";
}

void AddElement(int type, int x, int y, int languageRow, const char *text, GuiCallback callback, int arg) {
  if (GuiElementCount == FullTable) {
    LogWarn("The table of menu elements is full. I'm leaving one out.");
    return;
  }
  GuiElement element;
  element.type = static_cast<u8>(type & 0x7f);
  element.callback = callback;
  element.x = static_cast<i16>(x);
  element.y = static_cast<i16>(y);
  element.text = LabelOf(languageRow, text);
  element.arg = arg;
  GuiElements[GuiElementCount++] = element;
}

void ClearElements() {
  for (GuiElement &element : GuiElements) element = {};
  GuiElementCount = 0;
  ListVisibleRows = 0;
}

static i16 FromMiddle(int size, int at) { return static_cast<i16>(std::clamp(size / 2 - at, -32768, 32767)); }

static void StorePointer(int x, int y) {
  GuiPointerX = FromMiddle(Options.ScreenWidth, x);
  GuiPointerY = FromMiddle(Options.ScreenHeight, y);
}

// The window may report the place where the pointer stands already: that is no move.
void PointAt(int x, int y) {
  const i16 before[2] = {GuiPointerX, GuiPointerY};
  StorePointer(x, y);
  if (GuiPointerX != before[0] || GuiPointerY != before[1]) PointerRests = false;
  UpdateHover();
}

void RestPointer(int x, int y) {
  StorePointer(x, y);
  PointerRests = true;
  UpdateHover();
}

void WakePointer() {
  PointerRests = false;
  UpdateHover();
}

void UpdateHover() {
  for (int i = 0; i < GuiElementCount; i++) {
    GuiElement &e = GuiElements[i];
    if (GuiTypes[e.type].hoverClass == 0) continue;
    e.hovered = !PointerRests && GuiPointerX > e.hitLeft && GuiPointerX < e.hitRight && GuiPointerY > e.hitBottom &&
                GuiPointerY < e.hitTop;
  }
}

static void ClosePending() {
  if (!GuiPendingClose) return;
  GuiPendingClose = false;
  MenuClosable = true;
  if (uiMode == 1) ToggleMenu();
}

int HandleClick() {
  // A callback may build another screen: after it nothing of the row that held it may be used.
  for (int i = 0; i < GuiElementCount; i++) {
    const GuiElement &element = GuiElements[i];
    if (!element.hovered) continue;
    const GuiCallback callback = element.callback;
    const i32 arg = element.arg;
    PlaySlotAt(SlotSwitch, 1.0f, ClickGain);
    if (callback != nullptr) callback(arg == OwnIndex ? i : arg);
    else if (arg == LeaveGame) return -1;
    else ScreenClick(i);
  }
  ClosePending();
  return 0;
}
