// Random numbers that depend on nothing but their arguments, so that every run makes the same content.
#pragma once

#include <cstdint>

// A small generator; the same seed gives the same sequence everywhere.
struct Dice {
  uint32_t state = 1;
};

// The next number, 0 up to but not including 1.
float Roll(Dice *dice);

// The next number, low up to but not including high.
float RollBetween(Dice *dice, float low, float high);

// The next whole number, low to high inclusive.
int RollInt(Dice *dice, int low, int high);

// A fixed random value for a lattice point, 0 up to but not including 1.
float LatticeValue(int x, int y, int z, uint32_t seed);

// Smooth noise in space, 0 to 1, with features about one unit across.
float SmoothNoise(float x, float y, float z, uint32_t seed);

// Several octaves of smooth noise, 0 to 1, each half as strong and twice as fine as the one before.
float LayeredNoise(float x, float y, float z, int octaves, uint32_t seed);
