// The road of edits: what is drawn and what is lit behind any edit, against a flood of voxels and a whole pass of light.
#include "world/edit.h"

#include "content/options.h"
#include "net/edits.h"
#include "net/wire.h"
#include "support/ship_test.h"
#include "world/cells.h"
#include "world/light.h"
#include "world/lists.h"

namespace {

struct EditRoad : ShipTest {
  void SetUp() override {
    ShipTest::SetUp();
    ResetOptions();
    TheShipTable.count = 0;
    TheShipTable.current = 0;
    built = AppendShip(&TheShipTable);
  }
  // An empty ship in the same row.
  void Renew() {
    FreeShip(built);
    InitShip(built, 0);
    AllocShipTable(built);
  }
  void TearDown() override {
    FreeShip(built);
    ShipTest::TearDown();
  }
  // By hand or by a packet, as it comes.
  void Do(const BlockEdit &edit, bool fromNetwork) {
    if (fromNetwork) {
      ApplyBlockEdit(edit);
    } else if (edit.type == PacketBlockPlace) {
      PlaceBlockNetworked(edit.block, edit.x, edit.y, edit.z, built);
    } else if (edit.type == PacketBlockRemove) {
      RemoveBlockNetworked(edit.x, edit.y, edit.z, built);
    } else {
      const ScopedLock world(&WorldMutex);
      SetBlockComponentNetworked(edit.component, edit.x, edit.y, edit.z, built);
    }
  }
  void Put(int x, int y, int z, const Block &b, bool fromNetwork = false) {
    Do({.type = PacketBlockPlace, .x = static_cast<u16>(x), .y = static_cast<u16>(y), .z = static_cast<u16>(z), .block = b}, fromNetwork);
  }
  void Dig(int x, int y, int z) {
    Do({.type = PacketBlockRemove, .x = static_cast<u16>(x), .y = static_cast<u16>(y), .z = static_cast<u16>(z), .block = {}}, false);
  }
  void Load(const Block &b, int x, int y, int z) { PlaceBlockFast(b, static_cast<u16>(x), static_cast<u16>(y), static_cast<u16>(z), built); }
  void FinishLoad() {
    AssignCoordinates(built);
    LightPass(built);
    StatePass(*built);
  }
  void ExpectLightOfAWholePass();
  Ship *built = nullptr;  // row 0 of the table
};

}  // namespace

static std::vector<u16> RowsWith(u8 traits, u8 wanted) {
  std::vector<u16> rows;
  for (u16 row = 1; row < ComponentCount; ++row)
    if ((ComponentTraits[row] & traits) == wanted) rows.push_back(row);
  return rows;
}
static u16 Pick(const std::vector<u16> &rows, std::mt19937 *random) { return rows[(*random)() % rows.size()]; }

namespace {

// The voxels of a box of cells, and which of them a flood from a free cell reaches.
struct Flood {
  int corner, cells, edge = cells * 16;
  std::vector<u64> heads;          // of the cells
  std::vector<char> wet, reached;  // of voxels, of cells

  Flood(const Ship &ship, int first, int count)
      : corner(first), cells(count), wet(static_cast<size_t>(edge * edge * edge)), reached(static_cast<size_t>(cells * cells * cells)) {
    for (int i = 0; i < cells * cells * cells; ++i) {
      const auto at = [&](int scale) { return static_cast<unsigned>(corner + i / scale % cells); };
      heads.push_back(HeadAt(at(1), at(cells), at(cells * cells), ship));
    }
  }
  // Whether light comes through a voxel; notes that its cell was reached.
  bool Enter(const std::array<int, 3> &v) {
    const size_t cell = static_cast<size_t>(v[0] / 16 + v[1] / 16 * cells + v[2] / 16 * cells * cells);
    reached[cell] = 1;
    return HeadState(heads[cell]) == StateEmpty || VoxelClass(heads[cell], nullptr, v[0] % 16, v[1] % 16, v[2] % 16) != 0;
  }
  void Run(std::array<int, 3> from) {
    std::vector<std::array<int, 3>> open{from};
    const auto index = [this](const std::array<int, 3> &v) { return static_cast<size_t>(v[0] + edge * (v[1] + edge * v[2])); };
    while (!open.empty()) {
      const std::array<int, 3> v = open.back();
      open.pop_back();
      if (wet[index(v)] != 0 || !Enter(v)) continue;
      wet[index(v)] = 1;
      for (size_t axis = 0; axis < 3; ++axis)
        for (const int sign : {-1, 1}) {
          std::array<int, 3> beside = v;
          beside[axis] += sign;
          if (beside[axis] >= 0 && beside[axis] < edge && wet[index(beside)] == 0) open.push_back(beside);
        }
    }
  }
  // Cells with a block that the flood has reached, but that are not drawn.
  int Missing(const Ship &ship) const {
    int missing = 0;
    for (size_t i = 0; i < heads.size(); ++i) {
      if (HeadState(heads[i]) == StateEmpty || reached[i] == 0) continue;
      const auto at = [&](size_t scale) { return static_cast<unsigned>(corner) + static_cast<unsigned>(i / scale % static_cast<size_t>(cells)); };
      const CellAddress a = AddressOf(at(1), at(static_cast<size_t>(cells)), at(static_cast<size_t>(cells * cells)));
      missing += FindCells(a, ship)->visibility[a.block] == NotVisible ? 1 : 0;
    }
    return missing;
  }
};

}  // namespace

