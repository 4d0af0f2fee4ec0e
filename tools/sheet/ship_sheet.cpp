// A saved ship from outside, in the light of its own lamps.
#include "paint.h"
#include "persistence/stream.h"
#include "sheets.h"
#include "stage.h"

constexpr int PageWidth = 2400, PageHeight = 1600, Margin = 40;
constexpr float LargestVoxel = 8.0f;

bool SheetOfShip(const std::string &name, const std::string &path) {
  const std::unique_ptr<Ship> ship = NewShip();
  if (ship == nullptr || LoadShipByName(ship.get(), name.c_str()) == 0) return false;
  Canvas canvas = NewCanvas(PageWidth, PageHeight, 13, 15, 21);
  const ShipSummary &s = *ship->summary;
  PaintCells(&canvas, {Margin, Margin, PageWidth - 2 * Margin, PageHeight - 2 * Margin}, *ship,
             {s.minX, s.minY, s.minZ, s.maxX, s.maxY, s.maxZ}, false, LargestVoxel);
  return SaveCanvas(canvas, PageHeight, path);
}
