// The one straight start-up: everything that the threads use is made here, on the main thread, before there is a second one.
#include "core/startup.h"

#include <cstdlib>
#include <cstring>

#include "audio/sound.h"
#include "content/categories.h"
#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "content/settings.h"
#include "core/log.h"
#include "core/pieces.h"
#include "core/schedule.h"
#include "core/utils.h"
#include "gameplay/input.h"
#include "gameplay/last_ship.h"
#include "gl/init.h"
#include "gui/language.h"
#include "gui/mode.h"
#include "gui/paint.h"
#include "gui/screens.h"
#include "gui/tutorial.h"
#include "net/chat_log.h"
#include "net/session.h"
#include "persistence/stream.h"
#include "platform/files.h"
#include "platform/installation.h"
#include "platform/threads.h"
#include "platform/window.h"
#include "render/parse.h"
#include "world/access.h"
#include "worldgen/asteroid.h"

constexpr int StartDistance = 6;   // blocks from the player to the first body's middle
constexpr u16 MiddleCell = 5000;   // round which bodies grow, on each axis
constexpr int NearShip = 30;       // blocks within which a loaded ship counts as being there

static i8 CoreCount = 0;  // selects the thread system; main thread
static bool FolderTaken = false, AskedForNoSaving = false;  // main thread

static void LogVersion() {
  char *text = JoinStrings("Version ", "0.23.0 Demo ");
  LogInfo(text == nullptr ? "Version" : text);
  std::free(text);
}

static void LogMachine() {
  CoreCount = LogSystemInfo();
  LogInt("Number of Cores:", CoreCount);
  if (CoreCount == 0) CoreCount = 4;
}

// A second game in the folder must leave the first one's ships, options and log alone. TARNVALE_SAVING=0 in the environment asks for
// a game that saves nothing, and that no other one has to wait for: one that comes later has errors.txt.
static void TakeInstallation() {
  const char *saving = std::getenv("TARNVALE_SAVING");
  const bool wanted = saving == nullptr || std::strcmp(saving, "0") != 0;
  FolderTaken = wanted ? HoldInstallation() == Hold::Taken : OthersHoldInstallation();
  SavingOn = wanted && !FolderTaken;
  AskedForNoSaving = !wanted;
  LogInit(SavingOn ? "errors.txt" : "errors2.txt");
}

static void TellWhatIsNotSaved() {
  if (FolderTaken) LogWarn("Another game or a server is using this folder. This game saves nothing.");
  else if (!SavingOn) LogInfo("This game saves nothing");
}

// Online there is nothing of the player's to save but options.
static void OfferToStart() {
  if (SavingOn) return;
  if (FolderTaken && !AskedForNoSaving && Options.SinglePlayer) BuildFolderTaken();
  else AddChatLine(GuiStrings[TextSavesNothing].c_str());
}

// The tables and all that stands on their rows. False with the reason logged.
static bool LoadContent() {
  if (LoadMaterials() == 0) return LogError("Unable to load Materials Array") != 0;
  if (LoadComponents() == 0) return LogError("Unable to load Components Array in main program") != 0;
  TheThrustSound = {};
  InitGui();
  SortComponents();
  SortMaterials();
  ResetPlayer();
  if (Options.Tutorial) {
    StartTutorial();
    TutorialNext();
  }
  return FindPhaseComponents() || LogError("Could not locate Melting or Solidifying blocks") != 0;
}

// First word: the server, or one of four spellings that stay alone. Second word: the player's name.
static void TakeCommandLine(int argc, char **argv) {
  if (argc > 1) {
    Options.ServerURL = argv[1];
    bool alone = false;
    for (const char *word : {"0", "single", "Single", "SINGLE"}) alone = alone || std::strcmp(argv[1], word) == 0;
    if (!alone) Options.SinglePlayer = false;
  }
  if (argc > 2) Options.PlayerName = argv[2];
}

static void StartNetwork() {
  if (Options.SinglePlayer || InitNetwork()) return;
  Options.SinglePlayer = true;
  LogError("Cannot initialize networking.");
}

// One pass over the still empty ship, and the menu once on and off, so that everything stands before the first frame.
static void RehearseFrame() {
  {
    ScopedLock world(&WorldMutex);
    Parse(&TheVoxelList, ReadPlayer());
  }
  if (ToggleMenu() == 1) ToggleMenu();
}

