#include "gameplay/connect.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <set>

#include "content/components.h"
#include "gameplay/play.h"
#include "gameplay/tools.h"

namespace {

using Ids = std::set<int>;

void AddRow(u16 id, int toBase, const char *word) {
  Component c;
  c.id = id;
  c.familyOffset = static_cast<i8>(toBase);
  c.className = word;
  c.facts = std::make_unique<VoxelFacts>();
  std::fill(std::begin(c.facts->alpha), std::end(c.facts->alpha), u8{255});
  Components.push_back(std::move(c));
}

void EndTable() {
  ComponentCount = static_cast<u16>(Components.size());
  Components.emplace_back();
  DeriveComponentTraits();
}

namespace {

// A cell beside the middle: a component, and the turn in which it stands.
struct Beside {
  int x, y, z;
  int id;
  unsigned rotation = 1, rotation2 = 0;
};

}  // namespace
constexpr int At = 500;
constexpr int SideSteps[6][3] = {{1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}};  // x+ x- y+ y- z+ z-

}  // namespace

namespace {

// A world in which each case begins on free ground.
struct Connect : Play {
  void Clear() {
    for (int x = -3; x <= 6; ++x)
      for (int y = -3; y <= 3; ++y)
        for (int z = -3; z <= 3; ++z)
          if (Taken(At + x, At + y, At + z)) Remove(At + x, At + y, At + z);
  }
  void Stand(const Beside &b) {
    const u16 row = static_cast<u16>(FindComponent(static_cast<u16>(b.id)));
    ASSERT_EQ(PlaceHere(ship, At + b.x, At + b.y, At + b.z, CubeOf(5, row, b.rotation, b.rotation2)), 1);
  }
  void StandOn(int side, int id) { Stand({SideSteps[side][0], SideSteps[side][1], SideSteps[side][2], id}); }
  // Kin on some sides (one bit each, x+ lowest), and on others what a pipe or a duct takes for a wall.
  void Surround(unsigned kin, int kinId, unsigned walls) {
    const int wallIds[3] = {250, 2000, 2010};
    for (int side = 0; side < 6; ++side)
      if ((kin >> side & 1) != 0) StandOn(side, kinId);
      else if ((walls >> side & 1) != 0) StandOn(side, wallIds[side % 3]);
  }
  Block Look(int x = 0, int y = 0, int z = 0) const {
    Block b;
    GetBlock(&b, static_cast<u16>(At + x), static_cast<u16>(At + y), static_cast<u16>(At + z), *ship);
    return b;
  }
  static int Id(const Block &b) { return Components[static_cast<size_t>(b.component)].id; }
  // Places in the middle, with the eye at an offset and the target on the far y.
  int Build(int id, unsigned rotation = 0, int ex = 0, int ey = 0, int ez = 0, Cell3 at = {At, At, At}) {
    Block held = CubeOf(5, static_cast<u16>(FindComponent(static_cast<u16>(id))), rotation);
    return PlaceShaped({.block = held, .at = at, .target = {At, At + 1, At}, .eye = {At + ex, At + ey, At + ez}, .ship = ship});
  }
  void ExpectAt(const Beside &cell, const Ids &ids, const char *what) const {
    const Block b = Look(cell.x, cell.y, cell.z);
    EXPECT_TRUE(ids.count(Id(b))) << what << ": id " << Id(b);
    EXPECT_EQ(b.rotation, cell.rotation) << what;
    EXPECT_EQ(b.rotation2, cell.rotation2) << what;
  }
};

}  // namespace

TEST_F(Connect, ABlockStandsOnTheFaceOfItsTarget) {
  const struct { int x, y, z, id; unsigned held, rotation; } cases[] = {
      {0, 1, 0, 1000, 0, 2}, {0, -1, 0, 1000, 0, 5}, {1, 0, 0, 1000, 0, 4}, {-1, 0, 0, 1000, 0, 6}, {0, 0, 1, 1000, 0, 1},
      {0, 0, -1, 1000, 0, 3}, {1, 1, 0, 1000, 0, 2},  // y before x
      {-1, 0, 1, 1000, 0, 6},                         // x before z
      {0, 0, 0, 1000, 0, 1}, {0, 0, -1, 1000, 4, 4}, {0, 0, -1, 2, 0, 1}};
  for (const auto &c : cases) {
    Clear();
    const Block held = CubeOf(5, static_cast<u16>(FindComponent(static_cast<u16>(c.id))), c.held);
    const Cell3 target = {static_cast<u16>(At + c.x), static_cast<u16>(At + c.y), static_cast<u16>(At + c.z)};
    ASSERT_EQ(PlaceShaped({.block = held, .at = {At, At, At}, .target = target, .ship = ship}), 1);
    EXPECT_EQ(Look().rotation, c.rotation) << c.x << " " << c.y << " " << c.z;
  }
}

