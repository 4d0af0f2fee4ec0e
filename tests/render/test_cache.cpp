// The lists of a block, and the colours in them, against a slow model that follows the rules voxel by voxel.
#include <algorithm>
#include <array>
#include <cmath>

#include "core/utils.h"
#include "render/blocks.h"
#include "render/colour.h"

namespace {

struct Entry {
  int x, y, z;
  u32 colour;
  bool operator==(const Entry &) const = default;
};
struct SlowCache {
  std::vector<Entry> lists[4];  // opaque, transparent, eight, quad
  int cube[3] = {0, 0, 0};
};

struct SlowBlock {
  Block block;
  const u8 *damage = nullptr;
  const Voxel &At(int v) const { return Components[block.component].voxels[static_cast<size_t>(v)]; }
  const Material &Stuff() const { return Materials[block.material]; }
  bool Glass() const { return Stuff().alpha != 255; }
  int Index(int x, int y, int z) const { return VoxelIndex(x, y, z, block.rotation, block.rotation2); }
};

struct SlowModel {
  SlowBlock own;
  SlowBlock near[3][2];  // [axis][0 the higher, 1 the lower side]; state 0 for none
  const GraphicBlock *graphic;
  const Ship *ship;
  const Player *player;
  int cell[3];
  int ghost = 0;

