// The last lines of chat.
#include "net/chat_log.h"

#include <algorithm>

#include "core/log.h"
#include "platform/threads.h"

static ChatLines Lines;  // row 0 is the newest; under ChatLogMutex
static Mutex ChatLogMutex{MutexRank::Leaf, "chat log", {}};

void AddLabelledChatLine(const char *label, const char *text) {
  if (text == nullptr) text = "Error";
  LogText(label, text);
  const ScopedLock lock(&ChatLogMutex);
  std::rotate(Lines.begin(), Lines.end() - 1, Lines.end());
  Lines[0] = text;
}

void AddChatLine(const char *text) { AddLabelledChatLine("Msg:", text); }

void ReplaceChatLines(int count, const char *text) {
  const ScopedLock lock(&ChatLogMutex);
  for (int row = 0; row < std::min(count, ChatLogRows); ++row) Lines[static_cast<size_t>(row)] = text;
}

void CopyChatLog(ChatLines *out) {
  const ScopedLock lock(&ChatLogMutex);
  *out = Lines;
}
