// A picture of blocks without a graphics card: the voxels of their caches seen from a corner, with a depth test.
#pragma once

#include <string>
#include <vector>

#include "world/tree.h"

// A picture while it is painted, at twice its final size so that edges come out soft.
struct Canvas {
  int width = 0, height = 0;
  std::vector<u8> rgb;       // red, green, blue, row after row from the top
  std::vector<float> depth;  // how far what a pixel shows is away, in voxels
};

// Cells of a ship, both corners inclusive.
struct CellBox {
  u16 x0, y0, z0, x1, y1, z1;
};

// A place on the canvas.
struct Frame {
  int left, top, width, height;
};

Canvas NewCanvas(int width, int height, u8 red, u8 green, u8 blue);
void SetPixel(Canvas *canvas, int x, int y, u8 red, u8 green, u8 blue);      // Nothing outside of the canvas.
void FillFrame(Canvas *canvas, const Frame &frame, u8 red, u8 green, u8 blue);

// Paints the blocks of a box from the corner x+, y+, z+ (or z- with fromBack), as large as the frame holds, yet with no
// voxel larger than maxScale pixels. Builds their caches.
void PaintCells(Canvas *canvas, const Frame &frame, const Ship &ship, const CellBox &box, bool fromBack, float maxScale);

// Writes the canvas at half its size as a PNG file; rows below `height` are left out. False when it can't.
bool SaveCanvas(const Canvas &canvas, int height, const std::string &path);
