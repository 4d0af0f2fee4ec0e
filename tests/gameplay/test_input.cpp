#include "gameplay/input.h"

#include <cmath>
#include <filesystem>

#include "content/categories.h"
#include "gameplay/debug_keys.h"
#include "gameplay/play.h"
#include "gui/elements.h"
#include "gui/language.h"
#include "gui/mode.h"
#include "gui/screens.h"
#include "platform/files.h"
#include "platform/threads.h"
#include "render/debris.h"

using Input = Play;

static void PressWith(std::initializer_list<int> held, int key) {
  for (const int k : held) SetKeyState(k, true);
  OnKey(key, 1);
  for (const int k : held) SetKeyState(k, false);
}

TEST_F(Input, TheMouseTurnsTheViewWithinItsLimits) {
  const struct { float yaw, pitch; int dx, dy; bool invert, cinematic, control; float toYaw, toPitch; } cases[] = {
      {0, 0, 10, 20, true, false, false, -0.5f, -1},       {0, 0, 10, 20, false, false, false, -0.5f, 1},
      {0, 0, 500, 500, true, false, true, -6.5f, -5},      {0, 0, -500, -500, true, false, false, 6.5f, 5},
      {0, 0, 500, 500, true, true, false, -0.65f, -0.45f}, {0, 0, -500, 500, true, true, true, 0.21666665f, 0},
      {-178, -88, 500, 500, true, false, false, 175.5f, -90}, {178, 88, -500, -500, true, false, false, -175.5f, 90}};
  for (const auto &c : cases) {
    Player p = ReadPlayer();
    p.yaw = c.yaw, p.pitch = c.pitch;
    StoreView(p);
    Options.InvertMouse = c.invert;
    CinematicCamera = c.cinematic;
    SetKeyState(KeyLeftControl, c.control);
    OnMousePosition(512 + c.dx, 384 + c.dy);
    p = ReadPlayer();
    EXPECT_FLOAT_EQ(p.yaw, c.toYaw);
    EXPECT_FLOAT_EQ(p.pitch, c.toPitch);
    EXPECT_NEAR(p.sinYaw, std::sin(c.toYaw * 0.017453292f), 1e-6);
    EXPECT_NEAR(p.cosPitch, std::cos(c.toPitch * 0.017453292f), 1e-6);
  }
}

// The switch is green while the mouse pushed forward raises the view, and says so in each language.
TEST_F(Input, TheMouseSwitchSaysWhatItDoes) {
  for (const auto &[language, up] : {std::pair{"english", "Up"}, {"deutsch", "hoch"}, {"francais", "haut"}, {"italiano", "alto"}}) {
    Options.Language = language;
    ASSERT_TRUE(LoadLanguage());
    BuildMouseOptions(0);
    int row = 0;
    while (GuiElements[row].x != -500) ++row;
    EXPECT_NE(GuiElements[row].text.find(up), std::string::npos) << GuiElements[row].text;
    for (int press = 0; press < 2; ++press) {
      uiMode = 0;
      OnMousePosition(512, 384 - 20);
      EXPECT_EQ(ReadPlayer().pitch > 0, GuiElements[row].type == TypeOn);
      OnMousePosition(512, 384 + 20);
      GuiElements[row].callback(row);
    }
  }
  MenuClosable = true;
}

TEST_F(Input, TheWheelTurnsTheBlockInHand) {
  const struct { unsigned rotation, rotation2; bool control, alt; int notches; unsigned toRotation, toRotation2; } cases[] = {
      {1, 0, false, false, 1, 1, 1}, {1, 3, false, false, 1, 2, 0}, {6, 3, false, false, 1, 1, 0}, {1, 1, false, false, -1, 1, 0},
      {1, 0, false, false, -1, 6, 3}, {4, 0, false, false, -1, 3, 3}, {2, 3, true, false, 1, 2, 0}, {2, 0, true, false, -1, 2, 3},
      {6, 2, false, true, 1, 1, 2}, {1, 2, false, true, -1, 6, 2}, {2, 3, true, true, 1, 2, 0}, {1, 2, false, false, 3, 2, 1}};
  for (const auto &c : cases) {
    Player p = ReadPlayer();
    p.heldBlock.rotation = c.rotation & 7u;
    p.heldBlock.rotation2 = c.rotation2 & 3u;
    StoreHand(p);
    SetKeyState(KeyLeftControl, c.control);
    SetKeyState(KeyLeftAlt, c.alt);
    OnMouseWheel(c.notches);
    EXPECT_EQ(ReadPlayer().heldBlock.rotation, c.toRotation) << c.rotation << ' ' << c.rotation2 << ' ' << c.notches;
    EXPECT_EQ(ReadPlayer().heldBlock.rotation2, c.toRotation2) << c.rotation << ' ' << c.rotation2 << ' ' << c.notches;
  }
}

