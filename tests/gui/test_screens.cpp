// The screens, worked through their elements as the mouse and the keyboard do.
#include "gui/screens.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "content/categories.h"
#include "content/options.h"
#include "gui/language.h"
#include "gui/layout.h"
#include "gui/mode.h"
#include "persistence/stream.h"
#include "platform/window.h"
#include "support/installation.h"

namespace fs = std::filesystem;
using O = OptionValues;

static GuiElement *At(int x, int y, int after = -1) {
  for (int i = after + 1; i < GuiElementCount; ++i)
    if (GuiElements[i].x == x && GuiElements[i].y == y && GuiElements[i].type != TypeTrack) return &GuiElements[i];
  ADD_FAILURE() << "nothing stands at " << x << ", " << y;
  return &GuiElements[255];
}

static int Click(int x, int y) {
  At(x, y)->hovered = true;
  const int result = HandleClick();
  for (GuiElement &e : GuiElements) e.hovered = false;
  return result;
}

// Labels of the elements of a list's row types.
static std::vector<std::string> Rows() {
  std::vector<std::string> rows;
  for (int i = 0; i < GuiElementCount; ++i)
    if (GuiElements[i].type == TypeRow || GuiElements[i].type == TypeChosenRow) rows.push_back(GuiElements[i].text);
  return rows;
}

static int KnobY() {
  for (int i = 0; i < GuiElementCount; ++i)
    if (GuiElements[i].type == TypeListKnob) return GuiElements[i].y;
  return -9999;
}

namespace {

struct Screens : testing::Test {
  Ship *ship = nullptr;

  void SetUp() override {
    LoadTables();
    UseTemporaryInstallation();
    ResetOptions();
    LoadLanguage();
    ResetPlayer();
    ship = AppendShip(&TheShipTable);
    ASSERT_NE(ship, nullptr);
    TheShipTable.current = static_cast<u16>(TheShipTable.count - 1);
    ship->fileStem = ship->displayName = "Home" + std::to_string(TheShipTable.count);
    MenuClosable = true;
    uiMode = 1;
    BuildPauseMenu();
  }
};

struct Access {
  double (*get)();
  void (*set)(double);
};

}  // namespace
template <auto Value>
static Access To() {
  return {[] { return static_cast<double>((Options.*Value).load()); }, [](double v) {
            (Options.*Value) = static_cast<typename std::remove_reference_t<decltype(Options.*Value)>::value_type>(v);
          }};
}

// The ends of each slider, and what lies beyond them or between its steps.
TEST_F(Screens, ASliderStepsToItsEndsAndShowsItsValue) {
  struct Slider {
    GuiCallback build;
    Access option;
    int y;
  };
  const Slider samples{BuildGraphicsOptions, To<&O::AntiAliasing>(), 150}, voxels{BuildGraphicsOptions, To<&O::MaxVoxels>(), 50},
      caches{BuildGraphicsOptions, To<&O::CachePerFrame>(), -50}, fov{BuildGraphicsOptions, To<&O::FOV>(), -150},
      dampening{BuildGameOptions, To<&O::InertialDampening>(), 250}, mouse{BuildMouseOptions, To<&O::MouseSensitivity>(), 350},
      sound{BuildSoundOptions, To<&O::SoundVolume>(), 100}, music{BuildSoundOptions, To<&O::MusicVolume>(), -100};
  const std::string note = " - " + GuiStrings[72];
  const struct { const Slider &slider; double from; bool up; double to; std::string label; int knob; } steps[] = {
      {samples, 0, true, 2, "2" + note, -1}, {samples, 4, true, 4, "4" + note, 184}, {samples, 16, true, 16, "16" + note, 184},
      {samples, 16, false, 8, "8" + note, 184}, {samples, 2, false, 0, "0" + note, -186},
      {samples, 0, false, 0, "0" + note, -186}, {voxels, 100000, false, 100000, "100000", -167},
      {voxels, 1950000, true, 2000000, "2000000", 184}, {voxels, 4e9, true, 4e9, "4000000000", 184},
      {caches, 25, false, 25, "25", -186}, {caches, 50, false, 25, "25", -186}, {caches, 175, true, 200, "200", 184},
      {caches, 200, true, 200, "200", 184}, {fov, 75, true, 80, "80", 61}, {fov, 90, true, 90, "90", 184},
      {fov, 65, false, 60, "60", -186}, {fov, 64, false, 64, "64", -137}, {dampening, 1, false, 0.9001, "90%", 147},
      {dampening, 0.2, false, 0, "0%", -186}, {dampening, 0, true, 0.1, "10%", -149}, {dampening, 0.95, true, 1, "100%", 184},
      {dampening, 4, true, 4, "400%", 184}, {mouse, 0.05, true, 0.06, "6", 158}, {mouse, 0.01, false, 0.01, "1", 121},
      {mouse, 0.49, true, 0.49, "49", 477}, {sound, 1, true, 1, "100", 184}, {sound, 0.01, false, 0, "0", -186},
      {music, 0.7, true, 0.71, "71", 77}};
  for (const auto &s : steps) {
    SCOPED_TRACE(s.label + " from " + std::to_string(s.from));
    const auto &[build, option, y] = s.slider;
    option.set(s.from);
    build(0);
    ResizePending = false;
    const int middle = build == BuildMouseOptions ? 300 : 0;
    Click(middle + (s.up ? 305 : -305), y);
    EXPECT_NEAR(option.get(), s.to, 1e-6);
    const GuiElement *value = At(middle + 305, y);
    EXPECT_EQ(value->text, s.label);
    EXPECT_EQ(value[-1].type, TypeKnob);
    EXPECT_EQ(value[-1].x, s.knob);
    EXPECT_EQ(ResizePending, y == -150 && s.from != s.to);
    build(0);
    EXPECT_EQ(At(middle + 305, y)->text, s.label) << "when the screen is opened";
  }
}

