// The sheet of joining families: each built into a small structure, block by block, as a player would.
#include <chrono>
#include <string>
#include <thread>

#include "content/components.h"
#include "letters.h"
#include "sheets.h"
#include "stage.h"
#include "world/access.h"
#include "world/light.h"

// All lengths in pixels of the canvas, twice those of the picture.
constexpr int Columns = 6, PanelWidth = 520, PanelHeight = 430, Margin = 20, TextHeight = 44, TextSize = 3;
constexpr float LargestVoxel = 6.0f;
constexpr int Spacing = 40;                  // cells from one structure to the next, so that none lights or joins another
constexpr int Reach = 9;                     // cells that a structure may take on each axis
constexpr u16 FirstX = 100, StandY = 100, StandZ = 100;
constexpr u16 PlainCube = 2, FlatPlating = 250;
constexpr int BoxEdge = 4;                   // of the hulls, in cells
constexpr Ink NameInk{222, 224, 228}, IdInk{150, 220, 210};
constexpr LightEntry Studio[] = {{5, 4, 3, 255, 246, 232, 0}, {-4, 5, -5, 150, 170, 204, 0}, {2, 3, 6, 110, 110, 106, 0}};

// The rules that draw a look do so by the second, so pieces of that kind come one in a round, and a round in each second.
constexpr int Rounds = 12;
constexpr auto RoundTime = std::chrono::milliseconds(1050);

namespace {

// A structure in the making; (0, 0, 0) is its corner.
struct Site {
  Hand hand;
  u16 x = 0;
  int round = 0;
};

struct Panel {
  u16 id;
  u16 material;  // its id
  void (*build)(const Site &site, u16 id);
  const char *note = "";
  bool fromBack = false;
};

}  // namespace

static Cell3 At(const Site &s, int x, int y, int z) {
  return {static_cast<u16>(s.x + x), static_cast<u16>(StandY + y), static_cast<u16>(StandZ + z)};
}

static void Add(const Site &s, u16 id, int x, int y, int z) { PutOnFloor(s.hand, id, At(s, x, y, z)); }

static void AddTurned(const Site &s, u16 id, int x, int y, int z, unsigned rotation) {
  Hand hand = s.hand;
  hand.rotation = rotation;
  Put(hand, id, At(s, x, y, z), At(s, x, y, z));
}

// A run with a bend, a branch, a riser and a piece that stands alone.
static void BuildRun(const Site &s, u16 id) {
  if (s.round > 0) return;
  for (int x = 0; x <= 5; ++x) Add(s, id, x, 0, 0);
  for (int z = 1; z <= 3; ++z) Add(s, id, 2, 0, z);
  for (int x = 3; x <= 4; ++x) Add(s, id, x, 0, 3);
  for (int y = 1; y <= 2; ++y) Add(s, id, 5, y, 0);
  Add(s, id, 0, 0, 3);
}

// A run through a collar of plates.
static void BuildPassage(const Site &s, u16 id) {
  if (s.round > 0) return;
  for (int x = 2; x <= 3; ++x) {
    AddTurned(s, FlatPlating, x, 2, 1, 5);
    AddTurned(s, FlatPlating, x, 0, 1, 2);
    AddTurned(s, FlatPlating, x, 1, 2, 3);
    AddTurned(s, FlatPlating, x, 1, 0, 1);
  }
  for (int x = 0; x <= 5; ++x) Add(s, id, x, 1, 1);
}

// The rotation of a flat plate on a box's face: its back to the middle.
static unsigned FaceRotation(int x, int y, int z) {
  if (y == 0 || y == BoxEdge - 1) return y == 0 ? 2 : 5;
  if (x == 0 || x == BoxEdge - 1) return x == 0 ? 4 : 6;
  return z == 0 ? 1 : 3;
}

// A hollow box of flat plates, closed by edges and corners.
static void CloseBox(const Site &s, u16 id) {
  const auto outer = [](int at) { return at == 0 || at == BoxEdge - 1 ? 1 : 0; };
  for (int pass = 1; pass <= 3; ++pass)
    for (int x = 0; x < BoxEdge; ++x)
      for (int y = 0; y < BoxEdge; ++y)
        for (int z = 0; z < BoxEdge; ++z) {
          if (outer(x) + outer(y) + outer(z) != pass) continue;
          if (pass == 1) AddTurned(s, FlatPlating, x, y, z, FaceRotation(x, y, z));
          else Add(s, id, x, y, z);
        }
}

// The box, and pieces that stand alone.
static void BuildHull(const Site &s, u16 id) {
  if (s.round == 0) CloseBox(s, id);
  if (s.round % 4 == 0) Add(s, id, BoxEdge + 2, 0, s.round / 4 * 3);
}

