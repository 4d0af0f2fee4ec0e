// The table of elements, the pointer over it, clicks, and where quads and labels come to stand. No window.
#include "gui/elements.h"

#include <gtest/gtest.h>

#include <vector>

#include "content/options.h"
#include "gameplay/player.h"
#include "gui/language.h"
#include "gui/layout.h"
#include "gui/mode.h"
#include "gui/screens.h"
#include "support/installation.h"

static std::vector<int> Calls;

static void Note(int arg) { Calls.push_back(arg); }
static void NoteAndRebuild(int arg) {
  Note(arg);
  ClearElements();
  for (int i = 0; i < 3; i++) AddElement(TypeButton, 0, 0, 0, "another screen", Note, 90 + i);
  GuiElements[2].hovered = true;
}
static void NoteAndClose(int arg) {
  Note(arg);
  GuiPendingClose = true;
}

namespace {

struct Elements : testing::Test {
  void SetUp() override {
    for (const GuiTypeSource &source : GuiTypeSources) SetGuiType(source);
    ClearElements();
    Calls.clear();
    uiMode = 1;
    MenuClosable = true;
  }
  void TearDown() override { ClearElements(); }
};

}  // namespace

TEST_F(Elements, LabelsComeFromTheLanguageOrTheText) {
  GuiStrings.assign(GuiStringRows, "");
  GuiStrings[1] = "One";
  GuiStrings[127] = "X";
  const struct { int row; const char *text, *label; } rows[] = {
      {1, "text", "One"}, {127, nullptr, "X"}, {0, "text", "text"}, {0, "ab", "ab"}, {0, "a", ""}, {0, "", ""},
      {0, nullptr, ""},   {5, "text", ""},     {128, "text", ""},   {-1, "text", ""}};
  for (const auto &row : rows) AddElement(TypeButton, 0, 0, row.row, row.text, nullptr, 0);
  for (size_t i = 0; i < std::size(rows); i++) EXPECT_EQ(GuiElements[i].text, rows[i].label) << i;
}

TEST_F(Elements, FullTableDropsRowsWithAWarning) {
  ListVisibleRows = 3;
  for (int i = 0; i < 255; i++) AddElement(TypeRow, i, 0, 0, "row", nullptr, i);
  testing::internal::CaptureStdout();
  AddElement(TypeRow, 999, 0, 0, "late", nullptr, 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "WARN: The table of menu elements is full. I'm leaving one out. \n");
  EXPECT_EQ(GuiElementCount, 255);
  EXPECT_EQ(GuiElements[254].x, 254);
  EXPECT_EQ(GuiElements[255].text, "");
  ClearElements();
  EXPECT_EQ(GuiElementCount, 0);
  EXPECT_EQ(ListVisibleRows, 0);
}

// The pointer walks over the edges of a button to the right of the middle: its x is mirrored, its y grows upwards.
TEST_F(Elements, PointerHoversStrictlyInsideOfHoverableTypes) {
  Options.ScreenWidth = 800;
  Options.ScreenHeight = 600;
  const int types[] = {TypeButton, TypeExpandPlus, TypeHeading, TypeRow};
  for (const int type : types) AddElement(type, 200, 100, 0, "", nullptr, 0);
  for (int i = 0; i < 3; i++) SetHitBox(&GuiElements[i], {.width = 100, .height = 40}, 0, 0.5f);  // the last is not drawn yet
  const struct { int x, y; bool inside; } points[] = {
      {500, 250, true},  {475, 250, false}, {476, 250, true},  {524, 250, true}, {525, 250, false},
      {500, 240, false}, {500, 241, true},  {500, 259, true},  {500, 260, false}, {300, 250, false},
      {500, 350, false}, {400, 300, false}, {-90000, 250, false}};
  for (const auto &p : points) {
    PointAt(p.x, p.y);
    const bool hovered[] = {p.inside, p.inside, false, false};
    for (int i = 0; i < 4; i++) EXPECT_EQ(GuiElements[i].hovered, hovered[i]) << p.x << ", " << p.y << " row " << i;
  }
}

