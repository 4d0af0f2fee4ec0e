// The materials of the game: what blocks are made of.
#pragma once

#include <cstdint>
#include <vector>

struct MaterialRow {
  int id;
  const char *name;  // in the English language file
  int density;       // kilograms per cubic metre
  int conductivity;  // watts per metre and kelvin
  int heatCapacity;  // kilojoules per cubic metre and kelvin
  int melting;       // kelvin
  int boiling;
  int red, green, blue, alpha;
  const char *soundClass;
  const char *tags;
};

// All rows in file order. The order is part of every saved ship: new rows go to the end.
const std::vector<MaterialRow> &Materials();

// Writes "config/text/materials". False when it can't.
bool WriteMaterials();