TEST_F(Screens, ASwitchFlipsItsOptionAndItsColour) {
  const struct { GuiCallback build; int x, y; std::atomic<bool> *flag; bool greenWhenOff; int note; } switches[] = {
      {BuildGraphicsOptions, 305, 350, &Options.FullScreen, false, 71},
      {BuildGraphicsOptions, -305, 350, &Options.HighQualityTransparency, false, 0},
      {BuildGraphicsOptions, -305, 250, &Options.HighQualityFlashlight, false, 0},
      {BuildGraphicsOptions, 305, 250, &Options.LevelOfDetail, false, 0},
      {BuildGameOptions, -305, 350, &Options.Crosshair, false, 0}, {BuildGameOptions, 305, 350, &Options.ShowReticle, false, 0},
      {BuildMouseOptions, -500, 350, &Options.InvertMouse, false, 0}, {BuildOtherOptions, 0, 0, &CollisionsOn, true, 0},
      {BuildSoundOptions, 150, 300, &Options.DisableSound, false, 81}};
  for (const auto &s : switches) {
    s.build(0);
    for (int press = 0; press < 2; ++press) {
      const bool before = *s.flag;
      EXPECT_EQ(At(s.x, s.y)->type, before != s.greenWhenOff ? TypeOn : TypeOff);
      Click(s.x, s.y);
      EXPECT_NE(*s.flag, before);
      EXPECT_EQ(At(s.x, s.y)->type, before != s.greenWhenOff ? TypeOff : TypeOn);
      EXPECT_TRUE(Options.EightCache == Options.LevelOfDetail && Options.QuadCache == Options.LevelOfDetail);
      if (s.note == 0) continue;
      EXPECT_EQ(At(s.x, s.y)->text, GuiStrings[static_cast<size_t>(s.note)] + " - " + GuiStrings[72]);
    }
  }
}

TEST_F(Screens, RestoreBringsTheGraphicsBack) {
  Options.AntiAliasing = 16;
  Options.CachePerFrame = 200;
  Options.LevelOfDetail = Options.EightCache = Options.HighQualityTransparency = false;
  Options.HighQualityFlashlight = true;
  BuildGraphicsOptions(0);
  Click(650, -320);
  EXPECT_TRUE(Options.AntiAliasing == 2 && Options.CachePerFrame == 75 && Options.EightCache &&
              Options.HighQualityTransparency && !Options.HighQualityFlashlight);
  EXPECT_EQ(At(305, -50)->text, "75");
}