static u8 SeenAt(const Ship &ship, int x, int y, int z) {
  const CellAddress a = AddressOf(static_cast<unsigned>(x), static_cast<unsigned>(y), static_cast<unsigned>(z));
  return FindCells(a, ship)->visibility[a.block];
}

// Every shape in the middle of a cube of 7 x 7 x 7, loaded, and one cell beside it dug out: from there nothing may be missing.
TEST_F(EditRoad, NoShapeThatIsDugOpenIsSurroundedByWallsThatAreNotDrawn) {
  constexpr int low = 5000, middle = low + 3;
  for (const u16 row : RowsWith(TraitFullBlock | TraitHidesNothing, 0)) {
    Renew();
    for (int i = 0; i < 343; ++i) Load(CubeOf(), low + i % 7, low + i / 7 % 7, low + i / 49);
    Load(CubeOf(5, row), middle, middle, middle);
    FinishLoad();
    EXPECT_EQ(SeenAt(*built, middle, middle, middle), NotVisible);
    Dig(middle - 1, middle, middle);
    Flood flood(*built, low, 7);
    flood.Run({2 * 16 + 8, 3 * 16 + 8, 3 * 16 + 8});
    EXPECT_EQ(flood.Missing(*built), 0) << "id " << Components[row].id;
    Put(middle - 1, middle, middle, CubeOf());  // closed again, all of it is left out again
    for (const auto &[x, y, z] : {std::array{0, 0, 0}, std::array{-1, 0, 0}, std::array{0, 1, 0}, std::array{0, 0, -1}, std::array{1, 0, 0}})
      EXPECT_EQ(SeenAt(*built, middle + x, middle + y, middle + z), NotVisible) << "id " << Components[row].id;
  }
}

TEST_F(EditRoad, EveryCellThatTheOutsideReachesIsDrawn) {
  constexpr int low = 5006, edge = 7;  // in eight chunks
  std::mt19937 random(11);
  const std::vector<u16> shapes = RowsWith(TraitFullBlock | TraitHidesNothing, 0), none = RowsWith(TraitHidesNothing, TraitHidesNothing);
  u16 glass = 1;
  while (Materials[glass].alpha == 255) ++glass;
  const auto block = [&] {
    const unsigned kind = static_cast<unsigned>(random() % 40);
    const u16 row = kind == 0 ? Pick(none, &random) : kind < 12 ? Pick(shapes, &random) : u16{2};
    return CubeOf(kind == 39 ? glass : u16{5}, row, 1 + static_cast<unsigned>(random() % 6), static_cast<unsigned>(random() % 4));
  };
  for (int i = 0; i < edge * edge * edge; ++i) Load(block(), low + i % edge, low + i / edge % edge, low + i / edge / edge);
  FinishLoad();
  int hidden = 0;
  for (int step = 0; step < 1200; ++step) {
    const auto axis = [&] { return static_cast<u16>(low + random() % edge); };
    BlockEdit edit{.type = PacketBlockPlace, .x = axis(), .y = axis(), .z = axis(), .block = block()};
    const unsigned kind = static_cast<unsigned>(random() % 10);
    if (kind == 0) edit.type = PacketBlockRemove;
    if (kind == 1) edit.type = PacketBlockComponent;
    edit.component = static_cast<u16>(edit.block.component);
    Do(edit, random() % 2 == 0);
    if (step % 60 != 0) continue;
    Flood flood(*built, low - 1, edge + 2);
    flood.Run({0, 0, 0});
    ASSERT_EQ(flood.Missing(*built), 0) << "step " << step;
    for (int i = 0; i < edge * edge * edge; ++i) hidden += SeenAt(*built, low + i % edge, low + i / edge % edge, low + i / edge / edge) == NotVisible ? 1 : 0;
  }
  EXPECT_GT(hidden, 20 * 5) << "not by drawing everything";
  EXPECT_EQ(ShipFault(*built), "");
}

