// The overlay in play: chat, the ship's name, the tutorial, what the tool is and what it will place.
#include <cstdio>
#include <cstring>

#include "content/options.h"
#include "gameplay/chat.h"
#include "gui/hud.h"
#include "gui/paint.h"
#include "gui/tutorial.h"
#include "net/chat_log.h"
#include "platform/threads.h"
#include "platform/window.h"
#include "world/tree.h"

constexpr int RowsInPlay = 4, RowsTyping = 10;  // of the chat
constexpr double StemPeriod = 0.5;              // seconds between two looks at the ship's name
constexpr float CrosshairTurn = 45;             // degrees

static HudPanels Panels;
static FrameRate Rate;
static ChatLines Log;                       // kept, so that its strings keep their memory
static std::string Stem;                    // the ship's name as last read
static const Ship *StemOf = nullptr;
static double StemDue = 0;                  // when it is read again

static void DrawPicture(int type, int x, int y, int anchor, const char *label, float angle) {
  const GuiType &look = GuiTypes[type];
  DrawGuiQuad(NoElement, x, y, look.width, look.height, type, label, look.textOffset, anchor, angle);
}

static void DrawLine(int x, int y, const char *text) { DrawPicture(TypeClear, x, y, 2, text, 0); }

// The end of a long line, where the cursor is.
static void DrawTyping() {
  ChatEntry entry = ReadChat();
  if (entry.cursor >= 0) entry.text[entry.cursor] = ChatCursor(ClockNow(), entry.blink);
  const size_t length = std::strlen(entry.text);
  DrawLine(0, -500, entry.text + (length > HudLineWidth ? length - HudLineWidth : 0));
}

static void DrawChat() {
  const bool typing = uiMode == 2;
  if (typing) DrawTyping();
  CopyChatLog(&Log);
  std::string_view rows[RowsTyping];
  const int count = ChatRows(Log, typing ? RowsTyping : RowsInPlay, rows);
  for (int row = 0; row < count; ++row) {
    char text[HudLineWidth + 1] = {};
    rows[row].copy(text, HudLineWidth);
    DrawLine(0, 30 * row - 470, text);
  }
}

// The name belongs to the world mutex, which others hold for a while: it is read when the mutex happens to be free.
static void ReadStem(const Ship *ship) {
  const double now = ClockNow();
  if ((ship == StemOf && now < StemDue) || !TryLockMutex(&WorldMutex)) return;
  Stem = ship->fileStem;
  UnlockMutex(&WorldMutex);
  StemOf = ship;
  StemDue = now + StemPeriod;
}

static void DrawShipName() {
  const Ship *ship = CurrentShip();
  if (ship == nullptr) return;
  ReadStem(ship);
  // To the right of its place, so that a long name stays in the window.
  DrawGuiQuad(NoElement, -860, 500, 1, 1, TypeClear, Stem.c_str(), -1, 2, 0);
}

static void DrawFrameRate() {
  CountFrame(&Rate, ClockNow());
  char text[16];
  std::snprintf(text, sizeof text, "%d", Rate.perSecond);
  DrawLine(0, 500, text);
}

static void DrawTool(int tool) {
  static constexpr int lampAt[4] = {55, 123, 194, 260};
  const ToolLook &look = LookOfTool(tool);
  for (int lamp = 0; lamp < 4; ++lamp) DrawPicture(look.lamps[lamp], lampAt[lamp], 112, 3, nullptr, 0);
  if (Options.Crosshair) DrawPicture(look.crosshair, 0, 0, 0, nullptr, CrosshairTurn);
}

static void DrawPanels(const Player &p) {
  StepPanels(&Panels, ShownBlock(p.activeTool, p.heldBlock, p.target.hitBlock));
  DrawPicture(TypeComponentPanel, 27 + Panels.componentAt, 50, 3, Panels.component.c_str(), 0);
  DrawPicture(TypeMaterialPanel, 25 + Panels.materialAt, 168, 3, Panels.material.c_str(), 0);
  DrawPicture(TypeRotation + Panels.rotation, 52 + Panels.rotationAt, 260, 3, nullptr, 0);
  DrawPicture(TypeBlockFrame, -1, 0, 3, nullptr, 0);
}

void DrawHud(const Player &player) {
  if (!HudVisible) return;
  DrawChat();
  DrawShipName();
  if (Options.Tutorial) DrawTutorial(TutorialSide);
  if (LogSlowPieces) DrawFrameRate();
  const bool alive = player.health > 0;
  if (alive && player.suitOn) DrawTool(player.activeTool);
  DrawPanels(player);
  DrawRefusal();
}
