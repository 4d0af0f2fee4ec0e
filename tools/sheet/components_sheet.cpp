// The sheet of all components: one group for each category, the base of a family large and its other rows small beside it.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <vector>

#include "content/components.h"
#include "letters.h"
#include "sheets.h"
#include "stage.h"
#include "world/access.h"
#include "world/light.h"

// All lengths in pixels of the canvas, twice those of the picture.
constexpr int PageWidth = 3200, PageHeight = 12000, Margin = 24;
constexpr int LargeEdge = 156, SmallEdge = 76, TextHeight = 64, HeadHeight = 48, Gap = 12, GroupGap = 24;
constexpr int TextSize = 2, HeadSize = 3;
constexpr float LargeVoxel = 6.0f, SmallVoxel = 3.0f;
constexpr Ink HeadInk{255, 206, 120}, IdInk{150, 220, 210}, NameInk{222, 224, 228}, TagInk{128, 136, 150};
constexpr u16 StandX = 5000, StandY = 5000;  // components stand in a row along z, two cells apart
constexpr LightEntry StudioLights[] = {{5, 4, 3, 255, 246, 232, 0}, {-4, 5, -5, 170, 186, 214, 0}, {2, 3, -6, 120, 120, 116, 0}};

namespace {

// Where the next tile goes.
struct Page {
  Canvas canvas;
  int x = Margin, y = Margin, rowHeight = 0;
  bool wrapped = true;  // the group before takes more than one line: the next one begins a line of its own
};

}  // namespace

// The rows that have this row as their base, itself first.
static std::vector<u16> FamilyOf(u16 base) {
  std::vector<u16> rows = {base};
  for (u16 row = 1; row < ComponentCount; ++row)
    if (row != base && FamilyBase(row) == base) rows.push_back(row);
  return rows;
}

static u16 ShownMaterial(const Component &c) {
  static const std::map<std::string, u16> ids = {{"Glass", 6},   {"Windows", 6}, {"Rock", 5},    {"Matter", 34},
                                                 {"Living", 63}, {"Lights", 40}, {"Pipes", 14},  {"Hull", 40},
                                                 {"Structure", 12}};
  const auto found = ids.find(c.primaryTag);
  return MaterialRow(found == ids.end() ? 1 : found->second);
}

static void LightStand(Ship *ship, u16 row, u16 z) {
  for (const LightEntry &light : StudioLights) AddLightEntry(light, StandX, StandY, z, *ship);
  const Component &c = Components[row];
  if (c.lightRed + c.lightGreen + c.lightBlue == 0) return;
  AddLightEntry({0, 0, 0, c.lightRed, c.lightGreen, c.lightBlue, 0}, StandX, StandY, z, *ship);
}

// Stands a component as if it was put on a floor, and paints it.
static void PaintRow(Page *page, const Frame &frame, Ship *ship, u16 row, float maxScale) {
  const u16 z = static_cast<u16>(2 + row * 2);
  Block b;
  b.state = StateWhole;
  b.rotation = 5;
  b.material = ShownMaterial(Components[row]);
  b.component = row;
  PlaceBlockFast(b, StandX, StandY, z, ship);
  LightStand(ship, row, z);
  PaintCells(&page->canvas, frame, *ship, {StandX, StandY, z, StandX, StandY, z}, true, maxScale);
}

static int TileWidth(size_t rows) {
  return LargeEdge + static_cast<int>(rows / 2) * SmallEdge;  // the others in two rows
}

static void MakeRoom(Page *page, int width, int height) {
  if (page->x + width > PageWidth - Margin) {
    page->x = Margin;
    page->y += page->rowHeight;
    page->rowHeight = 0;
    page->wrapped = true;
  }
  page->rowHeight = std::max(page->rowHeight, height);
}

// Writes a name into as many lines as it needs, at most two, broken at blanks.
static void WriteName(Canvas *canvas, int x, int y, size_t letters, const std::string &name) {
  size_t cut = name.size();
  if (cut > letters) {
    cut = name.rfind(' ', letters);
    if (cut == std::string::npos) cut = letters;
    Write(canvas, x, y + LetterHeight * TextSize + 4, TextSize, NameInk, name.substr(cut + 1, letters));
  }
  Write(canvas, x, y, TextSize, NameInk, name.substr(0, cut));
}

