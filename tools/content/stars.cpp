// The star box. Every pixel is worked out from the direction that it shows, so the six pictures meet.
#include "stars.h"

#include "noise.h"
#include "picture.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

namespace {

constexpr int Edge = 1024;

struct Vec {
  float x, y, z;
};

namespace {

struct Colour {
  float r, g, b;  // 0 to 255
};

struct Star {
  Vec at;
  Colour colour;
  float spread;  // radians
};

// Where the picture's corner (0, 0) lies, and the ways that columns and rows run, for half-edge 1.
struct Face {
  Vec corner, column, row;
};

}  // namespace

constexpr Face faces[6] = {
    {{1, -1, -1}, {-2, 0, 0}, {0, 2, 0}},  // z = -1
    {{1, -1, 1}, {0, 0, -2}, {0, 2, 0}},   // x = 1
    {{-1, -1, 1}, {2, 0, 0}, {0, 2, 0}},   // z = 1
    {{-1, -1, -1}, {0, 0, 2}, {0, 2, 0}},  // x = -1
    {{-1, 1, 1}, {2, 0, 0}, {0, 0, -2}},   // y = 1
    {{-1, -1, -1}, {2, 0, 0}, {0, 0, 2}},  // y = -1
};

// The plane of the galaxy, its middle, and where the two faint clouds hang.
constexpr Vec galaxyPole{0.35f, 0.86f, -0.37f};
constexpr Vec galaxyHeart{0.72f, -0.44f, -0.34f};
constexpr Vec tealCloud{-0.62f, 0.20f, -0.76f};
constexpr Vec rustCloud{0.30f, -0.25f, 0.92f};

}  // namespace

