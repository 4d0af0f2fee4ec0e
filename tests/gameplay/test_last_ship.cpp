// The ship flown last comes back with the next start, in whatever form; and what can't be read is never flown over.
#include "gameplay/last_ship.h"

#include <filesystem>

#include "content/settings.h"
#include "gameplay/play.h"
#include "gui/language.h"
#include "net/chat_log.h"
#include "net/connection.h"
#include "persistence/stream.h"
#include "persistence/text_form.h"

namespace fs = std::filesystem;

namespace {

struct LastShip : Play {
  void SetUp() override {
    Play::SetUp();
    LoadSettings();
    LoadLanguage();
  }
  void TearDown() override { Online = false; }
  void Name(const char *stem) const { ship->fileStem = ship->displayName = stem; }
};

}  // namespace

static std::string Line() {
  ChatLines lines;
  CopyChatLog(&lines);
  return lines[0];
}

TEST_F(LastShip, IsTheOneThatWasSavedOrLeftAlone) {
  Name("Heron of Dusk");
  RememberShip(*ship);
  EXPECT_EQ(SettingText(Setting::Ship), "") << "it has no file yet";
  OnKey(KeyEsc, 1);
  EXPECT_EQ(ReadText("config/text/settings"), "Ship Heron of Dusk\n") << "Esc saves it";
  WriteText("saves/Grebe.ssf", "text");
  Name("Grebe");
  RememberShip(*ship);
  EXPECT_EQ(SettingText(Setting::Ship), "Grebe") << "a text ship that was not saved yet";
  WriteText("saves/Theirs.sts", "");
  Name("Theirs");
  for (const bool online : {true, false}) {
    Options.SinglePlayer = false;  // on a server, and cut off from one
    Online = online;
    RememberShip(*ship);
    EXPECT_EQ(SettingText(Setting::Ship), "Grebe") << "a server's ship";
  }
}

TEST_F(LastShip, IsNotForgottenWhileItIsMissing) {
  const Player p = ReadPlayer();
  WriteText("config/text/settings", "Ship Lost\n");
  LoadSettings();
  EXPECT_FALSE(LoadLastShip(ship, p.solarLoc));
  OnKey(KeyEsc, 1);
  EXPECT_TRUE(fs::exists("saves/Default.sts"));
  EXPECT_EQ(SettingText(Setting::Ship), "Lost") << "nobody chose the one in its place";
  Name("Found");
  ASSERT_EQ(SaveShipByName(ship), 1);
  for (const char *flown : {"Found", "Default"}) {
    Name(flown);
    RememberShip(*ship);
    EXPECT_EQ(SettingText(Setting::Ship), flown);
  }
}

TEST_F(LastShip, ComesBackFromBothFormsAndLeavesOthersAlone) {
  Name("Heron");
  ASSERT_EQ(SaveShipByName(ship), 1);
  ASSERT_EQ(SaveShipText(*ship, "Grebe", false, false, false), 1);
  WriteText("saves/Rubbish.sts", "no ship at all");
  WriteText("saves/Torn.ssf", "no text ship");
  fs::create_directory("saves/Folder");
  const std::string gone = GuiStrings[TextLastShipGone] + " ", unread = GuiStrings[TextLastShipUnread] + " ";
  const struct { std::string stem, stemAfter, line; } cases[] = {
      {"", "Default", "-"},     {"Default", "Default", "-"},                {"Heron", "Heron", "-"},
      {"Grebe", "Grebe", "-"},  {"Lost", "Default", gone + "Lost"},         {"Folder", "Default", gone + "Folder"},
      {"Rubbish", "Default", unread + "Rubbish"}, {"Torn", "Default", unread + "Torn"}};
  const Player p = ReadPlayer();
  for (const auto &c : cases) {
    WriteText("config/text/settings", c.stem.empty() ? "" : "Ship " + c.stem + "\n");
    LoadSettings();
    AddChatLine("-");
    Ship *first = NewTestShip();
    const bool loaded = LoadLastShip(first, p.solarLoc);
    EXPECT_EQ(loaded, c.stemAfter != "Default") << c.stem;
    EXPECT_EQ(first->fileStem, c.stemAfter);
    EXPECT_EQ(Line(), c.line);
    EXPECT_EQ(BlockExists(5009, 5009, 5009, *first), loaded) << "else nothing of it is there";
    EXPECT_EQ(first->keepStreamAs != nullptr, c.stem == "Grebe") << c.stem;
    FreeShip(first);
    delete first;
  }
  EXPECT_EQ(ReadText("saves/Rubbish.sts"), "no ship at all");
}