static void BuildThing(const Site &s, u16 id) {
  if (s.round == 0) Add(s, id, 0, 0, 0);
}

// A wall in which no two pieces need look alike.
static void BuildPatch(const Site &s, u16 id) { Add(s, id, s.round % 4, s.round / 4, 0); }

// A row on a floor, of which the first piece is turned by the floor and the others by it.
static void BuildRow(const Site &s, u16 id) {
  if (s.round > 0) return;
  for (int x = 0; x <= 3; ++x) Add(s, PlainCube, x, 0, 0);
  for (int x = 0; x <= 3; ++x) Add(s, id, x, 1, 0);
}

constexpr Panel Panels[] = {
    {20, 40, BuildRun},        {20, 40, BuildPassage, " in plating"}, {40, 12, BuildRun},
    {40, 12, BuildPassage, " in plating"}, {310, 57, BuildRun},       {340, 14, BuildRun},
    {251, 40, BuildHull},      {261, 40, BuildHull},      {510, 12, BuildHull},  {520, 12, BuildHull},
    {530, 6, BuildHull},       {560, 57, BuildHull},      {570, 40, BuildHull},  {580, 42, BuildHull},
    {610, 41, BuildHull},      {620, 12, BuildHull},      {630, 60, BuildHull},  {30, 60, BuildThing},
    {120, 63, BuildThing, "", true},     {122, 12, BuildThing},     {124, 12, BuildThing, "", true}, {350, 12, BuildThing},
    {200, 12, BuildPatch},     {320, 5, BuildPatch},      {370, 5, BuildPatch},  {420, 57, BuildPatch},
    {3520, 54, BuildPatch},    {70, 12, BuildRow},        {80, 12, BuildRow},    {83, 12, BuildRow},
    {94, 12, BuildRow},        {240, 12, BuildRow},       {270, 63, BuildRow},   {360, 12, BuildRow},
    {362, 12, BuildRow},       {450, 63, BuildRow},       {550, 12, BuildRow},   {551, 12, BuildRow},
    {600, 62, BuildRow},       {601, 12, BuildRow}};

// The same light on every block, as from far away.
static void LightBox(const Ship &ship, const CellBox &box) {
  for (u16 x = box.x0; x <= box.x1; ++x)
    for (u16 y = box.y0; y <= box.y1; ++y)
      for (u16 z = box.z0; z <= box.z1; ++z)
        for (const LightEntry &light : Studio)
          if (BlockExists(x, y, z, ship)) AddLightEntry(light, x, y, z, ship);
}

static void PaintPanel(Canvas *canvas, const Frame &frame, Ship *ship, const Panel &panel, u16 x) {
  const CellBox box = {x, StandY, StandZ, static_cast<u16>(x + Reach), StandY + Reach, StandZ + Reach};
  LightBox(*ship, box);
  FillFrame(canvas, frame, 22, 25, 33);
  PaintCells(canvas, {frame.left + Margin, frame.top + Margin, frame.width - 2 * Margin, frame.height - TextHeight - 2 * Margin},
             *ship, box, panel.fromBack, LargestVoxel);
  const int text = frame.top + frame.height - TextHeight + 8;
  const std::string id = std::to_string(panel.id);
  Write(canvas, frame.left + Margin, text, TextSize, IdInk, id);
  Write(canvas, frame.left + Margin + 6 * LetterWidth * TextSize, text, TextSize, NameInk,
        Components[static_cast<size_t>(FindComponent(panel.id))].name + panel.note);
}

constexpr int PanelCount = sizeof Panels / sizeof Panels[0], Lines = (PanelCount + Columns - 1) / Columns;

static u16 PlaceOfPanel(int i) { return static_cast<u16>(FirstX + i * Spacing); }

static void BuildAll(Ship *ship) {
  for (int round = 0; round < Rounds; ++round) {
    if (round > 0) std::this_thread::sleep_for(RoundTime);
    for (int i = 0; i < PanelCount; ++i)
      Panels[i].build({{ship, MaterialRow(Panels[i].material)}, PlaceOfPanel(i), round}, Panels[i].id);
  }
}

bool SheetOfJoins(const std::string &path) {
  const std::unique_ptr<Ship> ship = NewShip();
  if (ship == nullptr) return false;
  BuildAll(ship.get());
  Canvas canvas = NewCanvas(Columns * (PanelWidth + Margin) + Margin, Lines * (PanelHeight + Margin) + Margin, 13, 15, 21);
  for (int i = 0; i < PanelCount; ++i)
    PaintPanel(&canvas, {Margin + i % Columns * (PanelWidth + Margin), Margin + i / Columns * (PanelHeight + Margin), PanelWidth, PanelHeight},
               ship.get(), Panels[i], PlaceOfPanel(i));
  return SaveCanvas(canvas, canvas.height, path);
}
