// Painting voxels: each is a box that the rays of its pixels meet or miss.
#include "paint.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "platform/threads.h"
#include "render/cache.h"
#include "render/image.h"
#include "world/access.h"

constexpr float Rise = 0.72f;                                   // how steeply the picture looks down
constexpr float FaceShade[3] = {0.84f, 1.0f, 0.68f};            // faces across x, y and z
constexpr float Far = 1e30f;
constexpr int VoxelsPerCell = 16;

namespace {

// The camera: rays run along `look`; `right` and `up` span the picture.
struct View {
  float look[3], right[3], up[3];
  float scale = 1;              // pixels a voxel
  float middleX = 0, middleY = 0;   // of the canvas
  float centre[3] = {};         // what stands there, in voxels of the ship's box
};

struct PaintedVoxel {
  float at[3];  // its lower corner
  u32 colour;   // red in the lowest byte, then green, blue, alpha
};

}  // namespace

static float Dot(const float (&a)[3], const float (&b)[3]) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

static void Cross(const float (&a)[3], const float (&b)[3], float (&out)[3]) {
  for (size_t i = 0; i < 3; ++i) out[i] = a[(i + 1) % 3] * b[(i + 2) % 3] - a[(i + 2) % 3] * b[(i + 1) % 3];
  const float length = std::sqrt(Dot(out, out));
  for (float &o : out) o /= length;
}

static View NewView(bool fromBack) {
  View v;
  const float look[3] = {-1.0f, -Rise, fromBack ? 1.0f : -1.0f}, upright[3] = {0, 1, 0};
  const float length = std::sqrt(Dot(look, look));
  for (size_t i = 0; i < 3; ++i) v.look[i] = look[i] / length;
  Cross(v.look, upright, v.right);
  Cross(v.right, v.look, v.up);
  return v;
}

// Adds the voxels of one block, opaque or see-through.
static void CollectBlock(std::vector<PaintedVoxel> *voxels, const BlockCache *cache, CacheLevel level, const int (&cell)[3]) {
  const CacheList list = ListOf(cache, level);
  for (unsigned i = 0; i < list.count; ++i) {
    const CacheVoxel &v = list.voxels[i];
    voxels->push_back({{static_cast<float>(cell[0] * VoxelsPerCell + v.x), static_cast<float>(cell[1] * VoxelsPerCell + v.y),
                        static_cast<float>(cell[2] * VoxelsPerCell + v.z)},
                       list.colours[i]});
  }
}

static void CollectCells(const Ship &ship, const CellBox &box, std::vector<PaintedVoxel> *opaque,
                         std::vector<PaintedVoxel> *seeThrough) {
  ScopedLock world(&WorldMutex);
  const Player player;
  for (u16 x = box.x0; x <= box.x1; ++x)
    for (u16 y = box.y0; y <= box.y1; ++y)
      for (u16 z = box.z0; z <= box.z1; ++z) {
        u64 head;
        GraphicBlock *graphic;
        if (!GetCellPointers(x, y, z, ship, &head, &graphic)) continue;
        BuildBlockCache(head, ship, x, y, z, player, graphic, nullptr);
        if (graphic->cache == nullptr) continue;
        const int cell[3] = {x - box.x0, y - box.y0, z - box.z0};
        CollectBlock(opaque, graphic->cache, OpaqueList, cell);
        CollectBlock(seeThrough, graphic->cache, TransparentList, cell);
      }
}

// Chooses scale and middle so that the voxels fill the frame.
static void FitView(View *v, const Frame &frame, const std::vector<PaintedVoxel> &voxels, float maxScale) {
  float low[2] = {Far, Far}, high[2] = {-Far, -Far};
  for (const PaintedVoxel &p : voxels) {
    const float on[2] = {Dot(p.at, v->right), Dot(p.at, v->up)};
    for (size_t i = 0; i < 2; ++i) low[i] = std::min(low[i], on[i]), high[i] = std::max(high[i], on[i]);
  }
  const float width = high[0] - low[0] + 2, height = high[1] - low[1] + 2;
  v->scale = std::min({maxScale, static_cast<float>(frame.width) / width, static_cast<float>(frame.height) / height});
  for (size_t i = 0; i < 3; ++i)
    v->centre[i] = v->right[i] * (low[0] + high[0]) / 2 + v->up[i] * (low[1] + high[1]) / 2;
  v->middleX = static_cast<float>(frame.left) + static_cast<float>(frame.width) / 2;
  v->middleY = static_cast<float>(frame.top) + static_cast<float>(frame.height) / 2;
}

// Where a ray enters a voxel, and through which face; false when it passes by.
static bool MeetVoxel(const View &v, const float (&start)[3], const float (&at)[3], float *enter, size_t *face) {
  float leave = Far;
  *enter = -Far;
  for (size_t i = 0; i < 3; ++i) {
    const float a = (at[i] - start[i]) / v.look[i], b = (at[i] + 1 - start[i]) / v.look[i];
    const float in = std::min(a, b);
    if (in > *enter) *enter = in, *face = i;
    leave = std::min(leave, std::max(a, b));
  }
  return *enter < leave;
}

