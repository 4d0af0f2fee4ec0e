// Pieces of several cells as a player puts them down: on each face of a wall, alone and on a server, and away again.
#include <enet/enet.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <map>

#include "content/components.h"
#include "gameplay/play.h"
#include "gameplay/tools.h"
#include "gui/refusal.h"
#include "net/connection.h"

namespace {

using Cell = std::array<int, 3>;
using Cells = std::map<Cell, std::array<int, 2>>;  // component row and rotation

struct Face {
  int axis, sign;
  float yaw, pitch;  // of a player before it, who looks at it
};
constexpr Face Faces[6] = {{0, 1, 90, 0}, {0, -1, -90, 0}, {1, 1, 0, -90}, {1, -1, 0, 90}, {2, 1, 0, 0}, {2, -1, 180, 0}};

struct Object {
  u16 id;
  int size[3];
};
constexpr Object Objects[] = {{30, {1, 1, 2}}, {120, {1, 2, 1}}, {122, {1, 2, 1}}, {124, {1, 2, 1}}, {350, {2, 2, 2}}};
constexpr int Wall = 5000, Half = 3;  // the wall's cell on each axis; cells to its edge

// A server that only listens.
struct Listener {
  ENetHost *server = nullptr, *client = nullptr;
  ENetPeer *peer = nullptr;

  void Open() {
    enet_initialize();
    ENetAddress address{ENET_HOST_ANY, static_cast<u16>(20000 + getpid() % 20000)};
    while ((server = enet_host_create(&address, 1, NetChannels, 0, 0)) == nullptr) ++address.port;
    enet_address_set_host(&address, "127.0.0.1");
    client = enet_host_create(nullptr, 1, NetChannels, 0, 0);
    peer = enet_host_connect(client, &address, NetChannels, 0);
    for (int pass = 0; pass < 5000 && peer->state != ENET_PEER_STATE_CONNECTED; ++pass) Heard();
    ASSERT_EQ(peer->state, ENET_PEER_STATE_CONNECTED);
    NetHost = client, NetPeer = peer;
    Online = HasServersShips = true;
  }
  ~Listener() {
    Online = HasServersShips = false;
    NetHost = nullptr, NetPeer = nullptr;
    if (client != nullptr) enet_host_destroy(client);
    if (server != nullptr) enet_host_destroy(server);
  }
  // The edits that have come by now.
  std::vector<BlockEdit> Heard() {
    std::vector<BlockEdit> edits;
    ENetEvent event{};
    enet_host_service(client, &event, 0);
    while (enet_host_service(server, &event, 1) > 0) {
      if (event.type != ENET_EVENT_TYPE_RECEIVE) continue;
      u8 type = 0;
      Reader payload{};
      std::vector<u8> store;
      BlockEdit edit;
      EXPECT_TRUE(OpenPacket(event.packet->data, event.packet->dataLength, &type, &payload, &store) && ReadBlockEdit(type, &payload, &edit));
      edits.push_back(edit);
      enet_packet_destroy(event.packet);
    }
    return edits;
  }
  std::vector<BlockEdit> HeardAll(size_t count) {
    std::vector<BlockEdit> edits;
    for (int pass = 0; pass < 1000 && edits.size() < count; ++pass)
      for (const BlockEdit &e : Heard()) edits.push_back(e);
    return edits;
  }
};

struct Pieces : Play {
  // A wall with one face to the player, who stands before its middle.
  void Build(const Face &f) {
    for (int a = -Half; a <= Half; ++a)
      for (int b = -Half; b <= Half; ++b) {
        Cell c{Wall, Wall, Wall};
        c[static_cast<size_t>((f.axis + 1) % 3)] += a;
        c[static_cast<size_t>((f.axis + 2) % 3)] += b;
        Place(c[0], c[1], c[2]);
      }
    Stand(f, {Wall, Wall, Wall}, 6);
  }
  // Before a cell, so many cells off, with the view on it.
  static void Stand(const Face &f, Cell c, int distance) {
    c[static_cast<size_t>(f.axis)] += f.sign * distance;
    Player p = ReadPlayer();
    for (int a = 0; a < 3; ++a) p.relativeLoc[a] = static_cast<float>(c[static_cast<size_t>(a)]) + 0.5f;
    StoreMotion(p);
    constexpr float radians = 0.017453292f;
    p.yaw = f.yaw, p.pitch = f.pitch;
    p.sinYaw = std::sin(f.yaw * radians), p.cosYaw = std::cos(f.yaw * radians);
    p.sinPitch = std::sin(f.pitch * radians), p.cosPitch = std::cos(f.pitch * radians);
    StoreView(p);
    ASSERT_TRUE(RefreshTarget());
  }
  static void Hold(u16 id) {
    Player p = ReadPlayer();
    p.heldBlock = CubeOf(7, static_cast<u16>(FindComponent(id)), 0);
    StoreHand(p);
    LastRefusal = {};
    RefreshTarget();
  }
  // All but the wall around the place.
  Cells Built(const Face &f) const {
    Cells cells;
    for (int x = -8; x <= 8; ++x)
      for (int y = -8; y <= 8; ++y)
        for (int z = -8; z <= 8; ++z) {
          const Cell c{Wall + x, Wall + y, Wall + z};
          if (c[static_cast<size_t>(f.axis)] == Wall || !Taken(c[0], c[1], c[2])) continue;
          Block b;
          GetBlock(&b, static_cast<u16>(c[0]), static_cast<u16>(c[1]), static_cast<u16>(c[2]), *ship);
          cells[c] = {static_cast<int>(b.component), static_cast<int>(b.rotation)};
        }
    return cells;
  }
  int WallBlocks(const Face &f) const {
    int count = 0;
    for (int a = -Half; a <= Half; ++a)
      for (int b = -Half; b <= Half; ++b) {
        Cell c{Wall, Wall, Wall};
        c[static_cast<size_t>((f.axis + 1) % 3)] += a;
        c[static_cast<size_t>((f.axis + 2) % 3)] += b;
        count += Taken(c[0], c[1], c[2]);
      }
    return count;
  }
  void Clear() {
    for (int x = -8; x <= 8; ++x)
      for (int y = -8; y <= 8; ++y)
        for (int z = -8; z <= 8; ++z)
          if (Taken(Wall + x, Wall + y, Wall + z)) Remove(Wall + x, Wall + y, Wall + z);
  }
};

}  // namespace

