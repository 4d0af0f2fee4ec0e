// The stream form of a ship, a gzip stream of (all little-endian):
//   u8 version 1, u8 length N of displayName, N bytes, u8 0, then chunk groups to the end:
//     u16 mega, u16 super, u16 chunk, u16 count (10 bits each), then count entries of three u16:
//       rotation | rotation2 << 3 | material row << 5,  component row (14 bits),  block index (10 bits)
// Groups and entries rise. A whole ship has no empty group.
#pragma once

#include <string>
#include <vector>

#include "platform/files.h"
#include "world/tree.h"

constexpr int MaxShipName = 64;
constexpr size_t LongestStem = 200;  // bytes of a name that the game gives: with what goes behind it still a file name

// The uncompressed bytes. World mutex held. False when displayName is too long or memory lacks (logged).
bool PackShip(const Ship &ship, std::vector<u8> *out);
// Reads what is whole of packed bytes into an empty ship, with a warning for each kind of fault. World mutex, or a ship
// that no other thread sees. Sets displayName.
void UnpackShip(Ship *ship, const u8 *bytes, size_t count, const char *path);

// Takes the world mutex for the copy of the blocks; compresses and writes outside it. 1, or 0 and the old file as it was. A
// file that Ship::keepStreamAs speaks of is kept beside the new one first.
int SaveShipStream(Ship *ship, const char *path);
// The same. What had the name until the new file got it is called old then, which must be free; *sum: of the new file's bytes.
int SaveShipStreamKeepingOld(Ship *ship, const char *path, const char *old, FileSum *sum);
int SaveShipByName(Ship *ship);                          // To saves/<fileStem>.sts.
int SaveShipRawStream(Ship *ship, const char *name);     // The uncompressed bytes, to saves/<name>.sls.
// path: saves/<stem>.sts or cache/<stem>.sss. 1, or 0 when the file can't be opened or is no gzip file. A file that is
// damaged in any way is kept beside it, as <path>.damaged, before a save can replace it; where that can't be done the ship
// gets another fileStem (logged). finish: with origins, light,
// visibility and summary. World mutex, or a ship that no other thread sees.
int LoadShipStream(Ship *ship, const char *path, bool finish);
// What ships of unknown origin may cost: bytes of content and of memory, as if all of their cells were drawn, and light (world/light.h).
struct LoadBudget {
  u64 bytes = 0, light = 0;
};
// LoadShipStream, finished; a damaged file is kept by the next save only. Takes what it costs from the budget; what that
// doesn't cover is left out, with a warning.
int LoadShipWithin(Ship *ship, const char *path, LoadBudget *budget);
int ReadShipStream(Ship *ship, const char *path, bool *whole);  // The same unfinished, and nothing is kept beside the file.
int LoadShipByName(Ship *ship, const char *name);        // From saves/<name>.sts; prints the path.
int AddShipFromStream(ShipTable *table, const char *name, i64 x, i64 y, i64 z);  // World mutex held. 1 or 0.
// The same three as the game does them for a player. *news: what has to be told of it, or empty. What another program has put under
// the name since the ship was loaded or saved by it is kept beside the new file, as "<fileStem> (other).sts". A ship for which
// a file gave no block, though there is one that should have some, gets another fileStem, and 0 is the answer: nothing grows over
// what may only be out of reach. AddShipTelling adds no ship then.
int SaveShipTelling(Ship *ship, std::string *news);
int LoadShipTelling(Ship *ship, const char *name, std::string *news);
int AddShipTelling(ShipTable *table, const char *name, i64 x, i64 y, i64 z, std::string *news);
void FinishShip(Ship *ship);                             // Origins, light, visibility, summary, in this order.
bool FinishShipWithin(Ship *ship, u64 *light);           // The same with LightPassWithin, and its answer.
