// Framing, payload fields and senders.
#include "net/wire.h"

#include <enet/enet.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "content/components.h"
#include "content/materials.h"
#include "core/compress.h"
#include "core/log.h"
#include "core/utils.h"
#include "platform/files.h"
#include "platform/threads.h"
#include "world/edit.h"

constexpr u8 CompressedFlag = 0x80;
// What a loading game counts for a ship's levels: each new one costs its table, and a chunk its cells as if all were full and drawn.
constexpr u64 MegaBytes = 1000 * sizeof(SuperChunk), SuperBytes = 1000 * sizeof(Chunk);
constexpr u64 ChunkBytes = 8 + 6 * CellsPerChunk + sizeof(ChunkCells) + CellsPerChunk * sizeof(GraphicBlock);
constexpr size_t LongestText = 65535, LongestShortText = 255;
constexpr u16 MissingComponentId = 6, MissingMaterialId = 110;

Mutex NetMutex{MutexRank::Leaf, "net", {}};

void WriteString(std::vector<u8> *out, std::string_view text) {
  text = FrontOf(text, LongestText);
  if (text.empty() || text.size() > LongestShortText) {
    PutU8(out, 0);
    PutU16(out, static_cast<u16>(text.size()));
  } else {
    PutU8(out, static_cast<u8>(text.size()));
  }
  PutBytes(out, text.data(), text.size());
}

std::string ReadString(Reader *r) {
  size_t length = TakeU8(r);
  if (length == 0) length = TakeU16(r);
  const u8 *bytes = TakeBytes(r, length);
  return bytes == nullptr ? std::string() : std::string(reinterpret_cast<const char *>(bytes), length);
}

void WriteMotion(std::vector<u8> *out, const Motion &m) {
  for (const i64 v : m.place) PutU64(out, static_cast<u64>(v));
  for (const i32 v : m.velocity) PutU32(out, static_cast<u32>(v));
}

Motion ReadMotion(Reader *r) {
  Motion m;
  for (i64 &v : m.place) v = static_cast<i64>(TakeU64(r));
  for (i32 &v : m.velocity) v = static_cast<i32>(TakeU32(r));
  return m;
}

void WriteBlock(std::vector<u8> *out, const Block &b) {
  PutU64(out, HeadOf(b));
  PutBytes(out, b.tail, sizeof b.tail);
}

Block ReadBlock(Reader *r) {
  Block b = BlockFromHead(TakeU64(r));
  const u8 *tail = TakeBytes(r, sizeof b.tail);
  if (tail != nullptr) std::memcpy(b.tail, tail, sizeof b.tail);
  return b;
}

void WriteBlockEdit(std::vector<u8> *out, const BlockEdit &edit) {
  PutU32(out, static_cast<u32>(edit.shipRow));
  for (const u16 v : {edit.x, edit.y, edit.z}) PutU16(out, v);
  if (edit.type == PacketBlockComponent) {
    PutU16(out, edit.component);
    return;
  }
  PutU8(out, 0);
  if (edit.type == PacketBlockPlace) WriteBlock(out, edit.block);
}

bool ReadBlockEdit(u8 type, Reader *r, BlockEdit *edit) {
  edit->type = type;
  edit->shipRow = static_cast<i32>(TakeU32(r));
  for (u16 *v : {&edit->x, &edit->y, &edit->z}) *v = TakeU16(r);
  if (type == PacketBlockComponent)
    edit->component = TakeU16(r);
  else
    TakeU8(r);
  if (type == PacketBlockPlace) edit->block = ReadBlock(r);
  return !r->failed && edit->x < CellsPerAxis && edit->y < CellsPerAxis && edit->z < CellsPerAxis;
}

// A few bytes that unpack to many cost their receiver much more than their sender.
u32 LargestPayload(u8 type) {
  constexpr u32 string = 3 + LongestText, place = 36, row = 4;
  switch (type) {
    case PacketChat: return string;
    case PacketHello: return 2 * string + 1;
    case PacketPing: case PacketPong: case PacketNudge: return 1;  // nothing of it is read
    case PacketPlayerLocation: case PacketSetLocation: return place;
    case PacketOtherPlayer: return 2 + place;
    case PacketShipLocation: return row + place;
    case PacketBlockPlace: return 25;
    case PacketBlockRemove: return 11;
    case PacketBlockComponent: return 12;
    case PacketUnused: return 2;
    case PacketShipAdded: return row + string + place;
    case PacketPlayerList: case PacketShipList: case PacketFile: return DecompressedLimit;
    default: return 0;
  }
}

