// Which stream files of saves/ are the server's own. Players download NAME.sts, which is written from the folder NAME/ again and
// again; a file that somebody else put there is kept as "NAME (file).sts" first. What the server wrote last is noted in
// saves/.NAME.written.
#pragma once

#include <string>
#include <vector>

#include "platform/files.h"
#include "world/tree.h"

// Writes the ship's stream file. Somebody's file that has its name then is kept. Takes the world mutex for the copy of the blocks,
// and for an old file that isn't the noted one. False (logged): nothing was written; an older file couldn't be kept, or the disk
// is full.
bool WriteStreamFile(Ship *ship);

// A file that the start is going to make a folder of, and its bytes before that: one that comes in its place is another.
struct TakenStream {
  std::string stem;
  FileSum sum;
};
std::vector<TakenStream> StreamsToTake();
void NoteTaken(const std::vector<TakenStream> &streams);  // Behind the loading: the folders have all of them, or a copy was kept.
