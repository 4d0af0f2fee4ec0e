// The English language file: the numbered texts, the names of the tables, and the tutorial.
#include "language.h"

#include "components.h"
#include "materials.h"
#include "output.h"

#include <string>

// Row n of the texts is entry n - 1. Screens refer to rows by number, so a row that no screen shows yet
// keeps its place.
static const char *const guiTexts[] = {
    "Tarnvale",              // 1
    "Yes",
    "No",
    "On",
    "Off",                   // 5
    "Loading",
    "Saving",
    "Saved",
    "saved copies of your ships",      // under "Other": headings of the backup list
    "Choose one, then load it",        // 10
    "Ships",
    "Load Ship",
    "Done",
    "Options",
    "Quit",                  // 15
    "Back",
    "Next",
    "Delete",
    "Rename",
    "Name Ship",             // 20
    "New Ship",
    "Save Ship",
    "Controls",
    "Keyboard",
    "Default",               // 25
    "Invert Mouse",
    "Block Marker",
    "Inertial Dampening",
    "Jet Force",
    "Camera",                // 30
    "Flashlight",
    "Helmet",
    "Suit",
    "OK",
    "Cancel",                // 35
    "Ship Name",
    "Player Name",
    "Server",
    "Connect",
    "Graphics",              // 40
    "Low",
    "Medium",
    "High",
    "Brightness",
    "Contrast",              // 45
    "Music",
    "Sound",
    "Crosshair",
    "Language",
    "English",               // 50
    "Resolution",
    "Width",
    "Height",
    "Antialiasing",
    "Textures",              // 55
    "Shadows",
    "Light",
    "Temperature",
    "Air",
    "Fuel",                  // 60
    "Auto Rotate",
    "Materials",
    "Components",
    "Rotation",
    "Resume",                // 65
    "Tutorial",
    "Help",
    "Chat",
    "Mouse",
    "Game",                  // 70
    "Full Screen",
    "after a restart",
    "Voxel Budget",
    "Fine Glass",
    "Detail",                // 75
    "Blocks per Pass",
    "Field of View",
    "Apply",
    "Restore Defaults",
    "Mouse Speed",           // 80
    "Silence",
    "Other",
    "Fly Through Blocks",
    "Threaded Input",
    "Backups",               // 85
    "Fine Flashlight",
    "Play",
    "Quick Load",
    "Distant Detail",
};

// Steps of the tutorial: a text, then what ends the step.
static const char tutorial[] =
    "0 #DemoTutorialStart\n"
    "Welcome to Tarnvale. You drift in a suit beside a small rock. $ Press Space to stop and hold still.\n"
    "1 #Space\n"
    "W A S D and two more keys fire the suit jets. Nothing slows you but Space. $ Fly up to the rock.\n"
    "1 #WASD\n"
    "Q opens the block list: shapes on one tab, materials on the other. $ Open it, look round, and close it.\n"
    "1 #Q\n"
    "Here is a lamp. Without light all things are black. $ Aim at the rock and click the left button.\n"
    "1000 #SetComponent\n"
    "1 #LMB-BlockPlace\n"
    "And a plain block. Build on: the right button takes a block away, the middle one copies it.\n"
    "2 #SetComponent\n"
    "1 #LMB-BlockPlace\n"
    "Esc opens the menu and saves your ship. F1 closes this window. $ Press Esc. The rest is yours.\n"
    "1 #Esc\n"
    "Good building.\n"
    "0 #End\n";

bool WriteLanguage() {
  std::string text;
  for (const char *row : guiTexts) text += std::string(row) + "\n";
  text += "0 #MatStart\n";
  for (const MaterialRow &row : Materials()) text += std::to_string(row.id) + " " + row.name + "\n";
  text += "0 #ComStart\n";
  for (const ComponentRow &row : Components()) {
    if (row.name != nullptr) text += std::to_string(row.id) + " " + row.name + "\n";
  }
  text += "0 #CatStart\n";
  return WriteIfChanged("config/language/english", text + tutorial);
}