  int Exposure(const int (&at)[3], int v) const {
    int open = 0, through = 0, inside = 0, solid = 0;
    for (const int axis : {1, 2, 0})
      for (const int step : {1, -1}) {
        int to[3] = {at[0], at[1], at[2]};
        to[axis] += step;
        if (to[axis] >= 0 && to[axis] <= 15) {
          const u8 a = own.At(own.Index(to[0], to[1], to[2])).alpha;
          const bool seen = (a >= 2 && a <= 249) || (own.Glass() && a == 254);
          ++inside, open += a < 2 || seen, through += seen, solid += a >= 250;
          continue;
        }
        to[axis] &= 15;
        const SlowBlock &n = near[axis][step > 0 ? 0 : 1];
        const int kind = n.block.state == 0 ? 1 : VoxelClass(HeadOf(n.block), n.damage, to[0], to[1], to[2]);
        if (kind == 2) return 2;
        open += kind;
      }
    const u8 a = own.At(v).alpha;
    if (solid == 6) return 0;
    if (inside == 6 && through == 6 && (a < 250 || (own.Glass() && a == 254))) return 0;
    return open > 0 ? 1 : 0;
  }
  static float Fall(float d) { return d > 16 ? 0 : d <= 1 ? 1 : 1 - d * 0.0625f; }
  void Light(const int (&at)[3], float (&light)[3]) const {
    float p[3], sum[3] = {0, 0, 0};
    for (int i = 0; i < 3; ++i) p[i] = static_cast<float>(cell[i]) + static_cast<float>(at[i]) / 16;
    if (Options.flashlightLit) {
      const float f = Fall(std::fabs(player->relativeLoc[0] - p[0]) + std::fabs(player->relativeLoc[1] - p[1]) +
                           std::fabs(player->relativeLoc[2] - p[2]));
      sum[0] = 255 * f, sum[1] = 250 * f, sum[2] = 200 * f;
    }
    for (int l = 0; l < graphic->lightCount; ++l) {
      const LightEntry &e = graphic->lightList[l];
      const float x = static_cast<float>(e.dx + cell[0]) - p[0], y = static_cast<float>(e.dy + cell[1]) - p[1],
                  z = static_cast<float>(e.dz + cell[2]) - p[2];
      const float f = Fall(FastSqrt(x * x + y * y + z * z));
      sum[0] += e.red * f, sum[1] += e.green * f, sum[2] += e.blue * f;
    }
    for (int i = 0; i < 3; ++i) light[i] = sum[i] > 255 ? 1.0f : sum[i] * 0.003921569f;
  }
  // rule: 0 lit, 1 see-through, 2 beside a voxel that is gone, 3 ghost.
  u32 Colour(int rule, const int (&at)[3], int v) const {
    static const float bases[2][4] = {{1.0f, 0.6f, 0.65f, 0.6f}, {1.0f, 0.2f, 0.45f, 0.2f}};
    const Voxel &voxel = own.At(v);
    const bool ofMaterial = voxel.alpha == 254, plain = rule == 3 && ghost >= 200;
    const u32 seed = static_cast<u32>(cell[1]) * 125u * static_cast<u32>(cell[0]) * static_cast<u32>(cell[2]) + static_cast<u32>(cell[0]);
    const float n = HashToUnit(seed * static_cast<u32>(v)), scruff = ofMaterial ? ship->MatScruffiness : ship->ComScruffiness;
    const float f = plain ? 1 : std::max(0.0f, bases[ofMaterial][rule] - n * scruff);
    const float s = ofMaterial && !plain ? (voxel.red == 0 ? 0.4f : static_cast<float>(voxel.red) / 255.0f) : 1;
    float light[3] = {1, 1, 1};
    if (rule != 3) Light(at, light);
    const Material &m = own.Stuff();
    const int source[3] = {ofMaterial ? m.red : voxel.red, ofMaterial ? m.green : voxel.green, ofMaterial ? m.blue : voxel.blue};
    u32 colour = 0;
    for (int c = 0; c < 3; ++c)
      // A ghost's factor and shade are one product, the other rules go through light, noise and shade in turn.
      colour |= static_cast<u32>(rule == 3 ? static_cast<float>(source[c]) * (f * s) : static_cast<float>(source[c]) * light[c] * f * s)
                << (8 * c);
    u32 alpha = 255;
    if (rule == 1) alpha = ofMaterial ? static_cast<u32>(static_cast<float>(m.alpha) + static_cast<float>(255 - m.alpha) * (1 - static_cast<float>(voxel.red) / 255.0f)) : voxel.alpha;
    if (rule == 3) alpha = std::min<u32>(static_cast<u32>(ghost), ofMaterial ? m.alpha : voxel.alpha);
    return colour | alpha << 24;
  }
  void Coarser(SlowCache *out, const std::vector<int> &map, int level) const {
    const int edge = level == 2 ? 2 : 4;
    const auto &from = out->lists;
    for (int x = 0; x < 16; x += edge)
      for (int y = 0; y < 16; y += edge)
        for (int z = 0; z < 16; z += edge) {
          int sums[3] = {0, 0, 0}, count = 0;
          for (int corner = 0; corner < 8; ++corner) {
            const int half = edge / 2;
            const int v = own.Index(x + (corner & 1) * half, y + (corner >> 1 & 1) * half, z + (corner >> 2) * half);
            const int e = map[static_cast<size_t>(v)];
            if (e == 0) continue;
            const u32 c = level == 3 ? from[2][static_cast<size_t>(e)].colour : e > 0 ? from[0][static_cast<size_t>(e)].colour : from[1][static_cast<size_t>(-e)].colour;
            if (e < 0 && c >> 24 <= 150) continue;
            ++count;
            for (int i = 0; i < 3; ++i) sums[i] += static_cast<int>(c >> (8 * i) & 255);
          }
          if (count == 0) continue;
          u32 colour = 0xff000000u;
          for (int i = 0; i < 3; ++i) colour |= static_cast<u32>(static_cast<float>(sums[i]) * (1.0f / static_cast<float>(count))) << (8 * i);
          out->lists[level].push_back({x, y, z, colour});
        }
  }
  SlowCache Build() const {
    SlowCache out;
    std::vector<int> where(4096), map(4096), eights(4097);
    for (int p = 0; p < 4096; ++p) where[static_cast<size_t>(own.Index(p >> 8, p >> 4 & 15, p & 15))] = p;
    for (int v = 0; v < 4096; ++v) {
      const u8 alpha = own.At(v).alpha;
      if (alpha == 0) continue;
      const int p = where[static_cast<size_t>(v)], at[3] = {p >> 8, p >> 4 & 15, p & 15};
      const int r = Exposure(at, v);
      if (r == 0) continue;
      const bool through = ghost > 0 || (r == 1 && (alpha < 250 || (own.Glass() && alpha == 254)));
      const int position = static_cast<int>(out.lists[through].size());
      map[static_cast<size_t>(v)] = through ? -position : position;
      out.lists[through].push_back({at[0], at[1], at[2], Colour(ghost > 0 ? 3 : r == 2 ? 2 : through, at, v)});
    }
    if (ghost > 0) return out;
    Coarser(&out, map, 2);
    for (size_t e = 0; e < out.lists[2].size(); ++e)
      eights[static_cast<size_t>(own.Index(out.lists[2][e].x, out.lists[2][e].y, out.lists[2][e].z))] = static_cast<int>(e);
    Coarser(&out, eights, 3);
    const u32 place = static_cast<u32>(cell[0]) * static_cast<u32>(cell[1]) * static_cast<u32>(cell[2]);
    const float f = std::max(0.0f, 1 - 2 * ship->ComScruffiness * HashToUnit(place));
    const int quads = static_cast<int>(out.lists[3].size());
    for (int i = 0; i < 3 && quads > 0; ++i) {
      int total = 0;
      for (const Entry &e : out.lists[3]) total += static_cast<int>(e.colour >> (8 * i) & 255);
      out.cube[i] = std::max(i == 0 ? 1 : 0, static_cast<int>(static_cast<float>(total / quads) * f));
    }
    return out;
  }
};

}  // namespace

