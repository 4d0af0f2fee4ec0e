// The connection's program-wide values. The session writes them; whoever sends reads them.
#include "net/connection.h"

std::atomic<bool> Online{false};
std::atomic<bool> HasServersShips{false};
std::atomic<ENetHost *> NetHost{nullptr};
std::atomic<ENetPeer *> NetPeer{nullptr};
