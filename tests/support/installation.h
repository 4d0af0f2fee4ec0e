// What tests stand on: the game's own tables and a folder of its own for files.
#pragma once

#include <string>

#include "world/tree.h"

void LoadTables();                      // The real materials and components, once a process; the test fails without them.
std::string UseTemporaryInstallation(); // A new folder with config/ linked and saves/, cache/ empty, made current; its path. It goes when the test ends.
Ship *NewTestShip();                    // An empty ship with its table, owned by the test process.
// A plain cube of the first rock, or of the given rows.
Block CubeOf(u16 material = 5, u16 component = 2, unsigned rotation = 1, unsigned rotation2 = 0);
int PlaceHere(Ship *ship, int x, int y, int z, Block b);  // PlaceBlock on ints.
std::string ReadText(const std::string &path);            // A whole file; empty when it isn't there.
int Count(const std::string &text, const std::string &word);  // How often the word stands in the text.
void WriteText(const std::string &path, const std::string &text);  // A whole file; its folders are made at need.
