// Lettering for engraved marks and the game's name: capitals as lines on a grid of 5 x 7 points.
#include "gui_mask.h"

constexpr double Advance = 1.0;  // from letter to letter, in heights of a capital

namespace {

struct Strokes {
  char letter;
  const char *points;  // a column and a row each, 0 from the upper left; a bar lifts the pen
};

constexpr Strokes alphabet[] = {
    {'A', "0602204246|0444"},     {'B', "06003041423303|3344453606"}, {'C', "4130100105163645"},
    {'D', "06003041453606"},      {'E', "40000646|0333"},             {'F', "400006|0333"},
    {'G', "41301001051636454323"}, {'H', "0006|4046|0343"},            {'I', "2026"},
    {'K', "0006|400346"},         {'L', "000646"},                    {'M', "0600234046"},
    {'N', "06004640"},            {'O', "103041453616050110"},        {'P', "06003041423303"},
    {'R', "06003041423303|2346"}, {'S', "413010010213334445361605"}, {'T', "0040|2026"},
    {'U', "000516364540"},        {'V', "0003264340"},                {'X', "0046|4006"},
    {'Y', "002340|2326"},         {'Z', "00400646"},                  {'0', "103041453616050110"},
    {'1', "112026"},              {'2', "01103041420646"},           {'3', "0040233344453616"},
    {'4', "300444|3036"},        {'5', "4000033344453606"},         {'6', "4130100105163645443303"},
    {'7', "004016"},             {'8', "103041423313020110|133344453616050413"},       {'9', "0516364541301001021343"},
    {'-', "1333"},                {'/', "4006"},
};

}  // namespace

static const char *PointsOf(char letter) {
  for (const Strokes &strokes : alphabet) {
    if (strokes.letter == letter) return strokes.points;
  }
  return "";
}

void LetterPath(cairo_t *drawing, const char *text, double x, double y, double height) {
  const double unit = height / 6.0;
  for (; *text != '\0'; text++, x += height * Advance) {
    const char *points = PointsOf(*text);
    bool down = false;
    while (*points != '\0') {
      if (*points == '|') {
        down = false;
        points++;
        continue;
      }
      const double px = x + (points[0] - '0') * unit;
      const double py = y + (points[1] - '0') * unit;
      if (down) cairo_line_to(drawing, px, py);
      else cairo_move_to(drawing, px, py);
      down = true;
      points += 2;
    }
  }
}
