// Makes the inputs that fuzzing begins with, a folder for each target, by the game's own writers and from its own content.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "content/components.h"
#include "content/materials.h"
#include "content/options.h"
#include "core/log.h"
#include "fuzz/fuzz.h"
#include "net/wire.h"
#include "persistence/gzip_file.h"
#include "persistence/stream.h"
#include "persistence/text_form.h"
#include "platform/threads.h"
#include "render/image.h"
#include "world/access.h"
#include "world/light.h"

namespace fs = std::filesystem;

static fs::path Seeds;

void PrepareTarget() { LoadGameTables(); }
void FuzzOne(Bytes) {}

static std::string ReadAll(const fs::path &path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

static void PutSeed(const char *target, const std::string &name, const std::string &bytes) {
  fs::create_directories(Seeds / target);
  std::ofstream(Seeds / target / name, std::ios::binary) << bytes;
}

static std::string Unpacked(const char *path) {
  GzipReader g;
  std::string out(1 << 16, '\0');
  Demand(OpenGzipOrPlain(&g, path), path);
  out.resize(ReadGzip(&g, reinterpret_cast<u8 *>(out.data()), out.size()));
  CloseGzip(&g);
  return out;
}

static std::string FirstLines(const std::string &text, int count) {
  size_t end = 0;
  while (count-- > 0 && end != std::string::npos) end = text.find('\n', end + 1);
  return text.substr(0, end);
}

// One block of each shape and stuff, with a lamp among them.
static void BuildShip(Ship *ship) {
  InitShip(ship, 0);
  Demand(AllocShipTable(ship), "memory for a ship");
  for (u16 i = 0; i < 40; ++i) {
    Block b;
    b.state = StateWhole;
    b.rotation = (1u + i % 6u) & 7u;
    b.rotation2 = i & 3u;
    b.material = static_cast<u16>(1 + i % (MaterialCount - 1));
    const int component = i == 7 ? FindComponent(1000) : 1 + i * 10 % (ComponentCount - 1);
    b.component = static_cast<unsigned>(component) & 0x3fff;
    PlaceBlockFast(b, static_cast<u16>(4990 + i), 5000, static_cast<u16>(5000 + i % 3), ship);
  }
  LightPass(ship);
}

static std::string U16(size_t v) { return {static_cast<char>(v), static_cast<char>(v >> 8)}; }

static void PutShips() {
  Ship ship;
  BuildShip(&ship);
  std::vector<u8> packed;
  {
    ScopedLock world(&WorldMutex);
    PackShip(ship, &packed);
  }
  for (const char *target : {"ship_stream", "ship_shell"})
    PutSeed(target, "content", '\0' + std::string(packed.begin(), packed.end()));
  Demand(SaveShipStream(&ship, "saves/a.sts") == 1 && SaveShipText(ship, "Default", false, true, true) == 1, "the ship is saved");
  for (const char *target : {"ship_stream", "ship_shell"}) PutSeed(target, "file", '\1' + ReadAll("saves/a.sts"));
  const std::string light = Unpacked("cache/Default.slf"), voxels = Unpacked("cache/Default.scf");
  PutSeed("ship_text", "lit", U16(light.size()) + U16(voxels.size()) + light + voxels + Unpacked("saves/Default.ssf"));
  for (const auto &entry : fs::directory_iterator(fs::path(TARNVALE_ROOT) / "tests/persistence/ships"))
    PutSeed("ship_text", entry.path().stem(), std::string(4, '\0') + ReadAll(entry.path()));
  FreeShip(&ship);
}

// Two slots of one chunk of a ship, the first one with a block, the second one empty, and a cut third.
static void PutFolder() {
  const std::string note = U16(555) + U16(0) + U16(0) + U16(5) + std::string("\xa6\0\2\0\3\0\x20\3\0\0\0\0\0\0", 14);
  const std::string info = U16(1) + std::string(36, '\1');
  const std::string slot = U16(10) + '\1' + U16(999) + std::string("\x2a\0\5\0\2\0\x20\3\1\2\3\4\5\6", 14);
  for (const char what : {'\0', '\1', '\2', '\3', '\4', '\6', '\23'})
    PutSeed("ship_folder", std::to_string(what), what + note + info + slot + U16(11) + '\0' + "cut");
}

static void PutContent() {
  const fs::path root = TARNVALE_ROOT;
  const std::string materials = ReadAll(root / "config/text/materials"), grids = (root / "config/graphics/components").string();
  PutSeed("materials", "few", FirstLines(materials, 20));
  PutSeed("materials", "all", materials);
  PutSeed("components", "few", FirstLines(ReadAll(root / "config/text/components"), 30));
  for (const auto &entry : fs::directory_iterator(root / "config/language"))
    if (entry.is_regular_file()) PutSeed("language", entry.path().filename(), ReadAll(entry.path()));
  PutSeed("language", "few", "Yes\nNo\n0 #MatStart\n1 Hull\n4 Brass\n0 #ComStart\n2 Cube\n10 Lamp\n0 #CatStart\n");
  int count = 0;
  for (const auto &entry : fs::directory_iterator(grids)) {
    if (entry.path().extension() != ".3mp" || ++count > 5) continue;
    const std::string grid = ReadAll(entry.path());
    PutSeed("grid_3mp", entry.path().filename(), grid);
    PutSeed("grid_sbf", entry.path().stem(), std::string("\0\1", 2) + grid.substr(32));
  }
  Demand(SaveOptions(), "the options are saved");
  PutSeed("options", "defaults", ReadAll("config/text/options"));
  PutSeed("settings", "few", "# Mine\nShip Heron of Dusk\r\nLater 1\nShip\n");
}

static void PutPictures() {
  u8 pixels[16 * 16 * 3];
  for (unsigned i = 0; i < sizeof pixels; ++i) pixels[i] = static_cast<u8>(i * 7);
  Demand(WritePng("input.png", pixels, 16, 16), "the picture is written");
  PutSeed("png", "16", ReadAll("input.png"));
  for (const unsigned bytes : {3u, 4u}) {
    std::string picture("\0\0\2\0\0\0\0\0\0\0\0\0\x10\0\x10\0", 16);
    picture.append(1, static_cast<char>(8 * bytes)).append(1, '\0').append(256 * bytes, 'x');
    PutSeed("tga", std::to_string(bytes), picture);
  }
}

// A packet behind its length, as the targets of the packets take it.
static std::string Packet(u8 type, const std::vector<u8> &payload) {
  const std::vector<u8> packet = SealPacket(type, payload.data(), payload.size());
  return U16(packet.size()) + std::string(packet.begin(), packet.end());
}

static std::vector<u8> Payload(const std::string &bytes) { return {bytes.begin(), bytes.end()}; }

static void PutPackets() {
  const std::string motion(36, '\1'), file = ReadAll("saves/a.sts"), two("\2\0\0\0", 4), row("\1\0\0\0", 4);
  std::string client, server;
  for (const u8 type : {PacketBlockPlace, PacketBlockRemove, PacketBlockComponent}) {
    std::vector<u8> payload;
    Block b;
    b.state = StateWhole;
    b.rotation = 1;
    b.material = b.component = 2;
    WriteBlockEdit(&payload, {.type = type, .shipRow = 0, .x = 5000, .y = 5001, .z = 5000, .block = b, .component = 8});
    client += Packet(type, payload);
    server += '\0' + Packet(type, payload);
  }
  const std::string names = "\1a\4NULL", player = '\3' + std::string("Ada") + std::string(24, '\2');
  const struct { u8 type; std::string payload; } said[] = {
      {PacketShipList, two + names + motion + motion}, {PacketShipAdded, std::string("\3\0\0\0\1a", 6) + motion}, {PacketShipLocation, row + motion},
      {PacketPlayerList, std::string("\2\0\1\0", 4) + player + player}, {PacketOtherPlayer, std::string("\1\0", 2) + motion}, {PacketSetLocation, motion},
      {PacketChat, "\5hello"}, {PacketPing, ""}, {PacketNudge, ""}};
  for (const auto &s : said) client += Packet(s.type, Payload(s.payload));
  const std::string download = '\x0c' + std::string("\1a") + file;
  PutSeed("client_packets", "all", U16(download.size()) + download + client);
  for (const auto &s : said) PutSeed("client_packets", std::to_string(s.type), Packet(s.type, Payload(s.payload)));
  const struct { u8 type; std::string payload; } asked[] = {
      {PacketHello, '\14' + std::string(WireVersion) + "\3Ada" + '\0'}, {PacketChat, "\6|waves"}, {PacketChat, '\0' + U16(300) + std::string(300, 'x')},
      {PacketPlayerLocation, motion}, {PacketShipLocation, row + motion}, {PacketPong, ""}};
  for (const auto &s : asked) server += '\1' + Packet(s.type, Payload(s.payload));
  PutSeed("server_packets", "all", server);
}

int main(int argc, char **argv) {
  if (argc != 2) return 1;
  Seeds = fs::absolute(argv[1]);
  fs::remove_all(Seeds);
  LLVMFuzzerInitialize(&argc, &argv);
  PutShips();
  PutFolder();
  PutContent();
  PutPictures();
  PutPackets();
  return 0;
}
