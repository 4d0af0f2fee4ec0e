// Typing a line of chat: the text, its cursor and the keys that edit it. Main thread, but for the Backspace repeat, which
// the held-input step asks for; one lock guards the text.
#pragma once

#include "core/types.h"

constexpr i16 MaxChatLength = 256;

struct ChatEntry {
  char text[MaxChatLength + 2] = {};  // the line, its cursor "|" and an end
  i16 cursor = -2;      // index of the cursor; -1 just after opening, -2 when no chat is open
  i16 length = 0;       // characters typed; -1 just after opening
  double blink = 0;     // time of the next cursor blink
  double repeat = 0;    // time of the next Backspace repeat; 0 is none
};

ChatEntry ReadChat();                     // A copy. Any thread.
void OpenChat();                          // "T" in play. The first character after it is the "t" itself and is dropped.
void CloseChat();                         // Esc.
void ChatKey(int key);                    // A key pressed while typing.
void ChatChar(int character, int action); // A character typed. What is no single byte is left out.
void ChatHeldStep();                      // Repeats a held Backspace when it is due. Movement's thread.
