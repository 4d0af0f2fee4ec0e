// A ship as a folder, saves/<fileStem>/, in which one changed block costs one write of 14 bytes (all little-endian):
//   info.sis             u16 version 1, i64 position x, y, z, i32 velocity x, y, z
//   <mega>/<super>.sss   slots of 14,002 bytes in the order in which they were stored; a later one of a chunk counts:
//     u16 chunk, 1000 blocks: u8 state | rotation << 2 | rotation2 << 5 | tempUnstable << 7, u8 second,
//     u16 material row, u16 component row, u16 temp, 6 bytes tail
//
// What a kill leaves: a save makes a folder of its own and exchanges the names. An update writes within one page of the
// file, or notes in the file .update what it is about to write. A new slot counts once its last byte stands. The next load,
// save or update ends or cuts off what was begun.
#pragma once

#include <string>

#include "world/tree.h"

// Whether a text can be the name of a ship's files: one path component, not hidden, without control characters.
bool IsShipStem(const std::string &name);

// Saves and updates of all ships go one after the other. They take the world mutex for their copy of the blocks only; the
// caller must not hold it.
//
// The whole ship. Gives every chunk with blocks in memory its slot; one that has only a slot is carried over from the old
// folder. In a ship that is known by its slots, blocks in memory replace those of their cells only. An old folder that was
// not read whole stays as <fileStem>.damaged. 1, or 0 and the old folder as it was: for the fileStem "NULL" nothing is done,
// all else is logged.
int SaveShipDirectory(Ship *ship);
// Stores one block, state 0 for a removed one, in the ship's files and not in memory. 1: the files have it, or a note of it that
// their next opening carries out. 0 (logged): the block in the files is the old one, or the log says that it is neither.
int SaveBlockUpdate(const Block &b, u16 x, u16 y, u16 z, Ship *ship);

// Reads saves/<name> into an empty ship: only the slots, or the blocks as well, finished unless leaveUnfinished is set. What
// can't be read is warned of and left out. 1, or 0 (logged) when there is no such folder. World mutex, or a ship that no
// other thread sees; not while the same folder is saved. A folder that was not read whole is kept by the next save of it.
int LoadShipDirectory(Ship *ship, const char *name, bool blocksToo, bool leaveUnfinished);
int AddShipFromDirectory(ShipTable *table, const char *name, i64 x, i64 y, i64 z);  // World mutex held. 1 or 0.

// Whether saves/<name> is there. A folder whose replacement a kill cut off gets its name first.
bool ShipFolderIsThere(const char *name);
// Place and speed of the ship as saves/<name>/ has them, when it is there.
void LoadShipPlace(Ship *ship, const char *name);

// Between saves/<name>.sts and saves/<name>/, whichever is there. The source stays; so does a target, as <target>.replaced,
// when the source could not be read whole. 1, or 0 and the target as it was. A damaged stream file that can't be kept as
// .damaged is not converted.
int ConvertStreamToDirectory(const char *name);
int ConvertDirectoryToStream(const char *name);
// Fills an emptied table with all ships of saves/: folders with their slots only, stream files converted to folders first
// and with their blocks. Folders that a save kept are passed over. 0 (logged) when there are ships that could not be loaded, or
// saves/ can't be listed. Before other threads look at the table; the world mutex must not be held.
int LoadAllShips(ShipTable *table);
