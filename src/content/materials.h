// The materials: what a block is made of. Read once from "config/text/materials", constant afterwards.
#pragma once

#include <string>
#include <vector>

#include "core/types.h"

struct Material {
  u16 id = 0;                 // stable identifier; 0 marks the empty row 0 and the end row
  std::string name;           // display name, from the language file
  u16 column2 = 0;            // kept, used by nothing
  u16 density = 0;            // mass of a full block
  u16 conductivity = 0, heatCapacity = 0;
  u16 meltingPoint = 0, boilingPoint = 0;  // degrees
  u8 column8 = 0, column9 = 0;             // kept, used by nothing
  u16 column10 = 0, column11 = 0;
  u8 red = 0, green = 0, blue = 0;
  u8 alpha = 0;               // 255 is opaque; anything else makes its blocks see-through
  std::string soundClass;     // one word, at most 63 bytes
  std::string tags[4];        // category words, at most 31 bytes each
};

constexpr int MaxMaterials = 254;  // rows of the file: MaterialCount is one byte wide

extern std::vector<Material> Materials;  // row 0 empty, rows from 1, then the end row with id 0
extern u8 MaterialCount;                 // the index of the end row

// Fills the table from the file; returns the index of the end row, or 0 on failure (which it has logged).
int LoadMaterials();
// The row with this id, or 0.
int FindMaterial(u16 id);