TEST_F(Screens, AListShowsSixteenNamesAndTheChosenOne) {
  const struct { int files, names, last; } lists[] = {{0, 0, 0}, {1, 1, 0}, {17, 17, 1}, {2000, 1020, 1004}};
  Options.SinglePlayer = false;
  BuildPauseMenu();
  Click(0, 0);
  EXPECT_EQ(GuiScreen, ScreenPause) << "no other ship in company";
  Options.SinglePlayer = true;
  uiMode = 1;
  WriteText("saves/.hidden.sts", "");
  WriteText("saves/notes.txt", "");
  int written = 0;
  for (const auto &l : lists) {
    for (; written < l.files; ++written) WriteText("saves/" + std::to_string(written) + (written % 2 ? ".sts" : ".ssf"), "");
    BuildShipList(0);
    EXPECT_EQ(KnobY(), 210);
    EXPECT_EQ(Rows().size(), static_cast<size_t>(std::min(l.names, 16)));
    ScrollScreen(-1);
    EXPECT_EQ(ListFirstRow, 0);
    LoadChosenShip(0);
    EXPECT_EQ(uiMode, 1) << "nothing is chosen: nothing happens";
    if (l.names == 0) continue;
    Click(0, 350);
    const std::string chosen = Rows()[0];
    for (int line = 0; line < l.last; ++line) Click(300, -300);
    EXPECT_EQ(ListFirstRow, l.last);
    ScrollScreen(18);
    EXPECT_EQ(ListFirstRow, l.last) << "the end";
    EXPECT_EQ(KnobY(), l.last == 0 ? 210 : -240);
    EXPECT_EQ(Rows().back(), l.last == 0 ? chosen : At(0, -290)->text);
    EXPECT_EQ(At(0, l.last == 0 ? 350 : -290)->type, TypeChosenRow);
  }
  WriteText("saves/A ship with a rather long name2026-11-23.bak", "");
  Click(-600, 400);
  EXPECT_EQ(GuiScreen, ScreenBackups);
  EXPECT_EQ(ListChosenRow, -1);
  EXPECT_EQ(Rows(), std::vector<std::string>{"A ship with a ..2026-11-23.bak"});
  Click(175, -400);
  EXPECT_EQ(GuiScreen, ScreenShips);
  Click(175, -400);
  EXPECT_EQ(GuiScreen, ScreenTitle);
}

// Clicks from the pause menu, and where they lead.
TEST_F(Screens, CancelLeadsBackToWhereAListWasOpened) {
  WriteText("saves/Old2026-11-23.bak", "");
  const struct { std::vector<std::pair<int, int>> clicks; int screen; } ways[] = {
      {{{0, 0}, {175, -400}}, ScreenPause},
      {{{0, 0}, {-600, 400}, {175, -400}, {175, -400}}, ScreenPause},
      {{{650, -400}, {-650, -400}}, ScreenPause},
      {{{650, -400}, {0, 398}}, ScreenTitle},
      {{{650, -400}, {0, 398}, {-800, -480}, {-650, -400}}, ScreenTitle}};
  for (const auto &way : ways) {
    BuildPauseMenu();
    for (const auto &[x, y] : way.clicks) Click(x, y);
    EXPECT_EQ(GuiScreen, way.screen);
  }
  BuildBackupList(0);
  EXPECT_EQ(At(0, 500)->text, GuiStrings[82]);
}

TEST_F(Screens, NothingLooksChosenUntilThePointerMovesOrClicks) {
  for (const GuiTypeSource &source : GuiTypeSources) SetGuiType(source);
  const int middleX = Options.ScreenWidth / 2, middleY = Options.ScreenHeight / 2;
  for (const bool moves : {true, false}) {
    uiMode = 0;
    ToggleMenu();
    for (int i = 0; i < GuiElementCount; ++i) SetHitBox(&GuiElements[i], GuiTypes[GuiElements[i].type], 0, 0.5f);
    PointAt(middleX, middleY);  // as the window reports when it shows the pointer
    UpdateHover();
    EXPECT_FALSE(At(0, 0)->hovered);
    if (moves) PointAt(middleX + 1, middleY);
    else WakePointer();
    EXPECT_TRUE(At(0, 0)->hovered);
    EXPECT_FALSE(At(0, 200)->hovered);
  }
}

// Opens the list or the backups, chooses the file and loads it.
static Ship *Load(void (*list)(int), const std::string &file) {
  const u16 count = TheShipTable.count;
  list(0);
  for (int i = 0; i < GuiElementCount; ++i)
    if (GuiElements[i].text == file) ScreenClick(i);
  uiMode = 1;
  LoadChosenShip(0);
  EXPECT_EQ(TheShipTable.count, count + 1) << file;
  EXPECT_EQ(uiMode, 0);
  EXPECT_EQ(ListChosenRow, -1);
  return ShipAt(TheShipTable, count);
}

