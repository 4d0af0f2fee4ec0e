// The server as a whole.
#pragma once

#include <atomic>
#include <string>

#include "net/server_options.h"
#include "server/control.h"

extern ServerOptions TheServerOptions;  // read once, at the start
extern std::atomic<bool> StopRequested;  // the console or a signal wants the end; looked at in each pass

// Takes the folder and begins its log anew, where five old ones are kept. False: another server has it, and nothing was
// touched; why says so.
bool BeginServerLog(std::string *why);
bool StartServer();                     // Options, tables, world, port. False: said why, nothing runs.
void RunServer();                       // Until StopRequested.
void StopServer();                      // Everyone is told, and the stream files are written.
void StopAndTell(Asker asker);          // StopRequested; the asker hears when the files are written.
