// The screens: what stands on each, and what its controls do. Every builder clears the table first. Main thread.
#pragma once

#include "gui/elements.h"

enum Screen : u8 {
  ScreenPause = 0, ScreenShips = 4, ScreenLanguages = 5, ScreenGraphics = 7, ScreenGame = 8, ScreenMouse = 9,
  ScreenSound = 10, ScreenOther = 11, ScreenMaterials = 12, ScreenComponents = 13, ScreenTitle = 20, ScreenBackups = 24,
  ScreenNaming = 40, ScreenFolderTaken = 41
};

void BuildPauseMenu();
void BuildTitleMenu();
void BuildShipNaming();
void BuildFolderTaken();                  // Opens the menu with the offer to play without saving, or not at all.

// Options: the table's callbacks take an argument that they don't use.
void BuildOptionsTabs(int screen);
void BuildGraphicsOptions(int);
void BuildGameOptions(int);
void BuildMouseOptions(int);
void BuildSoundOptions(int);
void BuildOtherOptions(int);
void ApplyOptions(int);
void TrackClicked(int track);            // A slider's track: two steps towards the pointer. track: its row.

// Lists of names with a scroll bar: ship files, backups, languages.
extern i16 ListFirstRow, ListChosenRow;  // -1: nothing chosen
extern u8 ListVisibleRows;
void BuildShipList(int);
void BuildBackupList(int);
void BuildLanguageList(int);
void LoadChosenShip(int);                // Takes the world mutex for the whole load. Nothing chosen: nothing happens.

// The block selectors.
extern u16 ComponentScroll;              // first line shown, from 1
extern u8 MaterialScroll;
void BuildMaterialSelector(int);
void BuildComponentSelector(int);
void RotationSwitch(int row);

// What the input hands to the current screen.
void ScreenClick(int row);               // A click on an element without a callback.
void ScrollScreen(int lines);            // Wheel, arrows and page keys: up is negative. Screens that don't scroll ignore it.
void ScreenChar(int character);          // Typed on the naming screen.
bool ScreenKey(int key);                 // Backspace, Enter, Esc there: true when the screen used the key.