TEST_F(Input, TheWheelMovesALockedPlaneAndHeatsTheHeatTool) {
  const struct { i16 plane[3]; int notches; i16 after[3]; } cases[] = {
      {{5010, 0, 0}, 1, {5011, 0, 0}}, {{0, 5000, 9}, 1, {0, 4999, 9}}, {{0, 0, 5000}, -2, {0, 0, 5002}},
      {{1, 0, 0}, 3, {1, 0, 0}}};
  Target t = ReadPlayer().target;
  t.aimState = 3;
  for (const auto &c : cases) {
    for (int a = 0; a < 3; ++a) t.lockPlane[a] = c.plane[a];
    StoreAim(t);
    OnMouseWheel(c.notches);
    for (int a = 0; a < 3; ++a) EXPECT_EQ(ReadPlayer().target.lockPlane[a], c.after[a]);
  }
  OnKey('5', 1);
  OnMouseWheel(50);
  EXPECT_EQ(ReadPlayer().toolTemperature, 16400);
  OnMouseWheel(-50);
  EXPECT_EQ(ReadPlayer().toolTemperature, 400);
}

TEST_F(Input, EscOpensTheMenuAndSavesTheShipOfALonePlayer) {
  ASSERT_TRUE(LoadLanguage());
  const struct { bool alone; u8 mode; bool saved; } presses[] = {{false, 1, false}, {true, 0, false}, {true, 1, true}};
  for (const auto &press : presses) {
    Options.SinglePlayer = press.alone;
    OnKey(KeyEsc, 1);
    EXPECT_EQ(uiMode, press.mode);
    EXPECT_EQ(std::filesystem::exists("saves/Default.sts"), press.saved);
  }
  std::filesystem::remove_all("saves");
  for (int i = 0; i < 4; ++i) OnKey(KeyEsc, 1);
  EXPECT_EQ(Count(ReadText("errors.txt"), "Msg: The ship could not be saved"), 2) << "each time";
  std::filesystem::create_directory("saves");
  for (int i = 0; i < 4; ++i) OnKey(KeyEsc, 1);
  EXPECT_EQ(Count(ReadText("errors.txt"), "Msg: The ship is saved again"), 1) << "and the first save that works, once";
  WriteText("saves/Default.sts", "of another program");
  for (int i = 0; i < 2; ++i) OnKey(KeyEsc, 1);
  EXPECT_EQ(Count(ReadText("errors.txt"), "Msg: Default.sts was changed by another program. That ship is kept as Default (other).sts"), 1);
  std::filesystem::remove_all("saves");
  SavingOn = false;
  for (int i = 0; i < 2; ++i) OnKey(KeyEsc, 1);
  BuildFolderTaken();
  OnKey(KeyEsc, 1);
  EXPECT_EQ(GuiScreen, ScreenFolderTaken);
  MenuClosable = SavingOn = true;
  EXPECT_EQ(Count(ReadText("errors.txt"), "Msg: This game saves nothing: the ship is not saved"), 1) << "nor said before the answer";
  EXPECT_FALSE(std::filesystem::exists("saves"));
}

TEST_F(Input, TheFunctionKeysTraceExplodeAndResetTheCaches) {
  InitDebris();
  OnKey(KeyF5, 1);
  EXPECT_EQ(ReadText("errors.txt").find("Found one"), std::string::npos);
  Place(Middle, Middle, Middle - 1);
  OnKey(KeyF5, 1);
  RefreshTarget();
  PressWith({KeyLeftControl}, KeyF2);
  EXPECT_FALSE(Taken(Middle, Middle, Middle - 1));
  {
    const ScopedLock lock(&WorldMutex);
    EXPECT_GT(DebrisCount(), 1200u) << "four times 300 pieces, and the markers";
  }
  CacheResetAllowed = ClockNow() - 1;
  PressWith({KeyLeftControl}, KeyF12);
  OnKey(KeyF12, 1);
  const std::string log = ReadText("errors.txt");
  EXPECT_NE(log.find("*ERR: Found one \n"), std::string::npos);
  EXPECT_NE(log.find("info: Emptying Lighting and Graphics Cache, then regnerating it ALL. \n"), std::string::npos);
  EXPECT_EQ(log.find("info: Emptying Lighting and Graphics Cache \n"), std::string::npos) << "once in five seconds";
}

