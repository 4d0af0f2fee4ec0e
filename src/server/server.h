// The server as a whole.
#pragma once

#include <atomic>

#include "net/server_options.h"

extern ServerOptions TheServerOptions;  // read once, at the start
extern std::atomic<bool> StopRequested;  // the console or a signal wants the end; looked at in each pass

bool StartServer();                     // Options, tables, world, port. False: said why, nothing runs.
void RunServer();                       // Until StopRequested.
void StopServer();                      // Everyone is told, and the stream files are written.
