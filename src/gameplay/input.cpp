// The keyboard: which key does what, in play, in the menu and while typing.
#include "gameplay/input.h"

#include "content/options.h"
#include "gameplay/chat.h"
#include "gameplay/debug_keys.h"
#include "gameplay/last_ship.h"
#include "gameplay/motion.h"
#include "gameplay/tools.h"
#include "gui/language.h"
#include "gui/mode.h"
#include "gui/screens.h"
#include "gui/tutorial.h"
#include "net/chat_log.h"
#include "net/session.h"
#include "persistence/stream.h"
#include "platform/files.h"
#include "platform/window.h"

constexpr int PageLines = 18, MaterialsSelector = 2;

std::atomic<bool> QuitRequested{false};

int RequestQuit() {
  QuitRequested = true;
  return 0;
}

static void ReleaseKey(int key) {
  if (key == Options.controls.stop) {
    TutorialAdvances(WaitSpace);
    ReleaseStop();
  }
  if (IsMoveKey(key)) {
    PlayerFlags.thrusting = false;
    PlayerFlags.pushingOff = false;
    TutorialAdvances(WaitMoveKeys);
  }
}

void SaveOrTell(Ship *ship) {
  static std::atomic<bool> failing{false};
  if (!SavingOn) {
    AddChatLine(WordsOf(TextShipNotKept).c_str());
    return;
  }
  std::string news;
  const bool failed = SaveShipTelling(ship, &news) == 0;
  if (!news.empty()) AddChatLine(news.c_str());
  if (!failed) RememberShip(*ship);
  const bool failedBefore = failing.exchange(failed);
  if (failed) AddChatLine(WordsOf(TextSaveFailed).c_str());
  else if (failedBefore) AddChatLine(WordsOf(TextSavedAgain).c_str());
}

static void BlockSelectKey() {
  if (!TutorialAdvances(WaitEscOrQ)) TutorialAdvances(WaitQ);
  if (KeyIsDown(KeyLeftShift) && KeyIsDown(KeyLeftControl)) RequestQuit();
  if (ToggleMenu() == 1) LastSelector == MaterialsSelector ? BuildMaterialSelector(0) : BuildComponentSelector(0);
}

// In play a tutorial that waits for the key has it for itself; an open list closes all the same.
static void EscKey() {
  const bool waited = TutorialAdvances(WaitEscOrQ) || TutorialAdvances(WaitEsc);
  if (waited && uiMode != 1) return;
  if (uiMode == 1 && GuiScreen == ScreenFolderTaken) return;  // the question wants an answer
  ToggleMenu();
  Ship *ship = CurrentShip();
  if (Options.SinglePlayer && uiMode == 1 && ship != nullptr) SaveOrTell(ship);
}

static void MoveKeyPress() {
  if (uiMode != 1 && !KeyIsDown(Options.controls.stop)) PlayerFlags.thrusting = true;
}

// "1" to "5" take the five tools in their order.
static void ToolKey(int number) {
  if (uiMode != 0) return;
  SelectTool(number - 1);
  if (TutorialAdvances(static_cast<u8>(WaitKey1 + number - 1))) return;
  if (number == 2 || number == 5) TutorialAdvances(WaitKey2or5);
}

// Lines by which a key scrolls the open list; 0 for any other key.
static int LinesOfKey(int key) {
  switch (key) {
    case KeyUp: return -1;
    case KeyDown: return 1;
    case KeyPageUp: return -PageLines;
    case KeyPageDown: return PageLines;
    default: return 0;
  }
}

static void PressKey(int key) {
  const Controls &c = Options.controls;
  if (key == c.use)
    TutorialAdvances(WaitUse);
  else if (key == c.blockSelect)
    BlockSelectKey();
  else if (key == 'T') {
    if (uiMode == 0) OpenChat();
  } else if (IsMoveKey(key))
    MoveKeyPress();
  else if (key >= '1' && key <= '5')
    ToolKey(key - '0');
  else if (LinesOfKey(key) != 0) {
    if (uiMode == 1) ScrollScreen(LinesOfKey(key));
  } else if (key == KeyTab) {
    if (Online) ShowPlayerList();
  } else if (key == KeyEsc)
    EscKey();
  else
    DebugKey(key);
}

void OnKey(int key, int action) {
  if (action == 0)
    ReleaseKey(key);
  else if (uiMode == 2)
    ChatKey(key);
  else if (uiMode != 1 || !ScreenKey(key))
    PressKey(key);
}

void OnCharacter(int character, int action) {
  if (uiMode != 1)
    ChatChar(character, action);
  else if (action == 1)
    ScreenChar(character);
}

void InstallInputCallbacks() {
  SetKeyCallback(OnKey);
  SetCharCallback(OnCharacter);
  SetMouseButtonCallback(OnMouseButton);
  SetMousePositionCallback(OnMousePosition);
  SetMouseWheelCallback(OnMouseWheel);
}
