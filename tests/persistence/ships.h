// What the tests of ship files share: ships as plain maps from cells to blocks, built, compared and packed by hand.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "world/tree.h"

using Cell = std::array<u16, 3>;
using Cells = std::map<Cell, u64>;  // the head of each occupied cell

u64 PlacedHead(unsigned material, unsigned component, unsigned rotation, unsigned rotation2);
Cells MixedCells(unsigned count, unsigned seed);     // A dense body of so many blocks of mixed rows and rotations.
void Drop(Ship *ship);                               // Frees it whole.
void Fill(Ship *ship, const Cells &cells);
Cells CellsOf(const Ship &ship);
std::vector<u8> PackByHand(const std::string &name, const Cells &cells);  // The documented bytes, from the map alone.
std::vector<u8> Gunzip(const std::string &path);     // The content, up to 64 KiB of it.
std::string GzipMember(const std::string &content, int level);  // A whole gzip stream; level 0 stores the bytes, 1 packs.