static std::vector<Entry> EntriesOf(const BlockCache *c, int level) {
  const CacheList part = ListOf(c, static_cast<CacheLevel>(level));
  std::vector<Entry> entries;
  for (unsigned e = 0; e < part.count; ++e) entries.push_back({part.voxels[e].x, part.voxels[e].y, part.voxels[e].z, part.colours[e]});
  return entries;
}

namespace {

struct Cache : Render {
  u16 components[6] = {}, materials[3] = {};
  void SetUp() override {
    Render::SetUp();
    components[0] = SolidComponent();
    components[1] = RandomComponent({0, 255});
    components[2] = RandomComponent({0, 1, 2, 149, 200, 249, 250, 251, 253, 254, 255});
    components[3] = RandomComponent({249, 250, 254, 255, 255, 255});
    components[4] = RandomComponent({254, 254, 254, 200, 2});
    components[5] = AddComponent([](int) { return Voxel{10, 20, 30, 2, 0}; });
    for (u16 row = 1; row < MaterialCount; ++row) materials[Materials[row].alpha == 255 ? 0 : Materials[row].alpha < 100 ? 1 : 2] = row;
  }
  Block RandomBlock(unsigned state) {
    Block b = CubeOf(materials[Draw(3)], components[Draw(6)], 1 + static_cast<unsigned>(Draw(6)), static_cast<unsigned>(Draw(4)));
    b.state = state & 3u;
    return b;
  }
  SlowBlock RandomNeighbour(int x, int y, int z) {
    const int kind = Draw(4);
    if (kind == 0 || x > 9999) return {};
    SlowBlock n{RandomBlock(kind == 1 ? StateDamaged : StateWhole)};
    GraphicBlock *g = Put(x, y, z, n.block);
    if (kind != 1 || Draw(4) == 0) return n;
    EXPECT_TRUE(AllocDamageBits(AddressOf(static_cast<unsigned>(x), static_cast<unsigned>(y), static_cast<unsigned>(z)), *ship));
    for (int i = 0; i < 512; ++i) g->damageBits.load()[i] = static_cast<u8>(Draw(2) == 0 ? 0 : Draw(256));
    n.damage = g->damageBits.load();
    return n;
  }
};

}  // namespace

