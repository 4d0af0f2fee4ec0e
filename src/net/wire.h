// The packets between a game and its server, on ENet. Byte 0 of a packet is its type, the payload follows; with 0x80 added to
// the type the payload is compressed. All numbers little-endian. Every packet is untrusted: readers answer false for one that
// is too short or holds a value out of range.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/compress.h"
#include "core/types.h"
#include "persistence/cursor.h"
#include "world/tree.h"

using ENetHost = struct _ENetHost;
using ENetPeer = struct _ENetPeer;
using ENetPacket = struct _ENetPacket;

constexpr u16 GamePort = 18150;
constexpr int NetChannels = 2;
constexpr const char *WireVersion = "0.23.0 Demo ";
constexpr size_t MaxFileName = 63;     // letters of a ship's name in PacketFile
constexpr size_t CompressOver = 100;   // payloads of more bytes than this go compressed
constexpr u64 LargestWorld = u64{3} << 30;  // bytes of memory that a server's ships may take of a game
constexpr size_t LargestFile = 256u << 20;  // bytes of a ship's file that can be sent and taken

enum PacketType : u8 {
  PacketFile = 0x0C, PacketShipLocation = 0x14, PacketHello = 0x2A, PacketPing = 0x2B, PacketPong = 0x2C, PacketChat = 0x2D,
  PacketPlayerLocation = 0x32, PacketSetLocation = 0x33, PacketOtherPlayer = 0x34, PacketNudge = 0x35, PacketBlockPlace = 0x3D,
  PacketBlockRemove = 0x3E, PacketBlockComponent = 0x3F, PacketPlayerList = 0x46, PacketShipList = 0x50, PacketShipAdded = 0x51
};
constexpr u8 PacketUnused = 0x0F;      // taken by the protocol, sent and read by nobody

// A place and a speed, as five of the packets carry them: 36 bytes.
struct Motion {
  i64 place[3] = {};
  i32 velocity[3] = {};
};

struct BlockEdit {
  u8 type = PacketBlockPlace;          // one of the three block packets
  i32 shipRow = 0;
  u16 x = 0, y = 0, z = 0;
  Block block;                         // PacketBlockPlace
  u16 component = 0;                   // PacketBlockComponent
};

// Payload fields. A string of 1 to 255 bytes has one length byte; an empty or longer one a zero byte and a u16 length.
void WriteString(std::vector<u8> *out, std::string_view text);   // Cut at 65535 bytes.
std::string ReadString(Reader *r);
void WriteMotion(std::vector<u8> *out, const Motion &m);
Motion ReadMotion(Reader *r);
void WriteBlock(std::vector<u8> *out, const Block &b);           // 14 bytes
Block ReadBlock(Reader *r);
void WriteBlockEdit(std::vector<u8> *out, const BlockEdit &edit);
bool ReadBlockEdit(u8 type, Reader *r, BlockEdit *edit);         // False: too short, or coordinates above 9999.

// The most bytes that a payload of this type may unpack to: what its form holds, or DecompressedLimit for lists, which have no
// end of their own. 0 for types that nobody knows.
u32 LargestPayload(u8 type);
// What is received. payload points into the given bytes, or into store when they had to be decompressed. False: no bytes, or a
// compressed payload that is broken, or larger than the limit or than what its type can hold. An unknown type opens, unpacked
// to nothing: the caller has a word for it.
bool OpenPacket(const u8 *bytes, size_t count, u8 *type, Reader *payload, std::vector<u8> *store, u32 limit = DecompressedLimit);
// What is sent: the type byte and the payload, compressed by the rule.
std::vector<u8> SealPacket(u8 type, const u8 *payload, size_t count);

// ENet has no locks: every call of it goes through here or is made under this guard.
struct Mutex;
extern Mutex NetMutex;                 // a leaf

// What a host takes: bytes of one packet, and of all that wait at one peer. For sending there is no such limit.
void LimitHost(ENetHost *host, size_t packetBytes, size_t waitingBytes);
bool QueuePacket(ENetPeer *peer, ENetPacket *packet);  // NetMutex held. False: it isn't connected; the packet stays the caller's.

// On channel 0, and flushed at once. Take NetMutex. A null peer or host: false.
bool SendPacket(ENetHost *host, ENetPeer *peer, const u8 *payload, size_t count, u8 type, bool reliable);
bool SendPacket(ENetHost *host, ENetPeer *peer, const std::vector<u8> &payload, u8 type, bool reliable);
bool SendText(ENetHost *host, ENetPeer *peer, std::string_view text, u8 type, bool reliable);  // An error from 65536 bytes on.
// Refuse a ship row that the table doesn't have, with an error.
bool SendBlockPlace(ENetHost *host, ENetPeer *peer, i32 shipRow, u16 x, u16 y, u16 z, const Block &b);
bool SendBlockRemove(ENetHost *host, ENetPeer *peer, i32 shipRow, u16 x, u16 y, u16 z);
bool SendBlockComponent(ENetHost *host, ENetPeer *peer, i32 shipRow, u16 x, u16 y, u16 z, u16 component);
// A whole file, uncompressed and reliable, named by one path component of at most 63 letters. False with an error in the log.
bool ReadFilePacket(const char *path, const char *name, std::vector<u8> *packet);  // Only the packet, type byte and all.
bool SendFile(ENetHost *host, ENetPeer *peer, const char *path, const char *name);

// Do what a received block packet says in TheShipTable; take the world mutex. Rows of the tables that this game doesn't have
// become the placeholders. False: refused.
bool ApplyBlockPlace(Reader payload);
bool ApplyBlockRemove(Reader payload);
bool ApplyBlockComponent(Reader payload);
bool ApplyBlockEdit(const BlockEdit &edit);
// Whether a game could still load all ships, were the edit done. World mutex, or the only thread.
bool HasRoomFor(const BlockEdit &edit, const Ship &ship);

// A name from the other side that is safe as a file's: letters, digits, blanks and "-_.()", not beginning with a dot, 1 to 63.
bool SafeFileName(std::string_view name);
// A text from the other side as it may be shown and logged: without control characters, so that none of them ends a line of the
// log or steers a terminal, and cut to most bytes.
std::string Printable(std::string_view text, size_t most);
