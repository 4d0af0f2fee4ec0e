#include "gameplay/injury.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

#include "support/installation.h"

static std::string Report(Player *p, float speedChange) {
  testing::internal::CaptureStdout();
  ImpactDamage(p, speedChange);
  return testing::internal::GetCapturedStdout();
}

TEST(Injury, LuckGivesTwiceTheWholeTwoThirdsOrHalfAboveTheThreshold) {
  Player p;
  for (const float s : {0.0f, 13393.0f, -13393.0f}) EXPECT_EQ(Report(&p, s), "");
  std::set<int> seen;
  for (int i = 0; i < 60; ++i) {
    float g = 0;
    int damage = -1;
    p.suitPunctured = false;
    const std::string report = Report(&p, -13400.0f - static_cast<float>(i));
    EXPECT_EQ(std::sscanf(report.c_str(), "Ouch! %f G Impact for %d damage! \n", &g, &damage), 2);
    EXPECT_FALSE(damage <= 3 && p.suitPunctured);
    seen.insert(damage);
  }
  EXPECT_EQ(seen, (std::set<int>{2, 4, 8}));
}

TEST(Injury, TheHardestImpactIsCappedAndPuncturesOnlyAWornSuit) {
  for (const bool worn : {true, false}) {
    Player p;
    p.suitOn = worn;
    const std::string report = Report(&p, 2e6f);
    EXPECT_NE(report.find("for 200 damage! \n"), std::string::npos);
    EXPECT_EQ(report.find("Oh no! Suit Puncture! \n") != std::string::npos, worn);
    EXPECT_EQ(p.suitPunctured, worn);
  }
}

TEST(Injury, AWoundWorsensToTheLastLevelAndThenIsDeath) {
  UseTemporaryInstallation();
  Player p;
  for (int level = 2; level <= 15; ++level) {
    WorsenWound(&p);
    EXPECT_EQ(p.woundLevel, level);
  }
  EXPECT_EQ(ReadText("errors.txt"), "");
  WorsenWound(&p);
  EXPECT_EQ(p.woundLevel, 15);
  EXPECT_EQ(ReadText("errors.txt"), "*ERR: DEATH! \n");
}