TEST_F(Cache, ListsAreThoseOfTheSlowModel) {
  for (int round = 0; round < 240; ++round) {
    SlowModel model;
    const int at[3] = {round % 8 == 0 ? 9999 : 1 + 4 * round, round % 3 == 0 ? 1 : 500 + Draw(9000), round % 5 == 0 ? 9999 : 1 + Draw(9000)};
    std::copy_n(at, 3, model.cell);
    model.own = {RandomBlock(StateWhole)};
    GraphicBlock *g = Put(at[0], at[1], at[2], model.own.block);
    for (int axis = 0; axis < 3; ++axis)
      for (int side = 0; side < 2; ++side) {
        int to[3] = {at[0], at[1], at[2]};
        to[axis] += side == 0 ? 1 : -1;
        if (round % 6 != 1 && to[axis] <= 9999) model.near[axis][side] = RandomNeighbour(to[0], to[1], to[2]);
      }
    GiveLights(g, round % 4 == 0 ? 12 : Draw(4));
    Options.flashlightLit = round % 7 == 0;
    for (int i = 0; i < 3; ++i) player.relativeLoc[i] = static_cast<float>(at[i]) + 0.01f * static_cast<float>(Draw(1000) - 500);
    ship->ComScruffiness = 0.01f * static_cast<float>(Draw(120));
    ship->MatScruffiness = 0.01f * static_cast<float>(Draw(120));
    model.ghost = round % 5 == 2 ? 120 : round % 5 == 3 ? 200 : 0;
    g->ghostAlpha = static_cast<u8>(model.ghost);
    model.graphic = g, model.ship = ship, model.player = &player;
    ASSERT_EQ(Build(g, model.own.block), 1);
    const SlowCache slow = model.Build();
    for (int l = 0; l < CacheLevels; ++l) ASSERT_EQ(EntriesOf(g->cache, l), slow.lists[l]) << "round " << round << " list " << l;
    for (int i = 0; i < 3; ++i) ASSERT_EQ(g->cacheState[i], slow.cube[i]) << "round " << round;
    FreeShip(ship);
    ASSERT_TRUE(AllocShipTable(ship));
  }
}

TEST_F(Cache, BlocksWithoutVoxelsKeepTheRightEmptyForm) {
  const Block whole = CubeOf(materials[0], components[0]);
  EXPECT_EQ(Build(Put(0, 5, 5, whole), whole), 1);
  EXPECT_EQ(RecordAt(0, 5, 5)->cache, nullptr);  // the zero faces of a ship have no lists
  Block damaged = whole, turned = whole;
  damaged.state = StateDamaged;
  turned.rotation = 7;
  for (const Block &b : {damaged, turned}) {
    GraphicBlock *g = Put(5, 5, 5, b);
    Build(g, whole);
    const u8 before = g->cacheState[0];
    Build(g, b);
    ASSERT_NE(g->cache, nullptr);
    EXPECT_EQ(CacheTotal(*g->cache), 0u);
    EXPECT_EQ(g->cacheState[0], before);
    EXPECT_EQ(AppendOpaque(g, &list), 1);
    EXPECT_EQ(list.count, 0u);
  }
  const Block misty = CubeOf(materials[0], components[5]);
  GraphicBlock *g = Put(5, 5, 5, misty);
  Build(g, misty);
  EXPECT_EQ(g->cache->counts[TransparentList], 1352);  // see-through masses have no inside
  EXPECT_EQ(g->cache->counts[EightList], 0);           // and are too faint for the coarser lists
}