TEST_F(Connect, ABlockLinesUpByItsNeighbourAndTheEye) {
  const struct { int side, ex, ey, ez; unsigned rotation; } cases[] = {
      {0, 0, -1, 0, 4}, {0, 0, 1, 2, 1}, {0, 0, 1, 1, 2},  {0, 0, 2, 1, 2},                    // x+
      {1, 0, -1, 0, 5}, {1, 0, 1, 2, 1}, {1, 0, -1, -1, 3}, {1, 0, 2, 1, 2},                   // x-
      {2, 1, 0, 0, 4},  {2, 0, 0, -1, 2}, {2, -1, 0, 0, 5}, {2, 0, 0, 0, 1},                   // y+
      {3, 1, 0, 0, 4},  {3, 0, 0, -1, 2}, {3, -1, 0, 0, 5}, {3, 0, 0, 0, 1},                   // y-
      {4, -1, 0, 0, 5}, {4, 1, 1, 0, 2},  {4, -1, -2, 0, 4},                                   // z+
      {5, 0, -1, 0, 5}, {5, 1, 0, 0, 4},  {5, -1, 0, 0, 6}, {5, 1, 1, 0, 2}};                  // z-
  for (const auto &c : cases) {
    Clear();
    StandOn(c.side, 1000);
    ASSERT_EQ(Build(70, 0, c.ex, c.ey, c.ez), 1);
    EXPECT_EQ(Look().rotation, c.rotation) << c.side << ": " << c.ex << " " << c.ey << " " << c.ez;
  }
  const struct { std::vector<Beside> around; unsigned held; int ex; unsigned rotation; const char *what; } scenes[] = {
      {{}, 0, 0, 2, "alone it stands on its target"}, {{{1, 0, 0, 1000}, {0, 0, 1, 1000}}, 0, -1, 5, "the last neighbour counts"},
      {{{0, 1, 0, 0, 6, 3}, {0, 0, 1, 1000}}, 0, -1, 6, "the same kind ends the walk"},
      {{{0, 1, 0, 0, 6}}, 3, 0, 3, "the builder's choice"}};
  for (const int id : {70, 80, 83, 94, 240, 250, 270, 360, 362, 450, 550, 551, 600, 601})
    for (const auto &s : scenes) {
      Clear();
      for (const Beside &b : s.around) Stand({b.x, b.y, b.z, b.id == 0 ? id : b.id, b.rotation, b.rotation2});
      Build(id, s.held, s.ex);
      ExpectAt({0, 0, 0, id, s.rotation}, {id}, s.what);
    }
}

TEST_F(Connect, AnObjectOfSeveralCellsStandsWholeOrNotAtAll) {
  const struct { int id, x, y, z; } objects[] = {{30, 1, 1, 2}, {120, 1, 2, 1}, {122, 1, 2, 1}, {124, 1, 2, 1}, {350, 2, 2, 2}};
  const Beside order[8] = {{0, 1, 0, 0}, {0, 1, 1, 0}, {0, 0, 0, 0}, {0, 0, 1, 0},
                           {1, 1, 0, 0}, {1, 1, 1, 0}, {1, 0, 0, 0}, {1, 0, 1, 0}};
  for (const auto &o : objects) {
    const auto inBox = [&](const Beside &b) { return b.x < o.x && b.y < o.y && b.z < o.z; };
    for (const Beside &blocked : order) {
      if (!inBox(blocked)) continue;
      Clear();
      Stand({blocked.x, blocked.y, blocked.z, 1000});
      EXPECT_EQ(Build(o.id), 0);
      for (const Beside &b : order)
        EXPECT_EQ(Taken(At + b.x, At + b.y, At + b.z), &b == &blocked) << o.id;
    }
    Clear();
    ASSERT_EQ(Build(o.id, 5), 1);
    int step = 0;
    for (const Beside &b : order)
      if (inBox(b)) ExpectAt({b.x, b.y, b.z, 0, 3}, {o.id + step++}, "the rows rise through the box");
      else EXPECT_FALSE(Taken(At + b.x, At + b.y, At + b.z)) << o.id;
    EXPECT_EQ(step, o.x * o.y * o.z);
    Clear();
  }
}

