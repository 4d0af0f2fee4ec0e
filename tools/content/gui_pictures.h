// The pictures of the menus and of the view while flying: what there is, and how it is drawn.
#pragma once

#include "gui_paint.h"

#include <vector>

struct GuiPicture {
  const char *path;  // below config/graphics/
  int width;
  int height;
  void (*draw)(Canvas *canvas);
};

// All of them, in the order of the game's own table.
const std::vector<GuiPicture> &GuiPictures();

// Draws them all. False when one can't be written.
bool WriteGuiPictures();
