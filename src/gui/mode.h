// Who owns the input: play, menu or chat typing.
#pragma once

#include "gameplay/player.h"

extern bool MenuClosable;        // whether SetUiMode may change the mode; main thread
extern u8 LastSelector;          // which block list was open last: 1 components, 2 materials; main thread

int SetUiMode(std::atomic<u8> *mode);  // Play to menu (1) or menu to play (0); a warning in any other mode.
int ToggleMenu();                      // SetUiMode on uiMode.