// Blocks built one after the other, as a held button builds them but faster: every form and turn comes up, and none in long runs.
TEST_F(Connect, ChanceDrawsTheFormAndBothTurns) {
  const struct { int id, forms; } families[] = {{200, 12}, {320, 3}, {370, 3}, {420, 4}, {3520, 5}, {251, 8}};
  for (const auto &f : families) {
    std::set<int> forms, turns;
    u64 before = 0;
    int run = 0;
    for (int i = 0; i < 500; ++i) {
      Clear();
      ASSERT_EQ(Build(f.id), 1);
      const u64 head = HeadAt(At, At, At, *ship);
      forms.insert(Components[HeadComponent(head)].id - f.id);
      turns.insert(static_cast<int>(4 * HeadRotation(head) + HeadRotation2(head)));
      run = head == before ? run + 1 : 0;
      ASSERT_LT(run, 10) << f.id;
      before = head;
    }
    EXPECT_TRUE(static_cast<int>(forms.size()) == f.forms && *forms.begin() == 0 && *forms.rbegin() == f.forms - 1) << f.id;
    EXPECT_TRUE(turns.size() == 24 && *turns.begin() == 4 && *turns.rbegin() == 27) << f.id;
  }
}

namespace {

// A piece in the middle, alone or with kin on some sides (one bit each, x+ lowest) and walls on others.
struct Joint {
  int held;
  unsigned kin, walls;
  Ids ids;
  unsigned rotation = 1, rotation2 = 0;
};

}  // namespace

constexpr unsigned XP = 1, XN = 2, YP = 4, YN = 8, ZP = 16, ZN = 32;

TEST_F(Connect, ANewPieceTakesTheFormOfItsJoint) {
  const Ids ends340{341, 342, 343}, ends310{311, 312}, straight20{20, 21, 22}, straight40{40, 41};
  const Joint joints[] = {
      {340, 0, 0, ends340}, {340, XP, 0, ends340, 4}, {340, XN, 0, ends340, 6}, {340, YP, 0, ends340, 2},
      {340, YN, 0, ends340, 5}, {340, ZP, 0, ends340, 1}, {340, ZN, 0, ends340, 3}, {340, XP | XN, 0, {340}, 6},
      {340, YP | YN, 0, {340}, 5}, {340, ZP | ZN, 0, {340}, 3}, {340, XP | YN, 0, {344}}, {340, XN | YP | ZP, 0, {344}},
      {340, 63, 0, {344}}, {340, XP, 62, ends340, 4}, {310, 0, 0, ends310}, {310, XP, 0, ends310, 6}, {310, XN, 0, ends310, 4},
      {310, YP, 0, ends310, 5}, {310, YN, 0, ends310, 2}, {310, ZP, 0, ends310, 3}, {310, ZN, 0, ends310, 1},
      {310, XP | XN, 0, {310}, 4}, {310, YP | ZN, 0, {313}}, {310, XP | XN | ZP, 0, {313}}, {310, 63, 0, {313}},
      {20, 0, 0, straight20}, {20, XP, 0, {23}}, {20, ZN, 0, {23}}, {20, XP | XN, 0, straight20, 4},
      {20, YP | YN, 0, straight20, 2}, {20, ZP | ZN, 0, straight20, 1}, {20, XP | YP, 0, {23}}, {20, 63, 0, {23}},
      {20, 0, 60, {24}}, {20, XP, 60, {24}}, {20, XP | YP, 58, {24}}, {20, XP | XN, 28, straight20, 4}, {40, 0, 0, {42}},
      {40, XP, 0, {42}, 6}, {40, XN, 0, {42}, 4}, {40, YP, 0, {42}, 5}, {40, YN, 0, {42}, 2}, {40, ZP, 0, {42}, 3},
      {40, ZN, 0, {42}, 1}, {40, XP | XN, 0, straight40, 4}, {40, YP | YN, 0, straight40, 2}, {40, ZP | ZN, 28, straight40, 1},
      {40, XP | YP | ZN, 0, {43}}, {40, 63, 0, {43}}, {40, XP | YP | ZN, 26, {43}}, {40, 0, 60, {45}}, {40, XN, 60, {45}, 4},
      {40, XP | YP, 58, {45}, 5}, {40, XP | YP, 0, {46}, 6, 3}, {40, XP | YN, 0, {46}, 6, 1}, {40, XP | ZP, 0, {46}, 6, 0},
      {40, XP | ZN, 0, {46}, 6, 2}, {40, XN | YP, 0, {46}, 4, 1}, {40, XN | YN, 0, {46}, 4, 3}, {40, XN | ZP, 0, {46}, 4, 2},
      {40, XN | ZN, 0, {46}, 4, 0}, {40, YP | ZP, 0, {46}, 3, 3}, {40, YP | ZN, 0, {46}, 1, 1}, {40, YN | ZP, 0, {46}, 2, 1},
      {40, YN | ZN, 0, {46}, 2, 3}};
  for (const Joint &j : joints) {
    Clear();
    Surround(j.kin, j.held, j.walls);
    if (((j.kin | j.walls) & ZN) == 0) StandOn(5, 1000);  // neither kin nor wall
    ASSERT_EQ(Build(j.held, j.kin == 0 ? 0 : 5), 1) << "the builder's turn gives way to the kin";
    ExpectAt({0, 0, 0, 0, j.rotation, j.rotation2}, j.ids,
             (std::to_string(j.held) + " kin " + std::to_string(j.kin) + " walls " + std::to_string(j.walls)).c_str());
  }
}

