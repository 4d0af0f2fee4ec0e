// The pause menu and the title, and the way of clicks and scrolling to the screen that is open.
#include "gui/screens.h"

#include "content/options.h"
#include "core/utils.h"
#include "gui/language.h"
#include "gui/mode.h"
#include "gui/screen_parts.h"
#include "platform/files.h"

constexpr int LeaveGame = -2;
constexpr int BarMiddle = -10, BarReach = 290;  // the track's place, and the buttons above and below it

void CloseMenu(int) { ToggleMenu(); }

void AddButton(int x, int y, int languageRow, GuiCallback callback, int arg) {
  AddElement(TypeButton, x, y, languageRow, "", callback, arg);
}

static void ScrollUp(int) { ScrollScreen(-1); }
static void ScrollDown(int) { ScrollScreen(1); }

void AddScrollBar(int x, int knobY) {
  AddElement(TypeListTrack, x, BarMiddle, 0, "", nullptr, 0);
  AddElement(TypeArrowUp, x, BarMiddle + BarReach, 0, "", ScrollUp, 0);
  AddElement(TypeArrowDown, x, BarMiddle - BarReach, 0, "", ScrollDown, 0);
  AddElement(TypeListKnob, x, knobY, 0, "", nullptr, 0);
}

std::string ShortLabel(const std::string &text, size_t most) {
  if (text.size() <= most) return text;
  const size_t head = (most - 2) / 2, tail = most - 2 - head;
  size_t from = text.size() - tail;  // at a letter too
  for (int rest = 0; rest < 3 && from < text.size() && (static_cast<u8>(text[from]) & 0xc0) == 0x80; ++rest) ++from;
  return std::string(FrontOf(text, head)) + ".." + text.substr(from);
}

static void OpenNaming(int) { BuildShipNaming(); }

// Whoever opens the list from here wants to come back here.
static void OpenShips(int) {
  BuildShipList(0);
  ReturnFromList(BuildPauseMenu);
}

static void OpenLanguages(int) {
  BuildLanguageList(0);
  ReturnFromList(BuildPauseMenu);
}

void BuildPauseMenu() {
  ClearElements();
  GuiScreen = ScreenPause;
  AddButton(0, 400, 65, CloseMenu);
  AddButton(0, -200, 20, OpenNaming);
  AddButton(0, 200, 14, BuildGraphicsOptions);
  AddButton(0, -400, 15, nullptr, LeaveGame);
  if (Options.SinglePlayer) AddButton(0, 0, 12, OpenShips);
  else AddButton(0, 0, 87, CloseMenu);
  // Who can't read the words is at most two clicks away from words that they can read.
  AddButton(650, -400, 49, OpenLanguages);
  if (!SavingOn) AddElement(TypeHeading, 0, 500, TextSavesNothing, "", nullptr, 0);
}

void BuildTitleMenu() {
  ClearElements();
  GuiScreen = ScreenTitle;
  AddElement(TypeLogo, 0, 400, 0, "", nullptr, 0);
  AddButton(0, -100, 87, CloseMenu);
  AddButton(0, -300, 15, nullptr, LeaveGame);
  AddElement(TypeRow, -800, -480, 49, "", BuildLanguageList, 0);
}

static void PlayWithoutSaving(int) {
  MenuClosable = true;
  CloseMenu(0);
}

void BuildFolderTaken() {
  if (uiMode == 0) ToggleMenu();
  ClearElements();
  GuiScreen = ScreenFolderTaken;
  MenuClosable = false;
  AddElement(TypeHeading, 0, 250, TextFolderTaken, "", nullptr, 0);
  AddElement(TypeHeading, 0, 180, TextNotSaved, "", nullptr, 0);
  AddButton(0, 0, TextPlayUnsaved, PlayWithoutSaving);
  AddButton(0, -200, 15, nullptr, LeaveGame);
}

void ScreenClick(int row) {
  if (GuiScreen == ScreenShips || GuiScreen == ScreenBackups || GuiScreen == ScreenLanguages) ClickListRow(row);
}

void ScrollScreen(int lines) {
  if (GuiScreen == ScreenShips || GuiScreen == ScreenBackups) ScrollList(lines);
  if (GuiScreen == ScreenMaterials || GuiScreen == ScreenComponents) ScrollSelector(lines);
}
