// Signs: thin plates with a picture. They stand upright on a wall, z up, and read from the left, which is x = 15.
#include "palette.h"
#include "shapes_more.h"

#include <cmath>

constexpr Paint SignGround{226, 220, 204, 255};
constexpr Paint Safe{70, 150, 110, 255};

static void Plate(Grid &grid, Region region, Paint paint, Paint edge) {
  Box(grid, region, paint);
  BoxEdges(grid, region, 1, edge);
}

// A dot of the picture, counted from the plate's upper left corner.
static void Dot(Grid &grid, int column, int row, Paint paint) {
  if (column >= 0 && column < GridEdge && row >= 0 && row < GridEdge) At(grid, 15 - column, 1, 15 - row) = paint;
}

// Rows of letters, each # a dot `size` wide and high.
static void Picture(Grid &grid, const char *const *rows, int count, int column, int row, int size, Paint paint) {
  for (int r = 0; r < count; r++) {
    for (int c = 0; rows[r][c] != '\0'; c++) {
      if (rows[r][c] != '#') continue;
      for (int k = 0; k < size * size; k++) Dot(grid, column + c * size + k % size, row + r * size + k / size, paint);
    }
  }
}

static const char *const digits[10][5] = {
    {"###", "# #", "# #", "# #", "###"}, {" # ", "## ", " # ", " # ", "###"}, {"###", "  #", "###", "#  ", "###"},
    {"###", "  #", " ##", "  #", "###"}, {"# #", "# #", "###", "  #", "  #"}, {"###", "#  ", "###", "  #", "###"},
    {"###", "#  ", "###", "# #", "###"}, {"###", "  #", "  #", " # ", " # "}, {"###", "# #", "###", "# #", "###"},
    {"###", "# #", "###", "  #", "###"}};

// A number of a deck or a berth; `form` is the digit.
void DrawDigit(Grid &grid, int form) {
  Plate(grid, {2, 0, 0, 13, 1, 15}, Stuff(232), Graphite);
  Picture(grid, digits[form], 5, 5, 3, 2, Charcoal);
  Weather(grid, 2180, 0.6f);
}

void DrawArrow(Grid &grid, int) {
  static const char *const picture[] = {"   #  ", "   ## ", "######", "######", "   ## ", "   #  "};
  Plate(grid, {0, 0, 1, 15, 1, 14}, Safe, SignGround);
  Picture(grid, picture, 6, 2, 2, 2, SignGround);
  Weather(grid, 2190, 0.6f);
}

// Pointed stripes, for the way out and round a bend.
void DrawChevrons(Grid &grid, int) {
  Box(grid, {0, 0, 2, 15, 1, 13}, Charcoal);
  for (int column = 0; column < GridEdge; column++) {
    for (int row = 2; row < 14; row++) {
      const int away = row < 8 ? 7 - row : row - 8;
      if ((column + away) / 4 % 2 == 0) Dot(grid, column, row, Mustard);
    }
  }
  Weather(grid, 2191, 0.6f);
}

// A lit sign over the way out.
void DrawExitSign(Grid &grid, int) {
  static const char *const words[] = {"## # # # ###", "#  # # #  # ", "##  #  #  # ", "#  # # #  # ", "## # # #  # "};
  Plate(grid, {0, 0, 3, 15, 1, 12}, {120, 250, 170, 255}, Graphite);
  Picture(grid, words, 5, 2, 5, 1, {24, 70, 50, 255});
  Box(grid, {0, 0, 2, 15, 2, 2}, OffWhite);
  Box(grid, {0, 0, 13, 15, 2, 13}, OffWhite);
  Weather(grid, 2192, 0.5f);
}

// A triangle with a stroke and a point.
void DrawDanger(Grid &grid, int) {
  for (int row = 1; row < 15; row++) {
    const int half = row / 2 + 1;
    Box(grid, {8 - half, 0, 15 - row, 7 + half, 1, 15 - row}, row == 14 || half < 2 ? Charcoal : Mustard);
    for (const int column : {8 - half, 7 + half}) Box(grid, {column, 0, 15 - row, column, 1, 15 - row}, Charcoal);
  }
  for (int row = 5; row < 13; row++) {
    if (row == 10) continue;
    Dot(grid, 7, row, Charcoal);
    Dot(grid, 8, row, Charcoal);
  }
  Weather(grid, 2193, 0.6f);
}

void DrawMedical(Grid &grid, int) {
  Plate(grid, {1, 0, 1, 14, 1, 14}, SignGround, Graphite);
  Box(grid, {6, 1, 3, 9, 2, 12}, {206, 70, 58, 255});
  Box(grid, {3, 1, 6, 12, 2, 9}, {206, 70, 58, 255});
  Weather(grid, 2194, 0.6f);
}

// A band of paint that runs on along x.
void DrawStripe(Grid &grid, int) {
  Box(grid, {0, 0, 4, 15, 0, 11}, Oxide);
  Box(grid, {0, 0, 6, 15, 0, 6}, SignGround);
  Box(grid, {0, 0, 9, 15, 0, 9}, Charcoal);
  Weather(grid, 2195, 0.8f);
}

// The ship's badge: a planet with its ring.
void DrawRoundel(Grid &grid, int) {
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.4f, 0, 1, {58, 74, 104, 255});
  Bar(grid, Axis::Y, 7.5f, 7.5f, 7.4f, 0, 1, Brass, 6.5f);
  Bar(grid, Axis::Y, 7.5f, 7.5f, 3.4f, 1, 1, Oxide);
  for (int i = -5; i < 6; i++) {
    const int z = 7 + static_cast<int>(std::lround(static_cast<float>(i) * 0.4f));
    Box(grid, {7 + i, 1, z, 8 + i, 1, z}, SignGround);
  }
  At(grid, 4, 1, 11) = SignGround;
  At(grid, 11, 1, 4) = SignGround;
  Weather(grid, 2196, 0.6f);
}
