// The ring of an animated block's frames and its clock, which ticks once an append.
#pragma once

#include "world/tree.h"

GraphicBlock *CurrentFrame(GraphicBlock *graphic);  // Advances the clock; null when a frame without lists is reached.
