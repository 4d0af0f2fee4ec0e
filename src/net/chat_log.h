// The last lines of chat, newest first. Any thread; one lock guards them.
#pragma once

#include <array>
#include <string>

constexpr int ChatLogRows = 16;
using ChatLines = std::array<std::string, ChatLogRows>;

void AddChatLine(const char *text);                            // Added, and logged with the label "Msg:". Null is "Error".
void AddLabelledChatLine(const char *label, const char *text); // The same with another label in the log.
void ReplaceChatLines(int count, const char *text);            // The newest rows, all by one text; nothing is logged.
void CopyChatLog(ChatLines *out);                              // Keeps the strings' memory: no allocation once they fit.
