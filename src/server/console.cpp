// list, say, kick, save, stop.
#include "server/console.h"

#include <poll.h>
#include <unistd.h>

#include <cstdio>

#include "server/clients.h"
#include "server/server.h"
#include "server/world.h"

constexpr size_t LongestLine = 4096;

static void List() {
  std::printf("%zu of %d players\n", PlayerCount(), TheServerOptions.Players);
  for (const Client &c : Clients)
    if (!c.name.empty())
      std::printf("  %s  %s  %u edits, %u lines\n", c.name.c_str(), c.address.c_str(), c.edits, c.lines);
  for (const std::string &stem : ShipStems()) std::printf("  ship %s\n", stem.c_str());
}

static void Kick(const std::string &name) {
  Client *client = FindClientByName(name);
  if (client != nullptr) DropClient(client, "kicked");
  else std::printf("nobody is called \"%s\"\n", name.c_str());
}

void ConsoleLine(const std::string &line) {
  const size_t blank = line.find(' ');
  const std::string word = line.substr(0, blank);
  const std::string rest = blank == std::string::npos ? "" : line.substr(blank + 1);
  if (word == "list") List();
  else if (word == "say" && !rest.empty()) {
    Say("Server: " + rest);
    SayToAll("Server: " + Printable(rest, 255));
  } else if (word == "kick") Kick(rest);
  else if (word == "save") std::printf("%s\n", RefreshStreamFiles() ? "saved" : "not all could be saved");
  else if (word == "stop") StopRequested = true;
  else if (!word.empty()) std::printf("list | say TEXT | kick NAME | save | stop\n");
  std::fflush(stdout);
}

void ReadConsole() {
  static std::string pending;
  static bool open = true;
  pollfd input{STDIN_FILENO, POLLIN, 0};
  while (open && poll(&input, 1, 0) > 0) {
    char bytes[512];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    open = count > 0;
    if (!open) return;
    pending.append(bytes, static_cast<size_t>(count));
    for (size_t end; (end = pending.find('\n')) != std::string::npos; pending.erase(0, end + 1))
      ConsoleLine(pending.substr(0, end));
    if (pending.size() > LongestLine) pending.clear();
  }
}
