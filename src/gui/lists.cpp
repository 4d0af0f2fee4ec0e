// Lists of files: ships, backups and languages. The folder is read when a list is opened; scrolling and choosing work on
// those names, so that a save in between can't move the chosen one.
#include <algorithm>
#include <filesystem>
#include <vector>

#include "content/categories.h"
#include "content/options.h"
#include "core/log.h"
#include "core/utils.h"
#include "gameplay/player.h"
#include "gui/language.h"
#include "gui/mode.h"
#include "gui/screen_parts.h"
#include "gui/screens.h"
#include "net/chat_log.h"
#include "net/connection.h"
#include "persistence/stream.h"
#include "persistence/text_form.h"
#include "platform/files.h"
#include "platform/threads.h"

constexpr size_t MaxNames = 1020;
constexpr int WindowRows = 16, FirstRowY = 350, BarX = 300;
constexpr int KnobWay = 450, KnobBottom = -240;
constexpr size_t LongestLabel = 30;
constexpr int MaxLanguages = 21, LanguagePitch = 42, LanguageTop = 440;  // rows count from 1: the heading stands at the top
constexpr int SightReach = 30;  // blocks; what is further off on an axis was not put before the player

i16 ListFirstRow = 0, ListChosenRow = -1;
u8 ListVisibleRows = 0;
static std::vector<std::string> Names;  // of the list that was opened last; main thread
static void (*WayBack)() = BuildTitleMenu;  // where Cancel leads; main thread

static bool EndsWith(const std::string &name, const char *ending) {
  return name.size() >= 3 && name.compare(name.size() - 3, 3, ending) == 0;
}

static bool IsShip(const std::string &name) { return EndsWith(name, "ssf") || EndsWith(name, "sts"); }
static bool IsBackup(const std::string &name) { return EndsWith(name, "bak"); }

// The options file holds the language as one word.
static bool IsLanguage(const std::string &name) { return name.find_first_of(" \t\r\n") == std::string::npos; }

// The folder's names in its own order.
static void ReadNames(const char *folder, size_t most, bool (*wanted)(const std::string &)) {
  Names.clear();
  std::error_code error;
  for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end && Names.size() < most; it.increment(error)) {
    const std::string name = it->path().filename().string();
    if (name[0] != '.' && wanted(name)) Names.push_back(name);
  }
}

static int LastFirstRow() { return std::max(static_cast<int>(Names.size()) - WindowRows, 0); }

// At its top while the list is at its beginning.
static int KnobY() {
  const double beginning = LastFirstRow() == 0 ? 1.0 : 1.0 - static_cast<double>(ListFirstRow) / LastFirstRow();
  return KnobBottom + static_cast<int>(std::clamp(beginning, 0.0, 1.0) * KnobWay);
}

static void AddNameRow(int name, int place) {
  AddElement(name == ListChosenRow ? TypeChosenRow : TypeRow, 0, FirstRowY - ListPitch * place, 0,
             ShortLabel(Names[static_cast<size_t>(name)], LongestLabel).c_str(), nullptr, name);
}

// The window of rows; the chosen one stands below them when it lies outside.
static void AddNameRows() {
  ListVisibleRows = WindowRows;
  const int count = static_cast<int>(Names.size());
  ListFirstRow = static_cast<i16>(std::clamp<int>(ListFirstRow, 0, LastFirstRow()));
  if (ListChosenRow >= count) ListChosenRow = -1;
  const int end = std::min(ListFirstRow + WindowRows, count);
  for (int name = ListFirstRow; name < end; ++name) AddNameRow(name, name - ListFirstRow);
  if (ListChosenRow >= 0 && (ListChosenRow < ListFirstRow || ListChosenRow >= end)) AddNameRow(ListChosenRow, WindowRows);
  AddScrollBar(BarX, KnobY());
}

static void GoBack(int) { WayBack(); }

// Backups are opened from the ships and lead back to them.
static void BackToShips(int) {
  void (*const build)() = WayBack;
  BuildShipList(0);
  ReturnFromList(build);
}

static void ShowShips() {
  ClearElements();
  const bool backups = GuiScreen == ScreenBackups;
  if (backups) {
    AddElement(TypeHeading, 0, 500, 82, "", nullptr, 0);
    AddElement(TypeHeading, 0, 450, 9, "", nullptr, 0);
    AddElement(TypeHeading, 0, 400, 10, "", nullptr, 0);
  } else {
    AddElement(TypeHeading, 0, 450, 12, "", nullptr, 0);
  }
  AddButton(-175, -400, 12, LoadChosenShip);
  AddButton(175, -400, 35, backups ? BackToShips : GoBack);
  if (!backups) AddButton(-600, 400, 85, BuildBackupList);
  AddNameRows();
}

static void OpenShips(Screen screen, bool (*wanted)(const std::string &)) {
  ReadNames("saves", MaxNames, wanted);
  GuiScreen = screen;
  ListFirstRow = 0;
  ListChosenRow = -1;
  ShowShips();
}

void BuildShipList(int) {
  OpenShips(ScreenShips, IsShip);
  WayBack = BuildTitleMenu;
}

