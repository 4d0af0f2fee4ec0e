// The forms that a ship can have on disk, told by the name of its file in saves/.
#pragma once

#include <string>

#include "world/tree.h"

enum class ShipForm { Unknown, Stream, Text, Raw, Folder };

struct ShipName {
  ShipForm form = ShipForm::Unknown;
  std::string file;      // in saves/
  std::string stem;      // what the game calls it
  bool ours = false;     // a name under which the game itself would save; backups and kept copies have others
};

ShipName ParseShipName(const std::string &word);  // With or without "saves/" in front; form Unknown when it is none.
std::string PathOf(const ShipName &name);
const char *FormWord(ShipForm form);

// Reads a ship, unfinished, into an empty record. False when there is none; what is wrong is in the log.
bool ReadShip(const ShipName &name, Ship *ship);
bool WriteShip(const ShipName &name, Ship *ship);  // Replaces the old one whole, or leaves it. Changes the ship's fileStem.