// The second and the place choose among the forms that would do.
TEST_F(Connect, ALonePieceLooksLikeItsPlace) {
  const struct { int held, first, forms; } families[] = {{340, 341, 3}, {310, 311, 2}, {20, 20, 3}};
  for (const auto &f : families)
    for (int x = 0; x < 6; ++x) {
      std::time_t second;
      do {
        Clear();
        second = std::time(nullptr);
        ASSERT_EQ(Build(f.held, 0, 0, 0, 0, {static_cast<u16>(At + x), At, At}), 1);
      } while (std::time(nullptr) != second);
      std::srand(static_cast<unsigned>(second + 3 * At + x));
      ExpectAt({x, 0, 0, 0}, {f.first + std::rand() % f.forms}, "by its place");
    }
}

// A piece that stands in the middle already, kin beside it, and a new one that comes to its x+ side.
TEST_F(Connect, AStandingPieceTakesAnotherFormWhenKinArrive) {
  const Joint joints[] = {
      {341, XP, 0, {340, 342, 343}, 4}, {342, XP, 0, {342}, 4}, {343, XP, 0, {343}, 4}, {344, XP, 0, {340}, 4},
      {343, XP | XN, 0, {340}, 6}, {344, XP | XN, 0, {340}, 6}, {341, XP | ZP, 0, {344}}, {344, XP | ZP | ZN, 0, {344}},
      {342, XP | ZP | ZN, 0, {344}}, {310, XP, 0, {311, 312}, 6}, {311, XP, 0, {311}, 6}, {312, XP, 0, {312}, 6},
      {313, XP, 0, {311, 312}, 6}, {311, XP | XN, 0, {310}, 4}, {312, XP | XN, 0, {310}, 4}, {313, XP | XN, 0, {310}, 4},
      {312, XP | YP, 0, {313}}, {311, XP | YP | ZP, 0, {313}}, {312, XP | YP | ZP, 0, {313}}, {313, XP | YP | ZP, 0, {313}},
      {22, XP, 0, {23}}, {24, XP, 0, {24}}, {21, XP | XN, 0, {21}, 4}, {23, XP | XN, 0, {20, 21, 22}, 4}, {21, XP | YP, 0, {23}},
      {23, XP | YP, 0, {23}}, {24, XP | XN, 0, {24}, 4}, {21, XP, 60, {24}}, {23, XP, 60, {24}}, {42, XP, 0, {42}, 6},
      {46, XP, 0, {42}, 6}, {45, XP | XN, 0, {40, 41}, 4}, {43, XP | YN, 0, {46}, 6, 1}, {44, XP | YP, 0, {44}, 2},
      {44, XP, 60, {44}, 2}};
  for (const Joint &j : joints) {
    Clear();
    const int base = j.held - j.held % 10;
    Stand({0, 0, 0, j.held, j.held == 44 ? 2u : 1u});
    Surround(j.kin & ~XP, base, j.walls);
    ASSERT_EQ(Build(base, 0, 0, 0, 0, {At + 1, At, At}), 1);
    ExpectAt({0, 0, 0, 0, j.rotation, j.rotation2}, j.ids, std::to_string(j.held).c_str());
    if (j.held == 44 && (j.kin & YP) != 0) ExpectAt({0, 1, 0, 0, 2}, {42}, "kin of a fixed piece are shaped all the same");
  }
}

