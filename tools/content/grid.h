// A component's 16 x 16 x 16 voxels while it is drawn: what shapes are put together from.
//
// Shapes are drawn as they stand on a floor: x to the right, y away from the surface that the block is
// put against (y = 0 touches it), z towards the back. Colour alpha 254 is the material's colour, with the
// red byte as its shade; alpha 255 is the shape's own colour; lower alphas are see-through.
#pragma once

#include <array>
#include <cstdint>
#include <string>

constexpr int GridEdge = 16;
constexpr int GridSize = GridEdge * GridEdge * GridEdge;

struct Paint {
  uint8_t red = 0;
  uint8_t green = 0;
  uint8_t blue = 0;
  uint8_t alpha = 0;  // 0: no voxel
};

struct Grid {
  std::array<Paint, GridSize> voxels{};  // index x * 256 + y * 16 + z
};

enum class Axis { X, Y, Z };

// Inclusive corners of a box of voxels; anything outside the grid is left out.
struct Region {
  int x0, y0, z0;
  int x1, y1, z1;
};

constexpr Region WholeGrid{0, 0, 0, 15, 15, 15};

// The voxel at a place inside the grid.
Paint &At(Grid &grid, int x, int y, int z);
const Paint &At(const Grid &grid, int x, int y, int z);

// True for a place inside the grid that holds a voxel.
bool Filled(const Grid &grid, int x, int y, int z);

// The material's colour at a shade of 1 to 255.
Paint Stuff(int shade);

// A paint at a multiple of its brightness, held within 1 to 255; the alpha stays.
Paint Scaled(Paint paint, float factor);

// Fills a box. An empty paint carves.
void Box(Grid &grid, Region region, Paint paint);

// The twelve edges of a box, `width` voxels thick.
void BoxEdges(Grid &grid, Region region, int width, Paint paint);

// The six walls of a box, `width` voxels thick.
void BoxShell(Grid &grid, Region region, int width, Paint paint);

// A round bar along an axis from `low` to `high` inclusive. (u, v) is its centre on the other two axes in
// the order x, y, z; 7.5 is the grid's middle. `inner` above 0 leaves a tube.
void Bar(Grid &grid, Axis axis, float u, float v, float radius, int low, int high, Paint paint, float inner = 0.0f);

// A ball, or the voxels between two radii.
void Ball(Grid &grid, float x, float y, float z, float radius, Paint paint, float inner = 0.0f);

// A straight beam of square section between two points.
void Beam(Grid &grid, const float from[3], const float to[3], float halfWidth, Paint paint);

// Takes the twelve edges of the full cube off, `width` voxels deep.
void BevelCube(Grid &grid, int width);

// Copies what is filled onto its mirror image across the grid's middle on that axis.
void Mirror(Grid &grid, Axis axis);

// Copies what is filled round the y axis so that all four sides look alike.
void FourSides(Grid &grid);

// Adds a picture of the upper side (y = 15) to all six sides.
void SixSides(Grid &grid, const Grid &top);

// The grid turned a quarter about an axis.
Grid Turned(const Grid &grid, Axis axis);

// Adds every filled voxel of `other`.
void Add(Grid &grid, const Grid &other);

// Repaints every filled voxel of a box, and leaves the empty ones.
void Tint(Grid &grid, Region region, Paint paint);

// Small random boxes of the given height on the upper (y) surface of a box's floor.
void Greeble(Grid &grid, Region region, int count, uint32_t seed, Paint paint);

// Gives a drawn shape its worn look: hollows darker, edges lighter, faint patches. Own colours with a byte
// of 250 or more glow and stay as they are, as see-through voxels do.
void Weather(Grid &grid, uint32_t seed, float strength = 1.0f);

// Writes the grid as a graphic file of 16,416 bytes. False when the file can't be written.
bool WriteGrid(const Grid &grid, const std::string &path);