static float Dot(const Vec &a, const Vec &b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

static Vec Unit(const Vec &v) {
  const float scale = 1.0f / std::sqrt(Dot(v, v));
  return {v.x * scale, v.y * scale, v.z * scale};
}

static Vec Along(const Face &face, float s, float t) {
  return {face.corner.x + s * face.column.x + t * face.row.x, face.corner.y + s * face.column.y + t * face.row.y,
          face.corner.z + s * face.column.z + t * face.row.z};
}

// Noise folded twice over itself, so that clouds look drawn out rather than lumpy.
static float Wisps(const Vec &d, float scale, uint32_t seed) {
  const float bend = LayeredNoise(d.x * 2.0f, d.y * 2.0f, d.z * 2.0f, 3, seed + 40) - 0.5f;
  return LayeredNoise(d.x * scale + bend * 1.6f, d.y * scale - bend, d.z * scale + bend, 5, seed);
}

static void AddCloud(Colour *sky, const Vec &d, const Vec &middle, const Colour &hue, uint32_t seed) {
  const float near = std::max(0.0f, Dot(d, Unit(middle)) - 0.45f) / 0.55f;
  if (near <= 0.0f) return;
  const float mist = std::max(0.0f, Wisps(d, 2.6f, seed) - 0.34f) / 0.66f;
  const float strength = near * near * mist * mist * 2.2f;
  *sky = {sky->r + hue.r * strength, sky->g + hue.g * strength, sky->b + hue.b * strength};
}

static Colour SkyAt(const Vec &d) {
  const float height = Dot(d, Unit(galaxyPole));
  const float toHeart = Dot(d, Unit(galaxyHeart));
  const float width = 0.13f + 0.10f * std::max(0.0f, toHeart);
  const float band = std::exp(-height * height / (width * width));
  const float cloud = Wisps(d, 3.4f, 501);
  const float dust = std::clamp((Wisps(d, 4.6f, 733) - 0.47f) * 5.0f, 0.0f, 1.0f) *
                     std::exp(-height * height / (0.10f * 0.10f));
  const float glow = band * (0.30f + 0.70f * cloud) * (1.0f - 0.72f * dust) * (0.55f + 0.45f * toHeart);
  const float warm = std::max(0.0f, toHeart);
  Colour sky{glow * (34.0f + 26.0f * warm), glow * (36.0f + 14.0f * warm), glow * (43.0f + 2.0f * warm)};
  AddCloud(&sky, d, tealCloud, {7.0f, 42.0f, 46.0f}, 611);
  AddCloud(&sky, d, rustCloud, {50.0f, 21.0f, 12.0f}, 677);
  return sky;
}

static Vec RandomDirection(Dice *dice) {
  const float z = RollBetween(dice, -1.0f, 1.0f);
  const float turn = RollBetween(dice, 0.0f, 6.2831853f);
  const float flat = std::sqrt(1.0f - z * z);
  return {flat * std::cos(turn), flat * std::sin(turn), z};
}

// The tint of a star: mostly white, some blue, some amber, a few deep orange.
static Colour StarTint(Dice *dice) {
  const float pick = Roll(dice);
  if (pick < 0.22f) return {0.74f, 0.86f, 1.0f};
  if (pick < 0.66f) return {1.0f, 0.98f, 0.94f};
  if (pick < 0.90f) return {1.0f, 0.88f, 0.70f};
  return {1.0f, 0.72f, 0.48f};
}

// Pictures wrap where they meet, so a star right on a cube edge would show on the far side as well.
static bool NearCubeEdge(const Vec &d) {
  float part[3] = {std::fabs(d.x), std::fabs(d.y), std::fabs(d.z)};
  std::sort(part, part + 3);
  return part[1] > part[2] * (1.0f - 12.0f / Edge);
}

static std::vector<Star> ScatterStars() {
  Dice dice{20260};
  std::vector<Star> stars;
  for (int i = 0; i < 30000; i++) {
    const Vec at = RandomDirection(&dice);
    const float height = Dot(at, Unit(galaxyPole));
    const float keep = 0.30f + 0.70f * std::exp(-height * height / 0.05f);
    const float rank = Roll(&dice);  // few stars are bright
    const Colour tint = StarTint(&dice);
    if (Roll(&dice) > keep || NearCubeEdge(at)) continue;
    const float light = 26.0f + 26.0f / (0.08f + 10.0f * rank);
    const float bright = std::min(light, 255.0f);
    const float spread = (0.62f + 0.0024f * bright) * 2.0f / Edge;
    stars.push_back({at, {tint.r * bright, tint.g * bright, tint.b * bright}, spread});
  }
  return stars;
}

static void AddStar(std::vector<Colour> *pixels, const Face &face, const Star &star) {
  const Vec middle = Along(face, 0.5f, 0.5f);
  const float ahead = Dot(star.at, middle);
  if (ahead < 0.5f) return;
  const Vec onFace{star.at.x / ahead, star.at.y / ahead, star.at.z / ahead};
  const Vec from{onFace.x - face.corner.x, onFace.y - face.corner.y, onFace.z - face.corner.z};
  const int column = static_cast<int>(Dot(from, face.column) / 4.0f * Edge);
  const int row = static_cast<int>(Dot(from, face.row) / 4.0f * Edge);
  constexpr int reach = 6;
  for (int y = std::max(0, row - reach); y <= std::min(Edge - 1, row + reach); y++) {
    for (int x = std::max(0, column - reach); x <= std::min(Edge - 1, column + reach); x++) {
      const Vec d = Unit(Along(face, (static_cast<float>(x) + 0.5f) / Edge, (static_cast<float>(y) + 0.5f) / Edge));
      const Vec off{d.x - star.at.x, d.y - star.at.y, d.z - star.at.z};
      const float light = std::exp(-Dot(off, off) / (2.0f * star.spread * star.spread));
      Colour &pixel = (*pixels)[static_cast<size_t>(y * Edge + x)];
      pixel = {pixel.r + light * star.colour.r, pixel.g + light * star.colour.g, pixel.b + light * star.colour.b};
    }
  }
}

// A byte for a brightness; the fraction is rounded by a fixed grain, so that faint slopes show no steps.
static uint8_t Grained(float value, float grain) {
  return static_cast<uint8_t>(std::clamp(value + (value < 0.6f ? 0.2f : grain), 0.0f, 255.0f));
}

static Picture DrawFace(const Face &face, uint32_t seed, const std::vector<Star> &stars) {
  std::vector<Colour> pixels(static_cast<size_t>(Edge) * Edge);
  for (int y = 0; y < Edge; y++) {
    for (int x = 0; x < Edge; x++) {
      const Vec d = Along(face, (static_cast<float>(x) + 0.5f) / Edge, (static_cast<float>(y) + 0.5f) / Edge);
      pixels[static_cast<size_t>(y * Edge + x)] = SkyAt(Unit(d));
    }
  }
  for (const Star &star : stars) AddStar(&pixels, face, star);
  Picture picture{Edge, Edge, {}};
  picture.pixels.reserve(pixels.size() * 3);
  for (int y = 0; y < Edge; y++) {
    for (int x = 0; x < Edge; x++) {
      const Colour &c = pixels[static_cast<size_t>(y * Edge + x)];
      const float grain = LatticeValue(x, y, 0, seed);
      for (const float value : {c.r, c.g, c.b}) picture.pixels.push_back(Grained(value, grain));
    }
  }
  return picture;
}

bool WriteStars() {
  const std::vector<Star> stars = ScatterStars();
  for (uint32_t i = 0; i < 6; i++) {
    const std::string path = "config/graphics/stars/stars" + std::to_string(i + 1) + ".png";
    if (!WritePicture(DrawFace(faces[i], 900 + i, stars), path)) return false;
  }
  return true;
}