// A cell keeps what was decided for a block that has gone, while all around it changes.
TEST_F(EditRoad, ABlockInACellThatWasOnceBuriedIsDrawn) {
  for (int i = 0; i < 27; ++i) Load(CubeOf(), 5000 + i % 3, 5000 + i / 3 % 3, 5000 + i / 9);
  FinishLoad();
  for (const int x : {5001, 5000}) Do({.type = PacketBlockRemove, .x = static_cast<u16>(x), .y = 5001, .z = 5001, .block = {}}, true);
  Put(5001, 5001, 5001, CubeOf());
  EXPECT_EQ(SeenAt(*built, 5001, 5001, 5001), Visible);
}

// A body of shapes that all were left out: when it is dug open, the edit decides what is near, and slices the rest.
TEST_F(EditRoad, ALongWayIsGoneInSlices) {
  constexpr int low = 5000, edge = 24;
  const u16 slope = RowsWith(TraitFullBlock | TraitHidesNothing, 0)[20];
  for (int i = 0; i < edge * edge * edge; ++i) Load(CubeOf(), low + i % edge, low + i / edge % edge, low + i / edge / edge);
  FinishLoad();
  for (int i = 0; i < edge * edge * edge; ++i) {
    const int x = i % edge, y = i / edge % edge, z = i / edge / edge;
    if (std::min({x, y, z}) > 0 && std::max({x, y, z}) < edge - 1) Put(low + x, low + y, low + z, CubeOf(5, slope), true);
  }
  const int middle = low + edge / 2;
  EXPECT_EQ(SeenAt(*built, middle, middle, middle), NotVisible);
  Dig(low, middle, middle);
  EXPECT_FALSE(built->remains.undecided.empty());
  int slices = 0;
  for (u64 steps = 0; !MendEdits(built, &steps); steps = 20000) ++slices;
  EXPECT_GT(slices, 3);
  for (const int at : {low + 1, middle, low + edge - 2}) EXPECT_NE(SeenAt(*built, at, middle, middle), NotVisible);
}

using Lights = std::map<Cell, std::vector<std::array<int, 7>>>;

static Lights LightsOf(const Ship &ship) {
  Lights lights;
  for (const auto &[at, head] : CellsOf(ship)) {
    const CellAddress a = AddressOf(at[0], at[1], at[2]);
    const GraphicBlock *g = GraphicOf(*FindCells(a, ship), a.block);
    for (int i = 0; g != nullptr && i < g->lightCount; ++i) {
      const LightEntry &e = g->lightList[i];
      lights[at].push_back({e.dx, e.dy, e.dz, e.red, e.green, e.blue, e.hops});
    }
  }
  return lights;
}

void EditRoad::ExpectLightOfAWholePass() {
  EXPECT_EQ(ShipFault(*built), "");
  for (u64 steps = 0; !MendEdits(built, &steps); steps = 5000) {
  }
  const Lights mended = LightsOf(*built);
  ClearLights(*built);
  LightPass(built);
  EXPECT_TRUE(mended == LightsOf(*built)) << "shadows: " << Options.ExperimentalLight;
}

