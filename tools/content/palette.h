// The colours of the game's own things: one small palette for all shapes.
#pragma once

#include "grid.h"

constexpr Paint Nothing{0, 0, 0, 0};

// Surfaces
constexpr Paint OffWhite{216, 210, 196, 255};
constexpr Paint Bone{190, 182, 164, 255};
constexpr Paint Steel{138, 144, 150, 255};
constexpr Paint Graphite{84, 89, 97, 255};
constexpr Paint Charcoal{52, 56, 63, 255};
constexpr Paint Oxide{200, 98, 52, 255};
constexpr Paint Teal{76, 150, 144, 255};
constexpr Paint Brass{206, 166, 88, 255};
constexpr Paint Leaf{122, 164, 88, 255};
constexpr Paint Cloth{150, 112, 90, 255};
constexpr Paint Mustard{226, 176, 62, 255};

// Things that glow: a byte of 250 or more keeps them out of the weather.
constexpr Paint WarmGlow{255, 236, 200, 255};
constexpr Paint ColdGlow{226, 242, 255, 255};
constexpr Paint AmberGlow{255, 190, 96, 255};
constexpr Paint TealGlow{150, 250, 228, 255};
constexpr Paint RedGlow{255, 96, 72, 255};

// Markers
constexpr Paint MarkerLine{255, 214, 120, 255};
constexpr Paint MarkerCell{120, 250, 228, 255};