TEST_F(Elements, ClicksRunInTableOrder) {
  struct Row { GuiCallback callback; int arg; bool hovered; };
  const struct { std::vector<Row> rows; int result; std::vector<int> calls; bool closes = false; } tables[] = {
      {{}, 0, {}},
      {{{Note, 7, true}, {Note, 8, false}, {Note, -1, true}, {Note, -2, true}}, 0, {7, 2, -2}},
      {{{Note, 1, true}, {nullptr, -2, true}, {Note, 3, true}}, -1, {1}},
      {{{nullptr, -2, false}, {Note, 5, true}}, 0, {5}},
      // The new screen's third row is under the walk when it goes on; rows that the old one had behind it are gone.
      {{{Note, 1, true}, {NoteAndRebuild, -1, true}, {Note, 3, true}, {Note, 4, true}}, 0, {1, 1, 92}},
      {{{Note, 1, false}, {Note, 2, false}, {Note, 3, false}, {NoteAndRebuild, 4, true}, {Note, 5, true}}, 0, {4}},
      // A menu that can't be closed by Esc, and that may be closed already, closes after the walk.
      {{{NoteAndClose, -1, true}, {Note, -1, true}}, 0, {0, 1}, true}};
  for (const auto &table : tables)
    for (const u8 mode : {u8{1}, u8{0}}) {
      uiMode = mode;
      MenuClosable = !table.closes;
      ClearElements();
      Calls.clear();
      for (const Row &row : table.rows) {
        AddElement(TypeButton, 0, 0, 0, "a label of its own storage", row.callback, row.arg);
        GuiElements[GuiElementCount - 1].hovered = row.hovered;
      }
      EXPECT_EQ(HandleClick(), table.result);
      EXPECT_EQ(Calls, table.calls);
      EXPECT_EQ(uiMode, table.closes ? 0 : mode);
      EXPECT_FALSE(GuiPendingClose);
    }
}

constexpr GuiWindow Window{960, 600, 0.5f};

TEST(Layout, LabelsStandByTheirOffsetAndAnchor) {
  const struct { float offset; int anchor, x, y; TextAlign align; } rows[] = {
      {0, 0, 100, 50, AlignCentre},       {1010, 0, 100, 55, AlignCentre},    {-1010, 0, 100, 45, AlignCentre},
      {-60, 0, 100 + 25 + 12, 50, AlignLeft}, {120, 0, 100 - 25 - 24, 50, AlignRight}, {0, 2, 100, 50, AlignCentre},
      {-20, 2, 100 + 25 + 4, 50, AlignLeft},  {0, 4, 480 + 100 - 425, 300 + 50 - 45, AlignCentre},
      {310, 4, 480 + 100 - 425, 300 + 50 - 45, AlignCentre}, {0, 5, -480 + 100 + 100, 300 + 50 - 45, AlignCentre}};
  for (const auto &row : rows) {
    const QuadPlace quad = PlaceQuad(200, 100, 100, 40, row.anchor, Window);
    const LabelPlace label = PlaceLabel(quad, 200, 100, row.offset, row.anchor, Window);
    EXPECT_TRUE(label.x == row.x && label.y == row.y && label.align == row.align)
        << row.offset << " anchor " << row.anchor << ": " << label.x << ", " << label.y;
  }
  const QuadPlace panel = PlaceQuad(0, 50, 281, 53, 3, Window);
  const LabelPlace inside = PlaceLabel(panel, 0, 50, 30, 3, Window);
  EXPECT_EQ(inside.align, AlignRight);
  EXPECT_LT(static_cast<float>(inside.x), panel.x + panel.width / 2);
  EXPECT_GT(static_cast<float>(inside.x), panel.x);
}

TEST(Layout, WideLabelsWidenTheHitBox) {
  const struct { float offset; int textWidth, left, right; } rows[] = {
      {0, 50, -125, -75},   {0, 51, -125, -74}, {0, 90, -145, -55},  {-1010, 90, -145, -55},
      {-60, 50, -125, -75}, {-60, 90, -227, -75}, {120, 90, -125, -75}};
  for (const auto &row : rows) {
    GuiElement e;
    e.x = 200;
    e.y = -100;
    e.textWidth = static_cast<i16>(row.textWidth);
    SetHitBox(&e, {.width = 100, .height = 40}, row.offset, 0.5f);
    EXPECT_TRUE(e.hitLeft == row.left && e.hitRight == row.right) << row.offset << ", " << row.textWidth;
    EXPECT_TRUE(e.hitBottom == -60 && e.hitTop == -40);
  }
}

TEST(Layout, TiltStaysWithThePlaceAndTextKeepsASize) {
  float least = 12, most = -12;
  for (int y = -40000; y < 40000; y += 97) {
    const QuadPlace quad{.x = 3.5f, .y = static_cast<float>(y)};
    const float tilt = TiltOf(4, quad);
    EXPECT_EQ(tilt, TiltOf(4, quad));
    least = std::min(least, tilt);
    most = std::max(most, tilt);
  }
  EXPECT_TRUE(least >= -12 && least < -11 && most <= 12 && most > 11) << least << " to " << most;
  const struct { float scale; int label, pixels; } sizes[] = {{1, 29, 28}, {0.33333334f, 22, 6}, {4.2666f, 44, 186}};
  for (const auto &s : sizes) {
    EXPECT_EQ(LabelSize(30, s.scale), s.label) << s.scale;
    EXPECT_EQ(TextPixelSize(s.label, s.scale), s.pixels) << s.scale;
  }
  for (const int size : {-1000000, -1, 0, 1, 3}) EXPECT_GE(TextPixelSize(size, 0.33333334f), 1);
}
