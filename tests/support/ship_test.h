// What tests of ships share: a ship of their own, ships as plain maps from cells to blocks, and children that a full disk or a
// kill stops.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <functional>
#include <map>
#include <random>

#include "content/components.h"
#include "content/materials.h"
#include "core/log.h"
#include "platform/threads.h"
#include "support/installation.h"
#include "world/access.h"
#include "world/verify.h"

namespace fs = std::filesystem;
using Cell = std::array<u16, 3>;
using Cells = std::map<Cell, u64>;  // the head of each occupied cell

void Drop(Ship *ship);  // Frees it whole.
Cells CellsOf(const Ship &ship);
u16 ComponentRow(u16 id);  // FindComponent and FindMaterial as rows of a block.
u16 MaterialRow(u16 id);

// The real tables, an installation and a log of its own, and an empty ship that is stored as "a".
struct ShipTest : testing::Test {
  void SetUp() override;
  void TearDown() override { Drop(ship); }
  static std::string Log() { return ReadText("errors.txt"); }
  static bool Logged(const std::string &words) { return Count(Log(), words) != 0; }
  Ship *ship = nullptr;
};

int OnFullDisk(size_t room, const std::function<int()> &work);  // The answer of work where no file grows beyond so many bytes.
int Kills();                                                     // How often a test kills: 20 times, or TARNVALE_KILLS.
// A child works, turn by turn, until it is killed at some moment below so many microseconds; how many turns it had done by then.
unsigned Killed(std::mt19937 *random, unsigned most, const std::function<void(unsigned turn)> &work);
