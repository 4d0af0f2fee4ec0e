// Things that look a little different each time: they are turned at random, so all sides of them fit.
#include "noise.h"
#include "palette.h"
#include "shapes_families.h"

#include <cmath>

// Pits with fittings in one side of a machine; the rim stays whole, so that it fills its cell.
static void MachineSide(Grid &top, Dice *dice) {
  Box(top, {0, 15, 0, 15, 15, 15}, Stuff(206));
  BoxEdges(top, {0, 15, 0, 15, 15, 15}, 1, Stuff(232));
  for (int i = 0; i < 7; i++) {
    const int x = RollInt(dice, 1, 11);
    const int z = RollInt(dice, 1, 11);
    const int wide = RollInt(dice, 1, 4);
    const int deep = RollInt(dice, 1, 4);
    const Paint paint = i == 0 ? Oxide : i == 1 ? Brass : i < 4 ? Graphite : Stuff(RollInt(dice, 160, 250));
    Box(top, {x, 15, z, x + (x + wide > 14 ? 0 : wide), 15, z + (z + deep > 14 ? 0 : deep)}, paint);
  }
}

static void MachineSlots(Grid &top, Dice *dice) {
  const int at = RollInt(dice, 2, 6);
  for (int i = 0; i < 4; i++) Box(top, {at + i * 2, 15, 3, at + i * 2, 15, RollInt(dice, 8, 12)}, Charcoal);
}

static void MachineGauge(Grid &top, Dice *dice) {
  const float x = RollBetween(dice, 5.0f, 10.0f);
  Bar(top, Axis::Y, x, 7.5f, 3.6f, 15, 15, Charcoal);
  Bar(top, Axis::Y, x, 7.5f, 2.8f, 15, 15, RollInt(dice, 0, 1) == 0 ? OffWhite : Mustard);
}

static void MachineLights(Grid &top, Dice *dice) {
  const Paint glow[3] = {TealGlow, AmberGlow, RedGlow};
  for (int i = 0; i < 4; i++) Box(top, {3 + i * 3, 15, 12, 3 + i * 3, 15, 12}, glow[RollInt(dice, 0, 2)]);
}

void DrawMachinery(Grid &grid, int form) {
  Dice dice{2000U + static_cast<uint32_t>(form) * 613U};
  void (*const details[])(Grid &, Dice *) = {MachineSlots, MachineGauge, MachineLights};
  Box(grid, WholeGrid, Stuff(200));
  Grid top;
  MachineSide(top, &dice);
  details[form % 3](top, &dice);
  SixSides(grid, top);
  Weather(grid, 200U + static_cast<uint32_t>(form), 0.6f);
}

// Pebbles in a fine ground, cut flat at the sides.
void DrawConglomerate(Grid &grid, int form) {
  Dice dice{3200U + static_cast<uint32_t>(form) * 331U};
  Box(grid, WholeGrid, Stuff(168));
  for (int i = 0; i < 60; i++) {
    float centre[3];
    for (float &c : centre) c = RollBetween(&dice, 0.0f, 15.0f);
    const Paint pebble = i % 9 == 0 ? Bone : Stuff(RollInt(&dice, 196, 252));
    Ball(grid, centre[0], centre[1], centre[2], RollBetween(&dice, 1.2f, 2.8f), pebble);
  }
  Weather(grid, 320U + static_cast<uint32_t>(form), 0.5f);
}

// A stone that touches all sides of its cell.
void DrawBoulder(Grid &grid, int form) {
  const uint32_t seed = 370U + static_cast<uint32_t>(form);
  for (int x = 0; x < GridEdge; x++) {
    for (int y = 0; y < GridEdge; y++) {
      for (int z = 0; z < GridEdge; z++) {
        const float a = static_cast<float>(x), b = static_cast<float>(y), c = static_cast<float>(z);
        const float lump = LayeredNoise(a * 0.22f, b * 0.22f, c * 0.22f, 2, seed);
        const float distance = std::hypot(a - 7.5f, b - 7.5f, c - 7.5f);
        const float grain = LatticeValue(x, y, z, seed);
        if (distance < 6.2f + lump * 4.4f) At(grid, x, y, z) = Stuff(190 + static_cast<int>(lump * 60.0f + grain * 12.0f));
      }
    }
  }
  Weather(grid, seed, 1.2f);
}

// Tracks that run at right angles between chips.
void DrawCircuitry(Grid &grid, int form) {
  Dice dice{4200U + static_cast<uint32_t>(form) * 89U};
  const Paint board = Scaled(Leaf, 0.42f);
  Box(grid, WholeGrid, board);
  Grid top;
  Box(top, {0, 15, 0, 15, 15, 15}, board);
  for (int i = 0; i < 6; i++) {
    const int x = RollInt(&dice, 1, 14);
    const int z = RollInt(&dice, 1, 14);
    Box(top, {x, 15, 0, x, 15, z}, Brass);
    Box(top, {x, 15, z, 15, 15, z}, Scaled(Brass, 0.9f));
  }
  for (int i = 0; i < 3; i++) {
    const int x = RollInt(&dice, 1, 9);
    const int z = RollInt(&dice, 1, 9);
    Box(top, {x, 15, z, x + 4, 15, z + 3}, Charcoal);
    Box(top, {x + 1, 15, z + 1, x + 1, 15, z + 1}, i == form % 3 ? TealGlow : OffWhite);
  }
  BoxEdges(top, {0, 15, 0, 15, 15, 15}, 1, Stuff(200));
  SixSides(grid, top);
  Weather(grid, 420U + static_cast<uint32_t>(form), 0.4f);
}

// A spike from the middle of the cell, thick at its foot.
static void Spike(Grid &grid, const float tip[3], Paint paint) {
  const float middle[3] = {7.5f, 7.5f, 7.5f};
  constexpr float reach[3] = {1.0f, 0.75f, 0.45f};
  constexpr float width[3] = {0.6f, 1.1f, 1.9f};
  for (int i = 0; i < 3; i++) {
    float end[3];
    for (int a = 0; a < 3; a++) end[a] = middle[a] + (tip[a] - middle[a]) * reach[i];
    Beam(grid, middle, end, width[i], Scaled(paint, 1.0f - 0.16f * static_cast<float>(i)));
  }
}

void DrawCrystal(Grid &grid, int form) {
  Dice dice{3520U + static_cast<uint32_t>(form) * 47U};
  const Paint stone = form % 2 == 0 ? Paint{214, 190, 248, 255} : Paint{178, 214, 248, 255};
  for (int i = 0; i < 9; i++) {
    float tip[3];
    for (float &t : tip) t = RollBetween(&dice, 1.0f, 14.0f);
    if (i < 6) tip[i / 2] = i % 2 == 0 ? 0.0f : 15.0f;
    Spike(grid, tip, Scaled(stone, RollBetween(&dice, 0.8f, 1.0f)));
  }
  Weather(grid, 3520U + static_cast<uint32_t>(form), 1.2f);
}
