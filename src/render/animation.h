// The ring of an animated block's frames and its clock, which ticks once an append.
//
// The record in the chunk is the first frame and owns the second, each further frame owns the next, and the last points
// back at the first without owning it (bit 7 of its frameLength). A ring whose last frames could not be made ends with a
// null lodNext. World mutex held, all here.
#pragma once

#include "world/tree.h"

GraphicBlock *CurrentFrame(GraphicBlock *graphic);  // Advances the clock; null when a frame without lists is reached.
void FreeFrames(GraphicBlock *graphic);             // Frees the later frames that a record owns; its own lists stay.
// Sets the record's timers for the component that it was just built from, and for all but the last of its frames makes the
// record of the next one. next: that record, still without lists, or null. False without memory (logged).
bool PrepareNextFrame(GraphicBlock *graphic, u16 component, GraphicBlock *ringHead, GraphicBlock **next);
