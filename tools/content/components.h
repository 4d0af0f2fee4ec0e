// The components of the game: the shapes that blocks have.
#pragma once

#include "grid.h"

#include <vector>

struct ComponentRow {
  int id;
  const char *name;  // in the English language file; null takes the name of the family's first row
  const char *stem;  // of the graphic file
  void (*draw)(Grid &grid, int form);
  int form = 0;  // handed to `draw`, for shapes that come in several forms
  const char *kind = "block";  // the class word
  const char *tags = "Common";
  int lightRed = 0, lightGreen = 0, lightBlue = 0;
  int familyOffset = 0;  // rows back to the family's first row, 0 or negative
  int frameStep = 0;     // rows to the next frame of an animation
};

// All rows in file order. The order is part of every saved ship: new rows go to the end.
const std::vector<ComponentRow> &Components();

// Writes "config/text/components" and every graphic file. False when one can't be written.
bool WriteComponents();
