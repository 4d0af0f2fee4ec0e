// What the screens share. Local to this folder.
#pragma once

#include <string>

#include "gui/elements.h"

constexpr int ListPitch = 40;      // design units from one row of a list to the next

void CloseMenu(int);
void AddButton(int x, int y, int languageRow, GuiCallback callback, int arg = 0);
// The scroll bar of a list: track, up, down and knob.
void AddScrollBar(int x, int knobY);
// A label of at most so many bytes: a longer one loses its middle, so that endings and dates still show.
std::string ShortLabel(const std::string &text, size_t most);

// Where Cancel leads on the list that was just opened, and on the backups behind it; at first the title.
void ReturnFromList(void (*build)());
void ClickListRow(int element);    // lists.cpp: the row becomes the chosen one, or the language
void ScrollList(int lines);
void ScrollSelector(int lines);    // selectors.cpp