TEST_F(Screens, ALoadedShipStandsBeforeThePlayerAndSavesUnderANameOfItsOwn) {
  const std::string home = ship->fileStem;
  for (const auto &[name, corner] : {std::pair{"Middle", 4990}, {"Corner", 100}}) {
    Ship *made = AppendShip(&TheShipTable);
    for (int i = 0; i <= 20; i += 20) PlaceHere(made, corner + i, corner + i, corner + i, CubeOf());
    made->fileStem = made->displayName = name;
    ASSERT_EQ(SaveShipByName(made), 1);
    made->fileStem = "gone";
  }
  ASSERT_EQ(SaveShipByName(ship), 1);
  fs::copy_file("saves/Middle.sts", "saves/Middle2026-11-23.bak");
  WriteText("saves/Middle.ssf", "no ship");
  const struct { void (*list)(int); std::string file, stem; } loads[] = {
      {BuildShipList, "Middle.sts", "Middle"}, {BuildShipList, "Corner.sts", "Corner"}, {BuildShipList, "Middle.sts", "Middle 2"},
      {BuildBackupList, "Middle2026-11-23.bak", "Middle2026-11-23"}, {BuildShipList, home + ".sts", home + " 2"}};
  for (const auto &l : loads) {
    const Ship *loaded = Load(l.list, l.file);
    EXPECT_EQ(loaded->fileStem, l.stem);
    if (loaded->summary->blockCount == 0) continue;
    float place[3];
    const Player p = ReadPlayer();
    RelativeTo(*loaded, p.solarLoc, place);
    for (const float c : place) EXPECT_NEAR(c, loaded->summary->maxX + 3, 1) << l.file;
  }
  const Ship *broken = Load(BuildShipList, "Middle.ssf");
  EXPECT_TRUE(broken->summary == nullptr || broken->summary->blockCount == 0) << "what can't be read leaves an empty ship";
  EXPECT_NE(broken->fileStem, "Middle");
}

TEST_F(Screens, ASelectorOpensScrollsAndPutsARowInTheHand) {
  SortMaterials();
  SortComponents();
  const struct { void (*build)(int); std::vector<Category> *categories; bool materials; } selectors[] = {
      {BuildMaterialSelector, &MaterialCategories, true}, {BuildComponentSelector, &ComponentCategories, false}};
  for (const auto &s : selectors) {
    s.build(0);
    EXPECT_EQ(LastSelector, s.materials ? 2 : 1);
    EXPECT_EQ(KnobY(), 220);
    // The open tab lies in the light, the other one in the shade.
    const int count = GuiElementCount;
    EXPECT_EQ(std::count_if(GuiElements, GuiElements + count, [](const GuiElement &e) { return e.type == TypeTabShade; }), 1);
    EXPECT_EQ(At(s.materials ? -380 : -680, s.materials ? 458 : 450, s.materials ? 6 : 5)->type, TypeTabShade);
    Click(-690, 284);
    ASSERT_TRUE((*s.categories)[1].open);
    EXPECT_EQ(At(-690, 284)->type, TypeExpandMinus);
    Click(-570 + 290, 242);
    const Block held = ReadPlayer().heldBlock;
    EXPECT_EQ(s.materials ? held.material : held.component, (*s.categories)[1].rows[1]);
    EXPECT_EQ(At(-570 + 290, 242)->type, TypeChosenRow);
    for (size_t i = 0; i < s.categories->size(); ++i) (*s.categories)[i].open = true;
    s.build(0);
    size_t lines = 0;
    for (const Category &c : *s.categories) lines += 1 + (c.rows.size() + 2) / 3;
    const auto scroll = [&s] { return s.materials ? size_t{MaterialScroll} : size_t{ComponentScroll}; };
    Click(-761, -300);
    EXPECT_EQ(scroll(), 2u);
    for (int page = 0; page < 100; ++page) ScrollScreen(18);
    EXPECT_EQ(scroll(), lines - 17);
    EXPECT_EQ(KnobY(), -230);
    int lowest = 1000;
    for (int i = 0; i < GuiElementCount; ++i)
      if (GuiElements[i].type == TypeRow) lowest = std::min<int>(lowest, GuiElements[i].y);
    EXPECT_EQ(lowest, 284 - 42 * 17) << "the last line is in sight";
    const int debugLines = static_cast<int>((*s.categories)[0].rows.size() + 2) / 3;
    EXPECT_EQ(At(-690, lowest + 42 * debugLines)->text, "debug") << "and it is the group that nobody looks for";
    ScrollScreen(-5000);
    EXPECT_EQ(scroll(), 1u);
    Click(s.materials ? -380 : -680, s.materials ? 458 : 450);
    EXPECT_EQ(GuiScreen, s.materials ? ScreenComponents : ScreenMaterials);
  }
}