TEST_F(Connect, ARunIsShapedThreePiecesDeep) {
  for (int x = 1; x <= 5; ++x) Stand({x, 0, 0, 340});
  ASSERT_EQ(Build(340), 1);
  for (int x = 1; x <= 4; ++x) ExpectAt({x, 0, 0, 0, x < 4 ? 6u : 1u}, {340}, "in reach, or out of it");
  for (int i = 0; i < 27; ++i) {
    const u32 before = ship->lightCounter;  // counts edits
    ASSERT_EQ(Build(340, 0, 0, 0, 0, {static_cast<u16>(At + i % 3), static_cast<u16>(At + 1 + i / 3 % 3), static_cast<u16>(At - 1 + i / 9)}), 1);
    EXPECT_LE(ship->lightCounter - before, 8u) << "kin that keep their form are not edited";
  }
}

TEST_F(Connect, PlatingClosesEdgesAndCorners) {
  const struct { int sign[3]; unsigned rotation, rotation2; } forms[] = {
      {{0, -1, -1}, 1, 3}, {{0, -1, 1}, 2, 1}, {{0, 1, -1}, 1, 1}, {{0, 1, 1}, 3, 3}, {{-1, 0, -1}, 1, 2}, {{-1, 0, 1}, 3, 0},
      {{-1, -1, 0}, 2, 2}, {{-1, 1, 0}, 4, 1}, {{1, 0, -1}, 1, 0}, {{1, 0, 1}, 3, 2}, {{1, -1, 0}, 2, 0},  {{1, 1, 0}, 5, 0},
      {{-1, -1, -1}, 3, 0}, {{-1, -1, 1}, 6, 0}, {{-1, 1, -1}, 2, 2}, {{-1, 1, 1}, 1, 2}, {{1, -1, -1}, 3, 1}, {{1, -1, 1}, 1, 0},
      {{1, 1, -1}, 2, 3}, {{1, 1, 1}, 1, 1}};
  // What shapes the block: plates alone, corners alone, or edges alone (but for three, where one is a plate).
  const int kinds[][3] = {{250, 250, 250}, {252, 252, 252}, {251, 251, 251}, {252, 250, 252}, {251, 250, 251}};
  for (const int id : {251, 261, 510, 520, 530, 560, 570, 580, 610, 620, 630})
    for (const auto &f : forms)
      for (int k = 0; k < 5; ++k) {
        const int axes = std::abs(f.sign[0]) + std::abs(f.sign[1]) + std::abs(f.sign[2]);
        if ((id != 251 && k != 0) || (axes == 2 && k == 4)) continue;
        Clear();
        for (int axis = 0; axis < 3; ++axis)
          if (f.sign[axis] != 0) StandOn(2 * axis + (f.sign[axis] < 0 ? 1 : 0), kinds[k][axis]);
        ASSERT_EQ(Build(id), 1);
        ExpectAt({0, 0, 0, 0, f.rotation, f.rotation2}, {axes == 2 ? id : id + 1}, "plating");
      }
}