static void StandAtCell(Ship *ship, const i64 (&solarLoc)[3], const int (&cell)[3]) {
  for (int axis = 0; axis < 3; ++axis) ship->position[axis] = solarLoc[axis] - cell[axis] * UnitsPerBlock;
}

// A ship file doesn't say where its ship stands. A loaded one is put where a grown one was, its middle cell six blocks ahead,
// so that a player who left a body finds it again; a ship that lies elsewhere in its cube is put before the player whole.
static void PlaceFirstShip(Ship *ship, const i64 (&solarLoc)[3]) {
  const ShipSummary &s = *ship->summary;
  int cell[3] = {MiddleCell, MiddleCell, MiddleCell + StartDistance};
  const int low[3] = {s.minX, s.minY, s.minZ}, high[3] = {s.maxX, s.maxY, s.maxZ};
  bool near = !BlockExists(MiddleCell, MiddleCell, MiddleCell + StartDistance, *ship);
  for (int axis = 0; axis < 3; ++axis) near = near && low[axis] - cell[axis] < NearShip && cell[axis] - high[axis] < NearShip;
  if (!near && s.blockCount != 0) {
    cell[0] = (low[0] + high[0]) / 2;
    cell[1] = (low[1] + high[1]) / 2;
    cell[2] = high[2] + StartDistance;
  }
  StandAtCell(ship, solarLoc, cell);
}

static bool LoadTold(Ship *ship, const std::string &stem) {
  std::string news;
  const bool loaded = LoadShipTelling(ship, stem.c_str(), &news) != 0;
  if (!news.empty()) AddChatLine(news.c_str());
  return loaded;
}

static void LoadFirstShip(Ship *ship) {
  if (!Options.SinglePlayer) return;
  const Player p = ReadPlayer();
  const std::string stem = ship->fileStem;
  // A ship that was given a name of its own would seem lost if each start went back to the one without: the ship flown last
  // comes first.
  if (LoadLastShip(ship, p.solarLoc) || LoadTold(ship, stem)) {
    PlaceFirstShip(ship, p.solarLoc);
    return;
  }
  LogInfo("Generating asteroid for player");
  GenerateAsteroid(1, p.solarLoc[0], p.solarLoc[1], p.solarLoc[2] - StartDistance * UnitsPerBlock, ship);
}

static void PlacePlayer(const Ship &ship) {
  Player p = ReadPlayer();
  p.velocity[0] = 1;
  RelativeTo(ship, p.solarLoc, p.relativeLoc);
  StoreMotion(p);
}

// The empty record of the voxels and the first, still empty ship.
static Ship *MakeFirstShip() {
  if (!AllocVoxelList(&TheVoxelList)) return nullptr;
  return AppendShip(&TheShipTable);
}

static void Run() {
  StartupGate = false;
  Options.flashlightLit = false;
  if (CoreCount <= 3) RunDualCoreSystem();
  else RunQuadCoreSystem();
  if (const Ship *ship = CurrentShip(); ship != nullptr) RememberShip(*ship);
  ShutdownSound();
  CloseGraphics();
}

// A start that ends early; the sound library's thread must not outlive what it looks at.
static int EndEarly() {
  ShutdownSound();
  return 0;
}

int StartGame(int argc, char **argv) {
  StartupGate = true;
  TakeInstallation();
  LogVersion();
  LogMachine();
  TellWhatIsNotSaved();
  QuitRequested = false;
  dampenMode = 0;
  LoadOptions();
  LoadSettings();
  SetCloseCallback(RequestQuit);
  if (InitGraphics() == 0) return LogError("Unable to initialize graphics system");
  InstallInputCallbacks();
  if (!InitSound()) LogWarn("Unable to initialize sound system");
  if (!LoadContent()) return EndEarly();
  TakeCommandLine(argc, argv);
  SaveOptions();
  Ship *ship = MakeFirstShip();
  if (ship == nullptr) {
    LogError("Could not allocate block");
    return EndEarly();
  }
  StartNetwork();
  RehearseFrame();
  LoadFirstShip(ship);
  PlacePlayer(*ship);
  OfferToStart();
  Run();
  return 0;
}
