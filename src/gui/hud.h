// What the overlay in play is made of, before anything is drawn: panels that slide, the looks of the tools, the cursor of the
// chat, the measured frame rate. Main thread only.
#pragma once

#include <string>
#include <string_view>

#include "net/chat_log.h"
#include "world/block.h"

constexpr size_t HudLineWidth = 66;  // letters of the chat that stand beside the block panels in any window

// The panels that name the held block. A place is 0 when the panel is in, and below 0 by so many design units on its way.
struct HudPanels {
  std::string component, material;  // the names that they show now
  int rotation = 0;                 // 0 turns by itself, 1 to 6
  int componentAt = 0, materialAt = 0, rotationAt = 0;
};

struct ToolLook {
  u8 lamps[4];   // rows of GuiTypes, left to right
  u8 crosshair;  // likewise
};

struct FrameRate {
  double since = 0;  // begin of the span that is counted
  int frames = 0;    // drawn in it
  int perSecond = 0; // of the last whole span
};

void StepPanels(HudPanels *panels, const Block &shown);  // One frame. A zero block has no names.
const ToolLook &LookOfTool(int tool);                    // Any number: one that is no tool has a look too.
Block ShownBlock(int tool, const Block &held, const Block &aimedAt);  // What the panels name; zero for nothing.
// The rows in which the chat shows, newest first and most of them at the most; a long line takes several. Their number.
int ChatRows(const ChatLines &log, int most, std::string_view *rows);
char ChatCursor(double now, double blink);               // "|" or a blank; blink: when it goes for the first time.
void CountFrame(FrameRate *rate, double now);
