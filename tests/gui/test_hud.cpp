// The overlay in play, as far as it needs no window.
#include "gui/hud.h"

#include <gtest/gtest.h>

#include "content/components.h"
#include "content/materials.h"

namespace {

// Two components, two materials, with names.
struct Hud : testing::Test {
  HudPanels panels;
  void SetUp() override {
    Components = std::vector<Component>(4);
    Materials = std::vector<Material>(4);
    ComponentCount = 3;
    MaterialCount = 3;
    Components[1].name = "Block", Components[2].name = "Lamp";
    Materials[1].name = "Hull", Materials[2].name = "Brass";
  }
  static Block Held(u16 component, u16 material, unsigned rotation) {
    Block b;
    b.component = component, b.material = material, b.rotation = rotation & 7u;
    return b;
  }
  // Frames until nothing moves; the names must change only out of sight.
  int Settle(const Block &block) {
    for (int frame = 0; frame < 100; ++frame) {
      const HudPanels before = panels;
      StepPanels(&panels, block);
      EXPECT_EQ(panels.component != before.component, panels.componentAt == -264 && before.componentAt > -264);
      EXPECT_EQ(panels.material != before.material, panels.materialAt == -275 && before.materialAt > -275);
      EXPECT_EQ(panels.rotation != before.rotation, panels.rotationAt == -110 && before.rotationAt > -110);
      if (panels.componentAt == 0 && panels.materialAt == 0 && panels.rotationAt == 0) return frame + 1;
    }
    return 0;
  }
};

}  // namespace

TEST_F(Hud, APanelGoesOutBeforeItShowsSomethingElse) {
  EXPECT_EQ(Settle(Held(1, 1, 2)), 22) << "eleven frames out, eleven in";
  EXPECT_EQ(panels.component + panels.material, "BlockHull");
  EXPECT_EQ(panels.rotation, 2);
  EXPECT_EQ(Settle(Held(1, 1, 2)), 1) << "nothing changed";
  StepPanels(&panels, Held(2, 1, 2));
  EXPECT_EQ(panels.componentAt, -24);
  EXPECT_EQ(panels.materialAt, 0);
  StepPanels(&panels, Held(1, 1, 2));
  EXPECT_EQ(panels.componentAt, 0) << "changed back on the way out";
  EXPECT_EQ(Settle(Block{}), 22);
  EXPECT_EQ(panels.component + panels.material, "");
  EXPECT_EQ(Settle(Held(60000, 60000, 7)), 1) << "rows that no table has show nothing";
  for (int frame = 0; frame < 1000; ++frame) {
    StepPanels(&panels, Held(static_cast<u16>(1 + frame % 2), 1, 0));
    EXPECT_GE(panels.componentAt, -264);
  }
}

TEST_F(Hud, NamesWhatTheToolWorksOn) {
  const struct { int tool, component; } cases[] = {{0, 1}, {1, 0}, {2, 1}, {3, 2}, {4, 0}, {9, 0}};
  for (const auto &c : cases) EXPECT_EQ(ShownBlock(c.tool, Held(1, 1, 1), Held(2, 1, 1)).component, c.component) << c.tool;
  EXPECT_EQ(LookOfTool(1).crosshair, 33);
  for (const int tool : {-1, 5, 255}) EXPECT_EQ(LookOfTool(tool).crosshair, 34);
}

TEST_F(Hud, TheCursorBlinksAndTheRateIsThatOfTheLastHalfSecond) {
  const struct { double now; char cursor; } blinks[] = {{9.9, '|'}, {10, ' '}, {10.7, ' '}, {10.9, '|'}, {11.5, '|'}, {11.7, ' '}};
  for (const auto &b : blinks) EXPECT_EQ(ChatCursor(b.now, 10), b.cursor) << b.now;
  FrameRate rate;
  for (int frame = 0; frame <= 120; ++frame) CountFrame(&rate, 1000 + frame / 60.0);
  EXPECT_NEAR(rate.perSecond, 60, 1);
  CountFrame(&rate, 1100);
  EXPECT_EQ(rate.perSecond, 0);
}

TEST_F(Hud, ALongLineOfChatTakesSeveralRows) {
  ChatLines log;
  log[0] = std::string(66, 'a') + "b", log[1] = std::string(66, 'c'), log[2] = "dd", log[3] = std::string(300, 'e');
  std::string_view rows[10];
  ASSERT_EQ(ChatRows(log, 4, rows), 4);
  const std::string_view expected[4] = {"b", std::string_view(log[0]).substr(0, 66), log[1], "dd"};
  for (int row = 0; row < 4; ++row) EXPECT_EQ(rows[row], expected[row]);
  EXPECT_EQ(ChatRows(log, 10, rows), 9);
  EXPECT_EQ(ChatRows(log, 1, rows), 1);
}
