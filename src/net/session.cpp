// The session with a server. No server is reached yet: a game that asks for one goes on alone, and every operation here
// finds Online clear.
#include "net/session.h"

std::atomic<bool> Online{false};
std::vector<RemotePlayer> RemotePlayers;
u16 OwnPlayerRow = 0;

bool InitNetwork() { return false; }

void PollNetwork() {}

void SendChat(const char *) {}

void SendPlayerLocation(const i64 (&)[3], const i32 (&)[3]) {}

void ShowPlayerList() {}
