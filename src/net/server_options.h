// The file "serveroptions" in a server's working directory: a key, a blank and a value on each line.
#pragma once

#include <string>

#include "core/types.h"

struct ServerOptions {
  std::string Address = "0.0.0.0";      // where to listen; 0.0.0.0 is every address of the machine; empty when the key stands without one
  u16 Port = 18150;
  int RunDataServer = 1;                // this and the next two are kept, not served
  std::string DataAddress = "0.0.0.0";
  u16 DataPort = 18160;
  u16 MaxAsteroidSize = 200;
  u16 Players = 64;                     // at once
  int IRC = 0;                          // this and all below are kept, not served
  std::string IRCServer = "localhost";
  int IRCPort = 6667;
  std::string IRCNick = "UnknownTarnvaleServerBot";
  std::string IRCChannel = "#tarnvale";
  int IRCMumble = 1;
};

void InitServerOptions(ServerOptions *options);   // The defaults.
bool ReadServerOptions(ServerOptions *options);   // Over what stands there. False: no file. Faults are logged with their line.
std::string OptionPlace(const char *key);         // "serveroptions:3", the line that counts for the key; without one, the file.
bool WriteServerOptions(const ServerOptions &options);  // Replaces the file. False when it can't be written.
