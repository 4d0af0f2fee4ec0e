// The installation that a game runs in: two of them in one folder would replace each other's ships.
#pragma once

enum class Hold { Ours, Taken };  // Taken: by another game, or by a server

// Takes saves/ for this game until the process ends. Servers hold the folder alone, games and the tool for ships together; among
// themselves games have cache/. A folder that is missing, or a disk without locks, counts as ours. Once, before there is
// a second thread.
Hold HoldInstallation();
bool OthersHoldInstallation();  // Whether it is taken. No game that claims it meanwhile fails for that.
