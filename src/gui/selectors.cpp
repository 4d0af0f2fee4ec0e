// The two block selectors: categories that open and close, the rows of an open one three to a line, and a click that puts a
// row into the player's hand.
#include <algorithm>

#include "content/categories.h"
#include "content/components.h"
#include "content/materials.h"
#include "gameplay/player.h"
#include "gui/mode.h"
#include "gui/screen_parts.h"
#include "gui/screens.h"

constexpr int VisibleLines = 18, RowsInLine = 3;
constexpr int TopLine = 284, LinePitch = 42, CategoryX = -690, FirstItemX = -570, ItemPitch = 290;
constexpr int BarX = -761, KnobTop = 220, KnobWay = 450;
constexpr u8 LongestMaterialScroll = 63;  // six bits
constexpr size_t LongestItem = 15;

u16 ComponentScroll = 1;
u8 MaterialScroll = 1;

static bool ShowsMaterials() { return GuiScreen == ScreenMaterials; }
static std::vector<Category> &CategoriesShown() { return ShowsMaterials() ? MaterialCategories : ComponentCategories; }
static void Rebuild() { ShowsMaterials() ? BuildMaterialSelector(0) : BuildComponentSelector(0); }

static int ItemLines(const Category &c) {
  return c.open ? (static_cast<int>(c.rows.size()) + RowsInLine - 1) / RowsInLine : 0;
}

static int CountLines(const std::vector<Category> &categories) {
  int lines = 0;
  for (const Category &c : categories) lines += 1 + ItemLines(c);
  return lines;
}

// The line that stands first when the last one is in sight, counted from 1.
static int LastScroll() { return std::max(CountLines(CategoriesShown()) - VisibleLines + 1, 1); }

static int Scroll() { return ShowsMaterials() ? MaterialScroll : ComponentScroll; }

static void SetScroll(int line) {
  const int held = std::clamp(line, 1, LastScroll());
  if (ShowsMaterials()) MaterialScroll = static_cast<u8>(std::min<int>(held, LongestMaterialScroll));
  else ComponentScroll = static_cast<u16>(std::min(held, 65535));
}

static void FlipCategory(int category) {
  Category &c = CategoriesShown()[static_cast<size_t>(category)];
  c.open = !c.open;
  Rebuild();
}

static void PickRow(int row) {
  Player p = ReadPlayer();
  if (ShowsMaterials()) p.heldBlock.material = static_cast<u16>(row);
  else p.heldBlock.component = static_cast<u16>(row);
  StoreHand(p);
  Rebuild();
}

static void AddItem(u16 row, int column, int y, u16 held) {
  const std::string &name = ShowsMaterials() ? Materials[row].name : Components[row].name;
  AddElement(row == held ? TypeChosenRow : TypeRow, FirstItemX + ItemPitch * column, y, 0,
             ShortLabel(name, LongestItem).c_str(), PickRow, row);
}

// Adds those of a category's lines that are in the window. line: of its name; the first in the window is 0. The line behind it.
static int AddCategoryLines(int category, int line, u16 held) {
  const Category &c = CategoriesShown()[static_cast<size_t>(category)];
  const auto inWindow = [](int l) { return l >= 0 && l < VisibleLines; };
  const auto y = [](int l) { return TopLine - LinePitch * l; };
  if (inWindow(line))
    AddElement(c.open ? TypeExpandMinus : TypeExpandPlus, CategoryX, y(line), 0, c.name.c_str(), FlipCategory, category);
  ++line;
  if (!c.open) return line;
  for (size_t i = 0; i < c.rows.size(); ++i) {
    const int at = line + static_cast<int>(i) / RowsInLine;
    if (inWindow(at)) AddItem(c.rows[i], static_cast<int>(i) % RowsInLine, y(at), held);
  }
  return line + ItemLines(c);
}

// "debug" heads the categories, but what a player looks for is in all the others: its lines come last.
static void AddLines() {
  const Player p = ReadPlayer();
  const u16 held = static_cast<u16>(ShowsMaterials() ? p.heldBlock.material : p.heldBlock.component);
  int line = 1 - Scroll();
  const int categories = static_cast<int>(CategoriesShown().size());
  for (int i = 0; i < categories && line < VisibleLines; ++i) line = AddCategoryLines((i + 1) % categories, line, held);
}

static void AddSelectorBar() {
  const double way = LastScroll() == 1 ? 1 : LastScroll();
  const double along = Scroll() == 1 ? 0 : std::min(1.0, Scroll() / way);
  AddScrollBar(BarX, KnobTop - static_cast<int>(KnobWay * along));
}

static void BuildSelector(Screen screen) {
  ClearElements();
  GuiScreen = screen;
  SetScroll(Scroll());
  AddElement(TypePanelWide, 0, -50, 0, "", nullptr, 0);
  AddElement(TypePanelTall, 560, -50, 0, "", nullptr, 0);
  AddElement(TypePanelSmall, 200, -220, 0, "", nullptr, 0);
  AddElement(TypeTabDivider, 200, -50, 0, "", nullptr, 0);
  AddElement(TypeTabBackground, 0, -55, 0, "", nullptr, 0);
  AddElement(TypeTab, -680, 450, 62, "", ShowsMaterials() ? nullptr : BuildMaterialSelector, 0);
  AddElement(TypeTab, -380, 458, 63, "", ShowsMaterials() ? BuildComponentSelector : nullptr, 0);
  // Both tabs have the same picture: the one behind lies in the shade.
  if (ShowsMaterials()) AddElement(TypeTabShade, -380, 458, 0, "", nullptr, 0);
  else AddElement(TypeTabShade, -680, 450, 0, "", nullptr, 0);
  AddLines();
  AddSelectorBar();
}

void BuildMaterialSelector(int) {
  LastSelector = 2;
  BuildSelector(ScreenMaterials);
}

void BuildComponentSelector(int) {
  LastSelector = 1;
  BuildSelector(ScreenComponents);
  const bool automatic = ReadPlayer().heldBlock.rotation == 0;
  AddElement(automatic ? TypeOn : TypeOff, 600, -380, 61, "", RotationSwitch, -1);
}

void RotationSwitch(int row) {
  Player p = ReadPlayer();
  const bool automatic = p.heldBlock.rotation != 0;
  p.heldBlock.rotation = automatic ? 0 : 1;
  p.heldBlock.rotation2 = 0;
  StoreHand(p);
  GuiElements[row].type = automatic ? TypeOn : TypeOff;
}

void ScrollSelector(int lines) {
  SetScroll(Scroll() + lines);
  Rebuild();
}