TEST_F(Input, F9PrintsTheBlockAndLogsThePlayer) {
  for (int axis = 0; axis < 3; ++axis) ship->position[axis] = -40000000 - axis;
  Place(Middle, Middle, Middle - 1);
  RefreshTarget();
  Player p = ReadPlayer();
  p.solarLoc[0] = 1, p.solarLoc[1] = -20000000000, p.solarLoc[2] = 3;
  p.velocity[0] = 1000, p.velocity[1] = -500, p.velocity[2] = 0;
  p.speed = 1500;
  p.shipIndex = 7;
  StoreMotion(p);
  const size_t before = ReadText("errors.txt").size();
  testing::internal::CaptureStdout();
  OnKey(KeyF9, 1);
  const std::string printed = testing::internal::GetCapturedStdout(), logged = ReadText("errors.txt").substr(before);
  EXPECT_EQ(logged,
            ":PlayerSolarLoc 1 -20000000000 3 \n:PlayerRelativeLoc 5005.500000 5005.500000 5005.500000 \n"
            ":PlayerShipSolarLoc -40000000 -40000001 -40000002 \n:Shipnum 7 \n"
            "Speed : 4.50m/s 0.46G's (+3.00000x -1.50000y +0.00000z) \n");
  EXPECT_TRUE(printed.starts_with("5005x, 5005y, 5004z : ") && printed.ends_with("Visible \n" + logged)) << printed;
}

static void ShowAt(int element, i16 left, i16 bottom, i16 right, i16 top) {  // as drawing does; x grows to the left
  GuiElement &e = GuiElements[element];
  e.hitLeft = left, e.hitBottom = bottom, e.hitRight = right, e.hitTop = top;
}

TEST_F(Input, TheMouseWorksTheMenuAndLeavesTheViewAlone) {
  GuiTypes[TypeButton].hoverClass = 1;
  for (const int button : {Options.controls.mainMouse.load(), Options.controls.secondaryMouse.load()}) {
    OnKey(KeyEsc, 1);
    OnMousePosition(512 + 90, 384 - 40);
    EXPECT_EQ(ReadPlayer().yaw, 0);
    ShowAt(0, -100, 30, -80, 50);
    nextToolTime = 0;
    OnMouseButton(button, 1);
    EXPECT_EQ(uiMode, 0) << "Resume";
    EXPECT_EQ(nextToolTime > ClockNow() + 59, button == Options.controls.mainMouse) << "the click builds nothing";
    OnMouseButton(button, 0);
  }
  QuitRequested = false;
  BackupName.clear();
  OnKey(KeyEsc, 1);
  OnMousePosition(512 + 90, 384 - 40);
  ShowAt(3, -100, 30, -80, 50);
  OnMouseButton(Options.controls.secondaryMouse, 1);
  EXPECT_TRUE(QuitRequested);
  EXPECT_EQ(BackupName.size(), std::string("Default2026-01-01.bak").size());
  EXPECT_EQ(BackupName.find("Default2"), 0u);
  QuitRequested = false;
}

TEST_F(Input, TheBlockKeyOpensTheListUsedLastWhichWheelAndKeysScroll) {
  const int q = Options.controls.blockSelect;
  SortComponents();
  for (Category &c : ComponentCategories) c.open = true;
  OnKey(q, 1);
  EXPECT_EQ(GuiScreen, ScreenComponents);
  const struct { int notches, key, line; } scrolls[] = {
      {-3, 0, 4}, {1, 0, 3}, {0, KeyDown, 4}, {0, KeyPageDown, 22}, {0, KeyUp, 21}, {0, KeyPageUp, 3}, {9, 0, 1}};
  for (const auto &s : scrolls) {
    OnMouseWheel(s.notches);
    if (s.key != 0) OnKey(s.key, 1);
    EXPECT_EQ(ComponentScroll, s.line);
  }
  BuildMaterialSelector(0);
  OnKey(q, 1);
  EXPECT_EQ(uiMode, 0);
  OnKey(q, 1);
  EXPECT_EQ(GuiScreen, ScreenMaterials);
  BuildGameOptions(0);
  OnKey(q, 1);
  EXPECT_EQ(GuiScreen, ScreenGame) << "options stay until Apply";
  MenuClosable = true;
}

TEST_F(Input, LettersOfAShipsNameDoNothingElse) {
  OnKey(KeyEsc, 1);
  BuildShipNaming();
  const int q = Options.controls.blockSelect;
  for (const int key : {q, int{'T'}, int{KeyBackspace}}) {
    OnKey(key, 1);
    if (key < 256) OnCharacter(key, 1);
    OnCharacter(0, 0);
  }
  EXPECT_EQ(uiMode, 1);
  OnKey(KeyEnter, 1);
  EXPECT_EQ(ship->fileStem, "DefaultQ");
  EXPECT_EQ(uiMode, 0);
}
