// What the tests of ship files share: ships from plain maps, loaded and packed by hand.
#pragma once

#include <string>
#include <vector>

#include "support/ship_test.h"

u64 PlacedHead(unsigned material, unsigned component, unsigned rotation, unsigned rotation2);
Cells MixedCells(unsigned count, unsigned seed);     // A dense body of so many blocks of mixed rows and rotations.
void Fill(Ship *ship, const Cells &cells);
Ship *NewShip(const Cells &cells, const std::string &stem = "a");  // To drop.
// The blocks of a sound ship that is loaded so; *result gets the load's answer.
Cells LoadedBy(const std::function<int(Ship *)> &load, int *result = nullptr);
Cells StreamCells(const std::string &path, int *result = nullptr);  // LoadedBy for a stream, and for saves/<name>/.
Cells FolderCells(const std::string &name, int *result = nullptr);
std::string Words(const std::vector<u16> &words);    // Their bytes.
std::string PackByHand(const std::string &name, const Cells &cells);  // The documented bytes, from the map alone.
std::string Gunzip(const std::string &path);         // The content, up to 64 KiB of it.
std::string GzipMember(const std::string &content, int level);  // A whole gzip stream; level 0 stores the bytes, 1 packs.
