// Grows bodies of rock.
#pragma once

#include "core/random.h"
#include "world/tree.h"

// Fills the ship round its middle cell and puts that cell on the world point (x, y, z). Takes the world mutex.
void GenerateAsteroid(u16 size, i64 x, i64 y, i64 z, Ship *ship);
void GenerateAsteroidSeeded(u16 size, i64 x, i64 y, i64 z, Ship *ship, u32 seed);  // The same with a given seed.
// In a new row, which counts once the body is whole. False without room. Takes the world mutex.
bool AddAsteroid(u16 size, i64 x, i64 y, i64 z, ShipTable *table);
// Puts a shining stone on each of its six sides: rock gives no light, and only a body of size 1 has a heart that does. The
// body is the one that was grown last, round the middle cell. Takes the world mutex.
void LightAsteroid(Ship *ship);
// Places a block at the cell and grows on from it, at most depth - 1 cells along free ones. b: the template, written at each
// block. World mutex held. Its calls nest as deep as depth.
void GrowLump(i16 depth, i16 x, i16 y, i16 z, RandomState *g, Block *b, Ship *ship);
