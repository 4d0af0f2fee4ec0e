// What the pictures and the showpiece are built with: the game's tables, a ship, and a hand that places by its rules.
#pragma once

#include <memory>

#include "gameplay/connect.h"
#include "world/tree.h"

// Where the next blocks go and of what.
struct Hand {
  Ship *ship = nullptr;
  u16 material = 1;         // row of Materials
  unsigned rotation = 0;    // 0 leaves the turn to the rules
  unsigned rotation2 = 0;
};

bool LoadStage();                          // Tables and names, from the current folder. False with the reason logged.
std::unique_ptr<Ship> NewShip();           // Empty, with its table; null without memory.
u16 MaterialRow(u16 id);                   // The row of a material; row 1 with a line on the error output without it.
bool NothingMissing();                     // Whether the tables held all that was asked for.
// Places a component by its id as a player does who aims at `target`. 1 when the cell was filled.
int Put(const Hand &hand, u16 id, Cell3 at, Cell3 target);
int PutOnFloor(const Hand &hand, u16 id, Cell3 at);  // The target is the cell below.