bool OpenPacket(const u8 *bytes, size_t count, u8 *type, Reader *payload, std::vector<u8> *store, u32 limit) {
  if (count == 0 || count > UINT32_MAX) return false;
  *type = bytes[0];
  *payload = {bytes + 1, count - 1};
  if (*type <= CompressedFlag) return true;
  *type = static_cast<u8>(*type - CompressedFlag);
  u8 *content = const_cast<u8 *>(payload->bytes);  // replaced, never written
  u32 size = static_cast<u32>(payload->left);
  const u32 most = std::min(limit, LargestPayload(*type));
  if (most == 0) *payload = {};
  if (most == 0) return true;
  if (!Decompress(&content, &size, false, most)) return false;
  store->assign(content, content + size);
  std::free(content);
  *payload = {store->data(), store->size()};
  return true;
}

std::vector<u8> SealPacket(u8 type, const u8 *payload, size_t count) {
  std::vector<u8> packet{type};
  u8 *content = const_cast<u8 *>(payload);
  u32 size = static_cast<u32>(count);
  const bool packed = count > CompressOver && count <= UINT32_MAX && Compress(&content, &size, false);
  if (packed) packet[0] = static_cast<u8>(type + CompressedFlag);
  PutBytes(&packet, packed ? content : payload, packed ? size : count);
  if (packed) std::free(content);
  return packet;
}

void LimitHost(ENetHost *host, size_t packetBytes, size_t waitingBytes) {
  host->maximumPacketSize = packetBytes;
  host->maximumWaitingData = waitingBytes;
}

bool QueuePacket(ENetPeer *peer, ENetPacket *packet) {
  const size_t limit = std::exchange(peer->host->maximumPacketSize, SIZE_MAX);
  const bool queued = enet_peer_send(peer, 0, packet) == 0;
  peer->host->maximumPacketSize = limit;
  return queued;
}

static bool SendSealed(ENetHost *host, ENetPeer *peer, const std::vector<u8> &packet, bool reliable) {
  if (host == nullptr || peer == nullptr) return false;
  const ScopedLock lock(&NetMutex);
  ENetPacket *made = enet_packet_create(packet.data(), packet.size(), reliable ? ENET_PACKET_FLAG_RELIABLE : 0);
  if (made == nullptr) return false;
  const bool sent = QueuePacket(peer, made);
  if (!sent) enet_packet_destroy(made);
  enet_host_flush(host);
  return sent;
}

bool SendPacket(ENetHost *host, ENetPeer *peer, const u8 *payload, size_t count, u8 type, bool reliable) {
  return SendSealed(host, peer, SealPacket(type, payload, count), reliable);
}

bool SendPacket(ENetHost *host, ENetPeer *peer, const std::vector<u8> &payload, u8 type, bool reliable) {
  return SendPacket(host, peer, payload.data(), payload.size(), type, reliable);
}

bool SendText(ENetHost *host, ENetPeer *peer, std::string_view text, u8 type, bool reliable) {
  if (text.size() > LongestText) return LogError("Message too long for simple message") != 0;
  std::vector<u8> payload;
  WriteString(&payload, text);
  return SendPacket(host, peer, payload, type, reliable);
}

static bool RowExists(i32 row) {
  if (row >= 0 && row < TheShipTable.count.load()) return true;
  return LogError("Non-existant ship specified.") != 0;
}

static bool SendBlockEdit(ENetHost *host, ENetPeer *peer, const BlockEdit &edit) {
  if (!RowExists(edit.shipRow)) return false;
  std::vector<u8> payload;
  WriteBlockEdit(&payload, edit);
  return SendPacket(host, peer, payload, edit.type, true);
}

bool SendBlockPlace(ENetHost *host, ENetPeer *peer, i32 shipRow, u16 x, u16 y, u16 z, const Block &b) {
  return SendBlockEdit(host, peer, {.type = PacketBlockPlace, .shipRow = shipRow, .x = x, .y = y, .z = z, .block = b});
}

bool SendBlockRemove(ENetHost *host, ENetPeer *peer, i32 shipRow, u16 x, u16 y, u16 z) {
  return SendBlockEdit(host, peer, {.type = PacketBlockRemove, .shipRow = shipRow, .x = x, .y = y, .z = z, .block = {}});
}

