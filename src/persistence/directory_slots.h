// The bytes of the directory store: where its files lie, and slots to and from cells. Local to this folder.
#pragma once

#include <string>
#include <vector>

#include "platform/threads.h"
#include "world/tree.h"

constexpr size_t RecordBytes = 14;
constexpr size_t SlotBytes = 2 + RecordBytes * CellsPerChunk;
constexpr int MaxSlots = 32768;  // a slot's number has 16 bits with a sign
constexpr size_t InfoBytes = 2 + 3 * 8 + 3 * 4;
constexpr u16 InfoVersion = 1;
constexpr const char *InfoName = "info.sis";

inline i64 SlotOffset(int slot) { return i64{slot} * static_cast<i64>(SlotBytes); }
inline std::string ShipFolder(const std::string &stem) { return "saves/" + stem; }
inline std::string SuperName(unsigned super) { return std::to_string(super) + ".sss"; }

extern Mutex StoreMutex;  // one save or update at a time; taken outside the world mutex

// Ends an update that a kill cut off. Before anything is read from a ship's folder or written into it. Does nothing while
// another program has the folder.
void SettleUpdate(int shipFolder);
void PackRecord(u64 head, const u8 *tail, u8 *at);  // 14 bytes; tail may be null for zeros.
void PackSlot(const ChunkCells *cells, u16 chunk, u8 *at);  // SlotBytes; cells may be null. World mutex.

// A reader of slots, and what it met. Each fault is reported once, at the end, however often it came.
struct SlotReader {
  Ship *ship = nullptr;
  std::string folder;      // for the messages
  bool blocksToo = false;
  bool unlisted = false;  // a folder could not be listed: what is missing can't be told
  bool badInfo = false, badIndex = false, unknownRow = false, cut = false, tooLarge = false;
  std::vector<std::string> strange;  // the first few entries that are none of the store's
  u64 budget = u64{4} << 30;         // bytes of memory for tables and cells that this folder may still cost
  u16 placeholderComponent = 1, placeholderMaterial = 1;
};

SlotReader BeginSlots(Ship *ship, const std::string &folder, bool blocksToo);
Chunk *MakeSuper(SlotReader *r, u16 mega, u16 super);  // The chunk table with no slots, or null over the budget.
void ReadSlot(SlotReader *r, u16 mega, u16 super, int slot, const u8 *bytes);  // 2 bytes, or SlotBytes with blocksToo.
bool AllWasRead(const SlotReader &r);
void ReportSlots(const SlotReader &r);
constexpr size_t LongestMegaName = 4;
int LeadingNumber(const std::string &name);  // The number at the front of a name; -1 without one, or above 999.
