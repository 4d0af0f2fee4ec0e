// The colours of the instruments: dark metal, worn enamel, amber and teal light.
#pragma once

#include "gui_paint.h"

constexpr Hue HueOf(int red, int green, int blue) {
  return {static_cast<float>(red) / 255.0f, static_cast<float>(green) / 255.0f, static_cast<float>(blue) / 255.0f};
}

constexpr Hue Black{0.0f, 0.0f, 0.0f};
constexpr Hue White{1.0f, 1.0f, 1.0f};

// Metal
constexpr Hue Pit = HueOf(14, 15, 18);
constexpr Hue Iron = HueOf(52, 54, 58);
constexpr Hue DarkSteel = HueOf(78, 81, 85);
constexpr Hue Gunmetal = HueOf(92, 96, 101);
constexpr Hue Steel = HueOf(140, 146, 152);
constexpr Hue Bright = HueOf(196, 200, 202);
constexpr Hue Brass = HueOf(206, 166, 88);

constexpr Hue Rust = HueOf(86, 58, 38);

// Paint
constexpr Hue Enamel = HueOf(222, 214, 196);
constexpr Hue Card = HueOf(232, 218, 180);
constexpr Hue TealCard = HueOf(178, 212, 200);
constexpr Hue Mustard = HueOf(226, 172, 50);
constexpr Hue Oxide = HueOf(196, 88, 46);

// Light
constexpr Hue Amber = HueOf(255, 176, 64);
constexpr Hue Teal = HueOf(96, 236, 210);
constexpr Hue GreenLight = HueOf(88, 240, 96);
constexpr Hue RedLight = HueOf(255, 62, 44);
constexpr Hue BlueLight = HueOf(72, 150, 255);
constexpr Hue YellowLight = HueOf(255, 214, 60);
constexpr Hue Phosphor = HueOf(60, 230, 90);
