// Plating of ships from before turns were kept: each edge and corner was a component of its own. Local to this folder.
#pragma once

#include "world/block.h"

bool IsOldPlating(u16 component);  // A row whose class takes part in the translation.
void TranslateOldPlating(Block *b);  // Component, rotation and rotation2 as they are today. The component is a row of the table.
