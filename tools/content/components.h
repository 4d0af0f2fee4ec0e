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

// A row of the class "block" with the given tags; `form` is handed to `draw`.
ComponentRow Plain(int id, const char *name, const char *stem, void (*draw)(Grid &, int), const char *tags,
                   int form = 0);

// The row as a light of this colour, of the class "light".
ComponentRow Lamp(ComponentRow row, int red, int green, int blue);

// The forms of one thing, with ids from the base's on: the first row is the base, the others follow it and share
// its name and class. Form i draws with `form` i into the stem i.
void AddForms(std::vector<ComponentRow> *rows, ComponentRow base, const char *const *stems, int count);

// The same as an animation: its frames follow one another, and the last leads back to the first. The class becomes
// "animation", unless the base says "singleanim".
void AddAnimation(std::vector<ComponentRow> *rows, ComponentRow base, const char *const *stems, int count);

// Adds the rows of the families that join up: pipes, cables, girders, corridors, plating and the like.
void AppendFamilies(std::vector<ComponentRow> *rows);

// Adds doors, coloured lamps, furnishings and whatever else a ship wants; stands behind the families.
void AppendMore(std::vector<ComponentRow> *rows);

// All rows in file order. The order is part of every saved ship: new rows go to the end.
const std::vector<ComponentRow> &Components();

// Writes "config/text/components" and every graphic file. False when one can't be written.
bool WriteComponents();