TEST_F(Screens, TheRotationSwitchLetsTheBlockTurnByItself) {
  const struct { unsigned before, after; u8 type; } presses[] = {{3, 0, TypeOn}, {0, 1, TypeOff}, {1, 0, TypeOn}};
  for (const auto &c : presses) {
    Player p = ReadPlayer();
    p.heldBlock.rotation = c.before & 7u;
    p.heldBlock.rotation2 = 2;
    StoreHand(p);
    BuildComponentSelector(0);
    Click(600, -380);
    p = ReadPlayer();
    EXPECT_TRUE(p.heldBlock.rotation == c.after && p.heldBlock.rotation2 == 0);
    EXPECT_EQ(At(600, -380)->type, c.type);
    BuildComponentSelector(0);
    EXPECT_EQ(At(600, -380)->type, c.type);
  }
}

static void Type(const std::string &text) {
  for (const char c : text) ScreenChar(static_cast<unsigned char>(c));
}

TEST_F(Screens, AShipIsNamedButNeverOverAnother) {
  WriteText("saves/Taken.sts", "");
  AppendShip(&TheShipTable)->fileStem = "Flying";
  const std::string home = ship->fileStem, full(70, 'n');
  const struct { std::string typed, name; bool closes; } names[] = {
      {"ab", home, false},   {"Taken", home, false},           {"Flying", home, false},
      {"../a/\\:*b|\xe4", "abX", true}, {" .-Heron (2) -_. ", "Heron (2) -_.", true}, {full, full.substr(0, 63), true}};
  for (const auto &n : names) {
    uiMode = 1;
    BuildShipNaming();
    for (int i = 0; i < 80; ++i) ScreenKey(KeyBackspace);
    EXPECT_EQ(At(0, 0)->text, "|");
    Type(n.typed);
    if (n.name == "abX") Type("X");
    EXPECT_FALSE(ScreenKey(KeyEsc));
    EXPECT_TRUE(ScreenKey('Q')) << "a key that types does nothing else";
    EXPECT_TRUE(ScreenKey(KeyEnter));
    EXPECT_EQ(ship->fileStem, n.name);
    EXPECT_EQ(ship->displayName, n.name);
    EXPECT_EQ(uiMode, n.closes ? 0 : 1) << n.typed;
    EXPECT_EQ(GuiElements[0].text == "Ship Name", n.closes);
  }
  ship->displayName = "Two\x01Words";
  ToggleMenu();
  BuildShipNaming();
  EXPECT_EQ(At(0, 0)->text, "TwoWords|");
  Click(0, -425);
  EXPECT_EQ(ship->displayName, "Two\x01Words") << "untouched, so it stays";
}

TEST_F(Screens, AGameThatSavesNothingAsksFirstAndSaysSoInItsMenu) {
  uiMode = 0;
  BuildFolderTaken();
  EXPECT_TRUE(uiMode == 1 && GuiScreen == ScreenFolderTaken);
  EXPECT_EQ(At(0, 250)->text, "Another game or a server is using this folder");
  ToggleMenu();
  EXPECT_EQ(uiMode, 1) << "the question wants an answer";
  EXPECT_EQ(Click(0, -200), -1) << "one leaves the game";
  EXPECT_EQ(At(0, 0)->text, "Play Unsaved");
  Click(0, 0);
  EXPECT_TRUE(uiMode == 0 && MenuClosable);
  SavingOn = false;
  Options.FOV = 90;
  EXPECT_FALSE(SaveOptions());
  ToggleMenu();
  EXPECT_EQ(At(0, 500)->text, "This game saves nothing");
  SavingOn = true;
  const int count = GuiElementCount;
  BuildPauseMenu();
  EXPECT_EQ(GuiElementCount, count - 1);
  EXPECT_FALSE(fs::exists("config/text/options"));
}
