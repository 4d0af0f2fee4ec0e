#include "gameplay/chat.h"

#include "gameplay/play.h"
#include "gui/language.h"
#include "net/chat_log.h"

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

// The newest lines, one behind the other.
static std::string Shown(int count) {
  ChatLines lines;
  CopyChatLog(&lines);
  std::string shown;
  for (int row = count - 1; row >= 0; --row) shown += lines[static_cast<size_t>(row)] + "\n";
  return shown;
}

TEST_F(Chat, NoLineVanishesWithoutAWord) {
  for (const char *language : {"english", "deutsch", "francais", "italiano"}) {
    Options.Language = language;
    Options.PlayerName = "Ada";
    ASSERT_TRUE(LoadLanguage());
    const std::string alone = GuiStrings[TextAlone] + "\n", x255(255, 'x');
    ASSERT_GT(alone.size(), 10u);
    const struct { std::string typed, shown; } lines[] = {
        {"hello", "Ada: hello\n" + alone}, {"/me waves", "* Ada waves\n" + alone}, {": waves", "* Ada waves\n" + alone},
        {x255, "Ada: " + x255 + "\n" + alone}, {x255 + "y", "-\n" + GuiStrings[TextTooLong] + "\n"},
        {"/dance", "-\n" + GuiStrings[TextOnlyCommand] + "\n"}, {"/" + x255, "-\n" + GuiStrings[TextTooLong] + "\n"},
        {"", "\n-\n"}, {"  ", "\n-\n"}, {": ", "\n-\n"}, {"/me  ", "\n-\n"}};
    for (const auto &l : lines) {
      ReplaceChatLines(2, "");
      AddChatLine("-");
      OnKey('T', 1);
      Type("t" + l.typed);
      OnKey(KeyEnter, 1);
      EXPECT_EQ(Shown(2), l.shown);
      const bool kept = l.typed.size() > 255;
      EXPECT_EQ(Text(), kept ? l.typed + "|" : "") << "what is too long can be shortened";
      CloseChat();
    }
  }
}