void BuildBackupList(int) { OpenShips(ScreenBackups, IsBackup); }
void ReturnFromList(void (*build)()) { WayBack = build; }

void BuildLanguageList(int) {
  WayBack = BuildTitleMenu;
  ReadNames("config/language", MaxLanguages, IsLanguage);
  ClearElements();
  GuiScreen = ScreenLanguages;
  AddElement(TypeHeading, 0, 450, 49, "", nullptr, 0);
  for (int i = 0; i < static_cast<int>(Names.size()); ++i) {
    const std::string &name = Names[static_cast<size_t>(i)];
    AddElement(name == Options.Language ? TypeChosenRow : TypeRow, 0, LanguageTop - LanguagePitch * (i + 1), 0,
               name.c_str(), nullptr, i);
  }
  AddButton(-650, -400, 35, GoBack);
}

static void ChooseLanguage(const std::string &name) {
  const std::string before = Options.Language;
  Options.Language = name;
  if (!LoadLanguage()) Options.Language = before;  // a file that happens to lie there
  SortByNewNames();
  SaveOptions();
  BuildTitleMenu();
}

void ClickListRow(int element) {
  const GuiElement &e = GuiElements[element];
  const bool isRow = e.type == TypeRow || e.type == TypeChosenRow;
  if (!isRow || e.arg < 0 || static_cast<size_t>(e.arg) >= Names.size()) return;
  if (GuiScreen == ScreenLanguages) {
    ChooseLanguage(Names[static_cast<size_t>(e.arg)]);
    return;
  }
  ListChosenRow = static_cast<i16>(e.arg);
  ShowShips();
}

void ScrollList(int lines) {
  ListFirstRow = static_cast<i16>(std::clamp(ListFirstRow + lines, 0, LastFirstRow()));
  ShowShips();
}

// World mutex held.
static bool StemInUse(const std::string &stem, const Ship *but) {
  for (u16 row = 0; row < TheShipTable.count.load(); ++row) {
    const Ship *ship = ShipAt(TheShipTable, row);
    if (ship != but && ship->fileStem == stem) return true;
  }
  return false;
}

// A ship that came from file saves under its own name, unless another ship is kept there: a copy of a ship that flies here
// already, or an old text file beside a newer one. Then it gets the next free name. World mutex held.
static void KeepStemsApart(Ship *ship, const std::string &file) {
  const auto taken = [&](const std::string &stem) {
    return StemInUse(stem, ship) || (stem + ".sts" != file && NameIsTaken(("saves/" + stem + ".sts").c_str()));
  };
  if (ship->fileStem.empty()) ship->fileStem = "Ship";
  const std::string base(FrontOf(ship->fileStem, LongestStem));  // room for the number, and for what a save puts behind
  for (int copy = 2; taken(ship->fileStem); ++copy) ship->fileStem = base + " " + std::to_string(copy);
}

// Ships are placed as if they lay round the middle of their cube. One that doesn't is put where it would be if it did: off
// its high corner. World mutex held.
static void BringIntoSight(Ship *ship, const i64 (&solarLoc)[3]) {
  if (ship->summary == nullptr || ship->summary->blockCount == 0) return;
  const ShipSummary &s = *ship->summary;
  const u16 low[3] = {s.minX, s.minY, s.minZ}, high[3] = {s.maxX, s.maxY, s.maxZ};
  float place[3];
  RelativeTo(*ship, solarLoc, place);
  bool seen = true;
  for (int a = 0; a < 3; ++a)
    seen = seen && place[a] > static_cast<float>(low[a] - SightReach) && place[a] < static_cast<float>(high[a] + SightReach);
  for (int a = 0; a < 3 && !seen; ++a) ship->position[a] = WorldDifference(solarLoc[a], (high[a] + 3) * UnitsPerBlock);
}

// What there is to tell of it, or empty.
static std::string LoadShipFile(const std::string &name, const i64 (&at)[3]) {
  std::string news;
  if (name.back() != 'f') AddShipTelling(&TheShipTable, name.c_str(), at[0], at[1], at[2], &news);
  else if (AddShipFromText(&TheShipTable, name.c_str(), at[0], at[1], at[2]) == 0) news = name + " " + GuiStrings[TextReadInPart];
  return news;
}

void LoadChosenShip(int) {
  if (ListChosenRow < 0 || static_cast<size_t>(ListChosenRow) >= Names.size()) return;
  if (Online) {  // the rows of the table are the server's
    AddChatLine(GuiStrings[TextNoLoadOnServer].c_str());
    return;
  }
  const std::string name = Names[static_cast<size_t>(ListChosenRow)];
  const Player p = ReadPlayer();
  std::string news;
  {
    const ScopedLock world(&WorldMutex);
    const u16 row = TheShipTable.count.load();
    news = LoadShipFile(name, p.solarLoc);
    if (TheShipTable.count.load() > row) {
      KeepStemsApart(ShipAt(TheShipTable, row), name);
      BringIntoSight(ShipAt(TheShipTable, row), p.solarLoc);
    }
  }
  if (!news.empty()) AddChatLine(news.c_str());
  ListFirstRow = 0;
  ListChosenRow = -1;
  ToggleMenu();
}
