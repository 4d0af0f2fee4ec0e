// One player in a ship of their own, with every key up: what the tests of play start from.
#pragma once

#include <gtest/gtest.h>

#include "content/options.h"
#include "core/log.h"
#include "gameplay/input.h"
#include "gameplay/motion.h"
#include "gameplay/target.h"
#include "platform/window.h"
#include "support/installation.h"
#include "world/access.h"

constexpr int Middle = 5005;  // the player floats in the middle of cell (5005, 5005, 5005)

struct Play : testing::Test {
  Ship *ship = nullptr;

  void SetUp() override {
    LoadTables();
    UseTemporaryInstallation();
    TellRepeats(true);  // lines of an earlier test are not this one's repeats
    ResetOptions();
    Options.Tutorial = false;
    ship = AppendShip(&TheShipTable);
    ASSERT_NE(ship, nullptr);
    TheShipTable.current = static_cast<u16>(TheShipTable.count - 1);
    Place(5009, 5009, 5009);  // so that the player's chunk exists
    for (int key = 0; key <= KeyLast; ++key) SetKeyState(key, false);
    for (int button = 0; button < 3; ++button) SetMouseState(button, false);
    ResetPlayer();
    uiMode = 0;
    dampenMode = 0;
    nextToolTime = 0;
    wasStuck = CinematicCamera = false;
    CollisionsOn = true;
    Player p = ReadPlayer();
    for (float &c : p.relativeLoc) c = Middle + 0.5f;
    StoreMotion(p);
  }
  bool Taken(int x, int y, int z) const {
    return BlockExists(static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), *ship);
  }
  void Place(int x, int y, int z) { ASSERT_EQ(PlaceHere(ship, x, y, z, CubeOf()), 1); }
  void Remove(int x, int y, int z) { RemoveBlock(static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), ship); }
};