bool SendBlockComponent(ENetHost *host, ENetPeer *peer, i32 shipRow, u16 x, u16 y, u16 z, u16 component) {
  return SendBlockEdit(host, peer, {.type = PacketBlockComponent, .shipRow = shipRow, .x = x, .y = y, .z = z, .block = {},
                                    .component = component});
}

bool ReadFilePacket(const char *path, const char *name, std::vector<u8> *packet) {
  std::vector<u8> bytes;
  if (!SafeFileName(name) || !ReadWholeFile(path, LargestFile, &bytes)) return LogError("Problem sending file.") != 0;
  packet->assign(1, PacketFile);
  WriteString(packet, name);
  PutBytes(packet, bytes.data(), bytes.size());
  return true;
}

bool SendFile(ENetHost *host, ENetPeer *peer, const char *path, const char *name) {
  std::vector<u8> packet;
  return ReadFilePacket(path, name, &packet) && SendSealed(host, peer, packet, true);
}

// Rows that this game's tables don't have become the placeholders.
static u16 KnownComponent(unsigned row) {
  return static_cast<u16>(row - 1 < ComponentCount - 1u ? row : static_cast<unsigned>(std::max(FindComponent(MissingComponentId), 1)));
}

static u16 KnownMaterial(unsigned row) {
  return static_cast<u16>(row - 1 < MaterialCount - 1u ? row : static_cast<unsigned>(std::max(FindMaterial(MissingMaterialId), 1)));
}

bool HasRoomFor(const BlockEdit &edit, const Ship &ship) {
  if (edit.type != PacketBlockPlace || FindCells(AddressOf(edit.x, edit.y, edit.z), ship) != nullptr) return true;
  u64 bytes = MegaBytes + SuperBytes + ChunkBytes;  // what the edit may cost
  for (u16 row = 0; row < TheShipTable.count.load(); ++row) {
    const Ship &s = *ShipAt(TheShipTable, row);
    bytes += s.megaCount * MegaBytes + s.superCount * SuperBytes + s.chunkCount * ChunkBytes;
  }
  return bytes <= LargestWorld;
}

// World mutex held.
static bool ApplyHeld(const BlockEdit &edit) {
  if (!RowExists(edit.shipRow)) return false;
  Ship *ship = ShipAt(TheShipTable, static_cast<u16>(edit.shipRow));
  if (edit.type == PacketBlockRemove) return EditRemove(edit.x, edit.y, edit.z, ship);
  if (edit.type == PacketBlockComponent)
    return EditComponent(KnownComponent(edit.component), edit.x, edit.y, edit.z, ship) != 0;
  if (!HasRoomFor(edit, *ship)) return LogWarn("the ship is full") != 0;
  Block b = edit.block;
  if (b.state != StateEmpty) b.state = StateWhole;  // which voxels a damaged block has lost doesn't travel
  b.component = KnownComponent(static_cast<unsigned>(b.component));
  b.material = KnownMaterial(static_cast<unsigned>(b.material));
  return EditPlace(b, edit.x, edit.y, edit.z, ship) != 0;
}

bool ApplyBlockEdit(const BlockEdit &edit) {
  const ScopedLock world(&WorldMutex);
  return ApplyHeld(edit);
}

static bool ApplyPayload(u8 type, Reader payload) {
  BlockEdit edit;
  if (!ReadBlockEdit(type, &payload, &edit)) return LogWarn("A block packet that is too short, or out of range, was dropped") != 0;
  return ApplyBlockEdit(edit);
}

bool ApplyBlockPlace(Reader payload) { return ApplyPayload(PacketBlockPlace, payload); }

bool ApplyBlockRemove(Reader payload) { return ApplyPayload(PacketBlockRemove, payload); }

bool ApplyBlockComponent(Reader payload) { return ApplyPayload(PacketBlockComponent, payload); }

static bool SafeLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || std::string_view(" -_.()").find(c) != std::string_view::npos;
}

std::string Printable(std::string_view text, size_t most) {
  std::string out(FrontOf(text, most));
  unsigned char before = 0;
  for (char &c : out) {
    const unsigned char byte = static_cast<unsigned char>(c);
    const bool secondSet = before == 0xc2 && byte >= 0x80 && byte < 0xa0;  // the control characters above 127, in UTF-8
    if (byte < 0x20 || byte == 0x7f || secondSet) c = '?';
    before = byte;
  }
  return out;
}

bool SafeFileName(std::string_view name) {
  if (name.empty() || name.size() > MaxFileName || name[0] == '.') return false;
  for (const char c : name)
    if (!SafeLetter(c)) return false;
  return true;
}
