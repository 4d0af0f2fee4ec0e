// What the session does for the larger packets. Local to this folder; all on the thread that polls.
#pragma once

#include "net/wire.h"

void TakeFile(Reader r);          // PacketFile: stored at DownloadPath, not loaded; an own ship of that name is kept beside it.
// Where the server's ship of that name lies: in saves/, or, when this game saves nothing, in a temporary folder of its own (empty: none can be made).
std::string DownloadPath(const std::string &name);
bool DownloadFailed(const std::string &name);  // The server's ship of that name isn't the one in saves/.
void TakeShipList(Reader r);      // PacketShipList: the table becomes the server's.
void TakeShipAdded(Reader r);     // PacketShipAdded
void TakeShipLocation(Reader r);  // PacketShipLocation
void TakePlayerList(Reader r);    // PacketPlayerList
void TakeOtherPlayer(Reader r);   // PacketOtherPlayer
void TakeOwnLocation(Reader r);   // PacketSetLocation: takes the move mutex.