TEST_F(Connect, PlatingWeighsWhatStandsAround) {
  const struct { const char *what; std::vector<Beside> around; Beside result; int held = 0; } cases[] = {
      {"two plates leave a corner out", {{1, 0, 0, 250}, {0, 1, 0, 250}, {0, 0, 1, 252}}, {0, 0, 0, 251, 5, 0}},
      {"plate and corner leave an edge out", {{1, 0, 0, 250}, {0, 1, 0, 252}, {0, 0, 1, 251}}, {0, 0, 0, 251, 5, 0}},
      {"two edges leave a corner out", {{1, 0, 0, 251}, {0, 1, 0, 252}, {0, 0, 1, 251}}, {0, 0, 0, 251, 3, 2}},
      {"the negative side where the positive is free", {{-1, 0, 0, 252}, {0, 1, 0, 252}}, {0, 0, 0, 251, 4, 1}},
      {"any block hides the negative side", {{1, 0, 0, 1000}, {-1, 0, 0, 250}, {0, 1, 0, 250}, {-1, -1, -1, 251, 6, 3}},
       {0, 0, 0, 251, 6, 3}},
      {"both sides of one axis are one", {{1, 0, 0, 250}, {-1, 0, 0, 250}, {0, 0, -1, 251, 4, 2}}, {0, 0, 0, 251, 4, 2}},
      {"the first edge around", {{-1, 1, 1, 251, 3, 1}, {0, -1, 1, 251, 2, 2}, {0, 1, -1, 251, 5, 3}}, {0, 0, 0, 251, 5, 3}},
      {"the builder's choice", {{1, 0, 0, 250}, {0, 1, 0, 250}}, {0, 0, 0, 251, 4, 0}, 4}};
  for (const auto &c : cases) {
    Clear();
    for (const Beside &b : c.around) Stand(b);
    ASSERT_EQ(Build(251, static_cast<unsigned>(c.held)), 1);
    ExpectAt(c.result, {c.result.id}, c.what);
  }
}

TEST_F(Connect, WhatTheTableLacksStaysAsItIsAndNothingWrapsAtTheEdges) {
  for (const u16 x : {u16{0}, u16{9999}})
    for (const int id : {20, 40, 310, 340, 70, 200, 251, 350}) {
      const Cell3 corner{x, x, x};
      EXPECT_EQ(Build(id, 0, 0, 0, 0, corner), 1);
      Remove(x, x, x);
    }
  Clear();
  std::vector<Component> real;
  real.swap(Components);
  for (const u16 id : {u16{30}, u16{20}, u16{40}, u16{200}, u16{251}, u16{310}, u16{350}, u16{340}}) {
    Components.clear();
    Components.emplace_back();
    AddRow(2, 0, "plating");
    AddRow(1, 0, "");
    AddRow(id, 0, "");
    AddRow(1001, 0, "");
    EndTable();
    for (int side = 0; side < 6; side += 2) StandOn(side, 2);
    for (int step = 0; step > -3; --step) {
      EXPECT_EQ(Build(id, 0, 0, 0, 0, {At, static_cast<u16>(At + step), At}), 1);
      EXPECT_EQ(Id(Look(0, step)), id);
    }
    Clear();
    AddRow(id, -100, "");  // and as the last row of a table, with a base that lies outside of it
    Components.erase(Components.end() - 2);
    EndTable();
    EXPECT_EQ(Build(id), 1);
    EXPECT_EQ(Id(Look()), id);
    Clear();
  }
  real.pop_back();
  Components = std::move(real);
  EndTable();
}

// The player looks along -z at a plain block.
TEST_F(Connect, ARunBuiltByHandJoinsOnAPressAndWhileTheButtonIsHeld) {
  Place(Middle, Middle, Middle - 5);
  Player p = ReadPlayer();
  p.heldBlock = CubeOf(5, static_cast<u16>(FindComponent(310)), 0);
  StoreHand(p);
  ASSERT_TRUE(RefreshTarget());
  SetMouseState(0, true);
  MainPress();
  for (int repeat = 0; repeat < 2; ++repeat) {
    nextToolTime = ClockNow() - 1;
    HeldTool();
  }
  const struct { int z; Ids ids; unsigned rotation; } run[] = {{-4, {311, 312}, 3}, {-3, {310}, 1}, {-2, {311, 312}, 1}};
  for (const auto &piece : run) {
    const int beside = Middle - At;
    ExpectAt({beside, beside, beside + piece.z, 0, piece.rotation}, piece.ids, "the run");
    Remove(Middle, Middle, Middle + piece.z);
  }
}
