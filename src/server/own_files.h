// Which stream files of saves/ are the server's own. Players download NAME.sts, which is written from the folder NAME/ again and
// again; a file that somebody else put there is kept as "NAME (file).sts" first. What the server wrote last is noted in
// saves/.NAME.written.
#pragma once

#include <string>
#include <vector>

#include "world/tree.h"

// To be called before the ship's stream file is replaced. False (logged): somebody's file lies there and can't be kept; it must
// stay. Takes the world mutex for a file that isn't the noted one.
bool KeepOwnersFile(const Ship &ship);
void NoteOwnFile(const std::string &stem);           // The file that lies there now is the server's.
std::vector<std::string> StreamsWithoutFolder();     // Stems of the files that the start is going to make folders of.
