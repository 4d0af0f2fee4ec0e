#include "gameplay/chat.h"

#include "gameplay/play.h"

namespace {

struct Chat : Play {
  void SetUp() override {
    Play::SetUp();
    OnKey('T', 1);
  }
  void TearDown() override { CloseChat(); }
  static void Type(const std::string &text) {
    for (const char c : text) ChatChar(c, 1);
  }
  static std::string Text() { return ReadChat().text; }
};

}  // namespace

TEST_F(Chat, OnlyCharactersPressedAfterTheOpeningOneAreTyped) {
  Type("t");
  EXPECT_EQ(Text(), "|");
  for (const int code : {283, 284, 285, 286, 294, 295, 300, 301, 0, 1077}) ChatChar(code, 1);
  ChatChar('x', 0);
  Type("hi");
  EXPECT_EQ(Text(), "hi|");
  OnKey(KeyF10, 1);
  OnKey('3', 1);
  EXPECT_TRUE(CollisionsOn && ReadPlayer().activeTool == 0) << "the keys of play are off";
}

TEST_F(Chat, TwoHundredAndFiftySixCharactersFillTheLine) {
  Type("t" + std::string(256, 'x') + "yz");
  EXPECT_EQ(Text(), std::string(256, 'x') + "|");
  OnKey(KeyBackspace, 1);
  Type("yz");
  EXPECT_EQ(Text(), std::string(255, 'x') + "y|");
}

TEST_F(Chat, BackspaceStopsAtTheStartAndItsRepeatWaits) {
  Type("tab");
  Player p = ReadPlayer();
  SetKeyState(KeyBackspace, true);
  for (const char *left : {"a|", "|", "|"}) {
    OnKey(KeyBackspace, 1);
    HeldInputStep(&p);
    EXPECT_EQ(Text(), left);
  }
  EXPECT_EQ(ReadChat().length, 0);
}

TEST_F(Chat, EnterAndEscGoBackToPlay) {
  for (const int key : {KeyEnter, KeyEsc}) {
    OnKey('T', 1);
    Type("thello");
    OnKey(key, 1);
    Type("x");
    EXPECT_EQ(uiMode, 0);
    EXPECT_EQ(ReadChat().cursor, -2);
    EXPECT_EQ(Text(), "");
  }
}