static void PaintTile(Page *page, Ship *ship, const std::vector<u16> &rows) {
  const int width = TileWidth(rows.size());
  MakeRoom(page, width, LargeEdge + TextHeight + Gap);
  const Component &c = Components[rows[0]];
  FillFrame(&page->canvas, {page->x, page->y, width - Gap, LargeEdge + TextHeight}, 22, 25, 33);
  PaintRow(page, {page->x + 10, page->y + 10, LargeEdge - Gap - 20, LargeEdge - 20}, ship, rows[0], LargeVoxel);
  for (size_t i = 1; i < rows.size(); ++i) {
    const int column = static_cast<int>(i - 1) / 2, line = static_cast<int>(i - 1) % 2;
    PaintRow(page, {page->x + LargeEdge + column * SmallEdge - 8, page->y + line * SmallEdge + 6, SmallEdge - 12, SmallEdge - 12},
             ship, rows[i], SmallVoxel);
  }
  const int text = page->y + LargeEdge - 4, line = LetterHeight * TextSize + 4;
  Write(&page->canvas, page->x + 8, text, TextSize, IdInk, std::to_string(c.id));
  if (!c.secondaryTag.empty()) Write(&page->canvas, page->x + 60, text, TextSize, TagInk, c.secondaryTag.substr(0, 7));
  WriteName(&page->canvas, page->x + 8, text + line, static_cast<size_t>((width - 20) / (LetterWidth * TextSize)), c.name);
  page->x += width;
}

// Begins a group, beside the one before where there is room for all of it. Gives the x where the next may begin.
static int PaintHead(Page *page, const std::string &head, int tilesWidth) {
  const int headWidth = static_cast<int>(head.size()) * LetterWidth * HeadSize, width = std::max(tilesWidth, headWidth);
  if (!page->wrapped && page->x + GroupGap + width <= PageWidth - Margin) {
    page->x += GroupGap;
  } else {
    page->x = Margin;
    page->y += page->rowHeight + HeadHeight;
    page->rowHeight = 0;
    page->wrapped = false;
  }
  Write(&page->canvas, page->x, page->y - HeadHeight / 2 - 6, HeadSize, HeadInk, head);
  return page->x + headWidth;
}

static void PaintGroup(Page *page, Ship *ship, const std::string &name, const std::vector<u16> &bases) {
  int width = 0;
  for (const u16 base : bases) width += TileWidth(FamilyOf(base).size());
  const int headEnd = PaintHead(page, name + "  " + std::to_string(bases.size()), width);
  for (const u16 base : bases) PaintTile(page, ship, FamilyOf(base));
  page->x = std::max(page->x, headEnd);
}

// Base rows by their first category, categories in the order of the table.
static std::vector<std::pair<std::string, std::vector<u16>>> BasesByCategory() {
  std::vector<std::pair<std::string, std::vector<u16>>> groups;
  for (u16 row = 1; row < ComponentCount; ++row) {
    if (FamilyBase(row) != row) continue;
    const std::string &tag = Components[row].primaryTag;
    auto group = std::find_if(groups.begin(), groups.end(), [&](const auto &g) { return g.first == tag; });
    if (group == groups.end()) group = groups.insert(groups.end(), {tag, {}});
    group->second.push_back(row);
  }
  std::stable_partition(groups.begin(), groups.end(), [](const auto &g) { return g.first != "debug"; });
  return groups;
}

bool SheetOfComponents(const std::string &path) {
  const std::unique_ptr<Ship> ship = NewShip();
  if (ship == nullptr) return false;
  Page page;
  page.canvas = NewCanvas(PageWidth, PageHeight, 13, 15, 21);
  for (const auto &[name, bases] : BasesByCategory()) PaintGroup(&page, ship.get(), name, bases);
  return SaveCanvas(page.canvas, page.y + page.rowHeight + Margin, path);
}