// The object's cells before a face: its rows rise with x, then fall with y, then rise with z.
static Cells Expected(const Face &f, const Object &o) {
  Cell low{Wall, Wall, Wall};
  low[static_cast<size_t>(f.axis)] += f.sign > 0 ? 1 : -o.size[f.axis];
  Cells cells;
  int row = FindComponent(o.id);
  for (int x = 0; x < o.size[0]; ++x)
    for (int y = o.size[1] - 1; y >= 0; --y)
      for (int z = 0; z < o.size[2]; ++z) cells[{low[0] + x, low[1] + y, low[2] + z}] = {row++, 3};
  return cells;
}

static Cells CellsOf(const std::vector<BlockEdit> &edits, u8 type) {
  Cells cells;
  for (const BlockEdit &e : edits) {
    EXPECT_EQ(e.type, type);
    cells[{e.x, e.y, e.z}] = {static_cast<int>(e.block.component), static_cast<int>(e.block.rotation)};
  }
  return cells;
}

static void ExpectBox(const PieceBox &box, const Cells &cells) {
  EXPECT_TRUE(box.room);
  EXPECT_EQ((Cell{box.low.x, box.low.y, box.low.z}), cells.begin()->first);
  const Cell last = cells.rbegin()->first;
  EXPECT_EQ((Cell{box.low.x + box.size.x - 1, box.low.y + box.size.y - 1, box.low.z + box.size.z - 1}), last);
}

TEST_F(Pieces, EachGoesOnEachFaceOfAWallAndAwayAgainAloneAndOnAServer) {
  for (const bool online : {false, true}) {
    Listener listener;
    if (online) listener.Open();
    for (const Object &o : Objects)
      for (const Face &f : Faces) {
        SCOPED_TRACE(testing::Message() << o.id << " on axis " << f.axis << " sign " << f.sign << (online ? " online" : ""));
        const Cells expected = Expected(f, o);
        Online = false;
        Clear();
        Build(f);
        Hold(o.id);
        Online = online;
        ExpectBox(ReadPlayer().target.box, expected);
        MainPress();
        EXPECT_EQ(Built(f), expected);
        if (online) {
          EXPECT_EQ(CellsOf(listener.HeardAll(expected.size()), PacketBlockPlace), expected);
        }
        for (int cells = 0; cells < static_cast<int>(expected.size()); ++cells) {
          const Cell next = Built(f).begin()->first;
          Stand(f, next, 4);
          SecondaryPress();
        }
        EXPECT_TRUE(Built(f).empty());
        EXPECT_EQ(WallBlocks(f), (2 * Half + 1) * (2 * Half + 1)) << "the wall stands";
        if (online) {
          EXPECT_EQ(CellsOf(listener.HeardAll(expected.size()), PacketBlockRemove).size(), expected.size());
        }
        EXPECT_EQ(LastRefusal.why, Refusal::None);
      }
  }
}

TEST_F(Pieces, WithoutRoomNothingIsPlacedAndThePlainPlaceIsKeptWhereThereIsSome) {
  for (const Object &o : Objects)
    for (const Face &f : Faces) {
      for (const auto &[cell, part] : Expected(f, o)) {
        Cell below = cell;
        below[static_cast<size_t>(f.axis)] = Wall;
        if (below == Cell{Wall, Wall, Wall}) continue;  // a block there would be aimed at itself
        Clear();
        Build(f);
        Place(cell[0], cell[1], cell[2]);
        Hold(o.id);
        EXPECT_FALSE(ReadPlayer().target.box.room);
        MainPress();
        EXPECT_EQ(Built(f).size(), 1u) << o.id;
        EXPECT_EQ(LastRefusal.why, Refusal::NoRoom) << o.id;
      }
    }
  // Put against a block that doesn't reach into the box: the place of the rule.
  const PieceBox free = BoxAtPlace(static_cast<u16>(FindComponent(350)), {100, 100, 100}, {101, 100, 100}, *ship);
  EXPECT_TRUE(free.room && free.low.x == 100 && free.low.y == 100 && free.low.z == 100);
}

// At the end of the cube the rule would place half a core.
TEST_F(Pieces, AtTheEndOfTheCubeAPieceIsWholeOrNotThere) {
  Place(9990, 9998, 9990);
  const PieceBox box = BoxAtPlace(static_cast<u16>(FindComponent(350)), {9990, 9999, 9990}, {9990, 9998, 9990}, *ship);
  EXPECT_FALSE(box.room);
  const PieceBox under = BoxAtPlace(static_cast<u16>(FindComponent(120)), {5, 0, 5}, {5, 1, 5}, *ship);
  EXPECT_TRUE(under.room);
  PlaceHere(ship, 5, 1, 5, CubeOf());
  EXPECT_FALSE(BoxAtPlace(static_cast<u16>(FindComponent(120)), {5, 0, 5}, {5, 1, 5}, *ship).room);
}
