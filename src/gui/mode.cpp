// Who owns the input: play, menu or chat typing.
#include "gui/mode.h"

#include "content/options.h"
#include "core/log.h"
#include "gui/screens.h"
#include "platform/window.h"

static constexpr u8 ModePlaying = 0, ModeMenu = 1;

bool MenuClosable = true;
u8 LastSelector = 1;

int SetUiMode(std::atomic<u8> *mode) {
  if (!MenuClosable) return 0;
  const u8 from = mode->load();
  if (from > ModeMenu) return LogWarn("Problem setting UI Mode");
  const bool toMenu = from == ModePlaying;
  ShowMouseCursor(toMenu);
  PlayerFlags.menuOpen = toMenu;
  mode->store(toMenu ? ModeMenu : ModePlaying);
  if (!toMenu) return 0;
  BuildPauseMenu();
  // Where play keeps the pointer stands "Load Ship": lit before the player has moved, it looks chosen.
  RestPointer(Options.ScreenWidth / 2, Options.ScreenHeight / 2);
  return 1;
}

int ToggleMenu() { return SetUiMode(&uiMode); }
