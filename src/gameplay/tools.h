// The five tools: what the three mouse buttons do, and what a held button repeats.
#pragma once

#include "gameplay/player.h"

constexpr int ToolBuild = 0, ToolCutter = 1, ToolPlane = 2, ToolPick = 3, ToolHeat = 4, ToolCount = 5;

void SelectTool(int tool);  // Main thread, as all below but HeldTool.
void MainPress();        // Presses and releases of the buttons while playing.
void MainRelease();
void SecondaryPress();
void SecondaryRelease();
void ThirdPress();
void HeldTool();         // Repeats the main button's action when it is due. Thread of Movement, move mutex held.