// Boxes in which edits are thrown about: across all levels of the tree, beside the low faces, where lamps cast nothing, and at the
// high ones.
TEST_F(EditRoad, LightIsWhatAWholePassWouldLeave) {
  const std::vector<u16> lamps = RowsWith(TraitGivesLight, TraitGivesLight);
  const struct { Cell low, size; bool shadows; int edits; unsigned lamps; } rounds[] = {
      {{990, 995, 1990}, {24, 12, 20}, false, 1000, 4}, {{3995, 98, 5000}, {14, 6, 8}, true, 1000, 30},
      {{1, 1, 5}, {25, 22, 20}, false, 1000, 3},        {{9970, 9980, 9985}, {29, 19, 14}, false, 600, 3},
      {{700, 700, 700}, {6, 6, 6}, false, 600, 2},      {{10, 700, 12}, {12, 7, 12}, true, 400, 4}};
  std::mt19937 random(5);
  for (const auto &r : rounds) {
    Renew();
    Options.ExperimentalLight = r.shadows;
    for (int i = 0; i < r.edits; ++i) {
      BlockEdit edit{.type = random() % 3 == 0 ? PacketBlockRemove : PacketBlockPlace,
                     .x = static_cast<u16>(r.low[0] + random() % r.size[0]), .y = static_cast<u16>(r.low[1] + random() % r.size[1]),
                     .z = static_cast<u16>(r.low[2] + random() % r.size[2]),
                     .block = CubeOf(5, random() % r.lamps == 0 ? Pick(lamps, &random) : u16{2})};
      edit.component = static_cast<u16>(edit.block.component);
      if (random() % 12 == 0) edit.type = PacketBlockComponent;
      Do(edit, random() % 2 == 0);
      u64 slice = 1 + random() % 3000;
      if (random() % 4 == 0) MendEdits(built, &slice);
      if (i % 20 == 19) ExpectLightOfAWholePass();
    }
    EXPECT_GT(LightsOf(*built).size(), 50u);
  }
}

TEST_F(EditRoad, WorkIsNotedOnceDoneInSlicesAndGoesWithTheShip) {
  const Block lamp = CubeOf(5, ComponentRow(1000)), cube = CubeOf();
  for (int i = 0; i < 32 * 32 * 32; ++i) Load(cube, 4984 + i % 32, 4984 + i / 32 % 32, 4984 + i / 1024);
  FinishLoad();
  for (int i = 0; i < 100; ++i) Put(5000 + i % 3, 5000, 5000, i % 2 == 0 ? lamp : cube);
  EXPECT_LE(built->remains.stale.size(), 5u * 5 * 5);
  int slices = 0;
  for (u64 steps = 0; !MendEdits(built, &steps); steps = 20000) {
    ASSERT_EQ(ShipFault(*built), "");
    ASSERT_LT(++slices, 200);
  }
  EXPECT_GT(slices, 10);
  EXPECT_TRUE(built->remains.stale.empty());

  // The picture follows: a block whose list changes gets new voxels, and one without any a new colour as a cube.
  const CellAddress a = AddressOf(5004, 5000, 5000), b = AddressOf(5006, 5000, 5000);
  GraphicBlock *drawn = GraphicOf(*FindCells(a, *built), a.block), *cubed = GraphicOf(*FindCells(b, *built), b.block);
  drawn->cache = static_cast<BlockCache *>(calloc(1, sizeof(BlockCache)));
  drawn->cacheDirty = false;
  cubed->cacheState[0] = 77;
  u64 steps = UINT64_MAX;
  Put(5001, 5000, 5000, cube);
  drawn->cacheDirty = false;
  ASSERT_TRUE(MendEdits(built, &steps));
  EXPECT_TRUE(!drawn->cacheDirty && cubed->cacheState[0] == 77) << "an edit that lights nothing";
  Put(5003, 5002, 5000, lamp);
  drawn->cacheDirty = false;
  SetLightList(drawn, drawn->lightList, 0);
  ASSERT_TRUE(MendEdits(built, &steps));
  EXPECT_TRUE(drawn->cacheDirty && cubed->cacheState[0] == 0);

  // Every ship of the table has its turn, and a ship that goes leaves nothing.
  Ship *other = AppendShip(&TheShipTable);
  PlaceHere(other, 5000, 5000, 5000, cube);
  BlockEdit edit{.type = PacketBlockPlace, .shipRow = 1, .x = 5002, .y = 5000, .z = 5000, .block = lamp};
  ApplyBlockEdit(edit);
  Put(5003, 5002, 5000, cube);
  EXPECT_FALSE(other->remains.stale.empty() || built->remains.stale.empty());
  MendAllShips(UINT64_MAX);
  EXPECT_TRUE(other->remains.stale.empty() && built->remains.stale.empty());
  ApplyBlockEdit(edit);
  FreeShip(other);
  EXPECT_TRUE(other->remains.stale.empty() && other->remains.undecided.empty());
  MendAllShips(UINT64_MAX);
  KeepLight = false;
  Put(5003, 5002, 5000, lamp);
  KeepLight = true;
  EXPECT_TRUE(built->remains.stale.empty()) << "a server has no light";
}
