// The screen that names the ship. A name is the stem of the ship's file too, so only characters that every folder takes are
// typed into it, and a name under which another ship is kept is refused: the next save would replace that ship.
#include <algorithm>
#include <string>

#include "gui/mode.h"
#include "gui/screen_parts.h"
#include "gui/screens.h"
#include "platform/files.h"
#include "platform/threads.h"
#include "platform/window.h"
#include "world/tree.h"

constexpr size_t LongestName = 63, ShortestLabel = 4;  // bytes; the label ends in the cursor
constexpr int HeadingElement = 0, FieldElement = 2;
constexpr char Cursor = '|';

// Main thread.
static Ship *NamedShip = nullptr;  // the player may drift into another one while typing
static std::string NameAtOpening;

// Whether the character may follow the name so far.
static bool FitsName(const std::string &name, int character) {
  if (name.size() >= LongestName) return false;
  const bool letter = (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
  if (letter || (character >= '0' && character <= '9') || character == '_' || character == '(' || character == ')') return true;
  return !name.empty() && (character == ' ' || character == '-' || character == '.');
}

// What can be kept of a name that came from a file.
static std::string TypeableName(const std::string &name) {
  std::string kept;
  for (const char c : name)
    if (FitsName(kept, static_cast<unsigned char>(c))) kept += c;
  return kept;
}

static void ShowHeading(const char *text) { GuiElements[HeadingElement].text = text; }

static bool OtherShipHas(const std::string &name) {
  if (name == NamedShip->fileStem) return false;
  if (NameIsTaken(("saves/" + name + ".sts").c_str())) return true;
  for (u16 row = 0; row < TheShipTable.count.load(); ++row) {
    const Ship *other = ShipAt(TheShipTable, row);
    if (other != NamedShip && other->fileStem == name) return true;
  }
  return false;
}

// World mutex held. A server may have taken all ships away in the meantime.
static bool StillFlies(const Ship *ship) {
  for (u16 row = 0; row < TheShipTable.count.load(); ++row)
    if (ShipAt(TheShipTable, row) == ship) return true;
  return false;
}

// False when the name is another ship's.
static bool NameShip(const std::string &name) {
  const ScopedLock world(&WorldMutex);
  if (!StillFlies(NamedShip)) return true;
  if (OtherShipHas(name)) return false;
  NamedShip->displayName = NamedShip->fileStem = name;
  return true;
}

static void AcceptName(int) {
  std::string name = GuiElements[FieldElement].text;
  name.pop_back();
  name.erase(name.find_last_not_of(' ') + 1);
  if (name.size() + 1 < ShortestLabel) {
    ShowHeading("Ship Name: three letters or more");
    return;
  }
  if (NamedShip != nullptr && name != NameAtOpening && !NameShip(name)) {
    ShowHeading("Ship Name: another ship has it");
    return;
  }
  CloseMenu(0);
}

static std::string NameOf(const Ship *ship) {
  if (ship == nullptr) return "";
  const ScopedLock world(&WorldMutex);
  return TypeableName(ship->displayName);
}

void BuildShipNaming() {
  NamedShip = CurrentShip();
  NameAtOpening = NameOf(NamedShip);
  ClearElements();
  GuiScreen = ScreenNaming;
  AddElement(TypeHeading, 0, 200, 0, "Ship Name", nullptr, 0);
  AddButton(0, -425, 13, AcceptName);
  AddElement(TypeLine, 0, 0, 0, "", nullptr, 0);
  GuiElements[FieldElement].text = NameAtOpening + Cursor;
}

void ScreenChar(int character) {
  std::string &label = GuiElements[FieldElement].text;
  if (GuiScreen != ScreenNaming || !FitsName(label.substr(0, label.size() - 1), character)) return;
  label.back() = static_cast<char>(character);
  label += Cursor;
}

bool ScreenKey(int key) {
  if (GuiScreen != ScreenNaming || key == KeyEsc || (key >= KeyF1 && key <= KeyF12)) return false;
  std::string &label = GuiElements[FieldElement].text;
  if (key == KeyEnter) AcceptName(0);
  if (key == KeyBackspace && label.size() > 1) label.erase(label.size() - 2, 1);
  return true;
}
