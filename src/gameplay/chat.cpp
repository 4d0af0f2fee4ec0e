// The line of chat while it is typed. The text always holds "|" where the next character goes.
#include "gameplay/chat.h"

#include "content/options.h"
#include "gameplay/player.h"
#include "gui/language.h"
#include "net/chat_log.h"
#include "net/session.h"
#include "platform/threads.h"
#include "platform/window.h"

constexpr double BlinkDelay = 0.6, RepeatDelay = 0.3, RepeatPeriod = 0.05;

static ChatEntry Entry;  // under ChatMutex
static Mutex ChatMutex{MutexRank::Leaf, "chat", {}};

ChatEntry ReadChat() {
  const ScopedLock lock(&ChatMutex);
  return Entry;
}

void OpenChat() {
  {
    const ScopedLock lock(&ChatMutex);
    Entry = ChatEntry{.text = " ", .cursor = -1, .length = -1, .blink = ClockNow() + BlinkDelay};
  }
  uiMode = 2;
  ShowMouseCursor(true);
}

void CloseChat() {
  uiMode = 0;
  ShowMouseCursor(false);
  const ScopedLock lock(&ChatMutex);
  Entry = ChatEntry{};
}

// ChatMutex held. False with nothing to delete.
static bool DeleteCharacter(double now) {
  if (Entry.cursor <= 0) return false;
  Entry.text[Entry.cursor] = 0;
  --Entry.cursor;
  --Entry.length;
  Entry.text[Entry.cursor] = '|';
  Entry.blink = now + BlinkDelay;
  return true;
}

// As a server would show it to all.
static std::string Echo(const std::string &line) {
  return line[0] == '|' ? "* " + Options.PlayerName + " " + line.substr(1) : Options.PlayerName + ": " + line;
}

// An empty line, or an empty action, needs no reader.
static bool SaysSomething(const std::string &line) {
  return line.find_first_not_of(' ', line[0] == '|' ? 1 : 0) != std::string::npos;
}

// SendChat drops in silence what can't be sent. A line that vanishes under its writer's fingers looks like a fault of the game, so
// this road says what became of it.
static void SendOrTell(const char *text) {
  const std::string line = LineToSend(text);
  if (line.empty()) {
    AddChatLine(GuiStrings[TextOnlyCommand].c_str());
  } else if (Online) {
    SendChat(text);
  } else if (SaysSomething(line)) {
    AddChatLine(Echo(line).c_str());
    AddChatLine(GuiStrings[TextAlone].c_str());
  }
}

// What is too long stays in the field, to be shortened.
static void SendLine() {
  ChatEntry line = ReadChat();
  if (line.cursor >= MaxChatLength) return AddChatLine(GuiStrings[TextTooLong].c_str());
  if (line.cursor > 0) {
    line.text[line.cursor] = 0;
    SendOrTell(line.text);
  }
  CloseChat();
}

void ChatKey(int key) {
  if (key == KeyEsc) CloseChat();
  if (key == KeyEnter) SendLine();
  if (key != KeyBackspace) return;
  const double now = ClockNow();
  const ScopedLock lock(&ChatMutex);
  if (DeleteCharacter(now)) Entry.repeat = now + RepeatDelay;
}

// Codes that some layouts report as characters for keys that move or end the line.
static bool IsKeyCode(int character) {
  return (character >= KeyUp && character <= KeyRight) || character == KeyEnter || character == KeyBackspace ||
         character == KeyHome || character == KeyEnd;
}

void ChatChar(int character, int action) {
  if (uiMode != 2 || action != 1 || IsKeyCode(character)) return;
  const ScopedLock lock(&ChatMutex);
  if (Entry.cursor < -1 || Entry.length >= MaxChatLength) return;
  if (Entry.cursor >= 0) {
    if (character < 1 || character > 255 || (character >= 0x80 && character < 0xC0)) return;  // what can't be drawn
    Entry.text[Entry.cursor] = static_cast<char>(character);
  }
  ++Entry.cursor;
  ++Entry.length;
  Entry.text[Entry.cursor] = '|';
  Entry.text[Entry.cursor + 1] = 0;
  Entry.blink = ClockNow() + BlinkDelay;
}

// A repeat belongs to the press that it follows: with the key up none is due.
void ChatHeldStep() {
  const double now = ClockNow();
  const ScopedLock lock(&ChatMutex);
  if (!KeyIsDown(KeyBackspace)) Entry.repeat = 0;
  if (Entry.repeat == 0 || now <= Entry.repeat) return;
  Entry.repeat = now + RepeatPeriod;
  DeleteCharacter(now);
}