TEST_F(Cache, AppendsPlaceEveryEntryOfEveryList) {
  const struct { int (*append)(GraphicBlock *, VoxelList *); float offset, scale; } forms[] = {
      {AppendOpaque, 0, 1}, {AppendTransparent, 0, 1}, {AppendEight, 0.03125f, 2}, {AppendQuad, 0.09375f, 4}};
  const Block b = CubeOf(materials[1], components[2], 4, 3);
  GraphicBlock *g = Put(9999, 4321, 7, b);
  GiveLights(g, 2);
  for (const auto &form : forms) EXPECT_EQ(form.append(g, &list), 0);
  Build(g, b);
  for (const auto &form : forms) EXPECT_EQ(form.append(g, &list), 1);
  ASSERT_EQ(list.count, 4 * CacheTotal(*g->cache));
  unsigned at = 0;
  for (int l = 0; l < CacheLevels; ++l)
    for (const Entry &e : EntriesOf(g->cache, l)) {
      const float shift = forms[l].offset, expected[4] = {9999 + static_cast<float>(e.x) / 16 + shift, 4321 + static_cast<float>(e.y) / 16 + shift,
                                                          7 + static_cast<float>(e.z) / 16 + shift, forms[l].scale};
      ASSERT_EQ(memcmp(list.locations + 4 * at, expected, sizeof expected), 0) << at;
      ASSERT_EQ(ColourAt(at), e.colour);
      ++at;
    }
}

TEST_F(Cache, SeeThroughVoxelsComeNearestFirstAndAFewGlint) {
  const Block b = CubeOf(materials[2], components[4]);
  GraphicBlock *g = Put(30, 31, 32, b);
  GiveLights(g, 3);
  Build(g, b);
  std::vector<Entry> entries = EntriesOf(g->cache, TransparentList);
  const unsigned count = static_cast<unsigned>(entries.size());
  ASSERT_GT(count, 300u);
  const float camera[3] = {33.3f, 30.1f, 29.9f};
  const u32 seed = 0x9e3779b9;
  const auto way = [&](const Entry &e) {
    return std::fabs(camera[0] - 30 - static_cast<float>(e.x) / 16) + std::fabs(camera[1] - 31 - static_cast<float>(e.y) / 16) +
           std::fabs(camera[2] - 32 - static_cast<float>(e.z) / 16);
  };
  std::stable_sort(entries.begin(), entries.end(), [&](const Entry &l, const Entry &r) { return way(l) < way(r); });
  AppendTransparentSorted(g, &list, camera);
  AppendTransparentSparkle(g, &list, camera, seed);
  ASSERT_EQ(list.count, 8 * count);
  unsigned glints = 0;
  for (unsigned i = 0; i < count; ++i) {
    const auto &[x, y, z, plain] = entries[i];
    ASSERT_EQ(ColourAt(i), plain) << i;
    ASSERT_EQ(list.locations[4 * i + 2], 32 + static_cast<float>(z) / 16);
    const float h = HashToUnit(static_cast<u32>(x + y * z) + (plain & 255) * seed);
    u32 expected = h < 0.04f ? plain & 0xff000000u : plain;
    for (int c = 0; h < 0.04f && c < 24; c += 8) {
      const float channel = static_cast<float>(plain >> c & 255);
      const float brighter = (HashToUnit(plain >> c & 255) * 0.29411763f + h * 50) * channel;
      expected |= std::min(255u, static_cast<u32>(channel + brighter)) << c;
    }
    glints += h < 0.04f;
    ASSERT_EQ(ColourAt(count + i), expected) << i;
  }
  EXPECT_GT(glints, 0u);
}

TEST_F(Cache, CubesInTheDarkAreNeverWhollyBlack) {
  const Block b = CubeOf(1, components[0]);
  GraphicBlock *g = Put(5, 6, 7, b);
  ship->ComScruffiness = 0;
  CubeColour(g, HeadOf(b), *ship);
  EXPECT_EQ(g->cacheState[0], 1);
  GiveLights(g, 1);
  g->lightList[0] = {8, 0, 0, 255, 255, 255, 0};
  CubeColour(g, HeadOf(b), *ship);
  EXPECT_EQ(g->cacheState[0], 1);  // kept until it is cleared
  g->cacheState[0] = 0;
  CubeColour(g, HeadOf(b), *ship);
  EXPECT_EQ(g->cacheState[1], static_cast<u8>(static_cast<float>(Materials[1].green) * (128.5f * 0.003921569f)));
}