static void PaintPixel(Canvas *canvas, size_t pixel, const PaintedVoxel &voxel, float depth, float shade) {
  const bool opaque = voxel.colour >> 24 == 255;
  if (depth > canvas->depth[pixel]) return;
  if (opaque) canvas->depth[pixel] = depth;
  const float share = static_cast<float>(voxel.colour >> 24) / 255.0f;
  for (size_t c = 0; c < 3; ++c) {
    u8 &channel = canvas->rgb[pixel * 3 + c];
    const float colour = static_cast<float>(voxel.colour >> (8 * c) & 255) * shade;
    channel = static_cast<u8>(colour * share + static_cast<float>(channel) * (1 - share));
  }
}

static void PaintVoxel(Canvas *canvas, const View &v, const PaintedVoxel &voxel) {
  const float middle[3] = {voxel.at[0] + 0.5f, voxel.at[1] + 0.5f, voxel.at[2] + 0.5f};
  const float x = v.middleX + (Dot(middle, v.right) - Dot(v.centre, v.right)) * v.scale;
  const float y = v.middleY - (Dot(middle, v.up) - Dot(v.centre, v.up)) * v.scale;
  const float reach = v.scale * 0.9f + 1;
  const int left = std::max(0, static_cast<int>(x - reach)), right = std::min(canvas->width - 1, static_cast<int>(x + reach));
  const int top = std::max(0, static_cast<int>(y - reach)), bottom = std::min(canvas->height - 1, static_cast<int>(y + reach));
  for (int py = top; py <= bottom; ++py)
    for (int px = left; px <= right; ++px) {
      const float dx = (static_cast<float>(px) + 0.5f - v.middleX) / v.scale;
      const float dy = (v.middleY - static_cast<float>(py) - 0.5f) / v.scale;
      float start[3], enter;
      size_t face = 0;
      for (size_t i = 0; i < 3; ++i) start[i] = v.centre[i] + v.right[i] * dx + v.up[i] * dy;
      if (MeetVoxel(v, start, voxel.at, &enter, &face))
        PaintPixel(canvas, static_cast<size_t>(py) * static_cast<size_t>(canvas->width) + static_cast<size_t>(px), voxel, enter,
                   FaceShade[face]);
    }
}

Canvas NewCanvas(int width, int height, u8 red, u8 green, u8 blue) {
  Canvas c;
  c.width = width;
  c.height = height;
  const size_t pixels = static_cast<size_t>(width) * static_cast<size_t>(height);
  c.rgb.resize(pixels * 3);
  c.depth.assign(pixels, Far);
  FillFrame(&c, {0, 0, width, height}, red, green, blue);
  return c;
}

void SetPixel(Canvas *canvas, int x, int y, u8 red, u8 green, u8 blue) {
  if (x < 0 || y < 0 || x >= canvas->width || y >= canvas->height) return;
  u8 *at = &canvas->rgb[(static_cast<size_t>(y) * static_cast<size_t>(canvas->width) + static_cast<size_t>(x)) * 3];
  at[0] = red;
  at[1] = green;
  at[2] = blue;
}

void FillFrame(Canvas *canvas, const Frame &frame, u8 red, u8 green, u8 blue) {
  for (int y = frame.top; y < frame.top + frame.height; ++y)
    for (int x = frame.left; x < frame.left + frame.width; ++x) SetPixel(canvas, x, y, red, green, blue);
}

void PaintCells(Canvas *canvas, const Frame &frame, const Ship &ship, const CellBox &box, bool fromBack, float maxScale) {
  std::vector<PaintedVoxel> opaque, seeThrough, all;
  CollectCells(ship, box, &opaque, &seeThrough);
  all = opaque;
  all.insert(all.end(), seeThrough.begin(), seeThrough.end());
  if (all.empty()) return;
  View v = NewView(fromBack);
  FitView(&v, frame, all, maxScale);
  std::stable_sort(seeThrough.begin(), seeThrough.end(), [&](const PaintedVoxel &a, const PaintedVoxel &b) {
    return Dot(a.at, v.look) > Dot(b.at, v.look);  // the farthest first
  });
  for (const PaintedVoxel &p : opaque) PaintVoxel(canvas, v, p);
  for (const PaintedVoxel &p : seeThrough) PaintVoxel(canvas, v, p);
}

bool SaveCanvas(const Canvas &canvas, int height, const std::string &path) {
  const size_t width = static_cast<size_t>(canvas.width) / 2, rows = static_cast<size_t>(std::min(height, canvas.height)) / 2;
  std::vector<u8> small(width * rows * 3);
  for (size_t y = 0; y < rows; ++y)
    for (size_t x = 0; x < width * 3; ++x) {
      const size_t at = (2 * y * 2 * width + 2 * (x / 3)) * 3 + x % 3, below = at + width * 2 * 3;
      small[y * width * 3 + x] = static_cast<u8>((canvas.rgb[at] + canvas.rgb[at + 3] + canvas.rgb[below] + canvas.rgb[below + 3]) / 4);
    }
  if (WritePng(path.c_str(), small.data(), static_cast<u32>(width), static_cast<u32>(rows))) return true;
  std::fprintf(stderr, "%s can't be written.\n", path.c_str());
  return false;
}
