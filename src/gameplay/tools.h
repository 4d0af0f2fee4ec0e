// The five tools: what the three mouse buttons do, and what a held button repeats.
#pragma once

#include "gameplay/player.h"

constexpr int ToolBuild = 0, ToolCutter = 1, ToolPlane = 2, ToolPick = 3, ToolHeat = 4;

void MainPress();        // Presses and releases of the buttons while playing; main thread.
void MainRelease();
void SecondaryPress();
void SecondaryRelease();
void ThirdPress();
void HeldTool();         // Repeats the main button's action when it is due; thread of Movement.
void WheelNotch(bool up);  // One notch of the wheel outside of the menu.
